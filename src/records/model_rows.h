// Editing and reading a model's rows. Rows count from 0.
#pragma once

#include "records/model.h"

namespace kalvex {

// A position outside 0 to the number of rows counts as the nearest inside. The new row has the default parameters.
void InsertRow(Model& model, int position);
// A position outside counts as the nearest row; without rows nothing happens.
void RemoveRow(Model& model, int position);
void ClearRows(Model& model);
// Swaps the row with the one above or below; nothing happens to the first or the last row.
void MoveRowUp(Model& model, int row);
void MoveRowDown(Model& model, int row);

enum class SortKey : int { kNone = 0, kWo = 1, kWp = 2, kG = 3, kStrength = 4, kRelativeWidth = 5 };
// Sorts whole rows. Descending if the first row is not above the last by the key, otherwise ascending, so that a second
// call turns the order around. kNone and a model without rows change nothing.
void SortRows(Model& model, SortKey key);

// The two columns that are computed and not stored.
enum class ComputedColumn : int { kStrength = 0, kRelativeWidth = 1 };
// (Wp/Wo)^2 or G/Wo; kUndefined where Wo is exactly 0, kMissing for an invalid model or row, 0 for another kind.
double ComputedValue(const Model* model, int row, int kind);

// Writes adjustable to fix ? 0 : 1 on epsInf and on every element of the rows, past any coupling.
void FixAll(Model& model, bool fix);

}  // namespace kalvex

// Editing and reading a model's rows. Rows count from 0.
#pragma once

#include "records/model.h"

namespace kalvex {

// Inserts a row with the default parameters. A position outside 0 to the number of rows becomes the nearest valid one.
void InsertRow(Model& model, int position);
// An index outside the rows becomes the nearest valid one. Without rows nothing happens.
void RemoveRow(Model& model, int position);
void ClearRows(Model& model);
// Swaps the row with the one above or below. The first row cannot move up, nor the last one down.
void MoveRowUp(Model& model, int row);
void MoveRowDown(Model& model, int row);

enum class SortKey : int { kNone = 0, kWo = 1, kWp = 2, kG = 3, kStrength = 4, kRelativeWidth = 5 };
// Sorts whole rows. The order is descending if the key of the first row is not above that of the last, otherwise
// ascending: a second call reverses the order. kNone changes nothing, nor does a model without rows.
void SortRows(Model& model, SortKey key);

// The two columns that are computed and not stored.
enum class ComputedColumn : int { kStrength = 0, kRelativeWidth = 1 };
// (Wp/Wo)^2 or G/Wo; kUndefined where Wo is exactly 0, kMissing for an invalid model or row, 0 for another kind.
double ComputedValue(const Model* model, int row, int kind);

// Sets adjustable to (fix ? 0 : 1) on epsInf and on every element of the rows. Coupled parameters are not updated.
void FixAll(Model& model, bool fix);

}  // namespace kalvex

// Editing and reading a model's rows. Each operation takes a model that may be null or closed, which is a failure.
// Operations with a status give 0, or -1 on failure.
#pragma once

#include <cstdint>

#include "records/model.h"

namespace kalvex {

// A position outside 0 to the number of rows counts as the nearest inside. The new row has the default parameters.
int InsertRow(Model* model, int position);
int RemoveRow(Model* model, int position);
int ClearRows(Model* model);
// Swaps the row with the one above or below; nothing happens to the first or the last row.
int MoveRowUp(Model* model, int row);
int MoveRowDown(Model* model, int row);

enum class SortKey : int { kNone = 0, kWo = 1, kWp = 2, kG = 3, kStrength = 4, kRelativeWidth = 5 };
// Sorts whole rows. Descending if the first row is not above the last by the key, otherwise ascending, so that a second
// call turns the order around.
int SortRows(Model* model, int key);

// The two columns that are computed and not stored.
enum class ComputedColumn : int { kStrength = 0, kRelativeWidth = 1 };
// (Wp/Wo)^2 or G/Wo; kUndefined where Wo is exactly 0, kMissing for an invalid model or row, 0 for another kind.
double ComputedValue(const Model* model, int row, int kind);

// kMissing, or 0 for the flags, where model, row or column is out of range.
double RowValue(const Model* model, int row, int column);
std::uint32_t RowAdjustable(const Model* model, int row, int column);
double EpsInfValue(const Model* model);
std::uint32_t EpsInfAdjustable(const Model* model);

// Writes adjustable to fix ? 0 : 1 on epsInf and on every element of the rows, past any coupling.
int FixAll(Model* model, bool fix);

}  // namespace kalvex

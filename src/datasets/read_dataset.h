// Reads a text file of up to three columns.
#pragma once

#include <string>
#include <vector>

#include "datasets/dataset.h"

namespace kalvex {

enum class ReadStatus : int { kRead = 0, kOutOfMemory = -1, kCannotOpen = -2, kNoUsableLine = -3 };

// Every line that starts with a number gives a row x, y, sigma. A missing y is 0, a missing sigma 0.01. Other lines are
// skipped, and so is any text after the third number. A line longer than 1023 characters counts as several lines. The
// rows are sorted by x. Of two rows with equal x the second is dropped.
ReadStatus ReadDatasetFile(const std::string& path, std::vector<DataRow>& rows);

// Sorts by x and drops duplicates as ReadDatasetFile does. Of three rows with equal x, the second is dropped and two
// stay.
void SortAndDropDuplicates(std::vector<DataRow>& rows);

}  // namespace kalvex

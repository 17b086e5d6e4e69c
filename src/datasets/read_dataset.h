// Reading one text file of up to three columns.
#pragma once

#include <string>
#include <vector>

#include "datasets/dataset.h"

namespace kalvex {

enum class ReadStatus : int { kRead = 0, kOutOfMemory = -1, kCannotOpen = -2, kNoUsableLine = -3 };

// Every line that starts with a number gives a row x, y, sigma; y counts as 0 and sigma as 0.01 where the line has no
// such number. Other lines are passed over, wherever they stand, and so is what follows the third number. A line longer
// than 1023 characters counts as several. The rows come sorted by x, the second of each two rows of equal x dropped.
ReadStatus ReadDatasetFile(const std::string& path, std::vector<DataRow>& rows);

// Sorts by x and drops the duplicates, as ReadDatasetFile does: of three equal x the second goes, and two stay.
void SortAndDropDuplicates(std::vector<DataRow>& rows);

}  // namespace kalvex

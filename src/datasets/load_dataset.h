// Loading: up to three files become one table of rows on a grid of the user's choice.
#pragma once

#include <optional>
#include <string>

#include "core/notices.h"
#include "datasets/dataset.h"

namespace kalvex {

// Loads into a record whose files and methods are set, and gives it the next id. Gives null, or the message that tells
// the user what is wrong; the record's rows are then as they were, except that a YErrVal not above 0 is found only when
// the new rows are there already.
const char* LoadDatasetRecord(Dataset& dataset, std::uint32_t& nextId);

// What a macro's LoadDataset may give; the method numbers are those of the macro language, from 1.
struct LoadDatasetArgs {
  std::optional<int> DatasetNo;
  std::optional<std::string> Quantity, MasterFile, XFile, YErrFile;
  std::optional<int> XMethod, XPts, XGrid, YMethod, YErrMethod, Match;
  std::optional<double> XMin, XMax, YVal, YErrVal;
};

// Fills the slot (default 1) from the parameters and their defaults and loads it. Gives null or the message.
const char* LoadDatasetFromMacro(DatasetTable& table, const LoadDatasetArgs& args);

}  // namespace kalvex

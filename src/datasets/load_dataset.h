// Loading: up to three files become one table of rows on a grid of the user's choice.
#pragma once

#include <optional>
#include <string>

#include "core/status.h"
#include "datasets/dataset.h"

namespace kalvex {

// Where the rows come from. A Quantity that is not given comes from the master file's name.
struct DatasetSource {
  std::string MasterFile, XFile, YErrFile;
  XSource XMethod = XSource::kMaster;
  YSource YMethod = YSource::kMaster;
  ErrorSource YErrMethod = ErrorSource::kMaster;
  Grid XGrid = Grid::kLinear;
  Matching Match = Matching::kInterpolation;
  double XMin = 1.0;  // of a generated grid, cm-1
  double XMax = 1000.0;
  int XPts = 1000;
  double YVal = 0.0;
  double YErrVal = 0.01;
  std::optional<kalvex::Quantity> Quantity;
};

// Stores the source in the record, loads the rows, and gives the record the next id. On failure, whose text tells the
// user what is wrong, the rows are as they were, except that a YErrVal not above 0 is found only when the new rows are
// there already.
Status LoadDataset(Dataset& dataset, const DatasetSource& source, std::uint32_t& nextId);

}  // namespace kalvex

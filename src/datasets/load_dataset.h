// Loading: up to three files become one table of rows on the grid that the user has chosen.
#pragma once

#include <optional>
#include <string>

#include "core/status.h"
#include "datasets/dataset.h"

namespace kalvex {

// The source of the rows. A Quantity without a value follows from the name of the master file.
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

// Stores the source in the record, loads the rows, and gives the record the next id. On failure the text of the Status
// is shown to the user, and the rows stay unchanged. One exception: a YErrVal that is not above 0 is detected after the
// rows are replaced.
Status LoadDataset(Dataset& dataset, const DatasetSource& source, std::uint32_t& nextId);

}  // namespace kalvex

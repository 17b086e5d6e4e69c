// The dialog that loads a dataset into a free slot.
#pragma once

#include <string>

#include "datasets/dataset.h"

namespace kalvex {

struct Desk;

struct LoadDialog {
  bool open = false;
  int slot = 0;
  std::string title;
  std::string masterFile, xFile, yErrFile;
  XSource xMethod = XSource::kMaster;
  Grid grid = Grid::kLinear;
  Matching match = Matching::kInterpolation;
  YSource yMethod = YSource::kMaster;
  ErrorSource yErrMethod = ErrorSource::kMaster;
  std::string xMin, xMax, xPts, yVal, yErrVal;
};

// Which controls are enabled, besides those that always are. The controls of a choice that is not made are disabled.
struct LoadDialogEnabled {
  bool xFile = false;  // the path and "Browse"
  bool grid = false;   // the limits, the number of points and the kind of grid
  bool match = false;  // both buttons
  bool yVal = false;
  bool yErrFile = false;  // the path and "Browse"
  bool yErrVal = false;
};
LoadDialogEnabled EnabledControlsOf(const LoadDialog& dialog);

void OpenLoadDialog(Desk& desk, int slot);

// The three buttons "Browse". A cancelled file dialog leaves the path unchanged.
enum class LoadFile { kMaster, kX, kYErr };
void BrowseForFile(Desk& desk, LoadFile which);

// "OK": closes the dialog if the dataset can be loaded. Otherwise shows the reason and keeps the user's entries.
void AcceptLoadDialog(Desk& desk);
// "Cancel": the entries are lost.
void CancelLoadDialog(Desk& desk);

}  // namespace kalvex

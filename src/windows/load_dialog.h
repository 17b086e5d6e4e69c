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

// Which controls answer, beside those that always do: what belongs to a choice that is not made does not.
struct LoadDialogEnabled {
  bool xFile = false;  // path and "Browse"
  bool grid = false;   // limits, number of points, kind of grid
  bool match = false;  // both buttons
  bool yVal = false;
  bool yErrFile = false;  // path and "Browse"
  bool yErrVal = false;
};
LoadDialogEnabled EnabledControlsOf(const LoadDialog& dialog);

void OpenLoadDialog(Desk& desk, int slot);

// The three buttons "Browse"; a cancelled file dialog leaves the path.
enum class LoadFile { kMaster, kX, kYErr };
void BrowseForFile(Desk& desk, LoadFile which);

// "OK": closes the dialog if the dataset can be loaded. Otherwise says why, and stays with the user's entries.
void AcceptLoadDialog(Desk& desk);
// "Cancel": the entries are lost.
void CancelLoadDialog(Desk& desk);

}  // namespace kalvex

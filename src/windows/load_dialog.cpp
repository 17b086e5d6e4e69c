#include "windows/load_dialog.h"

#include "core/text.h"
#include "datasets/load_dataset.h"
#include "windows/ask_file.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

void ReadControls(const LoadDialog& dialog, Dataset& dataset) {
  dataset.MasterFile = dialog.masterFile;
  dataset.XFile = dialog.xFile;
  dataset.YErrFile = dialog.yErrFile;
  dataset.XMethod = dialog.xMethod;
  dataset.XGrid = dialog.grid;
  dataset.Match = dialog.match;
  dataset.YMethod = dialog.yMethod;
  dataset.YErrMethod = dialog.yErrMethod;
  dataset.XMin = RealOf(dialog.xMin);
  dataset.XMax = RealOf(dialog.xMax);
  dataset.XPts = IntegerOf(dialog.xPts);
  dataset.YVal = RealOf(dialog.yVal);
  dataset.YErrVal = RealOf(dialog.yErrVal);
}

std::string& PathOf(LoadDialog& dialog, LoadFile which) {
  switch (which) {
    case LoadFile::kX:
      return dialog.xFile;
    case LoadFile::kYErr:
      return dialog.yErrFile;
    case LoadFile::kMaster:
      break;
  }
  return dialog.masterFile;
}

bool Answers(const LoadDialog& dialog, LoadFile which) {
  const LoadDialogEnabled enabled = EnabledControlsOf(dialog);
  return which == LoadFile::kMaster || (which == LoadFile::kX ? enabled.xFile : enabled.yErrFile);
}

}  // namespace

LoadDialogEnabled EnabledControlsOf(const LoadDialog& dialog) {
  return {dialog.xMethod == XSource::kFile,        dialog.xMethod == XSource::kGenerated,
          dialog.xMethod != XSource::kMaster,      dialog.yMethod == YSource::kFixed,
          dialog.yErrMethod == ErrorSource::kFile, dialog.yErrMethod == ErrorSource::kFixed};
}

void OpenLoadDialog(const WindowDesk& desk, int slot) {
  const Dataset* const dataset = DatasetInSlot(desk.datasets, slot);
  if (!dataset || IsFrozen(desk)) return;
  desk.loadDialog = {true,
                     slot,
                     texts::kLoadDialogTitle + std::to_string(slot),
                     dataset->MasterFile,
                     dataset->XFile,
                     dataset->YErrFile,
                     dataset->XMethod,
                     dataset->XGrid,
                     dataset->Match,
                     dataset->YMethod,
                     dataset->YErrMethod,
                     TextG(dataset->XMin),
                     TextG(dataset->XMax),
                     std::to_string(dataset->XPts),
                     TextG(dataset->YVal),
                     TextG(dataset->YErrVal)};
}

void BrowseForFile(const WindowDesk& desk, LoadFile which) {
  LoadDialog& dialog = desk.loadDialog;
  if (!dialog.open || !Answers(dialog, which)) return;
  if (auto file = AskFile(desk.platform, desk.fileFolder, texts::kBrowseFile)) PathOf(dialog, which) = *file;
}

void AcceptLoadDialog(const WindowDesk& desk) {
  LoadDialog& dialog = desk.loadDialog;
  if (!dialog.open || IsFrozen(desk)) return;
  Dataset& dataset = *DatasetInSlot(desk.datasets, dialog.slot);
  ReadControls(dialog, dataset);
  if (const char* const message = LoadDatasetRecord(dataset, desk.datasets.nextId)) {
    desk.platform.ShowMessage(texts::kErrorTitle, message);
  } else {
    dialog.open = false;
  }
  RefreshDatasetManager(desk.datasetManager, desk.datasets);
}

void CancelLoadDialog(const WindowDesk& desk) {
  if (!desk.loadDialog.open) return;
  desk.loadDialog.open = false;
  ClearDataset(*DatasetInSlot(desk.datasets, desk.loadDialog.slot));
  RefreshDatasetManager(desk.datasetManager, desk.datasets);
}

}  // namespace kalvex

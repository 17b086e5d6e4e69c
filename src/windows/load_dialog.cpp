#include "windows/load_dialog.h"

#include "core/text.h"
#include "datasets/load_dataset.h"
#include "windows/ask_file.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

DatasetSource SourceOf(const LoadDialog& dialog) {
  DatasetSource source;
  source.MasterFile = dialog.masterFile;
  source.XFile = dialog.xFile;
  source.YErrFile = dialog.yErrFile;
  source.XMethod = dialog.xMethod;
  source.XGrid = dialog.grid;
  source.Match = dialog.match;
  source.YMethod = dialog.yMethod;
  source.YErrMethod = dialog.yErrMethod;
  source.XMin = RealOf(dialog.xMin);
  source.XMax = RealOf(dialog.xMax);
  source.XPts = IntegerOf(dialog.xPts);
  source.YVal = RealOf(dialog.yVal);
  source.YErrVal = RealOf(dialog.yErrVal);
  return source;
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

void OpenLoadDialog(Desk& desk, int slot) {
  const Dataset* const dataset = DatasetInSlot(desk.session.Datasets(), slot);
  if (!dataset || desk.session.Fit().FitRunning) return;
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

void BrowseForFile(Desk& desk, LoadFile which) {
  LoadDialog& dialog = desk.loadDialog;
  if (!dialog.open || !Answers(dialog, which)) return;
  if (auto file = AskFile(desk, texts::kBrowseFile)) PathOf(dialog, which) = *file;
}

void AcceptLoadDialog(Desk& desk) {
  LoadDialog& dialog = desk.loadDialog;
  if (!dialog.open) return;
  const Status loaded = desk.session.LoadDataset(dialog.slot, SourceOf(dialog));
  if (loaded.Ok()) {
    dialog.open = false;
  } else if (loaded.Code() != StatusCode::kBusy) {
    desk.session.GetPlatform().ShowMessage(texts::kErrorTitle, loaded.Text());
  }
}

void CancelLoadDialog(Desk& desk) {
  if (!desk.loadDialog.open) return;
  desk.loadDialog.open = false;
  // A macro may have loaded a dataset into the slot while the dialog was open.
  if (!desk.session.FindDataset(desk.loadDialog.slot)) desk.session.ClearDataset(desk.loadDialog.slot).Ignore();
}

}  // namespace kalvex

#include "core/text.h"
#include "datasets/dataset_operations.h"
#include "datasets/load_dataset.h"
#include "datasets/quantity.h"
#include "macro/handlers.h"
#include "program/program.h"

namespace kalvex {
namespace {

std::string SlotText(int slot) { return "dataset " + std::to_string(slot); }

const Dataset* LoadedDataset(const MacroCall& call, int slot) {
  const Dataset* const dataset = DatasetInSlot(call.program.datasets, slot);
  return dataset && dataset->id != 0 ? dataset : nullptr;
}

// Most operations act on a slot whether or not it holds anything; this says what that came to.
MacroResult Outcome(MacroCall& call, int slot, bool wasLoaded, const std::string& done) {
  return wasLoaded ? call.Done(SlotText(slot) + ' ' + done) : call.Nothing(SlotText(slot) + " is not loaded");
}

void ShowDatasets(const MacroCall& call) { RefreshDatasetManager(call.program.datasetManager, call.program.datasets); }

std::string RangeText(const Dataset& dataset) {
  return std::to_string(dataset.nActive) + " of " + std::to_string(dataset.points.size()) + " points from " +
         TextG(dataset.CutMin) + " to " + TextG(dataset.CutMax);
}

}  // namespace

MacroResult DatasetManagerCommand(MacroCall& call) {
  DatasetManager& window = call.program.datasetManager;
  OpenDatasetManager(window, call.program.datasets);
  const auto x = call.Int("XPos"), y = call.Int("YPos");
  if (x && y) {
    window.x = *x;
    window.y = *y;
  }
  return call.Done("open");
}

MacroResult LoadDatasetCommand(MacroCall& call) {
  LoadDatasetArgs args;
  args.DatasetNo = call.Int("DatasetNo");
  args.Quantity = call.Text("Quantity");
  args.MasterFile = call.Text("MasterFile");
  args.XMethod = call.Int("XMethod");
  args.XFile = call.Text("XFile");
  args.XMin = call.Real("XMin");
  args.XMax = call.Real("XMax");
  args.XPts = call.Int("XPts");
  args.XGrid = call.Int("XGrid");
  args.YMethod = call.Int("YMethod");
  args.YVal = call.Real("YVal");
  args.YErrMethod = call.Int("YErrMethod");
  args.YErrFile = call.Text("YErrFile");
  args.YErrVal = call.Real("YErrVal");
  args.Match = call.Int("Match");
  const int slot = args.DatasetNo.value_or(1);
  if (const char* const message = LoadDatasetFromMacro(call.program.datasets, args)) {
    call.program.platform->ShowMessage(texts::kErrorTitle, message);
    return call.Nothing("'" + args.MasterFile.value_or("") + "': " + message);
  }
  ShowDatasets(call);
  const Dataset& dataset = *LoadedDataset(call, slot);
  std::string said = SlotText(slot) + " is '" + dataset.name + "', " +
                     kQuantityNames[static_cast<std::size_t>(dataset.Quantity)].shortName + ", " + RangeText(dataset);
  if (args.Quantity && !QuantityOfShortName(*args.Quantity)) {
    said += "; '" + *args.Quantity + "' is no Quantity and was ignored";
  }
  return call.Done(said);
}

MacroResult UnloadDatasetCommand(MacroCall& call) {
  const int slot = call.Int("DatasetNo").value_or(1);
  const bool loaded = LoadedDataset(call, slot) != nullptr;
  UnloadDatasetNo(call.program.datasets, call.program.notices, slot);
  ShowDatasets(call);
  return Outcome(call, slot, loaded, "unloaded");
}

MacroResult TransformDatasetCommand(MacroCall& call) {
  const int slot = call.Int("DatasetNo").value_or(1);
  const double scale = call.Real("Scale").value_or(1.0), shift = call.Real("Shift").value_or(0.0);
  TransformDatasetNo(call.program.datasets, call.program.notices, slot, scale, shift);
  return Outcome(call, slot, LoadedDataset(call, slot) != nullptr, "times " + TextG(scale) + " plus " + TextG(shift));
}

MacroResult ExportDatasetCommand(MacroCall& call) {
  const auto slot = call.Int("DatasetNo");
  const auto file = call.Text("File");
  if (!slot) return call.Nothing("DatasetNo is missing");
  if (!file) return call.Nothing("File is missing");
  const bool written = ExportDatasetNo(call.program.datasets, *slot, *file, call.Int("ExportFitted").value_or(0) != 0,
                                       call.Int("ExportErrorBars").value_or(0) != 0);
  if (!written) return call.Nothing("'" + *file + "' cannot be written");
  const bool loaded = LoadedDataset(call, *slot) != nullptr;
  return call.Done(SlotText(*slot) + (loaded ? " written to '" : " is not loaded; an empty file is at '") + *file +
                   "'");
}

MacroResult AddNoiseCommand(MacroCall& call) {
  const int slot = call.Int("DatasetNo").value_or(1);
  const auto sigma = call.Real("Sigma");
  if (!sigma) return call.Nothing("Sigma is missing");
  AddNoiseToDataset(call.program.datasets, call.program.notices, call.program.noise, slot, *sigma);
  return Outcome(call, slot, LoadedDataset(call, slot) != nullptr, "has noise of " + TextG(*sigma));
}

MacroResult CutDatasetCommand(MacroCall& call) {
  const int slot = call.Int("DatasetNo").value_or(1);
  CutDatasetNo(call.program.datasets, slot, call.Real("XMin"), call.Real("XMax"));
  ShowActivePoints(call.program.datasetManager, call.program.datasets, slot);
  const Dataset* const dataset = LoadedDataset(call, slot);
  return Outcome(call, slot, dataset != nullptr, dataset ? "cut to " + RangeText(*dataset) : "");
}

MacroResult SetDatasetQuantityCommand(MacroCall& call) {
  const auto slot = call.Int("DatasetNo");
  const auto key = call.Text("Quantity");
  if (!slot) return call.Nothing("DatasetNo is missing");
  if (!key) return call.Nothing("Quantity is missing");
  const auto quantity = QuantityOfShortName(*key);
  if (!quantity) return call.Nothing("'" + *key + "' is no Quantity");
  if (!LoadedDataset(call, *slot)) return Outcome(call, *slot, false, "");
  Dataset& dataset = *DatasetInSlot(call.program.datasets, *slot);
  dataset.Quantity = *quantity;
  ShowDatasets(call);
  NotifyGraphs(call.program.notices, GraphEvent::kDatasetChanged, dataset.id);
  NotifyFit(call.program.notices, FitNotice::kDatasetChanged, dataset.id);
  return call.Done(SlotText(*slot) + " is now " + kQuantityNames[static_cast<std::size_t>(*quantity)].shortName);
}

}  // namespace kalvex

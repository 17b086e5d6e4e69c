#include "core/text.h"
#include "datasets/dataset_operations.h"
#include "datasets/quantity.h"
#include "session/do.h"
#include "session/statement.h"

namespace kalvex {
namespace {

std::string SlotText(int slot) { return "dataset " + std::to_string(slot); }

Status NoSuchSlot(int slot) {
  return {StatusCode::kBadArgument, "DatasetNo should be 1 to " + std::to_string(kMaxDatasets) + ".", SlotText(slot)};
}

// The macro language counts these choices from 1.
template <class Method>
int NumberOf(Method method) {
  return static_cast<int>(method) + 1;
}

std::string LoadStatement(int slot, const DatasetSource& source) {
  const DatasetSource usual;
  Statement statement("LoadDataset");
  statement.Int("DatasetNo", slot).Text("MasterFile", source.MasterFile);
  if (source.Quantity) statement.Text("Quantity", NamesOf(*source.Quantity).shortName);
  // The dataset stores every setting, whether or not it is in use.
  const auto method = [&](const char* name, auto value, auto otherwise) {
    if (value != otherwise) statement.Int(name, NumberOf(value));
  };
  const auto real = [&](const char* name, double value, double otherwise) {
    if (!(value == otherwise)) statement.Real(name, value);
  };
  method("XMethod", source.XMethod, usual.XMethod);
  if (!source.XFile.empty()) statement.Text("XFile", source.XFile);
  real("XMin", source.XMin, usual.XMin);
  real("XMax", source.XMax, usual.XMax);
  if (source.XPts != usual.XPts) statement.Int("XPts", source.XPts);
  method("XGrid", source.XGrid, usual.XGrid);
  method("YMethod", source.YMethod, usual.YMethod);
  real("YVal", source.YVal, usual.YVal);
  method("YErrMethod", source.YErrMethod, usual.YErrMethod);
  if (!source.YErrFile.empty()) statement.Text("YErrFile", source.YErrFile);
  real("YErrVal", source.YErrVal, usual.YErrVal);
  method("Match", source.Match, usual.Match);
  return statement.Done();
}

}  // namespace

Status Session::LoadDataset(int slot, const DatasetSource& source) {
  Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  return Do({"load " + SlotText(slot), LoadStatement(slot, source), {}, kOnDatasets | kOnFiles},
            Pieces().Dataset(slot - 1), [&] {
              Status status = kalvex::LoadDataset(*dataset, source, tables_.datasets.nextId);
              Tell(ChangeKind::kDatasetLoaded, dataset->id, slot);
              return status;
            });
}

Status Session::ClearDataset(int slot) {
  Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  return Do({"clear " + SlotText(slot), {}, {}, kOnDatasets}, Pieces().Dataset(slot - 1), [&] {
    kalvex::ClearDataset(*dataset);
    Tell(ChangeKind::kDatasetUnloaded, 0, slot);
    return Status();
  });
}

Status Session::UnloadDataset(int slot) {
  if (!SlotOf(slot)) return NoSuchSlot(slot);
  return Do({"unload " + SlotText(slot),
             Statement("UnloadDataset").Int("DatasetNo", slot).Done(),
             {},
             kOnDatasets | kOnFit | kOnGraphs},
            Pieces().Dataset(slot - 1).Graphs(), [&] {
              EmptySlot(slot);
              return Status();
            });
}

Status Session::UnloadAllDatasets() {
  Pieces pieces;
  std::string statements;
  std::vector<int> slots;
  for (int slot = 1; slot <= kMaxDatasets; ++slot) {
    // A load that failed at its last check leaves rows without an id.
    if (SlotOf(slot)->points.empty()) continue;
    slots.push_back(slot);
    pieces.Dataset(slot - 1);
    statements += (statements.empty() ? "" : "\n") + Statement("UnloadDataset").Int("DatasetNo", slot).Done();
  }
  return Do({"unload all datasets", statements, {}, kOnDatasets | kOnFit | kOnGraphs}, pieces.Graphs(), [&] {
    for (const int slot : slots) EmptySlot(slot);
    return Status();
  });
}

void Session::EmptySlot(int slot) {
  Dataset& dataset = *SlotOf(slot);
  const std::uint32_t id = dataset.id;
  TellGraphs(GraphEvent::kDatasetUnloaded, id);
  DropTermsIf([&](const ChiSqTerm& term) { return term.datasetId == id; });
  kalvex::UnloadDataset(dataset);
  Tell(ChangeKind::kDatasetUnloaded, id, slot);
}

Status Session::TransformDataset(int slot, double scale, double shift) {
  Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  const auto statement = Statement("TransformDataset").Int("DatasetNo", slot).Real("Scale", scale).Real("Shift", shift);
  return Do({"scale " + SlotText(slot), statement.Done(), {}, kOnDatasets | kOnFit}, Pieces().Dataset(slot - 1), [&] {
    kalvex::TransformDataset(*dataset, scale, shift, tables_.fit.options.SkipInvalid);
    TellGraphs(GraphEvent::kDatasetChanged, dataset->id);
    TellFitOfDataset();
    Tell(ChangeKind::kDatasetChanged, dataset->id, slot);
    return Status();
  });
}

Status Session::AddNoise(int slot, double sigma) {
  Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  return Do({"add noise to " + SlotText(slot),
             Statement("AddNoise").Int("DatasetNo", slot).Real("Sigma", sigma).Done(),
             {},
             kOnDatasets | kOnFit},
            Pieces().Dataset(slot - 1).Noise(), [&] {
              kalvex::AddNoise(*dataset, tables_.noise, sigma);
              TellGraphs(GraphEvent::kForcedUpdate, dataset->id);
              const std::uint32_t id = dataset->id;
              DropTermsIf([&](const ChiSqTerm& term) { return term.datasetId == id; });
              Tell(ChangeKind::kDatasetChanged, id, slot);
              return Status();
            });
}

Status Session::CutDataset(int slot, std::optional<double> xMin, std::optional<double> xMax, Heard heard) {
  Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  auto statement = Statement("CutDataset").Int("DatasetNo", slot).Real("XMin", xMin).Real("XMax", xMax);
  statement.RefuseIf(heard == Heard::kAtOnce && tables_.fitFollows);  // the fit of a macro hears of it later
  const std::string label = "cut " + SlotText(slot);
  // Typing a limit character by character is one step of the history.
  return Do({label, statement.Done(), heard == Heard::kAtOnce ? label : "", kOnDatasets | kOnFit},
            Pieces().Dataset(slot - 1), [&] {
              kalvex::CutDataset(*dataset, xMin, xMax);
              Tell(ChangeKind::kDatasetChanged, dataset->id, slot);
              if (heard == Heard::kLater) return Status();
              TellGraphs(GraphEvent::kDatasetChanged, dataset->id);
              TellFitOfDataset();
              return Status();
            });
}

Status Session::SetDatasetQuantity(int slot, Quantity quantity, Heard heard) {
  Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  auto statement = Statement("SetDatasetQuantity").Int("DatasetNo", slot);
  statement.Text("Quantity", NamesOf(quantity).shortName);
  if (heard == Heard::kLater) statement.Int("Update", 0);
  return Do({"set Quantity of " + SlotText(slot), statement.Done(), {}, kOnDatasets | kOnFit},
            Pieces().Dataset(slot - 1), [&] {
              if (dataset->id == 0) return NotLoaded(slot);
              dataset->Quantity = quantity;
              Tell(ChangeKind::kDatasetChanged, dataset->id, slot);
              if (heard == Heard::kLater) return Status();
              TellGraphs(GraphEvent::kDatasetChanged, dataset->id);
              TellFitOfDataset();
              return Status();
            });
}

Status Session::ExportDataset(int slot, const std::string& file, bool onlyFitted, bool errorBars) {
  const Dataset* const dataset = SlotOf(slot);
  if (!dataset) return NoSuchSlot(slot);
  auto statement = Statement("ExportDataset").Int("DatasetNo", slot).Text("File", file);
  statement.Int("ExportFitted", onlyFitted).Int("ExportErrorBars", errorBars);
  return DoOutside({"export " + SlotText(slot), statement.Done(), {}, kOnFiles},
                   [&] { return kalvex::ExportDataset(*dataset, file, onlyFitted, errorBars); });
}

}  // namespace kalvex

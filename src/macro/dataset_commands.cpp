#include "macro/dataset_commands.h"

#include "core/text.h"
#include "datasets/quantity.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

std::string SlotText(int slot) { return "dataset " + std::to_string(slot); }

// An operation succeeds on an empty slot too. For such a slot the verbose text is "dataset N is not loaded".
MacroResult Outcome(MacroCall& call, const Status& status, int slot, bool isLoaded, const std::string& done) {
  return call.Told(status.Ok() && !isLoaded ? NotLoaded(slot) : status, SlotText(slot) + ' ' + done);
}

const char* QuantityText(Quantity quantity) { return NamesOf(quantity).shortName; }

std::string RangeText(const Dataset& dataset) {
  return std::to_string(dataset.nActive) + " of " + std::to_string(dataset.points.size()) + " points from " +
         TextG(dataset.CutMin) + " to " + TextG(dataset.CutMax);
}

// Converts a number that counts from 1 into a method. False if there is no such method.
template <class Method>
bool TakeMethod(std::optional<int> number, Method last, Method& method) {
  if (!number) return true;
  if (*number < 1 || *number - 1 > static_cast<int>(last)) return false;
  method = static_cast<Method>(*number - 1);
  return true;
}

// Returns null, or a text that says which number is wrong.
const char* TakeMethods(const LoadDatasetParams& p, DatasetSource& source) {
  if (!TakeMethod(p.XMethod, XSource::kGenerated, source.XMethod)) return "XMethod should be 1, 2 or 3.";
  if (!TakeMethod(p.XGrid, Grid::kLogarithmic, source.XGrid)) return "XGrid should be 1 or 2.";
  if (!TakeMethod(p.YMethod, YSource::kFixed, source.YMethod)) return "YMethod should be 1 or 2.";
  if (!TakeMethod(p.YErrMethod, ErrorSource::kFixed, source.YErrMethod)) return "YErrMethod should be 1, 2 or 3.";
  if (!TakeMethod(p.Match, Matching::kAveraging, source.Match)) return "Match should be 1 or 2.";
  return nullptr;
}

Status Load(Session& session, int slot, const LoadDatasetParams& p) {
  DatasetSource source;
  if (const char* const fault = TakeMethods(p, source)) return {StatusCode::kBadArgument, fault};
  SetIfGiven(source.MasterFile, p.MasterFile);
  SetIfGiven(source.XFile, p.XFile);
  SetIfGiven(source.YErrFile, p.YErrFile);
  SetIfGiven(source.XMin, p.XMin);
  SetIfGiven(source.XMax, p.XMax);
  SetIfGiven(source.XPts, p.XPts);
  SetIfGiven(source.YVal, p.YVal);
  SetIfGiven(source.YErrVal, p.YErrVal);
  if (p.Quantity) source.Quantity = QuantityOfShortName(*p.Quantity);
  return session.LoadDataset(slot, source);
}

}  // namespace

MacroResult DatasetManagerCommand(MacroCall& call, const PositionParams& p) {
  OpenDatasetManager(call.desk);
  PlaceIfGiven(p, call.desk.datasetManager);
  return call.Done("open");
}

MacroResult LoadDatasetCommand(MacroCall& call, const LoadDatasetParams& p) {
  const int slot = p.DatasetNo.value_or(1);
  if (const Status status = Load(call.session, slot, p); !status.Ok()) {
    call.session.GetPlatform().ShowMessage(texts::kErrorTitle, status.Text());
    return call.Nothing("'" + p.MasterFile.value_or("") + "': " + status.Text());
  }
  const Dataset& dataset = *call.session.FindDataset(slot);
  std::string said =
      SlotText(slot) + " is '" + dataset.name + "', " + QuantityText(dataset.Quantity) + ", " + RangeText(dataset);
  if (p.Quantity && !QuantityOfShortName(*p.Quantity)) said += "; '" + *p.Quantity + "' is not a Quantity, ignored";
  return call.Done(said);
}

MacroResult UnloadDatasetCommand(MacroCall& call, const DatasetNoParams& p) {
  const int slot = p.DatasetNo.value_or(1);
  const bool wasLoaded = call.session.FindDataset(slot) != nullptr;
  return Outcome(call, call.session.UnloadDataset(slot), slot, wasLoaded, "unloaded");
}

MacroResult TransformDatasetCommand(MacroCall& call, const TransformDatasetParams& p) {
  const int slot = p.DatasetNo.value_or(1);
  const double scale = p.Scale.value_or(1.0), shift = p.Shift.value_or(0.0);
  const Status status = call.session.TransformDataset(slot, scale, shift);
  return Outcome(call, status, slot, call.session.FindDataset(slot) != nullptr,
                 "times " + TextG(scale) + " plus " + TextG(shift));
}

MacroResult ExportDatasetCommand(MacroCall& call, const ExportDatasetParams& p) {
  if (!p.DatasetNo) return call.Missing("DatasetNo");
  if (!p.File) return call.Missing("File");
  const Status status = call.session.ExportDataset(*p.DatasetNo, *p.File, FlagOf(p.ExportFitted).value_or(false),
                                                   FlagOf(p.ExportErrorBars).value_or(false));
  const bool isLoaded = call.session.FindDataset(*p.DatasetNo) != nullptr;
  return call.Told(status, SlotText(*p.DatasetNo) +
                               (isLoaded ? " written to '" : " is not loaded; an empty file was written: '") + *p.File +
                               "'");
}

MacroResult AddNoiseCommand(MacroCall& call, const AddNoiseParams& p) {
  if (!p.Sigma) return call.Missing("Sigma");
  const int slot = p.DatasetNo.value_or(1);
  const Status status = call.session.AddNoise(slot, *p.Sigma);
  return Outcome(call, status, slot, call.session.FindDataset(slot) != nullptr,
                 "has additional noise of sigma " + TextG(*p.Sigma));
}

MacroResult CutDatasetCommand(MacroCall& call, const CutDatasetParams& p) {
  const int slot = p.DatasetNo.value_or(1);
  const Status status = call.session.CutDataset(slot, p.XMin, p.XMax, Heard::kLater);
  const Dataset* const dataset = call.session.FindDataset(slot);
  return Outcome(call, status, slot, dataset != nullptr, dataset ? "cut to " + RangeText(*dataset) : "");
}

MacroResult SetDatasetQuantityCommand(MacroCall& call, const SetDatasetQuantityParams& p) {
  if (!p.DatasetNo) return call.Missing("DatasetNo");
  if (!p.Quantity) return call.Missing("Quantity");
  const auto quantity = QuantityOfShortName(*p.Quantity);
  if (!quantity) return call.Nothing("'" + *p.Quantity + "' is not a Quantity");
  const Heard heard = FlagOf(p.Update).value_or(true) ? Heard::kAtOnce : Heard::kLater;
  return call.Told(call.session.SetDatasetQuantity(*p.DatasetNo, *quantity, heard),
                   SlotText(*p.DatasetNo) + " is now " + QuantityText(*quantity));
}

}  // namespace kalvex

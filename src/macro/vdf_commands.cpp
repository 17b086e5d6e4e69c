#include "macro/vdf_commands.h"

#include <array>

#include "core/text.h"
#include "macro/named_model.h"
#include "session/session.h"

namespace kalvex {
namespace {

std::string VdfText(const Model& model) {
  const VarDielFunc& vdf = model.vdf;
  if (vdf.mesh.empty()) return ModelText(model.number) + " has no mesh";
  return ModelText(model.number) + " has a mesh of " + std::to_string(vdf.mesh.size()) + " points from " +
         TextG(vdf.mesh.front().x) + " to " + TextG(vdf.mesh.back().x) + (vdf.On ? ", on" : ", off") +
         (vdf.KK ? ", constrained" : ", free") + (vdf.FitActive ? ", fitted" : ", not fitted");
}

VdfSource SourceOf(const Session& session, std::optional<int> slot, std::optional<int> every2nd) {
  const Dataset* const dataset = slot ? DatasetInSlot(session.Datasets(), *slot) : nullptr;
  if (!dataset) return {};
  return {static_cast<std::int64_t>(dataset->id), FlagOf(every2nd).value_or(false)};
}

// Makes a mesh from the first loaded dataset.
Status InitFromFirstDataset(Session& session, std::uint32_t model) {
  const auto ids = ListDatasetIds(session.Datasets());
  std::array<VdfSource, 3> sources;
  if (!ids.empty()) sources[0].datasetId = ids.front();
  return session.InitMesh(model, sources, true, true, true);
}

Status PressKey(Session& session, std::uint32_t model, const std::string& key) {
  if (EqualsIgnoringCase(key, "F4")) return session.ToggleMeshOn(model);
  if (EqualsIgnoringCase(key, "F5")) return session.ToggleMeshKK(model);
  if (EqualsIgnoringCase(key, "F6")) return InitFromFirstDataset(session, model);
  if (EqualsIgnoringCase(key, "F7")) return session.ToggleMeshFitActive(model);
  return {StatusCode::kBadArgument, "'" + key + "' is not one of F4, F5, F6, F7"};
}

}  // namespace

MacroResult SaveVarDielFuncCommand(MacroCall& call, const ModelFileParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo.value_or(1));
  if (!model) return MacroResult::kNext;
  const std::string file = p.File.value_or("");
  return call.Told(call.session.SaveMesh(model->number, file), VdfText(*model) + ", saved to '" + file + "'");
}

MacroResult LoadVarDielFuncCommand(MacroCall& call, const ModelFileParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo.value_or(1));
  if (!model) return MacroResult::kNext;
  const Status status = call.session.LoadMesh(model->number, p.File.value_or(""));
  return call.Told(status, VdfText(*model));
}

MacroResult FreeShapeCommand(MacroCall& call, const FreeShapeParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  if (!p.Key) return call.Missing("Key");
  const Status status = PressKey(call.session, model->number, *p.Key);
  return call.Told(status, VdfText(*model));
}

MacroResult VarDielFuncCommand(MacroCall& call, const VarDielFuncParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  Session& session = call.session;
  const auto on = FlagOf(p.On), kk = FlagOf(p.KK), fitActive = FlagOf(p.FitActive);
  if (!p.Source1DatasetNo && !p.Source2DatasetNo && !p.Source3DatasetNo) {
    const Status status = session.SwitchMesh(model->number, on, kk, fitActive);
    return call.Told(status, VdfText(*model));
  }
  const std::array<VdfSource, 3> sources = {SourceOf(session, p.Source1DatasetNo, p.Source1Every2nd),
                                            SourceOf(session, p.Source2DatasetNo, p.Source2Every2nd),
                                            SourceOf(session, p.Source3DatasetNo, p.Source3Every2nd)};
  const Status status =
      session.InitMesh(model->number, sources, on.value_or(true), kk.value_or(true), fitActive.value_or(true));
  return call.Told(status, VdfText(*model));
}

MacroResult MakeVarDielFuncPositiveCommand(MacroCall& call, const ModelNoParams& p) {
  const Model* const model = NeededModel(call, p.ModelNo);
  if (!model) return MacroResult::kNext;
  const Status status = call.session.MakeMeshPositive(model->number);
  if (status.Ok() && model->vdf.mesh.empty()) return call.Nothing(VdfText(*model));
  return call.Told(status, VdfText(*model));
}

}  // namespace kalvex

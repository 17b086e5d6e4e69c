#include <array>

#include "core/text.h"
#include "evaluation/eps_sum.h"
#include "files/vdf_file.h"
#include "macro/handlers.h"
#include "macro/named_model.h"
#include "program/program.h"
#include "records/vdf_mesh.h"
#include "windows/redraw.h"

namespace kalvex {
namespace {

std::string VdfText(const Model& model) {
  const VarDielFunc& vdf = model.vdf;
  if (vdf.mesh.empty()) return ModelText(static_cast<int>(model.number)) + " has no mesh";
  return ModelText(static_cast<int>(model.number)) + " has a mesh of " + std::to_string(vdf.mesh.size()) +
         " points from " + TextG(vdf.mesh.front().x) + " to " + TextG(vdf.mesh.back().x) + (vdf.On ? ", on" : ", off") +
         (vdf.KK ? ", constrained" : ", free") + (vdf.FitActive ? ", fitted" : ", not fitted");
}

MacroResult Refreshed(MacroCall& call, Model& model) {
  RefreshModelWindow(call.program.notices, model);
  return call.Done(VdfText(model));
}

struct SourceNames {
  const char* datasetNo;
  const char* every2nd;
};
constexpr std::array<SourceNames, 3> kSources = {{{"Source1DatasetNo", "Source1Every2nd"},
                                                  {"Source2DatasetNo", "Source2Every2nd"},
                                                  {"Source3DatasetNo", "Source3Every2nd"}}};

VdfSource SourceOf(const MacroCall& call, const SourceNames& names) {
  const auto slot = call.Int(names.datasetNo);
  if (!slot) return {};
  const Dataset* const dataset = DatasetInSlot(call.program.datasets, *slot);
  return {dataset ? static_cast<std::int64_t>(dataset->id) : -1, call.Int(names.every2nd).value_or(0) != 0};
}

void InitMesh(MacroCall& call, VarDielFunc& vdf, bool on, bool kk, bool fitActive) {
  vdf.initOn = on ? 1 : 0;
  vdf.initKK = kk ? 1 : 0;
  vdf.initFitActive = fitActive ? 1 : 0;
  InitVdfMesh(vdf, call.program.datasets);
}

// A new mesh from the first dataset there is, without asking.
void InitFromFirstDataset(MacroCall& call, VarDielFunc& vdf) {
  const auto ids = ListDatasetIds(call.program.datasets);
  vdf.source = {};
  if (!ids.empty()) vdf.source[0].datasetId = ids.front();
  InitMesh(call, vdf, true, true, true);
}

bool Differs(std::optional<int> wanted, std::uint32_t present) { return wanted && (*wanted != 0) != (present != 0); }

}  // namespace

MacroResult SaveVarDielFuncCommand(MacroCall& call) {
  const int number = call.Int("ModelNo").value_or(1);
  const std::string file = call.Text("File").value_or("");
  const Model* const model = ModelOf(call, number);
  if (!model) return NoModel(call, number);
  if (SaveVdf(model->vdf, file) != 0) return call.Nothing("'" + file + "' cannot be written");
  return call.Done(VdfText(*model) + ", saved to '" + file + "'");
}

MacroResult LoadVarDielFuncCommand(MacroCall& call) {
  const int number = call.Int("ModelNo").value_or(1);
  const std::string file = call.Text("File").value_or("");
  Model* const model = ModelOf(call, number);
  if (!model) return NoModel(call, number);
  if (LoadVdf(model->vdf, file) != 0) return call.Nothing("'" + file + "' cannot be opened or is no such file");
  return Refreshed(call, *model);
}

MacroResult FreeShapeCommand(MacroCall& call) {
  const auto key = call.Text("Key");
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  if (!key) return call.Nothing("Key is missing");
  if (EqualsIgnoringCase(*key, "F4")) {
    ToggleVdfOn(model->vdf);
  } else if (EqualsIgnoringCase(*key, "F5")) {
    ToggleVdfKK(model->vdf);
  } else if (EqualsIgnoringCase(*key, "F6")) {
    InitFromFirstDataset(call, model->vdf);
  } else if (EqualsIgnoringCase(*key, "F7")) {
    ToggleVdfFitActive(model->vdf);
  } else {
    return call.Nothing("'" + *key + "' is none of F4, F5, F6, F7");
  }
  return Refreshed(call, *model);
}

MacroResult VarDielFuncCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  VarDielFunc& vdf = model->vdf;
  const auto kk = call.Int("KK"), on = call.Int("On"), fitActive = call.Int("FitActive");
  bool anySource = false;
  for (const SourceNames& names : kSources) anySource = anySource || call.Int(names.datasetNo).has_value();
  if (anySource) {
    for (std::size_t k = 0; k < kSources.size(); ++k) vdf.source[k] = SourceOf(call, kSources[k]);
    InitMesh(call, vdf, on.value_or(1) != 0, kk.value_or(1) != 0, fitActive.value_or(1) != 0);
  } else {
    if (Differs(kk, vdf.KK)) ToggleVdfKK(vdf);
    if (Differs(on, vdf.On)) ToggleVdfOn(vdf);
    if (Differs(fitActive, vdf.FitActive)) ToggleVdfFitActive(vdf);
  }
  return Refreshed(call, *model);
}

MacroResult MakeVarDielFuncPositiveCommand(MacroCall& call) {
  Model* const model = NeededModel(call);
  if (!model) return MacroResult::kNext;
  if (model->vdf.mesh.empty()) return call.Nothing(VdfText(*model));
  MakeVdfPositive(call.program.eval, *model);
  return Refreshed(call, *model);
}

}  // namespace kalvex

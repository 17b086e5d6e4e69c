#include "core/text.h"
#include "evaluation/eps_sum.h"
#include "files/vdf_file.h"
#include "records/vdf_mesh.h"
#include "session/do.h"
#include "session/statement.h"

namespace kalvex {
namespace {

std::string ModelText(std::uint32_t number) { return "model " + std::to_string(number); }

Operation OnMesh(const char* what, std::uint32_t number, std::string statement) {
  return {std::string(what) + " of " + ModelText(number), std::move(statement), {}, kOnModels | kOnFit};
}

std::string KeyStatement(std::uint32_t number, const char* key) {
  return Statement("FreeShape").Int("ModelNo", number).Text("Key", key).Done();
}

// A source without a dataset has a slot outside the table: with a source the statement makes a mesh, otherwise it only
// sets the switches.
void AddSource(Statement& statement, const std::string& name, const VdfSource& source, const DatasetTable& datasets) {
  const bool none = source.datasetId < 0;
  const int slot = none ? 0 : SlotOfDataset(datasets, static_cast<std::uint32_t>(source.datasetId));
  statement.Int(name + "DatasetNo", slot).Int(name + "Every2nd", source.every2nd);
  statement.RefuseIf(none ? source.every2nd : slot == 0);
}

bool Differs(std::optional<bool> wanted, std::uint32_t present) { return wanted && *wanted != (present != 0); }

}  // namespace

Status Session::InitMesh(std::uint32_t number, const std::array<VdfSource, 3>& sources, bool on, bool kk,
                         bool fitActive) {
  Statement statement("VarDielFunc");
  statement.Int("ModelNo", number);
  for (std::size_t k = 0; k < sources.size(); ++k) {
    AddSource(statement, "Source" + std::to_string(k + 1), sources[k], tables_.datasets);
  }
  statement.Int("KK", kk).Int("On", on).Int("FitActive", fitActive);
  return ChangeModel(number, OnMesh("new mesh", number, statement.Done()), Changed::kValues, [&](Model& model) {
    model.vdf.source = sources;
    model.vdf.initOn = on ? 1 : 0;
    model.vdf.initKK = kk ? 1 : 0;
    model.vdf.initFitActive = fitActive ? 1 : 0;
    return InitVdfMesh(model.vdf, tables_.datasets);
  });
}

Status Session::ToggleMeshOn(std::uint32_t number) {
  return ChangeModel(number, OnMesh("on/off switch of the mesh", number, KeyStatement(number, "F4")), Changed::kValues,
                     [](Model& model) { return ToggleVdfOn(model.vdf), Status(); });
}

Status Session::ToggleMeshKK(std::uint32_t number) {
  return ChangeModel(number, OnMesh("KK switch of the mesh", number, KeyStatement(number, "F5")), Changed::kValues,
                     [](Model& model) { return ToggleVdfKK(model.vdf), Status(); });
}

Status Session::ToggleMeshFitActive(std::uint32_t number) {
  return ChangeModel(number, OnMesh("fit switch of the mesh", number, KeyStatement(number, "F7")), Changed::kValues,
                     [](Model& model) { return ToggleVdfFitActive(model.vdf), Status(); });
}

Status Session::MakeMeshPositive(std::uint32_t number) {
  const std::string statement = Statement("MakeVarDielFuncPositive").Int("ModelNo", number).Done();
  return ChangeModel(number, OnMesh("positive values of the mesh", number, statement), Changed::kValues,
                     [&](Model& model) { return MakeVdfPositive(eval_, model), Status(); });
}

Status Session::SwitchMesh(std::uint32_t number, std::optional<bool> on, std::optional<bool> kk,
                           std::optional<bool> fitActive) {
  Statement statement("VarDielFunc");
  statement.Int("ModelNo", number).Flag("KK", kk).Flag("On", on).Flag("FitActive", fitActive);
  return ChangeModel(number, OnMesh("switches of the mesh", number, statement.Done()), Changed::kValues,
                     [&](Model& model) {
                       if (Differs(kk, model.vdf.KK)) ToggleVdfKK(model.vdf);
                       if (Differs(on, model.vdf.On)) ToggleVdfOn(model.vdf);
                       if (Differs(fitActive, model.vdf.FitActive)) ToggleVdfFitActive(model.vdf);
                       return Status();
                     });
}

Status Session::SaveMesh(std::uint32_t number, const std::string& file) {
  const Model* const model = FindModel(number);
  if (!model) return NoSuchModel(number);
  return DoOutside({"save the mesh of " + ModelText(number),
                    Statement("SaveVarDielFunc").Int("ModelNo", number).Text("File", file).Done(),
                    {},
                    kOnFiles},
                   [&] { return SaveVdf(model->vdf, file); });
}

Status Session::LoadMesh(std::uint32_t number, const std::string& file) {
  const std::string statement = Statement("LoadVarDielFunc").Int("ModelNo", number).Text("File", file).Done();
  return ChangeModel(number, OnMesh("load the mesh", number, statement), Changed::kValues,
                     [&](Model& model) { return LoadVdf(model.vdf, file); });
}

}  // namespace kalvex

#include "windows/vdf_dialog.h"

#include "records/model_table.h"
#include "records/vdf_mesh.h"
#include "windows/desk.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

VdfSource SourceOf(const VdfDialog& dialog, std::size_t list) {
  const std::size_t choice = dialog.choice[list];
  const bool chosen = choice >= 1 && choice <= dialog.datasets.size();
  return {chosen ? static_cast<std::int64_t>(dialog.datasets[choice - 1]) : -1, dialog.every2nd[list]};
}

Model* CloseDialog(const WindowDesk& desk) {
  const bool wasOpen = desk.vdfDialog.open;
  desk.vdfDialog.open = false;
  return wasOpen ? GetModelByNumber(desk.params, desk.vdfDialog.model) : nullptr;
}

}  // namespace

void OpenVdfDialog(const WindowDesk& desk, const Model& model) {
  VdfDialog& dialog = desk.vdfDialog;
  dialog = {};
  dialog.open = true;
  dialog.model = model.number;
  dialog.datasets = ListDatasetIds(desk.datasets);
  dialog.entries.emplace_back();
  for (const std::uint32_t id : dialog.datasets) dialog.entries.push_back(GetDatasetById(desk.datasets, id)->name);
  if (!dialog.datasets.empty()) dialog.choice[0] = 1;
}

void AcceptVdfDialog(const WindowDesk& desk) {
  if (IsFrozen(desk)) return;
  Model* const model = CloseDialog(desk);
  if (!model) return;
  const VdfDialog& dialog = desk.vdfDialog;
  VarDielFunc& vdf = model->vdf;
  for (std::size_t list = 0; list < vdf.source.size(); ++list) vdf.source[list] = SourceOf(dialog, list);
  vdf.initKK = dialog.kk ? 1 : 0;
  vdf.initOn = dialog.on ? 1 : 0;
  vdf.initFitActive = dialog.active ? 1 : 0;
  InitVdfMesh(vdf, desk.datasets);
  RefreshAndSelect(desk, *model);
}

void CancelVdfDialog(const WindowDesk& desk) {
  if (Model* const model = CloseDialog(desk)) RefreshAndSelect(desk, *model, IsFrozen(desk));
}

}  // namespace kalvex

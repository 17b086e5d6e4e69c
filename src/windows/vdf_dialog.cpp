#include "windows/vdf_dialog.h"

#include "windows/desk.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

VdfSource SourceOf(const VdfDialog& dialog, std::size_t list) {
  const std::size_t choice = dialog.choice[list];
  const bool chosen = choice >= 1 && choice <= dialog.datasets.size();
  return {chosen ? static_cast<std::int64_t>(dialog.datasets[choice - 1]) : -1, dialog.every2nd[list]};
}

std::array<VdfSource, 3> SourcesOf(const VdfDialog& dialog) {
  return {SourceOf(dialog, 0), SourceOf(dialog, 1), SourceOf(dialog, 2)};
}

void SelectInModel(Desk& desk, std::uint32_t number) {
  if (const Model* const model = desk.session.FindModel(number)) SelectUnderCursor(desk, *model);
}

}  // namespace

void OpenVdfDialog(Desk& desk, const Model& model) {
  VdfDialog& dialog = desk.vdfDialog;
  dialog = {};
  dialog.open = true;
  dialog.model = model.number;
  dialog.datasets = ListDatasetIds(desk.session.Datasets());
  dialog.entries.emplace_back();
  for (const std::uint32_t id : dialog.datasets) {
    dialog.entries.push_back(GetDatasetById(desk.session.Datasets(), id)->name);
  }
  if (!dialog.datasets.empty()) dialog.choice[0] = 1;
}

void AcceptVdfDialog(Desk& desk) {
  VdfDialog& dialog = desk.vdfDialog;
  if (!dialog.open) return;
  const Status made = desk.session.InitMesh(dialog.model, SourcesOf(dialog), dialog.on, dialog.kk, dialog.active);
  if (made.Code() == StatusCode::kBusy) return;
  dialog.open = false;
  SelectInModel(desk, dialog.model);
}

void CancelVdfDialog(Desk& desk) {
  VdfDialog& dialog = desk.vdfDialog;
  if (!dialog.open) return;
  dialog.open = false;
  SelectInModel(desk, dialog.model);
  // An empty change notifies the fit of the model.
  if (!desk.session.SwitchMesh(dialog.model, {}, {}, {}).Ok()) desk.session.RedrawModel(dialog.model);
}

}  // namespace kalvex

#include "windows/dataset_manager.h"

#include "core/text.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

// A load that failed at its last check leaves rows without an id. The user can unload those too.
bool IsLoaded(const Dataset& dataset) { return !dataset.points.empty(); }

bool HasRow(int slot) { return slot >= 1 && slot <= kManagerRows; }

ManagerRow RowOf(const Dataset& dataset) {
  ManagerRow row;
  row.button = IsLoaded(dataset) ? texts::kUnloadButton : texts::kLoadButton;
  if (!IsLoaded(dataset)) return row;
  row.name = dataset.name;
  row.quantity = dataset.Quantity;
  row.cutMin = TextG(dataset.CutMin);
  row.cutMax = TextG(dataset.CutMax);
  row.points = std::to_string(dataset.nActive);
  row.enabled = true;
  return row;
}

ManagerRow& RowAt(DatasetManager& manager, int slot) { return manager.rows[static_cast<std::size_t>(slot - 1)]; }

bool HoldsRows(const Desk& desk, int slot) {
  return HasRow(slot) && IsLoaded(*DatasetInSlot(desk.session.Datasets(), slot));
}

void Refresh(Desk& desk) { RefreshDatasetManager(desk.datasetManager, desk.session.Datasets()); }

// The field keeps the text exactly as typed.
template <class Cut>
void TypeLimit(Desk& desk, int slot, std::string_view text, std::string ManagerRow::*field, Cut cut) {
  if (!HoldsRows(desk, slot)) return;
  std::string& shown = RowAt(desk.datasetManager, slot).*field;
  if (shown != text && cut(RealOf(text)).Ok()) shown = text;
}

}  // namespace

void OpenDatasetManager(Desk& desk) {
  desk.datasetManager.open = true;
  desk.datasetManager.wantsFront = true;
  Refresh(desk);
}

void CloseDatasetManager(Desk& desk) {
  CancelLoadDialog(desk);
  desk.datasetManager.open = false;
}

void RefreshDatasetManager(DatasetManager& manager, const DatasetTable& datasets) {
  if (!manager.open) return;
  manager.unloadAll = false;
  for (const Dataset& dataset : datasets.slots) manager.unloadAll = manager.unloadAll || IsLoaded(dataset);
  for (int slot = 1; slot <= kManagerRows; ++slot) {
    RowAt(manager, slot) = RowOf(*DatasetInSlot(datasets, slot));
  }
}

void RefreshDatasetRow(DatasetManager& manager, const DatasetTable& datasets, int slot) {
  if (!manager.open || !HasRow(slot)) return;
  const Dataset& dataset = *DatasetInSlot(datasets, slot);
  if (!IsLoaded(dataset)) return;
  ManagerRow& row = RowAt(manager, slot);
  row.points = std::to_string(dataset.nActive);
  row.quantity = dataset.Quantity;
}

void PressDatasetButton(Desk& desk, int slot) {
  if (!HasRow(slot)) return;
  HoldsRows(desk, slot) ? desk.session.UnloadDataset(slot).Ignore() : OpenLoadDialog(desk, slot);
  Refresh(desk);
}

void PressUnloadAll(Desk& desk) {
  desk.session.UnloadAllDatasets().Ignore();
  Refresh(desk);
}

void ChooseQuantity(Desk& desk, int slot, Quantity quantity) {
  if (HoldsRows(desk, slot)) desk.session.SetDatasetQuantity(slot, quantity, Heard::kLater).Ignore();
}

void TypeCutMin(Desk& desk, int slot, std::string_view text) {
  TypeLimit(desk, slot, text, &ManagerRow::cutMin,
            [&](double min) { return desk.session.CutDataset(slot, min, {}, Heard::kAtOnce); });
}

void TypeCutMax(Desk& desk, int slot, std::string_view text) {
  TypeLimit(desk, slot, text, &ManagerRow::cutMax,
            [&](double max) { return desk.session.CutDataset(slot, {}, max, Heard::kAtOnce); });
}

void LeaveCutField(Desk& desk) { desk.session.EndGesture(); }

}  // namespace kalvex

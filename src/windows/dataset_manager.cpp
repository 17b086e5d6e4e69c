#include "windows/dataset_manager.h"

#include "core/text.h"
#include "datasets/dataset_operations.h"
#include "datasets/quantity.h"
#include "windows/desk.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

// A load that failed at its last check leaves rows without an id: the user can unload those too.
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

// The loaded dataset of a slot that has a row and may be changed now, null if there is none.
Dataset* DatasetToEdit(const WindowDesk& desk, int slot) {
  if (IsFrozen(desk) || !HasRow(slot)) return nullptr;
  Dataset* const dataset = DatasetInSlot(desk.datasets, slot);
  return IsLoaded(*dataset) ? dataset : nullptr;
}

ManagerRow& RowOfSlot(const WindowDesk& desk, int slot) {
  return desk.datasetManager.rows[static_cast<std::size_t>(slot - 1)];
}

void TypeLimit(const WindowDesk& desk, int slot, std::string_view text, std::string ManagerRow::*field,
               double Dataset::*limit) {
  Dataset* const dataset = DatasetToEdit(desk, slot);
  if (!dataset || RowOfSlot(desk, slot).*field == text) return;
  RowOfSlot(desk, slot).*field = text;
  dataset->*limit = RealOf(text);
  ComputeActiveRange(*dataset);
  ShowActivePoints(desk.datasetManager, desk.datasets, slot);
  NotifyGraphs(desk.notices, GraphEvent::kDatasetChanged, dataset->id);
  NotifyFit(desk.notices, FitNotice::kDatasetChanged, dataset->id);
}

}  // namespace

void OpenDatasetManager(DatasetManager& manager, const DatasetTable& datasets) {
  manager.open = true;
  manager.wantsFront = true;
  RefreshDatasetManager(manager, datasets);
}

void CloseDatasetManager(const WindowDesk& desk) {
  CancelLoadDialog(desk);
  desk.datasetManager.open = false;
}

void RefreshDatasetManager(DatasetManager& manager, const DatasetTable& datasets) {
  if (!manager.open) return;
  manager.unloadAll = false;
  for (const Dataset& dataset : datasets.slots) manager.unloadAll = manager.unloadAll || IsLoaded(dataset);
  for (int slot = 1; slot <= kManagerRows; ++slot) {
    manager.rows[static_cast<std::size_t>(slot - 1)] = RowOf(*DatasetInSlot(datasets, slot));
  }
}

void ShowActivePoints(DatasetManager& manager, const DatasetTable& datasets, int slot) {
  if (!manager.open || !HasRow(slot)) return;
  const Dataset& dataset = *DatasetInSlot(datasets, slot);
  if (IsLoaded(dataset)) manager.rows[static_cast<std::size_t>(slot - 1)].points = std::to_string(dataset.nActive);
}

void PressDatasetButton(const WindowDesk& desk, int slot) {
  if (IsFrozen(desk) || !HasRow(slot)) return;
  if (DatasetToEdit(desk, slot)) {
    UnloadDatasetNo(desk.datasets, desk.notices, slot);
  } else {
    OpenLoadDialog(desk, slot);
  }
  RefreshDatasetManager(desk.datasetManager, desk.datasets);
}

void PressUnloadAll(const WindowDesk& desk) {
  if (IsFrozen(desk)) return;
  for (int slot = 1; slot <= kMaxDatasets; ++slot) {
    if (IsLoaded(*DatasetInSlot(desk.datasets, slot))) UnloadDatasetNo(desk.datasets, desk.notices, slot);
  }
  RefreshDatasetManager(desk.datasetManager, desk.datasets);
}

void ChooseQuantity(const WindowDesk& desk, int slot, int quantity) {
  Dataset* const dataset = DatasetToEdit(desk, slot);
  if (!dataset || quantity < 0 || quantity >= kQuantityCount) return;
  dataset->Quantity = quantity;
  RowOfSlot(desk, slot).quantity = quantity;
}

void TypeCutMin(const WindowDesk& desk, int slot, std::string_view text) {
  TypeLimit(desk, slot, text, &ManagerRow::cutMin, &Dataset::CutMin);
}

void TypeCutMax(const WindowDesk& desk, int slot, std::string_view text) {
  TypeLimit(desk, slot, text, &ManagerRow::cutMax, &Dataset::CutMax);
}

}  // namespace kalvex

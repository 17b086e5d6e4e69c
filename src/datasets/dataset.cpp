#include "datasets/dataset.h"

#include <algorithm>

namespace kalvex {
namespace {

template <class Table>
auto SlotAt(Table& table, int slot) -> decltype(table.slots.data()) {
  return slot >= 1 && slot <= kMaxDatasets ? &table.slots[static_cast<std::size_t>(slot - 1)] : nullptr;
}

template <class Table>
auto FindById(Table& table, std::uint32_t id) -> decltype(table.slots.data()) {
  const auto found =
      std::find_if(table.slots.begin(), table.slots.end(), [&](const Dataset& dataset) { return dataset.id == id; });
  return found == table.slots.end() ? nullptr : &*found;
}

// Bisects the rows until the bounds are neighbours. x stays below the limit at the lower bound.
struct Bounds {
  int lo;
  int hi;
};
Bounds Bisect(const std::vector<DataRow>& points, double limit) {
  Bounds bounds{0, static_cast<int>(points.size()) - 1};
  while (bounds.hi - bounds.lo > 1) {
    const int middle = bounds.lo + (bounds.hi - bounds.lo) / 2;
    (points[static_cast<std::size_t>(middle)].x < limit ? bounds.lo : bounds.hi) = middle;
  }
  return bounds;
}

}  // namespace

ActiveRows ActiveRowsOf(const Dataset& dataset) {
  const int count = static_cast<int>(dataset.points.size());
  const int from = std::clamp(dataset.firstActive, 0, count);
  return {from, std::clamp(dataset.lastActive + 1, from, count)};
}

Dataset* DatasetInSlot(DatasetTable& table, int slot) { return SlotAt(table, slot); }
const Dataset* DatasetInSlot(const DatasetTable& table, int slot) { return SlotAt(table, slot); }
const Dataset* GetDatasetById(const DatasetTable& table, std::uint32_t id) { return FindById(table, id); }
Dataset* GetDatasetById(DatasetTable& table, std::uint32_t id) { return FindById(table, id); }

int SlotOfDataset(const DatasetTable& table, std::uint32_t id) {
  const Dataset* const dataset = GetDatasetById(table, id);
  return dataset ? static_cast<int>(dataset - table.slots.data()) + 1 : 0;
}

int CountDatasets(const DatasetTable& table) { return static_cast<int>(ListDatasetIds(table).size()); }

std::vector<std::uint32_t> ListDatasetIds(const DatasetTable& table) {
  std::vector<std::uint32_t> ids;
  for (const Dataset& dataset : table.slots) {
    if (dataset.id != 0) ids.push_back(dataset.id);
  }
  return ids;
}

std::uint32_t FirstDatasetId(const DatasetTable& table) { return table.slots.front().id; }

void ClearDataset(Dataset& dataset) { dataset = Dataset{}; }

void UnloadDataset(Dataset& dataset) {
  if (dataset.id != 0 || !dataset.points.empty()) ClearDataset(dataset);
}

void ComputeActiveRange(Dataset& dataset) {
  const auto& points = dataset.points;
  if (points.empty()) return;
  const int count = static_cast<int>(points.size());
  if (dataset.CutMin <= points.front().x) {
    dataset.firstActive = 0;
  } else if (dataset.CutMin > points.back().x) {
    dataset.firstActive = count;
  } else {
    dataset.firstActive = Bisect(points, dataset.CutMin).hi;
  }
  if (dataset.CutMax < points.front().x) {
    dataset.lastActive = -1;
  } else if (dataset.CutMax >= points.back().x) {
    dataset.lastActive = count - 1;
  } else {
    dataset.lastActive = Bisect(points, dataset.CutMax).lo;
  }
  dataset.nActive = std::max(0, dataset.lastActive - dataset.firstActive + 1);
}

}  // namespace kalvex

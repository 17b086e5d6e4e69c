#include "records/model_rows.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace kalvex {
namespace {

using Row = std::array<ModelParam, kColumns>;

bool IsOpen(const Model* model) { return model != nullptr && model->number != 0; }

bool Holds(const Model* model, int row, int column) {
  return IsOpen(model) && row >= 0 && row < RowCount(*model) && column >= 0 && column < kColumns;
}

ModelParam DefaultElement(int column) {
  struct Element {
    const char* name;
    double value;
  };
  constexpr std::array<Element, kColumns> kElements = {
      {{"TO frequency", 100.0}, {"Plasma frequency", 100.0}, {"Linewidth", 10.0}}};
  const Element& element = kElements[static_cast<std::size_t>(column)];
  ModelParam param;
  SetName(param, element.name);
  param.value = element.value;
  param.adjustable = 1;
  param.max = 100000.0;
  return param;
}

auto RowBegin(Model& model, int row) { return model.rows.begin() + row * kColumns; }

void SwapRows(Model& model, int a, int b) {
  std::swap_ranges(RowBegin(model, a), RowBegin(model, a) + kColumns, RowBegin(model, b));
}

double StrengthOf(double wo, double wp) { return wo == 0 ? kUndefined : (wp / wo) * (wp / wo); }
double RelativeWidthOf(double wo, double g) { return wo == 0 ? kUndefined : g / wo; }

double KeyOf(const ModelParam* row, SortKey key) {
  switch (key) {
    case SortKey::kWo:
      return row[Wo].value;
    case SortKey::kWp:
      return row[Wp].value;
    case SortKey::kG:
      return row[G].value;
    case SortKey::kStrength:
      return StrengthOf(row[Wo].value, row[Wp].value);
    case SortKey::kRelativeWidth:
      return RelativeWidthOf(row[Wo].value, row[G].value);
    case SortKey::kNone:
      break;
  }
  return 0;
}

}  // namespace

int InsertRow(Model* model, int position) {
  if (!IsOpen(model)) return -1;
  const int row = std::clamp(position, 0, RowCount(*model));
  const Row defaults = {DefaultElement(Wo), DefaultElement(Wp), DefaultElement(G)};
  model->rows.insert(RowBegin(*model, row), defaults.begin(), defaults.end());
  return 0;
}

int RemoveRow(Model* model, int position) {
  if (!IsOpen(model)) return -1;
  const int count = RowCount(*model);
  if (count == 0) return 0;
  // The position one behind the last row is allowed, and means the last row.
  const int row = std::min(std::clamp(position, 0, count), count - 1);
  model->rows.erase(RowBegin(*model, row), RowBegin(*model, row) + kColumns);
  return 0;
}

int ClearRows(Model* model) {
  if (!IsOpen(model)) return -1;
  model->rows.clear();
  return 0;
}

int MoveRowUp(Model* model, int row) {
  if (!IsOpen(model)) return -1;
  const int from = std::min(row, RowCount(*model) - 1);
  if (from > 0) SwapRows(*model, from, from - 1);
  return 0;
}

int MoveRowDown(Model* model, int row) {
  if (!IsOpen(model)) return -1;
  const int from = std::max(row, 0);
  if (from < RowCount(*model) - 1) SwapRows(*model, from, from + 1);
  return 0;
}

int SortRows(Model* model, int key) {
  if (!IsOpen(model) || RowCount(*model) == 0 || key < 0 || key > 5) return -1;
  if (key == 0) return 0;
  const auto sortKey = static_cast<SortKey>(key);
  std::vector<Row> rows(static_cast<std::size_t>(RowCount(*model)));
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::copy_n(RowBegin(*model, static_cast<int>(r)), kColumns, rows[r].begin());
  }
  const bool descending = KeyOf(rows.front().data(), sortKey) <= KeyOf(rows.back().data(), sortKey);
  std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
    const double x = KeyOf(a.data(), sortKey), y = KeyOf(b.data(), sortKey);
    return descending ? x > y : x < y;
  });
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::copy_n(rows[r].begin(), kColumns, RowBegin(*model, static_cast<int>(r)));
  }
  return 0;
}

double ComputedValue(const Model* model, int row, int kind) {
  if (!Holds(model, row, 0)) return kMissing;
  const double wo = Cell(*model, row, Wo).value;
  switch (static_cast<ComputedColumn>(kind)) {
    case ComputedColumn::kStrength:
      return StrengthOf(wo, Cell(*model, row, Wp).value);
    case ComputedColumn::kRelativeWidth:
      return RelativeWidthOf(wo, Cell(*model, row, G).value);
  }
  return 0;
}

double RowValue(const Model* model, int row, int column) {
  return Holds(model, row, column) ? Cell(*model, row, column).value : kMissing;
}

std::uint32_t RowAdjustable(const Model* model, int row, int column) {
  return Holds(model, row, column) ? Cell(*model, row, column).adjustable : 0;
}

double EpsInfValue(const Model* model) { return IsOpen(model) ? model->epsInf.value : kMissing; }
std::uint32_t EpsInfAdjustable(const Model* model) { return IsOpen(model) ? model->epsInf.adjustable : 0; }

int FixAll(Model* model, bool fix) {
  if (!IsOpen(model)) return -1;
  const std::uint32_t adjustable = fix ? 0 : 1;
  model->epsInf.adjustable = adjustable;
  for (ModelParam& param : model->rows) param.adjustable = adjustable;
  return 0;
}

}  // namespace kalvex

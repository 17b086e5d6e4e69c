#include "records/model_rows.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace kalvex {
namespace {

using Row = std::array<ModelParam, kColumns>;

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

auto RowBegin(Model& model, int row) { return model.rows.begin() + static_cast<std::ptrdiff_t>(row) * kColumns; }

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

void InsertRow(Model& model, int position) {
  const int row = std::clamp(position, 0, RowCount(model));
  const Row defaults = {DefaultElement(Wo), DefaultElement(Wp), DefaultElement(G)};
  model.rows.insert(RowBegin(model, row), defaults.begin(), defaults.end());
}

void RemoveRow(Model& model, int position) {
  const int count = RowCount(model);
  if (count == 0) return;
  const int row = std::clamp(position, 0, count - 1);
  model.rows.erase(RowBegin(model, row), RowBegin(model, row) + kColumns);
}

void ClearRows(Model& model) { model.rows.clear(); }

void MoveRowUp(Model& model, int row) {
  const int from = std::min(row, RowCount(model) - 1);
  if (from > 0) SwapRows(model, from, from - 1);
}

void MoveRowDown(Model& model, int row) {
  const int from = std::max(row, 0);
  if (from < RowCount(model) - 1) SwapRows(model, from, from + 1);
}

void SortRows(Model& model, SortKey key) {
  if (RowCount(model) == 0 || key == SortKey::kNone) return;
  std::vector<Row> rows(static_cast<std::size_t>(RowCount(model)));
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::copy_n(RowBegin(model, static_cast<int>(r)), kColumns, rows[r].begin());
  }
  const bool descending = KeyOf(rows.front().data(), key) <= KeyOf(rows.back().data(), key);
  std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
    const double x = KeyOf(a.data(), key), y = KeyOf(b.data(), key);
    return descending ? x > y : x < y;
  });
  for (std::size_t r = 0; r < rows.size(); ++r) {
    std::copy_n(rows[r].begin(), kColumns, RowBegin(model, static_cast<int>(r)));
  }
}

double ComputedValue(const Model* model, int row, int kind) {
  if (model == nullptr || model->number == 0 || row < 0 || row >= RowCount(*model)) return kMissing;
  const double wo = Cell(*model, row, Wo).value;
  switch (static_cast<ComputedColumn>(kind)) {
    case ComputedColumn::kStrength:
      return StrengthOf(wo, Cell(*model, row, Wp).value);
    case ComputedColumn::kRelativeWidth:
      return RelativeWidthOf(wo, Cell(*model, row, G).value);
  }
  return 0;
}

void FixAll(Model& model, bool fix) {
  const std::uint32_t adjustable = fix ? 0 : 1;
  model.epsInf.adjustable = adjustable;
  for (ModelParam& param : model.rows) param.adjustable = adjustable;
}

}  // namespace kalvex

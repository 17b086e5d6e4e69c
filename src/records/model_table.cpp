#include "records/model_table.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "records/model_rows.h"

namespace kalvex {
namespace {

ModelParam DefaultEpsInf() {
  ModelParam param;
  SetName(param, "Epsilon at infinity");
  param.value = 3.0;
  param.adjustable = 1;
  param.max = 100.0;
  return param;
}

template <class Tables>
auto FindModel(Tables& tables, std::uint32_t number) -> decltype(tables.models.data()) {
  if (number == 0) return nullptr;
  for (auto& model : tables.models) {
    if (model.number == number) return &model;
  }
  return nullptr;
}

}  // namespace

std::array<ModelParam, kExpParamCount> DefaultExpParams() {
  struct Row {
    const char* name;
    double value;
    double max;
  };
  constexpr Row kRows[] = {{"Sample thickness", 0.0015, 1.0},  {"Thickness spread", 0, 1.0},
                           {"Angle of incidence", 80.0, 90.0}, {"Angle spread", 0, 90.0},
                           {"Scaling factor of R", 1.0, 2.0},  {"Scaling factor of T", 1.0, 2.0}};
  static_assert(std::size(kRows) == kExpParamCount);
  std::array<ModelParam, kExpParamCount> params;
  for (std::size_t i = 0; i < params.size(); ++i) {
    SetName(params[i], kRows[i].name);
    params[i].value = kRows[i].value;
    params[i].max = kRows[i].max;
  }
  return params;
}

Model* GetModelByNumber(ParamTables& tables, std::uint32_t number) { return FindModel(tables, number); }
const Model* GetModelByNumber(const ParamTables& tables, std::uint32_t number) { return FindModel(tables, number); }

const Model* GetModelByReal(const ParamTables& tables, double number) {
  if (!(number >= 1 && number <= 4294967295.0) || std::trunc(number) != number) return nullptr;
  return GetModelByNumber(tables, static_cast<std::uint32_t>(number));
}

int CountModels(const ParamTables& tables) { return static_cast<int>(ListModelNumbers(tables).size()); }

std::vector<std::uint32_t> ListModelNumbers(const ParamTables& tables) {
  std::vector<std::uint32_t> numbers;
  for (const Model& model : tables.models) {
    if (model.number != 0) numbers.push_back(model.number);
  }
  return numbers;
}

int SlotOf(const ParamTables& tables, const Model& model) { return static_cast<int>(&model - tables.models.data()); }

Model* CreateModel(ParamTables& tables) {
  const auto free =
      std::find_if(tables.models.begin(), tables.models.end(), [](const Model& model) { return model.number == 0; });
  if (free == tables.models.end()) return nullptr;
  *free = Model{};
  free->number = tables.nextModelNumber++;
  free->name = "M" + std::to_string(free->number);
  free->epsInf = DefaultEpsInf();
  InsertRow(*free, 0);
  return &*free;
}

void CloseModelRecord(Model& model) { model = Model{}; }

}  // namespace kalvex

#include "types/type_sample.h"

#include <cmath>
#include <limits>

#include "evaluation/sample_models.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "types/describe.h"

namespace kalvex {

TypeSample::TypeSample(const ModelType& of, unsigned seed) : type(of), random_(seed) {
  for (ModelParam& param : program.params.ExpParams) param.adjustable = 1;
  program.params.ExpParams[kAngleOfIncidence].value = 60;
  program.params.ExpParams[kThicknessSpread].value = 0.1;
  program.params.ExpParams[kAngleSpread].value = 0.02;
  number_ = MakeModel(type.code);
  x = std::uniform_real_distribution(type.page.from, type.page.to)(random_);
}

Model* TypeSample::GetModelByNumber(std::uint32_t number) { return kalvex::GetModelByNumber(program.params, number); }

double TypeSample::Near(double typical) { return typical * std::uniform_real_distribution(0.8, 1.2)(random_); }

std::uint32_t TypeSample::MakePlain() {
  Model& model = *CreateModel(program.params);
  model.epsInf.value = std::uniform_real_distribution(2.0, 5.0)(random_);
  Cell(model, 0, Wo).value = std::uniform_real_distribution(100.0, 300.0)(random_);
  Cell(model, 0, Wp).value = std::uniform_real_distribution(100.0, 400.0)(random_);
  Cell(model, 0, G).value = std::uniform_real_distribution(20.0, 60.0)(random_);
  return model.number;
}

void TypeSample::LoadData(int slot) {
  Dataset& dataset = program.datasets.slots[static_cast<std::size_t>(slot - 1)];
  const double from = type.page.from, to = type.page.to;
  const double phase = std::uniform_real_distribution(0.0, 6.0)(random_);
  for (int i = 0; i <= 40; ++i) {
    const double at = from + (to - from) * i / 40;
    dataset.points.push_back({at, 0.5 + 0.3 * std::sin(phase + 0.2 * i), 0.01});
  }
  dataset.id = static_cast<std::uint32_t>(slot);
}

void TypeSample::AddMesh(Model& model) {
  model.vdf.On = true;
  for (const double at : {30.0, 80.0, 150.0, 240.0, 400.0}) {
    model.vdf.mesh.push_back({at, {}, {}});
    model.vdf.mesh.back().e2.value = Near(0.5);
    model.vdf.mesh.back().e2.adjustable = 1;
  }
}

void TypeSample::Set(Model& owner, const RowCell& cell, int row) {
  double value = cell.typical;
  switch (cell.use) {
    case CellUse::kPartner:
    case CellUse::kReference:
    case CellUse::kOptional:
      value = MakePlain();
      break;
    case CellUse::kMeshPartner:
      value = MakePlain();
      AddMesh(*GetModelByNumber(static_cast<std::uint32_t>(value)));
      break;
    case CellUse::kEvaluated:
    case CellUse::kEvaluatedIf:
      value = MakeModel(static_cast<int>(cell.typical));
      break;
    case CellUse::kDataset:
      value = ++datasets_;
      LoadData(datasets_);
      break;
    case CellUse::kOwn:
      value = Near(cell.typical);
      break;
    default:
      break;
  }
  ModelParam& param = Cell(owner, row, cell.column);
  param.value = value;
  param.adjustable = cell.use == CellUse::kOwn;
}

std::uint32_t TypeSample::MakeModel(int code) {
  const ModelType* const made = TypeOfCode(code);
  if (!made) return MakePlain();
  Model& owner = *CreateModel(program.params);
  const std::uint32_t number = owner.number;
  ClearRows(owner);
  const int rows = TypicalRows(made->map);
  for (int row = 0; row < rows; ++row) InsertRow(owner, row);
  owner.epsInf.value = -code;
  owner.epsInf.adjustable = 0;
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      if (const RowCell* const cell = CellAt(made->map, row, column)) {
        Set(owner, *cell, row);
      } else {
        Cell(owner, row, column).adjustable = 0;
      }
    }
  }
  return number;
}

double TypeSample::Value(Quantity quantity, double at) {
  WantOnly(program.eval.quantities, QuantitySet{quantity});
  if (EvalModel(program.eval, model(), at, false) != 0) return std::numeric_limits<double>::quiet_NaN();
  return program.eval.quantities[quantity].value;
}

int TypeSample::Differentiate(Quantity quantity) {
  for (const Free& free : FreeParams()) free.param->savedSlopes = {};
  WantOnly(program.eval.quantities, QuantitySet{quantity});
  return EvalWithSlopes(program, model(), x);
}

std::vector<Quantity> TypeSample::Filled() const {
  if (type.material) return {kEveryQuantity.begin(), kEveryQuantity.end()};
  std::vector<Quantity> filled;
  for (const SlotUse& slot : type.fills) filled.push_back(slot.quantity);
  return filled;
}

std::vector<TypeSample::Free> TypeSample::FreeParams() {
  std::vector<Free> free;
  const auto add = [&](ModelParam& param, const std::string& name) {
    if (param.adjustable) free.push_back({&param, name});
  };
  for (Model& owner : program.params.models) {
    if (owner.number == 0) continue;
    int index = -1;
    ForEachParam(owner, [&](ModelParam& param) {
      add(param,
          owner.name +
              (index < 0 ? " Einf" : " row " + std::to_string(index / 3 + 1) + " column " + std::to_string(index % 3)));
      ++index;
    });
  }
  for (ModelParam& param : program.params.ExpParams) add(param, std::string(NameOf(param)));
  return free;
}

std::vector<TypeSample::Free> TypeSample::Marked(Quantity quantity) {
  WantOnly(program.eval.quantities, QuantitySet{quantity});
  std::vector<Free> marked;
  if (FindDependencies(program, model()) != 0) return marked;
  for (const Free& free : FreeParams()) {
    if (free.param->savedSlopes.dQuantity[quantity] != 0) marked.push_back(free);
  }
  return marked;
}

}  // namespace kalvex

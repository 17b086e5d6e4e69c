// Models for the tests of evaluation.
#pragma once

#include <initializer_list>

#include "evaluation/eval_model.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/tables.h"

namespace kalvex {

// A new model with these rows, all adjustable. A negative Wo is a code and is fixed.
inline Model& NewModel(Tables& program, std::initializer_list<std::array<double, 3>> rows, double epsInf = 3) {
  Model& model = *CreateModel(program.params);
  model.epsInf.value = epsInf;
  ClearRows(model);
  for (const auto& row : rows) {
    const int r = RowCount(model);
    InsertRow(model, r);
    for (int c = 0; c < kColumns; ++c) Cell(model, r, c).value = row[static_cast<std::size_t>(c)];
    if (row[0] < 0) Cell(model, r, Wo).adjustable = 0;
  }
  return model;
}

// The places of all adjustable parameters of the models.
inline std::vector<ParamPlace> AllFreePlaces(const Tables& program) {
  std::vector<ParamPlace> places;
  for (int m = 0; m < kMaxModels; ++m) {
    const Model& model = program.params.models[static_cast<std::size_t>(m)];
    if (model.number == 0) continue;
    if (model.epsInf.adjustable) places.push_back({ParamKind::kEpsInf, m, 0, 0, 0, 0, 0});
    for (int row = 0; row < RowCount(model); ++row) {
      for (int column = 0; column < kColumns; ++column) {
        if (Cell(model, row, column).adjustable) places.push_back({ParamKind::kRow, m, row, column, 0, 0, 0});
      }
    }
  }
  return places;
}

// The evaluation with derivatives, and the dependency pass. The slopes are copied to the parameters.
inline int EvalWithSlopes(Tables& program, const Model& model, double x) {
  const int status = EvalModel(program.eval, model, x, true);
  TakeOverSlopes(program.params, program.eval.slopes);
  return status;
}
inline int FindDependencies(Tables& program, const Model& model) {
  const int status = EvalModelAfter(program.eval, model);
  TakeOverSlopes(program.params, program.eval.slopes);
  return status;
}

inline double QuantityAt(Tables& program, const Model& model, Quantity quantity, double x, bool derivatives = false) {
  WantOnly(program.eval.quantities, QuantitySet{quantity});
  derivatives ? EvalWithSlopes(program, model, x) : EvalModel(program.eval, model, x, false);
  return program.eval.quantities[quantity].value;
}

}  // namespace kalvex

// src/records (floor 2, together with src/datasets) holds what a model is.
//
//   model_param.h     ModelParam: a number with error, limits, coupling group and saved slopes
//   var_diel_func.h   VarDielFunc: the mesh of a variational dielectric function; vdf_mesh.h creates and switches it
//   model.h           Model, ParamTables: all models and the experimental parameters
//   row_code.h        how a row selects its term
//   model_table.h     finding, creating and closing models
//   model_rows.h      inserting, removing, moving and sorting rows
//   param_value.h     writing a value: limits and coupling groups
//   param_place.h     ParamPlace: the position of a parameter, independent of addresses
//
// Read model_param.h and this header first.
//
// Model: one sample, with a leading parameter (epsInf) and rows of three parameters. ParamTables: the models and the
// experimental parameters. A coupling group may contain parameters of both.
#pragma once

#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "core/limits.h"
#include "records/model_param.h"
#include "records/var_diel_func.h"

namespace kalvex {

enum Column : int { Wo = 0, Wp = 1, G = 2 };
inline constexpr int kColumns = 3;
inline constexpr const char* kColumnNames[] = {"Wo", "Wp", "G"};
static_assert(std::size(kColumnNames) == kColumns);

struct Model {
  std::uint32_t number = 0;  // unique while the program runs; 0 marks a free entry of the table
  std::string name;
  ModelParam epsInf;             // for a special model the negated type code
  std::vector<ModelParam> rows;  // row r, column c at c + 3 r
  VarDielFunc vdf;
  bool dirty = false;  // a parameter was overwritten through coupling, and no listener has been notified
};

inline int RowCount(const Model& model) { return static_cast<int>(model.rows.size()) / kColumns; }

// Index of a cell in Model::rows.
inline std::size_t CellIndex(int row, int column) {
  return static_cast<std::size_t>(row) * kColumns + static_cast<std::size_t>(column);
}
inline ModelParam& Cell(Model& model, int row, int column) { return model.rows[CellIndex(row, column)]; }
inline const ModelParam& Cell(const Model& model, int row, int column) { return model.rows[CellIndex(row, column)]; }

enum ExpParam : std::size_t {
  kSampleThickness = 0,  // cm
  kThicknessSpread = 1,
  kAngleOfIncidence = 2,  // degrees
  kAngleSpread = 3,
  kScalingFactorOfR = 4,
  kScalingFactorOfT = 5,
};
inline constexpr int kExpParamCount = static_cast<int>(kScalingFactorOfT) + 1;

struct ParamTables {
  std::array<Model, kMaxModels> models;
  std::uint32_t nextModelNumber = 1;
  std::array<ModelParam, kExpParamCount> ExpParams;
  bool expParamsDirty = false;  // as Model::dirty
};

// The six experimental parameters with their names and default values.
std::array<ModelParam, kExpParamCount> DefaultExpParams();

// Calls visit on epsInf, then on every element of the rows. If the variational function is on, both parameters of every
// mesh point follow.
template <class ModelType, class Visit>
void ForEachParam(ModelType& model, Visit&& visit) {
  visit(model.epsInf);
  for (auto& param : model.rows) visit(param);
  if (!model.vdf.On) return;
  for (auto& point : model.vdf.mesh) {
    visit(point.e1);
    visit(point.e2);
  }
}

}  // namespace kalvex

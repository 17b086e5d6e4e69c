// Model: one sample, a leading parameter and rows of three; and ParamTables, the model table together with the block of
// experimental parameters, which coupling groups tie to each other.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/limits.h"
#include "records/model_param.h"
#include "records/var_diel_func.h"

namespace kalvex {

enum Column : int { Wo = 0, Wp = 1, G = 2 };
inline constexpr int kColumns = 3;
inline constexpr std::array<const char*, kColumns> kColumnNames = {"Wo", "Wp", "G"};

// The field in which a person types a parameter's value, in the parameter's own place.
struct CellEditor {
  bool open = false;
  std::string text;
  std::size_t caret = 0;
};

// Place and selection of a model's window, kept with the model whether or not there is a screen.
struct ModelWindow {
  int x = 50;
  int y = 100;
  int width = 293;
  int height = 250;
  std::array<int, 6> columnWidths = {22, 50, 50, 50, 50, 50};
  bool vdfShown = false;
  bool windowShown = false;    // the window is the active one, and has the keys
  bool paramSelected = false;  // the parameter control shows the parameter under this window's cursor
  bool rowSelected = false;    // the cursor is on a row; otherwise it is on epsInf
  int curRow = 0;
  int curColumn = 1;  // of the window's table; those of the parameters are 1 to 3
  int topRow = 0;
  int visibleRows = 5;  // how many fit into the window, as the screen finds when it lays the window out
  CellEditor editor;
};

struct Model {
  std::uint32_t number = 0;  // unique for the run; 0 marks a free entry of the table
  std::string name;
  ModelParam epsInf;             // for a special model the negated type code
  std::vector<ModelParam> rows;  // row r, column c at c + 3 r
  VarDielFunc vdf;
  ModelWindow window;
  bool dirty = false;  // a parameter was overwritten through coupling, the window does not show it yet
};

inline int RowCount(const Model& model) { return static_cast<int>(model.rows.size()) / kColumns; }

inline ModelParam& Cell(Model& model, int row, int column) {
  return model.rows[static_cast<std::size_t>(row * kColumns + column)];
}
inline const ModelParam& Cell(const Model& model, int row, int column) {
  return model.rows[static_cast<std::size_t>(row * kColumns + column)];
}

enum ExpParam : int {
  kSampleThickness = 0,  // cm
  kThicknessSpread = 1,
  kAngleOfIncidence = 2,  // degrees
  kAngleSpread = 3,
  kScalingFactorOfR = 4,
  kScalingFactorOfT = 5,
};

struct ParamTables {
  std::array<Model, kMaxModels> models;
  std::uint32_t nextModelNumber = 1;
  std::array<ModelParam, kExpParamCount> ExpParams;
  bool expParamsDirty = false;  // as Model::dirty
};

// The six experimental parameters with their names and default values.
std::array<ModelParam, kExpParamCount> DefaultExpParams();

// Calls visit on epsInf, on every element of the rows and, while the variational function is on, on both parameters of
// every mesh point, in this order.
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

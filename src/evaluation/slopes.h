// The slopes of an evaluation: a table with one record for each parameter of the parameter tables, in the same shape.
// The parameters themselves are only read.
#pragma once

#include <array>
#include <vector>

#include "datasets/quantity.h"
#include "records/model.h"
#include "records/param_place.h"

namespace kalvex {

// The derivatives by the value of one parameter. They are valid only for an adjustable parameter.
struct ParamSlopes {
  double dEpsRe = 0;  // of the complex response of a model
  double dEpsIm = 0;
  double dScalar = 0;               // of the real row sum
  PerQuantity<double> dQuantity{};  // of each Quantity

  // Which of these are left from an earlier evaluation. Valid only if Forget was called before this one.
  QuantitySet formerQuantities{};
  bool formerEps = false;
  bool madeOfFormer = false;  // a slope of a Quantity was computed from such a result

  void Put(Quantity quantity, double slope) {
    dQuantity[quantity] = slope;
    formerQuantities -= {quantity};
  }
  void PutZeros() {
    dQuantity.fill(0);
    formerQuantities = {};
  }
  void Add(Quantity quantity, double slope) { dQuantity[quantity] += slope; }
  void PutEps(double re, double im) {
    dEpsRe = re;
    dEpsIm = im;
    formerEps = false;
  }
  bool HasFormer(QuantitySet wanted) const { return madeOfFormer || !(formerQuantities & wanted).IsEmpty(); }
  void Forget() {
    formerQuantities = kEveryQuantity;
    formerEps = madeOfFormer = false;
  }
};

struct MeshSlopes {
  ParamSlopes e1, e2;
};

struct ModelSlopes {
  ParamSlopes epsInf;
  std::vector<ParamSlopes> rows;  // as Model::rows
  std::vector<MeshSlopes> mesh;
};

inline ParamSlopes& Cell(ModelSlopes& slopes, int row, int column) { return slopes.rows[CellIndex(row, column)]; }

struct SlopeTable {
  std::array<ModelSlopes, kMaxModels> models;
  std::array<ParamSlopes, kExpParamCount> ExpParams;
};

// Gives the table the shape of the parameter tables. If the shape is unchanged, no record moves.
void MakeRoom(SlopeTable& slopes, const ParamTables& tables);
// The same. Every record starts from the slopes saved in the parameter; they stay if an evaluation does not compute
// them.
void StartFromSaved(SlopeTable& slopes, const ParamTables& tables);
// Writes the slopes computed since StartFromSaved into the parameters.
void TakeOverSlopes(ParamTables& tables, const SlopeTable& slopes);

// The record of the parameter at a place, which must exist.
ParamSlopes& SlopesAt(SlopeTable& slopes, const ParamPlace& place);

// Calls visit(parameter, its slopes) in the order of ForEachParam.
template <class Visit>
void ForEachParam(const Model& model, ModelSlopes& slopes, Visit&& visit) {
  visit(model.epsInf, slopes.epsInf);
  for (std::size_t i = 0; i < model.rows.size(); ++i) visit(model.rows[i], slopes.rows[i]);
  if (!model.vdf.On) return;
  for (std::size_t j = 0; j < model.vdf.mesh.size(); ++j) {
    visit(model.vdf.mesh[j].e1, slopes.mesh[j].e1);
    visit(model.vdf.mesh[j].e2, slopes.mesh[j].e2);
  }
}

// Calls visit on the slopes of every adjustable parameter of the tables.
template <class Visit>
void ForEachFreeParam(const ParamTables& tables, SlopeTable& slopes, Visit visit) {
  const auto visitFree = [&](const ModelParam& param, ParamSlopes& of) {
    if (param.adjustable) visit(of);
  };
  for (std::size_t m = 0; m < tables.models.size(); ++m) {
    if (tables.models[m].number != 0) ForEachParam(tables.models[m], slopes.models[m], visitFree);
  }
  for (std::size_t k = 0; k < tables.ExpParams.size(); ++k) visitFree(tables.ExpParams[k], slopes.ExpParams[k]);
}

}  // namespace kalvex

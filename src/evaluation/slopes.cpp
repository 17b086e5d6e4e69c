#include "evaluation/slopes.h"

namespace kalvex {
namespace {

void Start(ParamSlopes& slopes, const ModelParam& param) {
  const SavedSlopes& saved = param.savedSlopes;
  slopes = {.dEpsRe = saved.dEpsRe, .dEpsIm = saved.dEpsIm, .dQuantity = saved.dQuantity};
}

void TakeOver(ModelParam& param, const ParamSlopes& slopes) {
  param.savedSlopes = {slopes.dEpsRe, slopes.dEpsIm, slopes.dQuantity};
}

// Calls visit(parameter, its slopes) for every parameter of the tables, including a mesh that is off.
template <class Tables, class Slopes, class Visit>
void ForEachPair(Tables& tables, Slopes& slopes, Visit visit) {
  for (std::size_t m = 0; m < tables.models.size(); ++m) {
    auto& model = tables.models[m];
    auto& of = slopes.models[m];
    if (model.number == 0) continue;
    visit(model.epsInf, of.epsInf);
    for (std::size_t i = 0; i < model.rows.size(); ++i) visit(model.rows[i], of.rows[i]);
    for (std::size_t j = 0; j < model.vdf.mesh.size(); ++j) {
      visit(model.vdf.mesh[j].e1, of.mesh[j].e1);
      visit(model.vdf.mesh[j].e2, of.mesh[j].e2);
    }
  }
  for (std::size_t k = 0; k < tables.ExpParams.size(); ++k) visit(tables.ExpParams[k], slopes.ExpParams[k]);
}

}  // namespace

void MakeRoom(SlopeTable& slopes, const ParamTables& tables) {
  for (std::size_t m = 0; m < tables.models.size(); ++m) {
    slopes.models[m].rows.resize(tables.models[m].rows.size());
    slopes.models[m].mesh.resize(tables.models[m].vdf.mesh.size());
  }
}

void StartFromSaved(SlopeTable& slopes, const ParamTables& tables) {
  MakeRoom(slopes, tables);
  ForEachPair(tables, slopes, [](const ModelParam& param, ParamSlopes& of) { Start(of, param); });
}

void TakeOverSlopes(ParamTables& tables, const SlopeTable& slopes) {
  ForEachPair(tables, slopes, [](ModelParam& param, const ParamSlopes& of) { TakeOver(param, of); });
}

ParamSlopes& SlopesAt(SlopeTable& slopes, const ParamPlace& place) {
  if (place.Where == ParamKind::kExp) return slopes.ExpParams[static_cast<std::size_t>(place.nep)];
  ModelSlopes& model = slopes.models[static_cast<std::size_t>(place.nm)];
  if (place.Where == ParamKind::kEpsInf) return model.epsInf;
  if (place.Where == ParamKind::kRow) return Cell(model, place.nl, place.nc);
  MeshSlopes& point = model.mesh[static_cast<std::size_t>(place.nen)];
  return place.isIm ? point.e2 : point.e1;
}

}  // namespace kalvex

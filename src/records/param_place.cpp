#include "records/param_place.h"

namespace kalvex {
namespace {

template <class Tables>
auto& At(Tables& tables, const ParamPlace& place) {
  if (place.Where == ParamKind::kExp) return tables.ExpParams[static_cast<std::size_t>(place.nep)];
  auto& model = tables.models[static_cast<std::size_t>(place.nm)];
  if (place.Where == ParamKind::kEpsInf) return model.epsInf;
  if (place.Where == ParamKind::kRow) return Cell(model, place.nl, place.nc);
  auto& point = model.vdf.mesh[static_cast<std::size_t>(place.nen)];
  return place.isIm ? point.e2 : point.e1;
}

bool Exists(const ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber) {
  if (place.Where == ParamKind::kExp) return true;
  const Model& model = tables.models[static_cast<std::size_t>(place.nm)];
  if (model.number == 0 || model.number != modelNumber) return false;
  if (place.Where == ParamKind::kRow) return place.nl < RowCount(model);
  if (place.Where == ParamKind::kMesh) return static_cast<std::size_t>(place.nen) < model.vdf.mesh.size();
  return true;
}

}  // namespace

const char* KindText(ParamKind kind) {
  switch (kind) {
    case ParamKind::kEpsInf:
      return "EIN";
    case ParamKind::kRow:
      return "LOR";
    case ParamKind::kMesh:
      return "ESH";
    case ParamKind::kExp:
      return "EXP";
  }
  return "";
}

ModelParam& ParamAt(ParamTables& tables, const ParamPlace& place) { return At(tables, place); }
const ModelParam& ParamAt(const ParamTables& tables, const ParamPlace& place) { return At(tables, place); }

ModelParam* FindParam(ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber) {
  return Exists(tables, place, modelNumber) ? &At(tables, place) : nullptr;
}
const ModelParam* FindParam(const ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber) {
  return Exists(tables, place, modelNumber) ? &At(tables, place) : nullptr;
}

}  // namespace kalvex

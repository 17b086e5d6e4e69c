#include "records/param_place.h"

namespace kalvex {

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

ModelParam& ParamAt(ParamTables& tables, const ParamPlace& place) {
  if (place.Where == ParamKind::kExp) return tables.ExpParams[static_cast<std::size_t>(place.nep)];
  Model& model = tables.models[static_cast<std::size_t>(place.nm)];
  if (place.Where == ParamKind::kEpsInf) return model.epsInf;
  if (place.Where == ParamKind::kRow) return Cell(model, place.nl, place.nc);
  VdfMeshPoint& point = model.vdf.mesh[static_cast<std::size_t>(place.nen)];
  return place.isIm ? point.e2 : point.e1;
}

}  // namespace kalvex

// ParamPlace: the position of a parameter as indices. Unlike an address it is also valid in a copy of the tables.
#pragma once

#include "records/model.h"

namespace kalvex {

enum class ParamKind : int { kEpsInf = 0, kRow = 1, kMesh = 2, kExp = 3 };

struct ParamPlace {
  ParamKind Where = ParamKind::kEpsInf;
  int nm = 0;    // entry of the model table; all kinds but kExp
  int nl = 0;    // row; kRow
  int nc = 0;    // column; kRow
  int nep = 0;   // experimental parameter; kExp
  int nen = 0;   // mesh point; kMesh
  int isIm = 0;  // kMesh: 1 for the imaginary part

  bool operator==(const ParamPlace&) const = default;
};

// "EIN", "LOR", "ESH" or "EXP".
const char* KindText(ParamKind kind);

// The parameter at a place, which must exist.
ModelParam& ParamAt(ParamTables& tables, const ParamPlace& place);
const ModelParam& ParamAt(const ParamTables& tables, const ParamPlace& place);

// The same for a place that may not exist. Null unless the entry of the table still holds the model with that number,
// and the model has that row or mesh point. The experimental parameters always exist.
ModelParam* FindParam(ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber);
const ModelParam* FindParam(const ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber);

}  // namespace kalvex

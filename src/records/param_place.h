// ParamPlace: where a parameter lives, by indices and not by address, so that it holds in a copy of the tables too.
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
};

// "EIN", "LOR", "ESH" or "EXP".
const char* KindText(ParamKind kind);

// The parameter at a place that exists.
ModelParam& ParamAt(ParamTables& tables, const ParamPlace& place);
const ModelParam& ParamAt(const ParamTables& tables, const ParamPlace& place);

// The same for a place that may be gone: null unless the entry of the table still holds the model of that number, with
// that row or mesh point. The experimental parameters are always there.
ModelParam* FindParam(ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber);
const ModelParam* FindParam(const ParamTables& tables, const ParamPlace& place, std::uint32_t modelNumber);

}  // namespace kalvex

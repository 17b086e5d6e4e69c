#include "records/param_value.h"

#include <cmath>

namespace kalvex {
namespace {

// Mesh points cannot be coupled: unlike ForEachParam, this visits only epsInf and the rows.
template <class Visit>
bool AnyCoupledPlace(Model& model, std::uint32_t group, Visit&& visit) {
  if (model.epsInf.coupling == group && visit(model.epsInf)) return true;
  for (ModelParam& param : model.rows) {
    if (param.coupling == group && visit(param)) return true;
  }
  return false;
}

const ModelParam* FirstOtherMember(ParamTables& tables, const ModelParam& param) {
  const ModelParam* found = nullptr;
  const auto take = [&](const ModelParam& other) {
    if (&other == &param) return false;
    found = &other;
    return true;
  };
  for (Model& model : tables.models) {
    if (model.number != 0 && AnyCoupledPlace(model, param.coupling, take)) return found;
  }
  for (const ModelParam& other : tables.ExpParams) {
    if (other.coupling == param.coupling && take(other)) return found;
  }
  return nullptr;
}

}  // namespace

SetValueResult SetValue(ParamTables& tables, ModelParam& param, double value) {
  SetValueResult result = kStored;
  if (param.useMin && value < param.min) {
    value = param.min;
    result = kRaisedToMin;
  }
  if (param.useMax && value > param.max) {
    value = param.max;
    if (result == kStored) result = kLoweredToMax;
  }
  if (std::fabs(value) > kValueClamp) {
    value = std::copysign(kValueClamp, value);
    result = kClampedTo1e70;
  }
  param.value = value;
  Propagate(tables, param);
  return result;
}

void SetAdjustable(ParamTables& tables, ModelParam& param, std::uint32_t adjustable) {
  param.adjustable = adjustable;
  Propagate(tables, param);
}

void Propagate(ParamTables& tables, const ModelParam& param) {
  if (param.coupling == 0) return;
  const ModelParam changed = param;
  for (Model& model : tables.models) {
    if (model.number == 0) continue;
    AnyCoupledPlace(model, changed.coupling, [&](ModelParam& member) {
      member = changed;
      model.dirty = true;
      return false;
    });
  }
  for (ModelParam& member : tables.ExpParams) {
    if (member.coupling != changed.coupling) continue;
    member = changed;
    tables.expParamsDirty = true;
  }
}

void SetCoupling(ParamTables& tables, ModelParam& param, int group) {
  param.coupling = group < 1 || group > kMaxCouplingGroup ? 0 : static_cast<std::uint32_t>(group);
  if (param.coupling == 0) return;
  if (const ModelParam* member = FirstOtherMember(tables, param)) param = *member;
}

}  // namespace kalvex

#include "macro/param_fields.h"

#include "core/text.h"
#include "program/program.h"
#include "records/param_value.h"

namespace kalvex {

void SetValueAndFitActive(MacroCall& call, ModelParam& param) {
  if (const auto value = call.Real("Value")) SetValue(call.program.params, param, *value);
  if (const auto active = call.Int("FitActive")) {
    SetAdjustable(call.program.params, param, static_cast<std::uint32_t>(*active));
  }
}

void SetLimits(MacroCall& call, ModelParam& param) {
  if (const auto limit = call.Real("MinLimit")) param.min = *limit;
  if (const auto limit = call.Real("MaxLimit")) param.max = *limit;
  if (const auto on = call.Int("MinOn")) param.useMin = static_cast<std::uint32_t>(*on);
  if (const auto on = call.Int("MaxOn")) param.useMax = static_cast<std::uint32_t>(*on);
  SetValue(call.program.params, param, param.value);
}

void SetCouplingIfGiven(MacroCall& call, ModelParam& param) {
  if (const auto group = call.Int("CoupledTo")) SetCoupling(call.program.params, param, *group);
}

std::string ParamText(const ModelParam& param) {
  std::string text = TextG(param.value) + (param.adjustable ? ", free" : ", fixed");
  if (param.useMin) text += ", not below " + TextG(param.min);
  if (param.useMax) text += ", not above " + TextG(param.max);
  if (param.coupling) text += ", coupled to group " + std::to_string(param.coupling);
  return text;
}

}  // namespace kalvex

#include "macro/param_fields.h"

#include "core/text.h"

namespace kalvex {

void WarnIfMoved(MacroCall& call, std::optional<double> value, const ModelParam& param, const std::string& label) {
  if (!value || *value == param.value || (!param.useMin && !param.useMax)) return;
  call.warnings.push_back(label + ": " + TextG(*value) + " was outside of the limits and became " + TextG(param.value));
}

std::string ParamText(const ModelParam& param) {
  std::string text = TextG(param.value) + (param.adjustable ? ", free" : ", fixed");
  if (param.useMin) text += ", not below " + TextG(param.min);
  if (param.useMax) text += ", not above " + TextG(param.max);
  if (param.coupling) text += ", coupled to group " + std::to_string(param.coupling);
  return text;
}

}  // namespace kalvex

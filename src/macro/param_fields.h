// The fields of a parameter in a statement, shared by SetModelParam and SetExpParam.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "macro/command.h"
#include "records/model.h"
#include "session/session.h"

namespace kalvex {

template <class P>
ParamEdit EditOf(const P& p) {
  const auto flag = [](std::optional<int> on) {
    return on ? std::optional(static_cast<std::uint32_t>(*on)) : std::nullopt;
  };
  ParamEdit edit;
  edit.value = p.Value;
  edit.adjustable = flag(p.FitActive);
  edit.min = p.MinLimit;
  edit.max = p.MaxLimit;
  edit.useMin = flag(p.MinOn);
  edit.useMax = flag(p.MaxOn);
  edit.coupling = p.CoupledTo;
  edit.holdInLimits = true;
  return edit;
}

// Warns if the parameter does not get the value that the statement gives it, because that is outside of the limits.
void WarnIfMoved(MacroCall& call, std::optional<double> value, const ModelParam& param, const std::string& label);

// The present fields of the parameter, for verbose output.
std::string ParamText(const ModelParam& param);

}  // namespace kalvex

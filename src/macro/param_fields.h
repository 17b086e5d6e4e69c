// The fields of a parameter in a statement, shared by SetModelParam and SetExpParam.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

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

// The present fields of the parameter, for verbose output.
std::string ParamText(const ModelParam& param);

}  // namespace kalvex

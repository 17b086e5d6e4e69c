// The table of special models, in the order in which lists show it.
#pragma once

#include <array>

#include "models/eval_context.h"

namespace kalvex {

extern const ModelType kDifferentialModel;

inline constexpr std::array<const ModelType*, 1> ModelTypeTable = {&kDifferentialModel};

}  // namespace kalvex

// ModelParam: the one record for every number that a person or the fit can change.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "core/limits.h"
#include "datasets/quantity.h"

namespace kalvex {

inline constexpr std::size_t kParamNameSize = 50;

// What evaluations with derivatives have left for a parameter. A model file stores it, and an evaluation that makes no
// slope of its own keeps the one that stands here. It travels with the parameter: with its row, to the members of its
// coupling group, into a file and back.
struct SavedSlopes {
  double dEpsRe = 0;  // derivative of the complex response by value
  double dEpsIm = 0;
  PerQuantity<double> dQuantity{};  // derivative of each Quantity by value
};

struct ModelParam {
  double value = 0;
  double error = 0;              // left by the fit
  std::uint32_t adjustable = 0;  // the fit may vary it, and derivatives are wanted for it
  double min = 0;                // in force only with useMin
  double max = 0;                // in force only with useMax
  std::uint32_t useMin = 0;
  std::uint32_t useMax = 0;
  std::array<char, kParamNameSize> name{};  // no terminator of its own when full
  std::uint32_t coupling = 0;               // coupling group, 0 for none

  SavedSlopes savedSlopes;  // written by TakeOverSlopes alone

  std::uint32_t reserved = 0;  // no meaning; kept in the model file
};

inline std::string_view NameOf(const ModelParam& param) {
  const auto end = std::find(param.name.begin(), param.name.end(), '\0');
  return {param.name.data(), static_cast<std::size_t>(end - param.name.begin())};
}

inline void SetName(ModelParam& param, std::string_view name) {
  param.name.fill('\0');
  std::copy_n(name.begin(), std::min(name.size(), kParamNameSize), param.name.begin());
}

}  // namespace kalvex

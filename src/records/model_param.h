// ModelParam: the record of every number that a user or the fit can change.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "datasets/quantity.h"

namespace kalvex {

inline constexpr std::size_t kParamNameSize = 50;

// The slopes of a parameter from the last evaluation with derivatives. A model file stores them. An evaluation that
// computes no slope for the parameter keeps this one. The slopes are copied with the parameter: with its row, to the
// members of its coupling group, to a file and back.
struct SavedSlopes {
  double dEpsRe = 0;  // derivative of the complex response by value
  double dEpsIm = 0;
  PerQuantity<double> dQuantity{};  // derivative of each Quantity by value

  bool operator==(const SavedSlopes&) const = default;
};

struct ModelParam {
  double value = 0;
  double error = 0;              // from the last fit
  std::uint32_t adjustable = 0;  // the fit may vary it, and its derivatives are computed
  double min = 0;                // applies only if useMin is set
  double max = 0;                // applies only if useMax is set
  std::uint32_t useMin = 0;
  std::uint32_t useMax = 0;
  std::array<char, kParamNameSize> name{};  // without a terminator if all characters are used
  std::uint32_t coupling = 0;               // coupling group, 0 for none

  SavedSlopes savedSlopes;  // written only by TakeOverSlopes

  std::uint32_t reserved = 0;  // unused; kept in the model file

  bool operator==(const ModelParam&) const = default;
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

// How a row says what it is: its first element, not adjustable and negative, holds the negated code.
#pragma once

#include <cstdint>

#include "records/model_param.h"

namespace kalvex {

inline constexpr std::int32_t kPlainRow = 0;
inline constexpr std::int32_t kBaseRow = 1000;         // of the factorised product: its base value,
inline constexpr std::int32_t kDenominatorRow = 1001;  // a denominator factor (TO frequency and width),
inline constexpr std::int32_t kNumeratorRow = 1002;    // a numerator factor (LO frequency and width)

// A negative value truncated to 32 bits and negated; 0 if value is not negative, is adjustable, or is too large.
inline std::int32_t NegatedCode(const ModelParam& param) {
  if (param.adjustable || !(param.value < 0) || param.value <= -2147483648.0) return 0;
  return static_cast<std::int32_t>(-param.value);
}

// The code of a row, from its first element. A value that is no whole number makes a plain row.
inline std::int32_t RowCode(const ModelParam& first) {
  const std::int32_t code = NegatedCode(first);
  return static_cast<double>(code) == -first.value ? code : kPlainRow;
}

}  // namespace kalvex

// The code of a row: a first element that is negative and not adjustable holds the negated code.
#pragma once

#include <cstdint>

#include "records/model_param.h"

namespace kalvex {

inline constexpr std::int32_t kPlainRow = 0;
inline constexpr std::int32_t kBaseRow = 1000;         // factorised product: base value
inline constexpr std::int32_t kDenominatorRow = 1001;  // its denominator: TO frequency and width
inline constexpr std::int32_t kNumeratorRow = 1002;    // its numerator: LO frequency and width

// A negative value, truncated to 32 bits and negated. 0 if the value is not negative, is adjustable, or is too large.
inline std::int32_t NegatedCode(const ModelParam& param) {
  if (param.adjustable || !(param.value < 0) || param.value <= -2147483648.0) return 0;
  return static_cast<std::int32_t>(-param.value);
}

// The code of a row from its first element. A value that is not a whole number marks a plain row.
inline std::int32_t RowCode(const ModelParam& first) {
  const std::int32_t code = NegatedCode(first);
  return static_cast<double>(code) == -first.value ? code : kPlainRow;
}

}  // namespace kalvex

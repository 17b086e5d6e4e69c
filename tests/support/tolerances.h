// The tolerances. A test that needs a larger one states which operation loses the digits.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kalvex {

inline constexpr double kEps = std::numeric_limits<double>::epsilon();
inline constexpr double kStep = 4 * kEps;         // one or two operations
inline constexpr double kRound = 16 * kEps;       // a handful of operations, none of which cancels
inline constexpr double kFormula = 256 * kEps;    // a formula of some dozen operations, or a handful on numbers near 10
inline constexpr double kChain = 2048 * kEps;     // a long sum or product
inline constexpr double kLongSum = 32768 * kEps;  // thousands of terms, or a difference that loses two digits

// A printed number: half a unit of its last digit, relative to a number whose first digit is 1.
inline constexpr double kFiveDigits = 5e-5;
inline constexpr double kSixDigits = 5e-6;

// Whether |a - b| is within tolerance times the larger magnitude. Equal values, also infinite ones, always pass.
inline testing::AssertionResult CloseTo(double value, double expected, double tolerance) {
  const double allowed = tolerance * std::fmax(std::fabs(value), std::fabs(expected));
  if (value == expected || std::fabs(value - expected) <= allowed) return testing::AssertionSuccess();
  return testing::AssertionFailure().operator<<(std::to_string(value))
         << " (" << value << ") is not " << expected << ": off by " << value - expected << ", allowed " << allowed;
}

#define EXPECT_CLOSE(value, expected, tolerance) EXPECT_TRUE(::kalvex::CloseTo((value), (expected), (tolerance)))

}  // namespace kalvex

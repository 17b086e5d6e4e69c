#include "support/difference_quotient.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace kalvex {

SlopeEstimate RiddersSlope(const std::function<double(double)>& f, double x, double scale) {
  constexpr std::size_t kSteps = 10;
  constexpr double kShrink = 1.4;
  std::array<std::array<double, kSteps>, kSteps> table{};
  double h = scale / 8, largest = 0;
  const auto quotient = [&] {
    const double above = x + h, below = x - h;
    const double high = f(above), low = f(below);
    largest = std::fmax(largest, std::fmax(std::fabs(high), std::fabs(low)));
    return (high - low) / (above - below);
  };
  SlopeEstimate best{quotient(), std::numeric_limits<double>::infinity()};
  table[0][0] = best.value;
  for (std::size_t i = 1; i < kSteps; ++i) {
    h /= kShrink;
    table[0][i] = quotient();
    double factor = kShrink * kShrink;
    for (std::size_t j = 1; j <= i; ++j) {
      table[j][i] = (table[j - 1][i] * factor - table[j - 1][i - 1]) / (factor - 1);
      factor *= kShrink * kShrink;
      const double error =
          std::fmax(std::fabs(table[j][i] - table[j - 1][i]), std::fabs(table[j][i] - table[j - 1][i - 1]));
      if (error <= best.error) best = {table[j][i], error};
    }
    if (std::fabs(table[i][i] - table[i - 1][i - 1]) >= 4 * best.error) break;
  }
  // The error from the rounding of f at the shortest step.
  best.error += std::numeric_limits<double>::epsilon() * largest / h;
  return best;
}

}  // namespace kalvex

// Trigamma functions in packs, and the constants that they share with the functions of one argument.
#pragma once

#include <array>
#include <iterator>
#include <span>

#include "core/vector_width.h"
#include "numeric/digamma.h"

namespace kalvex {

// Bernoulli numbers B_2, B_4, ..., B_20.
inline constexpr double kBernoulli[] = {1.0 / 6,       -1.0 / 30, 1.0 / 42,      -1.0 / 30,     5.0 / 66,
                                        -691.0 / 2730, 7.0 / 6,   -3617.0 / 510, 43867.0 / 798, -174611.0 / 330};

// B_2k (2k+n-1)!/(2k)! for each n and k = 1, 2, ...
using PolygammaSeries = std::array<double, std::size(kBernoulli)>;
inline constexpr std::array<PolygammaSeries, kMostPolygammas> kPolygammaSeries = [] {
  std::array<PolygammaSeries, kMostPolygammas> all{};
  double factorial = 1;  // n!
  for (int n = 0; n < kMostPolygammas; ++n) {
    if (n > 0) factorial *= n;
    double ratio = factorial / 2 * (n + 1);  // (2k+n-1)!/(2k)! for k = 1
    for (std::size_t i = 0; i < std::size(kBernoulli); ++i) {
      const int k = static_cast<int>(i) + 1;
      all[static_cast<std::size_t>(n)][i] = kBernoulli[i] * ratio;
      ratio *= double(2 * k + n) * (2 * k + n + 1) / (double(2 * k + 1) * (2 * k + 2));
    }
  }
  return all;
}();

struct DigammaKernels {
  // As Trigammas.
  void (*trigammas)(std::span<const Cplx> z, std::span<Cplx> values, std::span<Cplx> slopes);
};

}  // namespace kalvex

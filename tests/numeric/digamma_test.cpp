#include "numeric/digamma.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "numeric/digamma_kernels.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

constexpr double kPi = std::numbers::pi;

TEST(Digamma, HasItsKnownValues) {
  EXPECT_CLOSE(Digamma({1, 0}).re, -std::numbers::egamma, kFormula);
  EXPECT_CLOSE(Digamma({0.5, 0}).re, -std::numbers::egamma - 2 * std::numbers::ln2, kRound);
  EXPECT_CLOSE(Trigamma({1, 0}).re, kPi * kPi / 6, kRound);
  EXPECT_CLOSE(Trigamma({0.5, 0}).re, kPi * kPi / 2, kRound);
  for (const double y : {0.01, 0.7, 3.0, 40.0}) {
    EXPECT_CLOSE(Digamma({1, y}).im, -1 / (2 * y) + kPi / 2 / std::tanh(kPi * y), kLongSum) << y;
  }
}

TEST(Digamma, ObeysItsRecurrenceAndReflection) {
  for (double x = -3.3; x < 6; x += 0.71) {
    for (const double y : {-2.0, 0.3, 5.0}) {
      const Cplx z{x, y}, inverse = Cplx{1, 0} / z;
      const Cplx step = Digamma(z + 1.0) - Digamma(z), step2 = Trigamma(z + 1.0) - Trigamma(z);
      EXPECT_NEAR(step.re, inverse.re, kFormula);
      EXPECT_NEAR(step.im, inverse.im, kFormula);
      EXPECT_NEAR(step2.re, -(inverse * inverse).re, kChain);
      EXPECT_NEAR(step2.im, -(inverse * inverse).im, kChain);
    }
  }
}

TEST(Digamma, HigherOnesAreDerivativesOfTheLower) {
  constexpr double kQuotient = 1e-5;  // a central one, by h^2 n^2
  const double h = 1e-3;
  std::array<Cplx, kMostPolygammas> at, high, low;
  Polygammas({1.7, 0.8}, at);
  Polygammas({1.7 + h, 0.8}, high);
  Polygammas({1.7 - h, 0.8}, low);
  for (std::size_t n = 0; n + 1 < at.size(); ++n) {
    const Cplx slope = (high[n] - low[n]) / (2 * h);
    EXPECT_NEAR(at[n + 1].re, slope.re, kQuotient * Abs(at[n + 1]) * static_cast<double>((n + 1) * (n + 1)));
    EXPECT_NEAR(at[n + 1].im, slope.im, kQuotient * Abs(at[n + 1]) * static_cast<double>((n + 1) * (n + 1)));
  }
}

// No multiple of the numbers that go together.
std::vector<Cplx> ManyArguments() {
  std::vector<Cplx> z;
  for (const double x : {1e-3, 0.5, 3.2, 9.99, 40.0}) {
    for (const double y : {-30.0, -1.5, 0.0, 0.2, 7.0, 500.0}) z.push_back({x, y});
  }
  z.pop_back();  // not a multiple of the group size
  return z;
}

TEST(Digamma, ManyTrigammasAreThoseOfOneNumberEach) {
  const std::vector<Cplx> z = ManyArguments();
  std::vector<Cplx> values(z.size()), slopes(z.size());
  Trigammas(z, values, slopes);
  for (std::size_t i = 0; i < z.size(); ++i) {
    std::array<Cplx, 3> psi;
    Polygammas(z[i], psi);
    EXPECT_NEAR(Abs(values[i] - psi[1]), 0, kRound * Abs(psi[1])) << z[i].re << ' ' << z[i].im;
    EXPECT_NEAR(Abs(slopes[i] - psi[2]), 0, kFormula * Abs(psi[2])) << z[i].re << ' ' << z[i].im;
  }
}

TEST(Digamma, ManyTrigammasHaveTheSameBitsOnEveryWidthOfTheVectorUnits) {
  const std::vector<Cplx> z = ManyArguments();
  std::vector<Cplx> widest, slopesOfWidest;
  for (const DigammaKernels* const kernels : KernelsOfThisMachine<DigammaKernels>()) {
    std::vector<Cplx> values(z.size()), slopes(z.size());
    kernels->trigammas(z, values, slopes);
    if (widest.empty()) widest = values, slopesOfWidest = slopes;
    EXPECT_EQ(values, widest);
    EXPECT_EQ(slopes, slopesOfWidest);
  }
}

}  // namespace
}  // namespace kalvex

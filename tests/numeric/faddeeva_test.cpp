#include "numeric/faddeeva.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "support/tolerances.h"

namespace kalvex {
namespace {

// (i/pi) integral of exp(-t^2)/(z - t) along a line below the pole: w(z) by its definition. The trapezoidal rule
// converges exponentially. The line is shifted down by 1 if z is near the axis.
std::complex<double> SlowFaddeeva(std::complex<double> z) {
  const std::complex<double> down(0, -1), i(0, 1);
  std::complex<double> sum;
  const double h = 0.02;
  for (double t = -8; t <= 8; t += h) {
    const std::complex<double> s = t + down;
    sum += h * std::exp(-s * s) / (z - s);
  }
  return i / std::numbers::pi * sum;
}

TEST(Faddeeva, IsItsIntegralInTheUpperHalfPlane) {
  for (double x = -7; x <= 7; x += 0.37) {
    for (const double y : {0.0, 1e-9, 1e-3, 0.1, 0.5, 1.3, 4.0, 6.5, 30.0}) {
      const auto expected = SlowFaddeeva({x, y});
      const Cplx value = Faddeeva({x, y});
      EXPECT_NEAR(value.re, expected.real(), 8 * kRound * std::abs(expected)) << x << ' ' << y;
      EXPECT_NEAR(value.im, expected.imag(), 8 * kRound * std::abs(expected)) << x << ' ' << y;
    }
  }
}

TEST(Faddeeva, HasItsKnownValues) {
  constexpr double kNextTerm = 1e-11;  // of the asymptote 1/(root(pi) x)
  EXPECT_CLOSE(Faddeeva({0, 0}).re, 1, kRound);
  EXPECT_NEAR(Faddeeva({0, 0}).im, 0, kStep);
  for (const double y : {0.1, 1.0, 3.0, 5.0}) EXPECT_CLOSE(Faddeeva({0, y}).re, std::exp(y * y) * std::erfc(y), kChain);
  for (const double x : {0.3, 1.0, 2.5}) EXPECT_CLOSE(Faddeeva({x, 0}).re, std::exp(-x * x), kChain);
  EXPECT_CLOSE(Faddeeva({1e6, 0}).im, 1 / (std::sqrt(std::numbers::pi) * 1e6), kNextTerm);
}

TEST(Faddeeva, FarAwayItIsItsAsymptote) {
  constexpr double kNextTerm = 1e-8;  // of the asymptote
  for (const auto& [x, y] : {std::pair(1e5, 3e3), std::pair(40.0, 39.0), std::pair(300.0, 299.0), std::pair(1e8, 1e-3),
                             std::pair(-50.0, 60.0)}) {
    const std::complex<double> z(x, y), i(0, 1), root = std::sqrt(std::numbers::pi);
    const auto expected = i / (root * z) * (1.0 + 0.5 / (z * z) + 0.75 / (z * z * z * z));
    EXPECT_NEAR(Faddeeva({x, y}).re, expected.real(), kNextTerm * std::abs(expected));
    EXPECT_NEAR(Faddeeva({x, y}).im, expected.imag(), kNextTerm * std::abs(expected));
  }
}

TEST(Faddeeva, BelowTheAxisItIsMirrored) {
  const Cplx z{0.7, -1.1};
  const std::complex<double> s(0.7, -1.1);
  const auto expected = 2.0 * std::exp(-s * s) - SlowFaddeeva(-s);
  EXPECT_CLOSE(Faddeeva(z).re, expected.real(), kChain);
  EXPECT_CLOSE(Faddeeva(z).im, expected.imag(), kChain);
}

TEST(Faddeeva, DualNumbersCarryItsSlopes) {
  constexpr double kQuotient = 1e-9;  // the error of a central one
  const double h = 1e-5;
  const auto at = [](double x) { return FaddeevaOf(Complex<Dual<1>>{Dual<1>(x, 0), Dual<1>(0.4)}); };
  const Cplx high = ValueOf(at(0.9 + h)), low = ValueOf(at(0.9 - h));
  EXPECT_NEAR(at(0.9).re.v[0], (high.re - low.re) / (2 * h), kQuotient);
  EXPECT_NEAR(at(0.9).im.v[0], (high.im - low.im) / (2 * h), kQuotient);
  const auto slope = [](double x) { return FaddeevaSlopeOf(Complex<Dual<1>>{Dual<1>(x, 0), Dual<1>(0.4)}); };
  EXPECT_NEAR(slope(0.9).re.v[0], (ValueOf(slope(0.9 + h)).re - ValueOf(slope(0.9 - h)).re) / (2 * h), kQuotient);
  EXPECT_NEAR(ValueOf(slope(0.9)).im, at(0.9).im.v[0], kRound);
}

}  // namespace
}  // namespace kalvex

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "support/called_term.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"
#include "terms/gap_table.h"

namespace kalvex {
namespace {

using Std = std::complex<double>;

// First codes.
constexpr int kTwoFluid = 20, kOfTc = 7, kOfGap = 23;

Std Drude(double w, double Wp, double G) { return -Wp * Wp / Std(w * w, w * G); }

void ExpectNear(const Cplx& value, const Std& expected, double tolerance) {
  EXPECT_NEAR(value.re, expected.real(), tolerance * std::abs(expected));
  EXPECT_NEAR(value.im, expected.imag(), tolerance * std::abs(expected));
}

// Complete elliptic integrals of modulus k by the arithmetic-geometric mean.
struct Elliptic {
  double K, E;
};
Elliptic EllipticOf(double k) {
  double a = 1, b = std::sqrt(1 - k * k), c = k, sum = c * c / 2, power = 0.5;
  while (std::fabs(c) > 1e-16) {
    c = (a - b) / 2;
    const double mean = (a + b) / 2;
    b = std::sqrt(a * b);
    a = mean;
    power *= 2;
    sum += power * c * c;
  }
  const double K = std::numbers::pi / (2 * a);
  return {K, K * (1 - sum)};
}

// Real part of the conductivity relative to the normal state.
double ReducedS1(int code, const Values& in, double w) {
  const double normal = in[0] * in[0] / (60 * in[1]);
  return w * Called(in).Value(code, w).im / 60 / normal;
}

TEST(Superconductor, WithoutAGapOrAboveTcItIsADrudeMetal) {
  constexpr double kNoPairs = 1e-9, kSmallGap = 1e-4;  // the pair weight vanishes by cancellation; a gap of 1e-5 cm-1
  for (const double w : {3.0, 50.0, 400.0}) {
    ExpectNear(Called({5000, 80, 0, 4}).Value(kOfGap, w), Drude(w, 5000, 80), kChain);
    ExpectNear(Called({5000, 80, 10, 10}).Value(kOfTc, w), Drude(w, 5000, 80), kChain);
    ExpectNear(Called({5000, 80, 40, 10, 12, 0.3}).Value(kTwoFluid, w), Drude(w, 5000, 80), kChain);
    ExpectNear(Called({5000, 80, 40, 10, 4, 1}).Value(kTwoFluid, w), Drude(w, 5000, 80), kNoPairs);
    ExpectNear(Called({5000, 80, 1e-5, 4}).Value(kOfGap, w), Drude(w, 5000, 80), kSmallGap);
  }
}

TEST(Superconductor, TheDirtyLimitIsThatOfMattisAndBardeen) {
  constexpr double kClean = 1e-4;  // the gap beside the scattering rate, and more
  // T = 0, X = w/(2 Delta) > 1: S1 = (1 + 1/X) E(k) - (2/X) K(k), k = (X - 1)/(X + 1)
  for (const double X : {1.2, 1.7, 3.0, 8.0}) {
    const Elliptic e = EllipticOf((X - 1) / (X + 1));
    const double expected = (1 + 1 / X) * e.E - 2 / X * e.K;
    EXPECT_NEAR(ReducedS1(kOfGap, {5000, 1e7, 40, 0}, 40 * X), expected, kClean) << X;
  }
}

TEST(Superconductor, BelowItsGapAColdOneDoesNotAbsorb) {
  for (const double G : {5.0, 80.0, 4000.0}) {
    EXPECT_EQ(Called({5000, G, 40, 0}).Value(kOfGap, 39).im, 0);
    EXPECT_GT(Called({5000, G, 40, 0}).Value(kOfGap, 45).im, 0);
    EXPECT_GT(Called({5000, G, 40, 8}).Value(kOfGap, 20).im, 0);  // warm
  }
}

TEST(Superconductor, WhatIsMissingFromTheAbsorptionStandsAtZeroFrequency) {
  constexpr double kQuadrature = 2e-3;  // and the tail beyond e^11
  // The superfluid's squared plasma frequency -w^2 eps1(0) and the finite part of the integral of S1 add up to Wp^2.
  const Values in = {5000, 80, 40, 6};
  const double w0 = 1e-3;
  const double superfluid = -Called(in).Value(kOfGap, w0).re * w0 * w0;
  double integral = 0;
  for (double t = -14; t < 11; t += 0.002) {  // w = exp(t)
    const double w = std::exp(t);
    integral += w * Called(in).Value(kOfGap, w).im / 60 * w * 0.002;
  }
  const double found = superfluid + integral * 120 / std::numbers::pi;
  EXPECT_NEAR(found / (5000.0 * 5000.0), 1, kQuadrature);
}

TEST(Superconductor, TheThreeFormsAgreeWhereTheyMean) {
  ExpectNear(Called({5000, 80, 40, 10, 0, 0}).Value(kTwoFluid, 60),
             Std(Called({5000, 80, 40, 0}).Value(kOfGap, 60).re, Called({5000, 80, 40, 0}).Value(kOfGap, 60).im),
             kChain);
  const double gap = 3.52 * 0.6950788589157977 * 10 * std::sqrt(std::cos(std::numbers::pi / 2 * 0.36));
  const Cplx given = Called({5000, 80, gap, 6}).Value(kOfGap, 33);
  ExpectNear(Called({5000, 80, 6, 10}).Value(kOfTc, 33), Std(given.re, given.im), kLongSum);
}

TEST(Superconductor, DerivativesAgreeWithDifferenceQuotients) {
  const std::pair<int, Values> cases[] = {{kTwoFluid, {5000, 80, 40, 20, 9, 0.3}},
                                          {kOfTc, {5000, 80, 9, 20}},
                                          {kOfGap, {5000, 80, 40, 9}},
                                          {kOfGap, {5000, 15, 40, 3}}};
  for (const auto& [code, in] : cases) {
    for (const double w : {11.0, 35.0, 90.0}) {
      Called called(in);
      called.Value(code, w);
      const auto slopes = called.slopes;
      for (std::size_t i = 0; i < in.size(); ++i) {
        const auto part = [&, &in = in, c = code](bool imaginary) {
          return [&, c, imaginary](double x) {
            called.values[i] = x;
            const Cplx z = called.Value(c, w);
            called.values[i] = in[i];
            return imaginary ? z.im : z.re;
          };
        };
        const SlopeEstimate re = RiddersSlope(part(false), in[i], 0.05 * in[i]),
                            im = RiddersSlope(part(true), in[i], 0.05 * in[i]);
        const double size = std::fabs(re.value) + std::fabs(im.value);
        EXPECT_NEAR(slopes[i].re, re.value, kRidders * re.error + kSlopeOfIntegral * size)
            << code << ' ' << i << ' ' << w;
        EXPECT_NEAR(slopes[i].im, im.value, kRidders * im.error + kSlopeOfIntegral * size)
            << code << ' ' << i << ' ' << w;
      }
    }
  }
}

TEST(GapTable, FollowsTheGapEquation) {
  constexpr double kTable = 1e-4, kNearTc = 2e-3;  // the last digit as published; the next order of the root
  const GapTable table = MakeGapTable();
  EXPECT_EQ(ReducedGap(table, 0.0), 1);
  EXPECT_EQ(ReducedGap(table, 1.0), 0);
  EXPECT_NEAR(ReducedGap(table, 0.5), 0.9569, kTable);  // B. Muehlschlegel, Z. Physik 155, 313 (1959)
  EXPECT_NEAR(ReducedGap(table, 0.9), 0.5263, kTable);
  EXPECT_NEAR(ReducedGap(table, 0.999) / std::sqrt(0.001), 1.7367, kNearTc);
  for (double t = 0.02; t < 1; t += 0.02) EXPECT_LT(ReducedGap(table, t), ReducedGap(table, t - 0.02) + 1e-12);
}

}  // namespace
}  // namespace kalvex

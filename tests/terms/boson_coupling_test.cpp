#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "support/called_term.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using Std = std::complex<double>;
constexpr double kPi = std::numbers::pi;
constexpr double kKelvinInWavenumbers = 0.6950788589157977;
constexpr int kCode = 41;

// A spectrum of one narrow peak at 300 cm-1, of area 30.
class BosonCoupling : public testing::Test {
 protected:
  BosonCoupling() {
    Dataset& dataset = table.slots[3];
    dataset.id = table.nextId++;
    dataset.points = {{100, 0, 1}, {299, 0, 1}, {300, 30, 1}, {301, 0, 1}, {500, 0, 1}};
  }
  Cplx Value(const Values& in, double w, bool dc = false) {
    called = Called(in);
    called.environment.datasets = &table;
    called.environment.dcFlag = dc;
    return called.Value(kCode, w);
  }
  // M of eps = -Wp^2/(w (w + i (G + M))).
  Std Memory(const Values& in, double w) {
    const Cplx eps = Value(in, w);
    return (-in[0] * in[0] / (Std(eps.re, eps.im) * w) - w) / Std(0, 1) - in[1];
  }
  DatasetTable table;
  Called called{{}};
};

TEST_F(BosonCoupling, WithoutASpectrumItIsADrudeTerm) {
  for (const double number : {0.0, 5.0, 101.0, -1.0}) {
    const Cplx value = Value({5000, 80, 100, number, 0, 0}, 60);
    const Std expected = -5000 * 5000.0 / Std(3600, 60 * 80);
    EXPECT_CLOSE(value.re, expected.real(), kRound);
    EXPECT_CLOSE(value.im, expected.imag(), kRound);
  }
}

TEST_F(BosonCoupling, AFullMixingSwitchesTheSpectrumOff) {
  EXPECT_EQ(Value({5000, 80, 100, 4, 0, 1}, 60), Value({5000, 80, 100, 0, 0, 1}, 60));
}

TEST_F(BosonCoupling, ColdElectronsScatterOnlyAboveTheBoson) {
  constexpr double kWarmth = 1e-6, kNextOrder = 1e-4;  // 0.5 K; and (w/W)^2
  // Re M = 2 pi a2F dW (1 - W/w) above W, nothing below; -Im M/w -> 2 a2F dW/W at low frequency.
  const Values cold = {5000, 0, 0.5, 4, 0, 0};
  EXPECT_NEAR(Memory(cold, 600).real(), 2 * kPi * 30 * (1 - 300.0 / 600), kWarmth);
  EXPECT_NEAR(Memory(cold, 200).real(), 0, kWarmth);
  EXPECT_NEAR(-Memory(cold, 5).imag() / 5, 2 * 30.0 / 300, kNextOrder);
}

TEST_F(BosonCoupling, TheRateIsThatOfThermalBosons) {
  constexpr double kQuadrature = 1e-6, kNearZero = 1e-9, kStatic = 1e-4;  // the limit at w = 1e-3
  // Re M = (pi/w) a2F dW [2 w coth(W/2T) - (w + W) coth((w + W)/2T) + (w - W) coth((w - W)/2T)]
  for (const double kelvins : {50.0, 300.0, 2000.0}) {
    const double T = kKelvinInWavenumbers * kelvins, W = 300;
    const auto coth = [](double x) { return 1 / std::tanh(x); };
    for (const double w : {1.0, 90.0, 450.0, 3000.0}) {
      const double expected =
          kPi / w * 30 *
          (2 * w * coth(W / (2 * T)) - (w + W) * coth((w + W) / (2 * T)) + (w - W) * coth((w - W) / (2 * T)));
      EXPECT_NEAR(Memory({5000, 10, kelvins, 4, 0, 0}, w).real(), expected,
                  kQuadrature * std::fabs(expected) + kNearZero)
          << kelvins << ' ' << w;
    }
    const double y = W / (2 * kPi * T);
    EXPECT_NEAR(Memory({5000, 10, kelvins, 4, 0, 0}, 1e-3).real(),
                2 * kPi * kPi * y / std::pow(std::sinh(kPi * y), 2) * 30, kStatic);
  }
}

TEST_F(BosonCoupling, AMeshTakesEqualIntervalsInsideTheSecondAndTheLastButOnePoint) {
  constexpr double kMesh = 1e-3;  // difference of two quadrature rules
  Dataset& dataset = table.slots[3];
  dataset.points.clear();
  for (int i = 0; i <= 100; ++i) dataset.points.push_back({10.0 * i + 1, std::exp(-std::pow((i - 50) / 12.0, 2)), 1});
  const Std own = Memory({5000, 10, 100, 4, 0, 0}, 700), mesh = Memory({5000, 10, 100, 4, 400, 0}, 700);
  EXPECT_NEAR(std::abs(own - mesh) / std::abs(own), 0, kMesh);
  EXPECT_NE(own, mesh);
}

TEST_F(BosonCoupling, ZeroFrequencyPlotsAndAbsoluteZeroAreFinite) {
  EXPECT_TRUE(std::isfinite(Value({5000, 80, 0, 4, 0, 0}, 60).im));
  EXPECT_TRUE(std::isfinite(Value({5000, 80, 100, 4, 0, 0}, 0).im));
  EXPECT_EQ(Value({5000, 80, 100, 4, 0, 0}, 60, true), Value({5000, 80, 100, 4, 0, 0}, 1e-10));
}

TEST_F(BosonCoupling, ANewDatasetOfTheSameSlotIsSeen) {
  const Values in = {5000, 80, 100, 4, 0, 0};
  const Cplx before = Value(in, 600);
  table.slots[3].points[2].y = 60;
  table.slots[3].id = table.nextId++;
  EXPECT_NE(Value(in, 600), before);
}

TEST_F(BosonCoupling, DerivativesAgreeWithDifferenceQuotients) {
  const Values in = {5000, 80, 100, 4, 0, 0.2};
  for (const double w : {20.0, 250.0, 900.0}) {
    Value(in, w);
    const auto slopes = called.slopes;
    for (const std::size_t i : {0u, 1u, 2u, 5u}) {
      const auto part = [&](bool imaginary) {
        return [&, imaginary](double x) {
          Values moved = in;
          moved[i] = x;
          const Cplx z = Value(moved, w);
          return imaginary ? z.im : z.re;
        };
      };
      const SlopeEstimate re = RiddersSlope(part(false), in[i], 0.05 * in[i]),
                          im = RiddersSlope(part(true), in[i], 0.05 * in[i]);
      const double size = std::fabs(re.value) + std::fabs(im.value);
      EXPECT_NEAR(slopes[i].re, re.value, kRidders * re.error + kSlopeOfIntegral * size) << i << ' ' << w;
      EXPECT_NEAR(slopes[i].im, im.value, kRidders * im.error + kSlopeOfIntegral * size) << i << ' ' << w;
    }
    EXPECT_EQ(slopes[3], (Cplx{0, 0}));
    EXPECT_EQ(slopes[4], (Cplx{0, 0}));
  }
}

}  // namespace
}  // namespace kalvex

#include "terms/lorentz.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <random>

#include "support/difference_quotient.h"
#include "support/tolerances.h"
#include "terms/term_table.h"

namespace kalvex {
namespace {

using Std = std::complex<double>;

Std DenominatorAt(double w, double W, double G) { return {W * W - w * w, -w * G}; }

// Calls a calculator directly: values in, value and derivatives out.
struct Caller {
  TermCalc calc;
  std::vector<double> values;
  std::vector<Cplx> slopes;
  Cplx result;
  int status = 0;

  Caller(TermCalc function, std::vector<double> in) : calc(function), values(std::move(in)), slopes(values.size()) {}

  Cplx At(double w) {
    std::vector<TermInput> inputs;
    for (std::size_t i = 0; i < values.size(); ++i) {
      inputs.push_back({values[i], 1, &slopes[i].re, &slopes[i].im, nullptr});
    }
    status = calc({w, true, inputs, nullptr}, result);
    return result;
  }
};

void ExpectSlopes(Caller caller, double w) {
  caller.At(w);
  const std::vector<Cplx> slopes = caller.slopes;
  for (std::size_t i = 0; i < slopes.size(); ++i) {
    if (caller.calc == kFactorised.calc && (i == 1 || i == 2)) continue;  // the counts are not parameters
    const auto part = [&](bool imaginary) {
      return [&caller, i, w, imaginary](double x) {
        const double before = std::exchange(caller.values[i], x);
        const Cplx z = caller.At(w);
        caller.values[i] = before;
        return imaginary ? z.im : z.re;
      };
    };
    const double x = caller.values[i], scale = 0.02 * std::fabs(x) + 1e-3;
    const SlopeEstimate re = RiddersSlope(part(false), x, scale), im = RiddersSlope(part(true), x, scale);
    EXPECT_NEAR(slopes[i].re, re.value, kRidders * re.error + kSlopeOfFormula * std::fabs(re.value)) << i;
    EXPECT_NEAR(slopes[i].im, im.value, kRidders * im.error + kSlopeOfFormula * std::fabs(im.value)) << i;
  }
}

TEST(Lorentz, IsTheOscillator) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> value(1, 500);
  for (int k = 0; k < 50; ++k) {
    const double W = value(random), P = value(random), G = value(random) / 10, w = value(random);
    const Std expected = P * P / DenominatorAt(w, W, G);
    const Cplx z = Caller(CalcLorentz, {W, P, G}).At(w);
    EXPECT_CLOSE(z.re, expected.real(), kChain);
    EXPECT_CLOSE(z.im, expected.imag(), kChain);
    EXPECT_GT(z.im, 0);
    ExpectSlopes(Caller(CalcLorentz, {W, P, G}), w);
  }
}

TEST(Lorentz, AtZeroItIsADrudeTerm) {
  const double w = 77, P = 900, G = 31;
  const Std expected = -P * P / Std(w * w, w * G);
  const Cplx z = Caller(CalcLorentz, {0, P, G}).At(w);
  EXPECT_CLOSE(z.re, expected.real(), kRound);
  EXPECT_CLOSE(z.im, expected.imag(), kRound);
}

TEST(Lorentz, AnExactResonanceWithoutWidthGivesTheMarkerAndNoSlopes) {
  for (const double W : {0.0, 120.0}) {
    Caller caller(CalcLorentz, {W, 50, 0});
    EXPECT_EQ(caller.At(W), (Cplx{1e30, 1e30}));
    for (const Cplx& slope : caller.slopes) EXPECT_EQ(slope, (Cplx{0, 0}));
  }
}

TEST(Lorentz, ANegativeFrequencyTurnsOnlyTheSlopeAround) {
  Caller plus(CalcLorentz, {90, 50, 7}), minus(CalcLorentz, {-90, 50, 7});
  EXPECT_EQ(plus.At(80), minus.At(80));
  EXPECT_EQ(plus.slopes[0], -minus.slopes[0]);
}

TEST(Lorentz, InputsThatAreHeldGetNothing) {
  double re = 5, im = 6;
  const TermInput held[] = {{90, 0, &re, &im, nullptr}, {50, 0, &re, &im, nullptr}, {7, 0, &re, &im, nullptr}};
  Cplx z;
  CalcLorentz({80, true, held, nullptr}, z);
  EXPECT_EQ(re, 5);
  EXPECT_EQ(im, 6);
}

TEST(Factorised, IsTheQuotientOfProducts) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> value(50, 500), width(2, 30);
  for (int k = 0; k < 20; ++k) {
    std::vector<double> in = {value(random) / 100, 2, 2};
    for (int j = 0; j < 4; ++j) {
      in.push_back(value(random));
      in.push_back(width(random));
    }
    const double w = value(random);
    const Std expected = in[0] * DenominatorAt(w, in[3], in[4]) * DenominatorAt(w, in[5], in[6]) /
                         (DenominatorAt(w, in[7], in[8]) * DenominatorAt(w, in[9], in[10]));
    const Cplx z = Caller(kFactorised.calc, in).At(w);
    EXPECT_CLOSE(z.re, expected.real(), kChain);
    EXPECT_CLOSE(z.im, expected.imag(), kChain);
    ExpectSlopes(Caller(kFactorised.calc, in), w);
  }
}

TEST(Factorised, WithoutFactorsItIsTheBaseValue) {
  Caller caller(kFactorised.calc, {4.5, 0, 0});
  EXPECT_EQ(caller.At(100), (Cplx{4.5, 0}));
  EXPECT_EQ(caller.slopes[0], (Cplx{1, 0}));
}

TEST(Factorised, WithEqualWidthsAPairIsAnOscillator) {
  const double A = 11, LO = 292, TO = 268, G = 2.4, w = 271;
  const Cplx pair = Caller(kFactorised.calc, {A, 1, 1, LO, G, TO, G}).At(w);
  const Std oscillator = A + A * (LO * LO - TO * TO) / DenominatorAt(w, TO, G);
  EXPECT_CLOSE(pair.re, oscillator.real(), kChain);
  EXPECT_CLOSE(pair.im, oscillator.imag(), kChain);
}

TEST(Factorised, UnequalCountsWriteNothing) {
  Caller caller(kFactorised.calc, {4, 1, 2, 100, 5, 90, 5, 80, 5});
  caller.result = {3, 4};
  EXPECT_EQ(caller.At(100), (Cplx{3, 4}));
  EXPECT_EQ(caller.status, -1);
}

TEST(Factorised, AFailedDenominatorGivesTheMarkerAndNoSlopes) {
  Caller caller(kFactorised.calc, {4, 1, 1, 100, 5, 90, 0});
  caller.slopes.assign(7, {9, 9});
  EXPECT_EQ(caller.At(90), (Cplx{1e30, 1e30}));
  for (const std::size_t i : {0u, 3u, 4u, 5u, 6u}) EXPECT_EQ(caller.slopes[i], (Cplx{0, 0}));
}

TEST(Factorised, AVanishingNumeratorOrBaseHasSlopeZeroInPlaceOfAQuotient) {
  Caller caller(kFactorised.calc, {4, 1, 1, 100, 0, 90, 5});
  EXPECT_EQ(caller.At(100), (Cplx{0, 0}));
  EXPECT_EQ(caller.slopes[3], (Cplx{0, 0}));
  Caller zero(kFactorised.calc, {0, 1, 1, 100, 5, 90, 5});
  zero.At(100);
  EXPECT_EQ(zero.slopes[0], (Cplx{0, 0}));
}

// ---- partial spectral weight

double SlowWeight(double w, double W, double G) {
  // Simpson's rule on x = t^2, dense where the line is.
  const int steps = 400000;
  const auto f = [&](double x) {
    const double d = W * W - x * x;
    return G * x * x / (d * d + G * G * x * x);
  };
  const double h = w / steps;
  double sum = f(w);
  for (int i = 1; i < steps; ++i) sum += (i % 2 ? 4 : 2) * f(i * h);
  return sum * h / 3;
}

TEST(PartialWeight, IsTheIntegral) {
  for (const auto& [w, W, G] :
       {std::tuple(50.0, 100.0, 10.0), std::tuple(130.0, 100.0, 10.0), std::tuple(300.0, 100.0, 450.0),
        std::tuple(80.0, 20.0, 39.0), std::tuple(900.0, 100.0, 60.0)}) {
    EXPECT_CLOSE(PartialWeightOf(w, W, G).F, SlowWeight(w, W, G), kChain);
  }
}

TEST(PartialWeight, TendsToHalfPiSoThatTheWeightTendsToAnEighth) {
  constexpr double kRest = 2e-6, kRestOfWeight = 1e-6;  // beyond 1e9 cm-1
  for (const double G : {1.0, 30.0, 200.0, 700.0}) {
    EXPECT_NEAR(PartialWeightOf(1e9, 100, G).F, std::numbers::pi / 2, kRest);
  }
  double out[3];
  const TermInput in[] = {
      {100, 1, nullptr, nullptr, &out[0]}, {40, 1, nullptr, nullptr, &out[1]}, {7, 1, nullptr, nullptr, &out[2]}};
  double weight = 0;
  ScalarLorentz({1e9, true, in, nullptr}, weight);
  EXPECT_CLOSE(weight, 40.0 * 40 / 8, kRestOfWeight);
  EXPECT_CLOSE(out[1], 40.0 / 4, kRestOfWeight);
}

TEST(PartialWeight, SpecialBranchesJoinTheClosedForm) {
  constexpr double kBesideIt = 1e-6, kHalfTheDigits = 1e-4;  // the code replaces 0 by 1e-6 or 1e-4
  EXPECT_EQ(PartialWeightOf(50, 100, 0).F, 0);
  EXPECT_EQ(PartialWeightOf(150, 100, 0).F, std::numbers::pi / 2);
  EXPECT_NEAR(PartialWeightOf(150, 100, 1e-6).F, std::numbers::pi / 2, kBesideIt);
  EXPECT_CLOSE(PartialWeightOf(50, 0, 20).F, std::atan2(50, 20), kRound);
  EXPECT_CLOSE(PartialWeightOf(50, 0, 20).dG, -50.0 / (2500 + 400), kRound);
  EXPECT_NEAR(PartialWeightOf(50, 1e-4, 20).F, std::atan2(50, 20), kBesideIt);
  // Critical damping, where the two roots coincide. The closed form is evaluated at a slightly different width and
  // loses half its digits there.
  EXPECT_NEAR(PartialWeightOf(50, 30, 60).F, SlowWeight(50, 30, 60), kHalfTheDigits);
  EXPECT_NEAR(PartialWeightOf(50, 30, 60 + 1e-6).F, PartialWeightOf(50, 30, 60 - 1e-6).F, kBesideIt);
}

TEST(PartialWeight, DerivativesAgreeWithDifferenceQuotients) {
  struct Case {
    double w, W, G;
  };
  for (const Case& c : {Case{50, 100, 10}, Case{130, 100, 25}, Case{300, 100, 450}}) {
    const PartialWeight at = PartialWeightOf(c.w, c.W, c.G);
    const SlopeEstimate byW = RiddersSlope([&](double x) { return PartialWeightOf(c.w, x, c.G).F; }, c.W, 2);
    const SlopeEstimate byG = RiddersSlope([&](double x) { return PartialWeightOf(c.w, c.W, x).F; }, c.G, 1);
    EXPECT_NEAR(at.dW, byW.value, kRidders * byW.error + kSlopeOfFormula * std::fabs(byW.value));
    EXPECT_NEAR(at.dG, byG.value, kRidders * byG.error + kSlopeOfFormula * std::fabs(byG.value));
  }
}

TEST(PartialWeight, ANegativeWidthOrFrequencyGivesNothing) {
  double out[3] = {1, 1, 1};
  for (const auto& [w, G] : {std::pair(100.0, -1.0), std::pair(-1.0, 5.0)}) {
    const TermInput in[] = {
        {100, 1, nullptr, nullptr, &out[0]}, {40, 1, nullptr, nullptr, &out[1]}, {G, 1, nullptr, nullptr, &out[2]}};
    double weight = 1;
    ScalarLorentz({w, true, in, nullptr}, weight);
    EXPECT_EQ(weight, 0);
    for (const double slope : out) EXPECT_EQ(slope, 0);
  }
}

}  // namespace
}  // namespace kalvex

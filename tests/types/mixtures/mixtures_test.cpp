// Compares mixtures and sums with their limits and with formulas in std::complex.
#include "evaluation/quantity_formulas.h"
#include "terms/boson_coupling.h"
#include "terms/term_table.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class Mixtures : public TypeFixture {
 protected:
  Mixtures() : a(Medium(3, {{200, 300, 12}})), b(Medium(5, {{150, 250, 20}})) {}
  double a, b;
};

TEST_F(Mixtures, InSeriesOfEqualMediaAreThatMediumForAnyWeights) {
  for (const double weight : {0.1, 3.0}) {
    Model& model = Make(8, {{a, weight, 0}, {a, 0.7, 0}});
    EXPECT_LT(std::abs(Pair(model, kE1, 190) - Eps(a, 190)), kChain);
    EXPECT_NEAR(At(model, kRefl, 190), At(ModelOf(a), kRefl, 190), kRound);
  }
}

TEST_F(Mixtures, InSeriesAddTheirInversesByWeight) {
  Model& model = Make(8, {{a, 0.3, 0}, {b, 0.6, 0}});
  const C e = 0.9 / (0.3 / Eps(a, 190) + 0.6 / Eps(b, 190));
  EXPECT_LT(std::abs(Pair(model, kE1, 190) - e), kChain);
  Model& first = Make(8, {{a, 1, 0}, {b, 0, 0}});
  EXPECT_LT(std::abs(Pair(first, kE1, 190) - Eps(a, 190)), kChain);
}

TEST_F(Mixtures, OfAPowderKeepAMediumAndTakeTheFormulasBranch) {
  for (const double f : {0.2, 0.6, 1.0}) {
    Model& same = Make(15, {{a, a, f}});
    EXPECT_LT(std::abs(Pair(same, kE1, 190) - Eps(a, 190)), kChain) << f;
  }
  const C e0 = Eps(a, 190), e1 = Eps(b, 190);
  Model& full = Make(15, {{a, b, 1}});
  EXPECT_LT(std::abs(Pair(full, kE1, 190) - 0.5 * (std::sqrt(e1 * e1 + 8.0 * e0 * e1) - e1)), kChain);
  Model& third = Make(15, {{a, b, 1.0 / 3}});
  EXPECT_LT(std::abs(Pair(third, kE1, 190) - 0.5 * (0.5 * e0 + std::sqrt(0.25 * e0 * e0 + 2.0 * e0 * e1))), kChain);
  // Below the real axis the other sign of the root applies.
  const double gain = Medium(3, {{200, 300, -12}});
  Model& below = Make(15, {{gain, gain, 0.5}});
  const C e = Eps(gain, 190);
  ASSERT_LT((e * e).imag(), 0);
  const double sum = -1.0 / (1.5 - 5), rest = 6 / (5 - 1.5);
  EXPECT_LT(std::abs(Pair(below, kE1, 190) - 0.5 * (e * sum * 1.0 - std::sqrt(e * e * rest * rest))), kChain);
}

TEST_F(Mixtures, OfTwoComponentsAreARootOfTheirEquation) {
  const C e0 = Eps(a, 120), e1 = Eps(b, 120);
  const double L = 0.3, f = 0.4, g = 0.6;
  Model& model = Make(40, {{a, b, 0}, {L, f, 0}});
  const C e = Pair(model, kE1, 120), B = f * e1 + g * e0 - (f * e0 + g * e1) * L;
  EXPECT_LT(std::abs(L * e * e + B * e + e0 * e1), kLongSum);
  const C underRoot = B * B - 4.0 * e0 * e1 * L;
  const double sign = underRoot.imag() >= 0 ? 1 : -1;
  EXPECT_LT(std::abs(e - (-B + sign * std::sqrt(underRoot)) / (2 * L)), kChain);
  Model& none = Make(40, {{a, b, 0}, {0, f, 0}});
  EXPECT_LT(std::abs(Pair(none, kE1, 120) + e0 * e1 / (f * e1 + g * e0)), kChain);
}

TEST_F(Mixtures, OfADoubleLayerWithoutModesAreTheLayersInSeries) {
  // With ec = ed = 0 only the depolarisation of the layer currents remains: 1 + ea/B - (eb/B) ..., solved here.
  const double none = Medium(0), B = 5;
  Model& model = Make(7, {{a, 0.3, 3}, {b, 0.4, 8}, {none, 0.2, B}, {none, 0, 0}});
  const C ea = Eps(a, 170), eb = Eps(b, 170);
  const C Ea = (1.0 + eb / B) / (1.0 + ea / B), Eb = 1.0, mean = (3.0 * Ea + 8.0 * Eb) / 11.0;
  const C e = B + (ea * Ea * 3.0 + eb * Eb * 8.0) / (11.0 * mean);
  EXPECT_LT(std::abs(Pair(model, kE1, 170) - e), kLongSum);
}

TEST_F(Mixtures, OfADoubleLayerSolveTheirLocalFields) {
  const double c = Medium(0.4, {{180, 120, 9}}), d = Medium(0.2, {{90, 60, 9}}), x = 165;
  const double wa = 0.3, wb = 0.4, wc = 0.2, da = 3, db = 8, B = 5;
  Model& model = Make(7, {{a, wa, da}, {b, wb, db}, {c, wc, B}, {d, 0, 0}});
  const C ea = Eps(a, x), eb = Eps(b, x), ec = Eps(c, x), ed = Eps(d, x);
  const C Ea = [&] {
    const C a11 = 1.0 + ea / B - ec * wa * ea / (2 * B * B), a12 = -eb / B + ec * wa * eb / (2 * B * B);
    const C a21 = -ec * wb * ea / (2 * B * B), a22 = 1.0 + ec * wb * eb / (2 * B * B);
    const C b1 = 1.0 - ec * wa / B, b2 = 1.0 - ec * wb / B - ed * wc / B;
    return (b1 * a22 - a12 * b2) / (a11 * a22 - a12 * a21);
  }();
  // The second row of the system, with Ea known.
  const C a21 = -ec * wb * ea / (2 * B * B), a22 = 1.0 + ec * wb * eb / (2 * B * B);
  const C Eb = (1.0 - ec * wb / B - ed * wc / B - a21 * Ea) / a22, mean = (Ea * da + Eb * db) / (da + db);
  const C e =
      B + (ea * Ea * da + eb * Eb * db) / ((da + db) * mean) + (ec * (1.0 + (eb * Eb - ea * Ea) / (2 * B)) + ed) / mean;
  EXPECT_LT(std::abs(Pair(model, kE1, x) - e), kLongSum);
}

TEST_F(Mixtures, WithAPermeabilityMatchVacuumWhereItEqualsThePermittivity) {
  constexpr double kLimit = 1e-10;  // the other part has a vanishing fraction
  const double eps = Medium(2.5), mu = Medium(2.5), one = Medium(1);
  EXPECT_EQ(At(Make(9, {{eps, mu, 0}}), kRefl, 100), 0);
  Model& usual = Make(9, {{a, one, 0}});
  for (const Quantity q : {kRefl, kTrans, kRp, kRs, kN1, kN2}) {
    EXPECT_NEAR(At(usual, q, 190), At(ModelOf(a), q, 190), kLimit * std::fabs(At(usual, q, 190)) + kRound) << q;
  }
  for (const Quantity q : {kE1, kE2, kS1, kS2, kLoss}) EXPECT_EQ(At(usual, q, 190), 0);
  const C n = std::sqrt(Eps(a, 190) * 2.5);
  EXPECT_LT(std::abs(Pair(Make(9, {{a, mu, 0}}), kN1, 190) - n), kLongSum);
}

TEST_F(Mixtures, WithAPermeabilityDemandTwoDifferentModels) {
  EXPECT_EQ(Status(Make(9, {{a, a, 0}}), 100), -1);
  EXPECT_EQ(Left(kRefl), 77);
  EXPECT_EQ(EvalModelAfter(program.eval, Make(9, {{a, a, 0}})), -1);
}

TEST_F(Mixtures, ByFrequencyOverTemperatureAskTheThirdModelThere) {
  const double T = 4, c = Medium(2, {{30, 40, 5}});
  program.params.ExpParams[kScalingFactorOfT].value = 0.02;
  Model& model = Make(11, {{a, b, c}, {T, 0, 0}});
  const C e = Eps(a, 100) + T * T * Eps(b, 100) + (1 - 0.02 * T * T) / (T * T) * Eps(c, 25);
  EXPECT_LT(std::abs(Pair(model, kE1, 100) - e), kLongSum);
  for (const double cold : {0.0, -3.0}) {
    Cell(model, 1, Wo).value = cold;
    EXPECT_EQ(Status(model, 100), -1);
  }
}

class Coupled : public Mixtures {
 protected:
  Coupled() : spectrum(Medium(1)) {
    Model& model = ModelOf(spectrum);
    model.vdf.On = true;
    for (int k = 0; k <= 60; ++k) {
      const double W = 20 + 5.0 * k;
      model.vdf.mesh.push_back({W, {}, {}});
      model.vdf.mesh.back().e2.value = 0.4 * std::exp(-std::pow((W - 150) / 40, 2));
    }
  }
  double spectrum;
};

TEST_F(Coupled, CarriersGiveTheSumOverTheSpectrum) {
  const double none = Medium(0), T = 80, Wp = 9000, rate = 60, x = 240,
               unit = 2 * std::numbers::pi * 0.6950788589157977 * T;
  Model& model = Make(12, {{none, none, spectrum}, {T, Wp, rate}, {0, 0, 0}});
  C M = kI * rate;
  for (int k = 0; k <= 60; ++k) {
    const double W = 20 + 5.0 * k, weight = k == 0 || k == 60 ? 2.5 : 5;
    const BosonKernel K = BosonKernelAt(x / unit, W / unit);
    M += 2 * weight * 0.4 * std::exp(-std::pow((W - 150) / 40, 2)) * C(K.value.re, K.value.im);
  }
  const C D = -Wp * Wp / ((x + M) * x);
  EXPECT_LT(std::abs(Pair(model, kE1, x) - D), kLongSum * std::abs(D));
}

TEST_F(Coupled, CarriersAreTheTermOfTheSameSpectrum) {
  // The mesh as a dataset, through the composite term of boson coupling.
  Dataset& data = program.datasets.slots[2];
  data.id = 3;
  for (const VdfMeshPoint& point : ModelOf(spectrum).vdf.mesh) data.points.push_back({point.x, point.e2.value, 0});
  program.eval.termEnvironment.datasets = &program.datasets;
  std::vector<TermInput> inputs(6);
  const double values[] = {9000, 60, 80, 3, 0, 0};
  for (std::size_t i = 0; i < 6; ++i) inputs[i].value = values[i];
  Cplx term;
  kBosonCoupling41.calc({240, false, inputs, &program.eval.termEnvironment}, term);
  const double none = Medium(0);
  Model& model = Make(12, {{none, none, spectrum}, {80, 9000, 60}, {0, 0, 0}});
  EXPECT_LT(std::abs(Pair(model, kE1, 240) - C(term.re, term.im)), kLongSum * Abs(term));
}

TEST_F(Coupled, WithoutSpectrumAreFreeCarriersWithTheirFactors) {
  for (VdfMeshPoint& point : ModelOf(spectrum).vdf.mesh) point.e2.value = 0;
  const double T = 3, t2 = std::pow(0.6950788589157977 * T, 2), x = 200;
  Model& model = Make(12, {{a, b, spectrum}, {T, 5000, 70}, {0.01, 0, 0}});
  const C e = Eps(a, x) + t2 * Eps(b, x) - 5000.0 * 5000 / ((x + 70.0 * kI) * x) * (1 - 0.01 * t2);
  EXPECT_LT(std::abs(Pair(model, kE1, x) - e), kLongSum * std::abs(e));
}

TEST_F(Coupled, DemandAMeshThatIsOnAndATemperature) {
  Model& model = Make(12, {{a, b, spectrum}, {80, 9000, 60}, {0, 0, 0}});
  EXPECT_EQ(Status(model, 100), 0);
  ModelOf(spectrum).vdf.On = false;
  EXPECT_EQ(Status(model, 100), -1);
  ModelOf(spectrum).vdf.On = true;
  for (const double T : {0.0, -1.0, 1e-11}) {
    Cell(model, 1, Wo).value = T;
    EXPECT_EQ(Status(model, 100), -1) << T;
  }
  ModelOf(spectrum).vdf.mesh.clear();
  Cell(model, 1, Wo).value = 80;
  EXPECT_EQ(Status(model, 100), -1);
}

}  // namespace
}  // namespace kalvex

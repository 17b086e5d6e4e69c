// Results and combinations of other models, compared with the same computed here from their Quantities.
#include "records/model_rows.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class Derived : public TypeFixture {
 protected:
  Derived() : a(Medium(3, {{200, 300, 12}})), b(Medium(5, {{150, 250, 20}})) {}
  double a, b;
};

TEST_F(Derived, RateAndMassOfFreeCarriersAreTheirOwn) {
  const double metal = Medium(2.5, {{0, 2000, 70}});
  Model& model = Make(6, {{metal, 2000, 2.5}});
  for (const double x : {30.0, 400.0}) {
    EXPECT_NEAR(At(model, kRefl, x), 70, kChain);
    EXPECT_NEAR(At(model, kRp, x), 1, kRound);
    EXPECT_NEAR(At(model, kTrans, x), 70, kChain);
    EXPECT_NEAR(At(model, kS1, x), 90 - std::arg(Eps(metal, x) - 2.5) * 180 / std::numbers::pi, kChain);
  }
  EXPECT_EQ(At(model, kRefl, 0), 0);
}

TEST_F(Derived, SpectralWeightTendsToThePlasmaFrequency) {
  // The rest beyond 1e7 cm-1, of a frequency and of the weight; steps of 0.01 cm-1.
  constexpr double kRest = 0.1, kRestOfWeight = 2, kQuadrature = 1e-5;
  const double lossless = Medium(2.5, {{100, 800, 5}});
  Model& model = Make(10, {{lossless, 1e-22, 0}});
  EXPECT_NEAR(At(model, kTrans, 1e7), 800, kRest);
  EXPECT_NEAR(At(model, kRefl, 1e7), std::numbers::pi * 800 * 800 / 120, kRestOfWeight);
  // n V = 2 m V/(pi e^2) times the integral of sigma over w = 2 pi c x: 4 m c V/e^2 per weight, 1e-2 from SI units.
  constexpr double kMass = 9.1093837e-31, kLight = 2.99792458e8, kCharge = 1.602176634e-19;
  constexpr double kOldUnits = 1e-3;  // constants of the formula have three digits, such as 60 Ohm for 59.96
  EXPECT_CLOSE(At(model, kRp, 400) / At(model, kRefl, 400), 1e-2 * 4 * kMass * kLight / (kCharge * kCharge) * 1e-22,
               kOldUnits);
  // The integral of the conductivity.
  double sum = 0;
  for (double x = 0.005; x < 160; x += 0.01) sum += 0.01 * At(ModelOf(lossless), kS1, x);
  EXPECT_NEAR(At(model, kRefl, 160), sum, kQuadrature * sum);
}

TEST_F(Derived, ANegativeSpectralWeightHasNoPlasmaFrequency) {
  const double negative = Medium(2);
  VarDielFunc& vdf = ModelOf(negative).vdf;
  vdf.On = true;
  for (const double x : {50.0, 100.0, 200.0}) vdf.mesh.push_back({x, {}, {}});
  vdf.mesh[1].e2.value = -3;
  vdf.mesh[1].e2.adjustable = 1;
  Model& model = Make(10, {{negative, 1e-22, 0}});
  ASSERT_LT(At(model, kRefl, 300), 0);
  EXPECT_EQ(At(model, kTrans, 300), 0);
  WantOnly(program.eval.quantities, QuantitySet{kTrans});
  ASSERT_EQ(EvalWithSlopes(program, model, 300), 0);
  EXPECT_EQ(ModelOf(negative).vdf.mesh[1].e2.savedSlopes.dQuantity[kTrans], 0);
}

class Ratios : public Derived {
 protected:
  Ratios() {
    for (const double sample : {a, b}) films.push_back(Make(33, {{sample, 0.001, 0}, {Medium(11.7), 0.02, 0}}).number);
    films.push_back(Make(33, {{Medium(2.2), 0.001, 0}, {Medium(11.7), 0.02, 0}}).number);
    films.push_back(Make(33, {{Medium(3.3), 0.001, 0}, {Medium(11.7), 0.02, 0}}).number);
  }
  Model& Ratio(double mode) { return Make(81, {{mode, films[0], films[1]}, {films[2], films[3], 0}, {0, 0, 0}}); }
  double Of(std::size_t film, Quantity q) { return At(ModelOf(films[film]), q, 170); }
  std::vector<double> films;
};

TEST_F(Ratios, CombineTheirModelsByMode) {
  for (const Quantity q : {kRefl, kTrans}) {
    const double A = Of(0, q), B = Of(1, q), C0 = Of(2, q), D = Of(3, q);
    EXPECT_NEAR(At(Ratio(1), q, 170), A / B, kFormula);
    EXPECT_NEAR(At(Ratio(2.9), q, 170), A / B - C0 / D, kFormula);
    EXPECT_NEAR(At(Ratio(3), q, 170), A - B, kRound);
    EXPECT_NEAR(At(Ratio(4), q, 170), A / B / (C0 / D), kFormula);
    EXPECT_EQ(At(Ratio(0), q, 170), 0);
    EXPECT_EQ(At(Ratio(5), q, 170), 0);
  }
  EXPECT_EQ(At(Ratio(1), kRp, 170), 0);
}

TEST_F(Ratios, NeedTheSecondPairInItsModesOnly) {
  for (const double mode : {1.0, 2.0, 3.0, 4.0}) {
    Model& model = Make(81, {{mode, films[0], films[1]}, {0, 0, 0}, {0, 0, 0}});
    EXPECT_EQ(Status(model, 170), mode == 1 || mode == 3 ? 0 : -1) << mode;
  }
}

TEST_F(Derived, AModelMinusAModelGivesEveryQuantity) {
  Model& model = Make(87, {{1, a, b}});
  for (const Quantity q : kEveryQuantity) {
    EXPECT_DOUBLE_EQ(At(model, q, 170), At(ModelOf(a), q, 170) - At(ModelOf(b), q, 170)) << q;
  }
  Model& other = Make(87, {{2, a, b}});
  EXPECT_EQ(At(other, kE1, 170), 0);
  EXPECT_EQ(Status(Make(87, {{1, a, 77}}), 170), -1);
  for (const QuantityResult& quantity : program.eval.quantities) EXPECT_EQ(quantity.wanted, 1u);
}

// The first partners can be evaluated. The last one fails: its number of rows is wrong.
TEST_F(Ratios, WhenALaterPartnerFailsLeaveTheQuantitiesAsTheyStood) {
  const double fails = Make(5, {{a, 0, 0}}).number;
  for (Model* const model : {&Make(87, {{1, a, fails}}), &Make(81, {{3, films[0], fails}, {0, 0, 0}, {0, 0, 0}}),
                             &Make(81, {{2, films[0], films[1]}, {films[2], fails, 0}, {0, 0, 0}}),
                             &Make(95, {{3, films[0], fails}, {0, 0, 0}, {0, 0, 0}}),
                             &Make(99, {{films[0], fails, 0}, {1, 0, 0}, {0, 0, 0}})}) {
    for (QuantityResult& quantity : program.eval.quantities) quantity.dRe = 55;
    EXPECT_EQ(Status(*model, 170), -1) << model->epsInf.value;
    for (const QuantityResult& quantity : program.eval.quantities) {
      EXPECT_EQ(quantity.value, 77) << model->epsInf.value;
      EXPECT_EQ(quantity.dRe, 55) << model->epsInf.value;
      EXPECT_EQ(quantity.wanted, 1u);
    }
  }
}

// Types 95 and 99 accept any model. Here the partners are plain media, whose Quantities have closed formulas.
TEST_F(Ratios, OfMagnetoopticsCombineReflectivityAndQuantitySeven) {
  const double c = Medium(2, {{300, 200, 15}}), d = Medium(7, {{90, 100, 5}});
  const auto of = [&](double number, Quantity q) {
    const C e = Eps(number, 170), n = std::sqrt(e);
    return q == kRefl ? std::norm((1.0 - n) / (1.0 + n)) : 170 * e.imag() / 60;
  };
  const auto ratio = [&](double mode) -> Model& { return Make(95, {{mode, a, b}, {c, d, 0}, {0, 0, 0}}); };
  for (const Quantity q : {kRefl, kS1}) {
    const double A = of(a, q), B = of(b, q), C0 = of(c, q), D = of(d, q);
    EXPECT_NEAR(At(ratio(1), q, 170), A / B, kRound * A / B);
    EXPECT_NEAR(At(ratio(2), q, 170), A / B - C0 / D, kFormula * (A / B + C0 / D));
    EXPECT_NEAR(At(ratio(3), q, 170), A - B, kRound * (A + B));
    EXPECT_NEAR(At(ratio(4), q, 170), A / B / (C0 / D), kFormula * A / B / (C0 / D));
  }
  for (const Quantity q : {kTrans, kRp, kE1, kS2, kAlpha}) EXPECT_EQ(At(ratio(1), q, 170), 0) << q;
}

TEST_F(Ratios, OfDevicesTakeTheirOwnPathWhereTheFirstModelHasNone) {
  const double x = 170, path = 2e-4;
  program.params.ExpParams[kAngleOfIncidence].value = 40;
  Model& model = Make(99, {{a, b, path}, {0.7, 1e-3, 1e-6}, {0.1, 1e-4, 1e-7}});
  const double factor = (0.7 + 0.17 + 0.0289) * std::exp(-4 * std::numbers::pi * x * path);
  const double offset = 0.1 + 0.017 + 0.00289;
  for (const Quantity q : kEveryQuantity) {
    const double A = At(ModelOf(a), q, x), B = At(ModelOf(b), q, x);
    const bool ratio = q == kRefl || q == kTrans || q == kE2, difference = q == kRp || q == kRs || q == kE1;
    EXPECT_NEAR(At(model, q, x), ratio ? A / B * factor : difference ? A - B + offset : 0, kChain) << q;
  }
}

TEST_F(Derived, MeasuredWeightsMixRealAndImaginaryPart) {
  Load(3, 50, 500, [](double x) { return 0.01 * x; });
  Load(4, 50, 500, [](double) { return 2.0; });
  Model& model = Make(28, {{a, 3, 4}, {0.5, 0, 1.5}});
  const C e = Eps(a, 180);
  EXPECT_NEAR(At(model, kRefl, 180), (1.8 * e.real() + 2 * e.imag()) * 1.5 + 0.5, kChain);
  Model& short1 = Make(28, {{a, 3, 4}});
  EXPECT_NEAR(At(short1, kRefl, 180), 1.8 * e.real() + 2 * e.imag(), kChain);
  Model& unloaded = Make(28, {{a, 3, 9}});
  EXPECT_NEAR(At(unloaded, kRefl, 180), 1.8 * e.real(), kChain);
  EXPECT_EQ(Status(Make(28, {}), 180), 0);
  EXPECT_EQ(Left(kRefl), 77);
  EXPECT_EQ(Status(Make(28, {{a, 3, 4}, {0, 0, 1}, {0, 0, 0}}), 180), -1);
}

TEST_F(Derived, GasLinesAreTakenAwayByTheirAmounts) {
  constexpr double kBetweenPoints = 1e-5;  // linear interpolation of an exponential
  Load(1, 50, 500, [](double) { return 0.8; });
  Load(2, 50, 500, [](double x) { return std::exp(-0.001 * x); });
  Load(3, 50, 500, [](double) { return 0.5; });
  Model& model = Make(103, {{1, 0, 0}, {2, 0.4, 0}, {3, 2, 0}});
  EXPECT_NEAR(At(model, kRp, 150), 0.8 * std::exp(0.4 * 0.15) * 4, kBetweenPoints);
  Model& one = Make(103, {{1, 0, 0}, {2, 0.4, 0}, {88, 2, 0}});
  EXPECT_NEAR(At(one, kRp, 150), 0.8 * std::exp(0.4 * 0.15), kBetweenPoints);
  Model& none = Make(103, {{88, 0, 0}, {2, 0.4, 0}, {3, 2, 0}});
  EXPECT_EQ(At(none, kRp, 150), 0);
}

}  // namespace
}  // namespace kalvex

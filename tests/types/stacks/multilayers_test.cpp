// Compares stacks with characteristic matrices written in the fixture, averages with explicit sums; energy balance.
#include "evaluation/quantity_formulas.h"
#include "support/difference_quotient.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class Multilayers : public TypeFixture {
 protected:
  Multilayers() : glass(Medium(2.25)), metal(Medium(3, {{0, 4000, 300}})), polar(Medium(4, {{200, 300, 12}})) {}
  // r and t relative to the empty path.
  std::pair<C, C> Slow(std::initializer_list<std::pair<double, double>> layers, double x) {
    std::vector<SlowLayer> slow;
    double D = 0;
    for (const auto& [model, d] : layers) {
      const C n = Index(model, x);
      slow.push_back({n, n, d});
      D += d;
    }
    const auto [r, t] = SlowStack(slow, 1, 1, x);
    return {-r, t * std::exp(-2 * std::numbers::pi * kI * x * D)};  // the sign of (N_b - N_a)
  }
  double glass, metal, polar;
};

TEST_F(Multilayers, AgreeWithCharacteristicMatrices) {
  Model& model = Make(2, {{glass, 0.002, 0}, {polar, 0.0011, 0}, {metal, 3e-6, 0}, {glass, 0.0007, 0}});
  for (const double x : {20.0, 150.0, 205.0, 480.0}) {
    const auto [r, t] = Slow({{glass, 0.002}, {polar, 0.0011}, {metal, 3e-6}, {glass, 0.0007}}, x);
    EXPECT_LT(std::abs(Pair(model, kE1, x) - r), kChain) << x;
    EXPECT_LT(std::abs(Pair(model, kS1, x) - t), kChain) << x;
    EXPECT_NEAR(At(model, kRefl, x), std::norm(r), kFormula);
    EXPECT_NEAR(At(model, kTrans, x), std::norm(t), kFormula);
  }
}

TEST_F(Multilayers, WithoutRowsAreVacuum) {
  Model& model = Make(2, {});
  EXPECT_EQ(At(model, kRefl, 100), 0);
  EXPECT_EQ(At(model, kTrans, 100), 1);
  EXPECT_EQ(Pair(model, kE1, 100), C(0, 0));
  EXPECT_EQ(Pair(model, kS1, 100), C(1, 0));
}

TEST_F(Multilayers, WithoutThicknessAreVacuum) {
  Model& model = Make(2, {{glass, 0, 0}, {metal, 0, 0.3}, {polar, 0, 0}});
  EXPECT_NEAR(std::abs(Pair(model, kE1, 100)), 0, kRound);
  // The averaging weights sum to a little more than 1.
  EXPECT_NEAR(At(model, kTrans, 100), 1.000074097, kFormula);
  Cell(model, 1, G).value = 0;
  EXPECT_NEAR(At(model, kTrans, 100), 1, 2 * kRound);
}

TEST_F(Multilayers, OfOneLayerAreABulkSampleWithoutSpreadButForTheSumOfWeights) {
  Model& model = Make(2, {{polar, 0.0021, 0}});
  program.params.ExpParams[kSampleThickness].value = 0.0021;
  program.params.ExpParams[kThicknessSpread].value = 0;
  for (const double x : {90.0, 230.0}) {
    const auto [r, t] = Slow({{polar, 0.0021}}, x);
    EXPECT_NEAR(At(model, kTrans, x), std::norm(t), kFormula);
    EXPECT_NEAR(At(ModelOf(polar), kTrans, x), At(model, kTrans, x) * 1.000074097, kRound);
  }
}

TEST_F(Multilayers, LoseNoLightWithoutLossAndWorkBothWays) {
  const double dense = Medium(9);
  Model& model = Make(2, {{glass, 0.002, 0}, {dense, 0.0013, 0}});
  Model& turned = Make(2, {{dense, 0.0013, 0}, {glass, 0.002, 0}});
  for (const double x : {33.0, 140.0, 371.0}) {
    EXPECT_NEAR(At(model, kRefl, x) + At(model, kTrans, x), 1, kRound);
    EXPECT_LT(std::abs(Pair(model, kS1, x) - Pair(turned, kS1, x)), kFormula);
  }
  Model& lossy = Make(2, {{glass, 0.002, 0}, {polar, 0.0013, 0}});
  Model& lossyTurned = Make(2, {{polar, 0.0013, 0}, {glass, 0.002, 0}});
  EXPECT_LT(std::abs(Pair(lossy, kS1, 190) - Pair(lossyTurned, kS1, 190)), kFormula);
}

TEST_F(Multilayers, AverageOverAllCombinationsOfNodes) {
  const double s1 = 0.2, s2 = 1.6, x = 170, d1 = 0.002, d2 = 0.0015;
  Model& model = Make(2, {{glass, d1, s1}, {metal, 2e-6, 0}, {polar, d2, s2}});
  double R = 0, T = 0;
  C meanR, meanT;
  for (const AveragingNode& a : kAveragingNodes) {
    for (const AveragingNode& b : kAveragingNodes) {
      // A spread above 1 makes negative thicknesses, which count as 0.
      const double first = d1 * ((2 * a.x - 1) * s1 + 1), second = std::fmax(0, d2 * ((2 * b.x - 1) * s2 + 1));
      const auto [r, t] = Slow({{glass, first}, {metal, 2e-6}, {polar, second}}, x);
      R += a.g * b.g * std::norm(r);
      T += a.g * b.g * std::norm(t);
      meanR += a.g * b.g * r;
      meanT += a.g * b.g * t;
    }
  }
  EXPECT_NEAR(At(model, kRefl, x), R, kRound);
  EXPECT_NEAR(At(model, kTrans, x), T, kRound);
  EXPECT_LT(std::abs(Pair(model, kE1, x) - meanR), kChain);
  EXPECT_LT(std::abs(Pair(model, kS1, x) - meanT), kChain);
}

TEST_F(Multilayers, AMissingLayerMakesTheWholeEvaluationFail) {
  Model& model = Make(2, {{glass, 0.002, 0}, {77, 0.001, 0}});
  EXPECT_EQ(Status(model, 100), -1);
  EXPECT_EQ(Left(kRefl), 77);
  EXPECT_EQ(EvalModelAfter(program.eval, model), -1);
}

TEST_F(Multilayers, ClearOnlyAsLongAsQuantitiesAreWanted) {
  Model& model = Make(2, {{glass, 0.002, 0}});
  QuantityTable& quantities = program.eval.quantities;
  WantOnly(quantities, static_cast<QuantitySet>(QuantitySet{kRefl} | QuantitySet{kTrans} | QuantitySet{kRs}));
  for (QuantityResult& quantity : quantities) quantity.value = 77;
  ASSERT_EQ(EvalModel(program.eval, model, 100, false), 0);
  EXPECT_EQ(Left(kRp), 77);  // the first Quantity that is not wanted ends the clearing
  EXPECT_EQ(Left(kRs), 77);
  EXPECT_NE(Left(kE1), 77);  // the six results are stored in any case
  EXPECT_EQ(Left(kN1), 77);
}

TEST_F(Multilayers, WithADielectricFunctionNear0StayFinite) {
  constexpr double kSmallestEps = 1e-6;  // the value used for 0 absorbs a little
  const double zero = Medium(0);
  Model& model = Make(2, {{zero, 0.001, 0}, {glass, 0.001, 0}});
  EXPECT_TRUE(std::isfinite(At(model, kRefl, 100)));
  EXPECT_NEAR(At(model, kRefl, 100) + At(model, kTrans, 100), 1, kSmallestEps);
  ASSERT_EQ(EvalWithSlopes(program, model, 100), 0);
  EXPECT_TRUE(std::isfinite(ModelOf(zero).epsInf.savedSlopes.dQuantity[kRefl]));
}

TEST_F(Multilayers, ALayerThatWouldAmplifyCountsWithoutPhase) {
  const double gain = Medium(4, {{200, 300, -10}});
  Model& model = Make(2, {{gain, 0.001, 0}});
  const C n = std::sqrt(Eps(gain, 199));
  ASSERT_LT(n.imag(), 0);
  const C rho = (n - 1.0) / (n + 1.0);
  EXPECT_LT(std::abs(Pair(model, kE1, 199) - (rho - rho) / (1.0 - rho * rho)), kFormula);
}

TEST_F(Multilayers, WithNodesOfEqualWeightAverageOverThem) {
  const double x = 140, d = 0.002, s = 0.3;
  Model& model = Make(32, {{0, 5, 0}, {polar, d, s}, {glass, 0.001, 0}});
  double R = 0;
  C meanT;
  for (int k = 0; k < 5; ++k) {
    const auto [r, t] = Slow({{polar, d * ((2 * k / 5.0 - 1) * s + 1)}, {glass, 0.001}}, x);
    R += std::norm(r) / 5;
    meanT += t / 5.0;
  }
  EXPECT_NEAR(At(model, kRefl, x), R, kRound);
  EXPECT_LT(std::abs(Pair(model, kS1, x) - meanT), kFormula);
  Model& one = Make(32, {{0, 5, 0}, {polar, d, 0}});
  Model& plain = Make(2, {{polar, d, 0}});
  EXPECT_EQ(At(one, kRefl, x), At(plain, kRefl, x));
  Model& tooFew = Make(32, {{0, 5, 0}});
  EXPECT_EQ(Status(tooFew, x), -1);
}

class ObliqueStacks : public Multilayers {
 protected:
  std::pair<C, C> SlowAt(double degrees, bool s, double x) {
    const double sine = std::sin(degrees * std::numbers::pi / 180), cosine = std::cos(degrees * std::numbers::pi / 180);
    const auto layer = [&](double model, double d) {
      const C e = Eps(model, x), m = std::sqrt(e - sine * sine);
      return SlowLayer{s ? m : e / m, m, d};
    };
    const C outside = s ? C(cosine) : C(1 / cosine);
    const auto [r, t] = SlowStack({layer(polar, 0.001), layer(glass, 0.0008)}, outside, outside, x);
    return {r, t * std::exp(-2 * std::numbers::pi * kI * x * 0.0018)};
  }
};

TEST_F(ObliqueStacks, AgreeWithCharacteristicMatricesInBothPolarisations) {
  for (const bool s : {false, true}) {
    for (const double degrees : {5.0, 50.0, 80.0}) {
      Model& model = Make(92, {{0, degrees, s ? 1.0 : 0.0}, {polar, 0.001, 0}, {glass, 0.0008, 0}});
      const auto [r, t] = SlowAt(degrees, s, 230);
      EXPECT_LT(std::abs(Pair(model, kE1, 230) + r), kChain) << degrees << s;
      EXPECT_LT(std::abs(Pair(model, kS1, 230) - t), kChain) << degrees << s;
    }
  }
}

TEST_F(ObliqueStacks, TendToNormalIncidenceAndRefuseAnglesOutside) {
  Model& model = Make(92, {{0, 1e-4, 0}, {polar, 0.001, 0}, {glass, 0.0008, 0}});
  Model& normal = Make(2, {{polar, 0.001, 0}, {glass, 0.0008, 0}});
  for (const Quantity q : {kRefl, kTrans}) EXPECT_NEAR(At(model, q, 150), At(normal, q, 150), kLongSum);
  for (const double degrees : {0.0, 90.0, -5.0}) {
    Cell(model, 0, Wp).value = degrees;
    EXPECT_EQ(Status(model, 150), -1) << degrees;
  }
}

TEST_F(ObliqueStacks, ReflectNothingOfALossFreeLayerAtItsBrewsterAngle) {
  Model& model = Make(92, {{0, std::atan(1.5) * 180 / std::numbers::pi, 0}, {glass, 0.001, 0}});
  EXPECT_NEAR(At(model, kRefl, 120), 0, kRound * kRound);
  EXPECT_NEAR(At(model, kTrans, 120), 1, kFormula);
}

TEST_F(ObliqueStacks, CountALayerWithGainAsAlmostLossFree) {
  constexpr double kLoss = 1e-5;  // replaces the gain
  const double gain = Medium(4, {{200, 300, -10}});
  const double rounded = Medium(Eps(gain, 150).real());
  Model& model = Make(92, {{0, 40, 0}, {gain, 0.001, 0}});
  Model& plain = Make(92, {{0, 40, 0}, {rounded, 0.001, 0}});
  EXPECT_NEAR(At(model, kRefl, 150), At(plain, kRefl, 150), kLoss);
}

// The imaginary part of such a layer is not used: no result depends on it.
TEST_F(ObliqueStacks, HaveTheSlopesOfALayerWithGain) {
  const double gain = Medium(4, {{200, 300, -10}}), x = 150;
  for (const double s : {0.0, 1.0}) {
    Model& model = Make(92, {{0, 40, s}, {polar, 0.0007, 0}, {gain, 0.001, 0}});
    std::vector<ModelParam*> params{&Cell(model, 0, Wp), &Cell(model, 2, Wp), &ModelOf(gain).epsInf};
    for (const int column : {Wo, Wp, G}) params.push_back(&Cell(ModelOf(gain), 0, column));
    for (ModelParam* const param : params) {
      param->adjustable = 1;
      for (const Quantity q : {kRefl, kTrans, kE1, kE2, kS1, kS2}) {
        WantOnly(program.eval.quantities, QuantitySet{q});
        ASSERT_EQ(EvalWithSlopes(program, model, x), 0);
        const double slope = param->savedSlopes.dQuantity[q], start = param->value;
        const SlopeEstimate estimate = RiddersSlope(
            [&](double v) {
              param->value = v;
              const double at = At(model, q, x);
              param->value = start;
              return at;
            },
            start, 0.1 * std::fabs(start));
        EXPECT_NEAR(slope, estimate.value, kRidders * estimate.error + kSlopeOfFormula * std::fabs(slope))
            << NameOf(*param) << ' ' << q << ' ' << s;
      }
    }
  }
}

TEST_F(Multilayers, ForALongWavelengthAlongTheLayersAreAtNormalIncidence) {
  Model& model = Make(106, {{1, 1e9, 0}, {polar, 0.001, 0}, {glass, 0.0008, 0}});
  Model& normal = Make(2, {{polar, 0.001, 0}, {glass, 0.0008, 0}});
  for (const Quantity q : {kRefl, kTrans, kE1, kE2, kS1, kS2})
    EXPECT_NEAR(At(model, q, 150), At(normal, q, 150), kFormula);
}

TEST_F(Multilayers, ForAWavelengthAlongTheLayersAreAtTheAngleThatBelongsToIt) {
  const double x = 150, degrees = 35;
  Model& finite = Make(106, {{1, 1 / (x * std::sin(degrees * std::numbers::pi / 180)), 0}, {polar, 0.001, 0}});
  Model& oblique = Make(92, {{0, degrees, 0}, {polar, 0.001, 0}});
  EXPECT_NEAR(At(finite, kRefl, x), At(oblique, kRefl, x), kRound);
  EXPECT_NEAR(At(finite, kTrans, x), At(oblique, kTrans, x), kRound);
  // The scale multiplies the frequency of the waves, not that of the dielectric functions.
  Model& scaled = Make(106, {{2, 1e9, 0}, {glass, 0.001, 0}});
  Model& twice = Make(2, {{glass, 0.001, 0}});
  EXPECT_NEAR(At(scaled, kTrans, x), At(twice, kTrans, 2 * x), kRound);
}

}  // namespace
}  // namespace kalvex

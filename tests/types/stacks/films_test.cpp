// Compares films and plates with Airy sums, limits of the thickness, and energy balance.
#include "evaluation/quantity_formulas.h"
#include "records/model_rows.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;

class Films : public TypeFixture {
 protected:
  Films() : glass(Medium(2.25)), silicon(Medium(11.7)), polar(Medium(4, {{200, 300, 12}})) {}
  static C Passage(C n, double d, double x) { return std::exp(2 * std::numbers::pi * kI * x * n * d); }
  double glass, silicon, polar;
};

TEST_F(Films, InAMediumReflectByTheDifferenceOfIndices) {
  Model& model = Make(17, {{glass, silicon, 0.9}});
  const double n1 = 1.5, n2 = std::sqrt(11.7);
  EXPECT_NEAR(At(model, kRefl, 100), 0.9 * std::pow((n2 - n1) / (n2 + n1), 2), kRound);
  Model& same = Make(17, {{polar, polar, 1}});
  EXPECT_EQ(At(same, kRefl, 210), 0);
}

TEST_F(Films, OnASubstrateInterfereAsFarAsTheyAreCoherent) {
  const double x = 170, d = 0.0023;
  const auto rows = [&](double coherence, double m) {
    return Make(18, {{polar, silicon, d}, {m, coherence, 0}}).number;
  };
  const C n1 = Index(polar, x), n2 = Index(silicon, x), r01 = (1.0 - n1) / (1.0 + n1), r12 = (n1 - n2) / (n1 + n2);
  const C E = std::pow(Passage(n1, d, x), 2);
  const double together = std::norm((r01 + r12 * E) / (1.0 + r01 * r12 * E));
  double apart = std::norm(r01);
  for (int k = 0; k < 400; ++k) {  // intensities of the echoes one by one
    apart += std::norm(1.0 - r01 * r01) * std::norm(r12) * std::norm(E) * std::pow(std::norm(r01 * r12 * E), k);
  }
  EXPECT_NEAR(At(ModelOf(rows(1, 1)), kRefl, x), together, kRound);
  EXPECT_NEAR(At(ModelOf(rows(0, 1)), kRefl, x), apart, kRound);
  EXPECT_NEAR(At(ModelOf(rows(0.3, 1)), kRefl, x), apart + 0.3 * (together - apart), kRound);
  EXPECT_EQ(At(ModelOf(rows(7, 1)), kRefl, x), At(ModelOf(rows(1, 1)), kRefl, x));
  EXPECT_EQ(At(ModelOf(rows(-7, 1)), kRefl, x), At(ModelOf(rows(0, 1)), kRefl, x));
  Model& bare = Make(18, {{polar, silicon, 0}, {1, 1, 0}});
  EXPECT_NEAR(At(bare, kRefl, x), At(ModelOf(silicon), kRefl, x), kRound);
  // A film whose permeability equals its permittivity does not reflect at its front.
  Model& matched = Make(18, {{glass, silicon, 50}, {2.25, 0, 0}});
  EXPECT_GT(At(matched, kRefl, x), 0);
  EXPECT_NEAR(At(matched, kRefl, x), std::norm((n2 - 1.0) / (n2 + 1.0)), kRound);
}

TEST_F(Films, OnAMirrorReturnAllLightWithoutLoss) {
  for (const double coherence : {0.0, 0.4, 1.0}) {
    Model& model = Make(21, {{glass, 0, 0}, {0.0017, coherence, 0.8}});
    EXPECT_NEAR(At(model, kRefl, 230), 0.8, kRound);
  }
}

TEST_F(Films, OnAMirrorAbsorbOnEachWayToItAndBack) {
  const double d = 0.0017, x = 190;
  const C n = Index(polar, x), r01 = (1.0 - n) / (1.0 + n), E = std::pow(Passage(n, d, x), 2);
  const double together = std::norm((r01 - E) / (1.0 - r01 * E));
  double apart = std::norm(r01);
  for (int k = 0; k < 400; ++k) {  // intensities of the echoes one by one
    apart += std::norm((1.0 - r01 * r01) * E) * std::pow(std::norm(r01 * E), k);
  }
  ASSERT_LT(apart, 0.9);
  for (const double coherence : {0.0, 0.3, 1.0}) {
    Model& model = Make(21, {{polar, 0, 0}, {d, coherence, 0.8}});
    EXPECT_NEAR(At(model, kRefl, x), 0.8 * (apart + (together - apart) * coherence), kRound) << coherence;
  }
}

TEST_F(Films, InAPressureCellPassBothFacesOnce) {
  Model& model = Make(88, {{glass, polar, 0.002}, {0.9, 1.1, 0}});
  const C n1 = 1.5, n2 = Index(polar, 150), r = (n2 - n1) / (n2 + n1);
  EXPECT_NEAR(At(model, kRefl, 150), 0.9 * std::norm(r), kRound);
  EXPECT_NEAR(At(model, kTrans, 150), 1.1 * std::norm((1.0 - r * r) * Passage(n2, 0.002, 150)), kRound);
}

TEST_F(Films, SurfacePlasmonsOfAPerfectMetalRunAsLight) {
  constexpr double kMatched = 1e-9;      // k1 and k2 are square roots of differences
  constexpr double kPenetration = 1e-6;  // root of 1/|eps| of the metal
  const double metal = Medium(-1e12);
  Model& model = Make(72, {{glass, metal, 0}});
  const double k0 = 2 * std::numbers::pi * 500;
  EXPECT_NEAR(At(model, kE1, 500), 1.5 * k0, kPenetration * k0);
  EXPECT_EQ(At(model, kRefl, 500), 1e30);
  Model& lossy = Make(72, {{Medium(1), Medium(1, {{0, 20000, 300}}), 0}});
  const C q = Pair(lossy, kE1, 5000), k1 = Pair(lossy, kS1, 5000), k2 = Pair(lossy, kN1, 5000);
  const C e2 = 1.0 - 20000.0 * 20000 / (5000.0 * C(5000, 300));
  // The fields match where e2 k1 + e1 k2 = 0, up to the sign of the roots.
  EXPECT_LT(std::min(std::abs(e2 * k1 + k2), std::abs(e2 * k1 - k2)), kMatched * std::abs(k2));
  EXPECT_NEAR(At(lossy, kRefl, 5000), 1 / (2 * q.imag()), kRound);
}

class OnSubstrate : public Films {};

TEST_F(OnSubstrate, WithoutFilmsAreTheFacesOfTheSubstrate) {
  Model& model = Make(33, {{silicon, 0.05, 0}});
  const double n = std::sqrt(11.7), R = std::pow((n - 1) / (n + 1), 2);
  EXPECT_NEAR(At(model, kRefl, 150), R, kRound);
  EXPECT_NEAR(At(model, kTrans, 150), (1 - R) * (1 - R), kRound);
  EXPECT_NEAR(At(model, kLoss, 150), 1 - R - (1 - R) * (1 - R), kRound);
  EXPECT_NEAR(At(model, kDepth, 150), 2 * std::numbers::pi * 150 * n * 0.05, kLongSum);
}

TEST_F(OnSubstrate, AFilmWithoutThicknessChangesNothing) {
  Model &with = Make(33, {{polar, 0, 0}, {silicon, 0.05, 0}}), &without = Make(33, {{silicon, 0.05, 0}});
  for (const Quantity q : kEveryQuantity - QuantitySet{kDefringed, kAlpha})
    EXPECT_NEAR(At(with, q, 190), At(without, q, 190), kLongSum) << q;
}

TEST_F(OnSubstrate, AgreeWithCharacteristicMatricesAtNormalAndObliqueIncidence) {
  const double x = 230, d = 0.0009, D = 0.02;
  program.params.ExpParams[kAngleOfIncidence].value = 63;
  Model& model = Make(33, {{glass, 0.0004, 0}, {polar, d, 0}, {silicon, D, 0}});
  const C ng = 1.5, np = Index(polar, x), ns = Index(silicon, x);
  const auto [r, t] = SlowStack({{ng, ng, 0.0004}, {np, np, d}}, 1, ns, x);
  EXPECT_LT(std::abs(Pair(model, kE1, x) + r), kChain);
  const C out = t * Passage(ns, D, x) * 2.0 * ns / (ns + 1.0);
  EXPECT_NEAR(At(model, kTrans, x), std::norm(out), kRound);
  EXPECT_LT(std::abs(Pair(model, kS1, x) - out * Passage(-1, D + d + 0.0004, x)), kChain);
  const double s2 = std::pow(std::sin(63 / kDegrees), 2), c = std::cos(63 / kDegrees);
  const auto wave = [&](double m) { return std::sqrt(Eps(m, x) - s2); };
  const auto [rs, ts] =
      SlowStack({{wave(glass), wave(glass), 0.0004}, {wave(polar), wave(polar), d}}, c, wave(silicon), x);
  const auto [rp, tp] =
      SlowStack({{2.25 / wave(glass), wave(glass), 0.0004}, {Eps(polar, x) / wave(polar), wave(polar), d}}, 1 / c,
                Eps(silicon, x) / wave(silicon), x);
  EXPECT_NEAR(At(model, kRp, x), std::norm(rp), kFormula);
  EXPECT_NEAR(At(model, kRs, x), std::norm(rs), kRound);
  EXPECT_NEAR(At(model, kRps, x), std::norm(rp / rs), kFormula);
  EXPECT_NEAR(At(model, kN1, x), std::atan(std::abs(rp / rs)) * kDegrees, kChain);
  EXPECT_NEAR(At(model, kN2, x), std::arg(rp / rs) * kDegrees, kLongSum);
}

TEST_F(OnSubstrate, TheBeamsAverageTendsToTheAngleItself) {
  program.params.ExpParams[kAngleOfIncidence].value = 63;
  program.params.ExpParams[kAngleSpread].value = 0;
  Model &single = Make(33, {{polar, 0.0009, 0}, {silicon, 0.02, 0}}),
        &beam = Make(71, {{polar, 0.0009, 0}, {silicon, 0.02, 0}});
  for (const Quantity q : {kRefl, kTrans, kE1, kE2, kS1, kS2, kN1, kN2, kDepth, kLoss}) {
    EXPECT_NEAR(At(beam, q, 205), At(single, q, 205), kChain) << q;
  }
  program.params.ExpParams[kAngleSpread].value = 0.05;
  EXPECT_GT(std::fabs(At(beam, kN1, 205) - At(single, kN1, 205)), 1e-4);
}

// Only transmission depends on the thickness of the substrate. If R counted as dependent, a fit of R with both
// thicknesses free would have a singular matrix.
TEST_F(OnSubstrate, AreFittedWithTheThicknessOfTheSubstrateWhereLightPassesIt) {
  for (const int code : {33, 71}) {
    Model& model = Make(code, {{polar, 0.0009, 0}, {silicon, 0.02, 0}});
    ModelParam &film = Cell(model, 0, Wp), &substrate = Cell(model, 1, Wp);
    film.adjustable = substrate.adjustable = 1;
    for (const SlotUse& slot : TypeOf(program.eval, model)->fills) {
      const Quantity q = slot.quantity;
      const bool passes = q == kTrans || q == kS1 || q == kS2 || q == kDepth || q == kLoss;
      WantOnly(program.eval.quantities, QuantitySet{slot.quantity});
      ASSERT_EQ(FindDependencies(program, model), 0);
      EXPECT_NE(film.savedSlopes.dQuantity[q], 0) << code << ' ' << q;
      EXPECT_EQ(substrate.savedSlopes.dQuantity[q] != 0, passes) << code << ' ' << q;
    }
  }
}

// The average over the beam with characteristic matrices.
TEST_F(OnSubstrate, AverageTheAnglesOfABeamOverItsIntensities) {
  const double x = 205, d = 0.0009, angle = 63, spread = 0.05;
  program.params.ExpParams[kAngleOfIncidence].value = angle;
  program.params.ExpParams[kAngleSpread].value = spread;
  Model& model = Make(71, {{polar, d, 0}, {silicon, 0.02, 0}});
  double Rp = 0, Rs = 0;
  C cross;
  for (const auto& [u, g] : kAveragingNodes) {
    const double at = angle * (1 + (2 * u - 1) * spread) / kDegrees, c = std::cos(at), s2 = std::pow(std::sin(at), 2);
    const C kf = std::sqrt(Eps(polar, x) - s2), ks = std::sqrt(Eps(silicon, x) - s2);
    const C rs = SlowStack({{kf, kf, d}}, c, ks, x).first,
            rp = SlowStack({{Eps(polar, x) / kf, kf, d}}, 1 / c, Eps(silicon, x) / ks, x).first;
    Rp += g * std::norm(rp);
    Rs += g * std::norm(rs);
    cross += g * rp * std::conj(rs);
  }
  EXPECT_NEAR(At(model, kN1, x), std::atan(std::sqrt(Rp / Rs)) * kDegrees, kChain);
  EXPECT_NEAR(At(model, kN2, x), std::arg(cross) * kDegrees, kChain);
}

TEST_F(OnSubstrate, AllOfVacuumGiveNoAngles) {
  program.params.ExpParams[kAngleOfIncidence].value = 60;
  program.params.ExpParams[kAngleSpread].value = 0.02;
  const double vacuum = Medium(1);
  ModelOf(vacuum).epsInf.adjustable = 1;
  for (const int code : {33, 71}) {
    Model& model = Make(code, {{vacuum, 0.001, 0}, {vacuum, 0.002, 0}});
    for (const Quantity q : {kRps, kN1, kN2}) {
      EXPECT_EQ(At(model, q, 170), 0) << code << ' ' << q;
      ASSERT_EQ(EvalWithSlopes(program, model, 170), 0);
      EXPECT_TRUE(std::isfinite(ModelOf(vacuum).epsInf.savedSlopes.dQuantity[q])) << code << ' ' << q;
    }
    EXPECT_NEAR(At(model, kTrans, 170), 1, kRound);
    EXPECT_NEAR(At(model, kS1, 170), 1, kRound);
  }
}

// The transmitted amplitude underflows, but its phase is the sum over the layers.
TEST_F(OnSubstrate, WhenOpaqueHaveAPhaseWithSlopes) {
  const double metal = Medium(4, {{0, 30000, 100}}), x = 200, d = 0.05;
  const C n = Index(metal, x);
  ASSERT_EQ(std::exp(-2 * std::numbers::pi * x * n.imag() * d), 0);
  for (const auto& [code, q, perTurn, empty] :
       {std::tuple(33, kDepth, 2 * std::numbers::pi, 0.0), std::tuple(71, kDepth, 2 * std::numbers::pi, 0.0),
        std::tuple(54, kRp, 360.0, 1.0)}) {
    Model& model = Make(code, {{metal, d, 0}});
    const double faces = std::arg(4.0 * n / ((n + 1.0) * (n + 1.0))) / (2 * std::numbers::pi);
    const double turns = faces + x * (n.real() - empty) * d;
    EXPECT_NEAR(At(model, q, x) / perTurn, turns, kLongSum) << code;
    ModelParam& thickness = Cell(model, 0, Wp);
    thickness.adjustable = 1;
    WantOnly(program.eval.quantities, QuantitySet{q});
    ASSERT_EQ(EvalWithSlopes(program, model, x), 0);
    EXPECT_NEAR(thickness.savedSlopes.dQuantity[q] / perTurn, x * (n.real() - empty), 2 * kLongSum) << code;
    EXPECT_EQ(At(model, kTrans, x), 0) << code;
  }
}

TEST_F(OnSubstrate, WithoutRowsAreVacuum) {
  for (const int code : {33, 71, 54}) {
    Model& model = Make(code, {});
    for (const Quantity q : kEveryQuantity) {
      const bool one = q == kTrans || (q == kS1 && code != 54);
      EXPECT_EQ(At(model, q, 150), one ? 1 : 0) << code << ' ' << q;
    }
    for (QuantityResult& quantity : program.eval.quantities) quantity.wanted = 1;
    EXPECT_EQ(EvalWithSlopes(program, model, 150), 0);
    EXPECT_EQ(EvalModelAfter(program.eval, model), 0);
  }
}

TEST_F(Films, ThePhaseOfAThickLayerGivesItsIndexAndOfAThinOneItsPermittivity) {
  // Echoes of the thick layer, the next order in the thickness and the faces contribute less than half a turn.
  constexpr double kEchoes = 1e-3, kNextOrder = 1e-4, kHalfATurn = 0.5;
  Model& thick = Make(54, {{glass, 3, 0}});
  EXPECT_NEAR(At(thick, kRps, 400), 0.5, kEchoes);
  Model& thin = Make(54, {{polar, 1e-9, 0}});
  EXPECT_NEAR(At(thin, kRps, 300), (Eps(polar, 300).real() - 1) / 2, kNextOrder);
  const auto [r, t] = SlowStack({{Index(polar, 90), Index(polar, 90), 0.004}, {1.5, 1.5, 0.01}}, 1, 1, 90);
  Model& two = Make(54, {{polar, 0.004, 0}, {glass, 0.01, 0}});
  EXPECT_NEAR(At(two, kTrans, 90), std::norm(t), kFormula);
  const double turns = At(two, kRp, 90) / 360 - std::arg(t * Passage(-1, 0.014, 90)) / (2 * std::numbers::pi);
  EXPECT_NEAR(turns, std::round(turns), kRound);
  EXPECT_NEAR(At(two, kRp, 90) / 360, 90 * ((Index(polar, 90).real() - 1) * 0.004 + 0.5 * 0.01), kHalfATurn);
}

class PlateTest : public Films {
 protected:
  Model& MakePlate(double sample, double angle, double d, double coherence, double nodes = 1, double angles = 1) {
    return Make(13, {{sample, angle, 35}, {d, coherence, nodes}, {angles, 0.25, 2}});
  }
};

TEST_F(PlateTest, IsTheSumOfItsEchoes) {
  const double x = 150, d = 0.0007, angle = 55 / kDegrees;
  const C e = Eps(polar, x), q = std::sqrt(e - std::pow(std::sin(angle), 2)), c = std::cos(angle);
  const C rp = (q - e * c) / (q + e * c), rs = (c - q) / (c + q), E = std::exp(4 * std::numbers::pi * kI * x * d * q);
  C ap = rp, as = rs;
  double Rp = std::norm(rp), Rs = std::norm(rs);
  C cross = rp * std::conj(rs);
  for (int k = 1; k < 300; ++k) {
    const C echoP = -(1.0 - rp * rp) * rp * E * std::pow(rp * rp * E, k - 1);
    const C echoS = -(1.0 - rs * rs) * rs * E * std::pow(rs * rs * E, k - 1);
    ap += echoP;
    as += echoS;
    Rp += std::norm(echoP);
    Rs += std::norm(echoS);
    cross += echoP * std::conj(echoS);
  }
  for (const double coherence : {0.0, 0.35, 1.0}) {
    Model& model = MakePlate(polar, 55, d, coherence);
    const auto blend = [&](double apart, double together) { return apart + (together - apart) * coherence; };
    const double p = blend(Rp, std::norm(ap)), s = blend(Rs, std::norm(as)),
                 C0 = blend(cross.real(), (ap * std::conj(as)).real());
    const double sine2 = std::pow(std::sin(35 / kDegrees), 2), A = s * sine2 + p * (1 - sine2);
    EXPECT_NEAR(At(model, kRefl, x), 2 * A, kFormula);
    EXPECT_NEAR(At(model, kE1, x), std::atan(std::sqrt(p / s)) * kDegrees, kChain);
    EXPECT_NEAR(At(model, kE2, x), std::acos(C0 / std::sqrt(p * s)) * kDegrees, kChain);
    EXPECT_NEAR(At(model, kS1, x), (s * sine2 - p * (1 - sine2)) / A, kFormula);
    EXPECT_NEAR(At(model, kS2, x), C0 * std::sin(70 / kDegrees) / A, kFormula);
    EXPECT_NEAR(At(model, kRps, x), 2 * x * d * q.real() + 0.25, kRound);
  }
}

TEST_F(PlateTest, WhenOpaqueDependsNeitherOnCoherenceNorOnItsNodes) {
  Model &one = MakePlate(polar, 60, 3, 1), &other = MakePlate(polar, 60, 3, 0, 4, 1);
  program.params.ExpParams[kThicknessSpread].value = 0.2;
  for (const Quantity q : {kRefl, kE1, kE2, kS1, kS2}) EXPECT_NEAR(At(one, q, 205), At(other, q, 205), kChain) << q;
}

TEST_F(PlateTest, WithoutLossOrCoherenceReflectsTwiceOverOnePlus) {
  constexpr double kAlmostNoLoss = 1e-6;  // of the glass
  const double R01 = std::pow(0.5 / 2.5, 2);
  EXPECT_NEAR(At(MakePlate(glass, 0.01, 0.01, 0), kRefl, 100), 2 * 2 * R01 / (1 + R01), kAlmostNoLoss);
}

TEST_F(PlateTest, AveragesOverTheMiddlesOfEqualParts) {
  program.params.ExpParams[kThicknessSpread].value = 0.3;
  program.params.ExpParams[kAngleSpread].value = 0.02;
  Model& mean = MakePlate(glass, 50, 0.003, 1, 3, 2);
  double sum = 0;
  for (const double u : {-2.0 / 3, 0.0, 2.0 / 3}) {
    for (const double v : {-0.5, 0.5})
      sum += At(MakePlate(glass, 50 * (1 + 0.02 * v), 0.003 * (1 + 0.3 * u), 1), kRefl, 97) / 6;
  }
  EXPECT_NEAR(At(mean, kRefl, 97), sum, kRound);
}

TEST_F(PlateTest, OfVacuumHasNumbersInAllQuantities) {
  const double vacuum = Medium(1);
  ModelOf(vacuum).epsInf.adjustable = 1;
  Model& model = MakePlate(vacuum, 60, 0.001, 0.5, 2, 2);
  for (const Quantity q : {kRefl, kE1, kE2, kS1, kS2}) {
    EXPECT_TRUE(std::isfinite(At(model, q, 150))) << q;
    WantOnly(program.eval.quantities, QuantitySet{q});
    ASSERT_EQ(EvalWithSlopes(program, model, 150), 0);
    EXPECT_TRUE(std::isfinite(ModelOf(vacuum).epsInf.savedSlopes.dQuantity[q])) << q;
  }
}

TEST_F(PlateTest, RefusesAnglesThatAreNotOblique) {
  for (const double angle : {0.0, 90.0, -10.0, 120.0})
    EXPECT_EQ(Status(MakePlate(glass, angle, 0.001, 1), 100), -1) << angle;
}

}  // namespace
}  // namespace kalvex

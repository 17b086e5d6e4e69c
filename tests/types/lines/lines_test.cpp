// Compares lines and curves with formulas, limits and sum rules, and tests their continuity.
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class Lines : public TypeFixture {};

TEST_F(Lines, OfACoupledPhononAreAloneWithoutCoupling) {
  Model& model = Make(39, {{200, 300, 15}, {350, 0, 150}});
  for (const double x : {150.0, 210.0}) {
    const C phonon = 300.0 * 300 / (200.0 * 200 - x * x - kI * 15.0 * x), sigma = -kI * x / 60.0 * phonon;
    EXPECT_LT(std::abs(Pair(model, kRefl, x) - sigma), kLongSum);
    EXPECT_EQ(Pair(model, kRp, x), C(0, 0));
    EXPECT_LT(std::abs(Pair(model, kS1, x) - sigma), kLongSum);
    Model& coupled = Make(39, {{200, 300, 15}, {350, 0.08, 150}});
    const C electronic = 350.0 * 350 / (350.0 * 350 - x * x - kI * 150.0 * x);
    const C screened = sigma / (1.0 - phonon * 0.08 * electronic);
    EXPECT_LT(std::abs(Pair(coupled, kS1, x) - screened), kLongSum);
    EXPECT_LT(std::abs(Pair(coupled, kRp, x) - (screened - sigma)), kLongSum);
  }
}

TEST_F(Lines, OfFanoVanishAtMinusQAndBecomeLorentzianForLargeQ) {
  constexpr double kAsymmetry = 1e-4;  // 1/q times the strength
  Model& model = Make(42, {{200, 300, 30}, {1.7, 0, 0}});
  const double strength = 300.0 * 300 / (60 * 30);
  EXPECT_NEAR(At(model, kS1, 200), strength * (1.7 * 1.7 - 1) / (1.7 * 1.7), kChain);
  // The line is (q + t)^2/(1 + t^2) - 1: 0 far away, and minus the continuum at t = -q.
  EXPECT_NEAR(At(model, kS1, 200 - 1.7 * 15), -strength / (1.7 * 1.7), kChain);
  Model& symmetric = Make(42, {{200, 300, 30}, {1e7, 0, 0}});
  for (const double x : {180.0, 215.0}) {
    const double t = 2 * (x - 200) / 30;
    EXPECT_NEAR(At(symmetric, kS1, x), strength / (1 + t * t), kAsymmetry);
  }
}

TEST_F(Lines, OfFanoHoldWidthAndAsymmetryAwayFrom0) {
  Model& model = Make(42, {{200, 300, 0}, {0, 0, 0}});
  EXPECT_TRUE(std::isfinite(At(model, kS1, 201)));
}

TEST_F(Lines, TwoOfFanoAdd) {
  Model& both = Make(46, {{200, 300, 30}, {1.7, 0, 0}, {260, 200, 20}, {-2, 0, 0}});
  Model &first = Make(42, {{200, 300, 30}, {1.7, 0, 0}}), &second = Make(42, {{260, 200, 20}, {-2, 0, 0}});
  EXPECT_DOUBLE_EQ(At(both, kS1, 230), At(first, kS1, 230) + At(second, kS1, 230));
}

TEST_F(Lines, WithAComplexPoleAgreeWithTheOscillatorToSecondOrderInTheWidth) {
  constexpr double kNextOrder = 0.05;  // in the width
  const auto difference = [&](double width) {
    Model& model = Make(43, {{200, 300, width}, {0, 0, 0}});
    return std::abs(Pair(model, kS1, 150) - Pair(model, kN1, 150));
  };
  EXPECT_NEAR(difference(2) / difference(1), 4, kNextOrder);
  Model& plain = NewModel(program, {{200, 300, 15}}, 1);
  EXPECT_LT(std::abs(Pair(Make(43, {{200, 300, 15}, {0, 0, 0}}), kS1, 150) - Pair(plain, kS1, 150)), kLongSum);
  Model& moved = Make(43, {{200, 300, 15}, {40, 0, 0}});
  const C pole = C(150, 7.5);
  EXPECT_LT(std::abs(Pair(moved, kN1, 150) - -kI * 150.0 / 60.0 * 90000.0 / (240.0 * 240 - pole * pole)), kLongSum);
}

TEST_F(Lines, OfCyclotronOrbitsResonateThereAndAddUp) {
  Model& model = Make(45, {{80, 600, 5}});
  const C damped(70, 5), u = 6000.0 / (damped * damped - 6400.0);
  EXPECT_LT(std::abs(Pair(model, kS1, 70) - u * C(-5, 70)), kLongSum);
  EXPECT_LT(std::abs(Pair(model, kN1, 70) - u * 80.0), kLongSum);
  Model& two = Make(45, {{80, 600, 5}, {80, 600, 5}});
  EXPECT_DOUBLE_EQ(At(two, kS1, 70), 2 * At(model, kS1, 70));
  Model& none = Make(45, {});
  EXPECT_EQ(At(none, kS1, 70), 0);
  Model& resonant = Make(45, {{80, 600, 0}});
  EXPECT_EQ(At(resonant, kS1, 80), 0);
  // A reversed field changes only the sign of the Hall part; at zero field the line is a Drude term.
  Model &reversed = Make(45, {{-80, 600, 5}}), &still = Make(45, {{0, 600, 5}});
  EXPECT_DOUBLE_EQ(At(reversed, kS1, 70), At(model, kS1, 70));
  EXPECT_DOUBLE_EQ(At(reversed, kN1, 70), -At(model, kN1, 70));
  EXPECT_LT(std::abs(Pair(still, kS1, 70) - 6000.0 / (5.0 - 70.0 * kI)), kLongSum);
}

TEST_F(Lines, OfResonantScatteringInterfereWithTheirPhases) {
  Model& model = Make(25, {{200, 30, 25}, {40, 0, 0}, {260, 20, 30}, {190, 0, 0}});
  const auto amplitude = [](double x, double W, double A, double G, double degrees) {
    return A * std::exp(kI * degrees * std::numbers::pi / 180.0) / (x - W + 0.5 * kI * G);
  };
  const C sum = amplitude(230, 200, 30, 25, 40) + amplitude(230, 260, 20, 30, 190);
  EXPECT_LT(std::abs(Pair(model, kE1, 230) - sum), kFormula);
  EXPECT_NEAR(At(model, kRefl, 230), std::norm(sum), kFormula);
  EXPECT_EQ(Status(Make(25, {{200, 30, 25}}), 230), -1);
}

class RamanLines : public Lines {
 protected:
  Model& MakeRaman(double T, double origin = 0) {
    return Make(113, {{0, T, origin}, {0, 0, 0}, {0, 0, 0}, {150, 40, 8}, {300, 20, 30}});
  }
};

TEST_F(RamanLines, HaveStokesAndAntiStokesInTheRatioOfBoltzmann) {
  Model& model = MakeRaman(300);
  for (const double t : {60.0, 150.0, 310.0}) {
    EXPECT_NEAR(At(model, kE1, t) / At(model, kE1, -t), std::exp(1.43988 * t / 300), kFormula);
  }
  EXPECT_NEAR(At(model, kN1, 200), 1 / (std::exp(1.43988 * 200 / 300) - 1), kRound);
}

TEST_F(RamanLines, StayFiniteAtTheExcitingLine) {
  constexpr double kBesideIt = 1e-8;  // the distance of 1e-7 beside kT, and more than ten times
  Model& model = MakeRaman(300, 500);
  const double limit = 300 / 1.43988 * (40.0 * 40 * 8 / std::pow(150, 4) + 20.0 * 20 * 30 / std::pow(300, 4));
  EXPECT_NEAR(At(model, kE1, 500), limit, kRound * limit);
  EXPECT_NEAR(At(model, kE1, 500 + 1e-7), limit, kBesideIt * limit);
  EXPECT_EQ(At(model, kN1, 500), 1e30);
  Model& cold = MakeRaman(0);
  EXPECT_EQ(At(cold, kN1, 100), 0);
  EXPECT_GT(At(cold, kE1, 150), 0);
  EXPECT_NEAR(At(cold, kE1, -150), 0, kRound * kRound);
}

TEST_F(RamanLines, LieOnAPolynomialAndABackground) {
  Model& bare = MakeRaman(300, 20);
  Model& shaped = Make(113, {{0, 300, 20}, {0, 1e-3, 2e-6}, {0.5, 0, 0}, {150, 40, 8}, {300, 20, 30}});
  const double t = 180, p = 1 + 1e-3 * t + 2e-6 * t * t;
  EXPECT_NEAR(At(shaped, kS1, 200), p, kRound);
  EXPECT_NEAR(At(shaped, kE1, 200), p * At(bare, kE1, 200) + 0.5, kRound);
}

TEST_F(Lines, OfAPhotocurrentAreTwoTails) {
  Model& model = Make(90, {{2, 80, 60}, {0.5, -30, 100}, {9, 9, 9}});
  EXPECT_NEAR(At(model, kRefl, 120), 2 * std::exp(-0.75) + 0.5 * std::exp(20.0 / 30), kRound);
  Cell(model, 1, Wp).value = 0;
  EXPECT_NEAR(At(model, kRefl, 120), 2 * std::exp(-0.75), kRound);
  EXPECT_EQ(Status(Make(90, {{2, 80, 60}, {0.5, -30, 100}}), 100), -1);
}

TEST_F(Lines, OfAHeatedSampleAreContinuousAndHaveTheirSlope) {
  constexpr double kBesideIt = 1e-8, kQuotient = 1e-9;  // the slope over 2e-9; the error of a quotient
  Model& model = Make(24, {{1.5, 0.7, 4}, {2, 0.02, 0.08}, {50, 150, 0}});
  EXPECT_EQ(At(model, kRefl, 49), 4);
  for (const double edge : {50.0, 150.0})
    EXPECT_NEAR(At(model, kRefl, edge - 1e-9), At(model, kRefl, edge + 1e-9), kBesideIt);
  EXPECT_NEAR(At(model, kRefl, 120), 4 + 1.5 * (1 - std::exp(-0.04 * 70)) + 0.7 * (1 - std::exp(-0.01 * 70)), kFormula);
  for (const double x : {80.0, 200.0}) {
    EXPECT_NEAR(At(model, kRs, x), (At(model, kRefl, x + 1e-4) - At(model, kRefl, x - 1e-4)) / 2e-4, kQuotient) << x;
  }
  EXPECT_NEAR(At(model, kRefl, 5000), 4, kFormula);
  EXPECT_EQ(At(model, kRps, 100), 1);
  EXPECT_EQ(At(model, kRps, 151), 0);
  EXPECT_NEAR(At(model, kTrans, 120), 1 - std::exp(-0.04 * 70), kRound);
}

TEST_F(Lines, OfACrossingRepelByTheirCoupling) {
  Model& straight = Make(57, {{15, 1, 0}, {0, 0, 0}});
  EXPECT_NEAR(At(straight, kE1, 20), 0.9324 * 20, kChain);
  EXPECT_NEAR(At(straight, kE2, 20), 15, kFormula);
  EXPECT_NEAR(At(straight, kE1, 10), 15, kFormula);
  Model& coupled = Make(57, {{15, 1, 0}, {6, 0, 0}});
  const double crossing = 15 / 0.9324;
  EXPECT_NEAR(std::pow(At(coupled, kE1, crossing), 2) - std::pow(At(coupled, kE2, crossing), 2), 2 * 36, kChain);
  Model& strong = Make(57, {{15, 1, 0}, {40, 0, 0}});
  EXPECT_EQ(At(strong, kE2, 5), 0);
}

TEST_F(Lines, OfAStrainedBandStandAtTheirShiftedEnergies) {
  Model& model = Make(102, {{100, 0.1, 30}, {120, -0.05, 40}, {90, 0.02, 50}});
  const auto line = [](double detuning, double width) {
    return width * width / 4 / (detuning * detuning + width * width / 4);
  };
  const double x = 200;
  EXPECT_NEAR(At(model, kRefl, x), line(20, 30), kRound);
  EXPECT_NEAR(At(model, kTrans, x), line(-10, 40), kRound);
  EXPECT_NEAR(At(model, kRp, x), line(6, 50), kRound);
  EXPECT_NEAR(At(model, kRs, x), line(20, 30) + line(-10, 40) + line(6, 50), 2 * kRound);
  EXPECT_NEAR(At(model, kRps, x), 120 - 110, kFormula);
  EXPECT_NEAR(At(model, kDepth, x), 94, kChain);
}

}  // namespace
}  // namespace kalvex

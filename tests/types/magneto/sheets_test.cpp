// Compares sheets in a field and stacks of plates with slabs with echoes, bare substrates, first orders and quantised
// values.
#include "types/type_fixture.h"

namespace kalvex {
namespace {

constexpr double kUniversal = 1816.5;
constexpr double kSheet = 1.2619984361819279e-05;

class Sheets : public TypeFixture {
 protected:
  // Reflection and transmission of a slab with all echoes.
  static std::pair<C, C> Slab(C n, double d, double x) {
    const C r = (1.0 - n) / (1.0 + n), e = std::exp(2 * std::numbers::pi * kI * x * n * d);
    return {r * (1.0 - e * e) / (1.0 - r * r * e * e), (1.0 - r * r) * e / (1.0 - r * r * e * e)};
  }
};

TEST_F(Sheets, OfFaradayCheckTendToTheirFirstOrderAndDoNotTurnWithoutField) {
  constexpr double kNextOrder = 1e-3;  // of the sheet
  const double glass = Medium(4);
  Model& weak = Make(79, {{40, 100, 30}, {20, 0, 10}, {glass, 0, 5}});
  for (const double x : {30.0, 90.0}) {
    EXPECT_NEAR(At(weak, kRp, x), At(weak, kE1, x), kNextOrder * std::fabs(At(weak, kE1, x)));
    EXPECT_NEAR(1 - At(weak, kTrans, x), 1 - At(weak, kE2, x), kNextOrder * (1 - At(weak, kE2, x)));
    EXPECT_NEAR(At(weak, kTrans, x), 0.5 * (At(weak, kDepth, x) + At(weak, kLoss, x)), kStep);
  }
  Model& still = Make(79, {{0, 3000, 30}, {20, 100, 0}, {glass, 0, 5}});
  EXPECT_EQ(At(still, kRp, 50), 0);
  EXPECT_EQ(Pair(still, kS1, 50), Pair(still, kN1, 50));
  const C sigma = kI * (3000.0 * 3000 / 60) / (50.0 + 30.0 * kI - 400.0 / 50) + 100.0;
  EXPECT_LT(std::abs(Pair(still, kS1, 50) - sigma), kLongSum * std::abs(sigma));
  EXPECT_NEAR(At(still, kTrans, 50), std::norm(3.0 / (3.0 + kSheet * sigma)), kRound);
}

TEST_F(Sheets, OfAGappedBilayerHaveNoKerrEffectWithOppositeGapsAndHalfAQuantumWithEqualOnes) {
  // In Ohm^-1 cm^-1: the energy beside the gap, squared; the broadening; the gap beside the energy.
  constexpr double kStatic = 1e-2, kBelowGap = 1, kFarAbove = 2;
  Model& opposite = Make(82, {{0.05, -0.05, 0.001}, {0, 2, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  EXPECT_NEAR(At(opposite, kRp, 1200), 0, kStep);
  Model& equal = Make(82, {{0.05, 0.05, 1e-6}, {0, 2, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  EXPECT_GT(std::fabs(At(equal, kRp, 1200)), 1e-4);
  // sigma_+ - sigma_- = 2i sigma_xy; four flavours of winding 2 give 8 u/pi.
  const C hall = (Pair(equal, kS1, 1) - Pair(equal, kN1, 1)) / (2.0 * kI);
  EXPECT_NEAR(hall.real(), 8 * kUniversal / std::numbers::pi, kStatic);
  EXPECT_NEAR(0.5 * (At(equal, kS1, 500) + At(equal, kN1, 500)), 0,
              kBelowGap);  // below the gap of 0.1 eV nothing absorbs
  EXPECT_NEAR(0.5 * (At(equal, kS1, 40000) + At(equal, kN1, 40000)), 2 * kUniversal, kFarAbove);
}

class InCavity : public Sheets {
 protected:
  Model& Make86(double place, double front, double plasma = 20000, double W1 = 40) {
    return Make(86, {{W1, plasma, 60}, {0, 0, 0}, {0.003, 0, place}, {2, 0.02, front}});
  }
};

TEST_F(InCavity, WithoutSheetsIsASlab) {
  Model& model = Make86(0.4, 0, 0);
  for (const double x : {50.0, 333.0}) {
    const auto [r, t] = Slab({2, 0.02}, 0.003, x);
    EXPECT_NEAR(At(model, kRefl, x), std::norm(r), kRound);
    EXPECT_NEAR(At(model, kTrans, x), std::norm(t), kRound);
    EXPECT_NEAR(At(model, kDefringed, x), std::norm(t), kRound);
    EXPECT_NEAR(At(model, kDepth, x), std::arg(t), kFormula);
    EXPECT_EQ(At(model, kRp, x), 0);
  }
}

TEST_F(InCavity, ASheetAtTheFrontIsASecondSheetThere) {
  Model &inside = Make86(0, 0), &onFace = Make86(0.4, 1);
  Model& none = Make86(0.4, 0);
  for (const Quantity q : {kRefl, kTrans, kRp}) {
    EXPECT_GT(std::fabs(At(inside, q, 100) - At(none, q, 100)), 1e-6) << q;
  }
  // Both sheets at the front face act as one of twice the conductivity.
  Model& both = Make86(0, 1);
  Model& twice = Make86(0, 0, 20000 * std::numbers::sqrt2);
  EXPECT_NEAR(At(both, kTrans, 100), At(twice, kTrans, 100), kRound);
  EXPECT_NEAR(At(both, kRefl, 100), At(twice, kRefl, 100), kRound);
  EXPECT_GT(std::fabs(At(onFace, kTrans, 100) - At(none, kTrans, 100)), 1e-6);
}

TEST_F(InCavity, LosesNoLightWithoutLoss) {
  // Without width the sheets are reactive, and the slab has no extinction.
  Model& model = Make(86, {{40, 20000, 0}, {20, 0, 0}, {0.003, 0, 0.3}, {2, 0, 0.5}});
  for (const double x : {70.0, 210.0}) EXPECT_NEAR(At(model, kRefl, x) + At(model, kTrans, x), 1, kRound);
}

TEST_F(InCavity, AThickAbsorbingSlabStaysFinite) {
  Model& model = Make(86, {{40, 20000, 60}, {0, 0, 0}, {50, 0, 0.5}, {2, 1, 0}});
  EXPECT_EQ(At(model, kTrans, 1000), 0);
  EXPECT_NEAR(At(model, kRefl, 1000), std::norm((1.0 - C(2, 1)) / (1.0 + C(2, 1))), kRound);
}

class Plates : public Sheets {};

TEST_F(Plates, OfEqualAxesAreASlab) {
  const double medium = Medium(6);
  Model& model = Make(85, {{0, 3, 0}, {medium, medium, 30}, {0.0008, 10, 0}});
  for (const double x : {100.0, 470.0}) {
    const auto [r, t] = Slab(std::sqrt(6.0), 0.0024, x);
    EXPECT_NEAR(At(model, kRefl, x), std::norm(t), kFormula);
    EXPECT_NEAR(At(model, kRp, x), std::norm(t), kFormula);
    EXPECT_NEAR(At(model, kRs, x), 0, kRound * kRound);
    EXPECT_NEAR(At(model, kDefringed, x), 0, kRound);
  }
}

TEST_F(Plates, AlongAnAxisShowThatAxisOnly) {
  const double fast = Medium(4), slow = Medium(9);
  Model& model = Make(85, {{0, 1, 0}, {fast, slow, 90}, {0.001, 0, 0}});
  const auto [r, t] = Slab(3, 0.001, 130);
  EXPECT_NEAR(At(model, kRp, 130), std::norm(t), kRound);
  EXPECT_NEAR(At(model, kRs, 130), 0, kRound * kRound);
}

TEST_F(Plates, OfAQuarterWaveAt45DegreesMakeCircularLight) {
  // Indices differ from 1 by up to 3e-3: what the faces reflect, as an amplitude, an angle in degrees, and squared.
  constexpr double kFaces = 2e-3, kFacesInDegrees = 0.2, kFacesSquared = 1e-4;
  // Hardly any reflection at the faces: indices near 1 that differ by a quarter wave.
  const double n1 = 1.001, n2 = 1.003, x = 100, d = 0.25 / (x * (n2 - n1));
  const double fast = Medium(n1 * n1), slow = Medium(n2 * n2);
  Model& model = Make(85, {{0, 1, 0}, {fast, slow, 45}, {d, 0, 0}});
  EXPECT_NEAR(At(model, kRp, x), At(model, kRs, x), kFaces);
  EXPECT_NEAR(std::fabs(At(model, kDefringed, x)), 45, kFacesInDegrees);
  // Four such plates are a full-wave plate.
  Cell(model, 0, Wp).value = 4;
  EXPECT_NEAR(At(model, kRs, x), 0, kFacesSquared);
}

TEST_F(Plates, OfTwoTurnedPlatesAgreeWithJonesMatricesWhereFacesReflectNothing) {
  constexpr double kFaces = 2e-3;  // indices differ from 1 by less
  const double n1 = 1.0001, n2 = 1.0004, x = 200, d = 1.5;
  const double fast = Medium(n1 * n1), slow = Medium(n2 * n2);
  Model& model = Make(85, {{0, 2, 0}, {fast, slow, 25}, {d, 40, 0}});
  const auto jones = [&](double degrees, C ex, C ey) {
    const double a = degrees * std::numbers::pi / 180, c = std::cos(a), s = std::sin(a);
    const C f = std::exp(2 * std::numbers::pi * kI * x * n1 * d), g = std::exp(2 * std::numbers::pi * kI * x * n2 * d);
    const C u = f * (c * ex + s * ey), v = g * (-s * ex + c * ey);
    return std::pair<C, C>{c * u - s * v, s * u + c * v};
  };
  const auto [ax, ay] = jones(25, 1, 0);
  const auto [bx, by] = jones(65, ax, ay);
  EXPECT_NEAR(At(model, kRp, x), std::norm(bx), kFaces);
  EXPECT_NEAR(At(model, kRs, x), std::norm(by), kFaces);
}

}  // namespace
}  // namespace kalvex

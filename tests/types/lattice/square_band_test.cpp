// The square band at its symmetric points, and its tunnelling spectrum compared with a sum rule and limits.
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class SquareBand : public TypeFixture {};

TEST_F(SquareBand, HasItsClosedEnergiesAtSymmetricPointsAndNothingOutsideItsPath) {
  // (0,0) - (1/2,0) - (1/2,1/2)
  Model& model = Make(27, {{-100, 30, -10}, {5, 3, -80}, {0, 0, 0}, {1, 0.5, 0}, {3, 0.5, 0.5}});
  EXPECT_NEAR(At(model, kRefl, 0), -400 + 120 - 40 + 40 + 12 + 80, kLongSum);
  EXPECT_NEAR(At(model, kRefl, 1), 0 - 120 - 40 + 0 + 12 + 80, kChain);
  EXPECT_NEAR(At(model, kRefl, 3), 400 + 120 - 40 - 40 + 12 + 80, kLongSum);
  // Half way of the second part, (1/2, 1/4): cos X = -1, cos Y = 0, cos 2X = 1, cos 2Y = -1.
  EXPECT_NEAR(At(model, kRefl, 2), 200 + 0 + 0 + 4 * 5 * 1 - 4 * 3 + 80, kLongSum);
  EXPECT_EQ(At(model, kRefl, -0.1), 0);
  EXPECT_EQ(At(model, kRefl, 3.1), 0);
  EXPECT_EQ(Status(Make(27, {{1, 0, 0}, {0, 0, 0}, {0, 0, 0}}), 0), -1);
}

class TunnellingTest : public SquareBand {
 protected:
  Model& MakeTip(double mesh, double T, double width, double width2 = 0) {
    return Make(
        26, {{mesh, T, 0}, {0, 0, 0}, {-100, 30, 0}, {0, 0, -20}, {0, 0, 0}, {width, 0, 0}, {width2, 0, 0}, {0, 0, 0}});
  }
  static double Energy(double kx, double ky) {
    const double x = std::cos(2 * std::numbers::pi * kx), y = std::cos(2 * std::numbers::pi * ky);
    return -200 * (x + y) + 120 * x * y + 20;
  }
};

TEST_F(TunnellingTest, HoldsOneStateInAll) {
  constexpr double kTails = 2e-3;  // of Lorentzians beyond 6000
  Model& model = MakeTip(12, 80, 10);
  double sum = 0;
  for (double x = -6000; x < 6000; x += 2) sum += 2 * At(model, kRefl, x);
  EXPECT_NEAR(sum, 1, kTails);
}

TEST_F(TunnellingTest, IsASumOfLorentziansWhenCold) {
  constexpr double kWarmth = 1e-5;  // (kT/width)^2 and more
  Model& model = MakeTip(6, 0.05, 15);
  double expected = 0;
  for (int i = 0; i < 6; ++i) {
    for (int j = 0; j < 6; ++j) {
      const double d = 37 - Energy(i / 6.0, j / 6.0);
      expected += 15 / (std::numbers::pi * (d * d + 15 * 15)) / 36;
    }
  }
  EXPECT_NEAR(At(model, kRefl, 37), expected, kWarmth * expected);
}

TEST_F(TunnellingTest, IsASumOfThermalSlopesWithoutWidth) {
  Model& model = MakeTip(6, 200, 0);
  const double kT = 0.0861734215079 * 200;
  double expected = 0;
  for (int i = 0; i < 6; ++i) {
    for (int j = 0; j < 6; ++j)
      expected += 1 / (4 * kT * std::pow(std::cosh((37 - Energy(i / 6.0, j / 6.0)) / (2 * kT)), 2)) / 36;
  }
  EXPECT_NEAR(At(model, kRefl, 37), expected, kFormula * expected);
}

TEST_F(TunnellingTest, TakesItsSecondBroadeningAtNegativeEnergies) {
  Model &two = MakeTip(6, 100, 20, 35), &first = MakeTip(6, 100, 20), &second = MakeTip(6, 100, 35);
  EXPECT_EQ(At(two, kRefl, 50), At(first, kRefl, 50));
  EXPECT_EQ(At(two, kRefl, -50), At(second, kRefl, -50));
  EXPECT_NE(At(first, kRefl, -50), At(second, kRefl, -50));
}

}  // namespace
}  // namespace kalvex

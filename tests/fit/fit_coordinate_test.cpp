#include "fit/fit_coordinate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support/difference_quotient.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

TEST(FitCoordinate, EachKindOfLimitHasItsChangeOfVariable) {
  constexpr double kAtLimit = 1e-7;  // root of the rounding: the coordinate turns there
  ModelParam param;
  param.min = 2;
  param.max = 10;
  for (const auto& [useMin, useMax] : {std::pair(0u, 0u), std::pair(1u, 0u), std::pair(0u, 1u), std::pair(1u, 1u)}) {
    param.useMin = useMin;
    param.useMax = useMax;
    for (const double value : {2.0, 2.5, 6.0, 9.9, 10.0}) {
      param.value = value;
      const auto [u, scale, limited] = FitCoordinateOf(param);
      EXPECT_EQ(limited, useMin || useMax);
      EXPECT_CLOSE(FitCoordToValue(param, u), value, kRound);
      const SlopeEstimate judge = RiddersSlope([&](double at) { return FitCoordToValue(param, at); }, u, 0.3);
      EXPECT_NEAR(scale, judge.value, kRidders * judge.error + kSlopeOfChain);
      for (double step = -30; step <= 30; step += 0.7) {
        const double moved = FitCoordToValue(param, u + step);
        EXPECT_TRUE(!useMin || moved >= 2 - kRound) << moved;
        EXPECT_TRUE(!useMax || moved <= 10 + 2 * kRound) << moved;
      }
    }
  }
  EXPECT_NEAR(FitCoordinateOf(param).scale, 0, kAtLimit);  // at the upper limit
}

TEST(FitCoordinate, OutsideOneLimitItStandsOnItAndEqualLimitsGiveZero) {
  ModelParam param;
  param.min = 2;
  param.useMin = 1;
  param.value = 1;
  EXPECT_EQ(FitCoordinateOf(param).at, 0);
  EXPECT_EQ(FitCoordinateOf(param).scale, 0);
  param.useMax = 1;
  param.max = 2;
  EXPECT_EQ(FitCoordinateOf(param).at, 0);
  EXPECT_EQ(FitCoordinateOf(param).scale, 0);
  EXPECT_EQ(FitCoordToValue(param, 0), 0);
}

ModelParam Limited(double value, std::uint32_t useMin, std::uint32_t useMax) {
  ModelParam param;
  param.value = value;
  param.min = 2;
  param.max = 11;
  param.useMin = useMin;
  param.useMax = useMax;
  return param;
}

TEST(FitCoordinate, WithoutLimitsItIsTheValue) {
  const ModelParam param = Limited(-7.5, 0, 0);
  EXPECT_EQ(FitCoordinateOf(param).at, -7.5);
  EXPECT_EQ(FitCoordinateOf(param).scale, 1);
  EXPECT_EQ(FitCoordToValue(param, 40), 40);
}

TEST(FitCoordinate, AboveAMinimumItIsTheRootOfTheDistance) {
  const ModelParam param = Limited(6, 1, 0);
  EXPECT_EQ(FitCoordinateOf(param).at, 2);
  EXPECT_EQ(FitCoordinateOf(param).scale, 4);
  EXPECT_EQ(FitCoordToValue(param, -3), 11);
}

TEST(FitCoordinate, BelowAMaximumItIsTheRootOfTheDistanceAndFallsWithTheValue) {
  const ModelParam param = Limited(2, 0, 1);
  EXPECT_EQ(FitCoordinateOf(param).at, 3);
  EXPECT_EQ(FitCoordinateOf(param).scale, -6);
  EXPECT_EQ(FitCoordToValue(param, 1), 10);
}

TEST(FitCoordinate, BetweenTwoLimitsItIsAnArcSine) {
  // max - min = 9, s = 3. Three quarters of the way the sine is 1/2.
  const ModelParam param = Limited(8.75, 1, 1);
  EXPECT_CLOSE(FitCoordinateOf(param).at, 1.5 * std::numbers::pi / 6, kRound);
  EXPECT_CLOSE(FitCoordinateOf(param).scale, 3 * std::sqrt(0.75), kRound);
  EXPECT_CLOSE(FitCoordToValue(param, 1.5 * std::numbers::pi / 2), 11, kRound);
  EXPECT_CLOSE(FitCoordToValue(param, -1.5 * std::numbers::pi / 2), 2, kRound);
  EXPECT_CLOSE(FitCoordToValue(param, 1.5 * std::numbers::pi), 6.5, kRound);  // reflected at the limit
}

TEST(FitCoordinate, EqualOrCrossedLimitsDriveTheValueToZero) {
  for (const double max : {2.0, 1.0}) {
    ModelParam param = Limited(2, 1, 1);
    param.max = max;
    EXPECT_EQ(FitCoordinateOf(param).at, 0);
    EXPECT_EQ(FitCoordinateOf(param).scale, 0);
    EXPECT_EQ(FitCoordToValue(param, 0.7), 0);
  }
}

TEST(FitCoordinate, AboveAMaximumItStandsOnIt) {
  const ModelParam param = Limited(12, 0, 1);
  EXPECT_EQ(FitCoordinateOf(param).at, 0);
  EXPECT_EQ(std::fabs(FitCoordinateOf(param).scale), 0);
  EXPECT_EQ(FitCoordToValue(param, FitCoordinateOf(param).at), 11);
}

}  // namespace
}  // namespace kalvex

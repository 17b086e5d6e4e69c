#include "windows/slider_map.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/tolerances.h"

namespace kalvex::slider {
namespace {

TEST(SliderMap, AValueInTheMiddleOfItsRangeReachesTheMarksAndTheEnds) {
  EXPECT_NEAR(Map(40, 50, 0, 100), 50, 50 * kRound);
  EXPECT_NEAR(Map(20, 50, 0, 100), 40, 50 * kRound);
  EXPECT_NEAR(Map(60, 50, 0, 100), 60, 50 * kRound);
  EXPECT_EQ(Map(0, 50, 0, 100), 0);
  EXPECT_EQ(Map(80, 50, 0, 100), 100);
}

TEST(SliderMap, PercentagesCountFromTheLowerLimit) {
  EXPECT_NEAR(Map(20, 150, 100, 1000), 140, 150 * kRound);
  EXPECT_NEAR(Map(60, 150, 100, 1000), 160, 150 * kRound);
  EXPECT_NEAR(Map(30, 150, 100, 1000), 145, 150 * kRound);
}

TEST(SliderMap, RisesFromLimitToLimitWithoutAJump) {
  for (const double base : {0.001, 1.0, 50.0, 90.0, 99.0}) {
    for (int n = 0; n < 80; ++n) {
      EXPECT_LE(Map(n, base, 0, 100), Map(n + 1, base, 0, 100)) << "base " << base << " step " << n;
    }
    // Each tail starts at the end of the linear part.
    EXPECT_NEAR(Map(20, base, 0, 100), 0.8 * base, base * kRound);
    EXPECT_LE(Map(19, base, 0, 100), 0.8 * base);
    EXPECT_GE(Map(61, base, 0, 100), Map(60, base, 0, 100));
  }
}

TEST(SliderMap, AValueOnALimitOrOutsideSweepsTheWholeRange) {
  for (const double base : {0.0, 100.0, 130.0, -5.0}) {
    EXPECT_EQ(Map(0, base, 0, 100), 0);
    EXPECT_NEAR(Map(80, base, 0, 100), 100, 100 * kRound);
    // The middle of the slider is two of the four decades up: (100 - 1)/9999 of the range.
    EXPECT_NEAR(Map(40, base, 0, 100), 100.0 * 99 / 9999, 100 * kRound);
  }
}

TEST(SliderMap, CloseBelowTheUpperLimitTheUpperMarkIsTheLimit) {
  EXPECT_EQ(Map(60, 95, 0, 100), 100);  // 20 % above base would be 114
  EXPECT_EQ(Map(65, 95, 0, 100), 100);
  EXPECT_NEAR(Map(40, 95, 0, 100), 95, 95 * kRound);
}

TEST(SliderMap, TheLowerTailIsSmoothWhereItsTwoFormsMeet) {
  EXPECT_EQ(H(0), 0);
  constexpr double kNinePlaces = 1e-8, kSlope = 1e-3;  // of the printed coefficients, and over h
  EXPECT_NEAR(H(1), 1, kNinePlaces);
  EXPECT_NEAR(H(std::nextafter(0.3, 0)), H(0.3), kNinePlaces);
  // The coefficients are printed with nine digits, so slopes agree to about nine digits.
  const double h = 1e-5;
  EXPECT_NEAR((H(0.3 - h) - H(0.3 - 2 * h)) / h, (H(0.3 + 2 * h) - H(0.3 + h)) / h, kSlope);
}

TEST(SliderMap, TheUpperTailGoesFromZeroToOne) {
  for (const double base : {0.0, 0.5, 1.0, 1.5, 100.0}) {
    EXPECT_EQ(E(base, 0), 0);
    EXPECT_NEAR(E(base, 1), 1, kRound);
  }
  EXPECT_EQ(E(1, 0.3), 0.3);
  EXPECT_EQ(E(0.2, 0.3), 0.3);
  EXPECT_NEAR(E(100, 0.5), 9.0 / 99, kRound);
}

TEST(SliderMap, TheSlopeAtTheStartOfTheUpperTailIsTheOneAskedFor) {
  constexpr double kAllowed = 0.0011;  // the search ends at 0.001
  for (const double r : {0.005, 0.05, 0.3, 0.7, 0.99}) {
    const double base = SlopeBase(r), t = 1e-7;
    EXPECT_NEAR(E(base, t) / t, r, kAllowed) << "slope " << r;
  }
  EXPECT_EQ(SlopeBase(0), 0);
  EXPECT_EQ(SlopeBase(-1), 0);
  EXPECT_EQ(SlopeBase(std::nan("")), 0);
  EXPECT_EQ(SlopeBase(1), 1);
  EXPECT_EQ(SlopeBase(7), 1);
}

}  // namespace
}  // namespace kalvex::slider

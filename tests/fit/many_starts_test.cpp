// Fits from many starts, on sums with several minima that are known.
#include "fit/many_starts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace kalvex {
namespace {

constexpr double kOfMinimum = 1e-7;

// r = (sin 5x, x/4): minima near the multiples of pi/5, the lowest at 0.
class Waves : public LeastSquares {
 public:
  std::size_t Unknowns() const override { return 1; }
  double SumAt(std::span<const double> x) override {
    ++evaluations;
    return std::pow(std::sin(5 * x[0]), 2) + x[0] * x[0] / 16;
  }
  Linearised LineariseAt(std::span<const double> x) override {
    const double slope = 5 * std::cos(5 * x[0]);
    curvature_ = 2 * (slope * slope + 1.0 / 16);
    gradient_ = {2 * (std::sin(5 * x[0]) * slope + x[0] / 16)};
    return {std::pow(std::sin(5 * x[0]), 2) + x[0] * x[0] / 16, {&curvature_, 1}, gradient_};
  }
  int evaluations = 0;

 private:
  double curvature_ = 0;
  std::vector<double> gradient_;
};

ManyStartsResult Fit(Waves& waves, std::vector<double>& x, int starts, std::uint32_t seed = 1) {
  return FitFromManyStarts(waves, x, std::vector{-4.0}, std::vector{4.0}, starts, seed, {},
                           [](const BoundedFitProgress&) { return true; });
}

TEST(ManyStarts, FindTheLowestOfManyMinima) {
  Waves waves;
  std::vector<double> x = {3.3};
  EXPECT_GT(Fit(waves, x, 1).best.sum, 0.1);
  x = {3.3};
  const ManyStartsResult all = Fit(waves, x, 40);
  EXPECT_NEAR(x[0], 0, kOfMinimum);
  EXPECT_NEAR(all.best.sum, 0, kOfMinimum);
  int count = all.notConverged;
  for (std::size_t i = 0; i < all.minima.size(); ++i) {
    count += all.minima[i].count;
    if (i > 0) {
      EXPECT_GT(all.minima[i].sum, all.minima[i - 1].sum);
    }
    // The minima on both sides have the same sum: near (pi k/5)^2/16.
    EXPECT_NEAR(all.minima[i].sum, std::pow(std::numbers::pi * static_cast<double>(i) / 5, 2) / 16, 0.03);
  }
  EXPECT_EQ(count, 40);
  EXPECT_EQ(all.best.startSum, waves.SumAt(std::vector{3.3}));
}

TEST(ManyStarts, OfTheSameSeedGiveTheSameBits) {
  Waves waves;
  std::vector<double> a = {3.3}, b = {3.3}, c = {3.3};
  const ManyStartsResult first = Fit(waves, a, 20, 7), again = Fit(waves, b, 20, 7), other = Fit(waves, c, 20, 8);
  EXPECT_EQ(a, b);
  EXPECT_EQ(first.minima, again.minima);
  EXPECT_EQ(first.best.sums, again.best.sums);
  EXPECT_NE(first.best.sums, other.best.sums);
}

TEST(ManyStarts, AreStoppedByTheObserverAtTheBestPoint) {
  Waves waves;
  std::vector<double> x = {3.3};
  int steps = 0;
  const ManyStartsResult all = FitFromManyStarts(waves, x, std::vector{-4.0}, std::vector{4.0}, 1000, 1, {},
                                                 [&](const BoundedFitProgress&) { return ++steps < 12; });
  EXPECT_EQ(steps, 12);
  EXPECT_EQ(waves.SumAt(x), all.best.sum);
}

// In one dimension, n points of this kind leave no gap wider than about 2.6/n.
TEST(EvenPoints, LeaveNoWideGap) {
  constexpr std::size_t kPoints = 200;
  const EvenPoints points(1, 3);
  std::vector<double> at;
  for (std::size_t k = 0; k < kPoints; ++k) at.push_back(points.Point(k)[0]);
  std::sort(at.begin(), at.end());
  for (std::size_t k = 1; k < kPoints; ++k) EXPECT_LT(at[k] - at[k - 1], 2.7 / kPoints);
}

TEST(EvenPoints, FillEverySeveralDimensionsAlike) {
  const EvenPoints points(3, 5);
  std::array<int, 8> inOctant{};
  for (std::size_t k = 0; k < 800; ++k) {
    const std::vector<double> point = points.Point(k);
    ++inOctant[(point[0] < 0.5 ? 0U : 1U) + (point[1] < 0.5 ? 0U : 2U) + (point[2] < 0.5 ? 0U : 4U)];
  }
  for (const int count : inOctant) EXPECT_NEAR(count, 100, 10);
}

TEST(ScatteredStart, IsBetweenTwoLimitsOrWithinAFactorAndNeverOutside) {
  const std::vector<double> x = {5, -3, 0, 10}, none(4, HUGE_VAL),
                            start = ScatteredStart(x, std::vector{1.0, -HUGE_VAL, -HUGE_VAL, 9.0},
                                                   std::vector{3.0, HUGE_VAL, HUGE_VAL, HUGE_VAL},
                                                   std::vector{0.25, 0.0, 0.7, 0.0});
  EXPECT_EQ(start, (std::vector{1.5, -1.5, 0.0, 9.0}));
}

}  // namespace
}  // namespace kalvex

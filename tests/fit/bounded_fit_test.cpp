// The bounded fit on small problems with known solutions.
#include "fit/bounded_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

namespace kalvex {
namespace {

constexpr double kNoLimit = HUGE_VAL;
// A minimum is found to about the root of the rounding of the sum.
constexpr double kOfMinimum = 1e-7;

// Residuals and their derivatives as a function; the derivatives row by row.
struct Residuals {
  std::vector<double> r, jacobian;
};
class Problem : public LeastSquares {
 public:
  using Function = std::function<Residuals(std::span<const double>)>;
  Problem(std::size_t unknowns, Function function)
      : function_(std::move(function)), curvature_(unknowns * unknowns), gradient_(unknowns) {}

  std::size_t Unknowns() const override { return gradient_.size(); }
  double SumAt(std::span<const double> x) override {
    double sum = 0;
    for (const double r : function_(x).r) sum += r * r;
    return sum;
  }
  Linearised LineariseAt(std::span<const double> x) override {
    const std::size_t n = Unknowns();
    const Residuals at = function_(x);
    curvature_.assign(n * n, 0);
    gradient_.assign(n, 0);
    for (std::size_t k = 0; k < at.r.size(); ++k) {
      const double* const row = at.jacobian.data() + k * n;
      for (std::size_t i = 0; i < n; ++i) {
        gradient_[i] += 2 * at.r[k] * row[i];
        for (std::size_t j = i; j < n; ++j) curvature_[i * n + j] += 2 * row[i] * row[j];
      }
    }
    return {SumAt(x), {curvature_.data(), n}, gradient_};
  }

 private:
  Function function_;
  std::vector<double> curvature_, gradient_;
};

BoundedFitResult Fit(Problem& problem, std::vector<double>& x, std::vector<double> lower = {},
                     std::vector<double> upper = {}, BoundedFitOptions options = {}) {
  lower.resize(x.size(), -kNoLimit);
  upper.resize(x.size(), kNoLimit);
  return FitWithinLimits(problem, x, lower, upper, options, [](const BoundedFitProgress&) { return true; });
}

// Rosenbrock's valley, with its minimum 0 at (1, 1).
Problem Valley() {
  return {2, [](std::span<const double> x) {
            return Residuals{{10 * (x[1] - x[0] * x[0]), 1 - x[0]}, {-20 * x[0], 10, -1, 0}};
          }};
}

TEST(BoundedFit, FollowsACurvedValleyToItsMinimum) {
  Problem valley = Valley();
  std::vector<double> x = {-1.2, 1};
  const BoundedFitResult result = Fit(valley, x);
  EXPECT_TRUE(IsConverged(result.end));
  EXPECT_NEAR(x[0], 1, kOfMinimum);
  EXPECT_NEAR(x[1], 1, kOfMinimum);
}

// With x0 <= 1/2 the minimum is at (1/2, 1/4), where the sum is 1/4.
TEST(BoundedFit, EndsOnALimitWhereTheSlopePushesOn) {
  for (const auto& start : std::vector<std::vector<double>>{{-1.2, 1}, {0.5, 3}, {7, 1}, {0.5, 0.25}}) {
    Problem valley = Valley();
    std::vector<double> x = start;
    const BoundedFitResult result = Fit(valley, x, {}, {0.5, kNoLimit});
    EXPECT_TRUE(IsConverged(result.end));
    EXPECT_EQ(x[0], 0.5);
    EXPECT_NEAR(x[1], 0.25, kOfMinimum);
    EXPECT_NEAR(result.sum, 0.25, kOfMinimum);
    EXPECT_EQ(result.onLimit, (std::vector<char>{1, 0}));
  }
}

TEST(BoundedFit, LeavesALimitWhereTheSumFallsInside) {
  Problem valley = Valley();
  std::vector<double> x = {-2, 2};
  EXPECT_TRUE(IsConverged(Fit(valley, x, {-2, -2}, {2, 2}).end));
  EXPECT_NEAR(x[0], 1, kOfMinimum);
  EXPECT_NEAR(x[1], 1, kOfMinimum);
}

TEST(BoundedFit, EqualLimitsHoldAnUnknown) {
  Problem valley = Valley();
  std::vector<double> x = {0, 5};
  const BoundedFitResult result = Fit(valley, x, {-kNoLimit, 4}, {kNoLimit, 4});
  EXPECT_TRUE(IsConverged(result.end));
  EXPECT_EQ(x[1], 4);
  // 100 (4 - x^2)^2 + (1 - x)^2 is stationary where 200 x^3 - 799 x - 1 = 0.
  EXPECT_NEAR(200 * std::pow(x[0], 3) - 799 * x[0] - 1, 0, 1600 * kOfMinimum);
}

TEST(BoundedFit, AnUnknownWithoutInfluenceKeepsItsValueAndIsNamed) {
  Problem problem(2, [](std::span<const double> x) { return Residuals{{x[0] - 3, 2 * x[0]}, {1, 0, 2, 0}}; });
  std::vector<double> x = {10, 7};
  const BoundedFitResult result = Fit(problem, x);
  EXPECT_TRUE(IsConverged(result.end));
  EXPECT_NEAR(x[0], 0.6, kOfMinimum);
  EXPECT_EQ(x[1], 7);
  EXPECT_EQ(result.noInfluence, (std::vector<char>{0, 1}));
}

// Two unknowns of which only the sum counts.
TEST(BoundedFit, FindsAMinimumThatIsALine) {
  Problem problem(2, [](std::span<const double> x) {
    return Residuals{{x[0] + x[1] - 3, 2 * (x[0] + x[1])}, {1, 1, 2, 2}};
  });
  std::vector<double> x = {5, 1};
  EXPECT_TRUE(IsConverged(Fit(problem, x).end));
  EXPECT_NEAR(x[0] + x[1], 0.6, kOfMinimum);
}

TEST(BoundedFit, NeverAcceptsASumThatIsNotFinite) {
  // The root does not exist below 1, and the first step of an undamped method ends there.
  Problem problem(1, [](std::span<const double> x) {
    const double root = std::sqrt(x[0] - 1);
    return Residuals{{root - 0.1}, {0.5 / root}};
  });
  std::vector<double> x = {9};
  const BoundedFitResult result = Fit(problem, x);
  EXPECT_TRUE(std::isfinite(result.sum));
  EXPECT_NEAR(x[0], 1.01, kOfMinimum);
}

TEST(BoundedFit, AStartThatIsNotFiniteIsToldAndKept) {
  Problem problem(1, [](std::span<const double> x) { return Residuals{{std::sqrt(x[0])}, {0.5 / std::sqrt(x[0])}}; });
  std::vector<double> x = {-1};
  const BoundedFitResult result = Fit(problem, x);
  EXPECT_EQ(result.end, BoundedFitEnd::kStartNotFinite);
  EXPECT_EQ(x[0], -1);
}

TEST(BoundedFit, NoIterationMakesNoStep) {
  Problem valley = Valley();
  std::vector<double> x = {-1.2, 1};
  BoundedFitOptions options;
  options.mostIterations = 0;
  const BoundedFitResult result = Fit(valley, x, {}, {}, options);
  EXPECT_EQ(result.end, BoundedFitEnd::kTooManyIterations);
  EXPECT_EQ(x, (std::vector<double>{-1.2, 1}));
}

TEST(BoundedFit, TheObserverEndsItAtTheBestPoint) {
  Problem valley = Valley();
  std::vector<double> x = {-1.2, 1};
  const std::vector<double> lower(2, -kNoLimit), upper(2, kNoLimit);
  double sum = 0;
  const BoundedFitResult result = FitWithinLimits(valley, x, lower, upper, {}, [&](const BoundedFitProgress& now) {
    EXPECT_LT(now.sum, now.sumBefore);
    sum = now.sum;
    return now.iterations < 3;
  });
  EXPECT_EQ(result.end, BoundedFitEnd::kStopped);
  EXPECT_EQ(result.iterations, 3);
  EXPECT_EQ(valley.SumAt(x), sum);
}

// The minimum of a linear problem within limits, from all 3^n choices of unknowns at a limit.
double LeastSumByTrial(Problem& problem, std::size_t n) {
  double least = kNoLimit;
  std::size_t choices = 1;
  for (std::size_t i = 0; i < n; ++i) choices *= 3;
  for (std::size_t choice = 0; choice < choices; ++choice) {
    std::vector<double> x(n, 0.0), lower(n, -kNoLimit), upper(n, kNoLimit);
    std::size_t rest = choice;
    for (std::size_t i = 0; i < n; ++i, rest /= 3) {
      if (rest % 3 == 0) continue;
      lower[i] = upper[i] = rest % 3 == 1 ? -1 : 1;
    }
    const BoundedFitResult result = Fit(problem, x, lower, upper);
    const bool isInside = std::all_of(x.begin(), x.end(), [](double value) { return std::fabs(value) <= 1; });
    if (isInside) least = std::min(least, result.sum);
  }
  return least;
}

TEST(BoundedFit, FindsTheLeastSumWithinABoxAsATrialOfAllChoicesDoes) {
  std::mt19937 random(7);
  std::normal_distribution<double> normal;
  for (int round = 0; round < 40; ++round) {
    constexpr std::size_t kUnknowns = 4, kPoints = 6;
    std::vector<double> jacobian(kUnknowns * kPoints), right(kPoints);
    for (double& element : jacobian) element = normal(random);
    for (double& element : right) element = 3 * normal(random);
    Problem problem(kUnknowns, [&](std::span<const double> x) {
      Residuals at{right, jacobian};
      for (std::size_t k = 0; k < kPoints; ++k) {
        for (std::size_t i = 0; i < kUnknowns; ++i) at.r[k] += jacobian[k * kUnknowns + i] * x[i];
      }
      return at;
    });
    std::vector<double> x(kUnknowns, 0.3);
    const BoundedFitResult result = Fit(problem, x, std::vector(kUnknowns, -1.0), std::vector(kUnknowns, 1.0));
    EXPECT_TRUE(IsConverged(result.end));
    EXPECT_NEAR(result.sum, LeastSumByTrial(problem, kUnknowns), kOfMinimum * result.sum) << round;
  }
}

}  // namespace
}  // namespace kalvex

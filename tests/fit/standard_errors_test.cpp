// Standard errors against closed forms of inverse matrices.
#include "fit/standard_errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "core/limits.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// Relative: the condition of the matrices here is at most 1e5.
constexpr double kOfInverse = 1e-9;

class Curvature {
 public:
  explicit Curvature(std::size_t size) : data_(size * size), matrix_{data_.data(), size} {}
  double& operator()(std::size_t i, std::size_t j) { return matrix_(i, j); }
  Determination Errors(std::vector<char> counts = {}) {
    counts.resize(matrix_.size, 1);
    return DetermineErrors(matrix_, counts);
  }

 private:
  std::vector<double> data_;
  SquareMatrix matrix_;
};

TEST(StandardErrors, OfIndependentParametersRaiseChiSqByOne) {
  Curvature curvature(3);
  const double sigma[] = {1e-6, 2, 3e5};
  for (std::size_t i = 0; i < 3; ++i) curvature(i, i) = 2 / (sigma[i] * sigma[i]);
  const Determination found = curvature.Errors();
  for (std::size_t i = 0; i < 3; ++i) EXPECT_CLOSE(found.errors[i], sigma[i], kOfInverse);
  EXPECT_EQ(found.rank, 3u);
  EXPECT_CLOSE(found.condition, 1, kOfInverse);
  EXPECT_TRUE(found.undetermined.empty());
}

// H = 2 C^-1 with sigmas 2 and 3 and the correlation r.
TEST(StandardErrors, OfCorrelatedParametersAreThoseOfTheirCovariance) {
  for (const double r : {0.3, -0.99}) {
    Curvature curvature(2);
    curvature(0, 0) = 2 / (4 * (1 - r * r));
    curvature(1, 1) = 2 / (9 * (1 - r * r));
    curvature(0, 1) = -2 * r / (6 * (1 - r * r));
    const Determination found = curvature.Errors();
    EXPECT_CLOSE(found.errors[0], 2, kOfInverse);
    EXPECT_CLOSE(found.errors[1], 3, kOfInverse);
    EXPECT_CLOSE(found.condition, (1 + std::fabs(r)) / (1 - std::fabs(r)), kOfInverse);
  }
}

// Of two parameters only the sum a + 2 b has an influence. The third is determined, and correlated with the sum.
TEST(StandardErrors, NameWhatIsNotDeterminedAndHoldForTheRest) {
  Curvature curvature(4);
  const double slope[] = {1, 2};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = i; j < 2; ++j) curvature(i, j) = 2 * slope[i] * slope[j];
    curvature(i, 2) = slope[i];  // half of the geometric mean: a correlation of -1/2
  }
  curvature(2, 2) = 2;
  const Determination found = curvature.Errors();  // the fourth has no influence
  EXPECT_EQ(found.rank, 2u);
  EXPECT_CLOSE(found.errors[2], 1 / std::sqrt(1 - 0.25), kOfInverse);
  for (const std::size_t i : {0u, 1u, 3u}) EXPECT_EQ(found.errors[i], kNotDetermined);
  ASSERT_EQ(found.undetermined.size(), 1u);
  const auto& parts = found.undetermined[0].parts;
  ASSERT_EQ(parts.size(), 2u);
  EXPECT_EQ(parts[0].param, 0);
  EXPECT_GT(parts[0].weight, 0);
  EXPECT_CLOSE(parts[1].weight, -parts[0].weight, kOfInverse);
}

TEST(StandardErrors, AHeldParameterWidensNothing) {
  Curvature curvature(2);
  curvature(0, 0) = curvature(1, 1) = 2;
  curvature(0, 1) = 1.9;
  const Determination found = curvature.Errors({1, 0});
  EXPECT_CLOSE(found.errors[0], 1, kOfInverse);
  EXPECT_EQ(found.errors[1], kNotDetermined);
}

// The inverse of the matrix with 2 on its diagonal and -1 beside it has i (n + 1 - i)/(n + 1) on its diagonal.
TEST(StandardErrors, OfManyParametersAreRightToo) {
  constexpr std::size_t kMany = 300;
  Curvature curvature(kMany + 1);
  for (std::size_t i = 0; i < kMany; ++i) {
    curvature(i, i) = 4;
    if (i + 1 < kMany) curvature(i, i + 1) = -2;
  }
  // The last one has the same effect as the first.
  curvature(0, kMany) = curvature(kMany, kMany) = 4;
  curvature(1, kMany) = -2;
  std::vector<char> withoutTheLast(kMany + 1, 1);
  withoutTheLast[kMany] = 0;
  const Determination alone = curvature.Errors(withoutTheLast);
  for (std::size_t i = 0; i < kMany; ++i) {
    const double place = static_cast<double>(i + 1), n = kMany;
    EXPECT_CLOSE(alone.errors[i], std::sqrt(place * (n + 1 - place) / (n + 1)), 1e-7) << i;  // the damping is 3e-12
  }
  const Determination all = curvature.Errors();
  EXPECT_EQ(all.errors[0], kNotDetermined);
  EXPECT_EQ(all.errors[kMany], kNotDetermined);
  EXPECT_CLOSE(all.errors[1], alone.errors[1], 1e-7);
}

}  // namespace
}  // namespace kalvex

// Functions of packs against those of the C library, lane by lane.
#include "numeric/pack.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "support/tolerances.h"

namespace kalvex {
namespace {

constexpr std::size_t kTrials = 20000;
constexpr double kInf = std::numeric_limits<double>::infinity();

Pack PackOf(const double (&x)[kPack]) { return Pack::Load(x); }

// Distance in units in the last place of the expected number.
double Ulps(double got, double expected) {
  if (got == expected || (std::isnan(got) && std::isnan(expected))) return 0;
  const double unit = std::nextafter(std::fabs(expected), kInf) - std::fabs(expected);
  return std::fabs(got - expected) / unit;
}

// Calls check(lane, argument) for packs of random arguments between the ends.
template <class Check>
void ForRandomPacks(double from, double to, Check check) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> argument(from, to);
  for (std::size_t trial = 0; trial < kTrials; trial += kPack) {
    double x[kPack];
    for (double& one : x) one = argument(random);
    check(PackOf(x));
  }
}

TEST(Packs, ExponentialIsWithinTwoUnits) {
  for (const double reach : {0.4, 5.0, 700.0}) {
    ForRandomPacks(-reach, reach, [](const Pack& x) {
      const Pack e = Exp(x);
      for (std::size_t i = 0; i < kPack; ++i) EXPECT_LE(Ulps(e.x[i], std::exp(x.x[i])), 2) << x.x[i];
    });
  }
}

TEST(Packs, ExponentialAtTheEndsOfItsRange) {
  const Pack x = PackOf({-kInf, -800, -745, -720, 0, 709.7, 711, kInf});
  const Pack e = Exp(x);
  for (std::size_t i = 0; i < kPack; ++i) EXPECT_LE(Ulps(e.x[i], std::exp(x.x[i])), 2) << x.x[i];
  EXPECT_EQ(e.x[4], 1);
  EXPECT_TRUE(std::isnan(Exp(Pack(std::nan(""))).x[3]));
}

// Near a zero of the sine the absolute error is tested, not the ulps of the tiny result.
TEST(Packs, SineAndCosineAreWithinTwoUnits) {
  for (const double reach : {0.7, 10.0, 1e3, 9e5}) {
    ForRandomPacks(-reach, reach, [&](const Pack& x) {
      constexpr double kNearZero = 1e-4;
      const SineAndCosine at = SineAndCosineOf(x);
      for (std::size_t i = 0; i < kPack; ++i) {
        EXPECT_NEAR(at.sine.x[i], std::sin(x.x[i]), 2 * kEps * (std::fabs(std::sin(x.x[i])) + kNearZero)) << x.x[i];
        EXPECT_NEAR(at.cosine.x[i], std::cos(x.x[i]), 2 * kEps * (std::fabs(std::cos(x.x[i])) + kNearZero)) << x.x[i];
      }
    });
  }
}

TEST(Packs, SineAndCosineOfLargeArgumentsAreThoseOfTheLibrary) {
  const Pack x = PackOf({1, -2, 3e6, 1e15, -1e300, 0, 1e6, -7e5});
  const SineAndCosine at = SineAndCosineOf(x);
  for (std::size_t i = 0; i < kPack; ++i) {
    EXPECT_EQ(at.sine.x[i], std::sin(x.x[i]));
    EXPECT_EQ(at.cosine.x[i], std::cos(x.x[i]));
  }
}

TEST(Packs, ComplexRootIsThatOfOneNumber) {
  const double parts[] = {0, -0.0, 1, -1, 3e-200, -2e180, 1e-310, 0.25, -7, kInf};
  for (const double re : parts) {
    for (const double im : parts) {
      const Cplx expected = Sqrt(Cplx{re, im});
      const Complex<Pack> root =
          Sqrt(Complex<Pack>{PackOf({1, 2, re, 3, 4, 5, 6, 7}), PackOf({0, 1, im, 0, 0, 0, 0, 0})});
      EXPECT_EQ(Ulps(root.re.x[2], expected.re), 0) << re << ' ' << im;
      EXPECT_EQ(Ulps(root.im.x[2], expected.im), 0) << re << ' ' << im;
      EXPECT_EQ(root.re.x[0], 1);
    }
  }
}

TEST(Packs, TellForHowManyLanesAConditionHolds) {
  const Pack x = PackOf({1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(LanesOf(x > Pack(8.0)), Lanes::kNone);
  EXPECT_EQ(LanesOf(x > Pack(7.0)), Lanes::kSome);
  EXPECT_EQ(LanesOf(x > Pack(0.0)), Lanes::kAll);
  const Pack chosen = Select(x > Pack(7.0), Pack(1.0), Pack(-1.0));
  EXPECT_EQ(chosen.x[6], -1);
  EXPECT_EQ(chosen.x[7], 1);
}

}  // namespace
}  // namespace kalvex

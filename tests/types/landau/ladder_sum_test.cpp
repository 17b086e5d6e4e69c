// Compares the sum over transitions with a plain loop, and sums for many frequencies at once with single ones.
#include "types/landau/ladder_sum.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "support/tolerances.h"
#include "types/landau/ladder_kernels.h"

namespace kalvex {
namespace {

// Random transitions with different slopes. Their number is not a multiple of the group or portion size.
template <class T>
LadderTable<T> Transitions() {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> between(0.001, 1);
  const auto number = [&] {
    T x(between(random));
    if constexpr (std::is_same_v<T, TypeDual>) {
      for (double& slope : x.v) slope = between(random) - 0.5;
    }
    return x;
  };
  LadderTable<T> table;
  for (int k = 0; k < 70; ++k) {
    const T square = number(), diagonal = number();
    table.Add(square, diagonal, number());
  }
  return table;
}

template <class T>
Complex<T> At(double x) {
  Complex<T> z{T(kElectronvoltPerWavenumber * x), T(0.02)};
  if constexpr (std::is_same_v<T, TypeDual>) z.im.v[3] = 1;
  return z;
}

const std::vector<double> kFrequencies = {500, 700, 1000, 1100, 1500, 2000, 2500, 2600, 2601, 4000, 5000};

double Number(double x) { return x; }
std::array<double, kTypeLanes + 1> Number(const TypeDual& x) {
  std::array<double, kTypeLanes + 1> all{x.a};
  std::copy(x.v.begin(), x.v.end(), all.begin() + 1);
  return all;
}

template <class T>
void ExpectSame(const LadderSums<T>& a, const LadderSums<T>& b, double x) {
  EXPECT_EQ(Number(a.diagonal.re), Number(b.diagonal.re)) << x;
  EXPECT_EQ(Number(a.diagonal.im), Number(b.diagonal.im)) << x;
  EXPECT_EQ(Number(a.hall.re), Number(b.hall.re)) << x;
  EXPECT_EQ(Number(a.hall.im), Number(b.hall.im)) << x;
}

template <class T>
void ExpectTheSameTogetherAsAlone() {
  const LadderTable<T> together = Transitions<T>();
  for (std::size_t i = 0; i < kFrequencies.size(); ++i) {
    const LadderTable<T> alone = Transitions<T>();
    const Complex<T> z = At<T>(kFrequencies[i]);
    const LadderSums<T> one = SumLadder(alone, z);
    ExpectSame(SumLadder(together, z, std::span(kFrequencies).subspan(i)), one, kFrequencies[i]);
    ExpectSame(SumLadder(together, z), one, kFrequencies[i]);
  }
}

TEST(LadderSum, IsTheSameForManyFrequenciesTogetherAsForEachAlone) {
  ExpectTheSameTogetherAsAlone<double>();
  ExpectTheSameTogetherAsAlone<TypeDual>();
}

TEST(LadderSum, IsTheSumOfItsTransitions) {
  const LadderTable<TypeDual> table = Transitions<TypeDual>();
  for (const double x : kFrequencies) {
    constexpr double kSlope = 1e-10, kNearZero = 1e-8;  // sums of terms of both signs, divided by the width
    const Complex<TypeDual> z = At<TypeDual>(x);
    Complex<TypeDual> diagonal, hall;
    for (std::size_t k = 0; k < table.square.size(); ++k) {
      const Complex<TypeDual> u = TypeDual(1) / (table.square[k] - z * z);
      diagonal += u * table.diagonal[k];
      hall += u * table.hall[k];
    }
    const LadderSums<TypeDual> sums = SumLadder(table, z, kFrequencies);
    const auto compare = [&](const TypeDual& a, const TypeDual& b) {
      EXPECT_CLOSE(a.a, b.a, kRound) << x;
      for (std::size_t l = 0; l < kTypeLanes; ++l)
        EXPECT_NEAR(a.v[l], b.v[l], kSlope * std::fabs(b.v[l]) + kNearZero) << x;
    };
    compare(sums.diagonal.re, diagonal.re);
    compare(sums.diagonal.im, diagonal.im);
    compare(sums.hall.re, hall.re);
    compare(sums.hall.im, hall.im);
  }
}

// All numbers of the sums over one portion of transitions, in all lanes.
std::vector<double> SumsOfAPortion(const LadderKernels& kernels) {
  const LadderTable<TypeDual> table = Transitions<TypeDual>();
  Complex<Pack> z2, sum;
  for (std::size_t i = 0; i < kPack; ++i) {
    const Cplx z = At<double>(kFrequencies[i]), square = z * z;
    z2.re.x[i] = square.re;
    z2.im.x[i] = square.im;
  }
  std::vector<double> weights;
  for (const TypeDual& weight : table.hall) weights.push_back(weight.a);
  LadderReciprocals u;
  LadderSlopeSum slopes;
  kernels.invert(&table.square[0].a, sizeof(TypeDual) / sizeof(double), kLadderPortion, z2, u);
  kernels.addValues(weights.data(), kLadderPortion, u, sum);
  kernels.addSlopes(table.square.data(), table.hall.data(), kLadderPortion, u, slopes);
  std::vector<Complex<Pack>> all(u.begin(), u.end());
  all.insert(all.end(), {sum, slopes.value, slopes.bySquare});
  all.insert(all.end(), slopes.byLane.begin(), slopes.byLane.end());
  std::vector<double> numbers(all.size() * sizeof(all[0]) / sizeof(double));
  std::memcpy(numbers.data(), all.data(), numbers.size() * sizeof(double));
  return numbers;
}

TEST(LadderSum, HasTheSameBitsOnEveryWidthOfTheVectorUnits) {
  const auto widths = KernelsOfThisMachine<LadderKernels>();
  const std::vector<double> narrowest = SumsOfAPortion(*widths.back());
  for (const LadderKernels* const kernels : widths) EXPECT_EQ(SumsOfAPortion(*kernels), narrowest);
}

TEST(LadderSum, ForgetsSumsWhenTransitionsChangeOrTheWidth) {
  LadderTable<double> table = Transitions<double>();
  const Cplx z = At<double>(500);
  const Cplx before = SumLadder(table, z, kFrequencies).diagonal;
  const Cplx wider = SumLadder(table, {z.re, 2 * z.im}, kFrequencies).diagonal;
  EXPECT_NE(wider.im, before.im);
  EXPECT_EQ(SumLadder(table, z, kFrequencies).diagonal, before);
  table.Clear();
  table.Add(1, 2, 3);
  EXPECT_EQ(SumLadder(table, z, kFrequencies).diagonal, 1.0 / (1.0 - z * z) * 2.0);
}

}  // namespace
}  // namespace kalvex

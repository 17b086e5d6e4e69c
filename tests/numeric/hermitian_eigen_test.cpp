// The solver for Hermitian matrices against closed forms, and against Jacobi rotations of the complex matrix itself.
#include "numeric/hermitian_eigen.h"

#include <gtest/gtest.h>

#include <complex>
#include <numbers>
#include <random>

#include "support/jacobi.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using C = std::complex<double>;
using Matrix = ComplexMatrix;

std::vector<Cplx> Flat(const Matrix& a) {
  std::vector<Cplx> flat;
  for (const auto& row : a) {
    for (const C& z : row) flat.push_back({z.real(), z.imag()});
  }
  return flat;
}

Matrix RandomHermitian(std::size_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<double> normal;
  Matrix a(n, std::vector<C>(n));
  for (std::size_t i = 0; i < n; ++i) {
    a[i][i] = normal(random);
    for (std::size_t j = 0; j < i; ++j) {
      a[i][j] = {normal(random), normal(random)};
      a[j][i] = std::conj(a[i][j]);
    }
  }
  return a;
}

// Each row of the states is an eigenvector of norm 1, and they are orthogonal to each other.
void ExpectEigenvectors(const Matrix& a, const EigenScratch& scratch, double size) {
  const std::size_t n = a.size();
  const auto state = [&](std::size_t k, std::size_t i) {
    return C(scratch.states[k * n + i].re, scratch.states[k * n + i].im);
  };
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = 0; i < n; ++i) {
      C image = 0;
      for (std::size_t j = 0; j < n; ++j) image += a[i][j] * state(k, j);
      EXPECT_NEAR(std::abs(image - scratch.levels[k] * state(k, i)), 0, kChain * size) << k << ' ' << i;
    }
    for (std::size_t l = 0; l <= k; ++l) {
      C product = 0;
      for (std::size_t i = 0; i < n; ++i) product += std::conj(state(k, i)) * state(l, i);
      EXPECT_NEAR(std::abs(product), k == l ? 1 : 0, kChain) << k << ' ' << l;
    }
  }
}

TEST(HermitianEigen, AgreesWithJacobiOnRandomMatricesOfAllSizesUpToTwelve) {
  EigenScratch scratch;
  for (std::size_t n = 1; n <= 12; ++n) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
      const Matrix a = RandomHermitian(n, seed);
      ASSERT_TRUE(HermitianEigen(Flat(a), n, true, scratch));
      const auto expected = SolveByJacobi(a).level;
      for (std::size_t k = 0; k < n; ++k) EXPECT_NEAR(scratch.levels[k], expected[k], kChain * 10) << n << ' ' << seed;
      ExpectEigenvectors(a, scratch, 10);
      const std::vector<double> withVectors(scratch.levels.begin(), scratch.levels.begin() + static_cast<long>(n));
      ASSERT_TRUE(HermitianEigen(Flat(a), n, false, scratch));
      for (std::size_t k = 0; k < n; ++k) EXPECT_EQ(scratch.levels[k], withVectors[k]);
    }
  }
}

TEST(HermitianEigen, OfTwoLevelsHasTheClosedForm) {
  EigenScratch scratch;
  ASSERT_TRUE(HermitianEigen(std::vector<Cplx>{{1.5, 0}, {0.3, -0.7}, {0.3, 0.7}, {-0.5, 0}}, 2, false, scratch));
  const double root = std::sqrt(1 + 0.3 * 0.3 + 0.7 * 0.7);
  EXPECT_NEAR(scratch.levels[0], 0.5 - root, kRound);
  EXPECT_NEAR(scratch.levels[1], 0.5 + root, kRound);
}

TEST(HermitianEigen, OfAChainHasTheCosinesOfItsLength) {
  constexpr std::size_t kLength = 30;
  EigenScratch scratch;
  scratch.matrix.assign(kLength * kLength, 0);
  for (std::size_t i = 0; i + 1 < kLength; ++i) {
    scratch.matrix[i * kLength + i + 1] = scratch.matrix[(i + 1) * kLength + i] = -1;
  }
  ASSERT_TRUE(SymmetricEigen(kLength, true, scratch));
  for (std::size_t k = 0; k < kLength; ++k) {
    const double wave = std::numbers::pi * static_cast<double>(k + 1) / (kLength + 1);
    EXPECT_NEAR(scratch.values[k], -2 * std::cos(wave), kChain);
    const double* const v = scratch.vectors.data() + k * kLength;
    const double sign = v[0] > 0 ? 1 : -1;
    for (std::size_t i = 0; i < kLength; ++i) {
      EXPECT_NEAR(sign * v[i], std::sqrt(2.0 / (kLength + 1)) * std::sin(wave * static_cast<double>(i + 1)), kChain);
    }
  }
}

TEST(HermitianEigen, FindsWholeStatesWhereLevelsMeet) {
  EigenScratch scratch;
  // A randomly rotated projection: levels 0 (three times) and 1 (twice).
  constexpr std::size_t kSize = 5;
  EigenScratch turned;
  ASSERT_TRUE(HermitianEigen(Flat(RandomHermitian(kSize, 3)), kSize, true, turned));
  Matrix a(kSize, std::vector<C>(kSize));
  for (std::size_t k = 0; k < 2; ++k) {
    for (std::size_t i = 0; i < kSize; ++i) {
      for (std::size_t j = 0; j < kSize; ++j) {
        const Cplx x = turned.states[k * kSize + i], y = turned.states[k * kSize + j];
        a[i][j] += C(x.re, x.im) * C(y.re, -y.im);
      }
    }
  }
  ASSERT_TRUE(HermitianEigen(Flat(a), kSize, true, scratch));
  for (std::size_t k = 0; k < kSize; ++k) EXPECT_NEAR(scratch.levels[k], k < 3 ? 0 : 1, kChain);
  ExpectEigenvectors(a, scratch, 1);
  ASSERT_TRUE(HermitianEigen(std::vector<Cplx>(kSize * kSize), kSize, true, scratch));
  ExpectEigenvectors(Matrix(kSize, std::vector<C>(kSize)), scratch, 1);
}

TEST(HermitianEigen, KeepsItsDigitsOverManyDecades) {
  for (const double scale : {1e-120, 1e-30, 1e30, 1e120}) {
    EigenScratch scratch;
    ASSERT_TRUE(HermitianEigen(std::vector<Cplx>{{scale, 0}, {0, scale}, {0, -scale}, {scale, 0}}, 2, false, scratch));
    EXPECT_NEAR(scratch.levels[0] / scale, 0, kRound);
    EXPECT_CLOSE(scratch.levels[1], 2 * scale, kRound);
  }
}

TEST(HermitianEigen, TellsOfAnEigenvalueThatTakesTooManySteps) {
  EigenScratch scratch;
  const double nan = std::nan("");
  scratch.matrix = {0, 1, nan, 1, nan, 1, nan, 1, 0};
  EXPECT_FALSE(SymmetricEigen(3, true, scratch));
}

TEST(HermitianEigen, AllocatesNothingOnceItIsWarm) {
  EigenScratch scratch;
  const auto flat = Flat(RandomHermitian(6, 1));
  ASSERT_TRUE(HermitianEigen(flat, 6, true, scratch));
  const double* const vectors = scratch.vectors.data();
  const Cplx* const states = scratch.states.data();
  for (std::size_t n = 1; n <= 6; ++n) {
    ASSERT_TRUE(HermitianEigen(Flat(RandomHermitian(n, 2)), n, true, scratch));
    EXPECT_EQ(scratch.vectors.data(), vectors);
    EXPECT_EQ(scratch.states.data(), states);
  }
}

}  // namespace
}  // namespace kalvex

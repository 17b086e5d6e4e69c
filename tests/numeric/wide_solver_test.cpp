// The blocked factorisation, the border in front of a band, and the sum of outer products.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "numeric/band_solver.h"
#include "numeric/matrix_kernels.h"
#include "numeric/rank_update.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// A random matrix, positive definite because of its large diagonal: a border of d full rows, a band of half-width h,
// and some full columns at the end.
struct System {
  std::size_t n;
  std::vector<double> data, b;

  System(std::size_t size, std::size_t border, std::size_t half, std::size_t columns = 0)
      : n(size), data(size * size), b(size) {
    std::mt19937 random(static_cast<unsigned>(size + 7 * border + 31 * half));
    std::uniform_real_distribution<double> value(-1, 1);
    for (std::size_t i = 0; i < n; ++i) {
      b[i] = value(random);
      for (std::size_t j = i + 1; j < n; ++j) {
        if (i < border || j - i <= half || j + columns >= n) data[i * n + j] = value(random);
      }
      data[i * n + i] = 2.0 * static_cast<double>(n);
      for (std::size_t j = 0; j < i; ++j) data[i * n + j] = 1e300;  // must not be read
    }
  }

  double At(std::size_t i, std::size_t j) const { return i <= j ? data[i * n + j] : data[j * n + i]; }
};

void ExpectSolved(const System& system, const std::vector<double>& b, const std::vector<double>& x) {
  for (std::size_t i = 0; i < system.n; ++i) {
    double sum = 0;
    for (std::size_t j = 0; j < system.n; ++j) sum += system.At(i, j) * x[j];
    ASSERT_NEAR(sum, b[i], kFormula) << i;
  }
}

TEST(SolveBanded, AnyShapeIsSolvedAndItsUpperTriangleStays) {
  for (const std::size_t n : {1U, 2U, 3U, 5U, 63U, 64U, 65U, 130U, 201U}) {
    for (const std::size_t border : {0U, 1U, 3U, 9U}) {
      for (const std::size_t half : {1U, 2U, 5U, 40U, 300U}) {
        if (border >= n) continue;
        System system(n, border, half);
        const std::vector<double> before = system.data;
        std::vector<double> x(n), other(n, 1.0);
        BandFactor factor;
        const SquareMatrix a{system.data.data(), n};
        ASSERT_EQ(SolveBanded(a, factor, system.b, x, true), 0) << n << ' ' << border << ' ' << half;
        ExpectSolved(system, system.b, x);
        ASSERT_EQ(SolveBanded(a, factor, other, x, false), 0);
        ExpectSolved(system, other, x);
        for (std::size_t i = 0; i < n; ++i) {
          for (std::size_t j = i; j < n; ++j) ASSERT_EQ(system.data[i * n + j], before[i * n + j]);
        }
      }
    }
  }
}

TEST(SolveBanded, FullColumnsAnywhereAreSolved) {
  for (const std::size_t border : {0U, 3U}) {
    for (const std::size_t columns : {1U, 2U, 7U}) {
      System system(260, border, 3, columns);
      for (std::size_t i = 0; i < 150; ++i) system.data[i * 260 + 150] = 0.5;  // and one in the middle
      std::vector<double> x(260);
      BandFactor factor;
      ASSERT_EQ(SolveBanded({system.data.data(), 260}, factor, system.b, x, true), 0);
      EXPECT_EQ(factor.border, border);
      EXPECT_EQ(factor.top[100], 97U) << "the band must stay a band";
      ExpectSolved(system, system.b, x);
    }
  }
}

TEST(SolveBanded, ABadPivotAnywhereIsFoundInAnyShape) {
  for (const std::size_t border : {0U, 2U}) {
    for (const std::size_t half : {2U, 300U}) {
      for (const std::size_t bad : {0U, 1U, 70U, 149U}) {
        for (const double pivot : {0.0, -1e6, std::nan("")}) {
          System system(150, border, half);
          system.data[bad * 150 + bad] = pivot;
          std::vector<double> x(150, 7.0);
          BandFactor factor;
          EXPECT_EQ(SolveBanded({system.data.data(), 150}, factor, system.b, x, true), -1)
              << border << ' ' << half << ' ' << bad;
          EXPECT_EQ(x[3], 7.0);
        }
      }
    }
  }
}

TEST(OuterProducts, EqualThePlainSumsForEveryLengthAndCount) {
  std::mt19937 random(9);
  std::uniform_real_distribution<double> value(-1, 1);
  for (const std::size_t n : {1U, 7U, 8U, 15U, 16U, 17U, 33U, 76U}) {
    for (const std::size_t count : {1U, 5U, 64U}) {
      std::vector<double> sums(n * n), matrix(n * n, 0.5), v(n), weighted(n), b(n, 0.25);
      VectorPanel panel(n);
      for (int round = 0; round < 2; ++round) {
        panel.Clear();
        for (std::size_t p = 0; p < count; ++p) {
          const double weight = value(random);
          panel.Begin(weight);
          for (std::size_t i = 0; i < n; ++i) panel[i] = v[i] = value(random);
          for (std::size_t i = 0; i < n; ++i) {
            weighted[i] += weight * v[i];
            for (std::size_t j = i; j < n; ++j) sums[i * n + j] += v[i] * v[j];
          }
        }
        EXPECT_EQ(panel.IsFull(), count == 64);
        const VectorPanel* const panels[] = {&panel};
        AddOuterProducts(panels, {matrix.data(), n}, b);
      }
      for (std::size_t i = 0; i < n; ++i) {
        ASSERT_NEAR(b[i], 0.25 + weighted[i], kChain);
        for (std::size_t j = i; j < n; ++j) ASSERT_NEAR(matrix[i * n + j], 0.5 + sums[i * n + j], kChain);
      }
    }
  }
}

// Products may be fused with sums in one width and not in another: rounding of a sum of 37 terms below 1 tells them
// apart.
TEST(MatrixKernels, EveryWidthOfTheVectorUnitsAddsUpTheSameProducts) {
  constexpr std::size_t kCount = 37;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> value(-1, 1);
  std::vector<double> rows(kCount * kTileColumns), columns(rows.size()), before(kTileRows * kTileColumns);
  for (std::vector<double>* const numbers : {&rows, &columns, &before}) {
    for (double& number : *numbers) number = value(random);
  }
  for (const MatrixKernels* const kernels : KernelsOfThisMachine<MatrixKernels>()) {
    std::vector<double> tile = before, strip(before.begin(), before.begin() + kTileColumns), difference = columns;
    kernels->addTile(rows.data(), columns.data(), kCount, -1, tile.data(), kTileColumns);
    kernels->addWeightedStrip(std::span(rows).first(kCount), columns.data(), strip.data());
    kernels->subtract(0.7, rows.data(), rows.size(), difference.data());
    double product = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      product += rows[i] * columns[i];
      EXPECT_NEAR(difference[i], columns[i] - 0.7 * rows[i], kRound);
    }
    EXPECT_NEAR(kernels->dot(rows.data(), columns.data(), rows.size()), product, kChain);
    for (std::size_t c = 0; c < kTileColumns; ++c) {
      double sum = before[c];
      for (std::size_t p = 0; p < kCount; ++p) sum += rows[p] * columns[p * kTileColumns + c];
      EXPECT_NEAR(strip[c], sum, kChain);
      for (std::size_t r = 0; r < kTileRows; ++r) {
        double entry = before[r * kTileColumns + c];
        for (std::size_t p = 0; p < kCount; ++p) entry -= rows[p * kTileColumns + r] * columns[p * kTileColumns + c];
        EXPECT_NEAR(tile[r * kTileColumns + c], entry, kChain);
      }
    }
  }
}

TEST(MatrixKernels, EveryWidthOfTheVectorUnitsSolvesATile) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> value(-1, 1);
  double l[kTileRows * kTileColumns], inverse[kTileRows], x[kTileRows * kTileColumns];
  for (double& number : l) number = 0.3 * value(random);
  for (double& number : inverse) number = 1 + 0.5 * value(random);
  for (double& number : x) number = value(random);
  for (const MatrixKernels* const kernels : KernelsOfThisMachine<MatrixKernels>()) {
    std::vector<double> solved(std::begin(x), std::end(x));
    kernels->solveTile(l, inverse, solved.data());
    for (std::size_t c = 0; c < kTileColumns; ++c) {
      for (std::size_t r = 0; r < kTileRows; ++r) {
        double sum = solved[r * kTileColumns + c] / inverse[r];
        for (std::size_t q = 0; q < r; ++q) sum += l[q * kTileColumns + r] * solved[q * kTileColumns + c];
        EXPECT_NEAR(sum, x[r * kTileColumns + c], kChain);
      }
    }
  }
}

}  // namespace
}  // namespace kalvex

// Roots of polynomials with known roots, and the degrees of degenerate polynomials.
#include "numeric/polynomial_roots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <random>
#include <vector>

namespace kalvex {
namespace {

using C = std::complex<double>;

std::array<Cplx, 5> FromRoots(C factor, const std::vector<C>& roots) {
  std::vector<C> a = {factor};
  for (const C& root : roots) {
    std::vector<C> next(a.size() + 1);
    for (std::size_t k = 0; k < a.size(); ++k) {
      next[k + 1] += a[k];
      next[k] -= root * a[k];
    }
    a = next;
  }
  std::array<Cplx, 5> coefficients{};
  for (std::size_t k = 0; k < a.size(); ++k) coefficients[k] = {a[k].real(), a[k].imag()};
  return coefficients;
}

double WorstMiss(const PolynomialRoots& found, std::vector<C> roots) {
  double worst = 0;
  for (int k = 0; k < found.degree; ++k) {
    const C z(found.root[static_cast<std::size_t>(k)].re, found.root[static_cast<std::size_t>(k)].im);
    const auto nearest =
        std::min_element(roots.begin(), roots.end(), [&](C a, C b) { return std::abs(a - z) < std::abs(b - z); });
    worst = std::max(worst, std::abs(*nearest - z));
    roots.erase(nearest);
  }
  return worst;
}

TEST(PolynomialRoots, AreThoseThatMadeThePolynomial) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> part(-3, 3);
  for (std::size_t degree = 1; degree <= 4; ++degree) {
    for (int trial = 0; trial < 200; ++trial) {
      std::vector<C> roots(degree);
      for (C& root : roots) root = {part(random), part(random)};
      const PolynomialRoots found = RootsOf(FromRoots({part(random), 1}, roots));
      ASSERT_EQ(found.degree, static_cast<int>(degree));
      EXPECT_LT(WorstMiss(found, roots), 1e-6) << degree;
    }
  }
}

TEST(PolynomialRoots, OfSpecialFormsAreFoundToo) {
  for (const std::vector<C>& roots : {std::vector<C>{1, -1, C(0, 1), C(0, -1)},
                                      {2, 2, -2, -2},
                                      {0, 0, 0, 0},
                                      {0, 0, 1},
                                      {1, 1, 1},
                                      {0, 0},
                                      {3, -3}}) {
    const PolynomialRoots found = RootsOf(FromRoots(2, roots));
    ASSERT_EQ(found.degree, static_cast<int>(roots.size()));
    EXPECT_LT(WorstMiss(found, roots), 1e-4);
  }
}

TEST(PolynomialRoots, HaveTheDegreeOfTheHighestCoefficientThatCounts) {
  EXPECT_EQ(RootsOf({Cplx{1, 0}, {2, 0}, {0, 0}, {1e-11, 0}, {0, 0}}).degree, 1);
  EXPECT_EQ(RootsOf({Cplx{1, 0}, {2, 0}, {0, 0}, {1e-9, 0}, {0, 0}}).degree, 3);
  EXPECT_EQ(RootsOf({Cplx{1, 0}, {}, {}, {}, {}}).degree, 0);
  for (const Cplx& root : RootsOf({}).root) EXPECT_EQ(root, Cplx{});
}

}  // namespace
}  // namespace kalvex

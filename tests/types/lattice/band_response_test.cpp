// Derivatives of the Kubo sum at degenerate levels, for clusters whose matrix has given levels.
#include "types/lattice/band_response.h"

#include <gtest/gtest.h>

#include <random>

#include "support/difference_quotient.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// Atoms at random positions, with a different hop between each pair in the cell.
struct Cluster {
  std::vector<double> numbers;  // the energies, then the sizes
  std::vector<Hop> hops;
  std::size_t atoms = 0;

  // A symmetric matrix with these levels and random states.
  Cluster(const std::vector<double>& levels, unsigned seed) : atoms(levels.size()) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    EigenScratch turned;
    turned.matrix.resize(atoms * atoms);
    for (double& element : turned.matrix) element = normal(random);
    EXPECT_TRUE(SymmetricEigen(atoms, true, turned));
    const auto element = [&](std::size_t i, std::size_t j) {
      double sum = 0;
      for (std::size_t k = 0; k < atoms; ++k) {
        sum += levels[k] * turned.vectors[k * atoms + i] * turned.vectors[k * atoms + j];
      }
      return sum;
    };
    for (std::size_t i = 0; i < atoms; ++i) numbers.push_back(element(i, i));
    std::vector<double> x;
    for (std::size_t i = 0; i < atoms; ++i) x.push_back(normal(random));
    std::size_t type = 0;
    for (std::size_t i = 0; i < atoms; ++i) {
      for (std::size_t j = i + 1; j < atoms; ++j, ++type) {
        numbers.push_back(element(i, j));
        hops.push_back({i, j, {}, type, {x[j] - x[i], 0, 0}});
        hops.push_back({j, i, {}, type, {x[i] - x[j], 0, 0}});
      }
    }
  }

  template <class T>
  BandTable<T> TableOf(const std::vector<T>& of) const {
    const auto energies = static_cast<std::ptrdiff_t>(atoms);
    BandModel<T> model{&hops, {of.begin() + energies, of.end()}, {of.begin(), of.begin() + energies}, T(0.1), T(0.3)};
    BandScratch scratch;
    BandPoint<T> point(model, scratch);
    EXPECT_TRUE(point.SolveAt({}));
    BandTable<T> table;
    AddBandPoint(model, point, 1, 1, table);
    return table;
  }
};

const Cplx kLight{0.7, 0.2};

template <class T>
Complex<T> SumOf(const BandTable<T>& table) {
  const Complex<T> z{T(kLight.re), T(kLight.im)};
  return z * SumLadder(table.between, z).diagonal + Complex<T>{table.within, T(0)} / z;
}

void ExpectSlopes(const Cluster& cluster) {
  for (std::size_t p = 0; p < cluster.numbers.size(); ++p) {
    std::vector<TypeDual> duals(cluster.numbers.begin(), cluster.numbers.end());
    duals[p] = TypeDual(cluster.numbers[p], 3);
    const BandTable<TypeDual> table = cluster.TableOf(duals);
    const Complex<TypeDual> sum = SumOf(table);
    const auto estimate = [&](auto read) {
      return RiddersSlope(
          [&](double value) {
            std::vector<double> moved = cluster.numbers;
            moved[p] = value;
            return read(cluster.TableOf(moved));
          },
          cluster.numbers[p], 0.05);
    };
    const auto expect = [&](const TypeDual& slope, const SlopeEstimate& expected, const char* what) {
      // Difference quotients of levels just above the threshold keep nine digits.
      EXPECT_NEAR(slope.v[3], expected.value, kRidders * expected.error + kSlopeOfSum) << what << " by number " << p;
    };
    expect(sum.re, estimate([](const BandTable<double>& t) { return SumOf(t).re; }), "real part");
    expect(sum.im, estimate([](const BandTable<double>& t) { return SumOf(t).im; }), "imaginary part");
    expect(table.electrons, estimate([](const BandTable<double>& t) { return t.electrons; }), "electrons");
  }
}

TEST(BandResponse, HasItsSlopesWhereLevelsStandApart) {
  for (unsigned seed = 1; seed <= 4; ++seed) ExpectSlopes(Cluster({-1.0, -0.2, 0.3, 0.9}, seed));
}

TEST(BandResponse, HasItsSlopesWhereLevelsMeet) {
  for (unsigned seed = 1; seed <= 4; ++seed) {
    ExpectSlopes(Cluster({-1.0, -0.2, 0.3, 0.3}, seed));
    ExpectSlopes(Cluster({-0.5, -0.5, 0.6, 0.6, 0.6}, seed));
  }
}

TEST(BandResponse, HasItsSlopesWhereLevelsNearlyMeet) {
  for (const double gap : {1e-14, 1e-10, 9e-8, 2e-7, 1e-5}) ExpectSlopes(Cluster({-1.0, -0.2, 0.3, 0.3 + gap}, 2));
}

// Also with kT = 0, and kT far below the gap, where the Fermi function is a step.
TEST(FermiQuotient, IsTheQuotientOfDifferencesAndItsLimit) {
  for (const double kT : {0.01, 0.3, 5.0}) {
    for (const double a : {-2.0, -0.1, 0.0, 0.4}) {
      for (const double gap : {1e-9, 1e-3, 0.0005, 0.02, 0.5, 3.0}) {
        const double fa = 1 / (std::exp(a / kT) + 1), fb = 1 / (std::exp((a + gap) / kT) + 1);
        // The plain quotient loses as many digits as the gap is small.
        EXPECT_NEAR(FermiQuotient(a, a + gap, kT), (fa - fb) / gap, kRound / gap + kChain / kT) << a << ' ' << gap;
        EXPECT_EQ(FermiQuotient(a, a + gap, kT), FermiQuotient(a + gap, a, kT));
      }
      EXPECT_NEAR(FermiQuotient(a, a, kT), -FermiSlope(a, kT), kFormula / kT);
    }
  }
  EXPECT_EQ(FermiQuotient(-1.0, 1.0, 0.0), 0.5);
  EXPECT_EQ(FermiQuotient(1.0, 2.0, 0.0), 0);
  EXPECT_EQ(FermiQuotient(1.0, 1.0, 0.0), 0);
  EXPECT_EQ(FermiQuotient(-1e6, 1e6, 1e-3), 0.5e-6);
}

TEST(FermiQuotient, HasItsSlopesOnBothSidesOfItsSeries) {
  const auto at = [](double a, double b, double kT) { return FermiQuotient(a, b, kT); };
  for (const double gap : {0.0, 1e-6, 0.0119, 0.0121, 0.1, 2.0, -0.5}) {
    const double a = 0.2, b = a + gap, kT = 0.3;
    const TypeDual slope = FermiQuotient(TypeDual(a, 0), TypeDual(b, 1), TypeDual(kT, 2));
    const SlopeEstimate estimates[] = {RiddersSlope([&](double v) { return at(v, b, kT); }, a, 0.05),
                                       RiddersSlope([&](double v) { return at(a, v, kT); }, b, 0.05),
                                       RiddersSlope([&](double v) { return at(a, b, v); }, kT, 0.05)};
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(slope.v[k], estimates[k].value, kRidders * estimates[k].error + 0.1 * kSlopeOfFormula)
          << gap << ' ' << k;
    }
  }
}

}  // namespace
}  // namespace kalvex

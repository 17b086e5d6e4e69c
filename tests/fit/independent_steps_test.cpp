// The fit against a Levenberg-Marquardt loop written out here, on a problem with closed derivatives.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <complex>
#include <utility>
#include <vector>

#include "fit/running.h"
#include "records/param_value.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// The unknowns: epsInf, Wo between two limits, Wp, and a linewidth above a minimum that a second oscillator shares.
constexpr std::size_t kUnknowns = 4;
using Vector = std::array<double, kUnknowns>;
using Matrix = std::array<Vector, kUnknowns>;
constexpr double kWoMin = 100, kWoMax = 140, kGMin = 2;

// x of A x = b by elimination with pivots.
Vector Solution(Matrix a, Vector b) {
  for (std::size_t c = 0; c < kUnknowns; ++c) {
    std::size_t best = c;
    for (std::size_t r = c; r < kUnknowns; ++r) {
      if (std::fabs(a[r][c]) > std::fabs(a[best][c])) best = r;
    }
    std::swap(a[c], a[best]);
    std::swap(b[c], b[best]);
    for (std::size_t r = 0; r < kUnknowns; ++r) {
      if (r == c) continue;
      const double f = a[r][c] / a[c][c];
      for (std::size_t k = c; k < kUnknowns; ++k) a[r][k] -= f * a[c][k];
      b[r] -= f * b[c];
    }
  }
  for (std::size_t c = 0; c < kUnknowns; ++c) b[c] /= a[c][c];
  return b;
}

struct Point {
  double x, y, sigma, weight;
  bool second;  // of the second oscillator, 3 + 150^2/(170^2 - x^2 - i x G)
  bool imaginary;
};

double CoordinateOfWo(double wo) {
  const double range = kWoMax - kWoMin;
  return std::sqrt(range) / 2 * std::asin((2 * wo - kWoMax - kWoMin) / range);
}
double WoOf(double u) {
  const double range = kWoMax - kWoMin;
  return std::sin(2 * u / std::sqrt(range)) * range / 2 + (kWoMax + kWoMin) / 2;
}
double ScaleOfWo(double wo) {
  const double s = std::sqrt(kWoMax - kWoMin);
  return s * std::cos(2 * CoordinateOfWo(wo) / s);
}

// The value at a point and its derivatives by the coordinates.
double Response(const Vector& p, const Point& at, Vector& slopes) {
  using C = std::complex<double>;
  const double wo = at.second ? 170 : p[1], wp = at.second ? 150 : p[2], own = at.second ? 0 : 1;
  const C d(wo * wo - at.x * at.x, -at.x * p[3]);
  const C eps = (at.second ? 3 : p[0]) + wp * wp / d;
  const std::array<C, kUnknowns> by = {own, -own * wp * wp * 2 * wo / (d * d) * ScaleOfWo(p[1]), own * 2 * wp / d,
                                       C(0, at.x) * (wp * wp / (d * d)) * 2.0 * std::sqrt(p[3] - kGMin)};
  for (std::size_t i = 0; i < kUnknowns; ++i) slopes[i] = at.imaginary ? by[i].imag() : by[i].real();
  return at.imaginary ? eps.imag() : eps.real();
}

double ChiSqOf(const std::vector<Point>& points, const Vector& p) {
  double sum = 0;
  Vector unused;
  for (const Point& at : points) sum += at.weight * std::pow((at.y - Response(p, at, unused)) / at.sigma, 2);
  return sum;
}

Vector Moved(const Vector& p, const Vector& delta) {
  const double u = std::sqrt(p[3] - kGMin) - delta[3];
  return {p[0] - delta[0], WoOf(CoordinateOfWo(p[1]) - delta[1]), p[2] - delta[2], u * u + kGMin};
}

struct Accepted {
  double lambda;
  double chiSq;
  Vector p;
};

std::vector<Accepted> StepsByHand(const std::vector<Point>& points, Vector p, double lambda, int iterations) {
  std::vector<Accepted> steps;
  for (int k = 0; k < iterations; ++k) {
    Matrix alpha{};
    Vector beta{}, slopes;
    for (const Point& at : points) {
      const double W = at.weight / (at.sigma * at.sigma), r = Response(p, at, slopes) - at.y;
      for (std::size_t i = 0; i < kUnknowns; ++i) {
        beta[i] += 2 * W * r * slopes[i];
        for (std::size_t j = 0; j < kUnknowns; ++j) alpha[i][j] += 2 * W * slopes[i] * slopes[j];
      }
    }
    for (const double before = ChiSqOf(points, p);; lambda *= 10) {
      Matrix damped = alpha;
      for (std::size_t i = 0; i < kUnknowns; ++i) damped[i][i] *= 1 + lambda;
      const Vector next = Moved(p, Solution(damped, beta));
      if (ChiSqOf(points, next) >= before) continue;
      p = next;
      break;
    }
    steps.push_back({lambda, ChiSqOf(points, p), p});
    lambda /= 10;
  }
  return steps;
}

void AddPoints(std::vector<Point>& points, const Dataset& dataset, double weight, bool second, bool imaginary) {
  for (const DataRow& row : dataset.points) points.push_back({row.x, row.y, row.sigma, weight, second, imaginary});
}

TEST_F(Running, TakesTheStepsOfALoopWrittenByHand) {
  constexpr int kIterations = 7;
  SampleFit::Set(model, 4, 120, 250, 8);
  Model& second = s.AddModel(3, 170, 150, 8);
  s.Measure(1, model, kE1, 0.5, 0.4, 50);
  s.Measure(2, model, kE2, 0.25, 0.3, 45);
  s.Measure(3, second, kE2, 0.5, 0.2, 40);
  FixAll(second, true);
  Cell(second, 0, G).adjustable = 1;
  const Vector start = {7, 131, 180, 25};
  SampleFit::Set(model, start[0], start[1], start[2], start[3]);
  Cell(model, 0, Wo).useMin = Cell(model, 0, Wo).useMax = Cell(model, 0, G).useMin = 1;
  Cell(model, 0, Wo).min = kWoMin;
  Cell(model, 0, Wo).max = kWoMax;
  Cell(model, 0, G).min = kGMin;
  SetCoupling(s.tables.params, Cell(model, 0, G), 1);
  SetCoupling(s.tables.params, Cell(second, 0, G), 1);
  s.Term(1, 1);
  s.Term(2, 1, 0.5);
  s.Term(3, 2, 3);
  ASSERT_EQ(fit().NumFreeParams, 4);
  ASSERT_EQ(fit().NumFitParams, 5);

  std::vector<Accepted> taken;
  RunWatch watch;
  watch.iterationDone = [&] {
    taken.push_back({fit().Lambda, fit().TotalChiSq, {}});
    for (std::size_t i = 0; i < kUnknowns; ++i) taken.back().p[i] = s.Cells()[i]->value;
  };
  options().StopOnReduction = false;
  options().StopOnIterations = true;
  options().MaxIterations = kIterations;
  s.Run(watch);

  std::vector<Point> points;
  AddPoints(points, s.tables.datasets.slots[0], 1, false, false);
  AddPoints(points, s.tables.datasets.slots[1], 0.5, false, true);
  AddPoints(points, s.tables.datasets.slots[2], 3, true, true);
  const std::vector<Accepted> expected = StepsByHand(points, start, 0.001, kIterations);
  ASSERT_EQ(taken.size(), expected.size());
  double highest = 0;
  for (std::size_t k = 0; k < taken.size(); ++k) {
    EXPECT_CLOSE(taken[k].lambda, expected[k].lambda, kRound) << k;
    EXPECT_CLOSE(taken[k].chiSq, expected[k].chiSq, kLongSum) << k;
    for (std::size_t i = 0; i < kUnknowns; ++i)
      EXPECT_CLOSE(taken[k].p[i], expected[k].p[i], kFormula) << k << ' ' << i;
    highest = std::fmax(highest, taken[k].lambda);
  }
  EXPECT_GT(highest, 0.001);  // some steps were rejected
}

}  // namespace
}  // namespace kalvex

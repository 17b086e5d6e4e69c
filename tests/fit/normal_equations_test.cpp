#include "fit/normal_equations.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "fit/fit_coordinate.h"
#include "fit/sample_fit.h"
#include "records/param_value.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

TEST(NormalEquations, AreTheSumsOfProductsOfDerivativesByTheCoordinates) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  InsertRow(a, 1);
  Cell(a, 1, Wo).value = 180;
  SetCoupling(s.tables.params, Cell(a, 0, G), 1);
  SetCoupling(s.tables.params, Cell(a, 1, G), 1);
  Cell(a, 0, Wp).useMin = 1;
  Cell(a, 0, Wp).min = 50;
  Cell(a, 1, Wo).useMin = Cell(a, 1, Wo).useMax = 1;
  Cell(a, 1, Wo).min = 100;
  Cell(a, 1, Wo).max = 300;
  s.Measure(1, a, kRefl, 0.02, 0.01, 12);
  s.Measure(2, a, kE2, 0.3, 0.1, 9);
  s.Term(1, 1, 2);
  s.Term(2, 1);
  FitState& fit = s.fit();
  const auto n = static_cast<std::size_t>(fit.NumFreeParams);
  ASSERT_EQ(n, 6u);
  NormalEquations equations(n);
  AccumulateNormalEquations(fit, s.tables.params, s.tables.eval, s.Coordinates(), equations);
  const double chiSq = fit.TotalChiSq;
  ComputeChiSq(fit, s.tables.eval);
  EXPECT_CLOSE(chiSq, fit.TotalChiSq, kChain);

  const FitCells cells = s.Cells();
  // beta is half the gradient of ChiSq; alpha comes from derivatives of each point by difference quotients.
  const auto moved = [&](std::size_t i, double u, auto read) {
    ModelParam& cell = *cells[i];
    const double before = cell.value;
    SetValue(s.tables.params, cell, FitCoordToValue(cell, u));
    const double result = read();
    SetValue(s.tables.params, cell, before);
    return result;
  };
  const std::vector<SeenPoint> points = SeenPointsOf(fit);
  ASSERT_EQ(points.size(), 21u);
  std::vector<std::vector<double>> J(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double u = FitCoordinateOf(*cells[i]).at, scale = 0.02 * std::fabs(u) + 1e-3;
    const auto total = [&](double at) {
      return moved(i, at, [&] {
        ComputeChiSq(fit, s.tables.eval);
        return fit.TotalChiSq;
      });
    };
    const SlopeEstimate slope = RiddersSlope(total, u, scale);
    EXPECT_NEAR(equations.beta[i], slope.value, kRidders * slope.error + 10 * kSlopeOfSum * std::fabs(slope.value))
        << i;
    for (const SeenPoint& point : points) {
      const auto value = [&](double at) {
        return moved(i, at, [&] {
          WantOnly(s.tables.eval.quantities, QuantitySet{point.quantity});
          EvalModel(s.tables.eval, a, point.x, false);
          return s.tables.eval.quantities[point.quantity].value;
        });
      };
      J[i].push_back(RiddersSlope(value, u, scale).value);
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i; j < n; ++j) {
      double expected = 0;
      for (std::size_t p = 0; p < points.size(); ++p) {
        const SeenPoint& point = points[p];
        const double weight = fit.list.terms[static_cast<std::size_t>(point.term)].weight;
        expected += 2 * weight / (point.sigma * point.sigma) * J[i][p] * J[j][p];
      }
      constexpr double kSlopesOfRidders = 1e-5, kNearZero = 1e-8;  // two slopes each, summed over the points
      EXPECT_NEAR(equations.Alpha()(i, j), expected, kSlopesOfRidders * std::fabs(expected) + kNearZero)
          << i << ' ' << j;
    }
  }
}

TEST(NormalEquations, ASlopeThatIsNotFiniteStaysWithItsOwnParameters) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  s.Measure(2, b, kRefl);
  s.Term(1, 1);
  s.Term(2, 2);
  s.tables.datasets.slots[0].points[5].sigma = 0;
  s.Rebuild();
  NormalEquations equations(8);
  AccumulateNormalEquations(s.fit(), s.tables.params, s.tables.eval, s.Coordinates(), equations);
  EXPECT_FALSE(std::isfinite(equations.Alpha()(0, 0)));
  EXPECT_TRUE(std::isfinite(equations.Alpha()(1, 1)));  // Einf of model 2
}

// The diagonal entry of the linewidth, for a linewidth at this distance from its minimum of 0.
double DiagonalAt(double linewidth) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kE2);
  FixAll(a, true);
  ModelParam& g = Cell(a, 0, G);
  g.adjustable = g.useMin = 1;
  g.min = 0;
  g.value = linewidth;
  s.Term(1, 1);
  NormalEquations equations(1);
  AccumulateNormalEquations(s.fit(), s.tables.params, s.tables.eval, s.Coordinates(), equations);
  return equations.Alpha()(0, 0);
}

TEST(NormalEquations, AParameterOnItsLimitHasNoRow) {
  EXPECT_EQ(DiagonalAt(0), 0);
  EXPECT_EQ(DiagonalAt(1e-21), 0);  // the scale 2 sqrt(1e-21) is below 1e-10
  EXPECT_GT(DiagonalAt(1e-20), 0);  // the scale 2e-10 is not
}

TEST(NormalEquations, ANegativeWeightHasNoRoot) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.01, 0.02);
  s.Term(1, 1, -1);
  NormalEquations equations(4);
  AccumulateNormalEquations(s.fit(), s.tables.params, s.tables.eval, s.Coordinates(), equations);
  EXPECT_LT(s.fit().TotalChiSq, 0);
  EXPECT_TRUE(std::isnan(equations.Alpha()(0, 0)));
  EXPECT_TRUE(std::isnan(equations.beta[0]));
}

TEST(NormalEquations, ModelsThatShareNothingDoNotMeetInTheMatrix) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(4, 150, 100, 20);
  s.Measure(1, a, kRefl);
  s.Measure(2, b, kRefl);
  s.Term(1, 1);
  s.Term(2, 2);
  NormalEquations equations(8);
  AccumulateNormalEquations(s.fit(), s.tables.params, s.tables.eval, s.Coordinates(), equations);
  for (std::size_t i = 0; i < 8; ++i) {
    for (std::size_t j = i; j < 8; ++j) {
      const bool together = s.fit().params[i].place.nm == s.fit().params[j].place.nm;
      EXPECT_EQ(equations.Alpha()(i, j) != 0, together) << i << ' ' << j;
    }
  }
}

}  // namespace
}  // namespace kalvex

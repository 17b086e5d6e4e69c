#include "fit/fit_lists.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fit/fit_coordinate.h"
#include "fit/normal_equations.h"
#include "fit/sample_fit.h"
#include "models/param_value.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

TEST(TermList, InsertingAndRemovingKeepsOrderAndNumbers) {
  FitState fit;
  ChiSqTermList list;
  EXPECT_EQ(InsertChiSqTerm(fit, list, 5).id, 0);
  EXPECT_EQ(InsertChiSqTerm(fit, list, 0).id, 1);
  EXPECT_EQ(InsertChiSqTerm(fit, list, -3).id, 2);
  EXPECT_EQ(list.terms[0].id, 2);
  EXPECT_EQ(list.terms[2].id, 0);
  EXPECT_EQ(list.terms[0].weight, 1);
  EXPECT_EQ(list.terms[0].datasetId + list.terms[0].modelId, 0u);
  RemoveChiSqTerm(list, 1);
  EXPECT_EQ(list.terms[1].id, 0);
  RemoveChiSqTerm(list, 99);
  ASSERT_EQ(list.terms.size(), 1u);
  ClearChiSqTerms(list);
  RemoveChiSqTerm(list, 0);
  EXPECT_TRUE(list.terms.empty());
  EXPECT_EQ(InsertChiSqTerm(fit, list, 0).id, 3);
}

TEST(FitPoints, AreTheActiveRowsSortedByModelAndFrequency) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.01, 0, 5);
  s.Measure(2, b, kE1, 0.01, 0, 4);
  s.program.datasets.slots[0].firstActive = 1;
  s.program.datasets.slots[0].lastActive = 3;
  s.Term(2, 2);
  s.Term(1, 1);
  const auto& points = s.fit().points;
  ASSERT_EQ(points.size(), 7u);
  EXPECT_EQ(points[0].modelId, 1u);
  EXPECT_EQ(points[0].x, 34);
  EXPECT_EQ(points[0].term, 1);
  EXPECT_EQ(points[0].quantity, kRefl);
  EXPECT_EQ(points[3].modelId, 2u);
  EXPECT_EQ(points[3].quantity, kE1);
}

TEST(FitPoints, ATermOfWeightZeroOrOfADeadDatasetGivesNone) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  s.Term(1, 1, 0);
  EXPECT_EQ(s.fit().points.size(), 0u);
  EXPECT_EQ(s.fit().NumFitParams, 0);
  EXPECT_EQ(s.fit().list.terms.size(), 1u);
  s.Term(1, 1);
  EXPECT_EQ(s.fit().points.size(), 60u);
  s.Measure(1, a, kRefl);  // loaded anew: the old id is dead
  s.Rebuild();
  EXPECT_EQ(s.fit().points.size(), 0u);
  s.Term(5, 1);  // an empty slot
  EXPECT_EQ(s.fit().points.size(), 0u);
}

TEST(FitPoints, FrequenciesWithin1e10OfTheFirstMakeAGroup) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.01, 0, 3);
  auto& points = s.program.datasets.slots[0].points;
  points[0].x = 1;
  points[1].x = 1 + 0.6e-10;
  points[2].x = 1 + 1.2e-10;
  s.Term(1, 1);
  ASSERT_EQ(s.fit().groups.size(), 2u);
  EXPECT_EQ(s.fit().groups[0].end - s.fit().groups[0].first, 2);
  EXPECT_EQ(s.fit().groups[0].x, 1);
  EXPECT_EQ(s.fit().groups[1].x, points[2].x);
}

TEST(FitPoints, TwoQuantitiesAtTheSameFrequenciesShareTheirGroups) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  s.Measure(2, a, kE2);
  s.Term(1, 1);
  s.Term(2, 1);
  EXPECT_EQ(s.fit().groups.size(), 60u);
  EXPECT_EQ(s.fit().groupWanted[7], SetOf(kRefl) | SetOf(kE2));
}

TEST(ChiSq, IsThePlainWeightedSumOverTheTerms) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.02, 0.03);
  s.Measure(2, a, kE1, 0.5, 0.1);
  SampleFit::Set(a, 3.2, 110, 190, 12);
  s.Term(1, 1, 2);
  s.Term(2, 1, -0.5);
  s.Term(1, 1);  // the same pair again
  double sums[2] = {};
  for (int slot = 0; slot < 2; ++slot) {
    const Dataset& dataset = s.program.datasets.slots[static_cast<std::size_t>(slot)];
    for (const DataRow& row : dataset.points) {
      WantOnly(s.program.eval.quantities, SetOf(dataset.Quantity));
      EvalModel(s.program.eval, a, row.x, false);
      const double value = s.program.eval.quantities[static_cast<std::size_t>(dataset.Quantity)].value;
      sums[slot] += std::pow((row.y - value) / row.sigma, 2);
    }
  }
  EXPECT_CLOSE(s.fit().list.terms[0].termChiSq, sums[0], kChain);
  EXPECT_CLOSE(s.fit().list.terms[1].termChiSq, sums[1], kChain);
  EXPECT_CLOSE(s.fit().TotalChiSq, 3 * sums[0] - 0.5 * sums[1], kChain);
}

std::vector<std::string> Places(const FitState& fit) {
  std::vector<std::string> places;
  for (const FitParam& p : fit.params) {
    places.push_back(std::string(KindText(p.place.Where)) + ' ' + std::to_string(p.place.nm) +
                     std::to_string(p.place.nl) + std::to_string(p.place.nc) + std::to_string(p.place.nep) +
                     std::to_string(p.place.nen) + std::to_string(p.place.isIm));
  }
  return places;
}

using Texts = std::vector<std::string>;

TEST(FitParams, AreListedByKindAndPlaceAndOnlyIfTheyMatter) {
  SampleFit s;
  s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  Cell(b, 0, Wp).adjustable = 0;
  s.program.params.ExpParams[kScalingFactorOfR].adjustable = 1;
  s.program.params.ExpParams[kSampleThickness].adjustable = 1;  // R does not depend on it
  s.Measure(1, b, kRefl);
  s.Term(1, 2);
  EXPECT_EQ(Places(s.fit()), (Texts{"EIN 100000", "LOR 100000", "LOR 102000", "EXP 000400"}));
  EXPECT_EQ(s.fit().NumFitParams, 4);
  EXPECT_EQ(s.fit().NumFreeParams, 4);
  s.Measure(2, s.model(1), kE2);
  s.Term(2, 1);
  // E2 does not depend on Einf of model 1; each term knows its own.
  EXPECT_EQ(Places(s.fit()),
            (Texts{"EIN 100000", "LOR 000000", "LOR 001000", "LOR 002000", "LOR 100000", "LOR 102000", "EXP 000400"}));
  EXPECT_EQ(s.fit().list.terms[0].params, (std::vector<int>{0, 4, 5, 6}));
  EXPECT_EQ(s.fit().list.terms[1].params, (std::vector<int>{1, 2, 3}));
}

TEST(FitParams, OfAMeshTheImaginaryPartsComeFirstAndTheRealOnesOnlyIfFree) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  FixAll(&a, true);
  a.vdf.On = 1;
  a.vdf.mesh.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    a.vdf.mesh[i].x = 50 + 50.0 * static_cast<double>(i);
    a.vdf.mesh[i].e1.adjustable = a.vdf.mesh[i].e2.adjustable = 1;
  }
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  EXPECT_EQ(Places(s.fit()),
            (Texts{"ESH 000000", "ESH 000001", "ESH 000010", "ESH 000011", "ESH 000020", "ESH 000021"}));
  a.vdf.KK = 1;
  s.Rebuild();
  EXPECT_EQ(Places(s.fit()), (Texts{"ESH 000011"}));  // the ends have no triangle
}

TEST(FitParams, ACoupledPairIsOneUnknown) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  InsertRow(&a, 1);
  SetCoupling(s.program.params, Cell(a, 0, G), 1);
  SetCoupling(s.program.params, Cell(a, 1, G), 1);
  s.Measure(1, a, kRefl);
  s.Term(1, 1);
  EXPECT_EQ(s.fit().NumFitParams, 7);
  EXPECT_EQ(s.fit().NumFreeParams, 6);
  EXPECT_EQ(Places(s.fit()).back(), "LOR 012000");
  EXPECT_EQ(Places(s.fit())[static_cast<std::size_t>(s.fit().params.back().master)], "LOR 002000");
}

TEST(FitParams, TheFirstUsedMemberOfAGroupIsItsMaster) {
  SampleFit s;
  Model& idle = s.AddModel(3, 100, 200, 10);
  Model& busy = s.AddModel(3, 100, 200, 10);
  SetCoupling(s.program.params, Cell(idle, 0, G), 1);
  SetCoupling(s.program.params, Cell(busy, 0, G), 1);
  s.Measure(1, busy, kRefl);
  s.Term(1, 2);
  EXPECT_EQ(s.fit().NumFitParams, 4);
  EXPECT_EQ(s.fit().NumFreeParams, 4);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(s.fit().params[static_cast<std::size_t>(i)].master, i);
}

TEST(FitParams, ARebuildEndsUndo) {
  SampleFit s;
  s.fit().UndoAvailable = s.fit().startValuesStored = true;
  s.Rebuild();
  EXPECT_FALSE(s.fit().UndoAvailable);
  EXPECT_FALSE(s.fit().startValuesStored);
}

TEST(FitCoordinate, EachKindOfLimitHasItsChangeOfVariable) {
  ModelParam param;
  param.min = 2;
  param.max = 10;
  for (const auto& [useMin, useMax] : {std::pair(0u, 0u), std::pair(1u, 0u), std::pair(0u, 1u), std::pair(1u, 1u)}) {
    param.useMin = useMin;
    param.useMax = useMax;
    for (const double value : {2.0, 2.5, 6.0, 9.9, 10.0}) {
      param.value = value;
      FitSetCoord(param);
      const double u = param.fitCoord;
      EXPECT_CLOSE(FitCoordToValue(param, u), value, kRound);
      const SlopeEstimate judge = RiddersSlope([&](double at) { return FitCoordToValue(param, at); }, u, 0.3);
      EXPECT_NEAR(param.fitScale, judge.value, 20 * judge.error + 1e-8);
      for (double step = -30; step <= 30; step += 0.7) {
        const double moved = FitCoordToValue(param, u + step);
        EXPECT_TRUE(!useMin || moved >= 2 - kRound) << moved;
        EXPECT_TRUE(!useMax || moved <= 10 + 2 * kRound) << moved;
      }
    }
  }
  EXPECT_NEAR(param.fitScale, 0, 1e-7);  // on the upper limit
}

TEST(FitCoordinate, OutsideOneLimitItStandsOnItAndEqualLimitsGiveZero) {
  ModelParam param;
  param.min = 2;
  param.useMin = 1;
  param.value = 1;
  FitSetCoord(param);
  EXPECT_EQ(param.fitCoord, 0);
  EXPECT_EQ(param.fitScale, 0);
  param.useMax = 1;
  param.max = 2;
  FitSetCoord(param);
  EXPECT_EQ(param.fitCoord, 0);
  EXPECT_EQ(param.fitScale, 0);
  EXPECT_EQ(FitCoordToValue(param, 0), 0);
}

TEST(NormalEquations, AreTheSumsOfProductsOfDerivativesByTheCoordinates) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  InsertRow(&a, 1);
  Cell(a, 1, Wo).value = 180;
  SetCoupling(s.program.params, Cell(a, 0, G), 1);
  SetCoupling(s.program.params, Cell(a, 1, G), 1);
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
  for (const FitParam& param : fit.params) FitSetCoord(*param.cell);
  NormalEquations equations(n);
  AccumulateNormalEquations(fit, s.program.eval, equations);
  const double chiSq = fit.TotalChiSq;
  ComputeChiSq(fit, s.program.eval);
  EXPECT_CLOSE(chiSq, fit.TotalChiSq, kChain);

  // beta is half the gradient of ChiSq; alpha comes from derivatives of each point by difference quotients.
  const auto moved = [&](std::size_t i, double u, auto read) {
    ModelParam& cell = *fit.params[i].cell;
    const double before = cell.value, coordinate = cell.fitCoord;
    SetValue(s.program.params, cell, FitCoordToValue(cell, u));
    const double result = read();
    SetValue(s.program.params, cell, before);
    cell.fitCoord = coordinate;
    return result;
  };
  std::vector<std::vector<double>> J(n);
  for (std::size_t i = 0; i < n; ++i) {
    const double u = fit.params[i].cell->fitCoord, scale = 0.02 * std::fabs(u) + 1e-3;
    const auto total = [&](double at) {
      return moved(i, at, [&] {
        ComputeChiSq(fit, s.program.eval);
        return fit.TotalChiSq;
      });
    };
    const SlopeEstimate slope = RiddersSlope(total, u, scale);
    EXPECT_NEAR(equations.beta[i], slope.value, 20 * slope.error + 1e-6 * std::fabs(slope.value)) << i;
    for (const FitPoint& point : fit.points) {
      const auto value = [&](double at) {
        return moved(i, at, [&] {
          WantOnly(s.program.eval.quantities, SetOf(point.quantity));
          EvalModel(s.program.eval, a, point.x, false);
          return s.program.eval.quantities[static_cast<std::size_t>(point.quantity)].value;
        });
      };
      J[i].push_back(RiddersSlope(value, u, scale).value);
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i; j < n; ++j) {
      double expected = 0;
      for (std::size_t p = 0; p < fit.points.size(); ++p) {
        const FitPoint& point = fit.points[p];
        const double weight = fit.list.terms[static_cast<std::size_t>(point.term)].weight;
        expected += 2 * weight / (point.sigma * point.sigma) * J[i][p] * J[j][p];
      }
      EXPECT_NEAR(equations.Alpha()(i, j), expected, 1e-5 * std::fabs(expected) + 1e-8) << i << ' ' << j;
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
  s.program.datasets.slots[0].points[5].sigma = 0;
  s.Rebuild();
  for (const FitParam& param : s.fit().params) FitSetCoord(*param.cell);
  NormalEquations equations(8);
  AccumulateNormalEquations(s.fit(), s.program.eval, equations);
  EXPECT_FALSE(std::isfinite(equations.Alpha()(0, 0)));
  EXPECT_TRUE(std::isfinite(equations.Alpha()(1, 1)));  // Einf of model 2
}

}  // namespace
}  // namespace kalvex

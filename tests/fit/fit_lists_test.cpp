#include "fit/fit_lists.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "fit/sample_fit.h"
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
  s.tables.datasets.slots[0].firstActive = 1;
  s.tables.datasets.slots[0].lastActive = 3;
  s.Term(2, 2);
  s.Term(1, 1);
  const std::vector<SeenPoint> points = SeenPointsOf(s.fit());
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
  EXPECT_EQ(CountFitPoints(s.fit()), 0u);
  EXPECT_EQ(s.fit().NumFitParams, 0);
  EXPECT_EQ(s.fit().list.terms.size(), 1u);
  s.Term(1, 1);
  EXPECT_EQ(CountFitPoints(s.fit()), 60u);
  s.Measure(1, a, kRefl);  // loaded again: the old id is invalid
  s.Rebuild();
  EXPECT_EQ(CountFitPoints(s.fit()), 0u);
  s.Term(5, 1);  // an empty slot
  EXPECT_EQ(CountFitPoints(s.fit()), 0u);
}

TEST(FitPoints, FrequenciesWithin1e10OfTheFirstAreOne) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.01, 0, 3);
  auto& points = s.tables.datasets.slots[0].points;
  points[0].x = 1;
  points[1].x = 1 + 0.6e-10;
  points[2].x = 1 + 1.2e-10;
  s.Term(1, 1);
  const FitSpectrum& spectrum = s.fit().spectra[0];
  EXPECT_EQ(spectrum.x, (std::vector<double>{1, points[2].x}));
  EXPECT_FALSE(spectrum.terms[0].oneEach);
  EXPECT_EQ(FrequencyOf(spectrum.terms[0], 1), 0u);
  EXPECT_EQ(FrequencyOf(spectrum.terms[0], 2), 1u);
}

TEST(FitPoints, TwoQuantitiesAtTheSameFrequenciesShareThem) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  s.Measure(2, a, kE2);
  s.Term(1, 1);
  s.Term(2, 1);
  ASSERT_EQ(s.fit().spectra.size(), 1u);
  EXPECT_EQ(s.fit().spectra[0].x.size(), 60u);
  EXPECT_EQ(s.fit().spectra[0].wanted[7], QuantitySet{kRefl} | QuantitySet{kE2});
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
    const Dataset& dataset = s.tables.datasets.slots[static_cast<std::size_t>(slot)];
    for (const DataRow& row : dataset.points) {
      WantOnly(s.tables.eval.quantities, QuantitySet{dataset.Quantity});
      EvalModel(s.tables.eval, a, row.x, false);
      const double value = s.tables.eval.quantities[dataset.Quantity].value;
      sums[slot] += std::pow((row.y - value) / row.sigma, 2);
    }
  }
  EXPECT_CLOSE(s.fit().list.terms[0].termChiSq, sums[0], kChain);
  EXPECT_CLOSE(s.fit().list.terms[1].termChiSq, sums[1], kChain);
  EXPECT_CLOSE(s.fit().TotalChiSq, 3 * sums[0] - 0.5 * sums[1], kChain);
}

TEST(TermList, APositionBelowTheListRemovesTheFirstTerm) {
  FitState fit;
  ChiSqTermList list;
  for (int i = 0; i < 3; ++i) InsertChiSqTerm(fit, list, i);
  RemoveChiSqTerm(list, -5);
  ASSERT_EQ(list.terms.size(), 2u);
  EXPECT_EQ(list.terms[0].id, 1);
  EXPECT_EQ(list.terms[1].id, 2);
}

TEST(TermList, TwoListsShareTheNumbers) {
  FitState fit;
  ChiSqTermList candidates;
  EXPECT_EQ(InsertChiSqTerm(fit, fit.list, 0).id, 0);
  EXPECT_EQ(InsertChiSqTerm(fit, candidates, 0).id, 1);
  EXPECT_EQ(InsertChiSqTerm(fit, fit.list, 1).id, 2);
}

TEST(FitPoints, CarryTheNumbersOfTheirRow) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kLoss, 0.25, 0, 4);
  s.tables.datasets.slots[0].points[2] = {38, 7.5, 0.125};
  s.Term(1, 1);
  const SeenPoint point = SeenPointsOf(s.fit()).at(2);
  EXPECT_EQ(point.x, 38);
  EXPECT_EQ(point.y, 7.5);
  EXPECT_EQ(point.sigma, 0.125);
  EXPECT_EQ(point.quantity, kLoss);
  EXPECT_EQ(point.modelId, 1u);
  EXPECT_EQ(point.term, 0);
}

TEST(FitPoints, AnActiveRangeOfOneRowGivesOnePointAndAnEmptyOneNone) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  Dataset& dataset = s.tables.datasets.slots[0];
  dataset.firstActive = dataset.lastActive = 7;
  s.Term(1, 1);
  ASSERT_EQ(SeenPointsOf(s.fit()).size(), 1u);
  EXPECT_EQ(SeenPointsOf(s.fit())[0].x, dataset.points[7].x);
  EXPECT_EQ(s.fit().spectra[0].x.size(), 1u);
  dataset.lastActive = 6;
  s.Rebuild();
  EXPECT_EQ(CountFitPoints(s.fit()) + s.fit().spectra.size(), 0u);
}

TEST(FitPoints, TwoModelsNeverShareAFrequency) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.01, 0, 1);
  s.Term(1, 2);
  s.Term(1, 1);
  ASSERT_EQ(s.fit().spectra.size(), 2u);
  EXPECT_EQ(s.fit().spectra[0].modelId, 1u);
  EXPECT_EQ(s.fit().spectra[1].modelId, 2u);
  EXPECT_EQ(s.fit().spectra[0].terms[0].term, 1);
}

TEST(FitPoints, BlocksOfFrequenciesCoverAllPointsOfEachTerm) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  Model& b = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.01, 0, 90);
  s.Measure(2, b, kE1, 0.01, 0, 50);
  s.Measure(3, a, kE2, 0.01, 0, 3);
  for (DataRow& row : s.tables.datasets.slots[1].points) row.x += 2;  // between those of the first
  s.tables.datasets.slots[2].points[1].x = s.tables.datasets.slots[2].points[0].x;
  for (DataRow& row : s.tables.datasets.slots[2].points) row.x += 1000;  // none in the first two blocks
  s.Term(1, 1);
  s.Term(2, 1);
  s.Term(3, 1);
  s.Term(2, 2);
  ASSERT_EQ(s.fit().spectra.size(), 2u);
  EXPECT_EQ(s.fit().spectra[0].x.size(), 142u);
  EXPECT_EQ(s.fit().spectra[1].x.size(), 50u);
  EXPECT_EQ(CountFitPoints(s.fit()), 193u);
  for (const FitSpectrum& spectrum : s.fit().spectra) {
    EXPECT_TRUE(std::is_sorted(spectrum.x.begin(), spectrum.x.end()));
    for (const TermPoints& points : spectrum.terms) {
      const auto& rows = s.tables.datasets.slots[points.term == 3 ? 1u : static_cast<std::size_t>(points.term)].points;
      ASSERT_EQ(points.y.size(), rows.size());
      EXPECT_EQ(points.firstOfBlock.size(), spectrum.x.size() / kSpectrumBlock + 2);
      EXPECT_EQ(points.oneEach, points.term != 2);
      for (std::size_t p = 0; p < rows.size(); ++p) {
        EXPECT_EQ(spectrum.x[FrequencyOf(points, p)], rows[p].x);
        EXPECT_TRUE(spectrum.wanted[FrequencyOf(points, p)].Contains(points.quantity));
      }
    }
  }
}

// Many points at one frequency, and terms whose points skip frequencies of the spectrum.
TEST(ChiSq, IsThatOfEveryPointWhateverItsPlaceInABlock) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl, 0.02, 0.03, 200);
  s.Measure(2, a, kE1, 0.5, 0.1, 150);
  s.Measure(3, a, kE2, 0.5, 0.1, 100);
  for (int i = 0; i < 100; ++i) {
    s.tables.datasets.slots[1].points[static_cast<std::size_t>(i)].x = 30;
    s.tables.datasets.slots[2].points[static_cast<std::size_t>(i)].x = 32 + 8.0 * i;
  }
  SampleFit::Set(a, 3.2, 110, 190, 12);
  s.Term(1, 1);
  s.Term(2, 1);
  s.Term(3, 1);
  std::vector<double> sums(3);
  for (const SeenPoint& point : SeenPointsOf(s.fit())) {
    WantOnly(s.tables.eval.quantities, QuantitySet{point.quantity});
    EvalModel(s.tables.eval, a, point.x, false);
    const double value = s.tables.eval.quantities[point.quantity].value;
    sums[static_cast<std::size_t>(point.term)] += std::pow((point.y - value) / point.sigma, 2);
  }
  for (std::size_t t = 0; t < 3; ++t) EXPECT_CLOSE(s.fit().list.terms[t].termChiSq, sums[t], kChain) << t;
}

TEST(ChiSq, ATermOfWeightZeroHasNoSumOfItsOwn) {
  SampleFit s;
  Model& a = s.AddModel(3, 100, 200, 10);
  s.Measure(1, a, kRefl);
  s.Term(1, 1, 2);
  a.epsInf.value = 5;
  s.Rebuild();
  EXPECT_GT(s.fit().list.terms[0].termChiSq, 0);
  s.fit().list.terms[0].weight = 0;
  s.Rebuild();
  EXPECT_EQ(s.fit().list.terms[0].termChiSq, 0);
  EXPECT_EQ(s.fit().TotalChiSq, 0);
}

}  // namespace
}  // namespace kalvex

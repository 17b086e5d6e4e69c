#include <gtest/gtest.h>

#include "windows/fit_window.h"
#include "windows/fit_windows.h"

namespace kalvex {
namespace {

TEST_F(FitWindows, ChangesElsewhereRemoveTermsAndRebuildTheLists) {
  Term(1, 1);
  Term(2, 2);
  Term(2, 3);
  session.UnloadDataset(1).Ignore();
  EXPECT_EQ(terms().size(), 2u);
  session.CloseModel(3).Ignore();
  EXPECT_EQ(terms().size(), 1u);
  datasets.slots[1].lastActive = 9;
  session.SetDatasetQuantity(2, kE1, Heard::kAtOnce).Ignore();
  EXPECT_EQ(CountFitPoints(fit), 10u);
  session.FixAllParams(2, true).Ignore();
  EXPECT_EQ(fit.NumFitParams, 0);
}

TEST_F(FitWindows, ChiSqFollowsAParameterOnlyWithAutoUpdateButAlwaysARequest) {
  Term(1, 1);
  EXPECT_EQ(fit.TotalChiSq, 0);
  session.SetAutoScreenUpdate(false).Ignore();
  session.SetParam(ParamRef::EpsInf(1), {.value = 5}).Ignore();
  EXPECT_EQ(fit.TotalChiSq, 0);
  session.Recompute().Ignore();
  const double now = fit.TotalChiSq;
  EXPECT_GT(now, 0);
  session.SetAutoScreenUpdate(true).Ignore();
  model(1).epsInf.value = 9;
  session.RedrawModel(1);
  EXPECT_EQ(fit.TotalChiSq, now);
  session.SetParam(ParamRef::Exp(kAngleOfIncidence), {.value = 10}).Ignore();
  EXPECT_NE(fit.TotalChiSq, now);
}

TEST_F(FitWindows, WhileClosedNothingArrives) {
  Term(1, 1);
  CloseFitWindow(desk);
  session.UnloadDataset(1).Ignore();
  EXPECT_EQ(terms().size(), 1u);
  OpenFitWindow(desk);
  EXPECT_TRUE(desk.fitWindow.open);
}

// Makes every list of the fit stale: cuts a dataset, fixes a parameter and changes another one.
class FitNotices : public FitWindows {
 protected:
  FitNotices() {
    Term(1, 1);
    Term(2, 2);
    MakeStale();
  }
  void MakeStale() {
    datasets.slots[0].lastActive = 9;
    Cell(model(1), 0, G).adjustable = 0;
    model(1).epsInf.value = 5;
    fit.UndoAvailable = true;
  }
  bool PointsAreNew() { return CountFitPoints(fit) == 70; }
  bool ParamsAreNew() { return fit.NumFreeParams == 7; }
  bool ChiSqIsNew() { return fit.TotalChiSq > 0; }
  // Changes that leave all values as they are, so that only their notifications have effects.
  void ChangeDataset() { session.SetDatasetQuantity(1, kRefl, Heard::kAtOnce).Ignore(); }
  void ChangeModel() { session.SetParam(ParamRef::EpsInf(2), {.value = 3}).Ignore(); }
  void ChangeExpParam() { session.SetParam(ParamRef::Exp(kAngleOfIncidence), {.value = 80}).Ignore(); }
};

TEST_F(FitNotices, BeforeAnyTheListsAreAsTheyWere) {
  EXPECT_FALSE(PointsAreNew() || ParamsAreNew() || ChiSqIsNew());
  EXPECT_TRUE(fit.UndoAvailable);
}

TEST_F(FitNotices, AChangedDatasetRenewsEverything) {
  ChangeDataset();
  EXPECT_TRUE(PointsAreNew() && ParamsAreNew() && ChiSqIsNew());
  EXPECT_FALSE(fit.UndoAvailable);
  EXPECT_FALSE(desk.fitWindow.lines[0].ends_with("\t0"));
}

TEST_F(FitNotices, ChangedParametersLeaveThePointsAndWithoutAutoUpdateChiSq) {
  for (const bool ofModel : {true, false}) {
    fit.TotalChiSq = 0;
    session.SetAutoScreenUpdate(false).Ignore();
    ofModel ? ChangeModel() : ChangeExpParam();
    EXPECT_TRUE(ParamsAreNew());
    EXPECT_FALSE(PointsAreNew() || ChiSqIsNew());
    EXPECT_FALSE(fit.UndoAvailable);
    session.SetAutoScreenUpdate(true).Ignore();
    ofModel ? ChangeModel() : ChangeExpParam();
    EXPECT_TRUE(ChiSqIsNew());
    EXPECT_FALSE(PointsAreNew());
    MakeStale();
  }
}

TEST_F(FitNotices, ARequestToRecomputeLeavesThePointsOnly) {
  session.SetAutoScreenUpdate(false).Ignore();
  session.Recompute().Ignore();
  EXPECT_TRUE(ParamsAreNew() && ChiSqIsNew());
  EXPECT_FALSE(PointsAreNew());
}

TEST_F(FitNotices, AnAddedTermRenewsEverything) {
  Term(1, 3, 0);
  EXPECT_TRUE(PointsAreNew() && ParamsAreNew() && ChiSqIsNew());
}

TEST_F(FitNotices, ARemovedDatasetTakesAllItsTermsAlong) {
  Term(1, 3);
  Select({0, 1});
  terms()[1].weight = 4;
  session.UnloadDataset(1).Ignore();
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].datasetId, 2u);
  EXPECT_EQ(CountFitPoints(fit), 60u);
  EXPECT_EQ(desk.fitWindow.lines.size(), 1u);
  EXPECT_FALSE(IsSelected(0));  // the list was refilled
  EXPECT_EQ(desk.fitWindow.weightText, "");
}

TEST_F(FitNotices, ARemovedModelTakesAllItsTermsAlong) {
  Term(2, 1);
  session.CloseModel(1).Ignore();
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].modelId, 2u);
  EXPECT_EQ(fit.NumFreeParams, 4);
}

TEST_F(FitNotices, OfStrangersRemoveNothingButRenewTheLists) {
  session.UnloadDataset(77).Ignore();
  EXPECT_EQ(terms().size(), 2u);
  EXPECT_TRUE(PointsAreNew());
}

TEST_F(FitNotices, WaitUntilTheWindowOpens) {
  CloseFitWindow(desk);
  ChangeDataset();
  ChangeModel();
  ChangeExpParam();
  session.Recompute().Ignore();
  session.CloseModel(3).Ignore();
  EXPECT_EQ(terms().size(), 2u);
  EXPECT_FALSE(PointsAreNew() || ParamsAreNew() || ChiSqIsNew());
  OpenFitWindow(desk);
  EXPECT_TRUE(PointsAreNew() && ParamsAreNew() && ChiSqIsNew());
}

TEST_F(FitNotices, AnOpenWindowIsNotOpenedAgain) {
  OpenFitWindow(desk);
  EXPECT_FALSE(PointsAreNew() || ParamsAreNew() || ChiSqIsNew());
}

TEST_F(FitNotices, CutDatasetsGivePointsOfTheirActiveRowsOnly) {
  Dataset& dataset = datasets.slots[0];
  dataset.CutMin = 40;
  dataset.CutMax = 60;
  ComputeActiveRange(dataset);
  ChangeDataset();
  std::size_t expected = 60;  // the points of the other dataset
  for (const DataRow& row : dataset.points) expected += row.x >= 40 && row.x < 60;
  EXPECT_EQ(CountFitPoints(fit), expected);
}

}  // namespace
}  // namespace kalvex

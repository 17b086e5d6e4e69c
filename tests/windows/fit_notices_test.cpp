#include <gtest/gtest.h>

#include "windows/fit_window.h"
#include "windows/fit_windows.h"
#include "windows/redraw.h"

namespace kalvex {
namespace {

TEST_F(FitWindows, NoticesRemoveTermsAndRebuildTheLists) {
  s.Term(1, 1);
  s.Term(2, 2);
  s.Term(2, 3);
  NotifyFit(s.program.notices, FitNotice::kDatasetGone, 1);
  EXPECT_EQ(terms().size(), 2u);
  CloseModel(s.program, 3);
  EXPECT_EQ(terms().size(), 1u);
  s.program.datasets.slots[1].lastActive = 9;
  NotifyFit(s.program.notices, FitNotice::kDatasetChanged, 2);
  EXPECT_EQ(CountFitPoints(s.fit()), 10u);
  FixAll(&s.model(2), true);
  NotifyFit(s.program.notices, FitNotice::kModelParamsChanged);
  EXPECT_EQ(s.fit().NumFitParams, 0);
}

TEST_F(FitWindows, ChiSqFollowsAParameterOnlyWithAutoUpdateButAlwaysARequest) {
  s.Term(1, 1);
  EXPECT_EQ(s.fit().TotalChiSq, 0);
  s.program.AutoScreenUpdate = false;
  s.model(1).epsInf.value = 5;
  RefreshModelWindow(s.program.notices, s.model(1));
  EXPECT_EQ(s.fit().TotalChiSq, 0);
  NotifyFit(s.program.notices, FitNotice::kRecompute);
  const double now = s.fit().TotalChiSq;
  EXPECT_GT(now, 0);
  s.program.AutoScreenUpdate = true;
  s.model(1).epsInf.value = 9;
  RefreshModelWindow(s.program.notices, s.model(1), true);  // quiet
  EXPECT_EQ(s.fit().TotalChiSq, now);
  NotifyFit(s.program.notices, FitNotice::kExpParamsChanged);
  EXPECT_NE(s.fit().TotalChiSq, now);
}

TEST_F(FitWindows, WhileClosedNothingArrives) {
  s.Term(1, 1);
  s.program.fitWindow.open = false;
  NotifyFit(s.program.notices, FitNotice::kDatasetGone, 1);
  EXPECT_EQ(terms().size(), 1u);
  OpenFitWindow(desk());
  EXPECT_TRUE(s.program.fitWindow.open);
}

// Every list is out of date: a cut dataset, a parameter fixed and one changed.
class FitNotices : public FitWindows {
 protected:
  FitNotices() {
    s.Term(1, 1);
    s.Term(2, 2);
    MakeStale();
  }
  void MakeStale() {
    s.program.datasets.slots[0].lastActive = 9;
    Cell(s.model(1), 0, G).adjustable = 0;
    s.model(1).epsInf.value = 5;
    s.fit().UndoAvailable = true;
  }
  bool PointsAreNew() { return CountFitPoints(s.fit()) == 70; }
  bool ParamsAreNew() { return s.fit().NumFreeParams == 7; }
  bool ChiSqIsNew() { return s.fit().TotalChiSq > 0; }
  void Send(FitNotice notice, std::uint32_t id = 0) { NotifyFit(s.program.notices, notice, id); }
};

TEST_F(FitNotices, BeforeAnyTheListsAreAsTheyWere) {
  EXPECT_FALSE(PointsAreNew() || ParamsAreNew() || ChiSqIsNew());
  EXPECT_TRUE(s.fit().UndoAvailable);
}

TEST_F(FitNotices, AChangedDatasetRenewsEverything) {
  Send(FitNotice::kDatasetChanged, 1);
  EXPECT_TRUE(PointsAreNew() && ParamsAreNew() && ChiSqIsNew());
  EXPECT_FALSE(s.fit().UndoAvailable);
  EXPECT_FALSE(s.program.fitWindow.lines[0].ends_with("\t0"));
}

TEST_F(FitNotices, ChangedParametersLeaveThePointsAndWithoutAutoUpdateChiSq) {
  for (const FitNotice notice : {FitNotice::kModelParamsChanged, FitNotice::kExpParamsChanged}) {
    s.fit().TotalChiSq = 0;
    s.program.AutoScreenUpdate = false;
    Send(notice);
    EXPECT_TRUE(ParamsAreNew());
    EXPECT_FALSE(PointsAreNew() || ChiSqIsNew());
    EXPECT_FALSE(s.fit().UndoAvailable);
    s.program.AutoScreenUpdate = true;
    Send(notice);
    EXPECT_TRUE(ChiSqIsNew());
    EXPECT_FALSE(PointsAreNew());
    MakeStale();
  }
}

TEST_F(FitNotices, ARequestToRecomputeLeavesThePointsOnly) {
  s.program.AutoScreenUpdate = false;
  Send(FitNotice::kRecompute);
  EXPECT_TRUE(ParamsAreNew() && ChiSqIsNew());
  EXPECT_FALSE(PointsAreNew());
}

TEST_F(FitNotices, AnAddedTermRenewsEverything) {
  s.Term(1, 3, 0);
  EXPECT_TRUE(PointsAreNew() && ParamsAreNew() && ChiSqIsNew());
}

TEST_F(FitNotices, ARemovedDatasetTakesAllItsTermsAlong) {
  s.Term(1, 3);
  terms()[0].selected = terms()[1].selected = true;
  terms()[1].weight = 4;
  Send(FitNotice::kDatasetGone, 1);
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].datasetId, 2u);
  EXPECT_EQ(CountFitPoints(s.fit()), 60u);
  EXPECT_EQ(s.program.fitWindow.lines.size(), 1u);
  EXPECT_FALSE(terms()[0].selected);  // the list is filled anew
  EXPECT_EQ(s.program.fitWindow.weightText, "");
}

TEST_F(FitNotices, ARemovedModelTakesAllItsTermsAlong) {
  s.Term(2, 1);
  CloseModel(s.program, 1);
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].modelId, 2u);
  EXPECT_EQ(s.fit().NumFreeParams, 4);
}

TEST_F(FitNotices, OfStrangersRemoveNothingButRenewTheLists) {
  Send(FitNotice::kDatasetGone, 77);
  EXPECT_EQ(terms().size(), 2u);
  EXPECT_TRUE(PointsAreNew());
}

TEST_F(FitNotices, WaitUntilTheWindowOpens) {
  s.program.fitWindow.open = false;
  for (const FitNotice notice : {FitNotice::kDatasetChanged, FitNotice::kModelParamsChanged, FitNotice::kRecompute,
                                 FitNotice::kExpParamsChanged}) {
    Send(notice);
  }
  Send(FitNotice::kModelGone, 1);
  EXPECT_EQ(terms().size(), 2u);
  EXPECT_FALSE(PointsAreNew() || ParamsAreNew() || ChiSqIsNew());
  OpenFitWindow(desk());
  EXPECT_TRUE(PointsAreNew() && ParamsAreNew() && ChiSqIsNew());
}

TEST_F(FitNotices, AnOpenWindowIsNotOpenedAgain) {
  OpenFitWindow(desk());
  EXPECT_FALSE(PointsAreNew() || ParamsAreNew() || ChiSqIsNew());
}

TEST_F(FitNotices, CutDatasetsGivePointsOfTheirActiveRowsOnly) {
  Dataset& dataset = s.program.datasets.slots[0];
  dataset.CutMin = 40;
  dataset.CutMax = 60;
  ComputeActiveRange(dataset);
  Send(FitNotice::kDatasetChanged, 1);
  std::size_t expected = 60;  // those of the other dataset
  for (const DataRow& row : dataset.points) expected += row.x >= 40 && row.x < 60;
  EXPECT_EQ(CountFitPoints(s.fit()), expected);
}

}  // namespace
}  // namespace kalvex

#include "windows/fit_window.h"

#include <gtest/gtest.h>

#include "fit/sample_fit.h"
#include "support/scratch_folder.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

using Texts = std::vector<std::string>;

class FitWindows : public testing::Test {
 protected:
  FitWindows() {
    Model& a = s.AddModel(3, 100, 200, 10);
    s.AddModel(3, 100, 200, 10);
    s.AddModel(3, 100, 200, 10);
    s.Measure(1, a, kRefl);
    s.Measure(2, a, kE1);
    s.program.datasets.slots[0].name = "R.dat";
    s.program.datasets.slots[1].name = "E1.dat";
  }
  FitDesk desk() { return DeskOf(s.program); }
  std::vector<ChiSqTerm>& terms() { return s.fit().list.terms; }
  void Select(std::initializer_list<std::size_t> rows) {
    for (ChiSqTerm& term : terms()) term.selected = false;
    for (const std::size_t row : rows) terms()[row].selected = true;
    SelectionChanged(desk());
  }
  SampleFit s;
};

TEST_F(FitWindows, LinesNameQuantityDatasetModelWeightAndSum) {
  s.Term(1, 2, 0.5);
  s.program.datasets.slots[0].points[0].y += 0.02;  // two sigma
  s.Rebuild();
  EXPECT_EQ(s.program.fitWindow.lines, Texts{"[R] \"R.dat\" - \"M2\"\t0.5\t4"});
  EXPECT_EQ(CandidateLine(desk(), terms()[0]), "[R] \"R.dat\" - \"M2\"");
}

TEST_F(FitWindows, LabelsCountPointsAndParametersAndFillTheRestOnlyDuringARun) {
  s.Term(1, 1);
  FitLabels labels = FitLabelsOf(s.fit());
  EXPECT_EQ(labels.points, "60");
  EXPECT_EQ(labels.params, "4");
  EXPECT_EQ(labels.iteration + labels.change + labels.seconds, "");
  s.fit().FitRunning = true;
  s.fit().IterationCount = 5;
  s.fit().ElapsedSeconds = 3;
  s.fit().ChiSqChange = 0.25;
  s.fit().TotalChiSq = 1234567;
  labels = FitLabelsOf(s.fit());
  EXPECT_EQ(labels.iteration, "5");
  EXPECT_EQ(labels.seconds, "3");
  EXPECT_EQ(labels.change, "0.25");
  EXPECT_EQ(labels.chiSq, "1.23457e+06");
}

TEST_F(FitWindows, CandidatesAreAllPairsOrThoseOfTheChoice) {
  EXPECT_EQ(CandidateTerms(desk(), {}, {}).terms.size(), 6u);
  EXPECT_EQ(CandidateTerms(desk(), 1, {}).terms.size(), 3u);
  EXPECT_EQ(CandidateTerms(desk(), {}, 2).terms.size(), 2u);
  const auto one = CandidateTerms(desk(), 2, 3);
  ASSERT_EQ(one.terms.size(), 1u);
  EXPECT_EQ(one.terms[0].datasetId, 2u);
  EXPECT_EQ(one.terms[0].modelId, 3u);
  EXPECT_EQ(one.terms[0].weight, 1);
}

TEST_F(FitWindows, ChosenCandidatesAreAddedButForPairsThatAreThere) {
  s.Term(1, 1);
  const auto candidates = CandidateTerms(desk(), {}, {});
  std::vector<int> ids;
  for (const ChiSqTerm& term : candidates.terms) ids.push_back(term.id);
  AddChosenTerms(desk(), candidates, ids);
  EXPECT_EQ(terms().size(), 6u);
  AddChosenTerms(desk(), candidates, ids);
  EXPECT_EQ(terms().size(), 6u);
}

TEST_F(FitWindows, TheWeightFieldShowsTheCommonWeight) {
  s.Term(1, 1, 1);
  s.Term(1, 2, 2);
  s.Term(2, 2, 1);
  Select({});
  EXPECT_EQ(s.program.fitWindow.weightText, "");
  Select({0, 2});
  EXPECT_EQ(s.program.fitWindow.weightText, "1");
  Select({0, 1});
  EXPECT_EQ(s.program.fitWindow.weightText, "");
  WeightEdited(desk(), "3");
  EXPECT_EQ(terms()[0].weight, 3);
  EXPECT_EQ(terms()[1].weight, 3);
  EXPECT_EQ(terms()[2].weight, 1);
  WeightEdited(desk(), "");
  EXPECT_EQ(terms()[0].weight, 3);
  WeightEdited(desk(), "0");
  EXPECT_EQ(FitLabelsOf(s.fit()).points, "60");
  Select({});
  WeightEdited(desk(), "7");
  EXPECT_EQ(terms()[2].weight, 1);
}

TEST_F(FitWindows, SelectedTermsAreRemoved) {
  s.Term(1, 1);
  s.Term(1, 2);
  s.Term(2, 2);
  Select({0, 2});
  RemoveSelectedTerms(desk());
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].modelId, 2u);
  EXPECT_EQ(s.program.fitWindow.lines.size(), 1u);
}

TEST_F(FitWindows, TheFoldButtonHasItsTwoHeights) {
  FitWindow& window = s.program.fitWindow;
  EXPECT_EQ(window.foldButton, "<< ChiSq details");
  ToggleFold(window);
  EXPECT_EQ(window.height, 139);
  EXPECT_EQ(window.foldButton, "ChiSq details >>");
  ToggleFold(window);
  EXPECT_EQ(window.height, 282);
  EXPECT_EQ(window.foldButton, "<< ChiSw details");
}

TEST_F(FitWindows, StartRunsAndBecomesStopMeanwhile) {
  Cell(s.model(1), 0, Wo).value = 110;
  s.Term(1, 1);
  struct Around {
    FitDesk desk;
    const Platform& platform;
    Texts seen;
  } around{desk(), s.program.platform, {}};
  StartFit(desk(), s.program.platform, {&around, nullptr, [](void* self) {
                                          auto& a = *static_cast<Around*>(self);
                                          a.seen.push_back(a.desk.window.startButton);
                                          StartFit(a.desk, a.platform, {});  // the same button during the run
                                        }});
  EXPECT_EQ(around.seen, Texts{"STOP"});
  EXPECT_EQ(s.fit().report.stop, "stopped by the user");
  EXPECT_EQ(s.program.fitWindow.startButton, "START");
  EXPECT_TRUE(s.fit().UndoAvailable);
  PressUndo(desk());
  EXPECT_EQ(Cell(s.model(1), 0, Wo).value, 110);
}

TEST_F(FitWindows, ARunOfAMacroLeavesTheUndoButtonOffAndRestoresItsOptions) {
  s.Term(1, 1);
  RunMacroFit(desk(), s.program.platform, {}, 2);
  EXPECT_FALSE(s.fit().UndoAvailable);
  EXPECT_EQ(s.fit().options.MaxIterations, 1000);
  EXPECT_FALSE(s.fit().options.StopOnIterations);
  s.fit().FitRunning = true;
  RunMacroFit(desk(), s.program.platform, {}, 2);
  EXPECT_TRUE(s.fit().StopRequested);
  EXPECT_EQ(s.fit().options.MaxIterations, 2);  // what was set for the running fit stays
}

TEST_F(FitWindows, TheOptionsFormShowsAndReadsEveryField) {
  FitOptions options;
  FitOptionsForm form = FormOf(options);
  EXPECT_EQ(form.maxIterations, "1000");
  EXPECT_EQ(form.maxSeconds, "100");
  EXPECT_EQ(form.reductionIterations, "3");
  EXPECT_EQ(form.reductionAmount, "0.001");
  EXPECT_EQ(form.maxLambda, "1e+20");
  EXPECT_EQ(form.deltaChiSq, "100");
  EXPECT_EQ(form.singularDet, "1e-30");
  EXPECT_EQ(form.initialLambda, "0.001");
  EXPECT_TRUE(form.stopOnReduction && form.stopOnLambda);
  form.stopOnIterations = form.logFit = form.stopOnOutOfRange = true;
  form.maxIterations = "12x";
  form.maxLambda = "words";
  form.deltaChiSq = "-2.5";
  ReadForm(form, options);
  EXPECT_TRUE(options.StopOnIterations && options.LogFit);
  EXPECT_FALSE(options.StopOnOutOfRange);
  EXPECT_EQ(options.MaxIterations, 12);
  EXPECT_EQ(options.MaxLambda, 0);
  EXPECT_EQ(options.DeltaChiSq, -2.5);
}

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
  EXPECT_EQ(s.fit().points.size(), 10u);
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

TEST(ModelWindow, GraphsHearBeforeTheFitAndRowsBeforeValues) {
  std::vector<int> heard;
  Notices notices;
  notices.owner = &heard;
  notices.graphs = [](void* self, GraphEvent event, std::int64_t) {
    static_cast<std::vector<int>*>(self)->push_back(static_cast<int>(event));
  };
  notices.fit = [](void* self, FitNotice, std::uint32_t) { static_cast<std::vector<int>*>(self)->push_back(-1); };
  ParamTables tables;
  Model& model = *CreateModel(tables);
  Model& other = *CreateModel(tables);
  model.dirty = true;
  RefreshModelRows(notices, model);
  EXPECT_EQ(heard, (std::vector<int>{3, 4, -1}));
  EXPECT_FALSE(model.dirty);
  heard.clear();
  RefreshModelWindow(notices, model, true);
  EXPECT_EQ(heard, std::vector<int>{4});
  heard.clear();
  other.dirty = true;
  tables.expParamsDirty = true;
  RedrawDirty(notices, tables);
  EXPECT_EQ(heard, (std::vector<int>{4, -1, 5, -1}));
  EXPECT_FALSE(tables.expParamsDirty);
}

}  // namespace
}  // namespace kalvex

#include "support/scratch_folder.h"
#include "windows/fit_windows.h"
#include "windows/main_window.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

// The dialogs over the fit window, and what its buttons do to the other windows.
class FitDialogs : public FitWindows {
 protected:
  FitWindow& window() { return s.program.fitWindow; }
};

TEST_F(FitDialogs, AllAgainstAllYieldsSixCandidatesAndSkipsThePairsThatAreThere) {
  s.Term(1, 2, 0.5);
  OpenAddTerms(desk());
  AddTermsDialog& dialog = window().addTerms;
  EXPECT_TRUE(dialog.open);
  EXPECT_EQ(dialog.lines.size(), 6u);
  for (CandidateLine& line : dialog.lines) line.selected = true;
  AcceptAddTerms(desk());
  EXPECT_FALSE(dialog.open);
  EXPECT_EQ(terms().size(), 6u);
  EXPECT_EQ(terms()[0].weight, 0.5);
  AcceptAddTerms(desk());
  EXPECT_EQ(terms().size(), 6u);
}

TEST_F(FitDialogs, ACancelledDialogAddsNothing) {
  OpenAddTerms(desk());
  for (CandidateLine& line : window().addTerms.lines) line.selected = true;
  CancelAddTerms(desk());
  AcceptAddTerms(desk());
  EXPECT_TRUE(terms().empty());
}

TEST_F(FitDialogs, ChoicesAreRememberedWhileTheDialogIsOpen) {
  OpenAddTerms(desk());
  OfferCandidates(desk(), window().addTerms, 2, 1);
  EXPECT_TRUE(window().addTerms.open);
  EXPECT_EQ(window().addTerms.datasetChoice, 2u);
  EXPECT_EQ(window().addTerms.modelChoice, 1u);
  EXPECT_EQ(window().addTerms.lines.size(), 1u);
}

TEST_F(FitDialogs, OptionsAreReadByOkAndDiscardedByCancel) {
  OpenFitOptions(desk());
  EXPECT_TRUE(window().optionsOpen);
  EXPECT_EQ(window().options.maxIterations, "1000");
  window().options.maxIterations = "7";
  CancelFitOptions(desk());
  AcceptFitOptions(desk());
  EXPECT_EQ(s.fit().options.MaxIterations, 1000);
  OpenFitOptions(desk());
  EXPECT_EQ(window().options.maxIterations, "1000");
  window().options.maxIterations = "7";
  AcceptFitOptions(desk());
  EXPECT_EQ(s.fit().options.MaxIterations, 7);
  EXPECT_FALSE(window().optionsOpen);
}

TEST_F(FitDialogs, SelectingLinesFillsTheWeightField) {
  s.Term(1, 1, 1);
  s.Term(1, 2, 2);
  SelectTermLine(desk(), 0, true);
  EXPECT_EQ(window().weightText, "1");
  SelectTermLine(desk(), 1, true);
  EXPECT_EQ(window().weightText, "");
  WeightEdited(desk(), "3");
  EXPECT_EQ(terms()[0].weight + terms()[1].weight, 6);
  SelectTermLine(desk(), 0, false);
  EXPECT_EQ(window().weightText, "3");
  SelectTermLine(desk(), 2, true);  // there is no such line
  ScrollTermLines(window(), 1);
  EXPECT_EQ(window().topLine, 1);
  ScrollTermLines(window(), -5);
  EXPECT_EQ(window().topLine, 0);
}

TEST_F(FitDialogs, FillingTheWeightFieldIsNoEdit) {
  s.Term(1, 1, 1.0 / 3);
  SelectTermLine(desk(), 0, true);
  WeightEdited(desk(), window().weightText);
  EXPECT_EQ(terms()[0].weight, 1.0 / 3);
}

TEST_F(FitDialogs, DuringARunOnlyStopAnswers) {
  s.Term(1, 1, 2);
  SelectTermLine(desk(), 0, true);
  s.fit().UndoAvailable = true;
  s.fit().FitRunning = true;
  s.fit().params[0].startValue = -77;
  OpenAddTerms(desk());
  OpenFitOptions(desk());
  RemoveSelectedTerms(desk());
  WeightEdited(desk(), "5");
  PressFitUndo(s.program);
  PressUndo(desk());
  EXPECT_FALSE(window().addTerms.open || window().optionsOpen);
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].weight, 2);
  EXPECT_NE(s.fit().params[0].cell->value, -77);
  EXPECT_FALSE(s.fit().StopRequested);
  PressFitStart(s.program);
  EXPECT_TRUE(s.fit().StopRequested);
}

TEST_F(FitDialogs, ClosingDuringARunStopsIt) {
  s.fit().FitRunning = true;
  CloseFitWindow(desk());
  EXPECT_TRUE(s.fit().StopRequested);
  EXPECT_FALSE(window().open);
}

TEST_F(FitDialogs, OpenedDuringARunItLeavesTheListsAlone) {
  s.Term(1, 1);
  CloseFitWindow(desk());
  s.model(1).epsInf.adjustable = 0;
  s.fit().FitRunning = true;
  OpenFitWindow(desk());
  EXPECT_EQ(window().lines.size(), 1u);
  EXPECT_EQ(FitLabelsOf(s.fit()).params, "4");
}

TEST_F(FitDialogs, ClosedItHearsNothingAndOpenedItIsUpToDate) {
  s.Term(1, 1);
  CloseFitWindow(desk());
  CloseModel(s.program, 3);
  s.model(1).epsInf.adjustable = 0;
  NotifyFit(s.program.notices, FitNotice::kModelParamsChanged);
  EXPECT_EQ(FitLabelsOf(s.fit()).params, "4");
  OpenFitWindow(desk());
  EXPECT_EQ(FitLabelsOf(s.fit()).params, "3");
}

TEST_F(FitDialogs, StartAndUndoAreFollowedByTheModelWindows) {
  ScratchFolder folder;
  const InFolder inside(folder.Name());
  Cell(s.model(1), 0, Wo).value = 110;
  s.Term(1, 1);
  std::vector<std::int64_t> redrawn;
  s.program.notices.owner = &redrawn;
  s.program.notices.graphs = [](void* self, GraphEvent, std::int64_t id) {
    static_cast<std::vector<std::int64_t>*>(self)->push_back(id);
  };
  s.program.notices.fit = nullptr;
  OpenParamControl(WindowDeskOf(s.program));
  PressModelField(WindowDeskOf(s.program), s.model(1), {false, 0, 1});
  EXPECT_EQ(PressFitStart(s.program), 0);
  EXPECT_EQ(s.program.paramControl.baseValue, Cell(s.model(1), 0, Wo).value);
  EXPECT_NEAR(Cell(s.model(1), 0, Wo).value, 100, 1e-3);
  EXPECT_FALSE(redrawn.empty());
  redrawn.clear();
  PressFitUndo(s.program);
  EXPECT_EQ(Cell(s.model(1), 0, Wo).value, 110);
  EXPECT_EQ(redrawn, (std::vector<std::int64_t>{1, 2, 3}));
  PressFitUndo(s.program);  // a second press restores the result
  EXPECT_NEAR(Cell(s.model(1), 0, Wo).value, 100, 1e-3);
}

TEST_F(FitDialogs, AMovedCursorInAModelWindowLeavesUndo) {
  s.Term(1, 1);
  PressFitStart(s.program);
  EXPECT_TRUE(s.fit().UndoAvailable);
  PressModelField(WindowDeskOf(s.program), s.model(1), {false, 0, 2});
  EXPECT_TRUE(s.fit().UndoAvailable);
  RightPressModelField(WindowDeskOf(s.program), s.model(1), {false, 0, 2});
  EXPECT_FALSE(s.fit().UndoAvailable);
}

}  // namespace
}  // namespace kalvex

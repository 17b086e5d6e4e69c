#include <algorithm>

#include "support/ears.h"
#include "support/scratch_folder.h"
#include "windows/fit_windows.h"
#include "windows/main_window.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

// The dialogs over the fit window, and the effects of its buttons on the other windows.
class FitDialogs : public FitWindows {
 protected:
  FitWindow& window() { return desk.fitWindow; }
};

TEST_F(FitDialogs, AllAgainstAllYieldsSixCandidatesAndSkipsThePairsThatAreThere) {
  Term(1, 2, 0.5);
  OpenAddTerms(desk);
  AddTermsDialog& dialog = window().addTerms;
  EXPECT_TRUE(dialog.open);
  EXPECT_EQ(dialog.lines.size(), 6u);
  for (CandidateLine& line : dialog.lines) line.selected = true;
  AcceptAddTerms(desk);
  EXPECT_FALSE(dialog.open);
  EXPECT_EQ(terms().size(), 6u);
  EXPECT_EQ(terms()[0].weight, 0.5);
  AcceptAddTerms(desk);
  EXPECT_EQ(terms().size(), 6u);
}

TEST_F(FitDialogs, ACancelledDialogAddsNothing) {
  OpenAddTerms(desk);
  for (CandidateLine& line : window().addTerms.lines) line.selected = true;
  CancelAddTerms(desk);
  AcceptAddTerms(desk);
  EXPECT_TRUE(terms().empty());
}

TEST_F(FitDialogs, ChoicesAreRememberedWhileTheDialogIsOpen) {
  OpenAddTerms(desk);
  OfferCandidates(desk, 2, 1);
  EXPECT_TRUE(window().addTerms.open);
  EXPECT_EQ(window().addTerms.datasetChoice, 2u);
  EXPECT_EQ(window().addTerms.modelChoice, 1u);
  EXPECT_EQ(window().addTerms.lines.size(), 1u);
}

TEST_F(FitDialogs, OptionsAreReadByOkAndDiscardedByCancel) {
  OpenFitOptions(desk);
  EXPECT_TRUE(window().optionsOpen);
  EXPECT_EQ(window().options.maxIterations, "1000");
  window().options.maxIterations = "7";
  CancelFitOptions(desk);
  AcceptFitOptions(desk);
  EXPECT_EQ(fit.options.MaxIterations, 1000);
  OpenFitOptions(desk);
  EXPECT_EQ(window().options.maxIterations, "1000");
  window().options.maxIterations = "7";
  AcceptFitOptions(desk);
  EXPECT_EQ(fit.options.MaxIterations, 7);
  EXPECT_FALSE(window().optionsOpen);
}

TEST_F(FitDialogs, SelectingLinesFillsTheWeightField) {
  Term(1, 1, 1);
  Term(1, 2, 2);
  SelectTermLine(desk, 0, true);
  EXPECT_EQ(window().weightText, "1");
  SelectTermLine(desk, 1, true);
  EXPECT_EQ(window().weightText, "");
  WeightEdited(desk, "3");
  EXPECT_EQ(terms()[0].weight + terms()[1].weight, 6);
  SelectTermLine(desk, 0, false);
  EXPECT_EQ(window().weightText, "3");
  SelectTermLine(desk, 2, true);  // this line does not exist
  ScrollTermLines(window(), 1);
  EXPECT_EQ(window().topLine, 1);
  ScrollTermLines(window(), -5);
  EXPECT_EQ(window().topLine, 0);
}

TEST_F(FitDialogs, FillingTheWeightFieldIsNoEdit) {
  Term(1, 1, 1.0 / 3);
  SelectTermLine(desk, 0, true);
  WeightEdited(desk, window().weightText);
  EXPECT_EQ(terms()[0].weight, 1.0 / 3);
}

TEST_F(FitDialogs, DuringARunOnlyStopAnswers) {
  Term(1, 1, 2);
  SelectTermLine(desk, 0, true);
  fit.UndoAvailable = true;
  fit.FitRunning = true;
  fit.startValues.assign(fit.params.size(), -77);
  OpenAddTerms(desk);
  OpenFitOptions(desk);
  RemoveSelectedTerms(desk);
  WeightEdited(desk, "5");
  PressFitUndo(desk);
  EXPECT_FALSE(window().addTerms.open || window().optionsOpen);
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(terms()[0].weight, 2);
  EXPECT_NE(ParamAt(params, fit.params[0].place).value, -77);
  EXPECT_FALSE(fit.StopRequested);
  PressFitStart(desk);
  EXPECT_TRUE(fit.StopRequested);
}

TEST_F(FitDialogs, ClosingDuringARunStopsIt) {
  fit.FitRunning = true;
  CloseFitWindow(desk);
  EXPECT_TRUE(fit.StopRequested);
  EXPECT_FALSE(window().open);
}

TEST_F(FitDialogs, OpenedDuringARunItLeavesTheListsAlone) {
  Term(1, 1);
  CloseFitWindow(desk);
  model(1).epsInf.adjustable = 0;
  fit.FitRunning = true;
  OpenFitWindow(desk);
  EXPECT_EQ(window().lines.size(), 1u);
  EXPECT_EQ(FitLabelsOf(fit).params, "4");
}

TEST_F(FitDialogs, ClosedItHearsNothingAndOpenedItIsUpToDate) {
  Term(1, 1);
  CloseFitWindow(desk);
  session.CloseModel(3).Ignore();
  model(1).epsInf.adjustable = 0;
  session.SetParam(ParamRef::EpsInf(2), {.value = 4}).Ignore();
  EXPECT_EQ(FitLabelsOf(fit).params, "4");
  OpenFitWindow(desk);
  EXPECT_EQ(FitLabelsOf(fit).params, "3");
}

TEST_F(FitDialogs, StartAndUndoAreFollowedByTheModelWindows) {
  ScratchFolder folder;
  const InFolder inside(folder.Name());
  constexpr double kConverged = 1e-3;  // the last step of a run without noise
  Cell(model(1), 0, Wo).value = 110;
  Term(1, 1);
  Ears ears(session);
  OpenParamControl(desk);
  PressModelField(desk, model(1), {false, 0, 1});
  ears.heard.clear();
  PressFitStart(desk);
  EXPECT_EQ(desk.paramControl.baseValue, Cell(model(1), 0, Wo).value);
  EXPECT_NEAR(Cell(model(1), 0, Wo).value, 100, kConverged);
  EXPECT_GE(std::count(ears.heard.begin(), ears.heard.end(), "model 1"), 2);
  ears.heard.clear();
  PressFitUndo(desk);
  EXPECT_EQ(desk.paramControl.baseValue, 110);
  EXPECT_EQ(Cell(model(1), 0, Wo).value, 110);
  EXPECT_EQ(ears.heard, (Texts{"experiment", "model 1", "model 2", "model 3", "fit"}));
  PressFitUndo(desk);  // a second press restores the result
  EXPECT_NEAR(Cell(model(1), 0, Wo).value, 100, kConverged);
}

TEST_F(FitDialogs, AMovedCursorInAModelWindowLeavesUndo) {
  Term(1, 1);
  PressFitStart(desk);
  EXPECT_TRUE(fit.UndoAvailable);
  PressModelField(desk, model(1), {false, 0, 2});
  EXPECT_TRUE(fit.UndoAvailable);
  RightPressModelField(desk, model(1), {false, 0, 2});
  EXPECT_FALSE(fit.UndoAvailable);
}

}  // namespace
}  // namespace kalvex

#include <gtest/gtest.h>

#include "support/ears.h"
#include "windows/fit_window.h"
#include "windows/fit_windows.h"

namespace kalvex {
namespace {

TEST_F(FitWindows, StartRunsAndBecomesStopMeanwhile) {
  Cell(model(1), 0, Wo).value = 110;
  Term(1, 1);
  Texts seen;
  platform.events = [&] {
    if (fit.IterationCount == 0) return;
    seen.push_back(FitControlsOf(fit).startButton);
    PressFitStart(desk);  // the same button during the run
  };
  PressFitStart(desk);
  EXPECT_EQ(seen, Texts{"STOP"});
  EXPECT_EQ(fit.report.stop, "stopped by the user");
  EXPECT_STREQ(FitControlsOf(fit).startButton, "START");
  EXPECT_TRUE(fit.UndoAvailable);
  PressFitUndo(desk);
  EXPECT_EQ(Cell(model(1), 0, Wo).value, 110);
}

TEST_F(FitWindows, ARunOfAMacroLeavesTheUndoButtonOffAndRestoresItsOptions) {
  Term(1, 1);
  session.RunFit({.iterations = 2}).Ignore();
  EXPECT_FALSE(fit.UndoAvailable);
  EXPECT_EQ(fit.options.MaxIterations, 1000);
  EXPECT_FALSE(fit.options.StopOnIterations);
  fit.FitRunning = true;
  session.RunFit({.iterations = 2}).Ignore();
  EXPECT_TRUE(fit.StopRequested);
  EXPECT_EQ(fit.options.MaxIterations, 1000);
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

TEST_F(FitWindows, ARunTellsThatItHasBegunBeforeItsFirstIteration) {
  Cell(model(1), 0, Wo).value = 110;
  Term(1, 1);
  fit.options.StopOnIterations = true;
  fit.options.MaxIterations = 1;
  Ears ears(session);
  Texts atFirst;
  platform.events = [&] {
    if (atFirst.empty()) atFirst = ears.heard;
    EXPECT_TRUE(fit.FitRunning);
  };
  PressFitStart(desk);
  EXPECT_EQ(atFirst, Texts{"run"});
  std::erase_if(ears.heard, [](const std::string& heard) { return !heard.starts_with("run"); });
  EXPECT_EQ(ears.heard, (Texts{"run", "run 1", "run"}));  // begin, one accepted iteration, end
}

// A start near the parameters of the data, with the R spectrum.
class FitWindowRuns : public FitWindows {
 protected:
  FitWindowRuns() {
    Cell(model(1), 0, Wo).value = 110;
    Term(1, 1);
  }
  void Start() { PressFitStart(desk); }
};

TEST_F(FitWindowRuns, DuringARunOnlyTheStartButtonAnswers) {
  const auto enabled = [&] {
    const FitControls c = FitControlsOf(fit);
    return std::vector<bool>{c.undo, c.options, c.add, c.remove, c.weight, c.busyCursor};
  };
  EXPECT_EQ(enabled(), (std::vector<bool>{false, true, true, true, true, false}));
  std::vector<bool> seen;
  platform.events = [&] { seen = enabled(); };
  Start();
  EXPECT_EQ(seen, (std::vector<bool>{false, false, false, false, false, true}));
  EXPECT_EQ(enabled(), (std::vector<bool>{true, true, true, true, true, false}));
  Start();
  EXPECT_FALSE(seen[0]);  // a run can be undone, but not during the next run
}

TEST_F(FitWindowRuns, UndoIsOffUntilARunHasEnded) {
  EXPECT_FALSE(fit.UndoAvailable);
  PressFitUndo(desk);
  EXPECT_EQ(Cell(model(1), 0, Wo).value, 110);
  Start();
  EXPECT_TRUE(fit.UndoAvailable);
  Rebuild();
  EXPECT_FALSE(fit.UndoAvailable);
  const double fitted = Cell(model(1), 0, Wo).value;
  PressFitUndo(desk);
  EXPECT_EQ(Cell(model(1), 0, Wo).value, fitted);
}

TEST_F(FitWindowRuns, ASecondPressOfUndoRestoresTheResult) {
  Start();
  const double fitted = Cell(model(1), 0, Wo).value, chiSq = fit.TotalChiSq;
  constexpr double kConverged = 1e-5;  // the last step of a run without noise
  EXPECT_NEAR(fitted, 100, kConverged);
  PressFitUndo(desk);
  EXPECT_EQ(Cell(model(1), 0, Wo).value, 110);
  EXPECT_GT(fit.TotalChiSq, chiSq + 1);
  PressFitUndo(desk);
  EXPECT_EQ(Cell(model(1), 0, Wo).value, fitted);
  EXPECT_EQ(fit.TotalChiSq, chiSq);
  EXPECT_TRUE(fit.UndoAvailable);
}

TEST_F(FitWindowRuns, UndoShowsTheSumAgain) {
  const Texts before = desk.fitWindow.lines;
  Start();
  EXPECT_NE(desk.fitWindow.lines, before);
  PressFitUndo(desk);
  EXPECT_EQ(desk.fitWindow.lines, before);
}

TEST_F(FitWindowRuns, AnOldStopRequestDoesNotEndANewRun) {
  fit.StopRequested = true;
  Start();
  EXPECT_EQ(fit.report.stop, "ChiSq no longer falls");
}

TEST_F(FitWindowRuns, WithNothingToFitTheButtonsComeBackAndUndoIsOn) {
  FixAll(model(1), true);
  Rebuild();
  Start();
  EXPECT_STREQ(FitControlsOf(fit).startButton, "START");
  EXPECT_TRUE(fit.UndoAvailable);
  EXPECT_FALSE(fit.FitRunning);
}

TEST_F(FitWindowRuns, StopTakesEffectAfterTheIterationInProgress) {
  platform.events = [&] {
    if (fit.IterationCount == 1) PressFitStart(desk);
    EXPECT_TRUE(fit.FitRunning);
  };
  Start();
  EXPECT_EQ(fit.IterationCount, 1);
  EXPECT_EQ(fit.report.stop, "stopped by the user");
}

TEST_F(FitWindowRuns, TheListAndTheModelsFollowEachIteration) {
  Ears ears(session);
  int iterations = 0;
  platform.events = [&] {
    if (fit.IterationCount > 0) {
      // The experimental parameters and the three models are redrawn; the fit's own lists stay.
      const std::string run = "run " + std::to_string(++iterations);
      EXPECT_EQ(ears.heard, (Texts{"experiment", "model 1", "model 2", "model 3", run}));
      EXPECT_EQ(desk.fitWindow.lines, Texts{TermLine(desk, fit.list.terms[0])});
      EXPECT_EQ(FitLabelsOf(fit).iteration, std::to_string(iterations));
    }
    ears.heard.clear();
  };
  Start();
  EXPECT_GE(iterations, 3);
  EXPECT_TRUE(fit.UndoAvailable);
}

TEST_F(FitWindowRuns, OfAMacroHoldItsIterationsForThatRunOnly) {
  fit.options.StopOnReduction = false;
  fit.options.MaxIterations = 50;
  session.RunFit({.iterations = 2}).Ignore();
  EXPECT_EQ(fit.IterationCount, 2);
  EXPECT_EQ(fit.options.MaxIterations, 50);
  EXPECT_FALSE(fit.options.StopOnIterations);
  EXPECT_FALSE(fit.options.StopOnReduction);  // only the changed values are restored
}

TEST_F(FitWindowRuns, OfAMacroWithoutANumberKeepTheOptions) {
  fit.options.StopOnIterations = true;
  fit.options.MaxIterations = 1;
  session.RunFit({}).Ignore();
  EXPECT_EQ(fit.IterationCount, 1);
  EXPECT_TRUE(fit.options.StopOnIterations);
  EXPECT_STREQ(FitControlsOf(fit).startButton, "START");
}

TEST(FitOptionsForms, AFirstOpeningShowsTheDefaults) {
  const FitOptionsForm form = FormOf(FitOptions{});
  EXPECT_FALSE(form.stopOnIterations || form.stopOnTime || form.stopOnOutOfRange || form.calcConfidence || form.logFit);
  EXPECT_TRUE(form.stopOnReduction && form.stopOnLambda);
  EXPECT_EQ(form.screenUpdateEvery, "1");
}

TEST(FitOptionsForms, EveryFieldGoesToItsOwnOption) {
  FitOptionsForm form = FormOf(FitOptions{});
  form.stopOnTime = form.calcConfidence = true;
  form.stopOnReduction = form.stopOnLambda = false;
  form.maxIterations = "2";
  form.maxSeconds = "3";
  form.reductionIterations = "-4";
  form.reductionAmount = "5.5";
  form.maxLambda = "1e6";
  form.deltaChiSq = "7";
  form.singularDet = "8";
  form.screenUpdateEvery = "9";
  form.initialLambda = "0.1";
  FitOptions options;
  ReadForm(form, options);
  EXPECT_TRUE(options.StopOnTime && options.CalcConfidence);
  EXPECT_FALSE(options.StopOnReduction || options.StopOnLambda || options.StopOnIterations || options.LogFit);
  EXPECT_EQ(options.MaxIterations, 2);
  EXPECT_EQ(options.MaxSeconds, 3);
  EXPECT_EQ(options.ReductionIterations, -4);
  EXPECT_EQ(options.ReductionAmount, 5.5);
  EXPECT_EQ(options.MaxLambda, 1e6);
  EXPECT_EQ(options.DeltaChiSq, 7);
  EXPECT_EQ(options.SingularDet, 8);
  EXPECT_EQ(options.ScreenUpdateEvery, 9);
  EXPECT_EQ(options.InitialLambda, 0.1);
}

TEST(FitOptionsForms, AFormThatWasOnlyOpenedChangesNothing) {
  FitOptions options;
  options.MaxIterations = 12;
  options.StopOnOutOfRange = true;  // its control is disabled, so it stays
  options.DeltaChiSq = 0.5;
  FitOptions read = options;
  ReadForm(FormOf(options), read);
  EXPECT_EQ(read.MaxIterations, 12);
  EXPECT_TRUE(read.StopOnOutOfRange);
  EXPECT_EQ(read.DeltaChiSq, 0.5);
  EXPECT_EQ(read.MaxLambda, options.MaxLambda);
}

TEST(FitOptionsForms, AFieldFollowsItsCheckBox) {
  const auto enabled = [](const FitOptionsForm& form) {
    const FitOptionsEnabled e = EnabledFieldsOf(form);
    return std::vector<bool>{e.maxIterations, e.maxSeconds, e.reductionIterations, e.reductionAmount,
                             e.maxLambda,     e.deltaChiSq, e.stopOnOutOfRange};
  };
  FitOptionsForm form = FormOf(FitOptions{});
  EXPECT_EQ(enabled(form), (std::vector<bool>{false, false, true, true, true, false, false}));
  form.stopOnIterations = form.stopOnTime = form.calcConfidence = form.stopOnOutOfRange = true;
  form.stopOnReduction = form.stopOnLambda = false;
  EXPECT_EQ(enabled(form), (std::vector<bool>{true, true, false, false, false, true, false}));
}

TEST(FitOptionsForms, WhatCannotBeReadIsZero) {
  FitOptionsForm form = FormOf(FitOptions{});
  form.maxIterations = form.maxSeconds = "";
  form.initialLambda = "x1";
  form.reductionIterations = "99999999999";
  FitOptions options;
  ReadForm(form, options);
  EXPECT_EQ(options.MaxIterations + options.MaxSeconds, 0);
  EXPECT_EQ(options.InitialLambda, 0);
  EXPECT_EQ(options.ReductionIterations, 2147483647);
}

}  // namespace
}  // namespace kalvex

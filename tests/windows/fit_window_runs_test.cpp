#include <gtest/gtest.h>

#include "support/scratch_folder.h"
#include "windows/fit_window.h"
#include "windows/fit_windows.h"

namespace kalvex {
namespace {

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
                                          a.seen.push_back(FitControlsOf(a.desk.fit).startButton);
                                          StartFit(a.desk, a.platform, {});  // the same button during the run
                                        }});
  EXPECT_EQ(around.seen, Texts{"STOP"});
  EXPECT_EQ(s.fit().report.stop, "stopped by the user");
  EXPECT_STREQ(FitControlsOf(s.fit()).startButton, "START");
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

TEST_F(FitWindows, ARunTellsThatItHasBegunBeforeItsFirstIteration) {
  Cell(s.model(1), 0, Wo).value = 110;
  s.Term(1, 1);
  s.fit().options.StopOnIterations = true;
  s.fit().options.MaxIterations = 1;
  struct Around {
    const FitState& fit;
    Texts heard;
    void Hear(const char* what) { heard.push_back(what + std::string(fit.FitRunning ? " running" : " idle")); }
  } around{s.fit(), {}};
  StartFit(desk(), s.program.platform,
           {&around, [](void* self) { static_cast<Around*>(self)->Hear("iteration"); }, nullptr,
            [](void* self) { static_cast<Around*>(self)->Hear("started"); }});
  EXPECT_EQ(around.heard, (Texts{"started running", "iteration running"}));
}

// A start beside the parameters of the data, against the R spectrum.
class FitWindowRuns : public FitWindows {
 protected:
  FitWindowRuns() {
    Cell(s.model(1), 0, Wo).value = 110;
    s.Term(1, 1);
  }
  int Start(const FitHooks& hooks = {}) { return StartFit(desk(), s.program.platform, hooks); }
};

TEST_F(FitWindowRuns, DuringARunOnlyTheStartButtonAnswers) {
  const auto enabled = [&] {
    const FitControls c = FitControlsOf(s.fit());
    return std::vector<bool>{c.undo, c.options, c.add, c.remove, c.weight, c.busyCursor};
  };
  EXPECT_EQ(enabled(), (std::vector<bool>{false, true, true, true, true, false}));
  struct Around {
    const decltype(enabled)& look;
    std::vector<bool> seen;
  } around{enabled, {}};
  Start({&around, nullptr, [](void* self) {
           auto& a = *static_cast<Around*>(self);
           a.seen = a.look();
         }});
  EXPECT_EQ(around.seen, (std::vector<bool>{false, false, false, false, false, true}));
  EXPECT_EQ(enabled(), (std::vector<bool>{true, true, true, true, true, false}));
  Start({&around, nullptr, [](void* self) {
           auto& a = *static_cast<Around*>(self);
           a.seen = a.look();
         }});
  EXPECT_FALSE(around.seen[0]);  // a run can be undone, but not while the next one lasts
}

TEST_F(FitWindowRuns, UndoIsOffUntilARunHasEnded) {
  EXPECT_FALSE(s.fit().UndoAvailable);
  PressUndo(desk());
  EXPECT_EQ(Cell(s.model(1), 0, Wo).value, 110);
  Start();
  EXPECT_TRUE(s.fit().UndoAvailable);
  s.Rebuild();
  EXPECT_FALSE(s.fit().UndoAvailable);
  const double fitted = Cell(s.model(1), 0, Wo).value;
  PressUndo(desk());
  EXPECT_EQ(Cell(s.model(1), 0, Wo).value, fitted);
}

TEST_F(FitWindowRuns, ASecondPressOfUndoRestoresTheResult) {
  Start();
  const double fitted = Cell(s.model(1), 0, Wo).value, chiSq = s.fit().TotalChiSq;
  EXPECT_NEAR(fitted, 100, 1e-5);
  PressUndo(desk());
  EXPECT_EQ(Cell(s.model(1), 0, Wo).value, 110);
  EXPECT_GT(s.fit().TotalChiSq, chiSq + 1);
  PressUndo(desk());
  EXPECT_EQ(Cell(s.model(1), 0, Wo).value, fitted);
  EXPECT_EQ(s.fit().TotalChiSq, chiSq);
  EXPECT_TRUE(s.fit().UndoAvailable);
}

TEST_F(FitWindowRuns, UndoShowsTheSumAgain) {
  const Texts before = s.program.fitWindow.lines;
  Start();
  EXPECT_NE(s.program.fitWindow.lines, before);
  PressUndo(desk());
  EXPECT_EQ(s.program.fitWindow.lines, before);
}

TEST_F(FitWindowRuns, AnOldStopRequestDoesNotEndANewRun) {
  s.fit().StopRequested = true;
  Start();
  EXPECT_EQ(s.fit().report.stop, "ChiSq no longer falls");
}

TEST_F(FitWindowRuns, WithNothingToFitTheButtonsComeBackAndUndoIsOn) {
  FixAll(&s.model(1), true);
  s.Rebuild();
  EXPECT_EQ(Start(), 0);
  EXPECT_STREQ(FitControlsOf(s.fit()).startButton, "START");
  EXPECT_TRUE(s.fit().UndoAvailable);
  EXPECT_FALSE(s.fit().FitRunning);
}

TEST_F(FitWindowRuns, StopTakesEffectAfterTheIterationInProgress) {
  struct Around {
    FitDesk desk;
    const Platform& platform;
    int iterations = 0;
  } around{desk(), s.program.platform};
  Start({&around,
         [](void* self) {
           auto& a = *static_cast<Around*>(self);
           ++a.iterations;
           StartFit(a.desk, a.platform, {});
           EXPECT_TRUE(a.desk.fit.FitRunning);
         },
         nullptr});
  EXPECT_EQ(around.iterations, 1);
  EXPECT_EQ(s.fit().IterationCount, 1);
  EXPECT_EQ(s.fit().report.stop, "stopped by the user");
}

TEST_F(FitWindowRuns, TheListAndTheModelsFollowEachIteration) {
  struct Around {
    Program& program;
    FitHooks hooks;
    std::vector<int> graphEvents;
    int iterations = 0;
  } around{s.program, HooksOf(s.program), {}};
  s.program.expParamsWindow.open = true;
  s.program.params.expParamsDirty = true;
  s.program.notices.owner = &s.program;
  static std::vector<int>* heard;
  heard = &around.graphEvents;
  s.program.notices.graphs = [](void*, GraphEvent event, std::int64_t) { heard->push_back(static_cast<int>(event)); };
  Start({&around,
         [](void* self) {
           auto& a = *static_cast<Around*>(self);
           a.graphEvents.clear();
           a.hooks.iterationDone(a.hooks.self);
           // The experimental parameters and the three models are drawn anew, and the fit's own lists stay.
           EXPECT_EQ(a.graphEvents, (std::vector<int>{5, 4, 4, 4}));
           EXPECT_FALSE(a.program.params.expParamsDirty);
           EXPECT_EQ(a.program.fitWindow.lines, Texts{TermLine(DeskOf(a.program), a.program.fit.list.terms[0])});
           EXPECT_EQ(FitLabelsOf(a.program.fit).iteration, std::to_string(++a.iterations));
         },
         nullptr});
  EXPECT_GE(around.iterations, 3);
  EXPECT_TRUE(s.fit().UndoAvailable);
}

TEST_F(FitWindowRuns, OfAMacroHoldItsIterationsForThatRunOnly) {
  s.fit().options.StopOnReduction = false;
  s.fit().options.MaxIterations = 50;
  RunMacroFit(desk(), s.program.platform, {}, 2);
  EXPECT_EQ(s.fit().IterationCount, 2);
  EXPECT_EQ(s.fit().options.MaxIterations, 50);
  EXPECT_FALSE(s.fit().options.StopOnIterations);
  EXPECT_FALSE(s.fit().options.StopOnReduction);  // only what was set is set back
}

TEST_F(FitWindowRuns, OfAMacroWithoutANumberKeepTheOptions) {
  s.fit().options.StopOnIterations = true;
  s.fit().options.MaxIterations = 1;
  RunMacroFit(desk(), s.program.platform, {}, {});
  EXPECT_EQ(s.fit().IterationCount, 1);
  EXPECT_TRUE(s.fit().options.StopOnIterations);
  EXPECT_STREQ(FitControlsOf(s.fit()).startButton, "START");
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
  options.StopOnOutOfRange = true;  // its control is off: it stays
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

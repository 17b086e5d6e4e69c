#include "fit/run_fit.h"

#include <gtest/gtest.h>

#include <cmath>

#include "fit/running.h"
#include "records/param_value.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// The distance of a parameter near 1 from its true value after a run without noise.
constexpr double kConverged = 1e-6;

TEST_F(Running, FindsTheParametersOfTheSpectrum) {
  Prepare();
  s.Run();
  EXPECT_NEAR(model.epsInf.value, 4, kConverged);
  EXPECT_NEAR(Cell(model, 0, Wo).value, 120, 10 * kConverged);
  EXPECT_NEAR(Cell(model, 0, Wp).value, 250, 100 * kConverged);
  EXPECT_NEAR(Cell(model, 0, G).value, 8, 10 * kConverged);
  EXPECT_LT(fit().TotalChiSq, 1e-6);
  EXPECT_FALSE(fit().FitRunning);
}

TEST_F(Running, AtItsOptimumEveryStepIsRefusedUntilLambdaIsTooLarge) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  s.Rebuild();
  options().LogFit = true;
  s.Run();
  EXPECT_EQ(fit().IterationCount, 0);
  EXPECT_GT(fit().Lambda, 1e20);
  EXPECT_LE(fit().Lambda, 1.0000001e21);
  EXPECT_EQ(NumbersOf(folder.Read("Fitlog.dat")).size(), 1u);
  EXPECT_EQ(Cell(model, 0, Wo).value, 120);
}

TEST_F(Running, AParameterOnItsLimitStopsTheRunAndIsNamed) {
  Prepare(0.02);
  Cell(model, 0, G).useMin = 1;
  Cell(model, 0, G).min = 11;
  s.Rebuild();
  s.Run();
  EXPECT_EQ(fit().IterationCount, 0);
  EXPECT_EQ(fit().report.withoutInfluence, std::vector<int>{3});
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
}

TEST_F(Running, AFreeFrequencyOfZeroStopsTheRunAndIsNamed) {
  Prepare(0.02);
  Cell(model, 0, Wo).value = 0;
  s.Rebuild();
  s.Run();
  EXPECT_EQ(fit().IterationCount, 0);
  EXPECT_EQ(fit().report.withoutInfluence, std::vector<int>{1});
}

TEST_F(Running, LimitsAreNeverCrossed) {
  Prepare();
  Cell(model, 0, Wo).useMin = Cell(model, 0, Wo).useMax = 1;
  Cell(model, 0, Wo).min = 110;
  Cell(model, 0, Wo).max = 119;  // below the true value
  s.Rebuild();
  s.Run();
  EXPECT_LE(Cell(model, 0, Wo).value, 119);
  EXPECT_GT(Cell(model, 0, Wo).value, 118.9);
}

TEST_F(Running, CoupledParametersMoveAsOne) {
  Prepare();
  Model& twin = s.AddModel(4, 120, 250, 11);
  s.Measure(2, model, kE2);
  SetCoupling(s.tables.params, Cell(model, 0, G), 5);
  SetCoupling(s.tables.params, Cell(twin, 0, G), 5);
  s.Term(2, 2);
  EXPECT_EQ(fit().NumFitParams, fit().NumFreeParams + 1);
  s.Run();
  EXPECT_EQ(Cell(model, 0, G).value, Cell(twin, 0, G).value);
  EXPECT_LT(fit().TotalChiSq, fit().report.startChiSq);
}

TEST_F(Running, UndoSwapsAndSwapsBack) {
  Prepare();
  s.RunWithUndo();
  EXPECT_TRUE(fit().startValuesStored);
  const double fitted = Cell(model, 0, Wo).value, chiSq = fit().TotalChiSq;
  s.Undo();
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
  EXPECT_CLOSE(fit().TotalChiSq, fit().report.startChiSq, kChain);
  s.Undo();
  EXPECT_EQ(Cell(model, 0, Wo).value, fitted);
  EXPECT_EQ(fit().TotalChiSq, chiSq);
}

TEST_F(Running, WithoutParametersNothingHappensAndNothingIsWritten) {
  Prepare();
  FixAll(model, true);
  s.Rebuild();
  options().LogFit = options().CalcConfidence = true;
  int calls = 0;
  RunWatch watch;
  watch.iterationDone = watch.poll = [&] { ++calls; };
  s.Run(watch);
  EXPECT_EQ(Stop(), "no parameter to fit");
  EXPECT_EQ(calls, 0);
  EXPECT_TRUE(s.tables.platform.messages.empty());
  for (const char* const name : {"Fitlog.dat", "Params.dat", "ParCorrs.dat"}) EXPECT_FALSE(folder.Has(name));
}

TEST_F(Running, TellsTheStateOfTheRunAfterEachIteration) {
  Prepare(0.02);
  std::int64_t now = 100;
  s.tables.platform.clock = [&] { return now; };
  int iterations = 0;
  RunWatch watch;
  watch.poll = [&] { now += 5; };
  watch.iterationDone = [&] {
    EXPECT_TRUE(fit().FitRunning);
    EXPECT_EQ(fit().IterationCount, ++iterations);
    EXPECT_EQ(fit().ElapsedSeconds, 5 * (iterations - 1));
    EXPECT_DOUBLE_EQ(fit().ChiSqChange, fit().report.startChiSq - fit().TotalChiSq);
    EXPECT_GT(fit().ChiSqChange, 0);
  };
  fit().ElapsedSeconds = fit().IterationCount = 77;
  s.Run(watch);
  EXPECT_GE(iterations, 3);
  EXPECT_EQ(fit().IterationCount, iterations);  // kept for the labels
  EXPECT_GT(fit().ChiSqChange, 0);
}

TEST_F(Running, StartsWithTheInitialLambdaEachTime) {
  Prepare();
  std::vector<double> lambdas;
  RunWatch watch;
  watch.iterationDone = [&] { lambdas.push_back(fit().Lambda); };
  options().InitialLambda = 0.02;
  options().StopOnIterations = true;
  options().MaxIterations = 2;
  s.Run(watch);
  s.Run(watch);
  ASSERT_EQ(lambdas.size(), 4u);
  EXPECT_EQ(lambdas[0], 0.02);
  EXPECT_EQ(lambdas[1], 0.002);
  EXPECT_EQ(lambdas[2], 0.02);
}

TEST_F(Running, AParameterThatExplodesIsClampedAndTheMessageShown) {
  // A linear problem: one step reaches the factor that fits the data.
  FixAll(model, true);
  ModelParam& factor = s.tables.params.ExpParams[kScalingFactorOfR];
  factor.adjustable = 1;
  for (const double sign : {1.0, -1.0}) {
    ClearChiSqTerms(fit().list);
    s.tables.platform.messages.clear();
    factor.value = 1;
    s.Measure(1, model, kRefl);
    for (DataRow& row : s.tables.datasets.slots[0].points) row.y *= sign * 1e75;
    s.Term(1, 1);
    s.Run();
    EXPECT_EQ(factor.value, sign * 1e70);
    EXPECT_LT(fit().TotalChiSq, fit().report.startChiSq);  // the clamped value is therefore kept
    EXPECT_EQ(fit().IterationCount, 1);
    EXPECT_EQ(Stop(), "a parameter ran out of limits");
    ASSERT_EQ(s.tables.platform.messages.size(), 1u);
    EXPECT_EQ(
        s.tables.platform.messages[0],
        "Attention: One or more parameters run out of limits:\n [-1e+70, 1e+70].\n\nThe fitting routine is stopped.");
  }
}

TEST_F(Running, AClampedStepThatIsRefusedIsTakenBackAndEndsTheRunToo) {
  // The slope by a plasma frequency of almost 0 is very small: the step towards the data leaves the range.
  SampleFit::Set(model, 1, 500, 1e-76, 1e-9);
  s.Measure(1, model, kE1);
  for (DataRow& row : s.tables.datasets.slots[0].points) row.y = 2;
  FixAll(model, true);
  Cell(model, 0, Wp).adjustable = 1;
  s.Term(1, 1);
  options().LogFit = true;
  s.Run();
  EXPECT_EQ(Cell(model, 0, Wp).value, 1e-76);
  EXPECT_EQ(fit().TotalChiSq, fit().report.startChiSq);
  EXPECT_EQ(fit().ChiSqChange, 0);
  EXPECT_EQ(fit().IterationCount, 1);
  EXPECT_EQ(Stop(), "a parameter ran out of limits");
  EXPECT_EQ(s.tables.platform.messages.size(), 1u);
  EXPECT_EQ(NumbersOf(folder.Read("Fitlog.dat")).size(), 2u);
}

TEST_F(Running, ALimitIsNoReasonForTheMessage) {
  Prepare();
  Cell(model, 0, Wo).useMax = 1;
  Cell(model, 0, Wo).max = 119;
  s.Rebuild();
  s.Run();
  EXPECT_TRUE(s.tables.platform.messages.empty());
  EXPECT_LE(Cell(model, 0, Wo).value, 119);
  EXPECT_GT(Cell(model, 0, Wo).value, 118.9);
}

TEST_F(Running, ACoupledPairFindsTheCommonValueAndIsOneAtEveryIteration) {
  SampleFit::Set(model, 4, 120, 250, 8);
  Model& twin = s.AddModel(3, 160, 200, 8);
  s.Measure(1, model, kRefl);
  s.Measure(2, twin, kE2, 0.1);
  FixAll(twin, true);
  Cell(twin, 0, G).adjustable = 1;
  Cell(model, 0, G).value = 12;
  SetCoupling(s.tables.params, Cell(model, 0, G), 5);
  SetCoupling(s.tables.params, Cell(twin, 0, G), 5);
  s.Term(1, 1);
  s.Term(2, 2);
  ASSERT_EQ(fit().NumFreeParams, 4);
  ASSERT_EQ(fit().NumFitParams, 5);
  RunWatch watch;
  watch.iterationDone = [&] { EXPECT_EQ(Cell(model, 0, G).value, Cell(twin, 0, G).value); };
  s.Run(watch);
  EXPECT_NEAR(Cell(twin, 0, G).value, 8, kConverged);
  EXPECT_NEAR(Cell(model, 0, G).value, 8, kConverged);
}

TEST_F(Running, AGroupWhoseFirstMemberHasNoInfluenceIsFittedAllTheSame) {
  SampleFit::Set(model, 4, 120, 250, 8);
  Model& busy = s.AddModel(4, 120, 250, 8);
  s.Measure(1, busy, kRefl);
  SetCoupling(s.tables.params, Cell(model, 0, G), 1);
  SetCoupling(s.tables.params, Cell(busy, 0, G), 1);
  SetValue(s.tables.params, Cell(busy, 0, G), 12);
  s.Term(1, 2);
  s.Run();
  EXPECT_NEAR(Cell(busy, 0, G).value, 8, 10 * kConverged);
  EXPECT_EQ(Cell(model, 0, G).value, Cell(busy, 0, G).value);  // set through its group
}

TEST_F(Running, WithANegativeWeightThereIsNoStep) {
  Prepare(0.02);
  fit().list.terms[0].weight = -1;
  s.Rebuild();
  s.Run();
  EXPECT_EQ(fit().IterationCount, 0);
  EXPECT_LT(fit().TotalChiSq, 0);
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
}

TEST_F(Running, AnErrorBarOfZeroEndsWithoutAHang) {
  Prepare(0.02);
  s.tables.datasets.slots[0].points[3].sigma = 0;
  s.Rebuild();
  s.Run();
  EXPECT_EQ(fit().IterationCount, 0);
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
  EXPECT_FALSE(fit().FitRunning);
}

TEST_F(Running, AChiSqThatIsNotANumberCountsAsAnImprovement) {
  // With one parameter an infinite matrix is accepted, because 1/sqrt(infinity) is 0. The slope by a constant is 1 even
  // if the constant is NaN: only the number of iterations ends this run.
  PrepareConstant(7);
  s.tables.datasets.slots[0].points[0].sigma = 0;
  s.Rebuild();
  s.Run();
  EXPECT_TRUE(std::isnan(fit().TotalChiSq));
  EXPECT_EQ(fit().IterationCount, 1000);
}

TEST_F(Running, UndoPassesLimitsAndCoupling) {
  Prepare();
  Model& twin = s.AddModel(4, 120, 250, 11);
  s.Measure(2, twin, kE2);
  SetCoupling(s.tables.params, Cell(model, 0, G), 5);
  SetCoupling(s.tables.params, Cell(twin, 0, G), 5);
  s.Term(2, 2);
  s.RunWithUndo();
  const double fitted = Cell(model, 0, G).value;
  Cell(model, 0, Wo).useMin = 1;
  Cell(model, 0, Wo).min = 118;
  s.Undo();
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
  EXPECT_EQ(Cell(model, 0, G).value, 11);
  EXPECT_EQ(Cell(twin, 0, G).value, 11);
  s.Undo();
  EXPECT_EQ(Cell(model, 0, G).value, fitted);
  EXPECT_EQ(Cell(twin, 0, G).value, fitted);
}

}  // namespace
}  // namespace kalvex

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>

#include "fit/running.h"

namespace kalvex {
namespace {

TEST_F(Running, StopsAfterItsIterations) {
  Prepare(0.02);
  options().StopOnReduction = false;
  options().StopOnIterations = true;
  options().MaxIterations = 2;
  s.Run();
  EXPECT_EQ(fit().IterationCount, 2);
  EXPECT_EQ(Stop(), "number of iterations");
}

TEST_F(Running, StopsWhenTheLastIterationsGainedTooLittleButNotBeforeTheThird) {
  Prepare(0.02);
  s.Run();
  EXPECT_EQ(Stop(), "ChiSq no longer falls");
  EXPECT_GE(fit().IterationCount, 3);
  Prepare(0.02);
  fit().list.terms.erase(fit().list.terms.begin());
  s.Rebuild();
  options().ReductionAmount = 1e30;
  s.Run();
  EXPECT_EQ(fit().IterationCount, 3);
}

TEST_F(Running, StopsWhenItsTimeIsOver) {
  Prepare(0.02);
  std::int64_t now = 0;
  s.tables.platform.clock = [&] { return now += 7; };
  options().StopOnTime = true;
  options().MaxSeconds = 14;
  options().StopOnReduction = false;
  s.Run();
  EXPECT_EQ(Stop(), "time");
  EXPECT_EQ(fit().ElapsedSeconds, 14);
  EXPECT_EQ(fit().IterationCount, 2);
}

TEST_F(Running, ALambdaEqualToItsLimitGoesOn) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  s.Rebuild();
  options().MaxLambda = 1;
  options().InitialLambda = 1;
  s.Run();
  EXPECT_EQ(fit().Lambda, 10);
}

TEST_F(Running, WithoutTheLambdaRuleARunWithoutAStepEndsAllTheSame) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  s.Rebuild();
  options().StopOnLambda = false;
  s.Run();
  EXPECT_EQ(fit().IterationCount, 0);
}

TEST_F(Running, AskedToStopItFinishesTheIterationWithAllItsBookkeeping) {
  Prepare(0.02);
  options().StopOnReduction = false;
  options().LogFit = true;
  RunWatch watch;
  int polls = 0;
  watch.poll = [&] { fit().StopRequested = ++polls == 2; };
  s.Run(watch);
  EXPECT_EQ(polls, 2);
  EXPECT_EQ(fit().IterationCount, 2);
  EXPECT_EQ(Stop(), "stopped by the user");
  EXPECT_EQ(NumbersOf(folder.Read("Fitlog.dat")).size(), 3u);
  EXPECT_FALSE(fit().FitRunning);
}

TEST_F(Running, ThePollIsAskedOnceAnIterationUnlessARuleHasEndedTheRun) {
  Prepare(0.02);
  options().StopOnReduction = false;
  options().StopOnIterations = true;
  options().MaxIterations = 4;
  RunWatch watch;
  std::string calls;
  watch.iterationDone = [&] { calls += 'i'; };
  watch.poll = [&] { calls += 'p'; };
  s.Run(watch);
  EXPECT_EQ(calls, "ipipipi");
}

TEST_F(Running, TheFirstRuleThatHoldsIsTheOneNamed) {
  Prepare(0.02);
  options().StopOnIterations = options().StopOnTime = true;
  options().MaxIterations = 0;
  options().MaxSeconds = 0;
  options().ReductionIterations = 1;
  options().ReductionAmount = 1e30;
  s.Run();
  EXPECT_EQ(Stop(), "number of iterations");
  EXPECT_EQ(fit().IterationCount, 1);  // rules are checked only after an iteration
  options().StopOnIterations = false;
  s.Run();
  EXPECT_EQ(Stop(), "time");
  options().StopOnTime = false;
  s.Run();
  EXPECT_EQ(Stop(), "ChiSq no longer falls");
  EXPECT_EQ(fit().IterationCount, 1);
}

TEST_F(Running, TheReductionIsThatOfTheLastSoManyIterationsTogether) {
  Prepare(0.02);
  options().StopOnReduction = false;
  options().StopOnIterations = true;
  options().MaxIterations = 6;
  std::vector<double> chiSq;
  RunWatch watch;
  watch.iterationDone = [&] { chiSq.push_back(fit().TotalChiSq); };
  s.Run(watch);
  chiSq.insert(chiSq.begin(), fit().report.startChiSq);
  ASSERT_EQ(chiSq.size(), 7u);
  for (int last = 1; last <= 2; ++last) {
    options().StopOnReduction = true;
    options().ReductionIterations = last;
    // Slightly more than the gain over the last `last` of four iterations. The run must end at the first iteration with
    // a smaller gain.
    const auto gain = [&](int at) {
      return chiSq[static_cast<std::size_t>(at - last)] - chiSq[static_cast<std::size_t>(at)];
    };
    options().ReductionAmount = 1.0001 * gain(4);
    int expected = last;
    while (gain(expected) >= options().ReductionAmount) ++expected;
    SampleFit::Set(model, 3.5, 116, 230, 11);
    s.Run();
    EXPECT_EQ(fit().IterationCount, expected) << last;
    EXPECT_EQ(Stop(), "ChiSq no longer falls");
  }
}

TEST_F(Running, AReductionOverNoIterationsNeverEndsARun) {
  Prepare(0.02);
  options().StopOnIterations = true;
  options().MaxIterations = 4;
  options().ReductionAmount = 1e30;
  for (const int iterations : {0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    SampleFit::Set(model, 3.5, 116, 230, 11);
    options().ReductionIterations = iterations;
    s.Run();
    EXPECT_EQ(Stop(), "number of iterations") << iterations;
    EXPECT_EQ(fit().IterationCount, 4) << iterations;
  }
}

TEST_F(Running, ParametersOutOfRangeAreARuleWithoutEffect) {
  Prepare(0.02);
  s.Run();
  const int iterations = fit().IterationCount;
  SampleFit::Set(model, 3.5, 116, 230, 11);
  options().StopOnOutOfRange = true;
  s.Run();
  EXPECT_EQ(fit().IterationCount, iterations);
  EXPECT_EQ(Stop(), "ChiSq no longer falls");
}

TEST_F(Running, TheThousandthIterationEndsARunWhateverTheOptions) {
  // With NaN data and a model without adjustable parameters ChiSq is NaN, which counts as an improvement every time.
  Prepare(0.02);
  Model& fixed = s.AddModel(3, 100, 200, 10);
  FixAll(fixed, true);
  s.Measure(2, fixed, kRefl, 0.01, 0, 2);
  s.tables.datasets.slots[1].points[0].y = std::nan("");
  s.Term(2, 2);
  options().StopOnIterations = options().StopOnTime = true;
  options().MaxIterations = 5000;
  options().MaxSeconds = 1000;
  s.Run();
  EXPECT_EQ(fit().IterationCount, 1000);
  EXPECT_EQ(Stop(), "largest number of iterations of a run");
}

TEST_F(Running, LambdasThatCannotGrowEndARun) {
  constexpr double kInf = std::numeric_limits<double>::infinity();
  Prepare();
  for (const bool rule : {false, true}) {
    for (const double start : {0.0, -0.0, -1.0, -0.5, kInf, -kInf, std::nan(""), 1e308, 1e-320}) {
      for (const double most : {1e20, kInf, std::nan("")}) {
        SampleFit::Set(model, 4, 120, 250, 8);
        s.Rebuild();
        options().StopOnLambda = rule;
        options().InitialLambda = start;
        options().MaxLambda = most;
        s.Run();
        EXPECT_FALSE(fit().FitRunning);
        EXPECT_EQ(Cell(model, 0, Wo).value, 120) << rule << ' ' << start << ' ' << most;
      }
    }
  }
}

}  // namespace
}  // namespace kalvex

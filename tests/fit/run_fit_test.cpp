#include "fit/run_fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "core/text.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_dumps.h"
#include "fit/normal_equations.h"
#include "fit/sample_fit.h"
#include "models/param_value.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

class Running : public testing::Test {
 protected:
  Running() : inside(folder.Name()), model(s.AddModel(4, 120, 250, 8)) {}

  // The spectrum of the true values, and a start beside them.
  void Prepare(double bend = 0, int quantity = kRefl) {
    SampleFit::Set(model, 4, 120, 250, 8);
    s.Measure(1, model, quantity, 0.01, bend);
    SampleFit::Set(model, 3.5, 116, 230, 11);
    s.Term(1, 1);
  }
  FitState& fit() { return s.fit(); }
  FitOptions& options() { return s.fit().options; }
  std::string Stop() { return s.fit().report.stop; }

  ScratchFolder folder;
  InFolder inside;
  SampleFit s;
  Model& model;
};

TEST_F(Running, FindsTheParametersOfTheSpectrum) {
  Prepare();
  EXPECT_EQ(s.Run(), 0);
  EXPECT_NEAR(model.epsInf.value, 4, 1e-6);
  EXPECT_NEAR(Cell(model, 0, Wo).value, 120, 1e-5);
  EXPECT_NEAR(Cell(model, 0, Wp).value, 250, 1e-4);
  EXPECT_NEAR(Cell(model, 0, G).value, 8, 1e-5);
  EXPECT_LT(fit().TotalChiSq, 1e-6);
  EXPECT_FALSE(fit().FitRunning);
}

TEST_F(Running, WithoutParametersNothingHappens) {
  Prepare();
  FixAll(&model, true);
  s.Rebuild();
  EXPECT_EQ(s.Run(), 0);
  EXPECT_EQ(Stop(), "no parameter to fit");
}

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
  static std::int64_t now;
  now = 0;
  s.program.platform.clockSeconds = [](void*) { return now += 7; };
  options().StopOnTime = true;
  options().MaxSeconds = 14;
  options().StopOnReduction = false;
  s.Run();
  EXPECT_EQ(Stop(), "time");
  EXPECT_EQ(fit().ElapsedSeconds, 14);
  EXPECT_EQ(fit().IterationCount, 2);
}

TEST_F(Running, StopsWhenAsked) {
  Prepare(0.02);
  int polls = 0;
  struct Around {
    FitState& state;
    int& polls;
  } around{fit(), polls};
  options().StopOnReduction = false;
  s.Run({&around, nullptr, [](void* self) {
           auto& a = *static_cast<Around*>(self);
           if (++a.polls == 2) a.state.StopRequested = true;
         }});
  EXPECT_EQ(fit().IterationCount, 2);
  EXPECT_EQ(Stop(), "stopped by the user");
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

TEST_F(Running, ALambdaEqualToItsLimitGoesOn) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  s.Rebuild();
  options().MaxLambda = 1;
  options().InitialLambda = 1;
  s.Run();
  EXPECT_EQ(fit().Lambda, 10);
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

TEST_F(Running, AParameterThatExplodesIsClampedAndTheMessageShown) {
  // The data ask for a constant of 1e75, and a straight step goes there.
  Prepare();
  FixAll(&model, true);
  model.epsInf.adjustable = 1;
  s.Measure(1, model, kE1);
  for (DataRow& row : s.program.datasets.slots[0].points) row.y = 1e75;
  s.program.datasets.slots[0].Quantity = kE1;
  ClearChiSqTerms(fit().list);
  s.Term(1, 1);
  s.Run();
  EXPECT_EQ(model.epsInf.value, 1e70);
  EXPECT_EQ(Stop(), "a parameter ran out of limits");
  ASSERT_EQ(s.messages.size(), 1u);
  EXPECT_EQ(
      s.messages[0],
      "Attention: One or more parameters run out of limits:\n [-1e+70, 1e+70].\n\nThe fitting routine is stopped.");
}

TEST_F(Running, CoupledParametersMoveAsOne) {
  Prepare();
  Model& twin = s.AddModel(4, 120, 250, 11);
  s.Measure(2, model, kE2);
  SetCoupling(s.program.params, Cell(model, 0, G), 5);
  SetCoupling(s.program.params, Cell(twin, 0, G), 5);
  s.Term(2, 2);
  EXPECT_EQ(fit().NumFitParams, fit().NumFreeParams + 1);
  s.Run();
  EXPECT_EQ(Cell(model, 0, G).value, Cell(twin, 0, G).value);
  EXPECT_LT(fit().TotalChiSq, fit().report.startChiSq);
}

TEST_F(Running, StrangeWeightsAndErrorsEnd) {
  Prepare(0.02);
  s.program.datasets.slots[0].points[3].sigma = 0;
  s.Rebuild();
  EXPECT_EQ(s.Run(), 0);
  s.program.datasets.slots[0].points[3].sigma = 0.01;
  fit().list.terms[0].weight = -1;
  s.Rebuild();
  EXPECT_EQ(s.Run(), 0);
}

TEST_F(Running, WithoutTheLambdaRuleARunWithoutAStepEndsAllTheSame) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  s.Rebuild();
  options().StopOnLambda = false;
  EXPECT_EQ(s.Run(), 0);
  EXPECT_EQ(fit().IterationCount, 0);
}

TEST_F(Running, UndoSwapsAndSwapsBack) {
  Prepare();
  StartFit(DeskOf(s.program), s.program.platform, {});
  EXPECT_TRUE(fit().UndoAvailable);
  const double fitted = Cell(model, 0, Wo).value, chiSq = fit().TotalChiSq;
  UndoFit(fit(), s.program.eval);
  EXPECT_EQ(Cell(model, 0, Wo).value, 116);
  EXPECT_CLOSE(fit().TotalChiSq, fit().report.startChiSq, kChain);
  UndoFit(fit(), s.program.eval);
  EXPECT_EQ(Cell(model, 0, Wo).value, fitted);
  EXPECT_EQ(fit().TotalChiSq, chiSq);
}

// The same method written out by hand for a straight line, whose derivatives are 1 and x.
TEST(LevenbergMarquardt, TakesTheStepsOfAPlainOne) {
  const ScratchFolder folder;
  const InFolder inside(folder.Name());
  SampleFit s;
  Model& model = s.AddModel(1, 500, 100, 1e-9);
  FixAll(&model, true);
  model.epsInf.adjustable = 1;
  Cell(model, 0, Wp).adjustable = 1;
  s.Measure(1, model, kE1, 0.1, 0.3, 20);
  model.epsInf.value = 2;
  Cell(model, 0, Wp).value = 400;
  s.Term(1, 1);
  s.fit().options.LogFit = true;
  s.Run();

  const auto& rows = s.program.datasets.slots[0].points;
  double p[2] = {2, 400}, lambda = 0.001;
  const auto value = [&](const double* at, double x) { return at[0] + at[1] * at[1] / (250000 - x * x); };
  const auto chiSq = [&](const double* at) {
    double sum = 0;
    for (const DataRow& row : rows) sum += std::pow((row.y - value(at, row.x)) / row.sigma, 2);
    return sum;
  };
  const auto log = NumbersOf(folder.Read("Fitlog.dat"));
  ASSERT_GE(log.size(), 4u);
  EXPECT_NEAR(log[0][3], chiSq(p), 1e-5 * chiSq(p));
  for (std::size_t iteration = 1; iteration < 4; ++iteration) {
    double a00 = 0, a01 = 0, a11 = 0, b0 = 0, b1 = 0;
    for (const DataRow& row : rows) {
      const double J = 2 * p[1] / (250000 - row.x * row.x), W = 1 / (row.sigma * row.sigma),
                   r = value(p, row.x) - row.y;
      a00 += 2 * W;
      a01 += 2 * W * J;
      a11 += 2 * W * J * J;
      b0 += 2 * W * r;
      b1 += 2 * W * r * J;
    }
    double next[2];
    while (true) {
      const double d0 = a00 * (1 + lambda), d1 = a11 * (1 + lambda), det = d0 * d1 - a01 * a01;
      next[0] = p[0] - (b0 * d1 - b1 * a01) / det;
      next[1] = p[1] - (d0 * b1 - a01 * b0) / det;
      if (chiSq(next) < chiSq(p)) break;
      lambda *= 10;
    }
    p[0] = next[0];
    p[1] = next[1];
    EXPECT_NEAR(log[iteration][2], lambda, 1e-5 * lambda);  // the log has six digits
    EXPECT_NEAR(log[iteration][5], p[0], 2e-5 * std::fabs(p[0]));
    EXPECT_NEAR(log[iteration][7], p[1], 2e-5 * std::fabs(p[1]));
    lambda /= 10;
  }
}

TEST_F(Running, TheLogHasAHeadAndARowAnIterationForEachRun) {
  Prepare(0.02);
  Cell(model, 0, Wo).adjustable = 0;
  model.epsInf.adjustable = 0;
  s.Term(1, 1, 2);
  options().LogFit = true;
  options().StopOnIterations = true;
  options().MaxIterations = 2;
  s.Run();
  s.Run();
  std::istringstream log(folder.Read("Fitlog.dat"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(log, line);) lines.push_back(line);
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[0], "IterNo Time Lambda ChiSq ChiSq1 ChiSq2 P1 Perr1 P2 Perr2 ");
  EXPECT_EQ(lines[4], lines[0]);
  EXPECT_EQ(lines[1].substr(0, 10), "0 0 0.001 ");
  EXPECT_EQ(lines[1].back(), ' ');
  EXPECT_EQ(lines[2].substr(0, 2), "1 ");
  const auto numbers = NumbersOf(lines[2])[0];
  EXPECT_NEAR(numbers[3], numbers[4] + 2 * numbers[5], 1e-4 * numbers[3]);  // the terms' own sums carry no weight
}

TEST_F(Running, ErrorsAndCorrelationsAreThoseOfTheInverse) {
  Prepare(0.02);
  FixAll(&model, true);
  Cell(model, 0, Wp).adjustable = Cell(model, 0, G).adjustable = 1;
  s.Rebuild();
  options().CalcConfidence = true;
  options().DeltaChiSq = 2;
  options().StopOnIterations = true;
  options().MaxIterations = 1;
  for (const FitParam& param : fit().params) FitSetCoord(*param.cell);
  NormalEquations equations(2);
  AccumulateNormalEquations(fit(), s.program.eval, equations);  // those of the start of the iteration
  const double a = equations.Alpha()(0, 0), b = equations.Alpha()(0, 1), d = equations.Alpha()(1, 1),
               det = a * d - b * b;
  s.Run();
  EXPECT_CLOSE(Cell(model, 0, Wp).error, std::sqrt(2 * d / det), 1e-9);
  EXPECT_CLOSE(Cell(model, 0, G).error, std::sqrt(2 * a / det), 1e-9);
  std::string correlation;
  AppendFixed(correlation, -b / std::sqrt(a * d), 5, 7);
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n1 2 " + correlation + "\n");
  EXPECT_EQ(folder.Read("Params.dat"), "np Where nm nl nc nep nen Val Err\n1 LOR 0 0 1 0 0 " +
                                           TextG(Cell(model, 0, Wp).value) + ' ' + TextG(Cell(model, 0, Wp).error) +
                                           "\n2 LOR 0 0 2 0 0 " + TextG(Cell(model, 0, G).value) + ' ' +
                                           TextG(Cell(model, 0, G).error) + "\n");
}

TEST_F(Running, ALimitCarriesTheErrorOverToTheValue) {
  Prepare(0.02);
  FixAll(&model, true);
  Cell(model, 0, G).adjustable = 1;
  options().CalcConfidence = true;
  options().StopOnIterations = true;
  options().MaxIterations = 1;
  s.Rebuild();
  s.Run();
  const double free = Cell(model, 0, G).error;
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n");
  Cell(model, 0, G).value = 11;
  Cell(model, 0, G).useMin = 1;
  Cell(model, 0, G).min = 1;
  s.Rebuild();
  s.Run();
  // One parameter alone: the error by the coordinate times the scale is the error by the value.
  EXPECT_CLOSE(Cell(model, 0, G).error, free, 1e-9);
}

TEST_F(Running, CorrelationsAreSortedAndCoupledOnesShareTheirError) {
  Prepare(0.02);
  InsertRow(&model, 1);
  Cell(model, 1, Wo).value = 200;
  SetCoupling(s.program.params, Cell(model, 0, G), 2);
  SetCoupling(s.program.params, Cell(model, 1, G), 2);
  s.Rebuild();
  options().CalcConfidence = true;
  s.Run();
  const auto lines = NumbersOf(folder.Read("ParCorrs.dat"));
  ASSERT_EQ(lines.size(), 15u);
  for (std::size_t i = 1; i < lines.size(); ++i) EXPECT_LE(lines[i - 1][2], lines[i][2]);
  EXPECT_EQ(NumbersOf(folder.Read("Params.dat")).size(), 6u);
  EXPECT_EQ(Cell(model, 0, G).error, Cell(model, 1, G).error);
}

TEST_F(Running, QuantityErrorBarsScanEveryPointAndPutEverythingBack) {
  Prepare(0.005);
  FixAll(&model, true);
  Cell(model, 0, Wp).adjustable = 1;
  s.Measure(2, model, kE1, 0.5, 0, 8);
  s.Measure(3, model, kE2, 0.5, 0, 3);
  s.Term(2, 1);
  EXPECT_EQ(WriteQuantityErrorBars(fit(), s.program.eval, s.program.datasets, {}, s.program.platform, {}), -1);
  s.Term(3, 1);
  Dataset& anchor = s.program.datasets.slots[2];
  anchor.CutMin = 0;
  anchor.CutMax = 35;
  ComputeActiveRange(anchor);
  const auto points = anchor.points;
  ASSERT_EQ(WriteQuantityErrorBars(fit(), s.program.eval, s.program.datasets, {}, s.program.platform, {}), 0);
  const auto lines = NumbersOf(folder.Read("QntyErrorBars.dat"));
  ASSERT_EQ(lines.size(), 3u);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    ASSERT_EQ(lines[i].size(), 13u);
    EXPECT_EQ(lines[i][0], points[i].x);
    EXPECT_EQ(anchor.points[i].y, points[i].y);
    // The other terms are content in the middle of the scan, where the anchor asks for what they say.
    EXPECT_LE(lines[i][7], lines[i][2] * 1.0001);
    EXPECT_LE(lines[i][7], lines[i][12] * 1.0001);
  }
  EXPECT_EQ(anchor.CutMax, 35);
  EXPECT_EQ(anchor.nActive, 2);
  EXPECT_EQ(fit().list.terms.back().weight, 1);
  EXPECT_EQ(options().MaxIterations, 1000);
}

TEST_F(Running, TheMeshDumpsHoldTheDerivativesOfTheConductivity) {
  EXPECT_EQ(WriteDerivativeDump(s.program.eval), -1);
  EXPECT_EQ(WriteSensitivityDump(s.program.eval), -1);
  Model& second = s.AddModel(2, 100, 10, 5);
  s.AddModel(-1, 1, 0, 0);  // the measured models 3 and 4: linear changes about model 1 by model 1, and by model 2
  s.AddModel(-1, 1, 0, 0);
  for (const std::uint32_t number : {3u, 4u}) {
    Model& measured = s.model(number);
    InsertRow(&measured, 1);
    measured.epsInf.adjustable = 0;
    Cell(measured, 0, Wo).value = 1;
    Cell(measured, 1, Wo).value = number - 2;
  }
  EXPECT_EQ(WriteDerivativeDump(s.program.eval), -1);  // no dataset yet
  for (Model* const owner : {&model, &second}) {
    owner->vdf.On = 1;
    owner->vdf.mesh.resize(3);
    for (std::size_t i = 0; i < 3; ++i) {
      owner->vdf.mesh[i].x = 30 + 4.0 * static_cast<double>(i);
      owner->vdf.mesh[i].e1.adjustable = owner->vdf.mesh[i].e2.adjustable = 1;
    }
  }
  s.Measure(1, model, kS1, 1, 0, 5);  // at 30, 34, 38, and two points outside the mesh
  ASSERT_EQ(WriteDerivativeDump(s.program.eval), 0);
  const auto lines = NumbersOf(folder.Read("Jakob.dat"));
  ASSERT_EQ(lines.size(), 3u);
  for (const auto& line : lines) {
    ASSERT_EQ(line.size(), 17u);
    const double slope = line[0] / 60;
    EXPECT_EQ(line[1], 0);               // dS1/de1 of model 1
    EXPECT_NEAR(line[2], slope, 1e-5);   // dS1/de2
    EXPECT_NEAR(line[5], -slope, 1e-5);  // dS2/de1
    EXPECT_NEAR(line[12], slope, 1e-5);  // model 4 by model 2
  }
  ASSERT_EQ(WriteSensitivityDump(s.program.eval), 0);
  const auto sums = NumbersOf(folder.Read("Jakob2.dat"));
  ASSERT_EQ(sums.size(), 3u);
  for (const auto& line : sums) {
    EXPECT_NEAR(line[1], 60 / line[0], 1e-4);
    EXPECT_NEAR(line[2], 60 / line[0], 1e-4);
  }
}

}  // namespace
}  // namespace kalvex

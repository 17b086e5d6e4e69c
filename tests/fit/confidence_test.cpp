#include "fit/confidence.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "core/text.h"
#include "fit/fit_coordinate.h"
#include "fit/normal_equations.h"
#include "fit/running.h"
#include "records/param_value.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

TEST_F(Running, ErrorsAndCorrelationsAreThoseOfTheInverse) {
  Prepare(0.02);
  FixAll(model, true);
  Cell(model, 0, Wp).adjustable = Cell(model, 0, G).adjustable = 1;
  s.Rebuild();
  options().CalcConfidence = true;
  options().DeltaChiSq = 2;
  options().StopOnIterations = true;
  options().MaxIterations = 1;
  NormalEquations equations(2);
  AccumulateNormalEquations(fit(), s.tables.params, s.tables.eval, s.Coordinates(),
                            equations);  // at the start of the iteration
  const double a = equations.Alpha()(0, 0), b = equations.Alpha()(0, 1), d = equations.Alpha()(1, 1),
               det = a * d - b * b;
  s.Run();
  EXPECT_CLOSE(Cell(model, 0, Wp).error, std::sqrt(2 * d / det), kRound);
  EXPECT_CLOSE(Cell(model, 0, G).error, std::sqrt(2 * a / det), kRound);
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
  FixAll(model, true);
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
  EXPECT_CLOSE(Cell(model, 0, G).error, free, kFormula);
}

TEST_F(Running, CorrelationsAreSortedAndCoupledOnesShareTheirError) {
  Prepare(0.02);
  InsertRow(model, 1);
  Cell(model, 1, Wo).value = 200;
  SetCoupling(s.tables.params, Cell(model, 0, G), 2);
  SetCoupling(s.tables.params, Cell(model, 1, G), 2);
  s.Rebuild();
  options().CalcConfidence = true;
  s.Run();
  const auto lines = NumbersOf(folder.Read("ParCorrs.dat"));
  ASSERT_EQ(lines.size(), 15u);
  for (std::size_t i = 1; i < lines.size(); ++i) EXPECT_LE(lines[i - 1][2], lines[i][2]);
  EXPECT_EQ(NumbersOf(folder.Read("Params.dat")).size(), 6u);
  EXPECT_EQ(Cell(model, 0, G).error, Cell(model, 1, G).error);
}

// Masters that belong to no model, and a matrix with given entries.
class Confidence : public testing::Test {
 protected:
  Confidence() : inside(folder.Name()) {}
  void Write(std::vector<double> alpha, std::size_t coupled = 0) {
    const auto size = static_cast<std::size_t>(std::lround(std::sqrt(static_cast<double>(alpha.size()))));
    cells.resize(size + coupled);
    std::vector<FitParam> params(cells.size());
    std::vector<ModelParam*> pointers;
    std::vector<FitCoordinate> coordinates;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      cells[i].value = static_cast<double>(i) + 0.5;
      cells[i].error = 77;
      pointers.push_back(&cells[i]);
      coordinates.push_back(FitCoordinateOf(cells[i]));
      params[i].place.Where = ParamKind::kRow;
      params[i].place.nl = static_cast<int>(i);
      params[i].master = static_cast<int>(i < size ? i : 0);
    }
    fit.params = std::move(params);
    fit.NumFreeParams = static_cast<int>(size);
    fit.NumFitParams = static_cast<int>(size + coupled);
    BandFactor factor;
    WriteConfidence(fit, pointers, coordinates, {alpha.data(), size}, factor);
  }
  ScratchFolder folder;
  InFolder inside;
  FitState fit;
  std::vector<ModelParam> cells;
};

TEST_F(Confidence, OfTwoParametersIsThatOfTheInverseOfTwoByTwo) {
  Write({2, 1, 0, 2});                                             // the inverse is {{2, -1}, {-1, 2}}/3
  EXPECT_CLOSE(cells[0].error, std::sqrt(100 * 2.0 / 3), kRound);  // ten sigma by default
  EXPECT_CLOSE(cells[1].error, std::sqrt(100 * 2.0 / 3), kRound);
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n1 2 -0.50000\n");
  EXPECT_EQ(folder.Read("Params.dat"),
            "np Where nm nl nc nep nen Val Err\n1 LOR 0 0 0 0 0 0.5 8.16497\n2 LOR 0 1 0 0 0 1.5 8.16497\n");
}

TEST_F(Confidence, TheErrorGrowsWithTheRootOfDeltaChiSq) {
  fit.options.DeltaChiSq = 9;
  Write({4});
  EXPECT_EQ(cells[0].error, 1.5);
  fit.options.DeltaChiSq = 0;
  Write({4});
  EXPECT_EQ(cells[0].error, 0);
}

TEST_F(Confidence, OfOneParameterThereIsNoCorrelation) {
  Write({4});
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n");
}

TEST_F(Confidence, CorrelationsRiseFromTheMostNegative) {
  // The inverse of {{3, 1, 1}, {1, 3, -1}, {1, -1, 3}} is {{2, -1, -1}, {-1, 2, 1}, {-1, 1, 2}}/4.
  Write({3, 1, 1, 0, 3, -1, 0, 0, 3});
  const std::string text = folder.Read("ParCorrs.dat");
  EXPECT_TRUE(text == "np1 np2 Corr\n1 2 -0.50000\n1 3 -0.50000\n2 3 0.50000\n" ||
              text == "np1 np2 Corr\n1 3 -0.50000\n1 2 -0.50000\n2 3 0.50000\n")
      << text;
}

TEST_F(Confidence, CorrelationsOfNothingAreZero) {
  Write({4, 0, 0, 9});
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n1 2 0.00000\n");
  // A product of two variances below 1e-50 counts as zero.
  Write({2e30, 1e30, 0, 2e30});
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n1 2 0.00000\n");
}

TEST_F(Confidence, OfASingularMatrixTheErrorsAreZero) {
  Write({4, 4, 0, 4});
  EXPECT_EQ(cells[0].error, 0);
  EXPECT_EQ(cells[1].error, 0);
  EXPECT_EQ(folder.Read("ParCorrs.dat"), "np1 np2 Corr\n1 2 0.00000\n");
}

TEST_F(Confidence, CoupledParametersGetTheErrorOfTheirMasterAndNoLine) {
  Write({4, 0, 0, 25}, 2);
  EXPECT_EQ(cells[0].error, 5);
  EXPECT_EQ(cells[1].error, 2);
  EXPECT_EQ(cells[2].error, 5);
  EXPECT_EQ(cells[3].error, 5);
  EXPECT_EQ(NumbersOf(folder.Read("Params.dat")).size(), 2u);
}

TEST_F(Running, ErrorsFollowTheInverseTheLimitsAndTheCoupling) {
  Prepare(0.02);
  InsertRow(model, 1);
  Cell(model, 1, Wo).value = 200;
  Cell(model, 0, Wp).useMin = Cell(model, 0, Wp).useMax = 1;
  Cell(model, 0, Wp).min = 200;
  Cell(model, 0, Wp).max = 300;
  Cell(model, 1, Wo).useMax = 1;
  Cell(model, 1, Wo).max = 260;
  SetCoupling(s.tables.params, Cell(model, 0, G), 2);
  SetCoupling(s.tables.params, Cell(model, 1, G), 2);
  s.Rebuild();
  options().CalcConfidence = true;
  options().DeltaChiSq = 3;
  options().StopOnIterations = true;
  options().MaxIterations = 1;
  const auto n = static_cast<std::size_t>(fit().NumFreeParams);
  ASSERT_EQ(n, 6u);
  // The inverse of alpha at the start of the iteration, by elimination. The matrix is well conditioned after each row
  // and column is divided by the root of its diagonal.
  const std::vector<FitCoordinate> coordinates = s.Coordinates();
  NormalEquations equations(n);
  AccumulateNormalEquations(fit(), s.tables.params, s.tables.eval, coordinates, equations);
  std::vector<double> scale(n);
  std::vector<std::vector<double>> a(n, std::vector<double>(2 * n));
  for (std::size_t i = 0; i < n; ++i) scale[i] = std::sqrt(equations.Alpha()(i, i));
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      a[i][j] = equations.Alpha()(std::min(i, j), std::max(i, j)) / (scale[i] * scale[j]);
    }
    a[i][n + i] = 1;
  }
  for (std::size_t c = 0; c < n; ++c) {
    const double pivot = a[c][c];
    for (double& entry : a[c]) entry /= pivot;
    for (std::size_t r = 0; r < n; ++r) {
      if (r == c) continue;
      const double f = a[r][c];
      for (std::size_t k = 0; k < 2 * n; ++k) a[r][k] -= f * a[c][k];
    }
  }
  s.Run();
  ASSERT_EQ(fit().IterationCount, 1);
  const FitCells cells = s.Cells();
  for (std::size_t i = 0; i < n; ++i) {
    const double expected = std::sqrt(3 * a[i][n + i]) / scale[i] * std::fabs(coordinates[i].scale);
    EXPECT_CLOSE(cells[i]->error, expected, kFormula) << i;
  }
  EXPECT_EQ(Cell(model, 1, G).error, Cell(model, 0, G).error);
  struct Pair {
    double value;
    std::string line;
  };
  std::vector<Pair> pairs;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) {
      const double value = a[i][n + j] / std::sqrt(a[i][n + i] * a[j][n + j]);
      char line[60];
      std::snprintf(line, sizeof(line), "%d %d %7.5f\n", static_cast<int>(i) + 1, static_cast<int>(j) + 1, value);
      pairs.push_back({value, line});
    }
  }
  std::sort(pairs.begin(), pairs.end(), [](const Pair& x, const Pair& y) { return x.value < y.value; });
  std::string expected = "np1 np2 Corr\n";
  for (const Pair& pair : pairs) expected += pair.line;
  EXPECT_EQ(folder.Read("ParCorrs.dat"), expected);
}

TEST_F(Running, TheTablesAreWrittenAnewAfterEachIteration) {
  Prepare(0.02);
  options().CalcConfidence = true;
  RunWatch watch;
  int iterations = 0;
  watch.iterationDone = [&] {
    ++iterations;
    // The new values are written with the errors of the matrix that led to them.
    const auto rows = NumbersOf(folder.Read("Params.dat"));
    const std::vector<std::string> lines = LinesOf(folder.Read("Params.dat"));
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[2], "2 LOR 0 0 0 0 0 " + TextG(Cell(model, 0, Wo).value) + ' ' + TextG(Cell(model, 0, Wo).error));
    EXPECT_EQ(LinesOf(folder.Read("ParCorrs.dat")).size(), 7u);
    folder.Write("Params.dat", "");
    folder.Write("ParCorrs.dat", "");
  };
  s.Run(watch);
  EXPECT_GE(iterations, 3);
}

TEST_F(Running, WithoutTheOptionThereAreNoTablesAndErrorsStay) {
  Prepare(0.02);
  Cell(model, 0, Wo).error = 4.5;
  s.Run();
  EXPECT_EQ(Cell(model, 0, Wo).error, 4.5);
  EXPECT_FALSE(folder.Has("Params.dat"));
  EXPECT_FALSE(folder.Has("ParCorrs.dat"));
}

TEST_F(Running, TheTableOfParametersNamesEveryKindOfPlace) {
  s.AddModel(1, 100, 0, 1);  // the fitted model is not the first one
  SampleFit::Set(model, 4, 120, 250, 8);
  Model& third = s.AddModel(4, 120, 250, 8);
  FixAll(third, true);
  InsertRow(third, 0);
  third.epsInf.adjustable = 1;
  FixAll(third, true);
  third.epsInf.adjustable = Cell(third, 1, G).adjustable = 1;
  third.vdf.On = 1;
  third.vdf.mesh.resize(4);
  for (std::size_t i = 0; i < 4; ++i) third.vdf.mesh[i].x = 50 + 50.0 * static_cast<double>(i);
  third.vdf.mesh[2].e2.adjustable = 1;
  s.tables.params.ExpParams[kScalingFactorOfR].adjustable = 1;
  s.Measure(1, third, kRefl, 0.01, 0.02);
  third.epsInf.value = 4.4;
  s.Term(1, 3);
  options().CalcConfidence = true;
  options().StopOnIterations = true;
  options().MaxIterations = 1;
  s.Run();
  ASSERT_EQ(fit().IterationCount, 1);
  const auto numbers = [](const ModelParam& param) { return TextG(param.value) + ' ' + TextG(param.error) + '\n'; };
  EXPECT_EQ(folder.Read("Params.dat"), "np Where nm nl nc nep nen Val Err\n1 EIN 2 0 0 0 0 " + numbers(third.epsInf) +
                                           "2 LOR 2 1 2 0 0 " + numbers(Cell(third, 1, G)) + "3 ESH 2 0 0 0 2 " +
                                           numbers(third.vdf.mesh[2].e2) + "4 EXP 0 0 0 4 0 " +
                                           numbers(s.tables.params.ExpParams[kScalingFactorOfR]));
}

}  // namespace
}  // namespace kalvex

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "fit/running.h"
#include "records/param_value.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// A number as printf writes it.
std::string G6(double value) {
  char text[40];
  std::snprintf(text, sizeof(text), "%.6g", value);
  return text;
}

// The row of the present state.
std::string RowOf(SampleFit& s) {
  const FitState& fit = s.fit();
  std::string row = std::to_string(fit.IterationCount) + ' ' + std::to_string(fit.ElapsedSeconds) + ' ' +
                    G6(fit.Lambda) + ' ' + G6(fit.TotalChiSq) + ' ';
  for (const ChiSqTerm& term : fit.list.terms) row += G6(term.termChiSq) + ' ';
  FitCells masters = s.Cells();
  masters.resize(static_cast<std::size_t>(fit.NumFreeParams));
  for (const ModelParam* const cell : masters) row += G6(cell->value) + ' ' + G6(cell->error) + ' ';
  return row + '\n';
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
  const std::vector<std::string> lines = LinesOf(folder.Read("Fitlog.dat"));
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[0], "IterNo Time Lambda ChiSq ChiSq1 ChiSq2 P1 Perr1 P2 Perr2 ");
  EXPECT_EQ(lines[4], lines[0]);
  EXPECT_EQ(lines[1].substr(0, 10), "0 0 0.001 ");
  EXPECT_EQ(lines[1].back(), ' ');
  EXPECT_EQ(lines[2].substr(0, 2), "1 ");
  const auto numbers = NumbersOf(lines[2])[0];
  EXPECT_NEAR(numbers[3], numbers[4] + 2 * numbers[5],
              2 * kFiveDigits * numbers[3]);  // the sums of the terms do not contain the weight
}

TEST_F(Running, EveryRowOfTheLogIsInTheFileBeforeTheNextIteration) {
  Prepare(0.02);
  s.Measure(2, model, kE1, 0.5);
  Cell(model, 0, Wp).error = 0.125;
  s.Term(2, 1, 0.25);
  options().LogFit = true;
  std::string expected = "IterNo Time Lambda ChiSq ChiSq1 ChiSq2 P1 Perr1 P2 Perr2 P3 Perr3 P4 Perr4 \n";
  fit().IterationCount = fit().ElapsedSeconds = 0;
  fit().Lambda = 0.001;
  expected += RowOf(s);  // the lists are up to date: this is the state at the start
  RunWatch watch;
  watch.iterationDone = [&] {
    EXPECT_EQ(folder.Read("Fitlog.dat"), expected);
    expected += RowOf(s);
  };
  watch.poll = [&] { EXPECT_EQ(folder.Read("Fitlog.dat"), expected); };
  s.Run(watch);
  EXPECT_GE(fit().IterationCount, 3);
  EXPECT_EQ(folder.Read("Fitlog.dat"), expected);
}

TEST_F(Running, ARunWithoutAStepLeavesAHeadAndTheRowOfTheStart) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  s.Rebuild();
  options().LogFit = true;
  options().MaxLambda = 0.001;
  s.Run();
  EXPECT_EQ(folder.Read("Fitlog.dat"),
            "IterNo Time Lambda ChiSq ChiSq1 P1 Perr1 P2 Perr2 P3 Perr3 P4 Perr4 \n"
            "0 0 0.001 0 0 4 0 120 0 250 0 8 0 \n");
}

TEST_F(Running, TheColumnsOfTheLogFollowTheRun) {
  Prepare();
  SampleFit::Set(model, 4, 120, 250, 8);
  FixAll(model, true);
  model.epsInf.adjustable = 1;
  s.Rebuild();
  options().LogFit = true;
  s.Run();
  Cell(model, 0, G).adjustable = 1;
  s.Term(1, 1, 0);  // shown although its weight is 0
  s.Run();
  EXPECT_EQ(folder.Read("Fitlog.dat"),
            "IterNo Time Lambda ChiSq ChiSq1 P1 Perr1 \n"
            "0 0 0.001 0 0 4 0 \n"
            "IterNo Time Lambda ChiSq ChiSq1 ChiSq2 P1 Perr1 P2 Perr2 \n"
            "0 0 0.001 0 0 0 4 0 8 0 \n");
}

TEST_F(Running, CoupledParametersHaveNoColumnOfTheirOwn) {
  Prepare(0.02);
  InsertRow(model, 1);
  SetCoupling(s.tables.params, Cell(model, 0, G), 2);
  SetCoupling(s.tables.params, Cell(model, 1, G), 2);
  s.Rebuild();
  options().LogFit = true;
  s.Run();
  const std::vector<std::string> lines = LinesOf(folder.Read("Fitlog.dat"));
  EXPECT_EQ(lines[0], "IterNo Time Lambda ChiSq ChiSq1 P1 Perr1 P2 Perr2 P3 Perr3 P4 Perr4 P5 Perr5 P6 Perr6 ");
  EXPECT_EQ(NumbersOf(lines[1])[0].size(), 5u + 12);
}

TEST_F(Running, WhatTheLogHeldBeforeStays) {
  Prepare(0.02);
  folder.Write("Fitlog.dat", "a line of my own\n");
  options().LogFit = true;
  s.Run();
  EXPECT_EQ(LinesOf(folder.Read("Fitlog.dat"))[0], "a line of my own");
}

TEST_F(Running, WithTheLogOffThereIsNoFile) {
  Prepare(0.02);
  s.Run();
  EXPECT_FALSE(folder.Has("Fitlog.dat"));
}

TEST_F(Running, ALogThatCannotBeOpenedDoesNotStopTheRunAndIsNamedInTheReport) {
  Prepare(0.02);
  std::filesystem::create_directory(folder.Path("Fitlog.dat"));
  options().LogFit = true;
  s.Run();
  EXPECT_GE(fit().IterationCount, 3);
  EXPECT_EQ(fit().report.notWritten, (std::vector<std::string>{"Fitlog.dat"}));
  EXPECT_TRUE(s.tables.platform.messages.empty());
}

TEST_F(Running, FilesOnAFullDiskAreNamedOnceInTheReport) {
  Prepare(0.02);
  std::filesystem::create_symlink("/dev/full", "Fitlog.dat");
  std::filesystem::create_symlink("/dev/full", "ParCorrs.dat");
  options().LogFit = options().CalcConfidence = true;
  s.Run();
  EXPECT_GE(fit().IterationCount, 3);
  EXPECT_EQ(fit().report.notWritten, (std::vector<std::string>{"Fitlog.dat", "ParCorrs.dat"}));
}

}  // namespace
}  // namespace kalvex

#include <gtest/gtest.h>

#include <sstream>

#include "evaluation/eval_model.h"
#include "fit/derivative_test.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"
#include "support/scratch_folder.h"
#include "support/tables.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

class DerivativeTables : public testing::Test {
 protected:
  DerivativeTables() : inside(folder.Name()), model(*CreateModel(tables.params)) {
    Dataset& dataset = tables.datasets.slots[0];
    dataset.id = tables.datasets.nextId++;
    for (int i = 0; i < 20; ++i) dataset.points.push_back({40.0 + 10 * i, 0.4 + 0.01 * i, 0.02});
    dataset.firstActive = 0;
    dataset.lastActive = 19;
    AddTerm(2.5);
  }

  // A term that compares the dataset with the model.
  void AddTerm(double weight) {
    ChiSqTerm& term = InsertChiSqTerm(tables.fit, tables.fit.list, static_cast<int>(tables.fit.list.terms.size()));
    term.datasetId = tables.datasets.slots[0].id;
    term.modelId = model.number;
    term.weight = weight;
    RebuildFitLists(tables.fit, tables.params, tables.eval);
  }

  std::vector<std::string> Lines(const char* name) const {
    std::istringstream text(folder.Read(name));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
  }

  ScratchFolder folder;
  InFolder inside;
  Tables tables;
  Model& model;
};

TEST_F(DerivativeTables, EachParameterHasItsHeadingARowATermAndTheSum) {
  ASSERT_TRUE(TestDerivatives(tables.fit, tables.params, tables.eval).Ok());
  const auto lines = Lines("TestDeriv1.txt");
  ASSERT_EQ(lines.size(), 1u + 4 * 6);  // epsInf and three columns: stars, place, stars, term, blank line, sum
  EXPECT_EQ(lines[0], "NumParams = 4");
  EXPECT_EQ(lines[1], std::string(54, '*'));
  EXPECT_EQ(lines[2], "EIN, nm = 0, nl = 0, nc = 0, nep = 0, nen = 0");
  EXPECT_EQ(lines[3], lines[1]);
  EXPECT_EQ(lines[5], "");
  EXPECT_EQ(lines[14], "LOR, nm = 0, nl = 0, nc = 1, nep = 0, nen = 0");
  EXPECT_EQ(lines[4].substr(0, 10), "ChiSq=0 : ");
  EXPECT_EQ(lines[6].substr(0, 10), "ChiSqTot: ");
  EXPECT_EQ(lines[4].substr(10), lines[6].substr(10));  // one term: its row is the sum
  EXPECT_EQ(lines[4].size(), 10u + 11 + 1 + 11 + 8 + 11 + 1 + 5);
}

TEST_F(DerivativeTables, CorrectDerivativesCarryNoMark) {
  ASSERT_TRUE(TestDerivatives(tables.fit, tables.params, tables.eval).Ok());
  EXPECT_EQ(folder.Read("TestDeriv1.txt").find("(!!!)"), std::string::npos);
}

TEST_F(DerivativeTables, TheAnalyticColumnIsTheDerivativeOfTheUnweightedSum) {
  ASSERT_TRUE(TestDerivatives(tables.fit, tables.params, tables.eval).Ok());
  const double analytic = std::stod(Lines("TestDeriv1.txt")[4].substr(10, 11));
  const auto sumOfSquares = [&](double epsInf) {
    model.epsInf.value = epsInf;
    double sum = 0;
    WantOnly(tables.eval.quantities, QuantitySet{kRefl});
    for (const DataRow& row : tables.datasets.slots[0].points) {
      EvalModel(tables.eval, model, row.x, false);
      const double d = (row.y - tables.eval.quantities[kRefl].value) / row.sigma;
      sum += d * d;
    }
    return sum;
  };
  const double numeric = (sumOfSquares(3 + 1e-4) - sumOfSquares(3 - 1e-4)) / 2e-4;
  constexpr double kQuotient = 1e-3;  // of differences with one step
  EXPECT_NEAR(analytic, numeric, kQuotient * std::abs(numeric));
}

TEST_F(DerivativeTables, ATermOfWeightZeroComparesNothingAndIsMarked) {
  AddTerm(0);
  ASSERT_TRUE(TestDerivatives(tables.fit, tables.params, tables.eval).Ok());
  EXPECT_EQ(Lines("TestDeriv1.txt")[5], "ChiSq=1 : +0.0000E+00 +0.0000E+00            1.0E+00 (!!!)");
}

TEST_F(DerivativeTables, TheValuesAreBackAfterwards) {
  constexpr double kMovedBack = 1e-6;  // rounding of steps there and back, times the slope of ChiSq
  const double before = tables.fit.TotalChiSq;
  ASSERT_TRUE(TestDerivatives(tables.fit, tables.params, tables.eval).Ok());
  ASSERT_TRUE(TestQuantityDerivatives(tables.fit, tables.params, tables.eval).Ok());
  EXPECT_NEAR(model.epsInf.value, 3.0, kFormula);
  EXPECT_NEAR(tables.fit.TotalChiSq, before, kMovedBack * before);
}

TEST_F(DerivativeTables, TheStepComesFromTheFileAnd777MakesItRelative) {
  constexpr double kPrintedDifference = 0.2;  // the difference has few digits
  // With a step h the numeric column is off by h f''/2: the column of differences depends on the step.
  const auto difference = [&](const char* step) {
    constexpr std::size_t kRowOfWo = 10;
    folder.Write("DELTA.DAT", step);
    EXPECT_TRUE(TestDerivatives(tables.fit, tables.params, tables.eval).Ok());
    return std::stod(Lines("TestDeriv1.txt")[kRowOfWo].substr(10 + 11 + 1 + 11 + 8, 11));
  };
  const double absolute = difference("1e-3"), relative = difference("777");
  EXPECT_GT(absolute, 0);
  EXPECT_NEAR(absolute, relative, kPrintedDifference * absolute);  // Wo is 100: 777 means 1e-5 times 100
  EXPECT_GT(difference("1e-1"), 30 * absolute);
}

TEST_F(DerivativeTables, QuantitiesHaveARowEach) {
  ASSERT_TRUE(TestQuantityDerivatives(tables.fit, tables.params, tables.eval).Ok());
  const auto lines = Lines("TestDeriv.txt");
  ASSERT_EQ(lines.size(), 4u * (3 + 15));
  EXPECT_EQ(lines[1], "EIN, nm = 0, nl = 0, nc = 0, nep = 0, nen = 0");
  EXPECT_EQ(lines[3].substr(0, 6), "  R : ");
  EXPECT_EQ(lines[7].substr(0, 6), "Rps : ");
  EXPECT_EQ(lines[3].size(), 6u + 11 + 1 + 11 + 9 + 5);
  EXPECT_EQ(lines[8].substr(6, 23), "+1.0000E+00 +1.0000E+00");  // dE1/d(epsInf) is 1
}

TEST_F(DerivativeTables, AQuantityFarFromItsQuotientIsCalledFalse) {
  folder.Write("DELTA.DAT", "50");  // a step so long that the quotient is not a derivative
  ASSERT_TRUE(TestQuantityDerivatives(tables.fit, tables.params, tables.eval).Ok());
  EXPECT_NE(folder.Read("TestDeriv.txt").find("FALSE"), std::string::npos);
}

}  // namespace
}  // namespace kalvex

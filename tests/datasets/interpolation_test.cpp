// Values between the rows of a table, against slow computations.
#include "datasets/interpolation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "support/tolerances.h"

namespace kalvex {
namespace {

const std::vector<DataRow> kTable = {{1, 10, 1}, {2, 20, 2}, {4, 0, 4}, {4, 8, 6}, {8, 4, 8}};

// Rows at whole numbers, some with the same x.
std::vector<DataRow> RandomTable(std::mt19937& random) {
  std::uniform_real_distribution<double> value(-3, 5);
  std::vector<DataRow> rows(1 + random() % 12);
  for (DataRow& row : rows) row = {static_cast<double>(random() % 15), value(random), value(random)};
  std::sort(rows.begin(), rows.end(), [](const DataRow& a, const DataRow& b) { return a.x < b.x; });
  return rows;
}

int IntervalByScan(const std::vector<DataRow>& rows, double x) {
  if (x <= rows.front().x) return -1;
  if (x >= rows.back().x) return static_cast<int>(rows.size()) - 1;
  int i = 0;
  while (!(rows[static_cast<std::size_t>(i)].x <= x && x < rows[static_cast<std::size_t>(i) + 1].x)) ++i;
  return i;
}

TEST(Intervals, AreThoseOfALinearScan) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    const std::vector<DataRow> rows = RandomTable(random);
    for (double x = -1; x <= 16; x += 0.5) {
      const int expected = IntervalByScan(rows, x);
      ASSERT_EQ(FindInterval(rows, x), expected) << x;
      for (const int hint : {-5, -1, 0, 1, 3, 7, 11, 12, 1000}) {
        ASSERT_EQ(FindIntervalNear(rows, x, hint), expected) << x << ' ' << hint;
      }
      ASSERT_EQ(FindIntervalNear(rows, x, expected), expected) << x;
    }
  }
}

TEST(Intervals, TheFirstRowLiesBelowAndTheLastAtTheEnd) {
  EXPECT_EQ(FindInterval(kTable, 1), -1);
  EXPECT_EQ(FindInterval(kTable, 1.000001), 0);
  EXPECT_EQ(FindInterval(kTable, 2), 1);
  EXPECT_EQ(FindInterval(kTable, 4), 3);  // after both rows with that x
  EXPECT_EQ(FindInterval(kTable, 8), 4);
  const std::vector<DataRow> one = {{5, 7, 1}};
  EXPECT_EQ(FindInterval(one, 5), -1);
  EXPECT_EQ(FindInterval(one, 6), 0);
}

TEST(Interpolation, IsLinearBetweenTheRows) {
  EXPECT_EQ(InterpolateY(kTable, 1.5), 15);
  EXPECT_EQ(InterpolateY(kTable, 3), 10);
  EXPECT_EQ(InterpolateY(kTable, 6), 6);
  EXPECT_EQ(InterpolateSigma(kTable, 1.5), 1.5);
  EXPECT_EQ(InterpolateSigma(kTable, 7), 7.5);
}

TEST(Interpolation, GivesTheValuesOfTheRowsAtTheRows) {
  EXPECT_EQ(InterpolateY(kTable, 1), 10);
  EXPECT_EQ(InterpolateY(kTable, 2), 20);
  EXPECT_EQ(InterpolateY(kTable, 4), 8);  // of two rows of equal x, the later one
  EXPECT_EQ(InterpolateY(kTable, 8), 4);
}

TEST(Interpolation, HoldsTheEndsConstantAndNeverExtrapolates) {
  EXPECT_EQ(InterpolateY(kTable, 0), 10);
  EXPECT_EQ(InterpolateY(kTable, -1e30), 10);
  EXPECT_EQ(InterpolateY(kTable, 99), 4);
  EXPECT_EQ(InterpolateSigma(kTable, 0), 1);
  EXPECT_EQ(InterpolateSigma(kTable, 99), 8);
}

TEST(Interpolation, ATableOfOneRowIsConstant) {
  const std::vector<DataRow> one = {{5, 7, 1}};
  for (const double x : {4.0, 5.0, 6.0}) EXPECT_EQ(InterpolateY(one, x), 7);
}

TEST(Interpolation, InAnIntervalWithoutWidthIsTheMean) {
  EXPECT_EQ(InterpolateAt(kTable, 4, 2, &DataRow::y), 4);
  EXPECT_EQ(InterpolateAt(kTable, 4, 2, &DataRow::sigma), 5);
}

TEST(Interpolation, AgreesWithTheStraightLineThroughTheNeighbours) {
  std::mt19937 random(2);
  for (int round = 0; round < 100; ++round) {
    const std::vector<DataRow> rows = RandomTable(random);
    for (std::size_t i = 1; i < rows.size(); ++i) {
      const DataRow &a = rows[i - 1], &b = rows[i];
      if (a.x == b.x) continue;
      const double x = a.x + 0.3 * (b.x - a.x), y = (a.y * (b.x - x) + b.y * (x - a.x)) / (b.x - a.x);
      EXPECT_NEAR(InterpolateY(rows, x), y, 5 * kRound);  // 5: the largest value
    }
  }
}

// The value of the row whose interval, between the midpoints to its neighbours, contains x.
double StepFunction(const std::vector<DataRow>& rows, double x, double DataRow::*column) {
  std::size_t nearest = 0;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    if (x >= 0.5 * (rows[i - 1].x + rows[i].x)) nearest = i;
  }
  return rows[nearest].*column;
}

// Its integral from a to b, piece by piece between the steps.
double Integral(const std::vector<DataRow>& rows, double a, double b, double DataRow::*column) {
  std::vector<double> breaks = {a, b};
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const double step = 0.5 * (rows[i - 1].x + rows[i].x);
    if (step > a && step < b) breaks.push_back(step);
  }
  std::sort(breaks.begin(), breaks.end());
  double sum = 0;
  for (std::size_t i = 1; i < breaks.size(); ++i) {
    sum += (breaks[i] - breaks[i - 1]) * StepFunction(rows, 0.5 * (breaks[i - 1] + breaks[i]), column);
  }
  return sum;
}

TEST(Averaging, IsTheMeanOfTheStepFunction) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(-4, 20);
  for (int round = 0; round < 2000; ++round) {
    const std::vector<DataRow> rows = RandomTable(random);
    double a = place(random), b = place(random);
    if (round % 2) a = std::floor(a), b = std::floor(b);  // on rows and midpoints, too
    if (a > b) std::swap(a, b);
    if (b - a < 0.01) continue;
    // Sums of some ten lengths of up to 24 and values of up to 5, divided by a length of at least 0.01.
    const double allowed = 24 * 5 * kRound / (b - a);
    ASSERT_NEAR(AverageY(rows, a, b), Integral(rows, a, b, &DataRow::y) / (b - a), allowed) << a << ' ' << b;
    ASSERT_NEAR(AverageSigma(rows, a, b), Integral(rows, a, b, &DataRow::sigma) / (b - a), allowed) << a << ' ' << b;
  }
}

TEST(Averaging, StepsLieHalfwayBetweenTheRows) {
  const std::vector<DataRow> rows = {{0, 1, 10}, {2, 3, 30}, {6, 7, 50}};
  EXPECT_EQ(AverageY(rows, 0, 1), 1);
  EXPECT_EQ(AverageY(rows, 1, 4), 3);
  EXPECT_EQ(AverageY(rows, 0, 2), 2);
  EXPECT_EQ(AverageY(rows, 3.5, 4.5), 5);
  EXPECT_EQ(AverageY(rows, 0, 6), (1 * 1 + 3 * 3 + 2 * 7) / 6.0);
  EXPECT_EQ(AverageSigma(rows, 0, 2), 20);
}

TEST(Averaging, HoldsTheEndValuesBeyondTheTable) {
  EXPECT_EQ(AverageY(kTable, -5, -1), 10);
  EXPECT_EQ(AverageY(kTable, -5, 1), 10);
  EXPECT_EQ(AverageY(kTable, 8, 11), 4);
  EXPECT_EQ(AverageY(kTable, 9, 11), 4);
  const std::vector<DataRow> one = {{5, 7, 1}};
  EXPECT_EQ(AverageY(one, 0, 3), 7);
  EXPECT_EQ(AverageY(one, 4, 6), 7);
  EXPECT_EQ(AverageY(one, 6, 8), 7);
}

TEST(Averaging, OfAnEmptyStretchIsZero) {
  EXPECT_EQ(AverageY(kTable, 3, 3), 0);
  EXPECT_EQ(AverageY(kTable, 4, 3), 0);
  EXPECT_EQ(AverageSigma(kTable, 3, 3), 0);
}

TEST(Averaging, NeighbouringStretchesAddUp) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    const std::vector<DataRow> rows = RandomTable(random);
    const double parts = 4 * AverageY(rows, -1, 3) + 7 * AverageY(rows, 3, 10) + 6 * AverageY(rows, 10, 16);
    EXPECT_NEAR(17 * AverageY(rows, -1, 16), parts, 17 * 5 * kRound);
  }
}

TEST(DatasetValue, IsTheInterpolationOnItsRowsAndZeroWithoutRows) {
  Dataset dataset;
  EXPECT_EQ(DatasetValueAt(dataset, 100), 0);
  dataset.points = kTable;
  EXPECT_EQ(DatasetValueAt(dataset, 1.5), 15);
  EXPECT_EQ(DatasetValueAt(dataset, 99), 4);
  dataset.lastActive = 0;  // the cutting range has no influence
  EXPECT_EQ(DatasetValueAt(dataset, 6), 6);
}

}  // namespace
}  // namespace kalvex

// Operations on the rows of a dataset.
#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "datasets/dataset_operations.h"
#include "datasets/interpolation.h"
#include "datasets/read_dataset.h"
#include "support/quantities.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// Five rows at 100 to 500 cm-1 under the id 7.
class Operation : public testing::Test {
 protected:
  Operation() {
    dataset.id = 7;
    for (int i = 1; i <= 5; ++i) dataset.points.push_back({100.0 * i, 1.0 * i, 0.1});
    CutDataset(dataset, 0, 1000);
  }
  // firstActive, lastActive and nActive after a cut.
  std::array<int, 3> Cut(std::optional<double> low, std::optional<double> high) {
    CutDataset(dataset, low, high);
    return {dataset.firstActive, dataset.lastActive, dataset.nActive};
  }
  std::string Export(bool onlyFitted, bool errorBars) {
    EXPECT_TRUE(ExportDataset(dataset, folder.Path("out"), onlyFitted, errorBars).Ok());
    return folder.Read("out");
  }
  Dataset dataset;
  ScratchFolder folder;
};

using ActiveRange = Operation;

TEST_F(ActiveRange, AWideRangeHoldsEveryRow) {
  EXPECT_EQ(Cut(0, 1000), (std::array{0, 4, 5}));
  EXPECT_EQ(Cut(-1e30, 1e30), (std::array{0, 4, 5}));
}

TEST_F(ActiveRange, ARowOnTheLowerLimitIsInsideAndOneOnTheUpperIsOutside) {
  EXPECT_EQ(Cut(200, 400), (std::array{1, 2, 2}));
  EXPECT_EQ(Cut(199.9, 399.9), (std::array{1, 2, 2}));
  EXPECT_EQ(Cut(200.1, 400.1), (std::array{2, 3, 2}));
}

TEST_F(ActiveRange, TheLastRowIsInsideWhenTheUpperLimitIsOnItOrAbove) {
  EXPECT_EQ(Cut(100, 500), (std::array{0, 4, 5}));
  EXPECT_EQ(Cut(100, 499.9), (std::array{0, 3, 4}));
}

TEST_F(ActiveRange, TheFirstRowIsInsideWhenTheUpperLimitIsOnIt) {
  EXPECT_EQ(Cut(0, 100), (std::array{0, 0, 1}));
  EXPECT_EQ(Cut(0, 99.9), (std::array{0, -1, 0}));
  EXPECT_EQ(Cut(0, 100.1), (std::array{0, 0, 1}));
}

TEST_F(ActiveRange, ALowerLimitOnTheLastRowKeepsItAndOneAboveItPointsBehindTheEnd) {
  EXPECT_EQ(Cut(500, 1000), (std::array{4, 4, 1}));
  EXPECT_EQ(Cut(500, 500), (std::array{4, 4, 1}));
  EXPECT_EQ(Cut(500.1, 1000), (std::array{5, 4, 0}));
}

TEST_F(ActiveRange, LimitsInTheWrongOrderLeaveNoActiveRow) {
  EXPECT_EQ(Cut(400, 200), (std::array{3, 0, 0}));
  EXPECT_EQ(Cut(900, 1), (std::array{5, -1, 0}));
  EXPECT_EQ(Cut(300, 300)[2], 0);
}

TEST_F(ActiveRange, AgreesWithALinearScanForEveryPairOfLimits) {
  for (double low = 50; low <= 550; low += 25) {
    for (double high = 50; high <= 550; high += 25) {
      int first = 0, last = -1;
      while (first < 5 && 100 * (first + 1) < low) ++first;
      while (last < 4 && 100 * (last + 2) < high) ++last;
      if (high == 100) last = 0;
      if (high >= 500) last = 4;
      EXPECT_EQ(Cut(low, high), (std::array{first, last, std::max(0, last - first + 1)})) << low << ' ' << high;
    }
  }
}

TEST_F(ActiveRange, OneRowIsInsideWhenBothLimitsAllowIt) {
  dataset.points.resize(1);
  EXPECT_EQ(Cut(100, 100), (std::array{0, 0, 1}));
  EXPECT_EQ(Cut(101, 200), (std::array{1, 0, 0}));
  EXPECT_EQ(Cut(0, 99), (std::array{0, -1, 0}));
}

TEST_F(ActiveRange, RowsOfEqualXLieOnTheSameSide) {
  dataset.points = {{1, 0, 0}, {2, 0, 0}, {2, 0, 0}, {3, 0, 0}};
  EXPECT_EQ(Cut(2, 3), (std::array{1, 3, 3}));
  EXPECT_EQ(Cut(0, 2), (std::array{0, 0, 1}));
}

TEST_F(ActiveRange, ADatasetWithoutRowsIsLeftAlone) {
  dataset.points.clear();
  dataset.firstActive = 3;
  EXPECT_EQ(Cut(0, 10), (std::array{3, 4, 5}));
}

TEST_F(ActiveRange, ItsRowsAreThoseBetweenTheTwoNumbers) {
  const auto rows = [&](double low, double high) {
    Cut(low, high);
    const ActiveRows active = ActiveRowsOf(dataset);
    return std::pair(active.from, active.to);
  };
  EXPECT_EQ(rows(200, 400), std::pair(1, 3));
  EXPECT_EQ(rows(0, 1000), std::pair(0, 5));
  EXPECT_EQ(rows(900, 1000), std::pair(5, 5));
  const auto [from, to] = rows(400, 200);
  EXPECT_EQ(from, to);
}

TEST_F(Operation, ACutKeepsTheTableAndALimitThatIsNotGiven) {
  Cut(200, 400);
  EXPECT_EQ(Cut({}, 1000), (std::array{1, 4, 4}));
  EXPECT_EQ(dataset.CutMin, 200);
  EXPECT_EQ(Cut(300, {}), (std::array{2, 4, 3}));
  EXPECT_EQ(dataset.CutMax, 1000);
  EXPECT_EQ(Cut({}, {}), (std::array{2, 4, 3}));
  EXPECT_EQ(dataset.points.size(), 5u);
  EXPECT_EQ(Cut(0, {}), (std::array{0, 4, 5}));  // a wider range brings the rows back
}

TEST_F(Operation, TransformingScalesValuesAndErrorsAndShiftsValuesOnly) {
  TransformDataset(dataset, 4, 0.5);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(dataset.points[i].x, 100.0 * static_cast<double>(i + 1));
    EXPECT_EQ(dataset.points[i].y, 4 * static_cast<double>(i + 1) + 0.5);
    EXPECT_EQ(dataset.points[i].sigma, 4 * 0.1);
  }
}

TEST_F(Operation, ANegativeScaleMakesErrorsNegative) {
  TransformDataset(dataset, -1, 0);
  for (const DataRow& row : dataset.points) EXPECT_EQ(row.sigma, -0.1);
  EXPECT_EQ(dataset.points[2].y, -3);
}

TEST_F(Operation, TransformingFindsTheActiveRangeAnew) {
  dataset.CutMin = 250;
  TransformDataset(dataset, 1, 0);
  EXPECT_EQ(dataset.firstActive, 2);
  EXPECT_EQ(dataset.nActive, 3);
}

TEST_F(Operation, AScaleOfZeroCannotBeTakenBack) {
  TransformDataset(dataset, 0, 1);
  TransformDataset(dataset, 1, -1);
  for (const DataRow& row : dataset.points) EXPECT_EQ(row.y, 0);  // the table in memory is the only copy
}

TEST_F(Operation, NoiseIsAFreshDeviateForEachRowAndItsSigmaTheNewError) {
  NoiseGenerator noise, same;
  SeedNoise(noise, 3);
  SeedNoise(same, 3);
  AddNoise(dataset, noise, 0.5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(dataset.points[static_cast<std::size_t>(i)].y, (i + 1) + 0.5 * NextNormal(same));
    EXPECT_EQ(dataset.points[static_cast<std::size_t>(i)].sigma, 0.5);
  }
  EXPECT_EQ(noise.state, same.state);
}

TEST_F(Operation, NoiseOfZeroChangesNoValueAndSetsTheErrorsToZero) {
  NoiseGenerator noise;
  AddNoise(dataset, noise, 0);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(dataset.points[static_cast<std::size_t>(i)].y, i + 1);
    EXPECT_EQ(dataset.points[static_cast<std::size_t>(i)].sigma, 0);
  }
}

TEST_F(Operation, NoiseReachesTheRowsOutsideTheCuttingRangeToo) {
  Cut(200, 400);
  NoiseGenerator noise;
  AddNoise(dataset, noise, 0.25);
  for (const DataRow& row : dataset.points) EXPECT_EQ(row.sigma, 0.25);
}

TEST_F(Operation, UnloadingEmptiesTheRecordAndItsSettings) {
  dataset.MasterFile = "R.dat";
  dataset.name = "R.dat";
  dataset.Quantity = kRs;
  UnloadDataset(dataset);
  EXPECT_TRUE(dataset.points.empty());
  EXPECT_EQ(dataset.id, 0u);
  EXPECT_EQ(dataset.name + dataset.MasterFile, "");
  EXPECT_EQ(dataset.Quantity, kRefl);
  EXPECT_EQ(dataset.YErrVal, 0.01);
  EXPECT_EQ(dataset.XMin, 1);
  EXPECT_EQ(dataset.XMax, 1000);
  EXPECT_EQ(dataset.XPts, 1000);
  EXPECT_EQ(dataset.CutMax, 0);
  EXPECT_EQ(dataset.nActive, 0);
}

TEST_F(Operation, AFreeSlotIsUnloadedWithoutLosingItsSettings) {
  Dataset free;
  free.MasterFile = "R.dat";
  free.XPts = 7;
  UnloadDataset(free);
  EXPECT_EQ(free.MasterFile, "R.dat");
  EXPECT_EQ(free.XPts, 7);
}

TEST_F(Operation, OnAFreeSlotTheyChangeNothing) {
  Dataset free;
  NoiseGenerator noise;
  SeedNoise(noise, 9);
  TransformDataset(free, 2, 1);
  AddNoise(free, noise, 1);
  UnloadDataset(free);
  EXPECT_EQ(noise.state, 9u);
  EXPECT_EQ(free.id, 0u);
  EXPECT_TRUE(free.points.empty());
}

TEST_F(Operation, AnExportHasTwoOrThreeColumnsOfSixDigits) {
  dataset.points = {{0.5, 1.0 / 3, 1e-5}, {1234567, -1e-7, 0.25}, {1e22, 100000, 1}, {2e22, 1e6, 0.0001}};
  EXPECT_EQ(Export(false, false), "0.5 0.333333\n1.23457e+06 -1e-07\n1e+22 100000\n2e+22 1e+06\n");
  EXPECT_EQ(Export(false, true), "0.5 0.333333 1e-05\n1.23457e+06 -1e-07 0.25\n1e+22 100000 1\n2e+22 1e+06 0.0001\n");
}

TEST_F(Operation, AnExportOfTheFittedRowsIncludesThoseOnBothLimits) {
  Cut(100, 200);
  EXPECT_EQ(dataset.nActive, 1);  // unlike the fit, which leaves out the row on the upper limit
  EXPECT_EQ(Export(true, false), "100 1\n200 2\n");
  Cut(200, 400);
  EXPECT_EQ(Export(true, true), "200 2 0.1\n300 3 0.1\n400 4 0.1\n");
  Cut(210, 290);
  EXPECT_EQ(Export(true, false), "");
  EXPECT_EQ(Export(false, false), "100 1\n200 2\n300 3\n400 4\n500 5\n");
}

TEST_F(Operation, AFreeSlotExportsAnEmptyFileOverWhateverWasThere) {
  const std::string path = folder.Write("out", "old\n");
  EXPECT_TRUE(ExportDataset(Dataset(), path, false, false).Ok());
  EXPECT_EQ(folder.Read("out"), "");
}

TEST_F(Operation, AFileThatCannotBeWrittenMakesAnExportSayWhichOne) {
  for (const std::string& path : {folder.Path("no folder/a"), folder.Name(), std::string()}) {
    const Status status = ExportDataset(dataset, path, false, false);
    EXPECT_EQ(status.Code(), StatusCode::kCannotWrite) << path;
    EXPECT_EQ(status.About(), path);
  }
}

TEST_F(Operation, AnExportReadBackHasSixDigits) {
  for (DataRow& row : dataset.points) row.y = row.x / 7;
  Export(false, true);
  std::vector<DataRow> rows;
  ASSERT_EQ(ReadDatasetFile(folder.Path("out"), rows), ReadStatus::kRead);
  ASSERT_EQ(rows.size(), 5u);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(rows[i].x, dataset.points[i].x);
    EXPECT_NE(rows[i].y, dataset.points[i].y);
    EXPECT_NEAR(rows[i].y, dataset.points[i].y, kSixDigits * dataset.points[i].y);
    EXPECT_EQ(rows[i].sigma, 0.1);
  }
}

}  // namespace
}  // namespace kalvex

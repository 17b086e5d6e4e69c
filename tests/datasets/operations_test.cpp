// What can be done to a loaded dataset, and who is told of it.
#include <gtest/gtest.h>

#include <array>
#include <limits>

#include "datasets/dataset_operations.h"
#include "datasets/interpolation.h"
#include "datasets/read_dataset.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

// Writes down every notice, in order, with the number of rows that the dataset had when it came.
struct Heard {
  explicit Heard(const Dataset& watched) : dataset(watched) {
    notices.owner = this;
    notices.graphs = [](void* self, GraphEvent event, std::int64_t id) {
      static_cast<Heard*>(self)->Add("graphs " + std::to_string(static_cast<int>(event)), id);
    };
    notices.fit = [](void* self, FitNotice notice, std::uint32_t id) {
      const bool gone = notice == FitNotice::kDatasetGone;
      const bool changed = notice == FitNotice::kDatasetChanged;
      static_cast<Heard*>(self)->Add(gone ? "fit gone" : changed ? "fit changed" : "fit", id);
    };
  }
  void Add(const std::string& what, std::int64_t id) {
    all.push_back(what + " of " + std::to_string(id) + ", " + std::to_string(dataset.points.size()) + " rows");
  }
  const Dataset& dataset;
  std::vector<std::string> all;
  Notices notices;
};

using Told = std::vector<std::string>;

// Slot 2 holds five rows at 100 to 500 cm-1 under the id 7.
class Operation : public testing::Test {
 protected:
  Operation() : heard(table.slots[1]) {
    Slot().id = 7;
    for (int i = 1; i <= 5; ++i) Slot().points.push_back({100.0 * i, 1.0 * i, 0.1});
    CutDatasetNo(table, 2, 0, 1000);
  }
  Dataset& Slot() { return table.slots[1]; }
  // firstActive, lastActive and nActive after a cut.
  std::array<int, 3> Cut(std::optional<double> low, std::optional<double> high) {
    EXPECT_TRUE(CutDatasetNo(table, 2, low, high));
    return {Slot().firstActive, Slot().lastActive, Slot().nActive};
  }
  std::string Export(bool onlyFitted, bool errorBars) {
    EXPECT_TRUE(ExportDatasetNo(table, 2, folder.Path("out"), onlyFitted, errorBars));
    return folder.Read("out");
  }
  DatasetTable table;
  Heard heard;
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
  Slot().points.resize(1);
  EXPECT_EQ(Cut(100, 100), (std::array{0, 0, 1}));
  EXPECT_EQ(Cut(101, 200), (std::array{1, 0, 0}));
  EXPECT_EQ(Cut(0, 99), (std::array{0, -1, 0}));
}

TEST_F(ActiveRange, RowsOfEqualXLieOnTheSameSide) {
  Slot().points = {{1, 0, 0}, {2, 0, 0}, {2, 0, 0}, {3, 0, 0}};
  EXPECT_EQ(Cut(2, 3), (std::array{1, 3, 3}));
  EXPECT_EQ(Cut(0, 2), (std::array{0, 0, 1}));
}

TEST_F(ActiveRange, ADatasetWithoutRowsIsLeftAlone) {
  Slot().points.clear();
  Slot().firstActive = 3;
  EXPECT_EQ(Cut(0, 10), (std::array{3, 4, 5}));
}

TEST_F(ActiveRange, ItsRowsAreThoseBetweenTheTwoNumbers) {
  const auto rows = [&](double low, double high) {
    Cut(low, high);
    const ActiveRows active = ActiveRowsOf(Slot());
    return std::pair(active.from, active.to);
  };
  EXPECT_EQ(rows(200, 400), std::pair(1, 3));
  EXPECT_EQ(rows(0, 1000), std::pair(0, 5));
  EXPECT_EQ(rows(900, 1000), std::pair(5, 5));
  const auto [from, to] = rows(400, 200);
  EXPECT_EQ(from, to);
}

TEST_F(Operation, ACutKeepsTheTableAndALimitThatIsNotGivenAndTellsNobody) {
  Cut(200, 400);
  EXPECT_EQ(Cut({}, 1000), (std::array{1, 4, 4}));
  EXPECT_EQ(Slot().CutMin, 200);
  EXPECT_EQ(Cut(300, {}), (std::array{2, 4, 3}));
  EXPECT_EQ(Slot().CutMax, 1000);
  EXPECT_EQ(Cut({}, {}), (std::array{2, 4, 3}));
  EXPECT_EQ(Slot().points.size(), 5u);
  EXPECT_EQ(Cut(0, {}), (std::array{0, 4, 5}));  // a wider range brings the rows back
  EXPECT_TRUE(heard.all.empty());
}

TEST_F(Operation, TransformingScalesValuesAndErrorsAndShiftsValuesOnly) {
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 2, 4, 0.5));
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(Slot().points[i].x, 100.0 * static_cast<double>(i + 1));
    EXPECT_EQ(Slot().points[i].y, 4 * static_cast<double>(i + 1) + 0.5);
    EXPECT_EQ(Slot().points[i].sigma, 4 * 0.1);
  }
  EXPECT_EQ(heard.all, (Told{"graphs 1 of 7, 5 rows", "fit changed of 7, 5 rows"}));
}

TEST_F(Operation, ANegativeScaleMakesErrorsNegative) {
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 2, -1, 0));
  for (const DataRow& row : Slot().points) EXPECT_EQ(row.sigma, -0.1);
  EXPECT_EQ(Slot().points[2].y, -3);
}

TEST_F(Operation, TransformingFindsTheActiveRangeAnew) {
  Slot().CutMin = 250;
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 2, 1, 0));
  EXPECT_EQ(Slot().firstActive, 2);
  EXPECT_EQ(Slot().nActive, 3);
}

TEST_F(Operation, AScaleOfZeroCannotBeTakenBack) {
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 2, 0, 1));
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 2, 1, -1));
  for (const DataRow& row : Slot().points) EXPECT_EQ(row.y, 0);  // the table in memory is the only copy
}

TEST_F(Operation, NoiseIsAFreshDeviateForEachRowAndItsSigmaTheNewError) {
  NoiseGenerator noise, same;
  SeedNoise(noise, 3);
  SeedNoise(same, 3);
  ASSERT_TRUE(AddNoiseToDataset(table, heard.notices, noise, 2, 0.5));
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Slot().points[static_cast<std::size_t>(i)].y, (i + 1) + 0.5 * NextNormal(same));
    EXPECT_EQ(Slot().points[static_cast<std::size_t>(i)].sigma, 0.5);
  }
  EXPECT_EQ(noise.state, same.state);
  EXPECT_EQ(heard.all, (Told{"graphs 6 of 7, 5 rows", "fit gone of 7, 5 rows"}));
}

TEST_F(Operation, NoiseOfZeroChangesNoValueAndSetsTheErrorsToZero) {
  NoiseGenerator noise;
  ASSERT_TRUE(AddNoiseToDataset(table, heard.notices, noise, 2, 0));
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Slot().points[static_cast<std::size_t>(i)].y, i + 1);
    EXPECT_EQ(Slot().points[static_cast<std::size_t>(i)].sigma, 0);
  }
}

TEST_F(Operation, NoiseReachesTheRowsOutsideTheCuttingRangeToo) {
  Cut(200, 400);
  NoiseGenerator noise;
  ASSERT_TRUE(AddNoiseToDataset(table, heard.notices, noise, 2, 0.25));
  for (const DataRow& row : Slot().points) EXPECT_EQ(row.sigma, 0.25);
}

TEST_F(Operation, UnloadingTellsGraphsAndFitBeforeItFreesTheSlot) {
  Slot().MasterFile = "R.dat";
  Slot().name = "R.dat";
  Slot().Quantity = 3;
  ASSERT_TRUE(UnloadDatasetNo(table, heard.notices, 2));
  EXPECT_EQ(heard.all, (Told{"graphs 0 of 7, 5 rows", "fit gone of 7, 5 rows"}));
  EXPECT_TRUE(Slot().points.empty());
  EXPECT_EQ(Slot().id, 0u);
  EXPECT_EQ(Slot().name + Slot().MasterFile, "");
  EXPECT_EQ(Slot().Quantity, 0);
  EXPECT_EQ(Slot().YErrVal, 0.01);
  EXPECT_EQ(Slot().XMin, 1);
  EXPECT_EQ(Slot().XMax, 1000);
  EXPECT_EQ(Slot().XPts, 1000);
  EXPECT_EQ(Slot().CutMax, 0);
  EXPECT_EQ(Slot().nActive, 0);
}

TEST_F(Operation, AFreeSlotIsUnloadedWithoutLosingItsSettings) {
  Dataset& free = table.slots[4];
  free.MasterFile = "R.dat";
  free.XPts = 7;
  UnloadDataset(free);
  EXPECT_EQ(free.MasterFile, "R.dat");
  EXPECT_EQ(free.XPts, 7);
}

// Whether a slot is loaded is not checked: the listeners hear of the id 0.
TEST_F(Operation, OperationsOnAFreeSlotSayTheIdZeroAndChangeNothing) {
  NoiseGenerator noise;
  SeedNoise(noise, 9);
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 3, 2, 1));
  ASSERT_TRUE(CutDatasetNo(table, 3, 5, 6));
  ASSERT_TRUE(AddNoiseToDataset(table, heard.notices, noise, 3, 1));
  ASSERT_TRUE(UnloadDatasetNo(table, heard.notices, 3));
  EXPECT_EQ(heard.all, (Told{"graphs 1 of 0, 5 rows", "fit changed of 0, 5 rows", "graphs 6 of 0, 5 rows",
                             "fit gone of 0, 5 rows", "graphs 0 of 0, 5 rows", "fit gone of 0, 5 rows"}));
  EXPECT_EQ(noise.state, 9u);
  EXPECT_EQ(CountDatasets(table), 1);
}

TEST_F(Operation, WithoutListenersTheyWorkTheSame) {
  NoiseGenerator noise;
  EXPECT_TRUE(TransformDatasetNo(table, {}, 2, 2, 0));
  EXPECT_TRUE(AddNoiseToDataset(table, {}, noise, 2, 0));
  EXPECT_EQ(Slot().points[4].y, 10);
  EXPECT_TRUE(UnloadDatasetNo(table, {}, 2));
  EXPECT_EQ(CountDatasets(table), 0);
}

TEST_F(Operation, SlotsOutsideTheTableAreLeftAlone) {
  NoiseGenerator noise;
  for (const int slot : {0, 101, -1}) {
    EXPECT_FALSE(UnloadDatasetNo(table, heard.notices, slot));
    EXPECT_FALSE(TransformDatasetNo(table, heard.notices, slot, 1, 1));
    EXPECT_FALSE(CutDatasetNo(table, slot, 1, 2));
    EXPECT_FALSE(AddNoiseToDataset(table, heard.notices, noise, slot, 1));
    EXPECT_FALSE(ExportDatasetNo(table, slot, folder.Path("c"), false, false));
  }
  EXPECT_FALSE(folder.Has("c"));
  EXPECT_TRUE(heard.all.empty());
}

TEST_F(Operation, AnExportHasTwoOrThreeColumnsOfSixDigits) {
  Slot().points = {{0.5, 1.0 / 3, 1e-5}, {1234567, -1e-7, 0.25}, {1e22, 100000, 1}, {2e22, 1e6, 0.0001}};
  EXPECT_EQ(Export(false, false), "0.5 0.333333\n1.23457e+06 -1e-07\n1e+22 100000\n2e+22 1e+06\n");
  EXPECT_EQ(Export(false, true), "0.5 0.333333 1e-05\n1.23457e+06 -1e-07 0.25\n1e+22 100000 1\n2e+22 1e+06 0.0001\n");
}

TEST_F(Operation, AnExportOfTheFittedRowsIncludesThoseOnBothLimits) {
  Cut(100, 200);
  EXPECT_EQ(Slot().nActive, 1);  // unlike the fit, which leaves out the row on the upper limit
  EXPECT_EQ(Export(true, false), "100 1\n200 2\n");
  Cut(200, 400);
  EXPECT_EQ(Export(true, true), "200 2 0.1\n300 3 0.1\n400 4 0.1\n");
  Cut(210, 290);
  EXPECT_EQ(Export(true, false), "");
  EXPECT_EQ(Export(false, false), "100 1\n200 2\n300 3\n400 4\n500 5\n");
}

TEST_F(Operation, AFreeSlotExportsAnEmptyFileOverWhateverWasThere) {
  const std::string path = folder.Write("out", "old\n");
  EXPECT_TRUE(ExportDatasetNo(table, 9, path, false, false));
  EXPECT_EQ(folder.Read("out"), "");
}

TEST_F(Operation, AFileThatCannotBeWrittenMakesAnExportDoNothing) {
  EXPECT_FALSE(ExportDatasetNo(table, 2, folder.Path("no folder/a"), false, false));
  EXPECT_FALSE(ExportDatasetNo(table, 2, folder.Name(), false, false));
  EXPECT_FALSE(ExportDatasetNo(table, 2, "", false, false));
}

TEST_F(Operation, AnExportReadBackHasSixDigits) {
  for (DataRow& row : Slot().points) row.y = row.x / 7;
  Export(false, true);
  std::vector<DataRow> rows;
  ASSERT_EQ(ReadDatasetFile(folder.Path("out"), rows), ReadStatus::kRead);
  ASSERT_EQ(rows.size(), 5u);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(rows[i].x, Slot().points[i].x);
    EXPECT_NE(rows[i].y, Slot().points[i].y);
    EXPECT_NEAR(rows[i].y, Slot().points[i].y, 5e-6 * Slot().points[i].y);
    EXPECT_EQ(rows[i].sigma, 0.1);
  }
}

}  // namespace
}  // namespace kalvex

// Reading, loading and changing datasets.
#include <gtest/gtest.h>

#include <cmath>

#include "datasets/dataset_operations.h"
#include "datasets/interpolation.h"
#include "datasets/load_dataset.h"
#include "datasets/read_dataset.h"
#include "models/quantity.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using Rows = std::vector<std::array<double, 3>>;

Rows Plain(const std::vector<DataRow>& rows) {
  Rows plain;
  for (const DataRow& row : rows) plain.push_back({row.x, row.y, row.sigma});
  return plain;
}

class Reading : public testing::Test {
 protected:
  Rows Read(const std::string& text) {
    std::vector<DataRow> rows;
    status = ReadDatasetFile(folder.Write("a.dat", text), rows);
    return Plain(rows);
  }
  ScratchFolder folder;
  ReadStatus status = ReadStatus::kRead;
};

TEST_F(Reading, HeadersCommentsAndBlankLinesArePassedOver) {
  EXPECT_EQ(Read("Wavenumber Refl\n# 5 6\n1 2 3\nunits: 7\n\n  2\t3 4 5 6\r\n\n"), (Rows{{1, 2, 3}, {2, 3, 4}}));
}

TEST_F(Reading, MissingNumbersHaveDefaults) {
  EXPECT_EQ(Read("100\n200 0.5\n300 0.6 x 7\n"), (Rows{{100, 0, 0.01}, {200, 0.5, 0.01}, {300, 0.6, 0.01}}));
}

TEST_F(Reading, ACommaEndsTheScan) { EXPECT_EQ(Read("100,0.5,0.1\n"), (Rows{{100, 0, 0.01}})); }

TEST_F(Reading, WordsThatBeginLikeInfinityAreNoNumbers) {
  EXPECT_EQ(Read("Infrared data\nnanometres\ninf 1\nnan 2\n1 nano\n2 3\n"), (Rows{{1, 0, 0.01}, {2, 3, 0.01}}));
}

TEST_F(Reading, RowsAreSorted) { EXPECT_EQ(Read("3 1\n1 2\n2 3\n"), (Rows{{1, 2, 0.01}, {2, 3, 0.01}, {3, 1, 0.01}})); }

TEST_F(Reading, OfEqualXEverySecondGoes) {
  const auto left = [&](int equal) {
    std::string text = "0 0\n";
    for (int i = 0; i < equal; ++i) text += "5 1\n";
    return Read(text + "9 0\n").size() - 2;
  };
  EXPECT_EQ(left(1), 1u);
  EXPECT_EQ(left(2), 1u);
  EXPECT_EQ(left(3), 2u);
  EXPECT_EQ(left(4), 2u);
  EXPECT_EQ(left(5), 3u);
}

TEST_F(Reading, ALineBeyond1023CharactersIsSeveral) {
  const std::string filler(1023 - 3, ' ');
  EXPECT_EQ(Read("1 2" + filler + "3 4\n5 6\n"), (Rows{{1, 2, 0.01}, {3, 4, 0.01}, {5, 6, 0.01}}));
}

TEST_F(Reading, ANumberMayEndTheFile) { EXPECT_EQ(Read("1 2\n3 4"), (Rows{{1, 2, 0.01}, {3, 4, 0.01}})); }

TEST_F(Reading, NothingUsableIsAFailure) {
  for (const std::string& text :
       {std::string(), std::string("\n\n"), std::string("only words\n"), std::string("\0\x01\xff", 3)}) {
    Read(text);
    EXPECT_EQ(status, ReadStatus::kNoUsableLine);
  }
  std::vector<DataRow> rows;
  EXPECT_EQ(ReadDatasetFile(folder.Path("none"), rows), ReadStatus::kCannotOpen);
  EXPECT_EQ(ReadDatasetFile(folder.Name(), rows), ReadStatus::kCannotOpen);
}

const std::vector<DataRow> kTable = {{1, 10, 1}, {2, 20, 2}, {4, 0, 4}, {4, 8, 6}, {8, 4, 8}};

TEST(Interpolation, IntervalsAreThoseOfALinearScan) {
  for (double x = 0; x < 10; x += 0.25) {
    int expected = -1;
    if (x >= kTable.back().x) {
      expected = static_cast<int>(kTable.size()) - 1;
    } else if (x > kTable.front().x) {
      while (kTable[static_cast<std::size_t>(expected) + 1].x <= x) ++expected;
    }
    EXPECT_EQ(FindInterval(kTable, x), expected) << x;
    for (int hint = -1; hint < 6; ++hint) EXPECT_EQ(FindIntervalNear(kTable, x, hint), expected) << x << ' ' << hint;
  }
}

TEST(Interpolation, IsLinearInsideAndConstantOutside) {
  EXPECT_EQ(InterpolateY(kTable, 0), 10);
  EXPECT_EQ(InterpolateY(kTable, 1.5), 15);
  EXPECT_EQ(InterpolateY(kTable, 3), 10);
  EXPECT_EQ(InterpolateY(kTable, 6), 6);
  EXPECT_EQ(InterpolateY(kTable, 99), 4);
  EXPECT_EQ(InterpolateSigma(kTable, 1.5), 1.5);
  const std::vector<DataRow> three = {{1, 2, 0}, {1, 4, 0}, {3, 0, 0}};
  EXPECT_EQ(InterpolateAt(three, 1, 0, &DataRow::y), 3);  // two rows of one x: their mean
  EXPECT_EQ(InterpolateY(std::vector<DataRow>{{5, 7, 1}}, 5), 7);
}

double StepFunction(const std::vector<DataRow>& rows, double x) {
  std::size_t nearest = 0;
  for (std::size_t i = 1; i < rows.size(); ++i) {
    if (x >= 0.5 * (rows[i - 1].x + rows[i].x)) nearest = i;
  }
  return rows[nearest].y;
}

TEST(Averaging, IsTheIntegralOfTheStepFunction) {
  const std::vector<DataRow> rows = {{1, 10, 0}, {2, 20, 0}, {4, -5, 0}, {7, 3, 0}};
  for (const auto& [a, b] : {std::pair(1.2, 1.4), std::pair(0.0, 9.0), std::pair(1.0, 7.0), std::pair(3.0, 3.5),
                             std::pair(-5.0, -1.0), std::pair(8.0, 11.0), std::pair(2.0, 4.0)}) {
    constexpr int kSteps = 20000;
    double sum = 0;
    for (int i = 0; i < kSteps; ++i) sum += StepFunction(rows, a + (i + 0.5) * (b - a) / kSteps);
    EXPECT_NEAR(AverageY(rows, a, b), sum / kSteps, 0.01) << a << ' ' << b;
  }
  EXPECT_EQ(AverageY(rows, 3, 3), 0);
  EXPECT_EQ(AverageY(rows, 4, 3), 0);
}

class Loading : public testing::Test {
 protected:
  Loading() { args.MasterFile = folder.Write("T_sample.dat", "10 1 0.1\n20 2 0.2\n40 4 0.4\n"); }
  const char* Load() { return LoadDatasetFromMacro(table, args); }
  Dataset& Slot() { return table.slots[static_cast<std::size_t>(args.DatasetNo.value_or(1) - 1)]; }
  Rows Points() { return Plain(Slot().points); }

  ScratchFolder folder;
  DatasetTable table;
  LoadDatasetArgs args;
};

TEST_F(Loading, TheMasterFileAloneFillsTheRecord) {
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Points(), (Rows{{10, 1, 0.1}, {20, 2, 0.2}, {40, 4, 0.4}}));
  EXPECT_EQ(Slot().id, 1u);
  EXPECT_EQ(Slot().name, "T_sample.dat");
  EXPECT_EQ(Slot().Quantity, kTrans);
  EXPECT_EQ(Slot().XMin, 10);
  EXPECT_EQ(Slot().XMax, 40);
  EXPECT_EQ(Slot().CutMin, 10);
  EXPECT_EQ(Slot().CutMax, 40);
  EXPECT_EQ(Slot().nActive, 3);
  EXPECT_EQ(Slot().firstActive, 0);
  EXPECT_EQ(Slot().lastActive, 2);
}

TEST_F(Loading, IdsRiseAndAreNotUsedAgain) {
  Load();
  args.DatasetNo = 100;
  Load();
  UnloadDataset(table.slots[0]);
  args.DatasetNo = 1;
  Load();
  EXPECT_EQ(table.slots[0].id, 3u);
  EXPECT_EQ(ListDatasetIds(table), (std::vector<std::uint32_t>{3, 2}));
  EXPECT_EQ(CountDatasets(table), 2);
  EXPECT_EQ(FirstDatasetId(table), 3u);
  EXPECT_EQ(GetDatasetById(table, 2), &table.slots[99]);
  EXPECT_EQ(GetDatasetById(table, 1), nullptr);
  EXPECT_EQ(GetDatasetById(table, 0), &table.slots[1]);  // a free slot
}

TEST_F(Loading, NamesAreCutTo50Characters) {
  const std::string name = std::string(60, 'x');
  args.MasterFile = folder.Write(name, "1 2\n");
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Slot().name, std::string(50, 'x'));
}

TEST_F(Loading, AMatchingQuantityOverridesTheName) {
  args.Quantity = "e1";
  Load();
  EXPECT_EQ(Slot().Quantity, kE1);
  args.Quantity = "Refl";
  Load();
  EXPECT_EQ(Slot().Quantity, kTrans);
}

TEST_F(Loading, XOfAnotherFileTakesTheMastersValuesThere) {
  args.XMethod = 2;
  args.XFile = folder.Write("x.dat", "30\n5\n99\n");
  ASSERT_EQ(Load(), nullptr);
  const Rows points = Points();
  ASSERT_EQ(points.size(), 3u);
  EXPECT_EQ(points[0], (std::array{5.0, 1.0, 0.1}));
  EXPECT_EQ(points[1][1], 3);
  EXPECT_NEAR(points[1][2], 0.3, 1e-15);
  EXPECT_EQ(points[2], (std::array{99.0, 4.0, 0.4}));
}

TEST_F(Loading, GeneratedGrids) {
  args.XMethod = 3;
  args.XMin = 10;
  args.XMax = 1000;
  args.XPts = 3;
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Points()[1][0], 505);
  args.XGrid = 2;
  ASSERT_EQ(Load(), nullptr);
  EXPECT_CLOSE(Points()[1][0], 100, kRound);
  EXPECT_EQ(Points()[2][1], 4);  // the master's last value holds beyond its end
  args.XMin = args.XMax = 50;
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Points()[2][0], 50);
}

TEST_F(Loading, FixedValuesAndErrors) {
  args.YMethod = 2;
  args.YVal = 0.7;
  args.YErrMethod = 3;
  args.YErrVal = 0.05;
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Points()[2], (std::array{40.0, 0.7, 0.05}));
  args.YErrMethod = 2;
  args.YErrFile = folder.Write("err.dat", "0 0.5\n100 0.5\n");
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Points()[2], (std::array{40.0, 0.7, 0.5}));
}

TEST_F(Loading, AveragingTakesTheCellsBetweenMidpoints) {
  args.Match = 2;
  ASSERT_EQ(Load(), nullptr);
  // The cells are 10 to 15, 15 to 30 and 30 to 40; the step function has its steps at 15 and 30.
  EXPECT_EQ(Points()[0][1], 1);
  EXPECT_EQ(Points()[1][1], 2);
  EXPECT_EQ(Points()[2][1], 4);
  args.XMethod = 2;
  args.XFile = folder.Write("x.dat", "10\n40\n");
  ASSERT_EQ(Load(), nullptr);  // cells 10 to 25 and 25 to 40
  EXPECT_NEAR(Points()[0][1], (5 * 1 + 10 * 2) / 15.0, 1e-14);
  EXPECT_NEAR(Points()[1][1], (5 * 2 + 10 * 4) / 15.0, 1e-14);
  EXPECT_NEAR(Points()[0][2], (5 * 0.1 + 10 * 0.2) / 15.0, 1e-14);
}

TEST_F(Loading, AveragingATableOfOneRowGivesZero) {
  args.MasterFile = folder.Write("R.dat", "10 1\n");
  args.Match = 2;
  ASSERT_EQ(Load(), nullptr);
  EXPECT_EQ(Points(), (Rows{{10, 0, 0}}));
}

TEST_F(Loading, EachFailureHasItsWordsInTheOrderOfTheChecks) {
  const auto message = [&](auto change) {
    const LoadDatasetArgs before = args;
    change();
    const char* const said = Load();
    args = before;
    return std::string(said ? said : "");
  };
  const std::string words = folder.Write("words.dat", "none\n"), none = folder.Path("none.dat");
  EXPECT_EQ(message([&] { args.MasterFile = none; }), "Cannot open master file.");
  EXPECT_EQ(message([&] { args.MasterFile = words; }), "Master file is empty or of improper format.");
  EXPECT_EQ(message([&] { args.XMethod = 2; }), "Cannot open file for X.");
  EXPECT_EQ(message([&] {
              args.XMethod = 2;
              args.XFile = words;
            }),
            "File for X is empty or of improper format.");
  EXPECT_EQ(message([&] { args.YErrMethod = 2; }), "Cannot open file for Yerr.");
  EXPECT_EQ(message([&] {
              args.YErrMethod = 2;
              args.YErrFile = words;
            }),
            "File for Yerr is empty or of improper format.");
  EXPECT_EQ(message([&] {
              args.XMethod = 3;
              args.XMin = 2;
              args.XMax = 1;
              args.XPts = 1;
            }),
            "Xmax should be larger, than Xmin.");
  EXPECT_EQ(message([&] {
              args.XMethod = 3;
              args.XPts = 1;
              args.XGrid = 2;
              args.XMin = -1;
            }),
            "# pts should be more than 1.");
  EXPECT_EQ(message([&] {
              args.XMethod = 3;
              args.XGrid = 2;
              args.XMin = 0;
            }),
            "For logarithmic grid Xmin and Xmax should be positive.");
  EXPECT_EQ(message([&] {
              args.XMethod = 3;
              args.XPts = 2147483647;
            }),
            "Not enough memory for the dataset.");
  EXPECT_EQ(message([&] {
              args.YErrMethod = 3;
              args.YErrVal = 0;
            }),
            "YErr should be larger than 0.");
  EXPECT_EQ(message([&] {
              args.XMethod = 3;
              args.YMethod = 2;
              args.MasterFile.reset();
            }),
            "Cannot open master file.");
}

TEST_F(Loading, AFailureKeepsThePointsButForTheLastCheck) {
  Load();
  args.XMethod = 3;
  args.XPts = 1;
  EXPECT_NE(Load(), nullptr);
  EXPECT_EQ(Points().size(), 3u);
  EXPECT_EQ(Slot().id, 1u);
  args.XPts = 7;
  args.YErrMethod = 3;
  args.YErrVal = -1;
  EXPECT_NE(Load(), nullptr);
  EXPECT_EQ(Points().size(), 7u);
  EXPECT_EQ(Slot().id, 1u);
}

TEST_F(Loading, WrongMethodsAndSlotsAreRefused) {
  for (const int slot : {0, 101, -3}) {
    args.DatasetNo = slot;
    EXPECT_NE(Load(), nullptr);
  }
  args.DatasetNo = 1;
  args.XMethod = 4;
  EXPECT_NE(Load(), nullptr);
}

struct Heard {
  std::vector<std::pair<int, std::int64_t>> graphs;
  std::vector<std::pair<FitNotice, std::uint32_t>> fit;
  Notices notices;
  Heard() {
    notices.owner = this;
    notices.graphs = [](void* self, GraphEvent event, std::int64_t id) {
      static_cast<Heard*>(self)->graphs.emplace_back(static_cast<int>(event), id);
    };
    notices.fit = [](void* self, FitNotice notice, std::uint32_t id) {
      static_cast<Heard*>(self)->fit.emplace_back(notice, id);
    };
  }
};

class Operations : public testing::Test {
 protected:
  Operations() {
    Dataset& dataset = table.slots[1];
    dataset.id = 7;
    for (int i = 1; i <= 5; ++i) dataset.points.push_back({100.0 * i, 1.0 * i, 0.1});
    CutDatasetNo(table, 2, 0, 1000);
  }
  Dataset& Slot() { return table.slots[1]; }
  std::array<int, 3> Cut(double low, double high) {
    CutDatasetNo(table, 2, low, high);
    return {Slot().firstActive, Slot().lastActive, Slot().nActive};
  }
  DatasetTable table;
  Heard heard;
  ScratchFolder folder;
};

TEST_F(Operations, TheActiveRangeHasALimitInsideBelowAndOutsideAbove) {
  EXPECT_EQ(Cut(0, 1000), (std::array{0, 4, 5}));
  EXPECT_EQ(Cut(100, 500), (std::array{0, 4, 5}));
  EXPECT_EQ(Cut(200, 400), (std::array{1, 2, 2}));  // a row on the lower limit is in, one on the upper is out
  EXPECT_EQ(Cut(201, 401), (std::array{2, 3, 2}));
  EXPECT_EQ(Cut(0, 99), (std::array{0, -1, 0}));
  EXPECT_EQ(Cut(0, 100), (std::array{0, 0, 1}));  // but for the first row
  EXPECT_EQ(Cut(501, 999), (std::array{5, 4, 0}));
  EXPECT_EQ(Cut(400, 200), (std::array{3, 0, 0}));
  EXPECT_EQ(Cut(500, 500), (std::array{4, 4, 1}));
  const ActiveRows none = ActiveRowsOf(Slot());
  EXPECT_EQ(none.to - none.from, 1);
}

TEST_F(Operations, ALimitThatIsNotGivenStaysAndNobodyIsTold) {
  Cut(200, 400);
  CutDatasetNo(table, 2, {}, 1000);
  EXPECT_EQ(Slot().CutMin, 200);
  EXPECT_EQ(Slot().nActive, 4);
  EXPECT_TRUE(heard.graphs.empty());
}

TEST_F(Operations, TransformingScalesErrorsTooAndTells) {
  ASSERT_TRUE(TransformDatasetNo(table, heard.notices, 2, -1, 10));
  EXPECT_EQ(Slot().points[2].y, 7);
  EXPECT_EQ(Slot().points[2].sigma, -0.1);
  EXPECT_EQ(heard.graphs, (std::vector<std::pair<int, std::int64_t>>{{1, 7}}));
  EXPECT_EQ(heard.fit, (std::vector<std::pair<FitNotice, std::uint32_t>>{{FitNotice::kDatasetChanged, 7}}));
}

TEST_F(Operations, NoiseOfZeroSetsOnlyTheErrors) {
  NoiseGenerator noise;
  ASSERT_TRUE(AddNoiseToDataset(table, heard.notices, noise, 2, 0));
  EXPECT_EQ(Slot().points[2].y, 3);
  EXPECT_EQ(Slot().points[2].sigma, 0);
  EXPECT_EQ(heard.graphs, (std::vector<std::pair<int, std::int64_t>>{{6, 7}}));
  EXPECT_EQ(heard.fit, (std::vector<std::pair<FitNotice, std::uint32_t>>{{FitNotice::kDatasetGone, 7}}));
}

TEST_F(Operations, NoiseIsAFreshDeviateForEachRow) {
  NoiseGenerator noise, again;
  SeedNoise(noise, 3);
  SeedNoise(again, 3);
  AddNoiseToDataset(table, heard.notices, noise, 2, 0.5);
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(Slot().points[static_cast<std::size_t>(i)].y, (i + 1) + 0.5 * NextNormal(again));
    EXPECT_EQ(Slot().points[static_cast<std::size_t>(i)].sigma, 0.5);
  }
}

TEST_F(Operations, UnloadingTellsAndFreesTheSlot) {
  ASSERT_TRUE(UnloadDatasetNo(table, heard.notices, 2));
  EXPECT_EQ(Slot().id, 0u);
  EXPECT_TRUE(Slot().points.empty());
  EXPECT_EQ(Slot().YErrVal, 0.01);
  EXPECT_EQ(Slot().XPts, 1000);
  EXPECT_EQ(heard.graphs, (std::vector<std::pair<int, std::int64_t>>{{0, 7}}));
  EXPECT_EQ(heard.fit, (std::vector<std::pair<FitNotice, std::uint32_t>>{{FitNotice::kDatasetGone, 7}}));
}

TEST_F(Operations, ExportsAreLinesOfSixDigits) {
  Slot().points[0].y = 1.0 / 3;
  ExportDatasetNo(table, 2, folder.Path("a"), false, false);
  EXPECT_EQ(folder.Read("a"), "100 0.333333\n200 2\n300 3\n400 4\n500 5\n");
  Cut(200, 400);
  ExportDatasetNo(table, 2, folder.Path("a"), true, true);
  EXPECT_EQ(folder.Read("a"), "200 2 0.1\n300 3 0.1\n400 4 0.1\n");  // here the upper limit is in
  ExportDatasetNo(table, 9, folder.Path("b"), false, false);
  EXPECT_EQ(folder.Read("b"), "");
  EXPECT_FALSE(ExportDatasetNo(table, 2, folder.Path("no folder/a"), false, false));
}

TEST_F(Operations, SlotsOutsideTheTableAreLeftAlone) {
  NoiseGenerator noise;
  for (const int slot : {0, 101, -1}) {
    EXPECT_FALSE(UnloadDatasetNo(table, heard.notices, slot));
    EXPECT_FALSE(TransformDatasetNo(table, heard.notices, slot, 1, 1));
    EXPECT_FALSE(CutDatasetNo(table, slot, 1, 2));
    EXPECT_FALSE(AddNoiseToDataset(table, heard.notices, noise, slot, 1));
    EXPECT_FALSE(ExportDatasetNo(table, slot, folder.Path("c"), false, false));
  }
  EXPECT_FALSE(folder.Has("c"));
  EXPECT_TRUE(heard.graphs.empty());
}

TEST(DatasetValue, AnEmptyDatasetCountsAsZero) { EXPECT_EQ(DatasetValueAt(Dataset{}, 100), 0); }

}  // namespace
}  // namespace kalvex

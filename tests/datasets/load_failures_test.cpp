// The messages of a failed load, the order of its checks, and the state after it.
#include <sys/resource.h>

#include <cstdlib>
#include <functional>
#include <limits>
#include <utility>

#include "datasets/dataset_operations.h"
#include "datasets/loading.h"
#include "datasets/read_dataset.h"

namespace kalvex {
namespace {

class Failure : public Loading {
 protected:
  Failure() : words(folder.Write("words.dat", "none\n")), none(folder.Path("none.dat")) {}

  // Loads with changed parameters, then restores them.
  std::string LoadWith(const std::function<void()>& change) {
    const DatasetSource before = source;
    change();
    const std::string message = Load();
    source = before;
    return message;
  }
  std::string words, none;
};

TEST_F(Failure, AMasterFileThatCannotBeOpened) {
  for (const std::string& path : {none, folder.Name(), std::string()}) {
    EXPECT_EQ(LoadWith([&] { source.MasterFile = path; }), "Cannot open master file.") << path;
  }
}

TEST_F(Failure, AMasterFileIsNeededEvenForAGeneratedDataset) {
  source = {};
  source.XMethod = XSource::kGenerated;
  source.YMethod = YSource::kFixed;
  EXPECT_EQ(Load(), "Cannot open master file.");
}

TEST_F(Failure, AMasterFileWithoutAUsableLine) {
  EXPECT_EQ(LoadWith([&] { source.MasterFile = words; }), "Master file is empty or of improper format.");
  EXPECT_EQ(LoadWith([&] { source.MasterFile = folder.Write("empty", ""); }),
            "Master file is empty or of improper format.");
}

TEST_F(Failure, AFileForXThatCannotBeOpenedOrUsed) {
  source.XMethod = XSource::kFile;
  EXPECT_EQ(Load(), "Cannot open file for X.");
  EXPECT_EQ(LoadWith([&] { source.XFile = none; }), "Cannot open file for X.");
  EXPECT_EQ(LoadWith([&] { source.XFile = words; }), "File for X is empty or of improper format.");
}

TEST_F(Failure, AFileForErrorsThatCannotBeOpenedOrUsed) {
  source.YErrMethod = ErrorSource::kFile;
  EXPECT_EQ(Load(), "Cannot open file for Yerr.");
  EXPECT_EQ(LoadWith([&] { source.YErrFile = none; }), "Cannot open file for Yerr.");
  EXPECT_EQ(LoadWith([&] { source.YErrFile = words; }), "File for Yerr is empty or of improper format.");
}

TEST_F(Failure, GridLimitsInTheWrongOrder) {
  source.XMethod = XSource::kGenerated;
  source.XMin = 2;
  source.XMax = 1;
  EXPECT_EQ(Load(), "Xmax should be larger, than Xmin.");
}

TEST_F(Failure, AGridOfFewerThanTwoPoints) {
  source.XMethod = XSource::kGenerated;
  for (const int points : {1, 0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(LoadWith([&] { source.XPts = points; }), "# pts should be more than 1.") << points;
  }
}

TEST_F(Failure, ALogarithmicGridThatReachesZero) {
  source.XMethod = XSource::kGenerated;
  source.XGrid = Grid::kLogarithmic;
  for (const auto& [low, high] : {std::pair(0.0, 10.0), std::pair(-1.0, 10.0), std::pair(-2.0, -1.0)}) {
    source.XMin = low;
    source.XMax = high;
    EXPECT_EQ(Load(), "For logarithmic grid Xmin and Xmax should be positive.") << low;
    EXPECT_EQ(LoadWith([&] {
                source.XGrid = Grid::kLinear;
                source.XPts = 3;
              }),
              "");
  }
}

TEST_F(Failure, MoreRowsThanTheMemoryHolds) {
  source.XMethod = XSource::kGenerated;
  source.XPts = std::numeric_limits<int>::max();
  EXPECT_EQ(Load(), "Not enough memory for the dataset.");
}

TEST_F(Failure, AFixedErrorThatIsNotAboveZero) {
  source.YErrMethod = ErrorSource::kFixed;
  for (const double error : {0.0, -0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(LoadWith([&] { source.YErrVal = error; }), "YErr should be larger than 0.") << error;
  }
}

TEST_F(Failure, TheGridAndTheFixedErrorAreCheckedOnlyWhereTheyAreUsed) {
  source.XMin = 2;
  source.XMax = 1;
  source.XPts = 0;
  source.YErrVal = -1;
  EXPECT_EQ(Load(), "");
}

TEST_F(Failure, FilesAreCheckedInTheOrderMasterXErrors) {
  const std::string master = source.MasterFile;
  source.XMethod = XSource::kFile;
  source.YErrMethod = ErrorSource::kFile;
  source.MasterFile = source.XFile = source.YErrFile = none;
  EXPECT_EQ(Load(), "Cannot open master file.");
  source.MasterFile = words;
  EXPECT_EQ(Load(), "Master file is empty or of improper format.");
  source.MasterFile = master;
  EXPECT_EQ(Load(), "Cannot open file for X.");
  source.XFile = words;
  EXPECT_EQ(Load(), "File for X is empty or of improper format.");
  source.XFile = master;
  EXPECT_EQ(Load(), "Cannot open file for Yerr.");
  source.YErrFile = words;
  EXPECT_EQ(Load(), "File for Yerr is empty or of improper format.");
  source.YErrFile = master;
  EXPECT_EQ(Load(), "");
}

TEST_F(Failure, TheGridIsCheckedAfterTheFilesAndBeforeTheMemoryAndTheErrorLast) {
  source.XMethod = XSource::kGenerated;
  source.XGrid = Grid::kLogarithmic;
  source.XMin = -1;
  source.XMax = -2;
  source.XPts = 1;
  source.YErrMethod = ErrorSource::kFile;
  source.YErrFile = none;
  EXPECT_EQ(Load(), "Cannot open file for Yerr.");
  source.YErrMethod = ErrorSource::kFixed;
  source.YErrVal = 0;
  EXPECT_EQ(Load(), "Xmax should be larger, than Xmin.");
  source.XMax = 10;
  EXPECT_EQ(Load(), "# pts should be more than 1.");
  source.XPts = std::numeric_limits<int>::max();
  EXPECT_EQ(Load(), "For logarithmic grid Xmin and Xmax should be positive.");
  source.XMin = 1;
  EXPECT_EQ(Load(), "Not enough memory for the dataset.");
  source.XPts = 4;
  EXPECT_EQ(Load(), "YErr should be larger than 0.");
  source.YErrVal = 1;
  EXPECT_EQ(Load(), "");
}

// A file of many rows, 24 bytes each, in a process with limited memory.
constexpr int kManyRows = 8'000'000;
constexpr rlim_t kLittleMemory = rlim_t{150} << 20;

#if defined(__SANITIZE_ADDRESS__) || defined(KALVEX_NO_LIMIT)
constexpr bool kCanLimitMemory = false;  // the sanitizer itself reserves more addresses
#else
constexpr bool kCanLimitMemory = true;
#endif

TEST_F(Failure, FilesTooLargeForTheMemorySaySo) {
  if (!kCanLimitMemory) GTEST_SKIP() << "the memory of a process cannot be limited in this build";
  std::string lines;
  for (int i = 0; i < kManyRows; ++i) lines += "1\n";
  const std::string large = folder.Write("large.dat", lines);
  lines = {};
  const auto saidWithLittleMemory = [&](const char* expected) {
    const rlimit limit{kLittleMemory, kLittleMemory};
    std::_Exit(::setrlimit(RLIMIT_AS, &limit) == 0 && Load() == expected ? 0 : 1);
  };
  const auto zero = testing::ExitedWithCode(0);
  const std::string master = source.MasterFile;
  source.MasterFile = large;
  EXPECT_EXIT(saidWithLittleMemory("Not enough memory to load master file."), zero, "");
  source.MasterFile = master;
  source.XMethod = XSource::kFile;
  source.XFile = large;
  EXPECT_EXIT(saidWithLittleMemory("Not enough memory to load file for X."), zero, "");
  source.XMethod = XSource::kMaster;
  source.YErrMethod = ErrorSource::kFile;
  source.YErrFile = large;
  EXPECT_EXIT(saidWithLittleMemory("Not enough memory to load file for Yerr."), zero, "");
}

TEST_F(Failure, EveryFailureButTheLastLeavesTheRowsAsTheyWere) {
  ASSERT_EQ(Load(), "");
  const Rows before = Points();
  const std::function<void()> changes[] = {
      [&] { source.MasterFile = none; },
      [&] { source.MasterFile = words; },
      [&] { source.XMethod = XSource::kFile; },
      [&] {
        source.XMethod = XSource::kFile;
        source.XFile = words;
      },
      [&] { source.YErrMethod = ErrorSource::kFile; },
      [&] {
        source.YErrMethod = ErrorSource::kFile;
        source.YErrFile = words;
      },
      [&] {
        source.XMethod = XSource::kGenerated;
        source.XMax = 0;
      },
      [&] {
        source.XMethod = XSource::kGenerated;
        source.XPts = 1;
      },
      [&] {
        source.XMethod = XSource::kGenerated;
        source.XGrid = Grid::kLogarithmic;
        source.XMin = 0;
      },
      [&] {
        source.XMethod = XSource::kGenerated;
        source.XPts = std::numeric_limits<int>::max();
      },
  };
  for (const auto& change : changes) {
    const std::string message = LoadWith(change);
    EXPECT_NE(message, "");
    EXPECT_EQ(Points(), before) << message;
    EXPECT_EQ(Slot().id, 1u) << message;
    EXPECT_EQ(Slot().name, "T_sample.dat") << message;
    EXPECT_EQ(Slot().CutMax, 40) << message;
    EXPECT_EQ(Slot().nActive, 3) << message;
  }
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Slot().id, 2u);  // a failure takes no id
}

TEST_F(Failure, TheLastCheckLeavesTheNewRowsUnderTheOldId) {
  ASSERT_EQ(Load(), "");
  source.XMethod = XSource::kGenerated;
  source.XPts = 7;
  source.YErrMethod = ErrorSource::kFixed;
  source.YErrVal = -1;
  ASSERT_EQ(Load(), "YErr should be larger than 0.");
  EXPECT_EQ(Slot().id, 1u);
  ASSERT_EQ(Points().size(), 7u);
  EXPECT_EQ(Points()[0][0], 1);
  EXPECT_EQ(Points()[6][0], 1000);
  EXPECT_EQ(Slot().nActive, 3);
}

TEST_F(Failure, TheLastCheckLeavesAFreeSlotWithRowsAndWithoutANameUntilItIsUnloaded) {
  source.YErrMethod = ErrorSource::kFixed;
  source.YErrVal = 0;
  ASSERT_EQ(Load(), "YErr should be larger than 0.");
  EXPECT_EQ(Slot().id, 0u);
  EXPECT_EQ(Slot().name, "");
  EXPECT_EQ(Points().size(), 3u);
  EXPECT_EQ(CountDatasets(table), 0);
  ASSERT_TRUE(ExportDataset(Slot(), folder.Path("out"), false, false).Ok());
  EXPECT_EQ(folder.Read("out"), "");  // without an id there is nothing to export
  UnloadDataset(Slot());
  EXPECT_EQ(Points().size(), 0u);
  EXPECT_EQ(Slot().MasterFile, "");
}

TEST_F(Failure, SaysThatTheFileCannotBeReadAndWhichOne) {
  source.MasterFile = none;
  const Status status = LoadDataset(Slot(), source, table.nextId);
  EXPECT_EQ(status.Code(), StatusCode::kCannotRead);
  EXPECT_EQ(status.About(), none);
}

TEST_F(Failure, TakesNoIdAndASuccessTakesTheNext) {
  Dataset record;
  std::uint32_t nextId = 41;
  const std::string master = std::exchange(source.MasterFile, none);
  EXPECT_FALSE(LoadDataset(record, source, nextId).Ok());
  EXPECT_EQ(nextId, 41u);
  source.MasterFile = master;
  source.YErrMethod = ErrorSource::kFixed;
  source.YErrVal = 0.5;
  source.Match = Matching::kAveraging;
  EXPECT_TRUE(LoadDataset(record, source, nextId).Ok());
  EXPECT_EQ(record.id, 41u);
  EXPECT_EQ(nextId, 42u);
  EXPECT_EQ(Plain(record.points), (Rows{{10, 1, 0.5}, {20, 2, 0.5}, {40, 4, 0.5}}));
}

}  // namespace
}  // namespace kalvex

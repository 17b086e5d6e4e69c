// What a load says when it fails, in which order it checks, and what it leaves behind.
#include <sys/resource.h>

#include <cstdlib>
#include <functional>
#include <limits>

#include "datasets/dataset_operations.h"
#include "datasets/loading.h"
#include "datasets/read_dataset.h"

namespace kalvex {
namespace {

class Failure : public Loading {
 protected:
  Failure() : words(folder.Write("words.dat", "none\n")), none(folder.Path("none.dat")) {}

  // A load with a change of its parameters, which are as before afterwards.
  std::string LoadWith(const std::function<void()>& change) {
    const LoadDatasetArgs before = args;
    change();
    const std::string message = Load();
    args = before;
    return message;
  }
  std::string words, none;
};

TEST_F(Failure, AMasterFileThatCannotBeOpened) {
  for (const std::string& path : {none, folder.Name(), std::string()}) {
    EXPECT_EQ(LoadWith([&] { args.MasterFile = path; }), "Cannot open master file.") << path;
  }
}

TEST_F(Failure, AMasterFileIsNeededEvenForAGeneratedDataset) {
  args = {};
  args.XMethod = 3;
  args.YMethod = 2;
  EXPECT_EQ(Load(), "Cannot open master file.");
}

TEST_F(Failure, AMasterFileWithoutAUsableLine) {
  EXPECT_EQ(LoadWith([&] { args.MasterFile = words; }), "Master file is empty or of improper format.");
  EXPECT_EQ(LoadWith([&] { args.MasterFile = folder.Write("empty", ""); }),
            "Master file is empty or of improper format.");
}

TEST_F(Failure, AFileForXThatCannotBeOpenedOrUsed) {
  args.XMethod = 2;
  EXPECT_EQ(Load(), "Cannot open file for X.");
  EXPECT_EQ(LoadWith([&] { args.XFile = none; }), "Cannot open file for X.");
  EXPECT_EQ(LoadWith([&] { args.XFile = words; }), "File for X is empty or of improper format.");
}

TEST_F(Failure, AFileForErrorsThatCannotBeOpenedOrUsed) {
  args.YErrMethod = 2;
  EXPECT_EQ(Load(), "Cannot open file for Yerr.");
  EXPECT_EQ(LoadWith([&] { args.YErrFile = none; }), "Cannot open file for Yerr.");
  EXPECT_EQ(LoadWith([&] { args.YErrFile = words; }), "File for Yerr is empty or of improper format.");
}

TEST_F(Failure, GridLimitsInTheWrongOrder) {
  args.XMethod = 3;
  args.XMin = 2;
  args.XMax = 1;
  EXPECT_EQ(Load(), "Xmax should be larger, than Xmin.");
}

TEST_F(Failure, AGridOfFewerThanTwoPoints) {
  args.XMethod = 3;
  for (const int points : {1, 0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(LoadWith([&] { args.XPts = points; }), "# pts should be more than 1.") << points;
  }
}

TEST_F(Failure, ALogarithmicGridThatReachesZero) {
  args.XMethod = 3;
  args.XGrid = 2;
  for (const auto& [low, high] : {std::pair(0.0, 10.0), std::pair(-1.0, 10.0), std::pair(-2.0, -1.0)}) {
    args.XMin = low;
    args.XMax = high;
    EXPECT_EQ(Load(), "For logarithmic grid Xmin and Xmax should be positive.") << low;
    EXPECT_EQ(LoadWith([&] {
                args.XGrid = 1;
                args.XPts = 3;
              }),
              "");
  }
}

TEST_F(Failure, MoreRowsThanTheMemoryHolds) {
  args.XMethod = 3;
  args.XPts = std::numeric_limits<int>::max();
  EXPECT_EQ(Load(), "Not enough memory for the dataset.");
}

TEST_F(Failure, AFixedErrorThatIsNotAboveZero) {
  args.YErrMethod = 3;
  for (const double error : {0.0, -0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(LoadWith([&] { args.YErrVal = error; }), "YErr should be larger than 0.") << error;
  }
}

TEST_F(Failure, TheGridAndTheFixedErrorAreCheckedOnlyWhereTheyAreUsed) {
  args.XMin = 2;
  args.XMax = 1;
  args.XPts = 0;
  args.YErrVal = -1;
  EXPECT_EQ(Load(), "");
}

TEST_F(Failure, FilesAreCheckedInTheOrderMasterXErrors) {
  const std::string master = *args.MasterFile;
  args.XMethod = args.YErrMethod = 2;
  args.MasterFile = args.XFile = args.YErrFile = none;
  EXPECT_EQ(Load(), "Cannot open master file.");
  args.MasterFile = words;
  EXPECT_EQ(Load(), "Master file is empty or of improper format.");
  args.MasterFile = master;
  EXPECT_EQ(Load(), "Cannot open file for X.");
  args.XFile = words;
  EXPECT_EQ(Load(), "File for X is empty or of improper format.");
  args.XFile = master;
  EXPECT_EQ(Load(), "Cannot open file for Yerr.");
  args.YErrFile = words;
  EXPECT_EQ(Load(), "File for Yerr is empty or of improper format.");
  args.YErrFile = master;
  EXPECT_EQ(Load(), "");
}

TEST_F(Failure, TheGridIsCheckedAfterTheFilesAndBeforeTheMemoryAndTheErrorLast) {
  args.XMethod = 3;
  args.XGrid = 2;
  args.XMin = -1;
  args.XMax = -2;
  args.XPts = 1;
  args.YErrMethod = 2;
  args.YErrFile = none;
  EXPECT_EQ(Load(), "Cannot open file for Yerr.");
  args.YErrMethod = 3;
  args.YErrVal = 0;
  EXPECT_EQ(Load(), "Xmax should be larger, than Xmin.");
  args.XMax = 10;
  EXPECT_EQ(Load(), "# pts should be more than 1.");
  args.XPts = std::numeric_limits<int>::max();
  EXPECT_EQ(Load(), "For logarithmic grid Xmin and Xmax should be positive.");
  args.XMin = 1;
  EXPECT_EQ(Load(), "Not enough memory for the dataset.");
  args.XPts = 4;
  EXPECT_EQ(Load(), "YErr should be larger than 0.");
  args.YErrVal = 1;
  EXPECT_EQ(Load(), "");
}

// A file of so many rows, of 24 bytes each, in a process that may not have so much memory.
constexpr int kManyRows = 8'000'000;
constexpr rlim_t kLittleMemory = rlim_t{150} << 20;

#if defined(__SANITIZE_ADDRESS__) || defined(KALVEX_NO_LIMIT)
constexpr bool kCanLimitMemory = false;  // the sanitizer keeps more addresses than that for itself
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
  const std::string master = *args.MasterFile;
  args.MasterFile = large;
  EXPECT_EXIT(saidWithLittleMemory("Not enough memory to load master file."), zero, "");
  args.MasterFile = master;
  args.XMethod = 2;
  args.XFile = large;
  EXPECT_EXIT(saidWithLittleMemory("Not enough memory to load file for X."), zero, "");
  args.XMethod = 1;
  args.YErrMethod = 2;
  args.YErrFile = large;
  EXPECT_EXIT(saidWithLittleMemory("Not enough memory to load file for Yerr."), zero, "");
}

TEST_F(Failure, EveryFailureButTheLastLeavesTheRowsAsTheyWere) {
  ASSERT_EQ(Load(), "");
  const Rows before = Points();
  const std::function<void()> changes[] = {
      [&] { args.MasterFile = none; },
      [&] { args.MasterFile = words; },
      [&] { args.XMethod = 2; },
      [&] {
        args.XMethod = 2;
        args.XFile = words;
      },
      [&] { args.YErrMethod = 2; },
      [&] {
        args.YErrMethod = 2;
        args.YErrFile = words;
      },
      [&] {
        args.XMethod = 3;
        args.XMax = 0;
      },
      [&] {
        args.XMethod = 3;
        args.XPts = 1;
      },
      [&] {
        args.XMethod = 3;
        args.XGrid = 2;
        args.XMin = 0;
      },
      [&] {
        args.XMethod = 3;
        args.XPts = std::numeric_limits<int>::max();
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
  EXPECT_EQ(Slot().id, 2u);  // failures use up no id
}

TEST_F(Failure, TheLastCheckLeavesTheNewRowsUnderTheOldId) {
  ASSERT_EQ(Load(), "");
  args.XMethod = 3;
  args.XPts = 7;
  args.YErrMethod = 3;
  args.YErrVal = -1;
  ASSERT_EQ(Load(), "YErr should be larger than 0.");
  EXPECT_EQ(Slot().id, 1u);
  ASSERT_EQ(Points().size(), 7u);
  EXPECT_EQ(Points()[0][0], 1);
  EXPECT_EQ(Points()[6][0], 1000);
  EXPECT_EQ(Slot().nActive, 3);
}

TEST_F(Failure, TheLastCheckLeavesAFreeSlotWithRowsAndWithoutANameUntilItIsUnloaded) {
  args.YErrMethod = 3;
  args.YErrVal = 0;
  ASSERT_EQ(Load(), "YErr should be larger than 0.");
  EXPECT_EQ(Slot().id, 0u);
  EXPECT_EQ(Slot().name, "");
  EXPECT_EQ(Points().size(), 3u);
  EXPECT_EQ(CountDatasets(table), 0);
  ASSERT_TRUE(ExportDatasetNo(table, 1, folder.Path("out"), false, false));
  EXPECT_EQ(folder.Read("out"), "");  // without an id there is nothing to export
  ASSERT_TRUE(UnloadDatasetNo(table, {}, 1));
  EXPECT_EQ(Points().size(), 0u);
  EXPECT_EQ(Slot().MasterFile, "");
}

TEST_F(Failure, ASlotOutsideTheTableIsRefused) {
  for (const int slot : {0, 101, -3}) {
    EXPECT_NE(LoadWith([&] { args.DatasetNo = slot; }), "") << slot;
  }
  EXPECT_EQ(CountDatasets(table), 0);
}

TEST_F(Failure, AMethodOutsideItsRangeIsRefusedAndNothingIsTouched) {
  ASSERT_EQ(Load(), "");
  std::optional<int>* const methods[] = {&args.XMethod, &args.XGrid, &args.YMethod, &args.YErrMethod, &args.Match};
  for (std::optional<int>* const method : methods) {
    for (const int number : {0, -1, 4}) {
      *method = number;
      EXPECT_NE(Load(), "") << number;
      EXPECT_EQ(Points().size(), 3u);
    }
    method->reset();
  }
}

TEST_F(Failure, TheRecordItselfLoadsWithTheMethodsItHolds) {
  Dataset record;
  std::uint32_t nextId = 41;
  EXPECT_STREQ(LoadDatasetRecord(record, nextId), "Cannot open master file.");
  EXPECT_EQ(nextId, 41u);
  record.MasterFile = *args.MasterFile;
  record.YErrMethod = ErrorSource::kFixed;
  record.YErrVal = 0.5;
  record.Match = Matching::kAveraging;
  EXPECT_EQ(LoadDatasetRecord(record, nextId), nullptr);
  EXPECT_EQ(record.id, 41u);
  EXPECT_EQ(nextId, 42u);
  EXPECT_EQ(Plain(record.points), (Rows{{10, 1, 0.5}, {20, 2, 0.5}, {40, 4, 0.5}}));
}

}  // namespace
}  // namespace kalvex

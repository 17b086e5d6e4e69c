// Datasets loaded, changed and exported by macros.
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "app/kalvex_run.h"

namespace kalvex {
namespace {

class DatasetCommands : public Kalvex {
 protected:
  DatasetCommands() {
    folder.Write("E1_a.dat", "head\n300 3 0.3\n100 1 0.1\n200 2 0.2\n\n");
    folder.Write("x.txt", "150\n250\n400\n");
    folder.Write("err.txt", "100 0.5\n300 0.7\n");
  }
  // The rows of dataset 1 with error bars, after a load with these additional parameters after MasterFile.
  Table Loaded(const std::string& items) {
    Run("LoadDataset(MasterFile=\"E1_a.dat\"" + (items.empty() ? "" : ',' + items) + ");" +
        "ExportDataset(DatasetNo=1,File=\"out\",ExportErrorBars=1);");
    return Written("out");
  }
  std::vector<double> Column(const Table& table, std::size_t column) {
    std::vector<double> values;
    for (const auto& line : table) values.push_back(line.at(column));
    return values;
  }
};
using Values = std::vector<double>;

TEST_F(DatasetCommands, WithoutParametersEverythingComesFromTheMasterFile) {
  EXPECT_EQ(Loaded(""), (Table{{100, 1, 0.1}, {200, 2, 0.2}, {300, 3, 0.3}}));
  EXPECT_EQ(Said("LoadDataset"), "dataset 1 is 'E1_a.dat', E1, 3 of 3 points from 100 to 300");
  EXPECT_EQ(Loaded("DatasetNo=1,XMethod=1,XGrid=1,YMethod=1,YErrMethod=1,Match=1"), Loaded(""));
}

TEST_F(DatasetCommands, XMayComeFromAFileOfItsOwn) {
  const Table rows = Loaded("XMethod=2,XFile=\"x.txt\"");
  EXPECT_EQ(Column(rows, 0), (Values{150, 250, 400}));
  EXPECT_EQ(Column(rows, 1), (Values{1.5, 2.5, 3}));  // beyond the last row its value holds
  EXPECT_EQ(Column(rows, 2), (Values{0.15, 0.25, 0.3}));
}

TEST_F(DatasetCommands, XMayBeGenerated) {
  EXPECT_EQ(Column(Loaded("XMethod=3,XMin=0,XMax=400,XPts=5"), 0), (Values{0, 100, 200, 300, 400}));
  EXPECT_EQ(Column(Loaded("XMethod=3,XMin=0,XMax=400,XPts=5"), 1), (Values{1, 1, 2, 3, 3}));
  const Table logarithmic = Loaded("XMethod=3,XMin=1,XMax=10000,XPts=3,XGrid=2");
  for (std::size_t i = 0; i < 3; ++i) EXPECT_CLOSE(logarithmic[i][0], std::pow(100, i), kSixDigits);
}

TEST_F(DatasetCommands, AGeneratedGridGoesFrom1To1000In1000PointsByDefault) {
  const Table rows = Loaded("XMethod=3");
  ASSERT_EQ(rows.size(), 1000u);
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_CLOSE(rows[i][0], 1.0 + static_cast<double>(i), kSixDigits);
}

TEST_F(DatasetCommands, YMayBeFixed) {
  EXPECT_EQ(Column(Loaded("YMethod=2,YVal=7.5"), 1), (Values{7.5, 7.5, 7.5}));
  EXPECT_EQ(Column(Loaded("YMethod=2"), 1), (Values{0, 0, 0}));
  EXPECT_EQ(Column(Loaded("YVal=7.5"), 1), (Values{1, 2, 3}));
}

TEST_F(DatasetCommands, ErrorsMayComeFromAFileOrBeFixed) {
  EXPECT_EQ(Column(Loaded("YErrMethod=2,YErrFile=\"err.txt\""), 2), (Values{0.5, 0.6, 0.7}));
  EXPECT_EQ(Column(Loaded("YErrMethod=3,YErrVal=0.25"), 2), (Values{0.25, 0.25, 0.25}));
  EXPECT_EQ(Column(Loaded("YErrMethod=3"), 2), (Values{0.01, 0.01, 0.01}));
}

// A step function with steps halfway between the points: on [100, 150] the value 1, on [150, 250] 2, on [250, 300] 3.
// The interval of a row reaches halfway to its neighbours; the first and the last interval end at their row.
TEST_F(DatasetCommands, AveragingTakesTheMeanOverTheCellOfARow) {
  EXPECT_EQ(Column(Loaded("Match=2"), 1), (Values{1, 2, 3}));
  const Table rows = Loaded("Match=2,XMethod=3,XMin=100,XMax=300,XPts=2");
  EXPECT_CLOSE(rows[0][1], (50 * 1 + 50 * 2) / 100.0, kSixDigits);
  EXPECT_CLOSE(rows[1][1], (50 * 2 + 50 * 3) / 100.0, kSixDigits);
  EXPECT_CLOSE(rows[1][2], (50 * 0.2 + 50 * 0.3) / 100.0, kSixDigits);
}

TEST_F(DatasetCommands, TheQuantityComesFromTheFilesNameUnlessItIsGiven) {
  const auto quantity = [&](const std::string& file, const std::string& items) {
    std::filesystem::copy_file(folder.Path("E1_a.dat"), folder.Path(file),
                               std::filesystem::copy_options::overwrite_existing);
    Run("LoadDataset(MasterFile=\"" + file + "\"" + items + ");");
    const std::string said = Said("LoadDataset").substr(("dataset 1 is '" + file + "', ").size());
    return said.substr(0, said.find(','));
  };
  EXPECT_EQ(quantity("refl.dat", ""), "R");
  EXPECT_EQ(quantity("Rp.dat", ""), "R");
  EXPECT_EQ(quantity("tt.dat", ""), "T");
  EXPECT_EQ(quantity("s1.dat", ""), "S1");
  EXPECT_EQ(quantity("xyz.dat", ""), "R");
  EXPECT_EQ(quantity("refl.dat", ",Quantity=\"rp\""), "Rp");
  EXPECT_EQ(quantity("refl.dat", ",Quantity=\"TT\""), "TT");
  EXPECT_EQ(quantity("s1.dat", ",Quantity=\"Sigma\""), "S1");
  EXPECT_NE(Said("LoadDataset").find("'Sigma' is not a Quantity, ignored"), std::string::npos);
}

TEST_F(DatasetCommands, EveryFailedLoadShowsItsMessageAndTheMacroGoesOn) {
  folder.Write("empty.dat", "");
  folder.Write("words.dat", "no\nnumbers\n");
  const std::string master = "MasterFile=\"E1_a.dat\"";
  const struct {
    std::string items;
    const char* message;
  } kCases[] = {
      {"", "Cannot open master file."},
      {"XMethod=3,YMethod=2", "Cannot open master file."},
      {"MasterFile=\"none.dat\"", "Cannot open master file."},
      {"MasterFile=\"empty.dat\"", "Master file is empty or of improper format."},
      {"MasterFile=\"words.dat\"", "Master file is empty or of improper format."},
      {master + ",XMethod=2", "Cannot open file for X."},
      {master + ",XMethod=2,XFile=\"words.dat\"", "File for X is empty or of improper format."},
      {master + ",YErrMethod=2", "Cannot open file for Yerr."},
      {master + ",YErrMethod=2,YErrFile=\"empty.dat\"", "File for Yerr is empty or of improper format."},
      {master + ",XMethod=3,XMin=2,XMax=1", "Xmax should be larger, than Xmin."},
      {master + ",XMethod=3,XPts=1", "# pts should be more than 1."},
      {master + ",XMethod=3,XMin=0,XGrid=2", "For logarithmic grid Xmin and Xmax should be positive."},
      {master + ",YErrMethod=3,YErrVal=0", "YErr should be larger than 0."},
      {master + ",YErrMethod=3,YErrVal=-1", "YErr should be larger than 0."},
  };
  for (const auto& c : kCases) {
    Run("LoadDataset(" + c.items + ");Echo(Text=\"goes on\");");
    EXPECT_EQ(run.err.substr(0, run.err.find('\n')), "Error: " + std::string(c.message)) << c.items;
    const std::string said = Said("LoadDataset");
    EXPECT_EQ(said.substr(0, 14), "nothing done: ");
    EXPECT_NE(said.find(c.message), std::string::npos) << said;
    EXPECT_EQ(run.out, "goes on\n");
  }
}

TEST_F(DatasetCommands, ANumberOfAMethodOutsideItsRangeIsRefusedAndTheRowsStay) {
  const std::pair<const char*, const char*> kMethods[] = {{"XMethod", "XMethod should be 1, 2 or 3."},
                                                          {"XGrid", "XGrid should be 1 or 2."},
                                                          {"YMethod", "YMethod should be 1 or 2."},
                                                          {"YErrMethod", "YErrMethod should be 1, 2 or 3."},
                                                          {"Match", "Match should be 1 or 2."}};
  const std::string load = "LoadDataset(MasterFile=\"E1_a.dat\"";
  for (const auto& [method, message] : kMethods) {
    for (const char* const number : {"0", "-1", "4", "2147483647", "-2147483648"}) {
      Run(load + ");" + load + ',' + method + '=' + number + ");ExportDataset(DatasetNo=1,File=\"out\");");
      EXPECT_NE(Said("LoadDataset").find(message), std::string::npos) << Said("LoadDataset");
      EXPECT_EQ(Column(Written("out"), 0), (Values{100, 200, 300})) << method << number;
    }
  }
}

TEST_F(DatasetCommands, SlotsGoFrom1To100) {
  Run("LoadDataset(DatasetNo=100,MasterFile=\"E1_a.dat\");ExportDataset(DatasetNo=100,File=\"out\");");
  EXPECT_EQ(Written("out").size(), 3u);
  for (const std::string slot : {"0", "101", "-1", "2147483647"}) {
    Run("LoadDataset(DatasetNo=" + slot + ",MasterFile=\"E1_a.dat\");UnloadDataset(DatasetNo=" + slot +
        ");TransformDataset(DatasetNo=" + slot + ");AddNoise(DatasetNo=" + slot + ",Sigma=1);CutDataset(DatasetNo=" +
        slot + ");ExportDataset(DatasetNo=" + slot + ",File=\"never\");Echo(Text=\"end\");");
    EXPECT_EQ(run.out, "end\n") << slot;
  }
}

TEST_F(DatasetCommands, UnloadingFreesTheSlot) {
  EXPECT_EQ(SaidLast("LoadDataset(MasterFile=\"E1_a.dat\");UnloadDataset();"), "dataset 1 unloaded");
  EXPECT_EQ(SaidLast("UnloadDataset(DatasetNo=2);"), "nothing done: dataset 2 is not loaded");
}

TEST_F(DatasetCommands, TransformingScalesValuesAndErrorsAndShiftsValues) {
  const std::string load = "LoadDataset(MasterFile=\"E1_a.dat\");";
  const std::string write = "ExportDataset(DatasetNo=1,File=\"out\",ExportErrorBars=1);";
  Run(load + "TransformDataset(Scale=2,Shift=1);" + write);
  EXPECT_EQ(folder.Read("out"), "100 3 0.2\n200 5 0.4\n300 7 0.6\n");
  Run(load + "TransformDataset(DatasetNo=1,Scale=-1);" + write);
  EXPECT_EQ(folder.Read("out"), "100 -1 -0.1\n200 -2 -0.2\n300 -3 -0.3\n");
  Run(load + "TransformDataset(Shift=-1);" + write);
  EXPECT_EQ(folder.Read("out"), "100 0 0.1\n200 1 0.2\n300 2 0.3\n");
  Run(load + "TransformDataset();" + write);
  EXPECT_EQ(folder.Read("out"), "100 1 0.1\n200 2 0.2\n300 3 0.3\n");
  EXPECT_EQ(SaidLast("TransformDataset(DatasetNo=3);"), "nothing done: dataset 3 is not loaded");
}

TEST_F(DatasetCommands, ALimitOfTheCutThatIsNotGivenStays) {
  const std::string load = "LoadDataset(MasterFile=\"E1_a.dat\");";
  EXPECT_EQ(SaidLast(load + "CutDataset(XMin=150);"), "dataset 1 cut to 2 of 3 points from 150 to 300");
  EXPECT_EQ(SaidLast(load + "CutDataset(XMax=250);"), "dataset 1 cut to 2 of 3 points from 100 to 250");
  EXPECT_EQ(SaidLast(load + "CutDataset(XMin=150);CutDataset(XMax=250);"),
            "dataset 1 cut to 1 of 3 points from 150 to 250");
  EXPECT_EQ(SaidLast(load + "CutDataset();"), "dataset 1 cut to 3 of 3 points from 100 to 300");
  EXPECT_EQ(SaidLast(load + "CutDataset(XMin=250,XMax=150);"), "dataset 1 cut to 0 of 3 points from 250 to 150");
}

// A row on the lower limit takes part in a fit, a row on the upper limit does not. An export contains both.
TEST_F(DatasetCommands, ARowOnTheUpperLimitIsExportedButNotFitted) {
  Run("LoadDataset(MasterFile=\"E1_a.dat\");CutDataset(XMin=100,XMax=200);"
      "ExportDataset(DatasetNo=1,File=\"cut\",ExportFitted=1);ExportDataset(DatasetNo=1,File=\"all\",ExportFitted=0);"
      "ExportDataset(DatasetNo=1,File=\"default\");");
  EXPECT_EQ(Said("CutDataset"), "dataset 1 cut to 1 of 3 points from 100 to 200");
  EXPECT_EQ(folder.Read("cut"), "100 1\n200 2\n");
  EXPECT_EQ(folder.Read("all"), "100 1\n200 2\n300 3\n");
  EXPECT_EQ(folder.Read("default"), folder.Read("all"));
}

TEST_F(DatasetCommands, ExportsHaveSixDigits) {
  folder.Write("n.dat", "123456.789 0.000012345678 1e-300\n");
  Run("LoadDataset(MasterFile=\"n.dat\");ExportDataset(DatasetNo=1,File=\"out\",ExportErrorBars=1);");
  EXPECT_EQ(folder.Read("out"), "123457 1.23457e-05 1e-300\n");
}

TEST_F(DatasetCommands, ExportingNeedsSlotAndFileAndALoadedSlotToFillIt) {
  EXPECT_EQ(SaidLast("ExportDataset(File=\"out\");"), "nothing done: DatasetNo is missing");
  EXPECT_FALSE(folder.Has("out"));
  EXPECT_EQ(SaidLast("ExportDataset(DatasetNo=1);"), "nothing done: File is missing");
  EXPECT_EQ(SaidLast("ExportDataset(DatasetNo=1,File=\"no/out\");"), "nothing done: 'no/out' cannot be written");
  EXPECT_EQ(SaidLast("ExportDataset(DatasetNo=1,File=\"out\");"),
            "dataset 1 is not loaded; an empty file was written: 'out'");
  EXPECT_EQ(folder.Read("out"), "");
}

TEST_F(DatasetCommands, NoiseHasItsSizeAndSetsTheErrors) {
  std::string flat;
  for (int x = 1; x <= 2000; ++x) flat += std::to_string(x) + " 0\n";
  folder.Write("flat.dat", flat);
  Run("LoadDataset(MasterFile=\"flat.dat\");AddNoise(Sigma=0.5);"
      "ExportDataset(DatasetNo=1,File=\"out\",ExportErrorBars=1);");
  const Table rows = Written("out");
  ASSERT_EQ(rows.size(), 2000u);
  double mean = 0, square = 0;
  for (const auto& row : rows) {
    EXPECT_EQ(row[2], 0.5);
    EXPECT_LE(std::fabs(row[1]), 3.1 * 0.5 + 0.2 * kSixDigits);
    mean += row[1] / 2000;
    square += row[1] * row[1] / 2000;
  }
  // Six standard deviations of the mean and of the variance of 2000 normal numbers. The seed is the clock.
  EXPECT_NEAR(mean, 0, 6 * 0.5 / std::sqrt(2000.0));
  EXPECT_NEAR(square, 0.25, 6 * 0.25 * std::sqrt(2 / 2000.0));
}

TEST_F(DatasetCommands, NoiseOfZeroChangesNoValueAndSetsEveryErrorToZero) {
  Run("LoadDataset(MasterFile=\"E1_a.dat\");AddNoise(DatasetNo=1,Sigma=0);"
      "ExportDataset(DatasetNo=1,File=\"out\",ExportErrorBars=1);");
  EXPECT_EQ(folder.Read("out"), "100 1 0\n200 2 0\n300 3 0\n");
  EXPECT_EQ(SaidLast("AddNoise();"), "nothing done: Sigma is missing");
  EXPECT_EQ(SaidLast("AddNoise(DatasetNo=4,Sigma=1);"), "nothing done: dataset 4 is not loaded");
}

TEST_F(DatasetCommands, FilesInOtherFoldersAreFound) {
  std::filesystem::create_directory(folder.Path("my data"));
  folder.Write("my data/s1 a.dat", "1 2\n");
  Run("LoadDataset(MasterFile=\"my data/s1 a.dat\");ExportDataset(DatasetNo=1,File=\"my data/out\");");
  EXPECT_EQ(Said("LoadDataset"), "dataset 1 is 's1 a.dat', S1, 1 of 1 points from 1 to 1");
  EXPECT_EQ(folder.Read("my data/out"), "1 2\n");
}

TEST_F(DatasetCommands, TheQuantityCanBeSetAfterwards) {
  const std::string load = "LoadDataset(MasterFile=\"E1_a.dat\");";
  EXPECT_EQ(SaidLast(load + "SetDatasetQuantity(DatasetNo=1,Quantity=\"rps\");"), "dataset 1 is now Rps");
  EXPECT_EQ(SaidLast(load + "SetDatasetQuantity(Quantity=\"R\");"), "nothing done: DatasetNo is missing");
  EXPECT_EQ(SaidLast(load + "SetDatasetQuantity(DatasetNo=1);"), "nothing done: Quantity is missing");
  EXPECT_EQ(SaidLast(load + "SetDatasetQuantity(DatasetNo=1,Quantity=\"Refl\");"),
            "nothing done: 'Refl' is not a Quantity");
  EXPECT_EQ(SaidLast(load + "SetDatasetQuantity(DatasetNo=2,Quantity=\"R\");"),
            "nothing done: dataset 2 is not loaded");
}

TEST_F(DatasetCommands, AFitFollowsTheQuantity) {
  folder.Write("R.dat", "100 4 0.1\n200 4 0.1\n");
  Run(FlatModel(1, 4) +
      "LoadDataset(MasterFile=\"R.dat\");WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);"
      "SaveModel(File=\"R.kvm\");SetDatasetQuantity(DatasetNo=1,Quantity=\"E1\");"
      "SaveModel(File=\"E1.kvm\");");
  const double d = (4 - 1.0 / 9) / 0.1;
  EXPECT_CLOSE(ChiSqIn("R.asc"), 2 * d * d, kFiveDigits);
  EXPECT_EQ(ChiSqIn("E1.asc"), 0);
}

}  // namespace
}  // namespace kalvex

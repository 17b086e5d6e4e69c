// How a load uses its files: X, values, errors, matching, names and ids.
#include <cmath>
#include <random>

#include "datasets/dataset_operations.h"
#include "datasets/interpolation.h"
#include "datasets/loading.h"
#include "datasets/quantity.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using Method = Loading;

TEST_F(Method, TheMasterFileAloneFillsTheRecord) {
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points(), (Rows{{10, 1, 0.1}, {20, 2, 0.2}, {40, 4, 0.4}}));
  EXPECT_EQ(Slot().id, 1u);
  EXPECT_EQ(Slot().name, "T_sample.dat");
  EXPECT_EQ(Slot().MasterFile, folder.Path("T_sample.dat"));
  EXPECT_EQ(Slot().Quantity, kTrans);
  EXPECT_EQ(Slot().XMin, 10);
  EXPECT_EQ(Slot().XMax, 40);
  EXPECT_EQ(Slot().CutMin, 10);
  EXPECT_EQ(Slot().CutMax, 40);
  EXPECT_EQ(Slot().nActive, 3);
  EXPECT_EQ(Slot().firstActive, 0);
  EXPECT_EQ(Slot().lastActive, 2);
  EXPECT_EQ(Slot().XMethod, XSource::kMaster);
  EXPECT_EQ(Slot().YMethod, YSource::kMaster);
  EXPECT_EQ(Slot().YErrMethod, ErrorSource::kMaster);
}

TEST_F(Method, TheRecordKeepsItsSourceAndFilesNumberTheMethodsFromZero) {
  source.XMethod = XSource::kGenerated;
  source.XGrid = Grid::kLogarithmic;
  source.YMethod = YSource::kFixed;
  source.Match = Matching::kAveraging;
  source.YErrMethod = ErrorSource::kFixed;
  source.XMin = 10;
  source.YVal = 0.3;
  source.YErrVal = 0.2;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(static_cast<int>(Slot().XMethod), 2);
  EXPECT_EQ(static_cast<int>(Slot().XGrid), 1);
  EXPECT_EQ(static_cast<int>(Slot().YMethod), 1);
  EXPECT_EQ(static_cast<int>(Slot().Match), 1);
  EXPECT_EQ(static_cast<int>(Slot().YErrMethod), 2);
  EXPECT_EQ(Slot().YVal, 0.3);
  EXPECT_EQ(Slot().YErrVal, 0.2);
}

TEST_F(Method, AGeneratedGridWithoutItsParametersHas1000PointsFrom1To1000) {
  source.XMethod = XSource::kGenerated;
  ASSERT_EQ(Load(), "");
  ASSERT_EQ(Points().size(), 1000u);
  for (std::size_t i = 0; i < 1000; ++i) EXPECT_CLOSE(Points()[i][0], static_cast<double>(i + 1), kRound);
}

TEST_F(Method, WhatALoadDoesNotNameGoesBackToItsDefault) {
  source.XMethod = XSource::kGenerated;
  source.XPts = 5;
  source.YErrMethod = ErrorSource::kFixed;
  source.YErrVal = 0.7;
  source.XFile = "x";
  source.YErrFile = "e";
  ASSERT_EQ(Load(), "");
  DatasetSource again;
  again.MasterFile = source.MasterFile;
  source = again;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points().size(), 3u);
  EXPECT_EQ(Slot().XPts, 1000);
  EXPECT_EQ(Slot().YErrVal, 0.01);
  EXPECT_EQ(Slot().XFile, "");
  EXPECT_EQ(Slot().YErrFile, "");
}

TEST_F(Method, XOfAnotherFileTakesTheMastersValuesThere) {
  source.XMethod = XSource::kFile;
  source.XFile = folder.Write("x.dat", "30 77 78\n5\n99\n");
  ASSERT_EQ(Load(), "");
  const Rows points = Points();
  ASSERT_EQ(points.size(), 3u);
  EXPECT_EQ(points[0], (std::array{5.0, 1.0, 0.1}));
  EXPECT_EQ(points[1][1], 3);
  EXPECT_CLOSE(points[1][2], 0.3, kRound);
  EXPECT_EQ(points[2], (std::array{99.0, 4.0, 0.4}));
}

TEST_F(Method, TheFilesOfMethodsThatAreNotChosenAreNotRead) {
  source.XFile = source.YErrFile = folder.Path("none");
  EXPECT_EQ(Load(), "");
}

TEST_F(Method, ALinearGridHasEqualSteps) {
  source.XMethod = XSource::kGenerated;
  source.XMin = -5;
  source.XMax = 40;
  source.XPts = 46;
  ASSERT_EQ(Load(), "");
  ASSERT_EQ(Points().size(), 46u);
  for (std::size_t i = 0; i < 46; ++i) EXPECT_NEAR(Points()[i][0], static_cast<double>(i) - 5, 40 * kRound);
  EXPECT_EQ(Points()[0][0], -5);
  EXPECT_EQ(Points()[45][0], 40);
  EXPECT_EQ(Slot().XMin, -5);
  EXPECT_EQ(Slot().XMax, 40);
}

TEST_F(Method, ALogarithmicGridHasEqualRatios) {
  source.XMethod = XSource::kGenerated;
  source.XGrid = Grid::kLogarithmic;
  source.XMin = 0.01;
  source.XMax = 1000;
  source.XPts = 6;
  ASSERT_EQ(Load(), "");
  const double expected[] = {0.01, 0.1, 1, 10, 100, 1000};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_CLOSE(Points()[i][0], expected[i], kRound);
}

TEST_F(Method, TwoPointsAreTheTwoLimits) {
  source.XMethod = XSource::kGenerated;
  source.XPts = 2;
  source.XMin = 15;
  source.XMax = 30;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points()[0], (std::array{15.0, 1.5, Points()[0][2]}));
  EXPECT_EQ(Points()[1], (std::array{30.0, 3.0, Points()[1][2]}));
}

TEST_F(Method, EqualLimitsGiveAConstantGrid) {
  source.XMethod = XSource::kGenerated;
  source.XMin = source.XMax = 30;
  source.XPts = 3;
  for (const Grid grid : {Grid::kLinear, Grid::kLogarithmic}) {
    source.XGrid = grid;
    ASSERT_EQ(Load(), "");
    for (const auto& [x, y, sigma] : Points()) {
      EXPECT_EQ(x, 30);
      EXPECT_EQ(y, 3);
      EXPECT_CLOSE(sigma, 0.3, kRound);
    }
  }
  source.Match = Matching::kAveraging;  // the cells have no width
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points()[1], (std::array{30.0, 0.0, 0.0}));
}

TEST_F(Method, AGridWiderThanTheMasterRepeatsItsEndValues) {
  source.XMethod = XSource::kGenerated;
  source.XMin = 0;
  source.XMax = 100;
  source.XPts = 11;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points()[0], (std::array{0.0, 1.0, 0.1}));
  for (std::size_t i = 4; i <= 10; ++i) EXPECT_EQ(Points()[i], (std::array{10.0 * static_cast<double>(i), 4.0, 0.4}));
}

TEST_F(Method, AFixedValueReplacesTheColumnOfTheMaster) {
  source.YMethod = YSource::kFixed;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points(), (Rows{{10, 0, 0.1}, {20, 0, 0.2}, {40, 0, 0.4}}));  // the default of YVal
  source.YVal = -0.7;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points(), (Rows{{10, -0.7, 0.1}, {20, -0.7, 0.2}, {40, -0.7, 0.4}}));
}

TEST_F(Method, ErrorsOfAnotherFileAreItsSecondColumn) {
  source.YErrMethod = ErrorSource::kFile;
  source.YErrFile = folder.Write("err.dat", "30 0.5 99\n0 0.2 99\n");
  ASSERT_EQ(Load(), "");
  const Rows points = Points();
  EXPECT_CLOSE(points[0][2], 0.3, kRound);
  EXPECT_CLOSE(points[1][2], 0.4, kRound);
  EXPECT_EQ(points[2], (std::array{40.0, 4.0, 0.5}));
}

TEST_F(Method, AFixedErrorIsThatOfEachRow) {
  source.YErrMethod = ErrorSource::kFixed;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points(), (Rows{{10, 1, 0.01}, {20, 2, 0.01}, {40, 4, 0.01}}));  // the default of YErrVal
  source.YErrVal = 0.05;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points(), (Rows{{10, 1, 0.05}, {20, 2, 0.05}, {40, 4, 0.05}}));
}

TEST_F(Method, ACellReachesToTheMidpointsAndEndsAtTheFirstAndLastRow) {
  source.Match = Matching::kAveraging;
  source.XMethod = XSource::kFile;
  source.XFile = folder.Write("x.dat", "10\n20\n40\n");
  source.MasterFile = folder.Write("R.dat", "11 1\n13 3\n18 8\n22 2\n26 6\n32 2\n38 8\n42 2\n");
  ASSERT_EQ(Load(), "");
  // Steps at 12, 15.5, 20, 24, 29, 35 and 40; cells 10 to 15, 15 to 30 and 30 to 40.
  EXPECT_CLOSE(Points()[0][1], (2 * 1 + 3 * 3) / 5.0, kRound);
  EXPECT_CLOSE(Points()[1][1], (0.5 * 3 + 4.5 * 8 + 4 * 2 + 5 * 6 + 1 * 2) / 15.0, kRound);
  EXPECT_CLOSE(Points()[2][1], (5 * 2 + 5 * 8) / 10.0, kRound);
}

TEST_F(Method, AveragingOnTheMastersOwnGridSmoothsItsPoints) {
  source.Match = Matching::kAveraging;
  source.MasterFile = folder.Write("R.dat", "0 4\n1 8\n3 5\n4 7\n");
  ASSERT_EQ(Load(), "");
  // The steps and the ends of the cells coincide: each cell holds one value.
  EXPECT_EQ(Points()[1][1], 8);
  source.XMethod = XSource::kFile;
  source.XFile = folder.Write("x.dat", "0\n2\n4\n");  // cells 0 to 1, 1 to 3 and 3 to 4
  ASSERT_EQ(Load(), "");
  EXPECT_CLOSE(Points()[0][1], (0.5 * 4 + 0.5 * 8) / 1, kRound);
  EXPECT_CLOSE(Points()[1][1], (1 * 8 + 1 * 5) / 2.0, kRound);
  EXPECT_CLOSE(Points()[2][1], (0.5 * 5 + 0.5 * 7) / 1, kRound);
}

TEST_F(Method, ErrorsAreAveragedLikeValuesAndNotCombined) {
  source.Match = Matching::kAveraging;
  source.XMethod = XSource::kFile;
  source.XFile = folder.Write("x.dat", "10\n40\n");
  ASSERT_EQ(Load(), "");  // cells 10 to 25 and 25 to 40, steps at 15 and 30
  EXPECT_CLOSE(Points()[0][2], (5 * 0.1 + 10 * 0.2) / 15, kRound);
  EXPECT_CLOSE(Points()[1][2], (5 * 0.2 + 10 * 0.4) / 15, kRound);
  source.YErrMethod = ErrorSource::kFile;
  source.YErrFile = folder.Write("err.dat", "10 1\n20 4\n");  // one step, at 15
  ASSERT_EQ(Load(), "");
  EXPECT_CLOSE(Points()[0][2], (5 * 1 + 10 * 4) / 15.0, kRound);
  EXPECT_CLOSE(Points()[1][2], 4, kRound);
}

TEST_F(Method, EachRowOfAFineMasterIsFoundWithEitherMatching) {
  std::mt19937 random(6);
  std::uniform_real_distribution<double> value(0, 1);
  std::string text;
  std::vector<DataRow> master;
  for (int i = 0; i < 300; ++i) {
    master.push_back({i * 0.25, std::floor(value(random) * 1024) / 1024, 0.01});  // printed without loss
    text += std::to_string(i * 0.25) + ' ' + std::to_string(master.back().y).substr(0, 8) + '\n';
    master.back().y = std::stod(std::to_string(master.back().y).substr(0, 8));
  }
  source.MasterFile = folder.Write("R.dat", text);
  source.XMethod = XSource::kGenerated;
  source.XMin = -3;
  source.XMax = 90;
  source.XPts = 94;
  for (const Matching match : {Matching::kInterpolation, Matching::kAveraging}) {
    source.Match = match;
    ASSERT_EQ(Load(), "");
    const Rows rows = Points();
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const double x = static_cast<double>(i) - 3;
      const double from = i == 0 ? x : x - 0.5, to = i + 1 == rows.size() ? x : x + 0.5;
      const double expected = match == Matching::kInterpolation ? InterpolateY(master, x) : AverageY(master, from, to);
      EXPECT_NEAR(rows[i][1], expected, 90 * kRound) << x;
    }
  }
}

TEST_F(Method, AveragingATableOfOneRowGivesZero) {
  source.MasterFile = folder.Write("R.dat", "10 1\n");
  source.Match = Matching::kAveraging;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Points(), (Rows{{10, 0, 0}}));
}

TEST_F(Method, TheFirstShortNameThatTheFilesNameBeginsWithGivesTheQuantity) {
  const std::pair<const char*, Quantity> cases[] = {
      {"R.dat", kRefl},    {"rough.txt", kRefl}, {"Rp.dat", kRefl},  {"rs_45.dat", kRefl},  {"Rps.dat", kRefl},
      {"T.dat", kTrans},   {"trans", kTrans},    {"TT.dat", kTrans}, {"E1.dat", kE1},       {"e2 film.dat", kE2},
      {"s1.dat", kS1},     {"S2x", kS2},         {"N1.dat", kN1},    {"n2", kN2},           {"PD.dat", kDepth},
      {"lf.dat", kLoss},   {"Ac.dat", kAlpha},   {"E3.dat", kRefl},  {"film_R.dat", kRefl}, {"sample.dat", kRefl},
      {"dir\\e2.dat", kE2}};
  for (const auto& [name, quantity] : cases) {
    source.MasterFile = folder.Write(name, "1 2\n");
    ASSERT_EQ(Load(), "");
    EXPECT_EQ(Slot().Quantity, quantity) << name;
  }
}

TEST_F(Method, TheFoldersNameSaysNothingAboutTheQuantity) {
  const ScratchFolder other;
  const InFolder here(other.Name());
  source.MasterFile = other.Write("e1.dat", "1 2\n");
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Slot().Quantity, kE1);
  EXPECT_EQ(Slot().name, "e1.dat");
  source.MasterFile = "e1.dat";
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Slot().Quantity, kE1);
}

TEST_F(Method, ALongNameIsCutBetweenItsLetters) {
  std::string micro = "R";
  for (int k = 0; k < 40; ++k) micro += "\u00B5";  // two bytes each
  source.MasterFile = folder.Write(micro, "1 2\n");
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Slot().name, micro.substr(0, 49));
}

TEST_F(Method, AQuantityThatIsGivenOverridesTheFilesName) {
  for (const Quantity q : kEveryQuantity) {
    source.Quantity = q;
    ASSERT_EQ(Load(), "");
    EXPECT_EQ(Slot().Quantity, q);
  }
}

TEST(QuantityNumbers, AreThoseOfFilesAndNoOthersNameAQuantity) {
  constexpr const char* kNames[] = {"R",  "T",  "Rp", "Rs", "Rps", "E1", "E2", "S1",
                                    "S2", "N1", "N2", "PD", "LF",  "TT", "AC"};
  for (int number = 0; number < std::ssize(kNames); ++number) {
    const auto quantity = QuantityOfNumber(number);
    ASSERT_TRUE(quantity) << number;
    EXPECT_STREQ(NamesOf(*quantity).shortName, kNames[number]);
    EXPECT_EQ(NumberOf(*quantity), number);
  }
  for (const int none : {-1, 15, 2147483647, -2147483647}) EXPECT_FALSE(QuantityOfNumber(none)) << none;
}

TEST(QuantitySets, HoldWhatIsPutInAndGiveItInTheOrderOfTheNumbers) {
  constexpr QuantitySet kA = {kAlpha, kRefl, kE1}, kB = {kE1, kS2};
  const auto list = [](QuantitySet set) { return std::vector<Quantity>(set.begin(), set.end()); };
  EXPECT_EQ(list(kA), (std::vector<Quantity>{kRefl, kE1, kAlpha}));
  EXPECT_EQ(list(kA | kB), (std::vector<Quantity>{kRefl, kE1, kS2, kAlpha}));
  EXPECT_EQ(list(kA & kB), (std::vector<Quantity>{kE1}));
  EXPECT_EQ(list(kA - kB), (std::vector<Quantity>{kRefl, kAlpha}));
  EXPECT_EQ(list(kEveryQuantity).size(), 15u);
  EXPECT_TRUE((kA - kA).IsEmpty() && !kA.IsEmpty());
  EXPECT_TRUE(kA.Contains(kAlpha) && !kA.Contains(kS2));
  EXPECT_EQ((kA | kB).Count(), 4u);
  EXPECT_EQ(kA, (QuantitySet{kRefl} | QuantitySet{kE1, kAlpha}));
}

TEST(ShortNames, AreMatchedWholeAndInEitherCase) {
  const std::pair<const char*, Quantity> cases[] = {{"R", kRefl},  {"t", kTrans},      {"Rp", kRp},   {"RS", kRs},
                                                    {"rPS", kRps}, {"E1", kE1},        {"e2", kE2},   {"S1", kS1},
                                                    {"s2", kS2},   {"N1", kN1},        {"n2", kN2},   {"PD", kDepth},
                                                    {"lf", kLoss}, {"TT", kDefringed}, {"ac", kAlpha}};
  for (const auto& [name, quantity] : cases) EXPECT_EQ(QuantityOfShortName(name), quantity) << name;
  for (const char* const name : {"Refl", "", "E", "E1 ", " R", "Normal reflectivity"}) {
    EXPECT_EQ(QuantityOfShortName(name), std::nullopt) << name;
  }
}

TEST_F(Method, NamesAreCutTo50Characters) {
  for (const std::size_t length : {49U, 50U, 51U, 200U}) {
    source.MasterFile = folder.Write(std::string(length, 'x'), "1 2\n");
    ASSERT_EQ(Load(), "");
    EXPECT_EQ(Slot().name, std::string(std::min<std::size_t>(length, 50), 'x'));
  }
}

TEST_F(Method, IdsRiseAndAreNeverUsedAgain) {
  ASSERT_EQ(Load(), "");
  slot = 100;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(ListDatasetIds(table), (std::vector<std::uint32_t>{1, 2}));
  UnloadDataset(table.slots[0]);
  EXPECT_EQ(FirstDatasetId(table), 0u);
  slot = 1;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(ListDatasetIds(table), (std::vector<std::uint32_t>{3, 2}));
  EXPECT_EQ(CountDatasets(table), 2);
  EXPECT_EQ(FirstDatasetId(table), 3u);
  for (Dataset& dataset : table.slots) UnloadDataset(dataset);
  EXPECT_EQ(CountDatasets(table), 0);
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Slot().id, 4u);
}

TEST_F(Method, LoadingIntoALoadedSlotReplacesItUnderANewId) {
  ASSERT_EQ(Load(), "");
  CutDataset(Slot(), 15, 30);
  source.MasterFile = folder.Write("E2.dat", "1 2\n3 4\n5 6\n7 8\n");
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(Slot().id, 2u);
  EXPECT_EQ(GetDatasetById(table, 1), nullptr);
  EXPECT_EQ(Slot().Quantity, kE2);
  EXPECT_EQ(Slot().CutMax, 7);
  EXPECT_EQ(Slot().nActive, 4);
}

TEST_F(Method, DatasetsAreFoundByIdInAnySlotAndIdZeroFindsAFreeOne) {
  ASSERT_EQ(Load(), "");
  slot = 100;
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(GetDatasetById(table, 1), &table.slots[0]);
  EXPECT_EQ(GetDatasetById(table, 2), &table.slots[99]);
  EXPECT_EQ(GetDatasetById(table, 3), nullptr);
  EXPECT_EQ(GetDatasetById(table, 0), &table.slots[1]);
}

TEST_F(Method, SlotsCountFromOneToAHundred) {
  EXPECT_EQ(DatasetInSlot(table, 1), &table.slots[0]);
  EXPECT_EQ(DatasetInSlot(table, 100), &table.slots[99]);
  for (const int outside : {0, 101, -1}) EXPECT_EQ(DatasetInSlot(table, outside), nullptr);
}

}  // namespace
}  // namespace kalvex

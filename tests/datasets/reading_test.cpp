// Reading a file of up to three columns, and its sorting.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/text.h"
#include "datasets/loading.h"
#include "datasets/read_dataset.h"

namespace kalvex {
namespace {

class ReadingRows : public testing::Test {
 protected:
  Rows Read(const std::string& text) {
    std::vector<DataRow> rows;
    status = ReadDatasetFile(folder.Write("a.dat", text), rows);
    return Plain(rows);
  }
  // How many of `equal` rows at x = 5 remain, between two others.
  std::size_t LeftOf(int equal) {
    std::string text = "0 0\n";
    for (int i = 0; i < equal; ++i) text += "5 " + std::to_string(i) + '\n';
    return Read(text + "9 0\n").size() - 2;
  }
  ScratchFolder folder;
  ReadStatus status = ReadStatus::kRead;
};

TEST_F(ReadingRows, HeaderLinesAndABlankLastLineLoadAsIfTheyWereNotThere) {
  EXPECT_EQ(Read("Wavenumber Refl\n\n  sample 3, 300 K\n1 2 3\n4 5 6\n\n"), (Rows{{1, 2, 3}, {4, 5, 6}}));
  EXPECT_EQ(status, ReadStatus::kRead);
}

TEST_F(ReadingRows, LinesThatDoNotStartWithANumberArePassedOverWhereverTheyStand) {
  EXPECT_EQ(Read("# 5 6\n1 2 3\nunits: 7\n; 8\n  x 9\n2 3 4\n, 10\n-- 11\n"), (Rows{{1, 2, 3}, {2, 3, 4}}));
}

TEST_F(ReadingRows, NumbersMayBeSeparatedByAnyWhiteSpace) {
  EXPECT_EQ(Read("  2\t3   4\r\n\t5 \v6\f7\n"), (Rows{{2, 3, 4}, {5, 6, 7}}));
}

TEST_F(ReadingRows, OneNumberAloneHasYOf0AndSigmaOf001) { EXPECT_EQ(Read("100\n"), (Rows{{100, 0, 0.01}})); }

TEST_F(ReadingRows, TwoNumbersHaveSigmaOf001) { EXPECT_EQ(Read("200 0.5\n"), (Rows{{200, 0.5, 0.01}})); }

TEST_F(ReadingRows, AWordBehindTheNumbersEndsTheRow) {
  EXPECT_EQ(Read("1 x 7\n2 0.6 x 7\n3 1 2 x\n"), (Rows{{1, 0, 0.01}, {2, 0.6, 0.01}, {3, 1, 2}}));
}

TEST_F(ReadingRows, AFourthNumberIsIgnored) { EXPECT_EQ(Read("1 2 3 4 5\n"), (Rows{{1, 2, 3}})); }

TEST_F(ReadingRows, ACommaEndsTheScanSoThatOnlyXIsRead) {
  EXPECT_EQ(Read("100,0.5,0.1\n200, 0.6\n"), (Rows{{100, 0, 0.01}, {200, 0, 0.01}}));
}

TEST_F(ReadingRows, NumbersMayHaveSignsAndExponents) {
  EXPECT_EQ(Read("-1.5e2 +3 .5\n1E+1 -.5 0x10\n"), (Rows{{-150, 3, 0.5}, {10, -0.5, 16}}));
}

TEST_F(ReadingRows, WordsThatBeginLikeInfinityAreNoNumbers) {
  EXPECT_EQ(Read("Infrared data\nnanometres\ninf 1\nnan 2\n1 nano\n2 3\n"), (Rows{{1, 0, 0.01}, {2, 3, 0.01}}));
}

TEST_F(ReadingRows, ALineOf1023CharactersIsWholeAndALongerOneIsSeveral) {
  // "1 2" and blanks to 1023 characters
  const std::string line = "1 2" + std::string(1020, ' ');
  EXPECT_EQ(Read(line + "\n5 6\n"), (Rows{{1, 2, 0.01}, {5, 6, 0.01}}));
  EXPECT_EQ(Read(line + "3 4\n5 6\n"), (Rows{{1, 2, 0.01}, {3, 4, 0.01}, {5, 6, 0.01}}));
  EXPECT_EQ(Read("#" + line + "3 4\n"), (Rows{{3, 4, 0.01}}));
  EXPECT_EQ(Read(line + line + "7 8"), (Rows{{1, 2, 0.01}, {7, 8, 0.01}}));  // equal x, one of them dropped
}

TEST_F(ReadingRows, ANumberThatCrossesTheEndOfALineOf1023CharactersIsCutInTwo) {
  EXPECT_EQ(Read("1" + std::string(1020, ' ') + "23" + "45 6\n"), (Rows{{1, 23, 0.01}, {45, 6, 0.01}}));
}

TEST_F(ReadingRows, ANumberMayEndTheFile) { EXPECT_EQ(Read("1 2\n3 4"), (Rows{{1, 2, 0.01}, {3, 4, 0.01}})); }

// The file is read in pieces. Lines of any length cross the borders of the pieces.
TEST_F(ReadingRows, AFileOfManyPiecesGivesEveryRowOnce) {
  std::mt19937 random(5);
  std::string text;
  Rows expected;
  while (text.size() < 1000000) {
    const double x = static_cast<double>(expected.size()), y = x / 8;
    text += std::string(random() % 400, ' ') + TextG(x, 17) + std::string(1 + random() % 9, ' ') + TextG(y, 17);
    text += " 3 " + std::string(random() % 3 == 0 ? random() % 300 : 0, 'x') + '\n';
    expected.push_back({x, y, 3});
  }
  EXPECT_EQ(Read(text), expected);
}

TEST_F(ReadingRows, LinesTooLongAreCutAtTheSamePlacesWhereverTheyLie) {
  for (std::size_t before = 63000; before < 66000; before += 211) {
    const std::string blank = std::string(before / 2, '\n');
    const std::string line = "1" + std::string(1021, ' ') + "23 4";  // 1023 characters end after the 2
    EXPECT_EQ(Read(blank + blank + line), (Rows{{1, 2, 0.01}, {3, 4, 0.01}})) << before;
  }
}

TEST_F(ReadingRows, BytesOfAnyValueArePassedOver) {
  EXPECT_EQ(Read(std::string("\0\x01\xff\n1 2\n\xef\xbb\xbf"
                             "5 6\n3\0 4\n",
                             18)),
            (Rows{{1, 2, 0.01}, {3, 0, 0.01}}));
}

TEST_F(ReadingRows, AFileWithoutAUsableLineIsAFailure) {
  for (const std::string& text : {std::string(), std::string("\n\n"), std::string("only words\n"),
                                  std::string("\0\x01\xff", 3), std::string(5000, '#')}) {
    Read(text);
    EXPECT_EQ(status, ReadStatus::kNoUsableLine) << text.size();
  }
}

TEST_F(ReadingRows, AFolderOrAMissingFileCannotBeOpened) {
  std::vector<DataRow> rows;
  for (const std::string& path : {folder.Path("none"), folder.Name(), folder.Path("none/a.dat"), std::string()}) {
    EXPECT_EQ(ReadDatasetFile(path, rows), ReadStatus::kCannotOpen) << path;
  }
}

TEST_F(ReadingRows, DescendingXComesOutAscending) {
  EXPECT_EQ(Read("3 1\n2 3\n1 2\n"), (Rows{{1, 2, 0.01}, {2, 3, 0.01}, {3, 1, 0.01}}));
  EXPECT_EQ(Read("3 1\n-1 2\n2 3\n"), (Rows{{-1, 2, 0.01}, {2, 3, 0.01}, {3, 1, 0.01}}));
}

TEST_F(ReadingRows, OfTwoRowsOfEqualXOneIsDropped) {
  EXPECT_EQ(LeftOf(1), 1u);
  EXPECT_EQ(LeftOf(2), 1u);
}

// A dropped row is not compared with the next one: that one stays.
TEST_F(ReadingRows, OfMoreRowsOfEqualXEverySecondIsDropped) {
  EXPECT_EQ(LeftOf(3), 2u);
  EXPECT_EQ(LeftOf(4), 2u);
  EXPECT_EQ(LeftOf(5), 3u);
  EXPECT_EQ(LeftOf(6), 3u);
  EXPECT_EQ(LeftOf(101), 51u);
}

TEST_F(ReadingRows, EqualXFarApartInTheFileAreDuplicatesToo) {
  EXPECT_EQ(Read("5 1\n1 2\n5 1\n3 4\n"), (Rows{{1, 2, 0.01}, {3, 4, 0.01}, {5, 1, 0.01}}));
  EXPECT_EQ(Read("5 1\n5 1\n3 4\n3 4\n"), (Rows{{3, 4, 0.01}, {5, 1, 0.01}}));
  EXPECT_EQ(Read("0 1\n-0 1\n"), (Rows{{0, 1, 0.01}}));
}

TEST(SortingRows, AgreesWithMarkingTheRowsOneAfterTheOther) {
  constexpr double kMark = -7.77777e77;
  std::mt19937 random(3);
  for (int round = 0; round < 200; ++round) {
    std::vector<DataRow> rows(random() % 30);
    for (DataRow& row : rows) row.x = static_cast<double>(random() % 8);
    std::vector<double> marked;
    for (const DataRow& row : rows) marked.push_back(row.x);
    std::sort(marked.begin(), marked.end());
    for (std::size_t i = 1; i < marked.size(); ++i) {
      if (marked[i] == marked[i - 1]) marked[i] = kMark;
    }
    std::erase(marked, kMark);
    SortAndDropDuplicates(rows);
    std::vector<double> left;
    for (const DataRow& row : rows) left.push_back(row.x);
    EXPECT_EQ(left, marked);
  }
}

TEST(SortingRows, KeepsEachRowTogether) {
  std::mt19937 random(4);
  std::vector<DataRow> rows;
  for (int i = 0; i < 500; ++i) rows.push_back({static_cast<double>(i), 2.0 * i, 3.0 * i});
  std::shuffle(rows.begin(), rows.end(), random);
  SortAndDropDuplicates(rows);
  ASSERT_EQ(rows.size(), 500u);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(rows[i].x, static_cast<double>(i));
    EXPECT_EQ(rows[i].y, 2 * rows[i].x);
    EXPECT_EQ(rows[i].sigma, 3 * rows[i].x);
  }
}

}  // namespace
}  // namespace kalvex

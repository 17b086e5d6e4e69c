#include "graphs/strokes.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <utility>

namespace kalvex {
namespace {

constexpr PlotSize kPlot{100, 80};

RowRun RowsIn(Point from, Point to, int column) {
  const auto rows = StrokeForColumn(from, to, column, kPlot);
  return rows ? *rows : RowRun{-1, -1};
}
void ExpectRows(RowRun rows, int first, int last) {
  EXPECT_EQ(rows.first, first);
  EXPECT_EQ(rows.last, last);
}

TEST(StrokeForColumn, OfAFlatLineIsOnePixel) {
  ExpectRows(RowsIn({10, 20}, {20, 20}, 15), 20, 20);
  ExpectRows(RowsIn({10, 20.4}, {20, 20.4}, 15), 20, 20);
  ExpectRows(RowsIn({10, 20.6}, {20, 20.6}, 15), 21, 21);
}

TEST(StrokeForColumn, OfASteepLineCoversWhatItCrosses) {
  // With slope 4 the line covers 18 to 22 within the column. Rows shared with the neighbour belong to one of the two.
  ExpectRows(RowsIn({10, 0}, {20, 40}, 15), 19, 22);
  ExpectRows(RowsIn({20, 0}, {10, 40}, 15), 19, 22);
  ExpectRows(RowsIn({20, 40}, {10, 0}, 15), 19, 22);
}

TEST(StrokeForColumn, EndsWithItsPoints) {
  ExpectRows(RowsIn({10, 20}, {10.2, 40}, 10), 20, 40);
  ExpectRows(RowsIn({10, 20}, {11, 40}, 10), 20, 30);
  ExpectRows(RowsIn({10, 20}, {11, 40}, 11), 31, 40);
  ExpectRows(RowsIn({10, 40}, {10, 20}, 10), 20, 40);
}

TEST(StrokeForColumn, StaysWithinThePlot) {
  ExpectRows(RowsIn({10, -500}, {10, 500}, 10), 0, 79);
  EXPECT_FALSE(StrokeForColumn({10, -50}, {20, -2}, 15, kPlot));
  EXPECT_FALSE(StrokeForColumn({10, 200}, {20, 90}, 15, kPlot));
  EXPECT_FALSE(StrokeForColumn({-5, 5}, {-1, 5}, -3, kPlot));
  EXPECT_FALSE(StrokeForColumn({90, 5}, {110, 5}, 100, kPlot));
  ExpectRows(RowsIn({10, -1e9}, {11, 1e9}, 10), 0, 0);
  ExpectRows(RowsIn({10, -1e9}, {11, 1e9}, 11), 1, 79);
}

TEST(Lines, AreConnectedFromColumnToColumn) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> x(0, 99), y(0, 79);
  for (int k = 0; k < 500; ++k) {
    const std::vector<Point> line = {{x(random), y(random)}, {x(random), y(random)}};
    std::vector<RowRun> rows(100, {-1, -1});
    ForEachLineStroke(line, kPlot,
                      [&](std::size_t, int column, RowRun run) { rows[static_cast<std::size_t>(column)] = run; });
    const int low = Rounded(std::min(line[0].x, line[1].x)), high = Rounded(std::max(line[0].x, line[1].x));
    for (int c = low; c <= high; ++c) {
      const RowRun run = rows[static_cast<std::size_t>(c)];
      // If a line ends just inside a column, its last row may belong to the previous column.
      if (run.first < 0 && (c == low || c == high)) continue;
      ASSERT_GE(run.first, 0) << k << ' ' << c;
      const RowRun before = c == low ? run : rows[static_cast<std::size_t>(c - 1)];
      if (before.first < 0) continue;
      EXPECT_LE(run.first, before.last + 1) << k << ' ' << c;
      EXPECT_GE(run.last, before.first - 1) << k << ' ' << c;
    }
  }
}

TEST(Lines, HaveAGapWhereAPointHasNoPlace) {
  const std::vector<Point> line = {{0, 5}, {1, 5}, {2, kMissing}, {3, 5}, {4, 5}};
  std::set<int> columns;
  ForEachLineStroke(line, kPlot, [&](std::size_t, int column, RowRun) { columns.insert(column); });
  EXPECT_EQ(columns, (std::set<int>{0, 1, 3, 4}));
}

// A symbol as text: '#' ink, 'o' hole.
std::vector<std::string> Picture(SymbolShape shape, int size) {
  const int h = (size - 1) / 2;
  std::vector<std::string> lines(static_cast<std::size_t>(size), std::string(static_cast<std::size_t>(size), '.'));
  const auto columns = SymbolColumns(shape, size);
  for (int dx = -h; dx <= h; ++dx) {
    if (static_cast<std::size_t>(std::abs(dx)) >= columns.size()) continue;
    const SymbolColumn& column = columns[static_cast<std::size_t>(std::abs(dx))];
    const int across = h + dx;
    for (int row = column.first; row <= column.last; ++row) {
      const bool isHole = row >= column.holeFirst && row <= column.holeLast;
      const int down = h - row;
      lines[static_cast<std::size_t>(down)][static_cast<std::size_t>(across)] = isHole ? 'o' : '#';
    }
  }
  return lines;
}
using Lines = std::vector<std::string>;

TEST(Symbols, OfSizeFiveLookAsTheyAreNamed) {
  EXPECT_EQ(Picture(SymbolShape::kSquare, 5), (Lines{"#####", "#ooo#", "#ooo#", "#ooo#", "#####"}));
  EXPECT_EQ(Picture(SymbolShape::kDiamond, 5), (Lines{"..#..", ".#o#.", "#ooo#", ".#o#.", "..#.."}));
  EXPECT_EQ(Picture(SymbolShape::kCircle, 5), (Lines{".###.", "#ooo#", "#ooo#", "#ooo#", ".###."}));
  EXPECT_EQ(Picture(SymbolShape::kUpTriangle, 5), (Lines{"..#..", "..#..", ".#o#.", ".#o#.", "#####"}));
  EXPECT_EQ(Picture(SymbolShape::kDownTriangle, 5), (Lines{"#####", ".#o#.", ".#o#.", "..#..", "..#.."}));
}

TEST(Symbols, OfSizeOneArePixels) {
  for (int shape = 0; shape < 5; ++shape) {
    EXPECT_EQ(Picture(static_cast<SymbolShape>(shape), 1), (Lines{"#"})) << shape;
  }
}

TEST(Symbols, OfTheLargestCircleIsRound) {
  EXPECT_EQ(Picture(SymbolShape::kCircle, 15),
            (Lines{".....#####.....", "...##ooooo##...", "..#ooooooooo#..", ".#ooooooooooo#.", ".#ooooooooooo#.",
                   "#ooooooooooooo#", "#ooooooooooooo#", "#ooooooooooooo#", "#ooooooooooooo#", "#ooooooooooooo#",
                   ".#ooooooooooo#.", ".#ooooooooooo#.", "..#ooooooooo#..", "...##ooooo##...", ".....#####....."}));
}

TEST(StrokeBuffers, AreCutSortedAndMerged) {
  StrokeBuffer buffer;
  Restart(buffer, 20);
  for (const Stroke& s : {Stroke{3, 5, 9},
                          {1, -4, 2},
                          {3, 10, 12},
                          {3, 0, 1},
                          {3, 6, 7},
                          {1, 70, 200},
                          {7, -9, -1},
                          {7, 80, 90},
                          {-1, 3, 4},
                          {100, 3, 4}}) {
    EXPECT_TRUE(AddStroke(buffer, s.column, {s.first, s.last}));
  }
  IndexStrokes(buffer, kPlot);
  std::vector<std::array<int, 3>> left;
  for (const Stroke& s : buffer.strokes) left.push_back({s.column, s.first, s.last});
  EXPECT_EQ(left, (std::vector<std::array<int, 3>>{{1, 0, 2}, {1, 70, 79}, {3, 0, 1}, {3, 5, 12}}));
  EXPECT_EQ(buffer.firstStroke[1], 0);
  EXPECT_EQ(buffer.endStroke[1], 2);
  EXPECT_EQ(buffer.firstStroke[3], 2);
  EXPECT_EQ(buffer.endStroke[3], 4);
  EXPECT_EQ(buffer.firstStroke[2], -1);
  EXPECT_EQ(buffer.endStroke[2], -1);
}

TEST(StrokeBuffers, TakeNoMoreThanTheyCanHold) {
  StrokeBuffer buffer;
  Restart(buffer, 1);
  EXPECT_TRUE(AddStroke(buffer, 1, {1, 2}));
  EXPECT_FALSE(AddStroke(buffer, 1, {1, 2}));
  EXPECT_EQ(buffer.strokes.size(), 1u);
}

}  // namespace
}  // namespace kalvex

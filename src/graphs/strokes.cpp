#include "graphs/strokes.h"

#include <array>
#include <numeric>

namespace kalvex {
namespace {

constexpr double kHair = 1.1111e-11;  // tolerance for rounding at whole rows and columns

struct PlaceRange {
  double low, high;
};

// The range of rows in which the infinite line through both points crosses the column.
PlaceRange RangeOfLine(Point from, Point to, int column) {
  const auto [low, high] = std::minmax(from.y, to.y);
  if (std::fabs(to.x - from.x) < kHair) return {low - 0.5, high + 0.5};
  const double slope = (to.y - from.y) / (to.x - from.x), atZero = from.y - slope * from.x;
  const double before = (column - 0.5) * slope + atZero, after = (column + 0.5) * slope + atZero;
  if (slope >= 1) return {before, after};
  if (slope <= -1) return {after, before};
  const double middle = column * slope + atZero;
  return {middle - 0.5, middle + 0.5};
}

// Half height of each column of a circle and half height of its hole, for the sizes 1, 3, ... 15; -1 for no hole.
struct CircleColumn {
  int half;
  int hole = -1;
};
constexpr std::array<std::array<CircleColumn, 8>, 8> kCircles = {{
    {{{0}}},
    {{{1, 0}, {0}}},
    {{{2, 1}, {2, 1}, {1}}},
    {{{3, 2}, {3, 2}, {2, 1}, {1}}},
    {{{4, 3}, {4, 3}, {4, 3}, {3, 2}, {2}}},
    {{{5, 4}, {5, 4}, {5, 4}, {4, 3}, {3, 2}, {2}}},
    {{{6, 5}, {6, 5}, {6, 5}, {5, 4}, {5, 4}, {4, 2}, {2}}},
    {{{7, 6}, {7, 6}, {7, 6}, {6, 5}, {6, 5}, {5, 4}, {4, 2}, {2}}},
}};

SymbolColumn ColumnOf(SymbolShape shape, int h, int dx) {
  switch (shape) {
    case SymbolShape::kSquare:
      return dx < h ? SymbolColumn{-h, h, -(h - 1), h - 1} : SymbolColumn{-h, h, 0, -1};
    case SymbolShape::kDiamond:
      return {-(h - dx), h - dx, -(h - dx - 1), h - dx - 1};
    case SymbolShape::kUpTriangle:
      return {-h, h - 2 * dx, -h + 1, h - 2 * dx - 2};
    case SymbolShape::kDownTriangle:
      return {-h + 2 * dx, h, -h + 2 * dx + 2, h - 1};
    case SymbolShape::kCircle: {
      const auto [half, hole] = kCircles[static_cast<std::size_t>(h)][static_cast<std::size_t>(dx)];
      return {-half, half, -hole, hole};
    }
  }
  return {0, 0, 0, -1};
}

}  // namespace

std::optional<RowRun> StrokeForColumn(Point from, Point to, int column, PlotSize size) {
  if (column < 0 || column >= size.width) return std::nullopt;
  const PlaceRange line = RangeOfLine(from, to, column);
  // A steep segment would extend beyond its ends by half the height of a column.
  const auto [lower, upper] = std::minmax(from.y, to.y);
  const double low = std::max(line.low, lower - 0.5), high = std::min(line.high, upper + 0.5);
  if (high < -0.5 || low > size.height + 0.5) return std::nullopt;
  const RowRun rows{static_cast<int>(std::ceil(std::max(0.0, low + kHair))),
                    static_cast<int>(std::floor(std::min(size.height - 1.0, high + kHair)))};
  if (rows.first > rows.last) return std::nullopt;
  return rows;
}

bool AreBeyondOneSide(Point a, Point b, PlotSize size) {
  const auto [left, right] = std::minmax(a.x, b.x);
  const auto [low, high] = std::minmax(a.y, b.y);
  return right < -0.5 || left > size.width - 0.5 || high < -0.5 || low > size.height - 0.5;
}

std::vector<SymbolColumn> SymbolColumns(SymbolShape shape, int size) {
  const int h = (size - 1) / 2;
  std::vector<SymbolColumn> columns;
  for (int dx = 0; dx <= h; ++dx) {
    // The tip of a triangle lies inside of its square, so that the outer columns may be empty.
    if (const SymbolColumn column = ColumnOf(shape, h, dx); column.first <= column.last) columns.push_back(column);
  }
  return columns;
}

void Restart(StrokeBuffer& buffer, std::size_t capacity) {
  buffer.strokes.clear();
  buffer.capacity = capacity;
}

bool AddStroke(StrokeBuffer& buffer, int column, RowRun rows) {
  if (buffer.strokes.size() >= buffer.capacity) return false;
  buffer.strokes.push_back({column, rows.first, rows.last});
  return true;
}

void IndexStrokes(StrokeBuffer& buffer, PlotSize size) {
  const auto width = static_cast<std::size_t>(size.width);
  std::erase_if(buffer.strokes, [&](const Stroke& s) {
    return s.column < 0 || s.column >= size.width || s.last < 0 || s.first >= size.height;
  });

  // A counting sort by column needs no comparisons. A dense curve has a hundred strokes in each column.
  std::vector<std::size_t> ends(width + 1, 0);
  for (const Stroke& s : buffer.strokes) ++ends[static_cast<std::size_t>(s.column) + 1];
  std::partial_sum(ends.begin(), ends.end(), ends.begin());
  std::vector<Stroke> sorted(buffer.strokes.size());
  for (const Stroke& s : buffer.strokes) {
    sorted[ends[static_cast<std::size_t>(s.column)]++] = {s.column, std::max(s.first, 0),
                                                          std::min(s.last, size.height - 1)};
  }

  buffer.strokes.clear();
  buffer.firstStroke.assign(width, -1);
  buffer.endStroke.assign(width, -1);
  auto next = sorted.begin();
  for (std::size_t column = 0; column < width; ++column) {
    const auto end = sorted.begin() + static_cast<std::ptrdiff_t>(ends[column]);
    if (next == end) continue;
    std::sort(next, end, [](const Stroke& a, const Stroke& b) { return a.first < b.first; });
    buffer.firstStroke[column] = static_cast<int>(buffer.strokes.size());
    buffer.strokes.push_back(*next);
    for (; next != end; ++next) {
      Stroke& kept = buffer.strokes.back();
      if (next->first <= kept.last + 1) {
        kept.last = std::max(kept.last, next->last);
      } else {
        buffer.strokes.push_back(*next);
      }
    }
    buffer.endStroke[column] = static_cast<int>(buffer.strokes.size());
  }
}

}  // namespace kalvex

#include "pictures/coverage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace kalvex {
namespace {

constexpr std::int64_t kUnit = 64;  // of a pixel

struct UnitPoint {
  std::int64_t x, y;
};
UnitPoint InUnits(Point point) { return {std::llround(point.x * kUnit), std::llround(point.y * kUnit)}; }

std::int64_t FloorPixel(std::int64_t units) { return units >> 6; }
std::int64_t MiddleOf(std::int64_t pixel) { return pixel * kUnit + kUnit / 2; }

std::int64_t RoundedRoot(std::int64_t square) { return std::llround(std::sqrt(static_cast<double>(square))); }

// Number of pixels from one coordinate to the other.
std::size_t Pixels(int from, int to) { return static_cast<std::size_t>(to - from); }

std::uint8_t& CellAt(Coverage& coverage, int x, int y) {
  const PixelBox& box = coverage.box;
  return coverage.cells[Pixels(box.top, y) * Pixels(box.left, box.right) + Pixels(box.left, x)];
}

void Raise(std::uint8_t& cell, std::int64_t value) { cell = std::max(cell, static_cast<std::uint8_t>(value)); }

// A straight segment of a line.
struct Part {
  UnitPoint a, b;
  std::int64_t dx, dy, square, length256;  // length in 1/256 of a unit, for short parts
};

Part PartOf(UnitPoint a, UnitPoint b) {
  const std::int64_t dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
  return {a, b, dx, dy, square, RoundedRoot(square << 16)};
}

std::int64_t Distance(const Part& part, UnitPoint from) {
  const std::int64_t x = from.x - part.a.x, y = from.y - part.a.y;
  const std::int64_t along = x * part.dx + y * part.dy;
  if (along <= 0) return RoundedRoot(x * x + y * y);
  if (along >= part.square) {
    const std::int64_t xb = from.x - part.b.x, yb = from.y - part.b.y;
    return RoundedRoot(xb * xb + yb * yb);
  }
  return std::abs(x * part.dy - y * part.dx) * 256 / part.length256;
}

// The smallest and the largest x of a part in the rows from rowMiddle - reach to rowMiddle + reach.
std::pair<std::int64_t, std::int64_t> ReachOf(const Part& part, std::int64_t rowMiddle, std::int64_t reach) {
  if (part.dy == 0) return std::minmax(part.a.x, part.b.x);
  const std::int64_t top = std::min(part.a.y, part.b.y), bottom = std::max(part.a.y, part.b.y);
  const auto xAt = [&part, top = top, bottom = bottom](std::int64_t y) {
    return part.a.x + (std::clamp(y, top, bottom) - part.a.y) * part.dx / part.dy;
  };
  return std::minmax({xAt(rowMiddle - reach), xAt(rowMiddle + reach)});
}

void CoverPart(Coverage& coverage, const Part& part, std::int64_t halfWidth) {
  const std::int64_t reach = halfWidth + kUnit / 2;
  const PixelBox& box = coverage.box;
  const std::int64_t top = std::min(part.a.y, part.b.y), bottom = std::max(part.a.y, part.b.y);
  const auto firstRow = std::max<std::int64_t>(box.top, FloorPixel(top - reach));
  const auto lastRow = std::min<std::int64_t>(box.bottom - 1, FloorPixel(bottom + reach));
  for (std::int64_t y = firstRow; y <= lastRow; ++y) {
    const auto [low, high] = ReachOf(part, MiddleOf(y), reach);
    const auto first = std::max<std::int64_t>(box.left, FloorPixel(low - reach));
    const auto last = std::min<std::int64_t>(box.right - 1, FloorPixel(high + reach));
    for (std::int64_t x = first; x <= last; ++x) {
      const std::int64_t inside = reach - Distance(part, {MiddleOf(x), MiddleOf(y)});
      if (inside <= 0) continue;
      Raise(CellAt(coverage, static_cast<int>(x), static_cast<int>(y)),
            std::min<std::int64_t>(kFullCoverage, inside * kFullCoverage / kUnit));
    }
  }
}

// An area is cut into thin rows. For each row, the crossings of the outline with the middle of the row are stored.
constexpr std::int64_t kRowsOfPixel = 16;
constexpr std::int64_t kRowHeight = kUnit / kRowsOfPixel;

struct Crossing {
  std::int64_t row, x;
};

void AddCrossings(UnitPoint a, UnitPoint b, const PixelBox& box, std::vector<Crossing>& crossings) {
  if (a.y > b.y) std::swap(a, b);
  // The first row whose middle is not above y.
  const auto rowBelow = [](std::int64_t y) { return (y + kRowHeight / 2 - 1) >> 2; };
  const std::int64_t first = std::max(rowBelow(a.y), box.top * kRowsOfPixel);
  const std::int64_t end = std::min(rowBelow(b.y), box.bottom * kRowsOfPixel);
  for (std::int64_t row = first; row < end; ++row) {
    const std::int64_t y = row * kRowHeight + kRowHeight / 2;
    crossings.push_back({row, a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y)});
  }
}

// Adds a stretch of a thin row to the sums of the pixels in a row, in units.
void AddStretch(std::vector<std::int64_t>& sums, std::int64_t from, std::int64_t to, const PixelBox& box) {
  from = std::max(from, box.left * kUnit) - box.left * kUnit;
  to = std::min(to, box.right * kUnit) - box.left * kUnit;
  for (std::int64_t x = from; x < to;) {
    const std::int64_t next = std::min(to, (FloorPixel(x) + 1) * kUnit);
    sums[static_cast<std::size_t>(FloorPixel(x))] += next - x;
    x = next;
  }
}

int ClampedInt(double value, int low, int high) {
  return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
}

}  // namespace

bool IsEmpty(const PixelBox& box) { return box.left >= box.right || box.top >= box.bottom; }

PixelBox Intersection(const PixelBox& a, const PixelBox& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

PixelBox BoxAround(std::span<const std::vector<Point>> lines, double margin, const PixelBox& limits) {
  PixelBox around{limits.right, limits.bottom, limits.left, limits.top};
  for (const std::vector<Point>& line : lines) {
    for (const Point& point : line) {
      around.left = std::min(around.left, ClampedInt(std::floor(point.x - margin), limits.left, limits.right));
      around.top = std::min(around.top, ClampedInt(std::floor(point.y - margin), limits.top, limits.bottom));
      around.right = std::max(around.right, ClampedInt(std::ceil(point.x + margin), limits.left, limits.right));
      around.bottom = std::max(around.bottom, ClampedInt(std::ceil(point.y + margin), limits.top, limits.bottom));
    }
  }
  return around;
}

Coverage NoCoverage(const PixelBox& box) {
  if (IsEmpty(box)) return {{0, 0, 0, 0}, {}};
  return {box, std::vector<std::uint8_t>(Pixels(box.left, box.right) * Pixels(box.top, box.bottom))};
}

void CoverLines(Coverage& coverage, std::span<const std::vector<Point>> lines, double width) {
  const auto halfWidth = std::llround(width * kUnit / 2);
  for (const std::vector<Point>& line : lines) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      CoverPart(coverage, PartOf(InUnits(line[i - 1]), InUnits(line[i])), halfWidth);
    }
  }
}

void CoverPixels(Coverage& coverage, const PenStroke& onPixels) {
  const PixelBox& box = coverage.box;
  const double half = onPixels.width / 2;
  for (const std::vector<Point>& line : onPixels.lines) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const auto [left, right] = std::minmax(line[i - 1].x, line[i].x);
      const auto [top, bottom] = std::minmax(line[i - 1].y, line[i].y);
      const int end = ClampedInt(right + half, box.left, box.right);
      for (int y = ClampedInt(top - half, box.top, box.bottom); y < ClampedInt(bottom + half, box.top, box.bottom);
           ++y) {
        for (int x = ClampedInt(left - half, box.left, box.right); x < end; ++x) CellAt(coverage, x, y) = kFullCoverage;
      }
    }
  }
}

void CoverPolygon(Coverage& coverage, std::span<const Point> polygon) {
  const PixelBox& box = coverage.box;
  std::vector<Crossing> crossings;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    AddCrossings(InUnits(polygon[i]), InUnits(polygon[(i + 1) % polygon.size()]), box, crossings);
  }
  std::sort(crossings.begin(), crossings.end(),
            [](const Crossing& a, const Crossing& b) { return a.row != b.row ? a.row < b.row : a.x < b.x; });
  std::vector<std::int64_t> sums(Pixels(box.left, box.right));
  auto next = crossings.begin();
  for (int y = box.top; y < box.bottom; ++y) {
    std::fill(sums.begin(), sums.end(), 0);
    // A closed outline crosses each row an even number of times.
    for (; next != crossings.end() && next->row < (y + 1) * kRowsOfPixel; next += 2) {
      AddStretch(sums, next->x, (next + 1)->x, box);
    }
    for (int x = box.left; x < box.right; ++x) {
      constexpr std::int64_t kWhole = kUnit * kRowsOfPixel;
      Raise(CellAt(coverage, x, y), (sums[Pixels(box.left, x)] * kFullCoverage + kWhole / 2) / kWhole);
    }
  }
}

}  // namespace kalvex

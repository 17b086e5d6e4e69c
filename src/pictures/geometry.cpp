#include "pictures/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kalvex {
namespace {

constexpr double kMaxPenWidth = 1000;

// Larger coordinates change no picture. Below this limit differences of coordinates are exact enough for cutting.
constexpr double kFarAway = 1e9;

std::vector<Point> FinitePoints(std::span<const Point> points) {
  std::vector<Point> finite;
  finite.reserve(points.size() + 1);
  for (const Point& point : points) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) continue;
    finite.push_back({std::clamp(point.x, -kFarAway, kFarAway), std::clamp(point.y, -kFarAway, kFarAway)});
  }
  return finite;
}

Box Widened(const Box& box, double margin) {
  return {box.left - margin, box.top - margin, box.right + margin, box.bottom + margin};
}

bool RunsAlongAxes(std::span<const Point> points) {
  return std::adjacent_find(points.begin(), points.end(),
                            [](const Point& a, const Point& b) { return a.x != b.x && a.y != b.y; }) == points.end();
}

// For a pen of odd width the middle of the pixel, for one of even width the nearest edge between pixels.
double OnPixel(double coordinate, double width) {
  return std::fmod(width, 2) == 1 ? std::floor(coordinate) + 0.5 : std::floor(coordinate + 0.5);
}

// The fractions of the way from a to b at which the segment enters and leaves the box. entry > exit if it misses the
// box.
struct Passage {
  double entry = 0, exit = 1;
};
void CutAt(double start, double way, double low, double high, Passage& passage) {
  if (way == 0) {
    if (start < low || start > high) passage.entry = 2;
    return;
  }
  const double toLow = (low - start) / way, toHigh = (high - start) / way;
  passage.entry = std::max(passage.entry, std::min(toLow, toHigh));
  passage.exit = std::min(passage.exit, std::max(toLow, toHigh));
}

std::vector<std::vector<Point>> VisibleLines(std::span<const Point> points, const Box& box) {
  std::vector<std::vector<Point>> lines;
  bool goesOn = false;  // the previous segment ended at the start of this one
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Point a = points[i - 1], b = points[i];
    const double dx = b.x - a.x, dy = b.y - a.y;
    Passage passage;
    CutAt(a.x, dx, box.left, box.right, passage);
    CutAt(a.y, dy, box.top, box.bottom, passage);
    if (passage.entry > passage.exit) {
      goesOn = false;
      continue;
    }
    const auto at = [&](double share) { return Point{a.x + share * dx, a.y + share * dy}; };
    if (!goesOn || passage.entry > 0) lines.push_back({passage.entry > 0 ? at(passage.entry) : a});
    lines.back().push_back(passage.exit < 1 ? at(passage.exit) : b);
    goesOn = passage.exit == 1;
  }
  return lines;
}

// The part of a polygon on the side of a straight edge where `inside` is not negative.
template <class Inside>
std::vector<Point> CutPolygon(std::span<const Point> points, Inside inside) {
  std::vector<Point> kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const Point a = points[i], b = points[(i + 1) % points.size()];
    const double ofA = inside(a), ofB = inside(b);
    if (ofA >= 0) kept.push_back(a);
    if ((ofA >= 0) != (ofB >= 0)) {
      const double share = ofA / (ofA - ofB);
      kept.push_back({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)});
    }
  }
  return kept;
}

}  // namespace

PenStroke PenStrokeOf(std::span<const Point> points, const Pen& pen, bool closed, const Box& box) {
  PenStroke stroke{{}, pen.width >= 1 ? std::min(pen.width, kMaxPenWidth) : 1, false};
  std::vector<Point> line = FinitePoints(points);
  if (line.empty()) return stroke;
  if (closed || line.size() == 1) line.push_back(line.front());
  stroke.onPixels = RunsAlongAxes(line);
  if (stroke.onPixels) {
    stroke.width = std::round(stroke.width);
    for (Point& point : line) point = {OnPixel(point.x, stroke.width), OnPixel(point.y, stroke.width)};
  }
  stroke.lines = VisibleLines(line, Widened(box, stroke.width + 1));
  return stroke;
}

std::vector<Point> VisiblePolygon(std::span<const Point> points, const Box& box) {
  const Box seen = Widened(box, 1);
  std::vector<Point> polygon = FinitePoints(points);
  polygon = CutPolygon(polygon, [&](const Point& point) { return point.x - seen.left; });
  polygon = CutPolygon(polygon, [&](const Point& point) { return seen.right - point.x; });
  polygon = CutPolygon(polygon, [&](const Point& point) { return point.y - seen.top; });
  polygon = CutPolygon(polygon, [&](const Point& point) { return seen.bottom - point.y; });
  return polygon;
}

}  // namespace kalvex

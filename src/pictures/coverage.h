// How much of each pixel a line or an area covers, in sixteenths. That is fine enough for smooth edges, and a graph
// stays within 256 colours. All calculations use integers, from points rounded to 1/64 of a pixel, so that a picture is
// the same on every machine.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "pictures/canvas.h"
#include "pictures/geometry.h"

namespace kalvex {

inline constexpr int kFullCoverage = 16;

// The pixels left <= x < right, top <= y < bottom.
struct PixelBox {
  int left, top, right, bottom;
};
bool IsEmpty(const PixelBox& box);
PixelBox Intersection(const PixelBox& a, const PixelBox& b);
// The smallest box around all points of the lines, widened by the margin, within the limits.
PixelBox BoxAround(std::span<const std::vector<Point>> lines, double margin, const PixelBox& limits);

struct Coverage {
  PixelBox box;
  std::vector<std::uint8_t> cells;  // row by row; a pixel that is covered twice keeps the larger coverage
};
Coverage NoCoverage(const PixelBox& box);

// Adds lines with round ends and joints. At an edge the coverage falls from full to zero within a pixel.
void CoverLines(Coverage& coverage, std::span<const std::vector<Point>> lines, double width);
// Adds lines along the axes that were snapped to whole pixels.
void CoverPixels(Coverage& coverage, const PenStroke& onPixels);
// Adds the inside of a polygon by the even-odd rule.
void CoverPolygon(Coverage& coverage, std::span<const Point> polygon);

}  // namespace kalvex

// What the writers of vector pictures have in common.
#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "pictures/geometry.h"

namespace kalvex {

// Coordinates with a hundredth of a pixel, without zeros at the end.
void AppendCoordinate(std::string& out, double value);

// Where the baseline of a text starts, and how wide it is.
struct TextLine {
  Point start;
  double width;
};
TextLine TextLineOf(Point at, const TextPlace& place, const Font& font, std::string_view utf8);

inline bool IsFinite(Point p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// The box of a rectangle or a clip within the picture; empty, with right = left, for edges that are no numbers.
Box VisibleBox(double left, double top, double right, double bottom, const Box& picture);

// Whether a polygon can be drawn as it is: nothing of it is to be cut off, nor moved into pixels.
bool IsWholePolygon(std::span<const Point> points, const Box& picture);

}  // namespace kalvex

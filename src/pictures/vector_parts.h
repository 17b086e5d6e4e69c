// Helpers for the writers of vector pictures.
#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "pictures/geometry.h"

namespace kalvex {

// Appends a coordinate with two decimals, without trailing zeros.
void AppendCoordinate(std::string& out, double value);

// The start of the baseline of a text, and the text's width.
struct TextLine {
  Point start;
  double width;
};
TextLine TextLineOf(Point at, const TextPlace& place, const Font& font, std::string_view utf8);

inline bool IsFinite(Point p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// The part of a rectangle or a clip inside the picture. Empty, with right = left, if an edge is not a number.
Box VisibleBox(double left, double top, double right, double bottom, const Box& picture);

// True if a polygon can be drawn unchanged: no part of it must be cut off or snapped to pixels.
bool IsWholePolygon(std::span<const Point> points, const Box& picture);

}  // namespace kalvex

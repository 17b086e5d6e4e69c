// Preparing points for all kinds of pictures: leave out points that are not finite, keep lines crisp, and cut off what
// lies outside.
#pragma once

#include <span>
#include <vector>

#include "pictures/canvas.h"

namespace kalvex {

struct Box {
  double left, top, right, bottom;
};

// Lines ready for drawing, cut to the visible part. Points that are not finite are left out, and their neighbours are
// joined. A line of one point becomes a line of zero length. A pen thinner than a pixel counts as one pixel.
//   onPixels   all parts of the line are parallel to the axes; the line was snapped to the pixels of its points and its
//              width rounded, so that it fills whole pixels, including those at its ends
struct PenStroke {
  std::vector<std::vector<Point>> lines;
  double width;
  bool onPixels;
};
// closed: the last point is joined to the first. box: the picture.
PenStroke PenStrokeOf(std::span<const Point> points, const Pen& pen, bool closed, const Box& box);

// The part of a polygon within the box, widened by a pixel; empty if nothing is left.
std::vector<Point> VisiblePolygon(std::span<const Point> points, const Box& box);

}  // namespace kalvex

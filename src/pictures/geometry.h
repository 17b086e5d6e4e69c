// What all pictures do alike with points: leave out those that are none, keep lines crisp, and cut off what lies
// outside.
#pragma once

#include <span>
#include <vector>

#include "pictures/canvas.h"

namespace kalvex {

struct Box {
  double left, top, right, bottom;
};

// Lines ready to be drawn, cut to what can be seen of them. Points that are not finite are left out, and their
// neighbours are joined. A line of one point becomes one that ends where it begins. A pen thinner than a pixel counts
// as one pixel.
//   onPixels   the line runs along the axes everywhere: it was moved into the pixels that its points lie in, and its
//              width made whole, so that it fills pixels, those at its ends included
struct PenStroke {
  std::vector<std::vector<Point>> lines;
  double width;
  bool onPixels;
};
// closed: the last point is joined to the first. box: of the picture.
PenStroke PenStrokeOf(std::span<const Point> points, const Pen& pen, bool closed, const Box& box);

// The part of a polygon within the box, widened by a pixel; empty if nothing is left.
std::vector<Point> VisiblePolygon(std::span<const Point> points, const Box& box);

}  // namespace kalvex

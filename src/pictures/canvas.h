// What is drawn on: a record of functions, filled by a window, by a picture in memory, and by the writers of vector
// pictures. Units are pixels, x to the right and y downwards, fractions allowed; a pixel (i, j) covers i <= x < i + 1,
// j <= y < j + 1. Colours are 0xRRGGBB.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kalvex {

// Serif has the widths of Times, sans those of Helvetica.
enum class Face { kSerif, kSans };

// The height is that of a line of text, in pixels.
struct Font {
  Face face;
  double height;
};

struct TextSize {
  int width, height;
};

enum class HorizontalAlign { kLeft, kCentre, kRight };
enum class VerticalAlign { kTop, kMiddle, kBottom };

// Which point of a text stands at the point given. A text that is turned reads from bottom to top; its place is told as
// of the text before it was turned about that point.
struct TextPlace {
  HorizontalAlign horizontal;
  VerticalAlign vertical;
  bool turned;
};

struct Point {
  double x, y;
};

struct Pen {
  std::uint32_t colour;
  double width;
};

struct Canvas {
  void* self;
  void (*text)(void* self, Point at, TextPlace, const Font&, std::uint32_t colour, std::string_view utf8);
  void (*polyline)(void* self, std::span<const Point>, const Pen&);
  // A null pointer leaves out the filling or the outline.
  void (*polygon)(void* self, std::span<const Point>, const std::uint32_t* fill, const Pen* outline);
  // Filled; in a raster the pixels left <= x < right, top <= y < bottom.
  void (*rectangle)(void* self, double left, double top, double right, double bottom, std::uint32_t colour);
  // What is drawn until `unclip` shows within this rectangle only.
  void (*clip)(void* self, double left, double top, double right, double bottom);
  void (*unclip)(void* self);
};

}  // namespace kalvex

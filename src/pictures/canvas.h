// What is drawn on: a window, a picture in memory, or a vector picture for a file. Units are pixels, x to the right and
// y downwards, fractions allowed; a pixel (i, j) covers i <= x < i + 1, j <= y < j + 1. Colours are 0xRRGGBB.
#pragma once

#include <cstdint>
#include <optional>
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

class Canvas {
 public:
  virtual ~Canvas() = default;
  virtual void DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) = 0;
  virtual void DrawPolyline(std::span<const Point> points, const Pen& pen) = 0;
  // A filling or an outline that is not given is left out.
  virtual void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                           const std::optional<Pen>& outline) = 0;
  // In a raster the pixels left <= x < right, top <= y < bottom.
  virtual void FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) = 0;
  // What is drawn until Unclip shows within this rectangle only. A second clip replaces the first.
  virtual void Clip(double left, double top, double right, double bottom) = 0;
  virtual void Unclip() = 0;
};

}  // namespace kalvex

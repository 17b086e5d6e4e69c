// Drawing on a window, into a picture in memory, or into a vector picture for a file. This folder stands on floor 6; it
// knows only points, colours and texts, and uses no drawing library.
//
//   canvas.h          the interface Canvas, and points, pens and fonts
//   geometry.h        cutting lines and polygons to a picture; characters.h, text_metrics.h: characters and their
//   widths pixel_surface.h   a picture in memory; coverage.h: smooth edges; stroke_face.h, glyph_shapes.h: its letters
//   png.h             that picture as a PNG file; deflate.h: its compression
//   svg.h, pdf.h      vector pictures; vector_parts.h: what both need
//
// Units are pixels, x to the right and y downwards, fractions allowed. Pixel (i, j) covers i <= x < i + 1,
// j <= y < j + 1. Colours are 0xRRGGBB.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kalvex {

// The widths of serif are those of Times, the widths of sans those of Helvetica.
enum class Face { kSerif, kSans };

// height: of a line of text, in pixels.
struct Font {
  Face face;
  double height;
};

struct TextSize {
  int width, height;
};

enum class HorizontalAlign { kLeft, kCentre, kRight };
enum class VerticalAlign { kTop, kMiddle, kBottom };

// The point of a text that is placed at the given point. A turned text reads from bottom to top. Its alignment is that
// of the horizontal text, which is then turned about the given point.
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
  // Without a value, the filling or the outline is not drawn.
  virtual void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                           const std::optional<Pen>& outline) = 0;
  // On a raster: the pixels left <= x < right, top <= y < bottom.
  virtual void FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) = 0;
  // Until Unclip, drawing has an effect inside this rectangle only. A second clip replaces the first.
  virtual void Clip(double left, double top, double right, double bottom) = 0;
  virtual void Unclip() = 0;
};

}  // namespace kalvex

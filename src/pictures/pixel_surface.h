// A picture in memory.
#pragma once

#include <cstdint>
#include <vector>

#include "pictures/canvas.h"
#include "pictures/coverage.h"

namespace kalvex {

inline constexpr int kMaxPictureSide = 16384;

// Lines along the axes and rectangles fill whole pixels; all else has smooth edges. Texts start at whole pixels, in
// strokes of this program's own.
struct PixelSurface : public Canvas {
  int width, height;
  std::vector<std::uint32_t> pixels;  // 0xRRGGBB, row by row from the top
  PixelBox clip;                      // what may be drawn to

  // Sides are held between 0 and the limit.
  PixelSurface(int wide, int high, std::uint32_t background);

  void DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) override;
  void DrawPolyline(std::span<const Point> points, const Pen& pen) override;
  void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                   const std::optional<Pen>& outline) override;
  void FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) override;
  void Clip(double left, double top, double right, double bottom) override;
  void Unclip() override;
};

}  // namespace kalvex

// A picture in memory.
#pragma once

#include <cstdint>
#include <vector>

#include "pictures/canvas.h"
#include "pictures/coverage.h"

namespace kalvex {

inline constexpr int kMaxPictureSide = 16384;

// Lines along the axes and rectangles fill whole pixels; everything else has smooth edges. Texts start at whole pixels
// and are drawn with the program's own letters.
struct PixelSurface : public Canvas {
  int width, height;
  std::vector<std::uint32_t> pixels;  // 0xRRGGBB, row by row from the top
  PixelBox clip;                      // drawing has an effect inside this box only

  // Sides are limited to the range from 0 to the largest size.
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

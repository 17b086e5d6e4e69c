// Pictures as SVG files.
#pragma once

#include <string>

#include "pictures/canvas.h"
#include "pictures/geometry.h"

namespace kalvex {

class SvgPicture : public Canvas {
 public:
  SvgPicture(int width, int height) : width_(width), height_(height) {}

  void DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) override;
  void DrawPolyline(std::span<const Point> points, const Pen& pen) override;
  void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                   const std::optional<Pen>& outline) override;
  void FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) override;
  void Clip(double left, double top, double right, double bottom) override;
  void Unclip() override;

  // The text of the file. Texts stay texts, in the fonts of the viewer. The same drawing gives the same bytes.
  std::string Text() const;

 private:
  Box Bounds() const { return {0, 0, static_cast<double>(width_), static_cast<double>(height_)}; }

  int width_, height_;
  std::string body_;  // the elements drawn so far
  int clips_ = 0;
  bool clipped_ = false;
};

}  // namespace kalvex

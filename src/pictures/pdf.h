// Pictures as PDF files of one page.
#pragma once

#include <string>

#include "pictures/canvas.h"
#include "pictures/geometry.h"

namespace kalvex {

// A pixel is 0.75 pt.
class PdfPicture : public Canvas {
 public:
  PdfPicture(int width, int height) : width_(width), height_(height) {}

  void DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) override;
  void DrawPolyline(std::span<const Point> points, const Pen& pen) override;
  void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                   const std::optional<Pen>& outline) override;
  void FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) override;
  void Clip(double left, double top, double right, double bottom) override;
  void Unclip() override;

  // The drawing as PDF operators.
  std::string Drawing() const;
  // The bytes of the file. Texts stay texts, in three fonts that every viewer has. The same drawing gives the same
  // bytes.
  std::string Bytes() const;

 private:
  Box Bounds() const { return {0, 0, static_cast<double>(width_), static_cast<double>(height_)}; }

  int width_, height_;
  std::string body_;
  bool clipped_ = false;
};

}  // namespace kalvex

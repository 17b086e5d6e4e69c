// The canvas of a window: pixels of an image, and texts in the system's fonts.
#pragma once

#include <QImage>
#include <QPainter>

#include "pictures/canvas.h"

namespace kalvex {

// Draws into the image during its lifetime. Coordinates are pixels of the image divided by its device pixel ratio.
class QtCanvas : public Canvas {
 public:
  explicit QtCanvas(QImage& image);
  void DrawText(Point at, TextPlace place, const Font& font, std::uint32_t colour, std::string_view utf8) override;
  void DrawPolyline(std::span<const Point> points, const Pen& pen) override;
  void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t> fill,
                   const std::optional<Pen>& outline) override;
  void FillRectangle(double left, double top, double right, double bottom, std::uint32_t colour) override;
  void Clip(double left, double top, double right, double bottom) override;
  void Unclip() override;

 private:
  QPainter painter_;
};

}  // namespace kalvex

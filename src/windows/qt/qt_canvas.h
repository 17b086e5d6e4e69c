// The canvas of a window: pixels of an image, and texts in the system's fonts.
#pragma once

#include <QImage>
#include <QPainter>

#include "pictures/canvas.h"

namespace kalvex {

// Draws into the image for as long as it lives. Distances are those of the image divided by its device pixel ratio.
class QtCanvas {
 public:
  explicit QtCanvas(QImage& image);
  Canvas Filled();

 private:
  static QPainter& PainterOf(void* self) { return static_cast<QtCanvas*>(self)->painter_; }
  QPainter painter_;
};

}  // namespace kalvex

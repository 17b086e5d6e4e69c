// Pictures as PDF files of one page.
#pragma once

#include <string>

#include "pictures/canvas.h"

namespace kalvex {

// A pixel is 0.75 pt.
struct PdfPicture {
  int width, height;
  std::string body;  // what is drawn, in the page's own language
  bool clipped = false;
};

// The picture must outlive the canvas. A second clip replaces the first.
Canvas CanvasOf(PdfPicture& picture);

// The bytes of the file. Texts are texts, in the three fonts that every viewer has; the same drawing gives the same
// bytes.
std::string PdfOf(const PdfPicture& picture);

}  // namespace kalvex

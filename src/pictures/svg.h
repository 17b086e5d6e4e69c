// Pictures as SVG files.
#pragma once

#include <string>

#include "pictures/canvas.h"

namespace kalvex {

struct SvgPicture {
  int width, height;
  std::string body;  // the elements drawn so far
  int clips = 0;
  bool clipped = false;
};

// The picture must outlive the canvas. A second clip replaces the first.
Canvas CanvasOf(SvgPicture& picture);

// The text of the file. Texts are texts, in the fonts that the viewer has; the same drawing gives the same bytes.
std::string SvgOf(const SvgPicture& picture);

}  // namespace kalvex

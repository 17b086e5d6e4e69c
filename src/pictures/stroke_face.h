// Letters drawn with strokes of one width, for pictures in memory. The characters have the widths of the metrics.
// Letters are fitted to the pixel grid: their stems and bars fill whole pixels at any height.
#pragma once

#include <string_view>
#include <vector>

#include "pictures/canvas.h"

namespace kalvex {

struct TextStrokes {
  std::vector<std::vector<Point>> lines;  // from the start of the baseline, x to the right, y downwards
  double width;
};

// Strokes for printable ASCII, Greek, letters with accents, and the signs of labels. Any other character is drawn as
// '?'.
TextStrokes StrokesOfText(const Font& font, std::string_view utf8);

}  // namespace kalvex

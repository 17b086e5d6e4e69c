// A picture in memory.
#pragma once

#include <cstdint>
#include <vector>

#include "pictures/canvas.h"
#include "pictures/coverage.h"

namespace kalvex {

inline constexpr int kMaxPictureSide = 16384;

struct PixelSurface {
  int width, height;
  std::vector<std::uint32_t> pixels;  // 0xRRGGBB, row by row from the top
  PixelBox clip;                      // what may be drawn to
};

// Sides are held between 0 and the limit.
PixelSurface MakePixelSurface(int width, int height, std::uint32_t background);

// Lines along the axes and rectangles fill whole pixels; all else has smooth edges. Texts start at whole pixels, in
// strokes of this program's own. A second clip replaces the first. The surface must outlive the canvas.
Canvas CanvasOf(PixelSurface& surface);

}  // namespace kalvex

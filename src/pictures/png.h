// Pictures as PNG files.
#pragma once

#include <string>

#include "pictures/pixel_surface.h"

namespace kalvex {

// The bytes of the file: 8 bits per pixel with a palette if there are at most 256 colours, else 24 bits. PNG needs at
// least one pixel, so an empty surface becomes one white pixel. The same surface gives the same bytes.
std::string PngOf(const PixelSurface& surface);

}  // namespace kalvex

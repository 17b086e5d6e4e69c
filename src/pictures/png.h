// Pictures as PNG files.
#pragma once

#include <string>

#include "pictures/pixel_surface.h"

namespace kalvex {

// The bytes of the file: 8 bits a pixel with a palette where there are at most 256 colours, else 24 bits. A picture has
// at least one pixel there: an empty surface becomes a white one. The same surface gives the same bytes.
std::string PngOf(const PixelSurface& surface);

}  // namespace kalvex

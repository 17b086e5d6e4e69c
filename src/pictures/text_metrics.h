// The size of a text. It is the same on every machine, whatever fonts are installed, so that the layout of a graph is
// the same in a window, in pixels and in a vector file.
#pragma once

#include <string_view>

#include "pictures/canvas.h"

namespace kalvex {

// The advance of a character in thousandths of the em: the widths of Times-Roman (serif) and Helvetica (sans), those of
// Symbol for Greek letters and mathematical signs. Any other character is drawn as '?'.
int AdvanceOf(Face face, char32_t character);

// The em of a font in pixels, and the height of its lines above the baseline. The height of a font is that of a line,
// from the highest accent to the lowest descender. A height above the limit counts as the limit, one that is not
// positive as 0.
inline constexpr double kMaxFontHeight = 1000;
double EmOf(const Font& font);
double AscentOf(const Font& font);

// Width and height in whole pixels; an empty text has width 0. There are no line breaks: each control character is
// drawn as '?'.
TextSize TextExtent(const Font& font, std::string_view utf8);

// Left end of the baseline of a text that is placed at the point. For a turned text it is the lowest point of the
// baseline.
Point BaselineStart(Point at, const TextPlace& place, const Font& font, std::string_view utf8);

}  // namespace kalvex

// How much room a text takes: the same on every machine, whatever fonts it has, so that a graph is laid out alike in a
// window, in pixels and in a vector file.
#pragma once

#include <string_view>

#include "pictures/canvas.h"

namespace kalvex {

// How far the pen moves on for a character, in thousandths of the em: the widths of Times-Roman (serif) and Helvetica
// (sans), those of Symbol for Greek letters and signs of mathematics. What is in none of them is drawn as '?'.
int AdvanceOf(Face face, char32_t character);

// The em of a font in pixels, and how high its lines reach above the baseline. The height of a font is that of a line,
// from the highest accent to the lowest descender; one above the limit counts as the limit, one that is not positive as
// 0.
inline constexpr double kMaxFontHeight = 1000;
double EmOf(const Font& font);
double AscentOf(const Font& font);

// Width and height in whole pixels; width 0 for an empty text. No line breaks: a control character is one '?'.
TextSize TextExtent(const Font& font, std::string_view utf8);

// Left end of the baseline of a text placed at the point, on the picture: of a turned text that is its lowest point.
Point BaselineStart(Point at, const TextPlace& place, const Font& font, std::string_view utf8);

}  // namespace kalvex

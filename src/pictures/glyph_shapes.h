// The shapes of characters for labels in pictures in memory.
#pragma once

#include <string>

namespace kalvex {

// A shape is a path in its own units: x from 0 at the leftmost stem to 100 at the rightmost, y upwards from 0 at the
// baseline. Small letters reach 66, capitals and ascenders 100, descenders -28. The commands:
//     m x,y       begins a line
//     l x,y       a straight line
//     h x,y       a quarter of an ellipse that starts along x and ends along y
//     v x,y       a quarter of an ellipse that starts along y and ends along x
//     q a,b x,y   a parabola with the control point (a, b)
//     d x,y       a dot
//     s < >       a serif at the pen: to both sides, to the left, to the right; only in the serif face
//
// A character without a shape has that of '?'.
std::string GlyphPath(char32_t character);

}  // namespace kalvex

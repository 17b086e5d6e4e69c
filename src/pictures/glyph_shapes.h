// The shapes of the characters that pictures in memory are labelled with.
#pragma once

#include <string>

namespace kalvex {

// A shape is a path in its own measure: x from 0 at the leftmost stem to 100 at the rightmost, y upwards from 0 at the
// baseline; small letters reach 66, capitals and ascenders 100, descenders -28. The commands:
//     m x,y       begins a line
//     l x,y       goes straight on
//     h x,y       a quarter of an ellipse that starts along x and ends along y
//     v x,y       one that starts along y and ends along x
//     q a,b x,y   a parabola bent towards (a, b)
//     d x,y       a dot
//     s < >       a serif where the pen is, to both sides, to the left, to the right; in the serif face only
//
// That of '?' for a character that has none.
std::string GlyphPath(char32_t character);

}  // namespace kalvex

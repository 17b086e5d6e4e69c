// The first phase of reading a macro: the file becomes one compact text without comments, blanks and lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kalvex {

// The compact text of a macro whose pairs of carriage return and line feed are single line feeds already. Blanks go
// outside strings, tabs everywhere, and from a '#' outside a string to the end of its line everything. A string that is
// open at the end of its line no longer protects what follows. If the last line is a comment without a line feed, the
// first line is lost: macros of this format rely on being read just so.
//   sources   if given, the place in the text of each character that was kept
std::string CleanMacro(std::string_view text, std::vector<std::uint32_t>* sources = nullptr);

struct LineAndColumn {
  int line = 1;
  int column = 1;
};
LineAndColumn PlaceOf(std::string_view text, std::size_t offset);

}  // namespace kalvex

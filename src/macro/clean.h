// The first phase of reading a macro: the file becomes one compact text without comments, blanks and line ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kalvex {

// The compact text of a macro in which each pair of carriage return and line feed is already one line feed. Blanks are
// removed outside of strings, tabs everywhere. Outside of strings, a '#' starts a comment up to the end of its line. A
// string that is still open at the end of its line no longer protects the following text. If the last line is a comment
// without a line feed, the first line is lost, as macros of this format expect.
//   sources   if given, receives the place in the text of each character that was kept
std::string CleanMacro(std::string_view text, std::vector<std::uint32_t>* sources = nullptr);

struct LineAndColumn {
  int line = 1;
  int column = 1;
};
LineAndColumn PlaceOf(std::string_view text, std::size_t offset);

}  // namespace kalvex

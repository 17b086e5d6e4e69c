// The characters of titles and labels.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kalvex {

// The characters of a text in UTF-8. A byte outside of any valid character is read as Latin-1, because names in data
// files may have an unknown encoding. The Ohm and Angstrom signs become the letters.
std::vector<char32_t> CharactersOf(std::string_view utf8);

// The code of the character in Windows code page 1252; 0 if it has none.
std::uint8_t WinAnsiCode(char32_t character);

// A Greek letter or a mathematical sign: its code in the Symbol font, and its advance there in thousandths of the em.
struct SymbolCharacter {
  char32_t character;
  std::uint8_t code;
  int advance;
};
// Null if the Symbol font is not needed or has no such character.
const SymbolCharacter* FindSymbol(char32_t character);

// A raised or lowered digit or sign is drawn as a small one of the normal character.
struct SmallCharacter {
  char32_t base;  // 0: not a small character
  double rise;    // of the baseline, in em; negative if lowered
};
inline constexpr double kSmallSize = 0.6;  // of the em of the text
// The raised digits 1, 2 and 3 are small characters too, although fonts contain them, so that all raised digits look
// alike.
SmallCharacter SmallCharacterOf(char32_t character);

}  // namespace kalvex

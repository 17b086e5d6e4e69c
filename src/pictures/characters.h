// The characters that titles and labels are made of.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kalvex {

// The characters of a text in UTF-8. A byte that belongs to no valid character stands for itself, as in Latin-1: data
// files bring names with them of which nobody knows the encoding. The Ohm and Angstrom signs read as the letters.
std::vector<char32_t> CharactersOf(std::string_view utf8);

// Its code in the Windows encoding of western languages (1252), 0 if it has none.
std::uint8_t WinAnsiCode(char32_t character);

// A Greek letter or a sign of mathematics: its code in the Symbol font, and its advance there in thousandths of the em.
struct SymbolCharacter {
  char32_t character;
  std::uint8_t code;
  int advance;
};
// Null if Symbol is of no use for it.
const SymbolCharacter* FindSymbol(char32_t character);

// Raised and lowered digits and signs are small ones of the common kind.
struct SmallCharacter {
  char32_t base;  // 0: not a small character
  double rise;    // of the baseline, in em; negative if lowered
};
inline constexpr double kSmallSize = 0.6;  // of the em of the text
// The raised digits that fonts hold themselves (1, 2 and 3) count as small, too, so that all of them match.
SmallCharacter SmallCharacterOf(char32_t character);

}  // namespace kalvex

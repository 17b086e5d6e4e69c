#include "pictures/characters.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace kalvex {
namespace {

// The codes 128 to 159; 0 where there is no character.
constexpr std::array<char32_t, 32> kWinAnsiMiddle = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                     0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                     0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                     0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// In ascending order of the characters.
constexpr SymbolCharacter kSymbols[] = {
    {0x0391, 'A', 722},  {0x0392, 'B', 667},  {0x0393, 'G', 603},  {0x0394, 'D', 612},  {0x0395, 'E', 611},
    {0x0396, 'Z', 611},  {0x0397, 'H', 722},  {0x0398, 'Q', 741},  {0x0399, 'I', 333},  {0x039A, 'K', 722},
    {0x039B, 'L', 686},  {0x039C, 'M', 889},  {0x039D, 'N', 722},  {0x039E, 'X', 645},  {0x039F, 'O', 722},
    {0x03A0, 'P', 768},  {0x03A1, 'R', 556},  {0x03A3, 'S', 592},  {0x03A4, 'T', 611},  {0x03A5, 'U', 690},
    {0x03A6, 'F', 763},  {0x03A7, 'C', 722},  {0x03A8, 'Y', 795},  {0x03A9, 'W', 768},  {0x03B1, 'a', 631},
    {0x03B2, 'b', 549},  {0x03B3, 'g', 411},  {0x03B4, 'd', 494},  {0x03B5, 'e', 439},  {0x03B6, 'z', 494},
    {0x03B7, 'h', 603},  {0x03B8, 'q', 521},  {0x03B9, 'i', 329},  {0x03BA, 'k', 549},  {0x03BB, 'l', 549},
    {0x03BC, 'm', 576},  {0x03BD, 'n', 521},  {0x03BE, 'x', 493},  {0x03BF, 'o', 549},  {0x03C0, 'p', 549},
    {0x03C1, 'r', 549},  {0x03C2, 'V', 439},  {0x03C3, 's', 603},  {0x03C4, 't', 439},  {0x03C5, 'u', 576},
    {0x03C6, 'f', 521},  {0x03C7, 'c', 549},  {0x03C8, 'y', 686},  {0x03C9, 'w', 686},  {0x03D5, 'j', 603},
    {0x2192, 0xAE, 987}, {0x2202, 0xB6, 494}, {0x2212, '-', 549},  {0x221A, 0xD6, 549}, {0x221E, 0xA5, 713},
    {0x2248, 0xBB, 549}, {0x2260, 0xB9, 549}, {0x2264, 0xA3, 549}, {0x2265, 0xB3, 549}};

constexpr char32_t kMinus = 0x2212;

// Decodes the valid UTF-8 character at the start of the bytes and returns its length; 0 if there is none. Overlong
// forms, surrogates and numbers beyond the last character are invalid.
std::size_t DecodeOne(std::string_view bytes, char32_t& character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  if (byte(0) < 0x80) {
    character = byte(0);
    return 1;
  }
  const std::size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4 || bytes.size() < length) return 0;
  char32_t value = byte(0) & (0xFFu >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
    value = value << 6 | (byte(i) & 0x3Fu);
  }
  constexpr char32_t kLeastOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  if (value < kLeastOfLength[length] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return 0;
  character = value;
  return length;
}

}  // namespace

std::vector<char32_t> CharactersOf(std::string_view utf8) {
  std::vector<char32_t> characters;
  characters.reserve(utf8.size());
  while (!utf8.empty()) {
    char32_t character = static_cast<unsigned char>(utf8[0]);
    utf8.remove_prefix(std::max<std::size_t>(1, DecodeOne(utf8, character)));
    if (character == 0x2126) character = 0x03A9;
    if (character == 0x212B) character = 0x00C5;
    characters.push_back(character);
  }
  return characters;
}

std::uint8_t WinAnsiCode(char32_t character) {
  if ((character >= 0x20 && character <= 0x7E) || (character >= 0xA0 && character <= 0xFF)) {
    return static_cast<std::uint8_t>(character);
  }
  const auto found = std::find(kWinAnsiMiddle.begin(), kWinAnsiMiddle.end(), character);
  if (character == 0 || found == kWinAnsiMiddle.end()) return 0;
  return static_cast<std::uint8_t>(128 + (found - kWinAnsiMiddle.begin()));
}

const SymbolCharacter* FindSymbol(char32_t character) {
  const auto* found =
      std::lower_bound(std::begin(kSymbols), std::end(kSymbols), character,
                       [](const SymbolCharacter& symbol, char32_t wanted) { return symbol.character < wanted; });
  return found != std::end(kSymbols) && found->character == character ? found : nullptr;
}

SmallCharacter SmallCharacterOf(char32_t character) {
  constexpr double kRaised = 0.27, kLowered = -0.14;
  constexpr char32_t kSigns[] = {'+', kMinus, '=', '(', ')'};
  if (character == 0xB9) return {'1', kRaised};
  if (character == 0xB2 || character == 0xB3) return {'2' + (character - 0xB2), kRaised};
  if (character == 0x2070 || (character >= 0x2074 && character <= 0x2079)) return {'0' + (character - 0x2070), kRaised};
  if (character >= 0x207A && character <= 0x207E) return {kSigns[character - 0x207A], kRaised};
  if (character >= 0x2080 && character <= 0x2089) return {'0' + (character - 0x2080), kLowered};
  if (character >= 0x208A && character <= 0x208E) return {kSigns[character - 0x208A], kLowered};
  return {0, 0};
}

}  // namespace kalvex

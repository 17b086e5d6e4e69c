#include "pictures/text_metrics.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "pictures/characters.h"

namespace kalvex {
namespace {

// Advances of the Windows codes 32 to 255, 16 to a row. A code without a character has the width of the bullet.
using AdvanceTable = std::array<std::uint16_t, 224>;

constexpr AdvanceTable kTimes = {
    250, 333, 408, 500, 500, 833,  778, 180,  333, 333,  500, 564, 250, 333, 250, 278,   // space to /
    500, 500, 500, 500, 500, 500,  500, 500,  500, 500,  278, 278, 564, 564, 564, 444,   // 0 to ?
    921, 722, 667, 667, 722, 611,  556, 722,  722, 333,  389, 722, 611, 889, 722, 722,   // @ to O
    556, 722, 667, 556, 611, 722,  722, 944,  722, 722,  611, 333, 278, 333, 469, 500,   // P to _
    333, 444, 500, 444, 500, 444,  333, 500,  500, 278,  278, 500, 278, 778, 500, 500,   // ` to o
    500, 500, 333, 389, 278, 500,  500, 722,  500, 500,  444, 480, 200, 480, 541, 350,   // p to 127
    500, 350, 333, 500, 444, 1000, 500, 500,  333, 1000, 556, 333, 889, 350, 611, 350,   // 128
    350, 333, 333, 444, 444, 350,  500, 1000, 333, 980,  389, 333, 722, 350, 444, 722,   // 144
    250, 333, 500, 500, 500, 500,  200, 500,  333, 760,  276, 500, 564, 333, 760, 333,   // 160
    400, 564, 300, 300, 333, 500,  453, 250,  333, 300,  310, 500, 750, 750, 750, 444,   // 176
    722, 722, 722, 722, 722, 722,  889, 667,  611, 611,  611, 611, 333, 333, 333, 333,   // 192
    722, 722, 722, 722, 722, 722,  722, 564,  722, 722,  722, 722, 722, 722, 556, 500,   // 208
    444, 444, 444, 444, 444, 444,  667, 444,  444, 444,  444, 444, 278, 278, 278, 278,   // 224
    500, 500, 500, 500, 500, 500,  500, 564,  500, 500,  500, 500, 500, 500, 500, 500};  // 240

constexpr AdvanceTable kHelvetica = {
    278,  278, 355, 556, 556, 889,  667,  191,  333, 333,  389, 584, 278,  333, 278, 278,   // space to /
    556,  556, 556, 556, 556, 556,  556,  556,  556, 556,  278, 278, 584,  584, 584, 556,   // 0 to ?
    1015, 667, 667, 722, 722, 667,  611,  778,  722, 278,  500, 667, 556,  833, 722, 778,   // @ to O
    667,  778, 722, 667, 611, 722,  667,  944,  667, 667,  611, 278, 278,  278, 469, 556,   // P to _
    333,  556, 556, 500, 556, 556,  278,  556,  556, 222,  222, 500, 222,  833, 556, 556,   // ` to o
    556,  556, 333, 500, 278, 556,  500,  722,  500, 500,  500, 334, 260,  334, 584, 350,   // p to 127
    556,  350, 222, 556, 333, 1000, 556,  556,  333, 1000, 667, 333, 1000, 350, 611, 350,   // 128
    350,  222, 222, 333, 333, 350,  556,  1000, 333, 1000, 500, 333, 944,  350, 500, 667,   // 144
    278,  333, 556, 556, 556, 556,  260,  556,  333, 737,  370, 556, 584,  333, 737, 333,   // 160
    400,  584, 333, 333, 333, 556,  537,  278,  333, 333,  365, 556, 834,  834, 834, 611,   // 176
    667,  667, 667, 667, 667, 667,  1000, 722,  667, 667,  667, 667, 278,  278, 278, 278,   // 192
    722,  722, 778, 778, 778, 778,  778,  584,  778, 722,  722, 722, 722,  667, 667, 611,   // 208
    556,  556, 556, 556, 556, 556,  889,  500,  556, 556,  556, 556, 278,  278, 278, 278,   // 224
    556,  556, 556, 556, 556, 556,  556,  584,  611, 556,  556, 556, 556,  500, 556, 500};  // 240

struct LineMetrics {
  double ascent, descent;  // in em
};
constexpr LineMetrics LineMetricsOf(Face face) {
  return face == Face::kSerif ? LineMetrics{0.891, 0.216} : LineMetrics{0.905, 0.212};
}

// A height that is not positive gives texts without size.
double LineHeight(const Font& font) { return font.height > 0 ? std::fmin(font.height, kMaxFontHeight) : 0; }

}  // namespace

int AdvanceOf(Face face, char32_t character) {
  const SmallCharacter small = SmallCharacterOf(character);
  if (small.base != 0) return static_cast<int>(std::lround(kSmallSize * AdvanceOf(face, small.base)));
  if (const SymbolCharacter* symbol = FindSymbol(character)) return symbol->advance;
  const std::uint8_t code = WinAnsiCode(character);
  return (face == Face::kSerif ? kTimes : kHelvetica)[(code == 0 ? std::uint8_t{'?'} : code) - std::size_t{32}];
}

double EmOf(const Font& font) {
  const LineMetrics line = LineMetricsOf(font.face);
  return LineHeight(font) / (line.ascent + line.descent);
}

double AscentOf(const Font& font) { return LineMetricsOf(font.face).ascent * EmOf(font); }

TextSize TextExtent(const Font& font, std::string_view utf8) {
  int advance = 0;
  for (const char32_t character : CharactersOf(utf8)) advance += AdvanceOf(font.face, character);
  return {static_cast<int>(std::lround(advance * EmOf(font) / 1000)), static_cast<int>(std::lround(LineHeight(font)))};
}

Point BaselineStart(Point at, const TextPlace& place, const Font& font, std::string_view utf8) {
  const TextSize size = TextExtent(font, utf8);
  const double left = place.horizontal == HorizontalAlign::kLeft     ? 0
                      : place.horizontal == HorizontalAlign::kCentre ? -size.width / 2.0
                                                                     : -size.width;
  const double top = place.vertical == VerticalAlign::kTop      ? 0
                     : place.vertical == VerticalAlign::kMiddle ? -size.height / 2.0
                                                                : -size.height;
  const double baseline = top + AscentOf(font);
  return place.turned ? Point{at.x + baseline, at.y - left} : Point{at.x + left, at.y + baseline};
}

}  // namespace kalvex

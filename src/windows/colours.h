// Colours of texts and fields in windows.
#pragma once

#include <cstdint>

namespace kalvex {

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend constexpr bool operator==(const Colour&, const Colour&) = default;
};

inline constexpr Colour kBlack = {0, 0, 0};
inline constexpr Colour kWhite = {255, 255, 255};
inline constexpr Colour kFreeParam = {0, 0, 255};   // text of a parameter that the fit may vary,
inline constexpr Colour kFixedParam = {255, 0, 0};  // text of a fixed parameter
inline constexpr Colour kMarked = {0xC9, 0xF1, 0xCE};

constexpr Colour ColourOfParam(bool adjustable) { return adjustable ? kFreeParam : kFixedParam; }

}  // namespace kalvex

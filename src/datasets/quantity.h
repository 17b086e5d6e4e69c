// The 15 Quantities: the kinds of spectra that the program computes, fits and draws. Files, datasets and macros store
// their numbers and short names.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "core/limits.h"

namespace kalvex {

struct QuantityName {
  const char* shortName;
  const char* name;
};

inline constexpr std::array<QuantityName, kQuantityCount> kQuantityNames = {{
    {"R", "Normal reflectivity"},
    {"T", "Normal transmission"},
    {"Rp", "p-reflectivity"},
    {"Rs", "s-reflectivity"},
    {"Rps", "p/s reflectivity ratio"},
    {"E1", "Dielectric function (real part)"},
    {"E2", "Dielectric function (imag. part)"},
    {"S1", "Conductivity (real part)"},
    {"S2", "Conductivity (imag. part)"},
    {"N1", "Refraction"},
    {"N2", "Extinction"},
    {"PD", "Penetration depth"},
    {"LF", "Loss function"},
    {"TT", "Defringed transmission"},
    {"AC", "Alpha"},
}};

inline constexpr int kRefl = 0, kTrans = 1, kRp = 2, kRs = 3, kRps = 4, kE1 = 5, kE2 = 6, kS1 = 7, kS2 = 8, kN1 = 9,
                     kN2 = 10, kDepth = 11, kLoss = 12, kDefringed = 13, kAlpha = 14;

// The Quantity with that short name: the whole name, ignoring case.
std::optional<int> QuantityOfShortName(std::string_view shortName);
// The first Quantity whose short name is a prefix of the file's name, ignoring case; 0 if there is none.
int QuantityOfFileName(std::string_view fileName);

// A set of Quantities as bits.
using QuantitySet = std::uint16_t;
inline constexpr QuantitySet SetOf(int quantity) { return static_cast<QuantitySet>(1u << quantity); }
inline constexpr QuantitySet kEveryQuantity = SetOf(kQuantityCount) - 1;
inline constexpr bool Contains(QuantitySet set, int quantity) { return (set & SetOf(quantity)) != 0; }

}  // namespace kalvex

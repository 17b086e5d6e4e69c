// The Quantities: the kinds of spectra that the program computes, fits and draws. Files, datasets and macros store
// their numbers and short names.
#pragma once

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string_view>
#include <type_traits>

#include "core/enum_array.h"

namespace kalvex {

// The values are the numbers in files: append a new one at the end.
enum class Quantity : int {
  kRefl,
  kTrans,
  kRp,
  kRs,
  kRps,
  kE1,
  kE2,
  kS1,
  kS2,
  kN1,
  kN2,
  kDepth,
  kLoss,
  kDefringed,
  kAlpha,
};
using enum Quantity;

struct QuantityName {
  const char* shortName = nullptr;
  const char* name = nullptr;
};

// A value without a case does not compile.
constexpr QuantityName NamesOf(Quantity quantity) {
  switch (quantity) {
    case kRefl:
      return {"R", "Normal reflectivity"};
    case kTrans:
      return {"T", "Normal transmission"};
    case kRp:
      return {"Rp", "p-reflectivity"};
    case kRs:
      return {"Rs", "s-reflectivity"};
    case kRps:
      return {"Rps", "p/s reflectivity ratio"};
    case kE1:
      return {"E1", "Dielectric function (real part)"};
    case kE2:
      return {"E2", "Dielectric function (imag. part)"};
    case kS1:
      return {"S1", "Conductivity (real part)"};
    case kS2:
      return {"S2", "Conductivity (imag. part)"};
    case kN1:
      return {"N1", "Refraction"};
    case kN2:
      return {"N2", "Extinction"};
    case kDepth:
      return {"PD", "Penetration depth"};
    case kLoss:
      return {"LF", "Loss function"};
    case kDefringed:
      return {"TT", "Defringed transmission"};
    case kAlpha:
      return {"AC", "Alpha"};
  }
  return {};
}

constexpr int CountOfQuantities() {
  int count = 0;
  while (NamesOf(Quantity{count}).shortName) ++count;
  return count;
}
inline constexpr int kQuantityCount = CountOfQuantities();
template <>
inline constexpr std::size_t kEnumCount<Quantity> = kQuantityCount;

// A table with one entry for each Quantity.
template <class T>
using PerQuantity = EnumArray<Quantity, T>;

// The number of a Quantity in files and lists, and the Quantity of such a number if there is one.
constexpr int NumberOf(Quantity quantity) { return static_cast<int>(quantity); }
constexpr std::optional<Quantity> QuantityOfNumber(int number) {
  if (number < 0 || number >= kQuantityCount) return std::nullopt;
  return Quantity{number};
}

// The Quantity of a short name, matched whole and ignoring case.
std::optional<Quantity> QuantityOfShortName(std::string_view shortName);
// The first Quantity whose short name the file's name starts with, ignoring case; kRefl if there is none.
Quantity QuantityOfFileName(std::string_view fileName);

// A set of Quantities. A loop over it goes in the order of their numbers.
class QuantitySet {
 public:
  constexpr QuantitySet() = default;
  constexpr QuantitySet(std::initializer_list<Quantity> quantities) {
    for (const Quantity quantity : quantities) *this |= QuantitySet(BitOf(quantity));
  }
  static constexpr QuantitySet Every() { return QuantitySet((Bits{1} << kQuantityCount) - 1); }

  constexpr bool Contains(Quantity quantity) const { return (bits_ & BitOf(quantity)) != 0; }
  constexpr bool IsEmpty() const { return bits_ == 0; }
  constexpr std::size_t Count() const { return static_cast<std::size_t>(std::popcount(bits_)); }

  friend constexpr QuantitySet operator|(QuantitySet a, QuantitySet b) { return QuantitySet(a.bits_ | b.bits_); }
  friend constexpr QuantitySet operator&(QuantitySet a, QuantitySet b) { return QuantitySet(a.bits_ & b.bits_); }
  // Those of a that are not in b.
  friend constexpr QuantitySet operator-(QuantitySet a, QuantitySet b) { return QuantitySet(a.bits_ & ~b.bits_); }
  constexpr QuantitySet& operator|=(QuantitySet other) { return *this = *this | other; }
  constexpr QuantitySet& operator-=(QuantitySet other) { return *this = *this - other; }
  friend constexpr bool operator==(QuantitySet, QuantitySet) = default;

  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Quantity;
    using difference_type = std::ptrdiff_t;
    using pointer = const Quantity*;
    using reference = Quantity;

    constexpr Iterator() = default;
    constexpr explicit Iterator(std::uint32_t left) : left_(left) {}
    constexpr Quantity operator*() const { return Quantity{std::countr_zero(left_)}; }
    constexpr Iterator& operator++() {
      left_ &= left_ - 1;
      return *this;
    }
    constexpr Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    friend constexpr bool operator==(Iterator, Iterator) = default;

   private:
    std::uint32_t left_ = 0;  // the bits from here on
  };
  constexpr Iterator begin() const { return Iterator(bits_); }
  constexpr Iterator end() const { return Iterator(0); }

 private:
  using Bits = std::uint32_t;
  static_assert(kQuantityCount < 32, "each Quantity has a bit");
  // Small, because a spectrum has a set for each frequency.
  using Stored = std::conditional_t<(kQuantityCount <= 16), std::uint16_t, Bits>;
  constexpr explicit QuantitySet(Bits bits) : bits_(static_cast<Stored>(bits)) {}
  static constexpr Bits BitOf(Quantity quantity) { return Bits{1} << NumberOf(quantity); }

  Stored bits_ = 0;
};

inline constexpr QuantitySet kEveryQuantity = QuantitySet::Every();

}  // namespace kalvex

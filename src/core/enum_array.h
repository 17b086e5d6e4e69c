// EnumArray: a table with one entry for each value of an enum, indexed by the enum itself.
#pragma once

#include <array>
#include <cstddef>

namespace kalvex {

// The number of values of an enum that indexes tables; they are numbered from 0 without gaps. Each such enum defines
// it.
template <class Enum>
inline constexpr std::size_t kEnumCount = 0;

template <class Enum>
constexpr std::size_t IndexOf(Enum value) {
  return static_cast<std::size_t>(value);
}

template <class Enum, class T>
struct EnumArray : std::array<T, kEnumCount<Enum>> {
  static_assert(kEnumCount<Enum> > 0, "kEnumCount of this enum is not defined");
  using Entries = std::array<T, kEnumCount<Enum>>;

  constexpr T& operator[](Enum value) { return Entries::operator[](IndexOf(value)); }
  constexpr const T& operator[](Enum value) const { return Entries::operator[](IndexOf(value)); }
};

// A table with all its entries written out: one too few or too many does not compile.
template <class Enum, class T, std::size_t kEntries>
constexpr EnumArray<Enum, T> FullTable(const T (&entries)[kEntries]) {
  static_assert(kEntries == kEnumCount<Enum>, "the table has one entry for each value of the enum");
  EnumArray<Enum, T> table{};
  for (std::size_t i = 0; i < kEntries; ++i) table.Entries::operator[](i) = entries[i];
  return table;
}

// Whether a table of records has one for each value of an enum, each in its place: `key` is the field with the value.
template <class Enum, class Record, std::size_t kRecords>
constexpr bool IsComplete(const std::array<Record, kRecords>& table, Enum Record::*key) {
  for (std::size_t i = 0; i < kRecords; ++i) {
    if (IndexOf(table[i].*key) != i) return false;
  }
  return kRecords == kEnumCount<Enum>;
}

}  // namespace kalvex

// A macro statement as text. Each number is written with the fewest digits that read back to the same bits.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kalvex {

class Statement {
 public:
  explicit Statement(std::string_view command) : text_(command) {}

  Statement& Int(std::string_view name, long long value);
  Statement& Real(std::string_view name, double value);
  // most: the longest text that the parameter takes, in bytes.
  Statement& Text(std::string_view name, std::string_view value, std::size_t most = 200);
  // Adds nothing if there is no value.
  Statement& Int(std::string_view name, std::optional<int> value);
  Statement& Real(std::string_view name, std::optional<double> value);
  Statement& Flag(std::string_view name, std::optional<bool> value);

  // The operation does something that the statement cannot.
  Statement& Refuse() { return possible_ = false, *this; }
  Statement& RefuseIf(bool refuse) { return refuse ? Refuse() : *this; }

  // "Name(A=1, B=2);", or nothing if a value cannot be written in the macro language: a NaN, a text that is too long or
  // contains a quote, a tab or the end of a line.
  std::string Done() const { return possible_ ? text_ + (any_ ? ");" : "();") : ""; }

 private:
  std::string& Begin(std::string_view name);
  std::string text_;
  bool any_ = false;
  bool possible_ = true;
};

}  // namespace kalvex

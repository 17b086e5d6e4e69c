// A macro statement as text, with the numbers in full precision.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kalvex {

class Statement {
 public:
  explicit Statement(std::string_view command) : text_(command) {}

  Statement& Int(std::string_view name, long long value);
  Statement& Real(std::string_view name, double value);
  Statement& Text(std::string_view name, std::string_view value);
  // Adds nothing if there is no value.
  Statement& Int(std::string_view name, std::optional<int> value);
  Statement& Real(std::string_view name, std::optional<double> value);
  Statement& Flag(std::string_view name, std::optional<bool> value);

  // "Name(A=1, B=2);"
  std::string Done() const { return text_ + (any_ ? ");" : "();"); }

 private:
  std::string& Begin(std::string_view name);
  std::string text_;
  bool any_ = false;
};

}  // namespace kalvex

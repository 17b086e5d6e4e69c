#include "session/statement.h"

#include <cmath>

#include "core/text.h"

namespace kalvex {

std::string& Statement::Begin(std::string_view name) {
  text_ += any_ ? ", " : "(";
  any_ = true;
  text_ += name;
  text_ += '=';
  return text_;
}

Statement& Statement::Int(std::string_view name, long long value) {
  Begin(name) += std::to_string(value);
  return *this;
}

Statement& Statement::Real(std::string_view name, double value) {
  Begin(name);
  if (std::isnan(value)) return Refuse();
  if (std::isinf(value)) {
    text_ += value < 0 ? "-1e999" : "1e999";  // reads as infinity
    return *this;
  }
  AppendShortest(text_, value);
  return *this;
}

Statement& Statement::Text(std::string_view name, std::string_view value, std::size_t most) {
  RefuseIf(value.size() > most || value.find_first_of("\"\t\n") != std::string_view::npos);
  Begin(name);
  text_ += '"';
  text_ += value;
  text_ += '"';
  return *this;
}

Statement& Statement::Int(std::string_view name, std::optional<int> value) {
  return value ? Int(name, static_cast<long long>(*value)) : *this;
}

Statement& Statement::Real(std::string_view name, std::optional<double> value) {
  return value ? Real(name, *value) : *this;
}

Statement& Statement::Flag(std::string_view name, std::optional<bool> value) {
  return value ? Int(name, static_cast<long long>(*value)) : *this;
}

}  // namespace kalvex

#include "session/statement.h"

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
  constexpr int kEveryDigit = 17;
  AppendG(Begin(name), value, kEveryDigit);
  return *this;
}

Statement& Statement::Text(std::string_view name, std::string_view value) {
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

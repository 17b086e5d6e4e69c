#include "core/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace kalvex {
namespace {

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

const char* SkipSpace(const char* first, const char* last) {
  while (first != last && IsSpace(*first)) ++first;
  return first;
}

bool IsHexDigit(char c) { return IsAsciiDigit(c) || (LowerAscii(c) >= 'a' && LowerAscii(c) <= 'f'); }

// from_chars refuses a number outside the range of a double, without saying on which side. The place of the first digit
// that is not 0, before the point or behind it, and the exponent decide.
double OutOfRangeValue(const char* first, const char* last, bool hex) {
  std::int64_t place = 0;
  bool started = false, behindPoint = false;
  const char* at = first;
  for (; at != last && (*at == '.' || (hex ? IsHexDigit(*at) : IsAsciiDigit(*at))); ++at) {
    if (*at == '.') {
      behindPoint = true;
      continue;
    }
    started = started || *at != '0';
    if (started != behindPoint) place += started ? 1 : -1;
  }
  std::int32_t exponent = 0;
  if (at != last) ParseInteger(at + 1, last, exponent);
  return (hex ? 4 * place : place) + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

struct Number {
  const char* end;
  double value;
};

Number ParseMagnitude(const char* first, const char* last) {
  // from_chars would take a sign or a word behind "0x".
  const bool hex =
      last - first > 2 && first[0] == '0' && LowerAscii(first[1]) == 'x' && (IsHexDigit(first[2]) || first[2] == '.');
  double value = 0;
  if (hex) {
    const auto [end, error] = std::from_chars(first + 2, last, value, std::chars_format::hex);
    // libstdc++ reads the exponent of "0x1p+-3" as -3.
    const std::size_t signs = std::string_view(first, static_cast<std::size_t>(end - first)).find("+-");
    if (signs != std::string_view::npos) return ParseMagnitude(first, first + signs);
    if (error == std::errc::result_out_of_range) return {end, OutOfRangeValue(first + 2, end, true)};
    if (error == std::errc{}) return {end, value};
  }
  const auto [end, error] = std::from_chars(first, last, value, std::chars_format::general);
  if (error == std::errc::result_out_of_range) return {end, OutOfRangeValue(first, end, false)};
  return {error == std::errc{} ? end : first, value};
}

template <class... Format>
void AppendPadded(std::string& out, int width, double value, Format... format) {
  std::array<char, 400> text;  // the longest double in fixed notation has 309 digits before the point
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value, format...);
  const auto length = static_cast<int>(end - text.data());
  if (length < width) out.append(static_cast<std::size_t>(width - length), ' ');
  out.append(text.data(), end);
}

void UpperFrom(std::string& text, std::size_t start) {
  for (std::size_t i = start; i < text.size(); ++i) {
    if (text[i] >= 'a' && text[i] <= 'z') text[i] = static_cast<char>(text[i] - 'a' + 'A');
  }
}

}  // namespace

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }

bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin(),
                                                    [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && StartsWithIgnoringCase(a, b);
}

std::size_t FileNameStart(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  if (separator != std::string_view::npos) return separator + 1;
  return path.size() >= 2 && path[1] == ':' && IsAsciiLetter(path[0]) ? 2 : 0;
}

std::string_view FileNameOf(std::string_view path) { return path.substr(FileNameStart(path)); }
std::string_view DirectoryOf(std::string_view path) { return path.substr(0, FileNameStart(path)); }

const char* ParseReal(const char* first, const char* last, double& value) {
  const char* at = SkipSpace(first, last);
  const bool negative = at != last && *at == '-';
  if (at != last && (*at == '-' || *at == '+')) ++at;
  if (at == last || *at == '-' || *at == '+') return first;  // from_chars would take a second minus
  const Number number = ParseMagnitude(at, last);
  if (number.end == at) return first;
  value = negative ? -number.value : number.value;
  return number.end;
}

const char* ParseInteger(const char* first, const char* last, std::int32_t& value) {
  const char* at = SkipSpace(first, last);
  const bool negative = at != last && *at == '-';
  if (at != last && (*at == '-' || *at == '+')) ++at;
  if (at == last || !IsAsciiDigit(*at)) return first;
  constexpr std::int64_t kLow = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t kHigh = std::numeric_limits<std::int32_t>::max();
  std::int64_t magnitude = 0;
  for (; at != last && IsAsciiDigit(*at); ++at) magnitude = std::min<std::int64_t>(magnitude * 10 + (*at - '0'), -kLow);
  value = static_cast<std::int32_t>(std::clamp(negative ? -magnitude : magnitude, kLow, kHigh));
  return at;
}

double RealOf(std::string_view text) {
  double value = 0;
  ParseReal(text.data(), text.data() + text.size(), value);
  return value;
}

std::int32_t IntegerOf(std::string_view text) {
  std::int32_t value = 0;
  ParseInteger(text.data(), text.data() + text.size(), value);
  return value;
}

void AppendG(std::string& out, double value, int digits) {
  AppendPadded(out, 0, value, std::chars_format::general, digits);
}

void AppendUpperG(std::string& out, double value, int digits) {
  const std::size_t start = out.size();
  AppendG(out, value, digits);
  UpperFrom(out, start);
}

void AppendFixed(std::string& out, double value, int digits, int width) {
  AppendPadded(out, width, value, std::chars_format::fixed, digits);
}

void AppendScientific(std::string& out, double value, int digits, int width) {
  const std::size_t start = out.size();
  AppendPadded(out, width, value, std::chars_format::scientific, digits);
  UpperFrom(out, start);
}

void AppendInteger(std::string& out, std::int64_t value) { out += std::to_string(value); }

std::string TextG(double value, int digits) {
  std::string text;
  AppendG(text, value, digits);
  return text;
}

}  // namespace kalvex

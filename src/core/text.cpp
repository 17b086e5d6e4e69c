#include "core/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

namespace kalvex {
namespace {

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

const char* SkipSpace(const char* first, const char* last) {
  while (first != last && IsSpace(*first)) ++first;
  return first;
}

bool IsHexDigit(char c) { return IsAsciiDigit(c) || (LowerAscii(c) >= 'a' && LowerAscii(c) <= 'f'); }

// from_chars rejects a number outside the range of a double and does not report whether it is too large or too small.
// This follows from the position of the first nonzero digit relative to the decimal point, and from the exponent.
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

// The powers of ten that a double holds exactly.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kMostPower = 22;
static_assert(std::size(kPowersOfTen) == kMostPower + 1);

// x 10^power, rounded once.
double TimesPowerOfTen(double x, int power) { return power < 0 ? x / kPowersOfTen[-power] : x * kPowersOfTen[power]; }

// Appends the digits at `at` to a whole number, which may overflow. Returns the position after them.
const char* TakeDigits(const char* at, const char* last, std::uint64_t& number) {
  for (; at != last && IsAsciiDigit(*at); ++at) number = number * 10 + static_cast<std::uint64_t>(*at - '0');
  return at;
}

// A decimal number of few digits. A double holds the digits exactly as a whole number, and the power of ten exactly.
// One product or quotient therefore gives the nearest double. Returns first for all other numbers.
Number ParseShortMagnitude(const char* first, const char* last) {
  constexpr std::uint64_t kMostDigits = std::uint64_t{1} << 53;
  constexpr std::ptrdiff_t kMostLength = 19;  // a number with more digits could overflow
  std::uint64_t digits = 0;
  const char* at = TakeDigits(first, last, digits);
  const std::ptrdiff_t whole = at - first;
  std::ptrdiff_t broken = 0;
  if (at != last && *at == '.') {
    const char* const after = TakeDigits(at + 1, last, digits);
    broken = after - at - 1;
    at = after;
  }
  if (whole + broken == 0 || whole + broken > kMostLength || digits > kMostDigits) return {first, 0};
  std::int32_t exponent = 0;
  if (at != last && LowerAscii(*at) == 'x') return {first, 0};
  if (at != last && LowerAscii(*at) == 'e') {
    const char* const after = (at + 1 != last && IsSpace(at[1])) ? at + 1 : ParseInteger(at + 1, last, exponent);
    if (after != at + 1) at = after;
  }
  const std::int64_t power = std::int64_t{exponent} - broken;
  if (power < -kMostPower || power > kMostPower) return {first, 0};
  return {at, TimesPowerOfTen(static_cast<double>(digits), static_cast<int>(power))};
}

Number ParseMagnitude(const char* first, const char* last) {
  if (const Number number = ParseShortMagnitude(first, last); number.end != first) return number;
  // from_chars would accept a sign, "inf" or "nan" after "0x".
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

// Writes the two digits of a number below 100.
char* PutTwoDigits(char* out, int number) {
  *out++ = static_cast<char>('0' + number / 10);
  *out++ = static_cast<char>('0' + number % 10);
  return out;
}

// A number rounded to six digits: d.ddddd 10^exponent.
struct SixDigits {
  int digits = 0;  // 100000 to 999999
  int exponent = 0;
};

// Rounds to six digits by one product with an exact power of ten. Its rounding error is below 1e-9 of the last digit.
// Returns digits = 0 if that leaves the rounding undecided, and for numbers far from 1.
SixDigits SixDigitsOf(double size) {
  constexpr double kUnsure = 1e-9;
  if (!(size >= 1e-16 && size <= 1e26)) return {};
  // floor(log10(size)), or one less: 1233/4096 is a little below log10(2).
  const auto binary = static_cast<int>(std::bit_cast<std::uint64_t>(size) >> 52) - 1023;
  int exponent = binary * 1233 >> 12;
  double scaled = TimesPowerOfTen(size, 5 - exponent);
  if (scaled >= 1e6) scaled = TimesPowerOfTen(size, 5 - ++exponent);
  auto digits = static_cast<int>(scaled);
  const double rest = scaled - digits;
  if (std::fabs(rest - 0.5) < kUnsure || digits < 100000 || digits > 999999) return {};
  digits += rest > 0.5 ? 1 : 0;
  if (digits == 1000000) return {100000, exponent + 1};
  return {digits, exponent};
}

// Writes the number as %.6g does.
char* PutSixDigits(char* out, bool negative, const SixDigits& of) {
  std::array<char, 12> text{};  // six digits; the rest allows a copy of six bytes from any of them
  PutTwoDigits(PutTwoDigits(PutTwoDigits(text.data(), of.digits / 10000), of.digits / 100 % 100), of.digits % 100);
  std::size_t count = 6;
  while (text[count - 1] == '0') --count;
  if (negative) *out++ = '-';
  const bool scientific = of.exponent < -4 || of.exponent > 5;
  if (of.exponent < 0 && !scientific) {
    *out++ = '0';
    *out++ = '.';
    out = std::fill_n(out, -of.exponent - 1, '0');
    std::memcpy(out, text.data(), 6);
    return out + count;
  }
  const std::size_t before = scientific ? 1 : static_cast<std::size_t>(of.exponent) + 1;  // digits before the point
  std::memcpy(out, text.data(), 6);
  if (count > before) {
    out[before] = '.';
    std::memcpy(out + before + 1, text.data() + before, 6);
  }
  out += count > before ? count + 1 : before;
  if (!scientific) return out;
  *out++ = 'e';
  *out++ = of.exponent < 0 ? '-' : '+';
  return PutTwoDigits(out, std::abs(of.exponent));
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

std::string_view CutToBytes(std::string_view text, std::size_t most) {
  constexpr std::size_t kLongestLetter = 4;
  constexpr unsigned kLetterBegins = 0xC0;  // continuation bytes are below
  if (text.size() <= most) return text;
  for (std::size_t end = most; most - end < kLongestLetter; --end) {
    const auto byte = static_cast<unsigned char>(text[end]);
    if (byte >= kLetterBegins) return text.substr(0, end);
    if (byte < 0x80 || end == 0) break;  // not a multibyte letter
  }
  return text.substr(0, most);
}

const char* ParseReal(const char* first, const char* last, double& value) {
  const char* at = SkipSpace(first, last);
  const bool negative = at != last && *at == '-';
  if (at != last && (*at == '-' || *at == '+')) ++at;
  if (at == last || *at == '-' || *at == '+') return first;  // from_chars would accept a second minus
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
  const SixDigits six = digits == 6 ? SixDigitsOf(std::fabs(value)) : SixDigits{};
  if (six.digits != 0) {
    std::array<char, 32> text;
    const char* const end = PutSixDigits(text.data(), std::signbit(value), six);
    out.append(text.data(), static_cast<std::size_t>(end - text.data()));
    return;
  }
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

void AppendShortest(std::string& out, double value) { AppendPadded(out, 0, value); }

void AppendInteger(std::string& out, std::int64_t value) { out += std::to_string(value); }

std::string TextG(double value, int digits) {
  std::string text;
  AppendG(text, value, digits);
  return text;
}

}  // namespace kalvex

// Printing numbers, names and paths.
#include "core/text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

namespace kalvex {
namespace {

std::string Printed(const char* format, double value) {
  char text[500];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

std::string Printed(const char* format, int width, int digits, double value) {
  char text[500];
  std::snprintf(text, sizeof(text), format, width, digits, value);
  return text;
}

template <class Append, class... More>
std::string Made(Append append, double value, More... more) {
  std::string text;
  append(text, value, more...);
  return text;
}

// Round numbers, numbers on the border between two notations, the ends of the range, and random ones.
std::vector<double> SampleValues(int random) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  std::vector<double> values = {0,         -0.0,       1,           -1,         0.1,
                                0.5,       1.5,        2.5,         123456,     1234567,
                                999999.5,  1e-4,       1e-5,        9.9999e-5,  9.99999e-5,
                                99999.95,  0.000125,   1e22,        1e300,      -1e-300,
                                5e-324,    1e70,       -7.77777e77, 7.77777e77, 1e30,
                                kInfinity, -kInfinity, kNan,        -kNan,      std::numeric_limits<double>::max()};
  std::mt19937_64 bits(4);
  std::uniform_real_distribution<double> exponent(-12, 12);
  for (int i = 0; i < random; ++i) {
    values.push_back(std::bit_cast<double>(bits()));
    values.push_back((i % 2 ? 1 : -1) * std::pow(10, exponent(bits)));
    values.push_back(static_cast<double>(bits() % 2000000) / 16);  // exact halves in the last place
  }
  return values;
}

TEST(PrintNumbers, SixDigitsAsPrintfPrintsThem) {
  for (const double value : SampleValues(1000)) {
    EXPECT_EQ(Made(AppendG, value, 6), Printed("%g", value));
    EXPECT_EQ(TextG(value), Printed("%g", value));
    EXPECT_EQ(Made(AppendUpperG, value, 6), Printed("%G", value));
    EXPECT_EQ(Made(AppendFixed, value, 6, 0), Printed("%f", value));
  }
}

// Numbers that a shortcut to six digits could round wrongly: short decimals, halves in the seventh digit, powers of
// ten, and the doubles next to them.
std::vector<double> HostileValues() {
  std::vector<double> values;
  const auto addWithNeighbours = [&](double value) {
    for (const double v : {value, std::nextafter(value, 0), std::nextafter(value, HUGE_VAL)}) values.push_back(v);
  };
  for (int power = -330; power <= 308; ++power)
    addWithNeighbours(std::strtod(("1e" + std::to_string(power)).c_str(), nullptr));
  for (int power = -1074; power < 1024; ++power) addWithNeighbours(std::ldexp(1.0, power));
  std::mt19937_64 random(11);
  for (int i = 0; i < 100000; ++i) {
    const std::string digits = std::to_string(100000 + random() % 900000);
    const std::string power = std::to_string(static_cast<int>(random() % 60) - 35);
    const std::string tail = i % 4 == 0 ? "5" : i % 4 == 1 ? "50000000001" : i % 4 == 2 ? "49999999999999" : "";
    addWithNeighbours(std::strtod((digits + tail + "e" + power).c_str(), nullptr));
  }
  return values;
}

TEST(PrintNumbers, AMillionNumbersStandAsPrintfPrintsThem) {
  std::vector<double> values = HostileValues();
  const std::vector<double> random = SampleValues(250000);
  values.insert(values.end(), random.begin(), random.end());
  ASSERT_GT(values.size(), 1000000U);
  for (const double value : values) ASSERT_EQ(TextG(value), Printed("%g", value)) << Printed("%a", value);
}

TEST(PrintNumbers, AnyPrecisionAndWidthAsPrintfPrintsThem) {
  for (const double value : SampleValues(30)) {
    for (const int digits : {0, 1, 2, 4, 5, 10, 15, 17}) {
      EXPECT_EQ(Made(AppendG, value, digits), Printed("%*.*g", 0, digits, value));
      EXPECT_EQ(Made(AppendUpperG, value, digits), Printed("%*.*G", 0, digits, value));
      for (const int width : {0, 1, 7, 10, 30}) {
        EXPECT_EQ(Made(AppendFixed, value, digits, width), Printed("%*.*f", width, digits, value));
        EXPECT_EQ(Made(AppendScientific, value, digits, width), Printed("%*.*E", width, digits, value));
      }
    }
  }
}

TEST(PrintNumbers, WhatStandsBeforeThemIsLeftAlone) {
  std::string text = "inf e ";
  AppendUpperG(text, 1e-20);
  AppendScientific(text, 2.5, 1, 9);
  AppendFixed(text, 0.25, 2, 6);
  AppendInteger(text, std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(text, "inf e 1E-20  2.5E+00  0.25-9223372036854775808");
}

// The results of reading and printing some texts and values.
std::string ReadAndPrinted() {
  std::string all;
  for (const char* const text : {"1.5", "1,5", "-0.25e2", "0x1.8", "1.000.000", ".5", ",5"}) {
    all += TextG(RealOf(text), 17) + ' ' + std::to_string(IntegerOf(text)) + '\n';
  }
  for (const double value : {0.5, 1234567.25, -1e-7, 1e22}) {
    AppendG(all, value);
    AppendUpperG(all, value);
    AppendFixed(all, value, 3, 12);
    AppendScientific(all, value, 3, 12);
  }
  AppendInteger(all, 1234567);
  return all;
}

TEST(Text, ADecimalCommaOfTheProcessChangesNothing) {
  const std::string before = std::setlocale(LC_ALL, nullptr), expected = ReadAndPrinted();
  EXPECT_EQ(expected.find(','), std::string::npos);
  bool found = false;
  for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"}) {
    found = found || (std::setlocale(LC_ALL, name) != nullptr && std::localeconv()->decimal_point[0] == ',');
  }
  const std::string under = ReadAndPrinted();
  std::setlocale(LC_ALL, before.c_str());
  if (!found) GTEST_SKIP() << "this machine has no locale with a decimal comma (scripts/test makes one)";
  EXPECT_EQ(under, expected);
}

TEST(Text, LettersAndDigitsAreThoseOfAscii) {
  for (int code = 0; code < 256; ++code) {
    const auto c = static_cast<char>(code);
    const bool ascii = code < 128;
    EXPECT_EQ(IsAsciiLetter(c), ascii && std::isalpha(code) != 0) << code;
    EXPECT_EQ(IsAsciiDigit(c), ascii && std::isdigit(code) != 0) << code;
    EXPECT_EQ(LowerAscii(c), ascii ? static_cast<char>(std::tolower(code)) : c) << code;
  }
}

TEST(Text, NamesIgnoreTheCaseOfLetters) {
  EXPECT_TRUE(EqualsIgnoringCase("LoadModel", "loadMODEL"));
  EXPECT_TRUE(EqualsIgnoringCase("", ""));
  EXPECT_FALSE(EqualsIgnoringCase("LoadModel", "LoadMode"));
  EXPECT_FALSE(EqualsIgnoringCase("LoadMode", "LoadModel"));
  EXPECT_FALSE(EqualsIgnoringCase("[", "{"));  // as far apart in ASCII as a letter and its capital
  EXPECT_FALSE(EqualsIgnoringCase("\xc4", "\xe4"));
  EXPECT_TRUE(StartsWithIgnoringCase("Angle of incidence", "angle OF"));
  EXPECT_TRUE(StartsWithIgnoringCase("x", "X"));
  EXPECT_TRUE(StartsWithIgnoringCase("x", ""));
  EXPECT_TRUE(StartsWithIgnoringCase("", ""));
  EXPECT_FALSE(StartsWithIgnoringCase("An", "Angle"));
  EXPECT_FALSE(StartsWithIgnoringCase("Ankle", "Angle"));
}

TEST(Text, PathsFallApartAtTheirLastSeparator) {
  const char* const cases[][3] = {{"a/b/c.dat", "a/b/", "c.dat"},
                                  {"c.dat", "", "c.dat"},
                                  {"C:\\a.b\\x.kvm", "C:\\a.b\\", "x.kvm"},
                                  {"C:x.kvm", "C:", "x.kvm"},
                                  {"a/", "a/", ""},
                                  {"", "", ""},
                                  {"run:1.dat", "", "run:1.dat"},
                                  {"/", "/", ""},
                                  {"/x", "/", "x"},
                                  {"a\\b/c", "a\\b/", "c"},
                                  {"a/b\\c", "a/b\\", "c"},
                                  {"1:x", "", "1:x"},
                                  {":x", "", ":x"},
                                  {"C:", "C:", ""},
                                  {"a b/c d", "a b/", "c d"}};
  for (const auto& [path, folder, name] : cases) {
    EXPECT_EQ(DirectoryOf(path), folder) << path;
    EXPECT_EQ(FileNameOf(path), name) << path;
    EXPECT_EQ(FileNameStart(path), std::string_view(folder).size()) << path;
  }
}

TEST(Text, IsCutBetweenItsLetters) {
  EXPECT_EQ(CutToBytes("abc", 3), "abc");
  EXPECT_EQ(CutToBytes("abcd", 3), "abc");
  EXPECT_EQ(CutToBytes("", 0), "");
  EXPECT_EQ(CutToBytes("abc", 0), "");
  const std::string letters = "a\u03C9\u20AC\U0001D714b";  // 1, 2, 3, 4 and 1 bytes
  const std::size_t whole[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11};
  for (std::size_t most = 0; most <= letters.size(); ++most) {
    EXPECT_EQ(CutToBytes(letters, most), letters.substr(0, whole[most])) << most;
  }
  // A text in another encoding is cut at the given length.
  EXPECT_EQ(CutToBytes("a\x80\x80\x80\x80\x80\x80", 6), "a\x80\x80\x80\x80\x80");
  EXPECT_EQ(CutToBytes("\x80\x80", 1), "\x80");
}

}  // namespace
}  // namespace kalvex

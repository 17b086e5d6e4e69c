// Reading numbers. The reference is the standard library in the C locale, in which every test program starts.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "core/text.h"

namespace kalvex {
namespace {

constexpr double kUntouched = -77;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string Short(const std::string& text) { return text.size() < 60 ? text : text.substr(0, 60) + "..."; }

void ExpectReadsLikeStrtod(const std::string& text) {
  char* end = nullptr;
  const double expected = std::strtod(text.c_str(), &end);
  double value = kUntouched;
  const char* const after = ParseReal(text.data(), text.data() + text.size(), value);
  EXPECT_EQ(after - text.data(), end - text.c_str()) << Short(text);
  if (end == text.c_str()) {
    EXPECT_EQ(value, kUntouched) << Short(text);
    EXPECT_EQ(RealOf(text), 0) << Short(text);
    return;
  }
  EXPECT_TRUE(std::isnan(expected) ? std::isnan(value) : value == expected) << Short(text) << " gave " << value;
  EXPECT_EQ(std::signbit(value), std::signbit(expected)) << Short(text);
}

void ExpectReadsLikeStrtol(const std::string& text) {
  char* end = nullptr;
  const long expected = std::strtol(text.c_str(), &end, 10);
  std::int32_t value = 77;
  const char* const after = ParseInteger(text.data(), text.data() + text.size(), value);
  EXPECT_EQ(after - text.data(), end - text.c_str()) << text;
  EXPECT_EQ(value, end == text.c_str() ? 77 : expected) << text;
}

std::string RandomText(std::mt19937_64& random, const std::string& characters) {
  std::string text;
  for (auto left = random() % 12; left > 0; --left) text += characters[random() % characters.size()];
  return text;
}

TEST(ReadReal, DecimalNumbers) {
  for (const char* const text : {"0",
                                 "-0",
                                 "1",
                                 "12.5",
                                 "-.5",
                                 ".5",
                                 "5.",
                                 "5.e3",
                                 ".e3",
                                 "+3e2",
                                 "1E5",
                                 "1e-7",
                                 "1d5",
                                 "00012",
                                 "1.2.3",
                                 "1,5",
                                 "3.141592653589793238462643383279",
                                 "0.0000000000000000000000000000001",
                                 "9007199254740993",
                                 "1e22",
                                 "1e23"}) {
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, WhiteSpaceIsAllowedBeforeTheNumberOnly) {
  for (const char* const text : {"  7", "\t-8 ", "\v\f\r\n 3", " .5 6", "- 1", "1 2", "1e 5", "\2401"}) {
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, AnExponentWithoutDigitsIsLeftBehind) {
  for (const char* const text : {"1e", "1e+", "1e-", "1ex", "1e5x", "1e+-5", "0x1p", "0x1p+", "0x1p-", "0x6p+-1"}) {
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, TextWithoutANumberGivesNoneAndLeavesTheValueAlone) {
  for (const char* const text : {"", " ", "-", "+", "+-1", "--1", "++1", "-+1", "abc", ".", "-.", "e5", ",5", "#1"}) {
    ExpectReadsLikeStrtod(text);
    EXPECT_EQ(RealOf(text), 0) << text;
  }
}

TEST(ReadReal, HexadecimalNumbers) {
  for (const char* const text :
       {"0x1p3", "0X1P3", "-0x1.8", "+0x.8", "0x1.", "0x1..", "0x1.p3", "0x1.8p+2z", "0x1e5", "0x1e+5", "0x0.1p4",
        "0x123456789abcdef012345", "0x1.fffffffffffff8p0", "0x0p5", "-0x0", "0xABCdef", "00x1"}) {
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, ASignOrAWordBehindThePrefixIsNoHexadecimalNumber) {
  for (const char* const text :
       {"0x", "0X", "0xg", "0x-1", "-0x-1", "0x+1", "0xinf", "0xnan", "0x.", "0x.p1", "0x ", "0xp3"}) {
    ExpectReadsLikeStrtod(text);
  }
  EXPECT_EQ(RealOf("0x-1"), 0);
}

TEST(ReadReal, InfinityAndNotANumber) {
  for (const char* const text :
       {"inf", "-INF", "+inf", "infinity", "iNfInItY", "infinit", "infinity1",  "inf.",    "-infi", "nan",
        "NaN", "-nan", "nano", "nan(",     "nan()",    "nan(12)", "nan(ab_c)x", "nan(a-)", "in",    "na"}) {
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, TooLargeIsInfinityAndTooSmallIsZeroOfTheSameSign) {
  for (const char* const text :
       {"1e400", "-1e400", "1e-400", "-1e-400", "9e999999999", "1e99999999999999", "1e-99999999999999",
        "0e99999999999999", "0x1p1024", "-0x1p-1080", "0x1p99999999999", "0x1p-99999999999", "0xep-2000", "0xep+2000",
        "0x1.fffffffffffff8p1023", "1.7976931348623159e308"}) {
    ExpectReadsLikeStrtod(text);
  }
  EXPECT_EQ(RealOf("-1e400"), -kInfinity);
}

TEST(ReadReal, LeadingAndTrailingZerosCountAgainstTheExponent) {
  const std::string zeros(400, '0');
  EXPECT_EQ(RealOf("1" + zeros + "e-10"), kInfinity);
  EXPECT_EQ(RealOf("1" + zeros + "e-300"), 1e100);
  EXPECT_EQ(RealOf("0." + zeros + "1e5"), 0);
  EXPECT_EQ(RealOf("0." + zeros + "1e301"), 1e-100);
  EXPECT_EQ(RealOf("0x1" + zeros + "p-3"), kInfinity);
  EXPECT_EQ(RealOf("0x0." + zeros + "1p+3"), 0);
  for (const std::string& text : {"1" + zeros + "e-10", "0." + zeros + "1e5", "0." + zeros + "1e800",
                                  zeros + "." + zeros + "1", "1" + zeros, "0x1" + zeros + "p-1500"}) {
    ExpectReadsLikeStrtod(text);
    ExpectReadsLikeStrtod('-' + text);
  }
}

TEST(ReadReal, TheSmallestNumbersAreReadExactly) {
  for (const char* const text : {"4e-320", "5e-324", "3e-324", "2e-324", "2.2250738585072011e-308",
                                 "2.2250738585072014e-308", "0x1p-1074", "0x1p-1075", "0x1.8p-1075"}) {
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, RandomTextsAreReadAsTheStandardLibraryReadsThem) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const std::string text = RandomText(random, "0123456789.eE+-xXpPinfatyNI( )_a,");
    ExpectReadsLikeStrtod(text);
    ExpectReadsLikeStrtod("0x" + text);
  }
}

// Decimals of every length and power of ten, on both sides of the limits of a double and of a whole number.
TEST(ReadReal, AMillionDecimalsAreReadAsTheStandardLibraryReadsThem) {
  std::mt19937_64 random(3);
  char text[64];
  for (int i = 0; i < 1000000; ++i) {
    const std::uint64_t digits = random() >> random() % 64;
    const int shift = static_cast<int>(random() % 24);
    switch (i % 5) {
      case 0:
        std::snprintf(text, sizeof(text), "%.*f", shift % 10, static_cast<double>(digits >> 20) / 1e7);
        break;
      case 1:
        std::snprintf(text, sizeof(text), "%llu.%0*llu", static_cast<unsigned long long>(digits % 100000), shift,
                      static_cast<unsigned long long>(random() % 1000000));
        break;
      case 2:
        std::snprintf(text, sizeof(text), "%llue%d", static_cast<unsigned long long>(digits), shift - 12);
        break;
      case 3:
        std::snprintf(text, sizeof(text), "%.*g", 1 + shift % 19, std::bit_cast<double>(random()));
        break;
      default:
        std::snprintf(text, sizeof(text), "-.%lluE%+d", static_cast<unsigned long long>(digits), shift * 15 - 180);
    }
    ExpectReadsLikeStrtod(text);
  }
}

TEST(ReadReal, EveryDoublePrintedInFullComesBack) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 5000; ++i) {
    const auto number = std::bit_cast<double>(random());
    if (std::isnan(number)) continue;
    for (const char* const format : {"%.17g", "%a", "%.20e"}) {
      char text[64];
      std::snprintf(text, sizeof(text), format, number);
      EXPECT_EQ(RealOf(text), number) << text;
    }
  }
}

TEST(ReadReal, NothingIsReadBeyondTheGivenEnd) {
  const std::string text = "12345";
  double value = 0;
  EXPECT_EQ(ParseReal(text.data(), text.data() + 3, value), text.data() + 3);
  EXPECT_EQ(value, 123);
  std::int32_t number = 0;
  EXPECT_EQ(ParseInteger(text.data(), text.data() + 2, number), text.data() + 2);
  EXPECT_EQ(number, 12);
  EXPECT_EQ(RealOf(std::string_view("1\0002", 3)), 1);
}

TEST(ReadInteger, DecimalDigitsWithASign) {
  for (const char* const text :
       {"12", "-7", "+4", " 9", "\t\n 9", "12x", "1.5", "0x10", "007", "0", "-0", "2147483647", "-2147483648"}) {
    ExpectReadsLikeStrtol(text);
  }
}

TEST(ReadInteger, TextWithoutANumberGivesNoneAndLeavesTheValueAlone) {
  for (const char* const text : {"", " ", "-", "+", "+-1", "--1", "- 1", "x", ".5", "inf"}) {
    ExpectReadsLikeStrtol(text);
    EXPECT_EQ(IntegerOf(text), 0) << text;
  }
}

TEST(ReadInteger, RandomTextsAreReadAsTheStandardLibraryReadsThem) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 5000; ++i) ExpectReadsLikeStrtol(RandomText(random, "0123 -+x.").substr(0, 9));
}

TEST(ReadInteger, NumbersBeyond32BitsAreHeldAtTheLimit) {
  constexpr std::int32_t kHigh = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t kLow = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(IntegerOf("2147483648"), kHigh);
  EXPECT_EQ(IntegerOf("-2147483649"), kLow);
  EXPECT_EQ(IntegerOf("4294967297"), kHigh);
  EXPECT_EQ(IntegerOf("99999999999999999999999"), kHigh);
  EXPECT_EQ(IntegerOf("-99999999999999999999999"), kLow);
  std::int32_t value = 0;
  const std::string text = "99999999999999999999999x";
  EXPECT_EQ(ParseInteger(text.data(), text.data() + text.size(), value), text.data() + text.size() - 1);
}

}  // namespace
}  // namespace kalvex

#include "core/text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

namespace kalvex {
namespace {

const char* const kNumbers[] = {"0",
                                "-0",
                                "1",
                                "12.5",
                                "-.5",
                                "+3e2",
                                "1e",
                                "1e+",
                                "1e5x",
                                "  7",
                                "\t-8 ",
                                "0x1p3",
                                "0x",
                                "0xg",
                                "-0x1.8",
                                "inf",
                                "-INF",
                                "nan",
                                "infinity",
                                "nano",
                                "1e400",
                                "-1e400",
                                "1e-400",
                                "4e-320",
                                "",
                                " ",
                                "-",
                                "+-1",
                                "--1",
                                "abc",
                                ".",
                                "1.2.3",
                                "1,5",
                                "00012",
                                "1e308",
                                "9e999999999",
                                "0.0000000000000000000000000000001"};

TEST(Text, NumbersReadAsTheStandardLibraryReadsThem) {
  for (const std::string text : kNumbers) {
    char* end = nullptr;
    const double expected = std::strtod(text.c_str(), &end);
    double value = -77;
    const char* const behind = ParseReal(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(behind - text.data(), end - text.c_str()) << text;
    if (end == text.c_str()) {
      EXPECT_EQ(value, -77) << text;
      EXPECT_EQ(RealOf(text), 0);
    } else if (std::isnan(expected)) {
      EXPECT_TRUE(std::isnan(value)) << text;
    } else if (std::fabs(expected) > 0 && std::fabs(expected) < std::numeric_limits<double>::min()) {
      EXPECT_NEAR(value, expected, std::numeric_limits<double>::min()) << text;  // denormal: may read as 0
    } else {
      EXPECT_EQ(value, expected) << text;
      EXPECT_EQ(std::signbit(value), std::signbit(expected)) << text;
    }
  }
}

TEST(Text, IntegersReadAsTheStandardLibraryReadsThemHeldInside32Bits) {
  for (const std::string text : {"12", "-7", "+4", " 9", "12x", "1.5", "0x10", "007", "", "-", "+-1", "x"}) {
    char* end = nullptr;
    const long expected = std::strtol(text.c_str(), &end, 10);
    std::int32_t value = -77;
    const char* const behind = ParseInteger(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(behind - text.data(), end - text.c_str()) << text;
    EXPECT_EQ(value, end == text.c_str() ? -77 : expected) << text;
  }
  EXPECT_EQ(IntegerOf("2147483648"), 2147483647);
  EXPECT_EQ(IntegerOf("-99999999999999999999999"), -2147483647 - 1);
  EXPECT_EQ(IntegerOf("99999999999999999999999"), 2147483647);
}

std::string Printed(const char* format, double value) {
  char text[500];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

TEST(Text, FormatsArePrintfs) {
  std::mt19937_64 random(4);
  std::vector<double> values = {0,
                                -0.0,
                                1,
                                -1,
                                0.1,
                                123456,
                                1234567,
                                1e-5,
                                1e-4,
                                99999.95,
                                1e300,
                                -1e-300,
                                1e22,
                                5e-324,
                                std::numeric_limits<double>::infinity(),
                                -std::numeric_limits<double>::infinity(),
                                7.77777e77};
  std::uniform_real_distribution<double> exponent(-300, 300);
  for (int i = 0; i < 2000; ++i) values.push_back((random() % 2 ? 1 : -1) * std::pow(10, exponent(random)));
  for (const double value : values) {
    std::string g, upper, fixed, scientific, narrow;
    AppendG(g, value);
    AppendUpperG(upper, value);
    AppendFixed(fixed, value);
    AppendScientific(scientific, value, 4, 10);
    AppendFixed(narrow, value, 5, 7);
    EXPECT_EQ(g, Printed("%g", value));
    EXPECT_EQ(TextG(value, 10), Printed("%.10g", value));
    EXPECT_EQ(upper, Printed("%G", value));
    EXPECT_EQ(fixed, Printed("%f", value));
    EXPECT_EQ(scientific, Printed("%10.4E", value));
    EXPECT_EQ(narrow, Printed("%7.5f", value));
  }
}

TEST(Text, ADecimalCommaOfTheProcessChangesNothing) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  bool found = false;
  for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"}) {
    found = found || std::setlocale(LC_ALL, name) != nullptr;
  }
  if (!found) GTEST_SKIP() << "this machine has no locale with a decimal comma";
  EXPECT_EQ(RealOf("1.5"), 1.5);
  EXPECT_EQ(RealOf("1,5"), 1);
  EXPECT_EQ(TextG(0.25), "0.25");
  std::setlocale(LC_ALL, before.c_str());
}

TEST(Text, NamesIgnoreTheCaseOfLetters) {
  EXPECT_TRUE(EqualsIgnoringCase("LoadModel", "loadMODEL"));
  EXPECT_FALSE(EqualsIgnoringCase("LoadModel", "LoadMode"));
  EXPECT_TRUE(StartsWithIgnoringCase("Angle of incidence", "angle OF"));
  EXPECT_FALSE(StartsWithIgnoringCase("An", "Angle"));
  EXPECT_TRUE(StartsWithIgnoringCase("x", ""));
}

TEST(Text, PathsFallApartAtTheirLastSeparator) {
  const char* const cases[][3] = {
      {"a/b/c.dat", "a/b/", "c.dat"}, {"c.dat", "", "c.dat"}, {"C:\\a.b\\x.kvm", "C:\\a.b\\", "x.kvm"},
      {"C:x.kvm", "C:", "x.kvm"},     {"a/", "a/", ""},       {"", "", ""},
      {"run:1.dat", "", "run:1.dat"}, {"/", "/", ""}};
  for (const auto& [path, folder, name] : cases) {
    EXPECT_EQ(DirectoryOf(path), folder) << path;
    EXPECT_EQ(FileNameOf(path), name) << path;
  }
}

}  // namespace
}  // namespace kalvex

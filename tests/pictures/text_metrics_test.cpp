// The size of texts, and the characters in them.
#include "pictures/text_metrics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "pictures/characters.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// Font heights with an em of 100 pixels, so that an advance of 10 thousandths is one pixel.
constexpr Font kSerif{Face::kSerif, 110.7};
constexpr Font kSans{Face::kSans, 111.7};

TEST(TextExtent, IsTheSumOfTheAdvances) {
  // W 722+222 a 444 v 500 e 444 n 500 u 500 m 778 b 500 e 444 r 333, space 250, ( 333 1 500 / 278 c 444 m 778 ) 333
  EXPECT_EQ(TextExtent(kSerif, "Wavenumber (1/cm)").width, 830);  // 8303 thousandths
  // W 944 a 556 v 500 e 556 n 556 u 556 m 833 b 556 e 556 r 333, space 278, ( 333 1 556 / 278 c 500 m 833 ) 333
  EXPECT_EQ(TextExtent(kSans, "Wavenumber (1/cm)").width, 906);  // 9057
  EXPECT_EQ(TextExtent(kSerif, "-0.05").width, 208);             // 333 500 250 500 500
  EXPECT_EQ(TextExtent(kSans, "-0.05").width, 228);              // 333 556 278 556 556
}

TEST(TextExtent, IsThatOfTheSignsOfPhysics) {
  EXPECT_EQ(TextExtent(kSerif, "σ").width, 60);       // 603; Symbol serves both faces
  EXPECT_EQ(TextExtent(kSans, "ε₁").width, 77);       // 439 334
  EXPECT_EQ(TextExtent(kSerif, "cm⁻¹").width, 185);   // 444 778; small signs have 0.6 of 549 and 500: 329 300
  EXPECT_EQ(TextExtent(kSerif, "±·°Åµ").width, 244);  // 564 250 400 722 500
  EXPECT_EQ(TextExtent(kSans, "±·°Åµ²").width, 282);  // 584 278 400 667 556 334
  EXPECT_EQ(TextExtent(kSerif, "\u2126\u212B").width, TextExtent(kSerif, "ΩÅ").width);
}

TEST(TextExtent, RoundsToWholePixels) {
  EXPECT_EQ(TextExtent({Face::kSerif, 16}, "mm").width, 22);  // 1556 of 14.453 pixels: 22.49
  EXPECT_EQ(TextExtent({Face::kSerif, 15.4}, "").height, 15);
  EXPECT_EQ(TextExtent({Face::kSerif, 15.6}, "").height, 16);
}

TEST(TextExtent, OfNothingIsNothing) {
  EXPECT_EQ(TextExtent(kSans, "").width, 0);
  for (const double height : {0.0, -5.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(TextExtent({Face::kSans, height}, "text").width, 0) << height;
    EXPECT_EQ(TextExtent({Face::kSans, height}, "text").height, 0) << height;
  }
  EXPECT_EQ(TextExtent({Face::kSans, std::numeric_limits<double>::infinity()}, "").height, 1000);
}

TEST(TextExtent, UnknownCharactersAreAsWideAsAQuestionMark) {
  EXPECT_EQ(TextExtent(kSerif, "漢").width, 44);
  EXPECT_EQ(TextExtent(kSans, "\n").width, 56);
}

TEST(Characters, OfTextInUtf8) {
  EXPECT_EQ(CharactersOf("aµσ漢😀"), (std::vector<char32_t>{'a', 0xB5, 0x3C3, 0x6F22, 0x1F600}));
}

TEST(Characters, OfBytesThatAreNotUtf8StandForThemselves) {
  EXPECT_EQ(CharactersOf("\xB5m"), (std::vector<char32_t>{0xB5, 'm'}));
  EXPECT_EQ(CharactersOf("2\xC5"), (std::vector<char32_t>{'2', 0xC5}));                // truncated
  EXPECT_EQ(CharactersOf("\xC0\xAF"), (std::vector<char32_t>{0xC0, 0xAF}));            // overlong form
  EXPECT_EQ(CharactersOf("\xE0\x80\xAF"), (std::vector<char32_t>{0xE0, 0x80, 0xAF}));  // overlong form
  EXPECT_EQ(CharactersOf("\xED\xA0\x80"), (std::vector<char32_t>{0xED, 0xA0, 0x80}));  // surrogate
  EXPECT_EQ(CharactersOf("\xF5\x80\x80\x80"),
            (std::vector<char32_t>{0xF5, 0x80, 0x80, 0x80}));  // above the last character
}

TEST(Characters, HaveTheCodesOfWindows) {
  EXPECT_EQ(WinAnsiCode('~'), 0x7E);
  EXPECT_EQ(WinAnsiCode(0xFF), 0xFF);
  EXPECT_EQ(WinAnsiCode(0x20AC), 0x80);
  EXPECT_EQ(WinAnsiCode(0x2013), 0x96);
  EXPECT_EQ(WinAnsiCode(0x0178), 0x9F);
  for (const unsigned none : {0u, 10u, 0x7Fu, 0x81u, 0x3C3u}) EXPECT_EQ(WinAnsiCode(none), 0) << none;
}

TEST(BaselineStart, FollowsThePlaceOfTheText) {
  const auto start = [](HorizontalAlign horizontal, VerticalAlign vertical, bool turned) {
    return BaselineStart({1000, 2000}, {horizontal, vertical, turned}, kSerif, "-0.05");  // 208 by 111, ascent 89.1
  };
  const auto expect = [](Point point, double x, double y) {
    EXPECT_NEAR(point.x, x, 2000 * kRound);
    EXPECT_NEAR(point.y, y, 2000 * kRound);
  };
  expect(start(HorizontalAlign::kLeft, VerticalAlign::kTop, false), 1000, 2089.1);
  expect(start(HorizontalAlign::kCentre, VerticalAlign::kMiddle, false), 896, 2033.6);
  expect(start(HorizontalAlign::kRight, VerticalAlign::kBottom, false), 792, 1978.1);
  // After a turn about the point, the left end is below it and the top is to the left.
  expect(start(HorizontalAlign::kCentre, VerticalAlign::kBottom, true), 978.1, 2104);
  expect(start(HorizontalAlign::kRight, VerticalAlign::kTop, true), 1089.1, 2208);
}

}  // namespace
}  // namespace kalvex

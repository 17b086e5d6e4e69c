#include "pictures/pixel_surface.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>
#include <string>

#include "pictures/text_metrics.h"

namespace kalvex {
namespace {

constexpr std::uint32_t kPaper = 0xFFFFFF, kInk = 0x102030;

std::uint32_t At(const PixelSurface& surface, int x, int y) {
  const int at = y * surface.width + x;
  return surface.pixels[static_cast<std::size_t>(at)];
}

std::set<std::pair<int, int>> InkOf(const PixelSurface& surface) {
  std::set<std::pair<int, int>> ink;
  for (int y = 0; y < surface.height; ++y) {
    for (int x = 0; x < surface.width; ++x) {
      if (At(surface, x, y) != kPaper) ink.insert({x, y});
    }
  }
  return ink;
}

TEST(PixelSurface, RectanglesFillWholePixels) {
  PixelSurface surface(10, 8, kPaper);
  surface.FillRectangle(2, 3, 5, 4, kInk);
  EXPECT_EQ(InkOf(surface), (std::set<std::pair<int, int>>{{2, 3}, {3, 3}, {4, 3}}));
  EXPECT_EQ(At(surface, 3, 3), kInk);
  surface.FillRectangle(-1e300, -5, 1e300, 100, 0x112233);
  EXPECT_EQ(InkOf(surface).size(), 80u);
}

TEST(PixelSurface, NothingIsDrawnOutsideTheClip) {
  PixelSurface surface(40, 30, kPaper);
  surface.Clip(10, 10, 20, 15);
  surface.FillRectangle(0, 0, 40, 30, kInk);
  const std::vector<Point> line = {{0, 12}, {40, 13}};
  surface.DrawPolyline(line, {0xFF0000, 3});
  surface.DrawText({0, 0}, {HorizontalAlign::kLeft, VerticalAlign::kTop, false}, {Face::kSans, 30}, kInk, "WWW");
  for (const auto& [x, y] : InkOf(surface)) {
    EXPECT_TRUE(x >= 10 && x < 20 && y >= 10 && y < 15) << x << ' ' << y;
  }
  surface.Unclip();
  surface.FillRectangle(0, 0, 1, 1, kInk);
  EXPECT_EQ(At(surface, 0, 0), kInk);
}

TEST(PixelSurface, LinesAlongTheAxesAreCrisp) {
  PixelSurface surface(20, 20, kPaper);
  const std::vector<Point> line = {{3.2, 5.4}, {9.7, 5.4}};
  surface.DrawPolyline(line, {kInk, 1});
  std::set<std::pair<int, int>> expected;
  for (int x = 3; x <= 9; ++x) expected.insert({x, 5});
  EXPECT_EQ(InkOf(surface), expected);
  for (const auto& [x, y] : expected) EXPECT_EQ(At(surface, x, y), kInk);
}

TEST(PixelSurface, SlantedLinesCoverAsMuchAsTheyAreWide) {
  PixelSurface surface(60, 60, 0xFFFFFF);
  const std::vector<Point> line = {{5, 10}, {45, 40}};  // 50 long
  surface.DrawPolyline(line, {0x000000, 3});
  double ink = 0;
  for (const std::uint32_t pixel : surface.pixels) ink += 1 - (pixel & 0xFF) / 255.0;
  constexpr double kSmoothing = 6;                             // 4 %: the colour of a pixel is discrete
  EXPECT_NEAR(ink, 3 * 50 + 3.14159 * 1.5 * 1.5, kSmoothing);  // the second term is the round ends
}

TEST(PixelSurface, PolygonsCoverTheirArea) {
  PixelSurface surface(60, 60, 0xFFFFFF);
  const std::vector<Point> corners = {{10.3, 10}, {50, 20.7}, {30, 50}};
  const std::uint32_t fill = 0;
  surface.DrawPolygon(corners, fill, std::nullopt);
  double ink = 0;
  for (const std::uint32_t pixel : surface.pixels) ink += 1 - (pixel & 0xFF) / 255.0;
  const double area = 0.5 * std::abs((50 - 10.3) * (50 - 10) - (30 - 10.3) * (20.7 - 10));
  constexpr double kSmoothing = 0.02;  // the coverage of a pixel is discrete
  EXPECT_NEAR(ink, area, kSmoothing * area);
}

PixelSurface Drawn(const std::string& text, Face face, double height, bool turned = false) {
  PixelSurface surface(120, 120, kPaper);
  surface.DrawText({60, 60}, {HorizontalAlign::kCentre, VerticalAlign::kMiddle, turned}, {face, height}, kInk, text);
  return surface;
}

TEST(PixelText, StaysWithinItsBox) {
  for (const Face face : {Face::kSerif, Face::kSans}) {
    for (const double height : {10.0, 16.0, 20.0}) {
      const std::string text = "Wy(0.2)g";
      const TextSize box = TextExtent({face, height}, text);
      for (const auto& [x, y] : InkOf(Drawn(text, face, height))) {
        EXPECT_LE(std::abs(x + 0.5 - 60), box.width / 2.0 + 1.5);
        EXPECT_LE(std::abs(y + 0.5 - 60), box.height / 2.0 + 1.5);
      }
    }
  }
}

TEST(PixelText, TurnedIsTheSameTurned) {
  const auto level = InkOf(Drawn("Reflec", Face::kSerif, 20)), turned = InkOf(Drawn("Reflec", Face::kSerif, 20, true));
  EXPECT_EQ(level.size(), turned.size());
  std::set<int> rows, columns;
  for (const auto& [x, y] : level) columns.insert(x), rows.insert(y);
  std::set<int> turnedRows, turnedColumns;
  for (const auto& [x, y] : turned) turnedColumns.insert(x), turnedRows.insert(y);
  EXPECT_EQ(columns.size(), turnedRows.size());
  EXPECT_EQ(rows.size(), turnedColumns.size());
}

TEST(PixelText, EveryCharacterCanBeToldFromEachOther) {
  for (const Face face : {Face::kSerif, Face::kSans}) {
    std::map<std::set<std::pair<int, int>>, char> seen;
    for (char c = '!'; c <= '~'; ++c) {
      const auto ink = InkOf(Drawn(std::string(1, c), face, 20));
      EXPECT_FALSE(ink.empty()) << c;
      const auto [other, isNew] = seen.emplace(ink, c);
      EXPECT_TRUE(isNew) << c << " looks like " << other->second;
    }
  }
}

TEST(PixelText, HasTheSignsOfPhysics) {
  const auto unknown = InkOf(Drawn("?", Face::kSans, 20));
  for (const char* const sign : {"σ", "ε", "ω", "Ω", "µ", "Å", "°", "±", "·", "²", "⁻", "¹", "α", "Δ"}) {
    const auto ink = InkOf(Drawn(sign, Face::kSans, 20));
    EXPECT_FALSE(ink.empty()) << sign;
    EXPECT_NE(ink, unknown) << sign;
  }
}

TEST(PixelSurface, TakesNoHarmFromWhatIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  PixelSurface surface(20, 20, kPaper);
  const std::vector<Point> line = {{nan, 5}, {inf, -inf}, {1e300, 7}, {-1e300, 7.5}, {3, nan}};
  const std::uint32_t fill = kInk;
  const Pen pen{kInk, nan};
  surface.DrawPolyline(line, pen);
  surface.DrawPolyline({}, pen);
  surface.DrawPolygon(line, fill, pen);
  surface.DrawPolygon({}, fill, pen);
  surface.FillRectangle(nan, nan, nan, nan, kInk);
  surface.Clip(nan, inf, -inf, 0);
  surface.Unclip();
  for (const double height : {nan, inf, -3.0, 0.0, 1e-300, 1e300}) {
    surface.DrawText({5, 5}, {HorizontalAlign::kLeft, VerticalAlign::kTop, true}, {Face::kSans, height}, kInk, "text");
  }
  PixelSurface none(-5, 0, kPaper);
  none.FillRectangle(0, 0, 5, 5, kInk);
  none.DrawPolyline(line, {kInk, 1});
  EXPECT_TRUE(none.pixels.empty());
}

}  // namespace
}  // namespace kalvex

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "pictures/decoded.h"
#include "pictures/pdf.h"
#include "pictures/pixel_surface.h"
#include "pictures/png.h"
#include "pictures/svg.h"

namespace kalvex {
namespace {

void ExpectDecodes(const PixelSurface& surface) {
  const DecodedPicture decoded = DecodePng(PngOf(surface));
  EXPECT_EQ(decoded.width, surface.width);
  EXPECT_EQ(decoded.height, surface.height);
  EXPECT_EQ(decoded.pixels, surface.pixels);
}

TEST(Png, OfFewColoursIsReadBackPixelForPixel) {
  PixelSurface surface(301, 77, 0xFFFFFF);
  surface.FillRectangle(10, 10, 50, 60, 0xC80000);
  surface.DrawText({100, 20}, {HorizontalAlign::kLeft, VerticalAlign::kTop, false}, {Face::kSerif, 20}, 0x0000FF,
                   "Wavenumber (1/cm)");
  ExpectDecodes(surface);
}

TEST(Png, OfManyColoursIsReadBackPixelForPixel) {
  PixelSurface surface(200, 150, 0);
  std::mt19937 random(1);
  for (std::uint32_t& pixel : surface.pixels) pixel = random() & 0xFFFFFF;
  ExpectDecodes(surface);
  for (std::size_t i = 0; i < surface.pixels.size(); ++i) surface.pixels[i] = static_cast<std::uint32_t>(i);
  ExpectDecodes(surface);
}

TEST(Png, OfASinglePixelAndOfRowsLongerThanTheWindowOfCompression) {
  ExpectDecodes(PixelSurface(1, 1, 0x123456));
  ExpectDecodes(PixelSurface(16000, 3, 0x123456));
  PixelSurface wide(16000, 5, 0xFFFFFF);
  for (std::size_t i = 0; i < wide.pixels.size(); i += 7) wide.pixels[i] = 0xFF0000;
  ExpectDecodes(wide);
}

TEST(Png, OfNothingIsAWhitePixel) {
  EXPECT_EQ(DecodePng(PngOf(PixelSurface(0, 0, 0))).pixels, std::vector<std::uint32_t>{0xFFFFFF});
}

// A scene for all writers. The colours in the middle of its areas are known.
void DrawScene(Canvas& c) {
  constexpr TextPlace kMiddle{HorizontalAlign::kCentre, VerticalAlign::kMiddle, false};
  c.FillRectangle(0, 0, 200, 160, 0xFFFFFF);
  c.FillRectangle(10, 10, 60, 40, 0xFF0000);
  c.Clip(100, 10, 150, 40);
  c.FillRectangle(0, 0, 200, 160, 0x00FF00);
  c.Unclip();
  const std::vector<Point> triangle = {{20, 60}, {60, 60}, {40, 100}};
  const std::uint32_t blue = 0x0000FF;
  const Pen black{0, 2};
  c.DrawPolygon(triangle, blue, black);
  const std::vector<Point> line = {{100, 60}, {150, 60}, {150, 100}};
  c.DrawPolyline(line, {0xFF00FF, 3});
  const std::vector<Point> cut = {{-1e9, 140}, {1e9, 140}};
  c.DrawPolyline(cut, {0x808000, 2});
  c.DrawText({100, 125}, kMiddle, {Face::kSerif, 20}, 0, "Energy <1/cm> & σ²");
  c.DrawText({180, 60}, {HorizontalAlign::kCentre, VerticalAlign::kMiddle, true}, {Face::kSans, 16}, 0, "0.25");
}

void ExpectScene(const DecodedPicture& picture) {
  EXPECT_EQ(picture.width, 200);
  EXPECT_EQ(picture.height, 160);
  EXPECT_EQ(picture.At(35, 25), 0xFF0000u);
  EXPECT_EQ(picture.At(61, 25), 0xFFFFFFu);
  EXPECT_EQ(picture.At(125, 25), 0x00FF00u);
  EXPECT_EQ(picture.At(98, 25), 0xFFFFFFu);
  EXPECT_EQ(picture.At(152, 25), 0xFFFFFFu);
  EXPECT_EQ(picture.At(40, 70), 0x0000FFu);
  EXPECT_EQ(picture.At(40, 60), 0x000000u);
  EXPECT_EQ(picture.At(120, 60), 0xFF00FFu);
  EXPECT_EQ(picture.At(150, 80), 0xFF00FFu);
  EXPECT_EQ(picture.At(5, 140), 0x808000u);
  EXPECT_EQ(picture.At(195, 139), 0x808000u);
  int ink = 0;
  for (int y = 116; y < 134; ++y) {
    for (int x = 20; x < 180; ++x) ink += picture.At(x, y) != 0xFFFFFF ? 1 : 0;
  }
  EXPECT_GT(ink, 300);  // the text is there
  int turned = 0;
  for (int y = 44; y < 76; ++y) {
    for (int x = 172; x < 188; ++x) turned += picture.At(x, y) != 0xFFFFFF ? 1 : 0;
  }
  EXPECT_GT(turned, 40);
}

TEST(Pictures, OfAllKindsShowTheSameScene) {
  const ScratchFolder folder;
  PixelSurface surface(200, 160, 0xFFFFFF);
  DrawScene(surface);
  ExpectScene(DecodePng(PngOf(surface)));
  SvgPicture svg(200, 160);
  DrawScene(svg);
  ExpectScene(DrawSvg(folder, svg.Text()));
  PdfPicture pdf(200, 160);
  DrawScene(pdf);
  ExpectScene(DrawPdf(folder, pdf.Bytes()));
}

TEST(Pictures, HoldTheirTextsAsTexts) {
  const ScratchFolder folder;
  SvgPicture svg(200, 160);
  DrawScene(svg);
  EXPECT_NE(svg.Text().find(">Energy &lt;1/cm&gt; &amp; σ²</text>"), std::string::npos);
  PdfPicture pdf(200, 160);
  DrawScene(pdf);
  const std::string text = TextOfPdf(folder, pdf.Bytes());
  EXPECT_NE(text.find("Energy <1/cm> & σ"), std::string::npos) << text;
  EXPECT_NE(text.find("0.25"), std::string::npos) << text;
}

TEST(Pictures, HoldLinesAsPolylinesWithAHundredthOfAPixel) {
  SvgPicture svg(100, 100);
  const std::vector<Point> line = {{1, 2.3456}, {10.5, 99}, {20.004, 30}};
  svg.DrawPolyline(line, {0, 1.25});
  EXPECT_NE(svg.Text().find("points=\"1,2.35 10.5,99 20,30\""), std::string::npos) << svg.Text();
  EXPECT_NE(svg.Text().find("stroke-width=\"1.25\""), std::string::npos) << svg.Text();
}

TEST(Pictures, HoldNothingThatIsNoNumber) {
  const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
  const auto draw = [&](Canvas& c) {
    const std::vector<Point> points = {{nan, 5}, {inf, 7}, {1e300, -1e300}, {5, 5}, {50, 60}};
    const std::uint32_t fill = 0;
    const Pen pen{0, nan};
    c.DrawPolyline(points, pen);
    c.DrawPolygon(points, fill, pen);
    c.FillRectangle(nan, 0, inf, 5, 0);
    c.Clip(nan, nan, nan, nan);
    c.DrawText({nan, 0}, {HorizontalAlign::kLeft, VerticalAlign::kTop, false}, {Face::kSans, 10}, 0, "a");
    c.DrawText({1, 1}, {HorizontalAlign::kLeft, VerticalAlign::kTop, false}, {Face::kSans, nan}, 0, "a\x01\xff");
    c.Unclip();
  };
  SvgPicture svg(100, 100);
  draw(svg);
  PdfPicture pdf(100, 100);
  draw(pdf);
  for (const std::string& body : {svg.Text(), pdf.Drawing()}) {
    EXPECT_EQ(body.find("nan"), std::string::npos) << body;
    EXPECT_EQ(body.find("inf"), std::string::npos) << body;
  }
  const ScratchFolder folder;
  EXPECT_EQ(DrawSvg(folder, svg.Text()).width, 100);
  EXPECT_EQ(DrawPdf(folder, pdf.Bytes()).width, 100);
}

TEST(Pictures, OfManyPointsAreWrittenAtOnce) {
  std::vector<Point> points;
  for (int i = 0; i < 100000; ++i) points.push_back({i * 0.005, 50 + 40 * std::sin(i * 0.01)});
  SvgPicture svg(500, 100);
  svg.DrawPolyline(points, {0, 1});
  const std::string text = svg.Text();
  EXPECT_EQ(std::count(text.begin(), text.end(), ','), 100000);
}

}  // namespace
}  // namespace kalvex

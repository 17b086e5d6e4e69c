#include "graphs/graph_picture.h"

#include "graphs/graphs.h"
#include "graphs/painting.h"
#include "pictures/decoded.h"
#include "pictures/pixel_surface.h"

namespace kalvex {
namespace {

class GraphPicture : public Graphs {
 protected:
  GraphPicture() : graph(NewGraph()) {
    Curve data = DataCurve(Load(1, {{100, 0.5, 0.1}, {200, 0.6, 0.1}, {300, 0.7, 0.1}}));
    data.ShowSymbol = data.ShowError = data.ShowLine = true;
    data.nSymbolSize = 3;
    AddCurve(graph, data);
    AddCurve(graph, ModelCurve(NewModel(), kRefl));
    graph.Y.title = "<sigma> & \"R\"";
  }
  std::string Saved(const char* name, int width, int height) {
    const auto format = PictureFormatOf(name);
    EXPECT_TRUE(format);
    EXPECT_TRUE(SaveGraphPicture(graph, tables.eval, *format, width, height, folder.Path(name)).Ok());
    return folder.Read(name);
  }
  ScratchFolder folder;
  Graph& graph;
};

TEST_F(GraphPicture, FormatsFollowTheEnding) {
  EXPECT_EQ(PictureFormatOf("a.PNG"), PictureFormat::kPng);
  EXPECT_EQ(PictureFormatOf("a b/c.d.svg"), PictureFormat::kSvg);
  EXPECT_EQ(PictureFormatOf("x.Pdf"), PictureFormat::kPdf);
  for (const char* const name : {"", ".png", "png", "a.jpg", "a.svg "}) EXPECT_FALSE(PictureFormatOf(name)) << name;
}

TEST_F(GraphPicture, InPixelsIsWhatTheWindowShows) {
  const DecodedPicture picture = DecodePng(Saved("g.png", 640, 480));
  EXPECT_EQ(graph.Width, 400);  // the graph itself stays as it is
  graph.Width = 640;
  graph.Height = 480;
  RebuildGraph(graph);
  PixelSurface window(640, 480, 0);
  PaintGraph(graph, tables.eval, window);
  EXPECT_EQ(picture.width, 640);
  EXPECT_EQ(picture.pixels, window.pixels);
}

TEST_F(GraphPicture, ForPaperHasLinesSymbolsAndTexts) {
  const std::string svg = Saved("g.svg", 600, 400);
  EXPECT_NE(svg.find(">&lt;sigma&gt; &amp; \"R\"</text>"), std::string::npos);
  EXPECT_NE(svg.find(">Wavenumber (1/cm)</text>"), std::string::npos);
  EXPECT_NE(svg.find(">0.6</text>"), std::string::npos);
  EXPECT_NE(svg.find("stroke=\"#ff0000\""), std::string::npos);
  const DecodedPicture drawn = DrawSvg(folder, svg);
  EXPECT_EQ(drawn.width, 600);
  EXPECT_EQ(drawn.At(5, 395), 0xFFFFFFu);  // white background
  const std::string pdf = Saved("g.pdf", 600, 400);
  const std::string text = TextOfPdf(folder, pdf);
  EXPECT_NE(text.find("<sigma> & \"R\""), std::string::npos) << text;
  EXPECT_NE(text.find("Wavenumber (1/cm)"), std::string::npos) << text;
}

// Both files are drawn by a viewer. Inside of the frame, where no fonts matter, they agree pixel by pixel except for
// smooth edges.
TEST_F(GraphPicture, IsTheSameInBothVectorFormats) {
  const DecodedPicture svg = DrawSvg(folder, Saved("g.svg", 600, 400));
  const DecodedPicture pdf = DrawPdf(folder, Saved("g.pdf", 600, 400));
  ASSERT_EQ(svg.pixels.size(), pdf.pixels.size());
  int inked = 0, differing = 0;
  for (int y = 9; y < 350; ++y) {
    for (int x = 60; x < 582; ++x) {
      inked += svg.At(x, y) != 0xFFFFFF ? 1 : 0;
      for (const int shift : {0, 8, 16}) {
        const int a = static_cast<int>(svg.At(x, y) >> shift & 255), b = static_cast<int>(pdf.At(x, y) >> shift & 255);
        if (std::abs(a - b) > 128) ++differing;
      }
    }
  }
  EXPECT_GT(inked, 2000);
  EXPECT_LT(differing, inked / 50);
}

TEST_F(GraphPicture, ComesOutTheSameTwice) {
  for (const char* const name : {"g.png", "g.svg", "g.pdf"}) {
    const std::string once = Saved(name, 500, 300);
    EXPECT_EQ(Saved(name, 500, 300), once) << name;
  }
}

TEST_F(GraphPicture, OfAnySizeIsAPicture) {
  for (const auto& [width, height] : {std::pair(1, 1), {30, 40}, {16000, 20}, {20, 2000}}) {
    const DecodedPicture picture = DecodePng(Saved("g.png", width, height));
    EXPECT_EQ(picture.width, width);
    EXPECT_EQ(picture.height, height);
    EXPECT_FALSE(Saved("g.svg", width, height).empty());
    EXPECT_FALSE(Saved("g.pdf", width, height).empty());
  }
  EXPECT_FALSE(IsPictureSize(0, 5));
  EXPECT_FALSE(IsPictureSize(5, 16001));
}

TEST_F(GraphPicture, ThatCannotBeWrittenSaysSo) {
  EXPECT_EQ(SaveGraphPicture(graph, tables.eval, PictureFormat::kPng, 100, 100, folder.Path("no/g.png")).Code(),
            StatusCode::kCannotWrite);
}

}  // namespace
}  // namespace kalvex

#include "graphs/vector_curves.h"

#include "evaluation/eval_model.h"
#include "graphs/axes.h"
#include "graphs/curve_samples.h"
#include "graphs/graphs.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// Records the drawing operations.
struct Drawing : public Canvas {
  std::vector<std::vector<Point>> lines;
  std::vector<std::vector<Point>> polygons;
  std::vector<bool> filledWithColor;
  std::vector<std::uint32_t> colors;

  void DrawText(Point, TextPlace, const Font&, std::uint32_t, std::string_view) override {}
  void DrawPolyline(std::span<const Point> points, const Pen& pen) override {
    lines.emplace_back(points.begin(), points.end());
    colors.push_back(pen.colour);
  }
  void DrawPolygon(std::span<const Point> points, std::optional<std::uint32_t>,
                   const std::optional<Pen>& outline) override {
    polygons.emplace_back(points.begin(), points.end());
    filledWithColor.push_back(!outline);
  }
  void FillRectangle(double, double, double, double, std::uint32_t) override {}
  void Clip(double, double, double, double) override {}
  void Unclip() override {}
};

class Paper : public Graphs {
 protected:
  Paper() : graph(NewGraph()) {}
  Drawing Drawn() {
    Drawing drawing;
    DrawGraphForPaper(graph, tables.eval, drawing);
    for (const auto& line : drawing.lines) {
      for (const Point& p : line) {
        EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.y));
        EXPECT_LT(std::fabs(p.x) + std::fabs(p.y), 5000);
      }
    }
    return drawing;
  }
  // The value on the Y axis at a point of the drawing.
  double YOf(Point p) const { return ValueAt(graph.Y, graph.plotHeight, graph.frame.bottom + 0.5 - p.y); }
  double XOf(Point p) const { return ValueAt(graph.X, graph.plotWidth, p.x - graph.frame.left - 0.5); }

  Graph& graph;
};

TEST_F(Paper, HasModelCurvesAtSeveralPointsOfAPixel) {
  Model& model = NewModel();
  SetPlot(graph, 10, 500, 0, 1, 300, 200);
  AddCurve(graph, ModelCurve(model, kRefl));
  const Drawing drawing = Drawn();
  ASSERT_EQ(drawing.lines.size(), 1u);
  EXPECT_EQ(drawing.lines[0].size(), 4u * 299 + 1);
  WantOnly(tables.eval.quantities, QuantitySet{kRefl});
  for (const Point& p : drawing.lines[0]) {
    EvalModel(tables.eval, model, XOf(p), false);
    EXPECT_NEAR(YOf(p), tables.eval.quantities[kRefl].value, kRound);
  }
}

TEST_F(Paper, CutsLinesThatLeaveThePlotWhereTheyDo) {
  Model& model = NewModel();
  SetPlot(graph, 10, 500, -1e-6, 1e-6, 300, 200);
  AddCurve(graph, ModelCurve(model, kE1));  // reaches a hundred million times the plot's height
  const Drawing drawing = Drawn();
  EXPECT_FALSE(drawing.lines.empty());
  for (const auto& line : drawing.lines) {
    ASSERT_GE(line.size(), 2u);
    for (const Point& p : line) {
      EXPECT_GE(p.y, graph.frame.top - 11);
      EXPECT_LE(p.y, graph.frame.bottom + 12);
    }
  }
}

TEST_F(Paper, HasSymbolsErrorBarsAndLinesOfData) {
  SetPlot(graph, 0, 100, 0, 80, 101, 81);
  Curve curve = DataCurve(Load(1, {{10, 20, 5}, {30, 40, 5}, {50, 60, 5}}));
  curve.ShowLine = curve.ShowSymbol = curve.ShowError = true;
  curve.nSymbolSize = 2;
  AddCurve(graph, curve);
  Drawing drawing = Drawn();
  ASSERT_EQ(drawing.polygons.size(), 3u);
  EXPECT_EQ(drawing.polygons[0].size(), 4u);
  EXPECT_TRUE(drawing.filledWithColor[0]);
  EXPECT_EQ(drawing.lines.size(), 1u + 3 * 3);
  EXPECT_EQ(drawing.lines[0].size(), 3u);
  EXPECT_NEAR(XOf(drawing.lines[0][1]), 30, kChain);
  EXPECT_NEAR(YOf(drawing.lines[0][1]), 40, kChain);
  EXPECT_NEAR(YOf(drawing.lines[1][0]), 15, kFormula);
  EXPECT_NEAR(YOf(drawing.lines[1][1]), 25, kChain);

  graph.curves[0].SymbolOpen = true;
  for (int shape = 0; shape < 5; ++shape) {
    graph.curves[0].nSymbolShape = shape;
    drawing = Drawn();
    EXPECT_FALSE(drawing.filledWithColor[0]) << shape;
    double left = 1e9, right = 0;
    for (const Point& p : drawing.polygons[0]) {
      left = std::min(left, p.x);
      right = std::max(right, p.x);
    }
    EXPECT_NEAR(right - left, 5, kFormula) << shape;
  }
}

TEST_F(Paper, HasTheOtherKindsOfCurves) {
  Model& model = NewModel();
  const Dataset& dataset = Load(1, {{50, 0.5, 0}, {150, 0.5, 0}, {250, 0.5, 0}});
  SetPlot(graph, 1, 500, 0, 1, 300, 100);
  AddCurve(graph, ChiSqCurve(dataset, model));
  EXPECT_EQ(Drawn().lines.at(0).size(), 3u);
  graph.curves[0] = MultiCurve(model, kE1);
  EXPECT_FALSE(Drawn().lines.empty());
  graph.curves[0] = FreqCurve(model);
  EXPECT_EQ(Drawn().lines.size(), 10u);  // dashes
}

TEST_F(Paper, IsEmptyWhereNothingIsLeftToShow) {
  Model& model = NewModel();
  AddCurve(graph, ModelCurve(model, kRefl));
  CloseModelRecord(model);
  EXPECT_TRUE(Drawn().lines.empty());
  graph.Width = 10;
  RebuildGraph(graph);
  EXPECT_TRUE(Drawn().lines.empty());
}

}  // namespace
}  // namespace kalvex

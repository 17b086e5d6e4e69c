#include "graphs/vector_curves.h"

#include <array>
#include <cmath>
#include <numbers>

#include "graphs/axes.h"
#include "graphs/curve_samples.h"
#include "graphs/painting.h"
#include "graphs/strokes.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

constexpr double kLineWidth = 1.25;
constexpr int kPointsPerPixel = 4;

// Draws a graph on its canvas. Places become points of the canvas; the middle of a pixel lies half a pixel inside.
class Paper {
 public:
  Paper(const Graph& graph, EvalContext& ctx, Canvas& canvas) : graph_(graph), ctx_(ctx), canvas_(canvas) {
    for (int c = 0; c <= (graph.plotWidth - 1) * kPointsPerPixel; ++c) {
      fine_.push_back(ValueAt(graph.X, graph.plotWidth, static_cast<double>(c) / kPointsPerPixel));
    }
  }

  void Draw(const Curve& curve) {
    pen_ = {ColorOf(curve).rgb, kLineWidth};
    switch (curve.kind) {
      case CurveKind::kData:
        return DrawData(curve);
      case CurveKind::kModel:
        return DrawModel(curve);
      case CurveKind::kChiSq:
        return DrawChiSq(curve);
      case CurveKind::kMulti:
        return DrawMulti(curve);
      case CurveKind::kFreq:
        return DrawFreq(curve);
      case CurveKind::kReader:
        return;
    }
  }

 private:
  Point PlaceOfPoint(const Curve& curve, double x, double y) const {
    return {PlaceOf(graph_.X, graph_.plotWidth, x), PlaceOf(graph_.Y, graph_.plotHeight, ShownValue(curve, y))};
  }
  Point OnCanvas(Point place) const { return {graph_.frame.left + place.x + 0.5, graph_.frame.bottom - place.y + 0.5}; }

  // Cuts a segment to a margin around the plot. Uncut lines may have coordinates too large for some picture viewers.
  // False if nothing is left.
  bool CutToPlot(Point& a, Point& b) const {
    constexpr double kMargin = 10;
    const double low[] = {-kMargin, -kMargin}, high[] = {graph_.plotWidth + kMargin, graph_.plotHeight + kMargin};
    const double from[] = {a.x, a.y}, step[] = {b.x - a.x, b.y - a.y};
    double start = 0, end = 1;
    for (std::size_t k = 0; k < 2; ++k) {
      if (step[k] == 0) {
        if (from[k] < low[k] || from[k] > high[k]) return false;
        continue;
      }
      const double atLow = (low[k] - from[k]) / step[k], atHigh = (high[k] - from[k]) / step[k];
      start = std::max(start, std::min(atLow, atHigh));
      end = std::min(end, std::max(atLow, atHigh));
    }
    if (start > end) return false;
    if (end < 1) b = {from[0] + end * step[0], from[1] + end * step[1]};
    if (start > 0) a = {from[0] + start * step[0], from[1] + start * step[1]};
    return true;
  }

  // Joins places with lines. A missing place leaves a gap.
  void Line(const std::vector<Point>& places) const {
    std::vector<Point> points;
    const auto finish = [&] {
      if (points.size() > 1) canvas_.DrawPolyline(points, pen_);
      points.clear();
    };
    for (std::size_t i = 0; i + 1 < places.size(); ++i) {
      Point from = places[i], to = places[i + 1];
      const Point next = to;
      if (!HasPlace(from) || !HasPlace(to) || !CutToPlot(from, to)) {
        finish();
        continue;
      }
      if (points.empty()) points.push_back(OnCanvas(from));
      points.push_back(OnCanvas(to));
      if (to.x != next.x || to.y != next.y) finish();
    }
    finish();
  }

  void ModelLine(const Curve& curve, const std::vector<double>& x, const std::vector<double>& y) const {
    std::vector<Point> places;
    for (std::size_t i = 0; i < x.size(); ++i) places.push_back(PlaceOfPoint(curve, x[i], y[i]));
    Line(places);
  }

  void DrawModel(const Curve& curve) const {
    const Model* const model = GetModelByNumber(*ctx_.params, curve.modelId);
    if (!model) return;
    const Quantity quantities[] = {curve.quantity};
    ModelLine(curve, fine_, ModelValues(graph_, ctx_, *model, quantities, fine_).front());
  }

  void DrawChiSq(const Curve& curve) const {
    const Model* const model = GetModelByNumber(*ctx_.params, curve.modelId);
    if (!model) return;
    std::vector<double> x;
    for (const DataRow& row : ShownRows(graph_, curve, *ctx_.datasets)) x.push_back(row.x);
    const Quantity quantities[] = {curve.quantity};
    ModelLine(curve, x, ModelValues(graph_, ctx_, *model, quantities, x).front());
  }

  void DrawMulti(const Curve& curve) const {
    const Model* const model = GetModelByNumber(*ctx_.params, curve.modelId);
    if (!model || !HasRowContributions(curve.quantity)) return;
    std::vector<double> y(fine_.size());
    for (int row = 0; row < RowCount(*model); ++row) {
      const auto number = [&](Column column) { return Cell(*model, row, column).value; };
      for (std::size_t i = 0; i < fine_.size(); ++i) {
        y[i] = RowContribution(number(Wo), number(Wp), number(G), curve.quantity, fine_[i]);
      }
      ModelLine(curve, fine_, y);
    }
  }

  void DrawFreq(const Curve& curve) const {
    const Model* const model = GetModelByNumber(*ctx_.params, curve.modelId);
    if (!model) return;
    for (int row = 0; row < RowCount(*model); ++row) {
      const double at = PlaceOf(graph_.X, graph_.plotWidth, Cell(*model, row, Wo).value);
      for (int k = 0; 10 * k < graph_.plotHeight; ++k) Line({{at, 10.0 * k}, {at, 10.0 * k + 5}});
    }
  }

  // ---- curves of data

  void DrawData(const Curve& curve) const {
    const int size = SymbolSizeOf(curve);
    const double half = size / 2.0;
    const auto rows = ShownRows(graph_, curve, *ctx_.datasets);
    if (curve.ShowLine) {
      std::vector<Point> places;
      for (const DataRow& row : rows) places.push_back(PlaceOfPoint(curve, row.x, row.y));
      Line(places);
    }
    for (const DataRow& row : rows) {
      const Point at = PlaceOfPoint(curve, row.x, row.y);
      if (!HasPlace(at) || at.x < -half || at.x > graph_.plotWidth - 1 + half) continue;
      if (curve.ShowError) DrawErrorBar(curve, row, at, half);
      if (size > 0 && at.y >= -half && at.y <= graph_.plotHeight - 1 + half) DrawSymbol(curve, OnCanvas(at), half);
    }
  }

  // An error bar has a cap as wide as the symbol at each end. The symbol is drawn over it.
  void DrawErrorBar(const Curve& curve, const DataRow& row, Point at, double half) const {
    const Point low = PlaceOfPoint(curve, row.x, row.y - row.sigma);
    const Point high = PlaceOfPoint(curve, row.x, row.y + row.sigma);
    if (!HasPlace(low) || !HasPlace(high)) return;
    Line({low, high});
    if (half == 0) return;
    for (const double end : {low.y, high.y}) Line({{at.x - half, end}, {at.x + half, end}});
  }

  void DrawSymbol(const Curve& curve, Point at, double half) const {
    const std::vector<Point> corners = Outline(static_cast<SymbolShape>(curve.nSymbolShape), at, half);
    constexpr std::uint32_t kWhite = 0xFFFFFF;
    canvas_.DrawPolygon(corners, curve.SymbolOpen ? kWhite : pen_.colour,
                        curve.SymbolOpen ? std::optional(pen_) : std::nullopt);
  }

  static std::vector<Point> Outline(SymbolShape shape, Point at, double half) {
    const auto corners = [&](std::initializer_list<std::array<double, 2>> of) {
      std::vector<Point> points;
      for (const auto& [x, y] : of) points.push_back({at.x + half * x, at.y + half * y});
      return points;
    };
    switch (shape) {
      case SymbolShape::kSquare:
        return corners({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}});
      case SymbolShape::kUpTriangle:
        return corners({{-1, 1}, {1, 1}, {0, -1}});
      case SymbolShape::kDownTriangle:
        return corners({{-1, -1}, {1, -1}, {0, 1}});
      case SymbolShape::kDiamond:
        return corners({{-1, 0}, {0, -1}, {1, 0}, {0, 1}});
      case SymbolShape::kCircle:
        break;
    }
    constexpr int kCorners = 16;
    std::vector<Point> circle;
    for (int k = 0; k < kCorners; ++k) {
      const double angle = 2 * std::numbers::pi * k / kCorners;
      circle.push_back({at.x + half * std::cos(angle), at.y + half * std::sin(angle)});
    }
    return circle;
  }

  const Graph& graph_;
  EvalContext& ctx_;
  Canvas& canvas_;
  Pen pen_{};
  std::vector<double> fine_;  // frequencies of model curves
};

}  // namespace

void DrawGraphForPaper(Graph& graph, EvalContext& ctx, Canvas& canvas) {
  constexpr AxisColors kOnPaper{0xFFFFFF, 0, 0, 0, 0};
  PaintAxes(graph, canvas, kOnPaper);
  if (graph.plotWidth < 1 || graph.plotHeight < 1) return;
  const PlotFrame& f = graph.frame;
  canvas.Clip(f.left, f.top, f.right + 1, f.bottom + 1);
  Paper paper(graph, ctx, canvas);
  for (const Curve* const curve : InUsersOrder(graph)) paper.Draw(*curve);
  canvas.Unclip();
}

}  // namespace kalvex

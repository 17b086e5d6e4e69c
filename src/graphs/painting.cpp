#include "graphs/painting.h"

#include <algorithm>

#include "core/text.h"
#include "graphs/axes.h"
#include "graphs/curve_strokes.h"
#include "graphs/strokes.h"

namespace kalvex {
namespace {

constexpr std::uint8_t kWhite = 0, kBlack = 1;  // rows of the colour table

// One pixel column or row of a stroke or tick, both ends included; rows count from the plot's bottom.
void FillRows(const Graph& graph, Canvas& canvas, int column, int first, int last, std::uint32_t color) {
  const int x = graph.frame.left + column;
  canvas.FillRectangle(x, graph.frame.bottom - last, x + 1, graph.frame.bottom - first + 1, color);
}

void PaintStrokes(const Graph& graph, Canvas& canvas, const Curve& curve) {
  const std::uint32_t color = ColorOf(curve).rgb;
  for (const Stroke& stroke : curve.strokes.strokes) {
    FillRows(graph, canvas, stroke.column, stroke.first, stroke.last, color);
  }
}

// The colours of one column of the plot, from the strokes that `of` returns for each curve.
template <class StrokesOf>
void FillColumn(const Graph& graph, std::span<const Curve* const> curves, int column, StrokesOf of,
                std::vector<std::uint8_t>& colors) {
  const bool isFrame = column == 0 || column == graph.plotWidth - 1;
  std::fill(colors.begin(), colors.end(), isFrame ? kBlack : kWhite);
  colors.front() = colors.back() = kBlack;
  for (const Curve* const curve : curves) {
    const StrokeBuffer& buffer = of(*curve);
    const auto at = static_cast<std::size_t>(column);
    if (at >= buffer.firstStroke.size() || buffer.firstStroke[at] < 0) continue;
    const auto first = buffer.strokes.begin() + buffer.firstStroke[at];
    for (const Stroke& stroke : std::span(first, buffer.strokes.begin() + buffer.endStroke[at])) {
      std::fill(colors.begin() + stroke.first, colors.begin() + stroke.last + 1,
                static_cast<std::uint8_t>(curve->colorIndex));
    }
  }
}

void PaintDifferences(const Graph& graph, Canvas& canvas, int column) {
  const auto& now = graph.columnNew;
  for (std::size_t row = 0; row < now.size();) {
    std::size_t end = row + 1;
    if (now[row] != graph.columnOld[row]) {
      while (end < now.size() && now[end] == now[row] && now[end] != graph.columnOld[end]) ++end;
      FillRows(graph, canvas, column, static_cast<int>(row), static_cast<int>(end) - 1, kCurveColors[now[row]].rgb);
    }
    row = end;
  }
}

// Records that the screen shows the present strokes.
void SetPainted(Graph& graph) {
  for (Curve& curve : graph.curves) curve.changed = false;
  graph.readerCurve.changed = false;
  graph.repaint = Repaint::kNothing;
}

std::vector<const Curve*> InPaintingOrder(const Graph& graph) {
  std::vector<const Curve*> curves = InUsersOrder(graph);
  curves.push_back(&graph.readerCurve);
  return curves;
}

void RepaintChanges(Graph& graph, Canvas& canvas) {
  graph.columnNew.resize(static_cast<std::size_t>(graph.plotHeight));
  graph.columnOld.resize(static_cast<std::size_t>(graph.plotHeight));
  const std::vector<const Curve*> curves = InPaintingOrder(graph);
  for (int column = 0; column < graph.plotWidth && graph.plotHeight > 0; ++column) {
    FillColumn(
        graph, curves, column, [](const Curve& c) -> const StrokeBuffer& { return c.strokes; }, graph.columnNew);
    FillColumn(
        graph, curves, column,
        [](const Curve& c) -> const StrokeBuffer& { return c.changed ? c.oldStrokes : c.strokes; }, graph.columnOld);
    PaintDifferences(graph, canvas, column);
  }
}

}  // namespace

std::vector<const Curve*> InUsersOrder(const Graph& graph) {
  std::vector<const Curve*> curves;
  for (const Curve& curve : graph.curves) curves.push_back(&curve);
  std::stable_sort(curves.begin(), curves.end(), [](const Curve* a, const Curve* b) { return a->order < b->order; });
  return curves;
}

void PaintAxes(Graph& graph, Canvas& canvas, const AxisColors& colors) {
  constexpr int kLabelledTick = 6, kMinorTick = 4, kLabelDistance = 8, kTitleDistance = 2;
  const AxisLayout layout = LayOut(graph);
  const PlotFrame& f = layout.frame;
  const auto fill = [&](double left, double top, double right, double bottom, std::uint32_t color) {
    canvas.FillRectangle(left, top, right, bottom, color);
  };
  fill(0, 0, graph.Width, graph.Height, colors.ground);
  if (graph.plotWidth < 1 || graph.plotHeight < 1) return;
  fill(f.left, f.top, f.right + 1, f.bottom + 1, colors.frame);
  fill(f.left + 1, f.top + 1, f.right, f.bottom, 0xFFFFFF);

  for (const Tick& tick : layout.xTicks) {
    const int x = f.left + Rounded(PlaceOf(graph.X, graph.plotWidth, tick.value));
    const int length = tick.label.empty() ? kMinorTick : kLabelledTick;
    fill(x, f.bottom + 1, x + 1, f.bottom + 1 + length, colors.ticks);
    fill(x, f.top - length, x + 1, f.top, colors.ticks);
    if (tick.label.empty()) continue;
    canvas.DrawText({x + 0.5, static_cast<double>(f.bottom + kLabelDistance)},
                    {HorizontalAlign::kCentre, VerticalAlign::kTop, false}, kLabelFont, colors.labels, tick.label);
  }
  for (const Tick& tick : layout.yTicks) {
    const int y = f.bottom - Rounded(PlaceOf(graph.Y, graph.plotHeight, tick.value));
    const int length = tick.label.empty() ? kMinorTick : kLabelledTick;
    fill(f.left - length, y, f.left, y + 1, colors.ticks);
    fill(f.right + 1, y, f.right + 1 + length, y + 1, colors.ticks);
    if (tick.label.empty()) continue;
    canvas.DrawText({static_cast<double>(f.left - kLabelDistance), y + 0.5},
                    {HorizontalAlign::kRight, VerticalAlign::kMiddle, false}, kLabelFont, colors.labels, tick.label);
  }

  if (graph.X.titleShown) {
    canvas.DrawText({(f.left + f.right + 1) / 2.0, static_cast<double>(graph.Height - kTitleDistance)},
                    {HorizontalAlign::kCentre, VerticalAlign::kBottom, false}, kTitleFont, colors.titles,
                    graph.X.title);
  }
  if (graph.Y.titleShown) {
    canvas.DrawText({kTitleDistance, (f.top + f.bottom + 1) / 2.0},
                    {HorizontalAlign::kCentre, VerticalAlign::kTop, true}, kTitleFont, colors.titles, graph.Y.title);
  }
}

void PaintGraph(Graph& graph, EvalContext& ctx, Canvas& canvas) {
  constexpr AxisColors kOnScreen{0xC8C8C8, 0x000000, 0x143246, 0x0000FF, 0xFF0000};
  RebuildStaleCurves(graph, ctx);
  PaintAxes(graph, canvas, kOnScreen);
  const PlotFrame& f = graph.frame;
  canvas.Clip(f.left, f.top, f.right + 1, f.bottom + 1);
  for (const Curve* const curve : InPaintingOrder(graph)) PaintStrokes(graph, canvas, *curve);
  canvas.Unclip();
  SetPainted(graph);
}

void RepaintGraph(Graph& graph, EvalContext& ctx, Canvas& canvas) {
  if (graph.repaint == Repaint::kEverything) return PaintGraph(graph, ctx, canvas);
  if (graph.repaint == Repaint::kNothing) return;
  RebuildStaleCurves(graph, ctx);
  RepaintChanges(graph, canvas);
  SetPainted(graph);
}

bool IsInFrame(const Graph& graph, int x, int y) {
  const PlotFrame& f = graph.frame;
  return x >= f.left && x <= f.right && y >= f.top && y <= f.bottom;
}

void MoveReader(Graph& graph, int x, int y) {
  if (!IsInFrame(graph, x, y)) return HideReader(graph);
  const PlotFrame& f = graph.frame;
  graph.readerActive = true;
  graph.readerColumn = x - f.left;
  graph.readerRow = f.bottom - y;
  graph.staleKinds |= 1u << static_cast<int>(CurveKind::kReader);
  graph.repaint = std::max(graph.repaint, Repaint::kChanges);
}

void HideReader(Graph& graph) {
  if (!graph.readerActive) return;
  graph.readerActive = false;
  graph.staleKinds |= 1u << static_cast<int>(CurveKind::kReader);
  graph.repaint = std::max(graph.repaint, Repaint::kChanges);
}

std::string GraphTitle(const Graph& graph) {
  if (!graph.readerActive) return graph.name;
  return graph.name + " (" + TextG(graph.columnX[static_cast<std::size_t>(graph.readerColumn)]) + " : " +
         TextG(graph.rowY[static_cast<std::size_t>(graph.readerRow)]) + ')';
}

}  // namespace kalvex

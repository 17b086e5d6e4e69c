#include "graphs/curve_strokes.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graphs/axes.h"
#include "graphs/curve_samples.h"
#include "graphs/graph_table.h"
#include "graphs/strokes.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

PlotSize SizeOf(const Graph& graph) { return {graph.plotWidth, graph.plotHeight}; }

// Adds the strokes of one curve to its buffer. If the buffer is full, one message is shown and further strokes are
// dropped.
class StrokePen {
 public:
  StrokePen(Curve& curve, const EvalContext& ctx) : buffer_(curve.strokes), platform_(ctx.platform) {}

  void Add(int column, RowRun rows) {
    if (AddStroke(buffer_, column, rows) || told_) return;
    told_ = true;
    if (!platform_) return;
    platform_->ShowMessage("Internal Error",
                           "Number of strokes is out of the allocation range.\nPlease contact the developer");
  }
  void AddLine(std::span<const Point> places, PlotSize size) {
    ForEachLineStroke(places, size, [&](std::size_t, int column, RowRun rows) { Add(column, rows); });
  }

 private:
  StrokeBuffer& buffer_;
  Platform* platform_;
  bool told_ = false;
};

double RowPlace(const Graph& graph, const Curve& curve, double value) {
  return PlaceOf(graph.Y, graph.plotHeight, ShownValue(curve, value));
}

Point PlaceOfPoint(const Graph& graph, const Curve& curve, double x, double y) {
  return {PlaceOf(graph.X, graph.plotWidth, x), RowPlace(graph, curve, y)};
}

// ---- curves of data

// A row of a dataset on the plot: its point and the ends of its error bar.
struct DataPlace {
  Point at;
  double low, high;
  bool drawn;  // the point with its error bar lies within the plot
};

DataPlace PlaceOfRow(const Graph& graph, const Curve& curve, const DataRow& row, int symbolSize) {
  const double half = symbolSize / 2.0;
  DataPlace place{PlaceOfPoint(graph, curve, row.x, row.y), RowPlace(graph, curve, row.y - row.sigma),
                  RowPlace(graph, curve, row.y + row.sigma), false};
  const auto isWithin = [&](double at, int pixels) { return at >= -half - 0.5 && at <= pixels + half - 0.5; };
  place.drawn = isWithin(place.at.x, graph.plotWidth) && isWithin(place.low, graph.plotHeight) &&
                isWithin(place.high, graph.plotHeight);
  if (place.low > place.high) std::swap(place.low, place.high);
  return place;
}

struct Symbol {
  int size = 0;  // 0: none
  bool open = false;
  std::vector<SymbolColumn> columns;  // columns at the distances 0, 1, ... from the middle
};

Symbol SymbolOf(const Curve& curve) {
  const int size = SymbolSizeOf(curve);
  if (size == 0) return {};
  return {size, curve.SymbolOpen, SymbolColumns(static_cast<SymbolShape>(curve.nSymbolShape), size)};
}

void Stamp(const Symbol& symbol, const DataPlace& place, StrokePen& pen) {
  const int column = Rounded(place.at.x), row = Rounded(place.at.y);
  for (int dx = 0; dx < static_cast<int>(symbol.columns.size()); ++dx) {
    const SymbolColumn& of = symbol.columns[static_cast<std::size_t>(dx)];
    for (const int side : {column - dx, column + dx}) {
      if (symbol.open && of.HasHole()) {
        pen.Add(side, {row + of.first, row + of.holeFirst - 1});
        pen.Add(side, {row + of.holeLast + 1, row + of.last});
      } else {
        pen.Add(side, {row + of.first, row + of.last});
      }
      if (dx == 0) break;
    }
  }
}

// Without a symbol one bar from end to end. With a symbol two parts with caps as wide as the symbol, if they reach
// beyond it.
void StampErrorBar(const Symbol& symbol, const DataPlace& place, StrokePen& pen) {
  const int column = Rounded(place.at.x), low = Rounded(place.low), high = Rounded(place.high);
  if (symbol.size == 0) return pen.Add(column, {low, high});
  if (!(place.high - place.low > symbol.size)) return;
  const int row = Rounded(place.at.y), half = (symbol.size - 1) / 2;
  if (low < row - half) pen.Add(column, {low, row - half - 1});
  if (high > row + half) pen.Add(column, {row + half + 1, high});
  for (int side = column - half; side <= column + half; ++side) {
    pen.Add(side, {low, low});
    pen.Add(side, {high, high});
  }
}

// Removes the rows of a hollow symbol from a piece of line and visits what is left, at most two pieces.
template <class Visit>
void OutsideOf(const Symbol& symbol, const DataPlace& place, int column, RowRun rows, Visit visit) {
  const auto dx = static_cast<std::size_t>(std::abs(column - Rounded(place.at.x)));
  if (!place.drawn || dx >= symbol.columns.size()) return visit(rows);
  const int row = Rounded(place.at.y);
  const RowRun below{rows.first, std::min(rows.last, row + symbol.columns[dx].first - 1)};
  const RowRun above{std::max(rows.first, row + symbol.columns[dx].last + 1), rows.last};
  if (below.first <= below.last) visit(below);
  if (above.first <= above.last) visit(above);
}

void AddDataLine(const std::vector<DataPlace>& places, const Symbol& symbol, PlotSize size, StrokePen& pen) {
  std::vector<Point> line;
  line.reserve(places.size());
  for (const DataPlace& place : places) line.push_back(place.at);
  if (!symbol.open) return pen.AddLine(line, size);
  ForEachLineStroke(line, size, [&](std::size_t i, int column, RowRun rows) {
    OutsideOf(symbol, places[i], column, rows, [&](RowRun left) {
      OutsideOf(symbol, places[i + 1], column, left, [&](RowRun rest) { pen.Add(column, rest); });
    });
  });
}

void BuildDataStrokes(const Graph& graph, Curve& curve, const EvalContext& ctx) {
  if (!curve.ShowLine && !curve.ShowSymbol && !curve.ShowError) return;
  StrokePen pen(curve, ctx);
  const Symbol symbol = SymbolOf(curve);
  std::vector<DataPlace> places;
  for (const DataRow& row : ShownRows(graph, curve, *ctx.datasets)) {
    places.push_back(PlaceOfRow(graph, curve, row, symbol.size));
    if (!places.back().drawn) continue;
    if (symbol.size > 0) Stamp(symbol, places.back(), pen);
    if (curve.ShowError) StampErrorBar(symbol, places.back(), pen);
  }
  if (curve.ShowLine) AddDataLine(places, symbol, SizeOf(graph), pen);
}

// ---- curves of models

// The curves of one model, evaluated together at the value of each pixel column.
void BuildModelStrokes(const Graph& graph, std::span<Curve* const> run, EvalContext& ctx) {
  const Model* const model = GetModelByNumber(*ctx.params, run.front()->modelId);
  if (!model) return;
  std::vector<Quantity> quantities;
  for (const Curve* const curve : run) quantities.push_back(curve->quantity);
  const auto values = ModelValues(graph, ctx, *model, quantities, graph.columnX);
  std::vector<Point> line(graph.columnX.size());
  for (std::size_t k = 0; k < run.size(); ++k) {
    for (std::size_t c = 0; c < line.size(); ++c) {
      line[c] = {static_cast<double>(c), RowPlace(graph, *run[k], values[k][c])};
    }
    StrokePen(*run[k], ctx).AddLine(line, SizeOf(graph));
  }
}

// The model as the fit compares it with the data: at the frequencies of the dataset, joined by straight lines.
void BuildChiSqStrokes(const Graph& graph, Curve& curve, EvalContext& ctx) {
  const Model* const model = GetModelByNumber(*ctx.params, curve.modelId);
  const std::span<const DataRow> rows = ShownRows(graph, curve, *ctx.datasets);
  if (!model || rows.empty()) return;
  std::vector<double> x;
  for (const DataRow& row : rows) x.push_back(row.x);
  const Quantity quantities[] = {curve.quantity};
  const auto values = ModelValues(graph, ctx, *model, quantities, x);
  std::vector<Point> line(x.size());
  for (std::size_t i = 0; i < x.size(); ++i) line[i] = PlaceOfPoint(graph, curve, x[i], values[0][i]);
  StrokePen(curve, ctx).AddLine(line, SizeOf(graph));
}

void BuildMultiStrokes(const Graph& graph, Curve& curve, EvalContext& ctx) {
  const Model* const model = GetModelByNumber(*ctx.params, curve.modelId);
  if (!model || !HasRowContributions(curve.quantity)) return;
  StrokePen pen(curve, ctx);
  std::vector<Point> line(graph.columnX.size());
  for (int row = 0; row < RowCount(*model); ++row) {
    const auto number = [&](Column column) { return Cell(*model, row, column).value; };
    for (std::size_t c = 0; c < line.size(); ++c) {
      const double value = RowContribution(number(Wo), number(Wp), number(G), curve.quantity, graph.columnX[c]);
      line[c] = {static_cast<double>(c), RowPlace(graph, curve, value)};
    }
    pen.AddLine(line, SizeOf(graph));
  }
}

void BuildFreqStrokes(const Graph& graph, Curve& curve, const EvalContext& ctx) {
  constexpr double kNear = 0.50001;
  const Model* const model = GetModelByNumber(*ctx.params, curve.modelId);
  if (!model) return;
  StrokePen pen(curve, ctx);
  for (int row = 0; row < RowCount(*model); ++row) {
    const double at = PlaceOf(graph.X, graph.plotWidth, Cell(*model, row, Wo).value);
    if (at < -kNear || at > graph.plotWidth - 1 + kNear) continue;
    for (int k = 0; k <= graph.plotHeight / 10; ++k) pen.Add(Rounded(at), {10 * k, 10 * k + 4});
  }
}

// Two dotted lines through the pixel of the reader's cross.
void BuildReaderStrokes(Graph& graph, const EvalContext& ctx) {
  if (!graph.readerActive) return;
  StrokePen pen(graph.readerCurve, ctx);
  for (int k = 0; k <= graph.plotHeight / 4; ++k) pen.Add(graph.readerColumn, {4 * k, 4 * k + 1});
  for (int k = 0; k <= graph.plotWidth / 4; ++k) {
    for (int column = 4 * k; column <= 4 * k + 1; ++column) pen.Add(column, {graph.readerRow, graph.readerRow});
  }
}

// ---- all curves

std::vector<Curve*> InBuildingOrder(Graph& graph) {
  std::vector<Curve*> curves;
  for (Curve& curve : graph.curves) curves.push_back(&curve);
  std::stable_sort(curves.begin(), curves.end(), [](const Curve* a, const Curve* b) { return IsBuiltBefore(*a, *b); });
  return curves;
}

void BuildOneByOne(Graph& graph, Curve& curve, EvalContext& ctx) {
  switch (curve.kind) {
    case CurveKind::kData:
      return BuildDataStrokes(graph, curve, ctx);
    case CurveKind::kChiSq:
      return BuildChiSqStrokes(graph, curve, ctx);
    case CurveKind::kMulti:
      return BuildMultiStrokes(graph, curve, ctx);
    case CurveKind::kFreq:
      return BuildFreqStrokes(graph, curve, ctx);
    case CurveKind::kReader:
      return BuildReaderStrokes(graph, ctx);
    case CurveKind::kModel:
      return;  // already built with the first curve of its model
  }
}

void Begin(const Graph& graph, Curve& curve, const EvalContext& ctx) {
  if (!curve.changed) std::swap(curve.strokes, curve.oldStrokes);
  curve.changed = true;
  Restart(curve.strokes, StrokeCapacity(graph, curve, ctx));
}

}  // namespace

std::size_t StrokeCapacity(const Graph& graph, const Curve& curve, const EvalContext& ctx) {
  const auto width = static_cast<std::size_t>(graph.plotWidth), height = static_cast<std::size_t>(graph.plotHeight);
  const Dataset* const dataset = GetDatasetById(*ctx.datasets, curve.datasetId);
  const Model* const model = GetModelByNumber(*ctx.params, curve.modelId);
  const std::size_t points = dataset ? dataset->points.size() : 0;
  const std::size_t rows = model ? static_cast<std::size_t>(RowCount(*model)) : 0;
  const auto size = static_cast<std::size_t>(SymbolSizeOf(curve));
  switch (curve.kind) {
    case CurveKind::kData:
      return 1 + (curve.ShowSymbol ? 2 * points * (size + 1) : 0) + (curve.ShowError ? 2 * points * (size + 2) : 0) +
             (curve.ShowLine ? 2 * points + width : 0);
    case CurveKind::kModel:
      return 1 + 2 * width;
    case CurveKind::kChiSq:
      return 1 + 2 * points + width;
    case CurveKind::kMulti:
      return 1 + 2 * rows * width;
    case CurveKind::kFreq:
      return 1 + (height / 10 + 1) * rows;
    case CurveKind::kReader:
      return 1 + (height / 4 + 1) + 2 * (width / 4 + 1);
  }
  return 0;
}

void RebuildStaleCurves(Graph& graph, EvalContext& ctx) {
  const auto isStale = [&](const Curve& curve) { return (graph.staleKinds >> static_cast<int>(curve.kind) & 1u) != 0; };
  std::vector<Curve*> curves = InBuildingOrder(graph);
  curves.push_back(&graph.readerCurve);
  std::erase_if(curves, [&](const Curve* curve) { return !isStale(*curve); });
  for (Curve* const curve : curves) Begin(graph, *curve, ctx);

  const auto isModelCurve = [](const Curve* curve) { return curve->kind == CurveKind::kModel; };
  auto next = std::find_if(curves.begin(), curves.end(), isModelCurve);
  while (next != curves.end() && isModelCurve(*next)) {
    const auto end = std::find_if(next, curves.end(), [&](const Curve* curve) {
      return !isModelCurve(curve) || curve->modelId != (*next)->modelId;
    });
    BuildModelStrokes(graph, {next, end}, ctx);
    next = end;
  }
  for (Curve* const curve : curves) {
    BuildOneByOne(graph, *curve, ctx);
    IndexStrokes(curve->strokes, SizeOf(graph));
  }
  graph.staleKinds = 0;
}

}  // namespace kalvex

#include "graphs/graph_table.h"

#include <algorithm>
#include <tuple>

#include "datasets/quantity.h"
#include "graphs/axes.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

constexpr unsigned Bit(CurveKind kind) { return 1u << static_cast<int>(kind); }
constexpr unsigned kOfDatasets = Bit(CurveKind::kData) | Bit(CurveKind::kChiSq);
constexpr unsigned kOfModels =
    Bit(CurveKind::kModel) | Bit(CurveKind::kChiSq) | Bit(CurveKind::kMulti) | Bit(CurveKind::kFreq);
constexpr unsigned kAllKinds = kOfDatasets | kOfModels | Bit(CurveKind::kReader);

bool IsOf(unsigned kinds, const Curve& curve) { return (kinds & Bit(curve.kind)) != 0; }

void MakeStale(Graph& graph, unsigned kinds) {
  graph.staleKinds |= kinds;
  if (graph.repaint == Repaint::kNothing) graph.repaint = Repaint::kChanges;
}

template <class IsGone>
void RemoveCurves(Graph& graph, IsGone isGone) {
  if (std::erase_if(graph.curves, isGone) == 0) return;
  AssignColors(graph.curves);
  graph.repaint = Repaint::kEverything;
}

void Answer(Graph& graph, GraphEvent event, std::int64_t id, bool autoUpdate) {
  const auto isDataset = [&](const Curve& c) { return IsOf(kOfDatasets, c) && c.datasetId == id; };
  const auto isModel = [&](const Curve& c) { return IsOf(kOfModels, c) && c.modelId == id; };
  switch (event) {
    case GraphEvent::kDatasetUnloaded:
      return RemoveCurves(graph, isDataset);
    case GraphEvent::kDatasetChanged:
      return MakeStale(graph, kOfDatasets);
    case GraphEvent::kModelClosed:
      return RemoveCurves(graph, isModel);
    case GraphEvent::kModelRowsChanged:
      MakeStale(graph, kOfModels);
      graph.repaint = Repaint::kEverything;
      return;
    case GraphEvent::kModelParamChanged:
    case GraphEvent::kExpParamChanged:
      if (autoUpdate) MakeStale(graph, kAllKinds & ~Bit(CurveKind::kData));
      return;
    case GraphEvent::kForcedUpdate:
      return MakeStale(graph, kAllKinds & ~Bit(CurveKind::kData));
    case GraphEvent::kReaderToggled:
      return;
  }
}

void ForgetPlot(Graph& graph) {
  graph.plotWidth = graph.plotHeight = 0;
  graph.columnX.clear();
  graph.rowY.clear();
}

template <class Table>
auto FindGraph(Table& table, std::uint32_t number) -> decltype(table.slots.data()) {
  if (number == 0) return nullptr;
  for (auto& graph : table.slots) {
    if (graph.number == number) return &graph;
  }
  return nullptr;
}

Curve CurveOf(CurveKind kind, Quantity quantity, std::uint32_t datasetId, std::uint32_t modelId) {
  Curve curve;
  curve.kind = kind;
  curve.quantity = quantity;
  curve.datasetId = datasetId;
  curve.modelId = modelId;
  return curve;
}

}  // namespace

Graph* GetGraphByNumber(GraphTable& table, std::uint32_t number) { return FindGraph(table, number); }
const Graph* GetGraphByNumber(const GraphTable& table, std::uint32_t number) { return FindGraph(table, number); }

Graph* CreateGraph(GraphTable& table) {
  const auto free =
      std::find_if(table.slots.begin(), table.slots.end(), [](const Graph& graph) { return graph.number == 0; });
  if (free == table.slots.end()) return nullptr;
  *free = Graph();
  free->number = table.nextNumber++;
  free->name = "Graph" + std::to_string(free->number);
  RebuildGraph(*free);
  return &*free;
}

void CloseGraph(Graph& graph) { graph = Graph(); }

void RebuildGraph(Graph& graph) {
  constexpr int kMostPixels = 32767;  // along each side of a window
  graph.repaint = Repaint::kEverything;
  graph.staleKinds = kAllKinds;
  graph.readerActive = false;
  if (graph.Width > kMostPixels || graph.Height > kMostPixels) {
    ForgetPlot(graph);
    return;
  }
  ChooseTicks(graph);
  graph.frame = LayOut(graph).frame;
  graph.plotWidth = std::max(0, graph.frame.right - graph.frame.left + 1);
  graph.plotHeight = std::max(0, graph.frame.bottom - graph.frame.top + 1);
  graph.columnX.clear();
  graph.rowY.clear();
  for (int i = 0; i < graph.plotWidth; ++i) graph.columnX.push_back(ValueAt(graph.X, graph.plotWidth, i));
  for (int i = 0; i < graph.plotHeight; ++i) graph.rowY.push_back(ValueAt(graph.Y, graph.plotHeight, i));
}

void ApplyAxes(Graph& graph) {
  NormalizeAxis(graph.X);
  NormalizeAxis(graph.Y);
  RebuildGraph(graph);
}

Curve DataCurve(const Dataset& dataset) { return CurveOf(CurveKind::kData, dataset.Quantity, dataset.id, 0); }
Curve ModelCurve(const Model& model, Quantity quantity) {
  return CurveOf(CurveKind::kModel, quantity, 0, model.number);
}
Curve ChiSqCurve(const Dataset& dataset, const Model& model) {
  return CurveOf(CurveKind::kChiSq, dataset.Quantity, dataset.id, model.number);
}
Curve MultiCurve(const Model& model, Quantity quantity) {
  return CurveOf(CurveKind::kMulti, quantity, 0, model.number);
}
Curve FreqCurve(const Model& model) { return CurveOf(CurveKind::kFreq, {}, 0, model.number); }

bool IsBuiltBefore(const Curve& a, const Curve& b) {
  const auto key = [](const Curve& c) { return std::tie(c.kind, c.datasetId, c.modelId, c.quantity, c.order); };
  return key(a) < key(b);
}

void AssignColors(std::vector<Curve>& curves) {
  std::int64_t number = 0;
  for (Curve& curve : curves) {
    number = curve.nColor != 0 ? curve.nColor : number + 1;
    const std::int64_t turn = (number - 1) % kAutomaticColors;
    curve.colorIndex = static_cast<int>(turn < 0 ? turn + kAutomaticColors : turn) + 1;
  }
}

bool LooksTheSame(const Curve& a, const Curve& b) {
  const auto key = [](const Curve& c) {
    return std::tie(c.order, c.kind, c.quantity, c.datasetId, c.modelId, c.nColor, c.colorIndex, c.ShowLine,
                    c.ShowSymbol, c.ShowError, c.nSymbolSize, c.nSymbolShape, c.SymbolOpen, c.Scale, c.Shift);
  };
  return key(a) == key(b);
}

bool LooksTheSame(const Graph& a, const Graph& b) {
  const auto key = [](const Graph& g) { return std::tie(g.number, g.name, g.Width, g.Height, g.X, g.Y, g.ShowFitted); };
  return key(a) == key(b) && std::equal(a.curves.begin(), a.curves.end(), b.curves.begin(), b.curves.end(),
                                        [](const Curve& c, const Curve& d) { return LooksTheSame(c, d); });
}

void AddCurve(Graph& graph, Curve curve) {
  graph.curves.push_back(std::move(curve));
  AssignColors(graph.curves);
  RebuildGraph(graph);
}

bool RemoveCurve(Graph& graph, CurveKind kind, std::uint32_t id, std::optional<Quantity> quantity) {
  const auto found = std::find_if(graph.curves.begin(), graph.curves.end(), [&](const Curve& curve) {
    const std::uint32_t of = kind == CurveKind::kData ? curve.datasetId : curve.modelId;
    return curve.kind == kind && of == id && (!quantity || curve.quantity == *quantity);
  });
  if (found == graph.curves.end()) return false;
  graph.curves.erase(found);
  AssignColors(graph.curves);
  RebuildGraph(graph);
  return true;
}

void AnswerGraphEvent(GraphTable& table, GraphEvent event, std::int64_t id, bool autoUpdate) {
  for (Graph& graph : table.slots) {
    if (graph.number != 0) Answer(graph, event, id, autoUpdate);
  }
}

std::string CurveText(const Curve& curve, const DatasetTable& datasets, const ParamTables& params) {
  const auto quoted = [](const std::string& name) { return " \"" + name + '"'; };
  const Dataset* const dataset = curve.datasetId != 0 ? GetDatasetById(datasets, curve.datasetId) : nullptr;
  const Model* const model = GetModelByNumber(params, curve.modelId);
  const std::string ofDataset = quoted(dataset ? dataset->name : ""), ofModel = quoted(model ? model->name : "");
  const std::string word = kCurveKindNames[curve.kind];
  if (curve.kind == CurveKind::kFreq) return word + ofModel;
  const std::string named = word + " [" + NamesOf(curve.quantity).shortName + ']';
  if (curve.kind == CurveKind::kData) return named + ofDataset;
  if (curve.kind == CurveKind::kChiSq) return named + ofDataset + " -" + ofModel;
  return named + ofModel;
}

}  // namespace kalvex

// A graph that follows a fit: the cost of a repaint compared with the evaluation of its model.
#include <benchmark/benchmark.h>

#include <cmath>

#include "graphs/curve_samples.h"
#include "graphs/graph_table.h"
#include "graphs/painting.h"
#include "pictures/pixel_surface.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "tables.h"

namespace {

using kalvex::Tables;

constexpr int kOscillators = 25, kPoints = 10000;

// Data of 10 000 points with error bars, and three Quantities of a model, in a window of 800 x 600.
struct LiveGraph {
  Tables tables;
  kalvex::Model& model = *kalvex::CreateModel(tables.params);
  kalvex::Graph& graph = *kalvex::CreateGraph(tables.graphs);
  kalvex::PixelSurface surface{800, 600, 0xFFFFFF};

  LiveGraph() {
    for (int row = 0; row < kOscillators; ++row) {
      if (row > 0) kalvex::InsertRow(model, row);
      const double frequency = 100 + 900.0 * row / kOscillators;
      for (const auto& [column, value] : {std::pair(0, frequency), {1, 150.0}, {2, 15.0}}) {
        kalvex::Cell(model, row, column).value = value;
      }
    }
    kalvex::Dataset& dataset = tables.datasets.slots[0];
    dataset.id = tables.datasets.nextId++;
    for (int i = 0; i < kPoints; ++i) {
      const double x = 1000.0 * i / kPoints;
      dataset.points.push_back({x, 0.4 + 0.2 * std::sin(0.05 * x) + 0.02 * std::sin(1e4 * x), 0.02});
    }
    kalvex::Curve data = kalvex::DataCurve(dataset);
    data.ShowLine = data.ShowSymbol = data.ShowError = true;
    data.nSymbolSize = 2;
    kalvex::AddCurve(graph, data);
    for (const kalvex::Quantity quantity : kCurves) kalvex::AddCurve(graph, kalvex::ModelCurve(model, quantity));
    graph.Width = 800;
    graph.Height = 600;
    kalvex::RebuildGraph(graph);
    kalvex::PaintGraph(graph, tables.eval, surface);
  }

  void Tell(kalvex::GraphEvent event) { kalvex::AnswerGraphEvent(tables.graphs, event, 1, true); }

  void MoveParameter() {
    double& frequency = kalvex::Cell(model, 3, kalvex::Wo).value;
    frequency += frequency > 250 ? -30 : 7;
  }

  static constexpr kalvex::Quantity kCurves[] = {kalvex::kRefl, kalvex::kLoss, kalvex::kTrans};
};

// range 0: what changes. 0: a parameter, as in each iteration of a fit; 1: also the data.
void RepaintOfAGraph(benchmark::State& state) {
  LiveGraph live;
  for (auto _ : state) {
    live.MoveParameter();
    live.Tell(kalvex::GraphEvent::kModelParamChanged);
    if (state.range(0)) live.Tell(kalvex::GraphEvent::kDatasetChanged);
    kalvex::RepaintGraph(live.graph, live.tables.eval, live.surface);
  }
}
BENCHMARK(RepaintOfAGraph)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void PaintOfAWholeGraph(benchmark::State& state) {
  LiveGraph live;
  for (auto _ : state) {
    kalvex::PaintGraph(live.graph, live.tables.eval, live.surface);
  }
}
BENCHMARK(PaintOfAWholeGraph)->Unit(benchmark::kMillisecond);

// The part of RepaintOfAGraph/0 that evaluates the model.
void EvaluationForAGraph(benchmark::State& state) {
  LiveGraph live;
  for (auto _ : state) {
    live.MoveParameter();
    benchmark::DoNotOptimize(
        kalvex::ModelValues(live.graph, live.tables.eval, live.model, LiveGraph::kCurves, live.graph.columnX));
  }
}
BENCHMARK(EvaluationForAGraph)->Unit(benchmark::kMillisecond);

}  // namespace

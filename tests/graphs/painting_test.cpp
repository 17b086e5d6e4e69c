#include "graphs/painting.h"

#include <functional>
#include <random>

#include "graphs/graphs.h"

namespace kalvex {
namespace {

class Painting : public Graphs {
 protected:
  Painting() : graph(NewGraph()), model(NewModel()), dataset(Load(1, {{10, 0.2, 0.05}, {300, 0.5, 0.1}})) {}

  Graph& graph;
  Model& model;
  Dataset& dataset;
};

TEST_F(Painting, AGraphHasAFrameOnGrayGroundAndItsTexts) {
  Sheet sheet(graph.Width, graph.Height);
  PaintGraph(graph, tables.eval, sheet);
  const PlotFrame& f = graph.frame;
  EXPECT_EQ(sheet.At(0, 0), 0xC8C8C8u);
  EXPECT_EQ(sheet.At(f.left, f.top), 0x000000u);
  EXPECT_EQ(sheet.At(f.right, f.bottom), 0x000000u);
  EXPECT_EQ(sheet.At(f.left + 1, f.top + 1), 0xFFFFFFu);
  EXPECT_EQ(sheet.At(f.left, f.bottom + 6), 0x143246u);  // the tick of 0
  EXPECT_EQ(sheet.At(f.left, f.bottom + 7), 0xC8C8C8u);
  EXPECT_EQ(sheet.At(f.left - 6, f.bottom), 0x143246u);
  EXPECT_EQ(sheet.At(f.right + 6, f.bottom), 0x143246u);
  EXPECT_EQ(sheet.At(f.left, f.top - 6), 0x143246u);
  for (const char* const text : {"0", "200", "1000", "0.2", "1", "Wavenumber (1/cm)", "Reflectivity"}) {
    EXPECT_EQ(std::count(sheet.texts.begin(), sheet.texts.end(), text), std::string(text) == "0" ? 2 : 1) << text;
  }
  EXPECT_EQ(std::count(sheet.pixels.begin(), sheet.pixels.end(), 0x123456u), 0);
}

TEST_F(Painting, LaterCurvesPaintOverEarlierOnesInTheUsersOrder) {
  for (const std::uint32_t order : {1u, 0u}) {
    graph.curves.clear();
    for (int k = 0; k < 2; ++k) {
      Curve curve = ModelCurve(model, kE1);
      curve.Scale = 0;
      curve.Shift = 0.5;
      curve.nColor = k == 0 ? 2 : 4;
      curve.order = k == 0 ? order : 1 - order;
      AddCurve(graph, curve);
    }
    Sheet sheet(graph.Width, graph.Height);
    PaintGraph(graph, tables.eval, sheet);
    const int middle = graph.frame.bottom - (graph.plotHeight - 1) / 2;
    EXPECT_EQ(sheet.At(graph.frame.left + 50, middle), order == 1 ? 0xFF0000u : 0x0000FFu);
  }
}

TEST_F(Painting, TheReaderIsADottedCrossThatNamesItsPlace) {
  MoveReader(graph, graph.frame.left + 100, graph.frame.bottom - 50);
  EXPECT_EQ(GraphTitle(graph), "Graph1 (304.878 : 0.206612)");
  Sheet sheet(graph.Width, graph.Height);
  PaintGraph(graph, tables.eval, sheet);
  for (int k = 1; k < 20; ++k) {
    EXPECT_EQ(sheet.At(graph.frame.left + 100, graph.frame.bottom - k), k % 4 < 2 ? 0x000000u : 0xFFFFFFu) << k;
    EXPECT_EQ(sheet.At(graph.frame.left + k, graph.frame.bottom - 50), k % 4 < 2 ? 0x000000u : 0xFFFFFFu) << k;
  }
  MoveReader(graph, 0, 0);
  EXPECT_EQ(GraphTitle(graph), "Graph1");
  RepaintGraph(graph, tables.eval, sheet);
  EXPECT_EQ(sheet.At(graph.frame.left + 100, graph.frame.bottom - 1), 0xFFFFFFu);
}

TEST_F(Painting, NothingIsPaintedWhereNothingHasChanged) {
  AddCurve(graph, ModelCurve(model, kRefl));
  Sheet sheet(graph.Width, graph.Height);
  PaintGraph(graph, tables.eval, sheet);
  sheet.pixels.assign(sheet.pixels.size(), 0xABCDEF);
  RepaintGraph(graph, tables.eval, sheet);
  Tell(GraphEvent::kModelParamChanged, 1);  // but the values are the same
  RepaintGraph(graph, tables.eval, sheet);
  EXPECT_EQ(std::count(sheet.pixels.begin(), sheet.pixels.end(), 0xABCDEFu),
            static_cast<std::ptrdiff_t>(sheet.pixels.size()));
}

// Random changes of a graph and of the data that it shows.
TEST_F(Painting, ByComparisonLeavesTheSamePixelsAsPaintingEverything) {
  std::mt19937 random(3);
  const auto number = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  const auto die = [&](int sides) { return std::uniform_int_distribution<int>(0, sides - 1)(random); };
  const auto addData = [&] {
    Curve curve = DataCurve(dataset);
    curve.ShowLine = die(2) == 0;
    curve.ShowSymbol = die(2) == 0;
    curve.ShowError = die(2) == 0;
    curve.SymbolOpen = die(2) == 0;
    curve.nSymbolSize = die(8);
    curve.nSymbolShape = die(5);
    AddCurve(graph, curve);
  };
  const std::vector<std::function<void()>> changes = {
      [&] { Cell(model, 0, Wo).value = number(50, 500); },
      [&] { Cell(model, 0, Wo).value = number(50, 500), Tell(GraphEvent::kModelParamChanged, model.number); },
      [&] { Cell(model, 0, G).value = number(1, 50), Tell(GraphEvent::kModelParamChanged, model.number); },
      [&] { dataset.points[1].y = number(0, 1), Tell(GraphEvent::kDatasetChanged, dataset.id); },
      [&] { dataset.points[0].y = number(0, 1), Tell(GraphEvent::kDatasetChanged, dataset.id); },
      [&] { Tell(GraphEvent::kForcedUpdate, -1); },
      [&] { Tell(GraphEvent::kModelRowsChanged, model.number); },
      [&] { MoveReader(graph, die(graph.Width), die(graph.Height)); },
      [&] { HideReader(graph); },
      [&] { autoScreenUpdate = die(2) == 0; },
      addData,
      [&] { AddCurve(graph, ModelCurve(model, kRefl)); },
      [&] { AddCurve(graph, ChiSqCurve(dataset, model)); },
      [&] { AddCurve(graph, FreqCurve(model)); },
      [&] {
        graph.X.min = number(0, 100);
        graph.X.max = number(200, 900);
        ApplyAxes(graph);
      },
      [&] { RemoveCurve(graph, CurveKind::kData, dataset.id, {}); },
  };
  Sheet live(graph.Width, graph.Height);
  PaintGraph(graph, tables.eval, live);
  for (int step = 0; step < 600; ++step) {
    if (graph.curves.size() > 9) {
      graph.curves.resize(4);
      RebuildGraph(graph);
    }
    changes[static_cast<std::size_t>(die(static_cast<int>(changes.size())))]();
    if (die(3) == 0) continue;  // several changes between two repaints
    RepaintGraph(graph, tables.eval, live);
    Sheet whole(graph.Width, graph.Height);
    PaintGraph(graph, tables.eval, whole);
    ASSERT_EQ(live.pixels, whole.pixels) << "step " << step;
  }
}

}  // namespace
}  // namespace kalvex

#include "graphs/graph_table.h"

#include "graphs/curve_strokes.h"
#include "graphs/graphs.h"

namespace kalvex {
namespace {

TEST_F(Graphs, HaveNumbersThatAreNotGivenAgain) {
  EXPECT_EQ(NewGraph().number, 1u);
  EXPECT_EQ(NewGraph().name, "Graph2");
  CloseGraph(*GetGraphByNumber(tables.graphs, 1));
  EXPECT_EQ(GetGraphByNumber(tables.graphs, 1), nullptr);
  EXPECT_EQ(GetGraphByNumber(tables.graphs, 0), nullptr);
  EXPECT_EQ(&NewGraph(), &tables.graphs.slots[0]);
  EXPECT_EQ(tables.graphs.slots[0].number, 3u);
}

TEST_F(Graphs, AreAHundredAtMost) {
  for (int k = 0; k < 100; ++k) NewGraph();
  EXPECT_EQ(CreateGraph(tables.graphs), nullptr);
  CloseGraph(*GetGraphByNumber(tables.graphs, 50));
  EXPECT_EQ(NewGraph().number, 101u);
}

TEST_F(Graphs, BeginWithTheirDefaults) {
  const Graph& graph = NewGraph();
  EXPECT_EQ(graph.X.min, 0);
  EXPECT_EQ(graph.X.max, 1000);
  EXPECT_EQ(graph.X.title, "Wavenumber (1/cm)");
  EXPECT_EQ(graph.Y.max, 1);
  EXPECT_EQ(graph.Y.title, "Reflectivity");
  EXPECT_TRUE(graph.X.titleShown && graph.Y.titleShown);
  EXPECT_FALSE(graph.X.log || graph.Y.log || graph.ShowFitted);
  EXPECT_EQ(graph.Width, 400);
  EXPECT_EQ(graph.Height, 300);
  EXPECT_EQ(graph.columnX.front(), 0);
  EXPECT_EQ(graph.columnX.back(), 1000);
  EXPECT_EQ(graph.rowY.back(), 1);
}

TEST_F(Graphs, OfOneColumnHaveItAtTheUpperLimit) {
  Graph& graph = NewGraph();
  SetPlot(graph, 0, 1000, 0, 1, 1, 50);
  EXPECT_EQ(graph.columnX, std::vector<double>{1000});
}

std::vector<std::string> ColorsOf(const std::vector<int>& chosen) {
  std::vector<Curve> curves(chosen.size());
  for (std::size_t i = 0; i < chosen.size(); ++i) curves[i].nColor = chosen[i];
  AssignColors(curves);
  std::vector<std::string> names;
  for (const Curve& curve : curves) names.emplace_back(kCurveColors[static_cast<std::size_t>(curve.colorIndex)].name);
  return names;
}
using Names = std::vector<std::string>;

TEST(CurveColors, FollowOnFromTheLastThatWasChosen) {
  EXPECT_EQ(ColorsOf({0, 0}), (Names{"Black", "Red"}));
  EXPECT_EQ(ColorsOf({5, 0, 0}), (Names{"Cyan", "Magenta", "Yellow"}));
  EXPECT_EQ(ColorsOf({16, 0}), (Names{"Khaki", "Black"}));
}

TEST(CurveColors, BeginAnewBehindTheLast) {
  const Names names = ColorsOf(std::vector<int>(17));
  EXPECT_EQ(names[15], "Khaki");
  EXPECT_EQ(names[16], names[0]);
}

TEST(CurveColors, AreNeverWhiteWhateverIsAskedFor) {
  EXPECT_EQ(ColorsOf({17, -1, -16, 2147483647, 0, -2147483647 - 1}),
            (Names{"Black", "Gold", "Khaki", "Gold", "Khaki", "Khaki"}));
}

class Events : public Graphs {
 protected:
  Events()
      : graph(NewGraph()),
        other(NewGraph()),
        model(NewModel()),
        second(NewModel()),
        dataset(Load(1, {{10, 0.2, 0}, {20, 0.3, 0}})) {
    for (Graph* const g : {&graph, &other}) {
      AddCurve(*g, DataCurve(dataset));
      AddCurve(*g, ModelCurve(model, kRefl));
      AddCurve(*g, ModelCurve(second, kRefl));
      AddCurve(*g, ChiSqCurve(dataset, model));
      AddCurve(*g, MultiCurve(model, kE1));
      AddCurve(*g, FreqCurve(second));
      Painted(*g);
    }
  }
  void Painted(Graph& of) {
    RebuildStaleCurves(of, tables.eval);
    of.repaint = Repaint::kNothing;
  }
  std::vector<int> StaleKinds() const {
    std::vector<int> kinds;
    for (int kind = 0; kind < kCurveKinds; ++kind) {
      if (graph.staleKinds >> kind & 1u) kinds.push_back(kind);
    }
    return kinds;
  }
  std::vector<int> Kinds() const {
    std::vector<int> kinds;
    for (const Curve& curve : graph.curves) kinds.push_back(static_cast<int>(curve.kind));
    return kinds;
  }
  using Ints = std::vector<int>;

  Graph& graph;
  Graph& other;
  Model& model;
  Model& second;
  Dataset& dataset;
};

TEST_F(Events, OfAnUnloadedDatasetRemoveItsCurvesEverywhere) {
  Tell(GraphEvent::kDatasetUnloaded, dataset.id);
  EXPECT_EQ(Kinds(), (Ints{1, 1, 3, 4}));
  EXPECT_EQ(other.curves.size(), 4u);
  EXPECT_EQ(graph.repaint, Repaint::kEverything);
  EXPECT_STREQ(kCurveColors[static_cast<std::size_t>(graph.curves[0].colorIndex)].name, "Black");
}

TEST_F(Events, OfAClosedModelRemoveItsCurvesEverywhere) {
  Tell(GraphEvent::kModelClosed, model.number);
  EXPECT_EQ(Kinds(), (Ints{0, 1, 4}));
  EXPECT_EQ(graph.curves[1].modelId, second.number);
  EXPECT_EQ(other.curves.size(), 3u);
}

TEST_F(Events, OfWhatNoCurveShowsChangeNothing) {
  Tell(GraphEvent::kDatasetUnloaded, dataset.id + 7);
  Tell(GraphEvent::kModelClosed, 99);
  Tell(GraphEvent::kReaderToggled, -1);
  EXPECT_EQ(graph.curves.size(), 6u);
  EXPECT_EQ(graph.repaint, Repaint::kNothing);
  EXPECT_TRUE(StaleKinds().empty());
}

TEST_F(Events, OfChangedDataMakeStaleWhatDependsOnData) {
  Tell(GraphEvent::kDatasetChanged, 12345);
  EXPECT_EQ(StaleKinds(), (Ints{0, 2}));
  EXPECT_EQ(graph.repaint, Repaint::kChanges);
}

TEST_F(Events, OfChangedRowsBuildTheModelsCurvesAnewAndPaintEverything) {
  Tell(GraphEvent::kModelRowsChanged, model.number);
  EXPECT_EQ(StaleKinds(), (Ints{1, 2, 3, 4}));
  EXPECT_EQ(graph.repaint, Repaint::kEverything);
}

TEST_F(Events, OfParametersMakeStaleAllButData) {
  for (const GraphEvent event :
       {GraphEvent::kModelParamChanged, GraphEvent::kExpParamChanged, GraphEvent::kForcedUpdate}) {
    Painted(graph);
    Tell(event, 1);
    EXPECT_EQ(StaleKinds(), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(graph.repaint, Repaint::kChanges);
  }
}

TEST_F(Events, OfParametersWaitForAForcedUpdateWithoutAutomaticOnes) {
  autoScreenUpdate = false;
  Tell(GraphEvent::kModelParamChanged, 1);
  Tell(GraphEvent::kExpParamChanged, -1);
  EXPECT_TRUE(StaleKinds().empty());
  Tell(GraphEvent::kForcedUpdate, -1);
  EXPECT_FALSE(StaleKinds().empty());
}

TEST_F(Events, RemovingACurveTakesTheFirstThatFits) {
  AddCurve(graph, ModelCurve(model, kRefl));
  graph.curves.back().Scale = 5;
  EXPECT_TRUE(RemoveCurve(graph, CurveKind::kModel, model.number, kRefl));
  EXPECT_EQ(graph.curves.back().Scale, 5);
  EXPECT_FALSE(RemoveCurve(graph, CurveKind::kModel, model.number, kE1));
  EXPECT_FALSE(RemoveCurve(graph, CurveKind::kData, 77, {}));
  EXPECT_TRUE(RemoveCurve(graph, CurveKind::kData, dataset.id, {}));
}

TEST_F(Events, EachKindOfCurveHasItsWords) {
  model.name = "M1";
  const auto text = [&](std::size_t i) { return CurveText(graph.curves[i], tables.datasets, tables.params); };
  EXPECT_EQ(text(0), "DATA [R] \"data1\"");
  EXPECT_EQ(text(1), "MODEL [R] \"M1\"");
  EXPECT_EQ(text(3), "CHI-SQ [R] \"data1\" - \"M1\"");
  EXPECT_EQ(text(4), "MULTI [E1] \"M1\"");
  EXPECT_EQ(text(5), "FREQ \"M2\"");
}

}  // namespace
}  // namespace kalvex

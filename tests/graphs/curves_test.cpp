// Drawing curves of each kind.
#include <complex>
#include <set>

#include "evaluation/eval_model.h"
#include "graphs/axes.h"
#include "graphs/curve_samples.h"
#include "graphs/curve_strokes.h"
#include "graphs/graphs.h"
#include "graphs/painting.h"
#include "records/model_rows.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using Pixels = std::set<std::pair<int, int>>;

Pixels PixelsOf(const StrokeBuffer& buffer) {
  Pixels pixels;
  for (const Stroke& s : buffer.strokes) {
    for (int row = s.first; row <= s.last; ++row) pixels.insert({s.column, row});
  }
  return pixels;
}

class Curves : public Graphs {
 protected:
  Curves() : graph(NewGraph()) {}
  // 101 x 81 pixels; one pixel is one unit of x and of y.
  void SetUnitPlot() { SetPlot(graph, 0, 100, 0, 80, 101, 81); }
  Pixels Built(std::size_t curve = 0) {
    RebuildStaleCurves(graph, tables.eval);
    EXPECT_TRUE(tables.platform.messages.empty());
    return PixelsOf(graph.curves[curve].strokes);
  }
  Curve& Add(Curve curve) {
    AddCurve(graph, std::move(curve));
    return graph.curves.back();
  }
  Curve Points(const Dataset& dataset) {
    Curve curve = DataCurve(dataset);
    curve.ShowSymbol = true;
    return curve;
  }

  Graph& graph;
};

TEST_F(Curves, OfDataWithoutAFlagDrawNothing) {
  SetUnitPlot();
  Add(DataCurve(Load(1, {{10, 20, 1}, {20, 30, 1}})));
  EXPECT_TRUE(Built().empty());
}

TEST_F(Curves, OfDataShowSymbolsLinesAndErrorBars) {
  SetUnitPlot();
  const Dataset& dataset = Load(1, {{10, 20, 5}, {14, 20, 5}});
  Curve& curve = Add(Points(dataset));
  EXPECT_EQ(Built(), (Pixels{{10, 20}, {14, 20}}));
  curve.ShowSymbol = false;
  curve.ShowLine = true;
  RebuildGraph(graph);
  EXPECT_EQ(Built(), (Pixels{{10, 20}, {11, 20}, {12, 20}, {13, 20}, {14, 20}}));
  curve.ShowLine = false;
  curve.ShowError = true;
  RebuildGraph(graph);
  Pixels bars;
  for (int row = 15; row <= 25; ++row) bars.insert({{10, row}, {14, row}});
  EXPECT_EQ(Built(), bars);
}

TEST_F(Curves, HaveErrorBarsWithCapsThatSpareTheSymbol) {
  SetUnitPlot();
  Curve& curve = Add(Points(Load(1, {{10, 20, 5}})));
  curve.nSymbolSize = 1;  // three pixels
  curve.ShowError = true;
  curve.SymbolOpen = true;
  RebuildGraph(graph);
  Pixels expected;
  for (const int row : {15, 25}) expected.insert({{9, row}, {10, row}, {11, row}});
  for (const int row : {16, 17, 18, 22, 23, 24}) expected.insert({10, row});
  for (int column = 9; column <= 11; ++column) {
    for (int row = 19; row <= 21; ++row) expected.insert({column, row});
  }
  expected.erase({10, 20});
  EXPECT_EQ(Built(), expected);
}

TEST_F(Curves, HaveNoErrorBarThatIsNotLongerThanTheSymbol) {
  SetUnitPlot();
  Curve& curve = Add(Points(Load(1, {{10, 20, 2.4}})));
  curve.nSymbolSize = 2;
  curve.ShowError = true;
  RebuildGraph(graph);
  EXPECT_EQ(Built().size(), 25u);
}

TEST_F(Curves, LoseAPointWhoseErrorBarLeavesThePlot) {
  SetUnitPlot();
  Add(Points(Load(1, {{10, 78, 1}, {20, 78, 5}, {30, 2, 5}, {99, 40, 1}, {120, 40, 1}})));
  EXPECT_EQ(Built(), (Pixels{{10, 78}, {99, 40}}));
}

TEST_F(Curves, ScaleValuesAndTheirErrors) {
  SetUnitPlot();
  Curve& curve = Add(Points(Load(1, {{10, 20, 2}})));
  curve.Scale = 2;
  curve.Shift = 7;
  curve.ShowSymbol = false;
  curve.ShowError = true;
  RebuildGraph(graph);
  Pixels bar;
  for (int row = 43; row <= 51; ++row) bar.insert({10, row});
  EXPECT_EQ(Built(), bar);
}

TEST_F(Curves, HaveNoLineThroughHollowSymbols) {
  SetUnitPlot();
  Curve& curve = Add(Points(Load(1, {{10, 20, 0}, {30, 45, 0}})));
  curve.nSymbolSize = 4;
  curve.nSymbolShape = static_cast<int>(SymbolShape::kCircle);
  curve.SymbolOpen = curve.ShowLine = true;
  RebuildGraph(graph);
  const Pixels open = Built();
  for (int dc = -2; dc <= 2; ++dc) {
    for (int dr = -2; dr <= 2; ++dr) EXPECT_EQ(open.count({10 + dc, 20 + dr}), 0u) << dc << ' ' << dr;
  }
  EXPECT_EQ(open.count({20, 33}) + open.count({20, 32}), 2u);  // the line continues between them
}

TEST_F(Curves, ShowOnlyFittedRowsIfTheGraphSaysSo) {
  SetUnitPlot();
  Dataset& dataset = Load(1, {{10, 20, 0}, {20, 20, 0}, {30, 20, 0}, {40, 20, 0}});
  dataset.CutMin = 15;
  dataset.CutMax = 35;
  ComputeActiveRange(dataset);
  Add(Points(dataset));
  EXPECT_EQ(Built().size(), 4u);
  graph.ShowFitted = true;
  RebuildGraph(graph);
  EXPECT_EQ(Built(), (Pixels{{20, 20}, {30, 20}}));
}

TEST_F(Curves, WithASizeOrShapeOutsideTheTablesShowNoSymbol) {
  SetUnitPlot();
  Curve& curve = Add(Points(Load(1, {{10, 20, 0}})));
  for (const auto& [size, shape] : {std::pair(-1, 0), {8, 0}, {0, -1}, {0, 5}, {1000000000, 1000000000}}) {
    curve.nSymbolSize = size;
    curve.nSymbolShape = shape;
    RebuildGraph(graph);
    EXPECT_TRUE(Built().empty()) << size << ' ' << shape;
  }
}

TEST_F(Curves, OfAModelFollowItsQuantityWhateverTheFlagsSay) {
  Model& model = NewModel();
  SetPlot(graph, 10, 500, 0, 1, 300, 200);
  Add(ModelCurve(model, kRefl));
  const Pixels pixels = Built();
  WantOnly(tables.eval.quantities, QuantitySet{kRefl});
  for (int column = 0; column < 300; ++column) {
    EvalModel(tables.eval, model, graph.columnX[static_cast<std::size_t>(column)], false);
    const double place = 199 * tables.eval.quantities[kRefl].value;
    EXPECT_EQ(pixels.count({column, static_cast<int>(std::floor(place + 0.5))}), 1u) << column;
  }
}

TEST_F(Curves, OfAModelHaveAGapWhereTheLogarithmHasNoValue) {
  Model& model = NewModel();  // its eps1 is negative above the resonance
  graph.Y.log = true;
  SetPlot(graph, 10, 500, 1, 1000, 300, 200);
  Add(ModelCurve(model, kE1));
  const Pixels pixels = Built();
  WantOnly(tables.eval.quantities, QuantitySet{kE1});
  int gaps = 0;
  for (int column = 0; column < 300; ++column) {
    EvalModel(tables.eval, model, graph.columnX[static_cast<std::size_t>(column)], false);
    if (tables.eval.quantities[kE1].value > 0) continue;
    ++gaps;
    for (int row = 0; row < 200; ++row) EXPECT_EQ(pixels.count({column, row}), 0u) << column;
  }
  EXPECT_GT(gaps, 5);
}

TEST_F(Curves, OfAModelAreItsDcValuesUnderTheTitleThatAsksForThem) {
  Model& model = NewModel();
  SetPlot(graph, 10, 500, -1, 2, 300, 200);
  graph.X.title = "PlotDCvsT";
  InsertRow(model, 0);
  Add(ModelCurve(model, kS2));
  const Pixels pixels = Built();
  WantOnly(tables.eval.quantities, QuantitySet{kS2});
  double usual = 0, atZero = 0;
  for (int column = 0; column < 300; ++column) {
    const double x = graph.columnX[static_cast<std::size_t>(column)];
    EvalModel(tables.eval, model, x, false);
    usual += tables.eval.quantities[kS2].value;
    tables.eval.DcFlag = true;
    EvalModel(tables.eval, model, x, false);
    tables.eval.DcFlag = false;
    atZero += tables.eval.quantities[kS2].value;
    const double place = 199 * (tables.eval.quantities[kS2].value + 1) / 3;
    EXPECT_EQ(pixels.count({column, static_cast<int>(std::floor(place + 0.5))}), 1u) << column;
  }
  EXPECT_NE(usual, atZero);
  EXPECT_FALSE(tables.eval.DcFlag);
}

TEST_F(Curves, OfChiSqJoinTheModelAtTheFrequenciesOfTheData) {
  Model& model = NewModel();
  const Dataset& dataset = Load(1, {{50, 0, 0}, {100, 0, 0}, {300, 0, 0}});
  SetPlot(graph, 0, 400, 0, 1, 401, 1001);
  Add(ChiSqCurve(dataset, model));
  const Pixels pixels = Built();
  WantOnly(tables.eval.quantities, QuantitySet{kRefl});
  std::vector<double> at;
  for (const DataRow& row : dataset.points) {
    EvalModel(tables.eval, model, row.x, false);
    at.push_back(1000 * tables.eval.quantities[kRefl].value);
  }
  EXPECT_EQ(pixels.begin()->first, 50);
  EXPECT_EQ(pixels.rbegin()->first, 300);
  EXPECT_EQ(pixels.count({75, static_cast<int>(std::floor((at[0] + at[1]) / 2 + 0.5))}), 1u);
  EXPECT_EQ(pixels.count({200, static_cast<int>(std::floor((at[1] + at[2]) / 2 + 0.5))}), 1u);
}

TEST_F(Curves, OfRowsAreThoseOfEachAloneAndNotJoined) {
  Model& model = NewModel();
  InsertRow(model, 0);
  for (int row = 0; row < 2; ++row) {
    Cell(model, row, Wo).value = row == 0 ? 100 : 300;
    Cell(model, row, Wp).value = 100;
    Cell(model, row, G).value = 20;
  }
  SetPlot(graph, 1, 500, 0, 6, 500, 601);
  Add(MultiCurve(model, kE2));
  const Pixels pixels = Built();
  for (const int column : {50, 99, 200, 299, 400}) {
    for (int row = 0; row < 2; ++row) {
      const double x = graph.columnX[static_cast<std::size_t>(column)];
      const double place = 100 * RowContribution(Cell(model, row, Wo).value, 100, 20, kE2, x);
      EXPECT_EQ(pixels.count({column, static_cast<int>(std::floor(place + 0.5))}), 1u) << column << ' ' << row;
    }
  }
  // The last column of the first row and the first of the second are not neighbours.
  EXPECT_EQ(pixels.count({250, 300}), 0u);
}

TEST(RowContribution, IsALorentzOscillatorInFourQuantities) {
  const double Wo = 120, Wp = 300, G = 7;
  for (const double x : {1.0, 90.0, 120.0, 400.0}) {
    const std::complex<double> i(0, 1), eps = Wp * Wp / (Wo * Wo - x * x - i * x * G), sigma = -i * x * eps / 60.0;
    EXPECT_NEAR(RowContribution(Wo, Wp, G, kE1, x), eps.real(), kRound * std::abs(eps));
    EXPECT_NEAR(RowContribution(Wo, Wp, G, kE2, x), eps.imag(), kRound * std::abs(eps));
    EXPECT_NEAR(RowContribution(Wo, Wp, G, kS1, x), sigma.real(), kRound * std::abs(sigma));
    EXPECT_NEAR(RowContribution(Wo, Wp, G, kS2, x), sigma.imag(), kRound * std::abs(sigma));
  }
}

TEST(RowContribution, AtAResonanceWithoutWidthHasNoValue) {
  EXPECT_EQ(RowContribution(100, 50, 0, kE1, 100), 0);
  EXPECT_EQ(RowContribution(100, 50, 0, kS2, 100), 0);
  EXPECT_EQ(RowContribution(100, 50, 0, kE2, 100), kNoValue);
  EXPECT_EQ(RowContribution(100, 50, 0, kS1, 100), kNoValue);
  EXPECT_EQ(RowContribution(100, 0, 5, kE2, 90), 0);
}

TEST_F(Curves, OfFrequenciesAreDashesAtEachRow) {
  Model& model = NewModel();
  InsertRow(model, 0);
  InsertRow(model, 0);
  Cell(model, 0, Wo).value = 20;
  Cell(model, 1, Wo).value = 80;
  Cell(model, 2, Wo).value = 101;  // outside of the plot
  SetUnitPlot();
  Add(FreqCurve(model));
  Pixels dashes;
  for (int k = 0; k <= 8; ++k) {
    for (int row = 10 * k; row <= std::min(10 * k + 4, 80); ++row) dashes.insert({{20, row}, {80, row}});
  }
  EXPECT_EQ(Built(), dashes);
}

TEST_F(Curves, NeedNoMoreStrokesThanIsCountedForThem) {
  SetPlot(graph, 0, 100, 0, 1, 120, 90);
  std::vector<DataRow> rows;
  unsigned state = 7;
  const auto random = [&] { return (state = state * 1664525u + 1013904223u) / 4294967296.0; };
  for (int i = 0; i < 400; ++i) rows.push_back({i * 0.3 - 5, 1.4 * random() - 0.2, 0.3 * random()});
  const Dataset& dataset = Load(1, rows);
  Model& model = NewModel();
  for (int size = 0; size < 8; ++size) {
    for (int shape = 0; shape < 5; ++shape) {
      Curve curve = Points(dataset);
      curve.nSymbolSize = size;
      curve.nSymbolShape = shape;
      curve.SymbolOpen = curve.ShowLine = curve.ShowError = true;
      Add(curve);
    }
  }
  for (const Quantity quantity : {kRefl, kE1, kS1}) {
    Add(ModelCurve(model, quantity));
    Add(ChiSqCurve(dataset, model));
  }
  Add(MultiCurve(model, kE1));
  Add(FreqCurve(model));
  RebuildGraph(graph);
  MoveReader(graph, graph.frame.left + 5, graph.frame.top + 5);
  RebuildStaleCurves(graph, tables.eval);
  EXPECT_TRUE(tables.platform.messages.empty());
}

TEST_F(Curves, WhoseDataOrModelIsGoneDrawNothing) {
  SetUnitPlot();
  Model& model = NewModel();
  const Dataset& dataset = Load(1, {{10, 20, 1}, {20, 30, 1}});
  Add(Points(dataset));
  Add(ChiSqCurve(dataset, model));
  Load(1, {{10, 20, 1}, {20, 30, 1}});  // replaces the rows without a notification
  EXPECT_TRUE(Built(0).empty());
  EXPECT_TRUE(Built(1).empty());
}

}  // namespace
}  // namespace kalvex

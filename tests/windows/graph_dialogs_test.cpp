#include "windows/graph_dialogs.h"

#include <algorithm>

#include "graphs/graph_table.h"
#include "graphs/graphs.h"
#include "graphs/painting.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

class PropertiesDialog : public OpenWindows {
 protected:
  PropertiesDialog() { session.NewGraph().GetStatus().Ignore(); }
  const Graph& graph() { return *session.FindGraph(1); }
  void Store(const GraphPropertiesForm& form) { session.EditGraph(1, EditOf(form)).Ignore(); }
};

TEST_F(PropertiesDialog, PropertiesAreStoredAsTheyCanBeDrawn) {
  GraphPropertiesForm form = PropertiesOf(graph());
  EXPECT_EQ(form.caption, "Graph1 - properties");
  EXPECT_EQ(form.X.min, "0");
  EXPECT_EQ(form.X.max, "1000");
  form.X.min = "500";
  form.X.max = "20.5";
  form.Y.min = "nonsense";
  form.Y.max = "0";
  form.Y.log = true;
  form.X.title = std::string(200, 'x');
  form.Y.titleShown = false;
  form.ShowFitted = true;
  Store(form);
  form = PropertiesOf(graph());
  EXPECT_EQ(form.X.min, "20.5");
  EXPECT_EQ(form.X.max, "500");
  EXPECT_EQ(form.Y.min, "1");
  EXPECT_EQ(form.Y.max, "100");
  EXPECT_EQ(form.X.title, std::string(99, 'x'));
  EXPECT_TRUE(form.ShowFitted && form.Y.log && !form.Y.titleShown);
  EXPECT_LT(graph().frame.left, 52);  // no title beside the axis
}

TEST_F(PropertiesDialog, ATitleIsCutBetweenItsLetters) {
  GraphPropertiesForm form = PropertiesOf(graph());
  std::string omegas;
  for (int k = 0; k < 60; ++k) omegas += "\u03C9";  // two bytes each
  form.X.title = omegas;
  form.Y.title = 'x' + omegas;
  Store(form);
  EXPECT_EQ(graph().X.title, omegas.substr(0, 98));
  EXPECT_EQ(graph().Y.title, 'x' + omegas.substr(0, 98));
}

TEST_F(PropertiesDialog, AGraphClosedByAMacroTakesItsDialogAndItsWindowAlong) {
  DoublePressGraph(desk, graph(), 1, 1);
  EXPECT_EQ(desk.graphDialogs.propertiesOf, 1u);
  EXPECT_EQ(desk.graphs.count(1), 1u);
  session.CloseGraph(1).Ignore();
  EXPECT_EQ(desk.graphDialogs.propertiesOf, 0u);
  EXPECT_TRUE(desk.graphs.empty());
  AcceptProperties(desk);  // stores nothing
}

class ContentsDialog : public OpenWindows {
 protected:
  ContentsDialog() : graph(*GetGraphByNumber(graphs, *session.NewGraph())) {
    Fill(3, "data3").Quantity = kE1;
    Fill(7, "data7").Quantity = kRefl;
    contents = Opened();
  }
  GraphContents Opened() const { return ContentsOf(graph, datasets, params); }
  void Store(const GraphContents& of) { session.SetCurves(graph.number, CurvesOf(of)).Ignore(); }
  void Offer() { OfferCurves(contents, datasets, params); }
  void TickKinds(const bool (&kinds)[kCurveKinds]) {
    contents.kinds = FullTable<CurveKind, bool>(kinds);
    Offer();
  }
  void TickQuantities(std::vector<Quantity> quantities) {
    contents.quantities.fill(false);
    for (const Quantity q : quantities) contents.quantities[q] = true;
    Offer();
  }
  std::vector<std::string> TextsOf(const std::vector<ListedCurve>& list) const {
    std::vector<std::string> texts;
    for (const ListedCurve& listed : list) {
      texts.push_back((listed.selected ? "*" : "") + CurveText(listed.curve, datasets, params));
    }
    return texts;
  }
  void SelectAvailable(const std::vector<std::string>& texts) {
    for (ListedCurve& listed : contents.available) {
      const std::string text = CurveText(listed.curve, datasets, params);
      listed.selected = std::find(texts.begin(), texts.end(), text) != texts.end();
    }
  }
  Graph& graph;
  GraphContents contents;
};

TEST_F(ContentsDialog, OffersCurvesByTheTicksOfKindsAndQuantities) {
  EXPECT_EQ(contents.caption, "Graph1 - contents");
  EXPECT_TRUE(AllTicked(contents.kinds) && AllTicked(contents.quantities));
  EXPECT_EQ(contents.available.size(), 2u + 2 * 15 + 2 * 2 + 2 * 4 + 2);
  TickQuantities({kRefl, kE2});
  EXPECT_FALSE(AllTicked(contents.quantities));
  EXPECT_EQ(TextsOf(contents.available),
            (Texts{"DATA [R] \"data7\"", "MODEL [R] \"M1\"", "MODEL [E2] \"M1\"", "MODEL [R] \"M2\"",
                   "MODEL [E2] \"M2\"", "CHI-SQ [R] \"data7\" - \"M1\"", "CHI-SQ [R] \"data7\" - \"M2\"",
                   "MULTI [E2] \"M1\"", "MULTI [E2] \"M2\"", "FREQ \"M1\"", "FREQ \"M2\""}));
  TickKinds({false, false, false, false, true});
  TickQuantities({});
  EXPECT_EQ(TextsOf(contents.available), (Texts{"FREQ \"M1\"", "FREQ \"M2\""}));
}

TEST_F(ContentsDialog, MovesACurveOnceHoweverOftenItIsAsked) {
  SelectAvailable({"MODEL [R] \"M1\"", "DATA [R] \"data7\""});
  MoveToGraph(contents);
  EXPECT_EQ(TextsOf(contents.chosen), (Texts{"*DATA [R] \"data7\"", "*MODEL [R] \"M1\""}));
  SelectAvailable({"MODEL [R] \"M1\"", "FREQ \"M2\""});
  MoveToGraph(contents);
  EXPECT_EQ(TextsOf(contents.chosen), (Texts{"DATA [R] \"data7\"", "*MODEL [R] \"M1\"", "*FREQ \"M2\""}));
  for (std::uint32_t k = 0; k < 3; ++k) EXPECT_EQ(contents.chosen[k].curve.order, k);
  EXPECT_EQ(contents.chosen[2].curve.colorIndex, 3);
}

TEST_F(ContentsDialog, MovesCurvesBackAndSelectsThemThere) {
  SelectAvailable({"MODEL [R] \"M1\"", "DATA [R] \"data7\"", "FREQ \"M1\""});
  MoveToGraph(contents);
  TickKinds({true, false, false, false, false});
  contents.chosen[2].selected = false;
  MoveFromGraph(contents);
  EXPECT_EQ(TextsOf(contents.chosen), (Texts{"FREQ \"M1\""}));
  EXPECT_EQ(contents.chosen[0].curve.order, 0u);
  EXPECT_EQ(TextsOf(contents.available), (Texts{"DATA [E1] \"data3\"", "*DATA [R] \"data7\"", "*MODEL [R] \"M1\""}));
}

TEST_F(ContentsDialog, GivesNewCurvesALookThatShowsThem) {
  SelectAvailable({"MODEL [R] \"M1\"", "DATA [R] \"data7\""});
  MoveToGraph(contents);
  const Curve& data = contents.chosen[0].curve;
  EXPECT_TRUE(data.ShowLine && data.ShowSymbol && data.ShowError && !data.SymbolOpen);
  EXPECT_STREQ(kSymbolSizeNames[static_cast<std::size_t>(data.nSymbolSize)], "5");
  const Curve& model = contents.chosen[1].curve;
  EXPECT_TRUE(model.ShowLine && !model.ShowSymbol && !model.ShowError);
  EXPECT_EQ(model.nSymbolSize, -1);
  EXPECT_EQ(model.nSymbolShape, -1);
}

TEST_F(ContentsDialog, ShowsTheThirdStateWhereSelectedCurvesDiffer) {
  SelectAvailable({"DATA [E1] \"data3\"", "DATA [R] \"data7\""});
  MoveToGraph(contents);
  EXPECT_EQ(LookOf(contents).line, true);
  contents.chosen[0].curve.ShowLine = false;
  contents.chosen[0].curve.Scale = 2.5;
  CurveLook look = LookOf(contents);
  EXPECT_TRUE(look.any && look.allData);
  EXPECT_EQ(look.line, std::nullopt);
  EXPECT_EQ(look.error, true);
  EXPECT_EQ(look.scale, "");
  EXPECT_EQ(look.shift, "0");
  // A property without a common value stays as it is in each curve.
  look.nColor = 4;
  look.shift = "0.25";
  SetLook(contents, look);
  for (const ListedCurve& listed : contents.chosen) {
    EXPECT_EQ(listed.curve.nColor, 4);
    EXPECT_EQ(listed.curve.Shift, 0.25);
  }
  EXPECT_FALSE(contents.chosen[0].curve.ShowLine);
  EXPECT_TRUE(contents.chosen[1].curve.ShowLine);
  EXPECT_EQ(contents.chosen[0].curve.Scale, 2.5);
  EXPECT_EQ(contents.chosen[1].curve.Scale, 1);
}

TEST_F(ContentsDialog, LeavesToModelsColourScaleAndShift) {
  SelectAvailable({"MODEL [R] \"M1\"", "DATA [R] \"data7\""});
  MoveToGraph(contents);
  CurveLook look = LookOf(contents);
  EXPECT_FALSE(look.allData);
  look.line = look.symbol = false;
  look.size = 7;
  look.scale = "3";
  SetLook(contents, look);
  EXPECT_TRUE(contents.chosen[1].curve.ShowLine);
  EXPECT_EQ(contents.chosen[1].curve.nSymbolSize, -1);
  EXPECT_EQ(contents.chosen[1].curve.Scale, 3);
  EXPECT_FALSE(contents.chosen[0].curve.ShowLine);
  EXPECT_EQ(contents.chosen[0].curve.nSymbolSize, 7);
}

TEST_F(ContentsDialog, TheGroupKeepsTheTextsAsTheyAreTyped) {
  SelectAvailable({"DATA [E1] \"data3\""});
  MoveToGraph(contents);
  EXPECT_EQ(contents.look.scale, "1");
  CurveLook look = contents.look;
  look.scale = "2.";
  look.nColor = 5;
  SetLook(contents, look);
  EXPECT_EQ(contents.chosen[0].curve.Scale, 2);
  EXPECT_EQ(contents.look.scale, "2.");
  EXPECT_EQ(contents.look.colorIndex, 5);
  SelectChosen(contents, 0, false);
  EXPECT_FALSE(contents.look.any);
  SelectChosen(contents, 0, true);
  EXPECT_EQ(contents.look.scale, "2");
}

TEST_F(ContentsDialog, WithoutASelectionEditsNothing) {
  EXPECT_FALSE(LookOf(contents).any);
  EXPECT_FALSE(LookOf(contents).allData);
  SetLook(contents, LookOf(contents));
  EXPECT_TRUE(contents.chosen.empty());
}

TEST_F(ContentsDialog, ChangesTheGraphOnlyWhenStored) {
  SelectAvailable({"MODEL [R] \"M1\"", "FREQ \"M1\"", "DATA [R] \"data7\""});
  MoveToGraph(contents);
  EXPECT_TRUE(graph.curves.empty());
  Store(contents);
  ASSERT_EQ(graph.curves.size(), 3u);
  EXPECT_EQ(graph.curves[0].kind, CurveKind::kData);
  EXPECT_EQ(graph.curves[2].kind, CurveKind::kFreq);
  EXPECT_EQ(TextsOf(Opened().chosen), (Texts{"DATA [R] \"data7\"", "MODEL [R] \"M1\"", "FREQ \"M1\""}));
}

TEST_F(ContentsDialog, StoredUnchangedLeavesThePicture) {
  // Added as by a macro: the curve of the model first, all with the same order.
  session.AddCurve(graph.number, FreqCurve(first)).Ignore();
  session.AddCurve(graph.number, ModelCurve(first, kRefl)).Ignore();
  Curve data = DataCurve(datasets.slots[6]);
  data.ShowLine = data.ShowSymbol = true;
  session.AddCurve(graph.number, data).Ignore();
  Sheet before(graph.Width, graph.Height), after(graph.Width, graph.Height);
  session.PaintGraph(graph.number, before);
  Store(Opened());
  session.PaintGraph(graph.number, after);
  EXPECT_EQ(before.pixels, after.pixels);
}

}  // namespace
}  // namespace kalvex

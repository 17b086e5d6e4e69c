// The two dialogs of a graph without a screen: its properties and its contents. They change the graph only on "OK" and
// "Apply".
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "datasets/dataset.h"
#include "datasets/quantity.h"
#include "graphs/graph.h"
#include "records/model.h"
#include "session/session.h"

namespace kalvex {

struct AxisForm {
  std::string min, max;
  bool log = false;
  std::string title;
  bool titleShown = true;
};

struct GraphPropertiesForm {
  std::string caption;
  AxisForm X, Y;
  bool ShowFitted = false;
};
// The contents of the dialog "Graph properties".
GraphPropertiesForm PropertiesOf(const Graph& graph);
// The contents of the fields, for "OK" and "Apply", without a check. An unreadable number reads as 0.
GraphEdit EditOf(const GraphPropertiesForm& form);

// A curve in one of the two lists of the dialog "Graph contents".
struct ListedCurve {
  Curve curve;
  bool selected = false;
};

// The group "Curve properties" for the selected curves of the graph. A property that differs among the curves has no
// value: a text is empty, a check box shows the third state.
struct CurveLook {
  std::optional<int> nColor;
  std::optional<bool> line, error, symbol, open;
  std::optional<int> size, shape;  // -1 shows as empty
  std::string scale, shift;
  std::optional<int> colorIndex;  // the colour in which the selected curves are painted
  bool any = false;               // at least one curve is selected
  bool allData = false;  // all are of the kind "DATA": everything can be edited; otherwise colour, scale, shift only
};

struct GraphContents {
  std::string caption;
  EnumArray<CurveKind, bool> kinds;  // check boxes of the two groups of filters
  PerQuantity<bool> quantities;
  std::vector<ListedCurve> available;
  std::vector<ListedCurve> chosen;
  CurveLook look;  // what the group shows, with the texts as typed
};

// The contents when the dialog opens, with all check boxes ticked.
GraphContents ContentsOf(const Graph& graph, const DatasetTable& datasets, const ParamTables& params);
// Rebuilds the list of available curves after a change of a check box. A check box "All" stands for its whole group.
void OfferCurves(GraphContents& contents, const DatasetTable& datasets, const ParamTables& params);
bool AllTicked(const EnumArray<CurveKind, bool>& kinds);
bool AllTicked(const PerQuantity<bool>& quantities);

// Selects or deselects a curve of either list. Several curves can be selected.
void SelectAvailable(GraphContents& contents, std::size_t curve, bool selected);
void SelectChosen(GraphContents& contents, std::size_t curve, bool selected);

// "=>": appends the selected available curves to the graph's list and selects them there. A curve that is already in
// the list is only selected.
void MoveToGraph(GraphContents& contents);
// "<=": removes the selected curves from the graph's list and selects them in the other list.
void MoveFromGraph(GraphContents& contents);

// The contents of the group for the present selection and list of the graph.
CurveLook LookOf(const GraphContents& contents);
// Writes every field with a value to each selected curve. Fields for data are written to curves of that kind only.
void SetLook(GraphContents& contents, const CurveLook& look);

// The curves of the graph's list in the form of a graph, for "OK" and "Apply".
std::vector<Curve> CurvesOf(const GraphContents& contents);

}  // namespace kalvex

// The two dialogs of a graph without a screen: its properties, and its contents. The graph changes on "OK" and "Apply"
// only.
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
// The graph as the dialog "Graph properties" shows it.
GraphPropertiesForm PropertiesOf(const Graph& graph);
// What the fields hold, for "OK" and "Apply", without a check: an unreadable number reads as 0.
GraphEdit EditOf(const GraphPropertiesForm& form);

// A curve in one of the two lists of the dialog "Graph contents".
struct ListedCurve {
  Curve curve;
  bool selected = false;
};

// The group "Curve properties" for the selected curves of the graph. What differs among them has no value: a text is
// empty, a tick shows the third state.
struct CurveLook {
  std::optional<int> nColor;
  std::optional<bool> line, error, symbol, open;
  std::optional<int> size, shape;  // -1 shows as empty
  std::string scale, shift;
  std::optional<int> colorIndex;  // that the selected curves are painted in
  bool any = false;               // there is a selected curve
  bool allData = false;  // all are of the kind "DATA", and everything can be edited; else colour, scale and shift only
};

struct GraphContents {
  std::string caption;
  EnumArray<CurveKind, bool> kinds;  // ticks of the two groups of filters
  PerQuantity<bool> quantities;
  std::vector<ListedCurve> available;
  std::vector<ListedCurve> chosen;
  CurveLook look;  // as the group shows it: the texts as a person types them
};

// All ticks are set.
GraphContents ContentsOf(const Graph& graph, const DatasetTable& datasets, const ParamTables& params);
// Builds the list of available curves anew, after a change of a tick. The ticks "All" are those of a group together.
void OfferCurves(GraphContents& contents, const DatasetTable& datasets, const ParamTables& params);
bool AllTicked(const EnumArray<CurveKind, bool>& kinds);
bool AllTicked(const PerQuantity<bool>& quantities);

// A curve of either list is selected or no longer; several can be at a time.
void SelectAvailable(GraphContents& contents, std::size_t curve, bool selected);
void SelectChosen(GraphContents& contents, std::size_t curve, bool selected);

// "=>": the selected available curves go to the end of the graph's list, and are selected there; one that it has
// already is only selected.
void MoveToGraph(GraphContents& contents);
// "<=": the selected curves leave the graph's list, and are selected in the other.
void MoveFromGraph(GraphContents& contents);

// What the group shows after a change of the selection or of the graph's list.
CurveLook LookOf(const GraphContents& contents);
// Takes over every field that has a value, for each selected curve; those of data for curves of that kind only.
void SetLook(GraphContents& contents, const CurveLook& look);

// The curves of the graph's list as a graph has them, for "OK" and "Apply".
std::vector<Curve> CurvesOf(const GraphContents& contents);

}  // namespace kalvex

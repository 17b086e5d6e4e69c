// Making graphs, changing what they show, and how they hear of changes elsewhere. Nothing is painted here: a graph
// notes what a screen must do, and keeps what is stale until somebody looks.
#pragma once

#include <cstdint>
#include <optional>

#include "datasets/dataset.h"
#include "graphs/graph.h"
#include "records/model.h"

namespace kalvex {

// What a graph hears of a change elsewhere.
enum class GraphEvent : int {
  kDatasetUnloaded = 0,   // id: the dataset's id
  kDatasetChanged = 1,    // id: not used
  kModelClosed = 2,       // id: the model's number
  kModelRowsChanged = 3,  // id: the model's number
  kModelParamChanged = 4,
  kExpParamChanged = 5,
  kForcedUpdate = 6,  // id: -1, or the id of the dataset to which noise was added
  kReaderToggled = 7,
};

// The graph of that number, or null; 0 is no number.
Graph* GetGraphByNumber(GraphTable& table, std::uint32_t number);
const Graph* GetGraphByNumber(const GraphTable& table, std::uint32_t number);

// A graph with the default axes and no curves in the first free slot; null if all are taken.
Graph* CreateGraph(GraphTable& table);
// Frees the slot. The number is not given out again.
void CloseGraph(Graph& graph);

// Lays the graph out anew, after its size, its axes or its list of curves has changed: ticks, frame, the value of each
// pixel. All strokes become stale, and everything is to be painted. A window that is too large for one gets a plot
// without pixels.
void RebuildGraph(Graph& graph);

// Makes the limits of both axes such that they can be drawn, and rebuilds.
void ApplyAxes(Graph& graph);

// New curves of each kind, as a macro adds them.
Curve DataCurve(const Dataset& dataset);
Curve ModelCurve(const Model& model, Quantity quantity);
Curve ChiSqCurve(const Dataset& dataset, const Model& model);
Curve MultiCurve(const Model& model, Quantity quantity);
Curve FreqCurve(const Model& model);

// The order in which curves are built, in which the model curves of a model stand together.
bool IsBuiltBefore(const Curve& a, const Curve& b);

// Gives each curve the colour it is drawn in. One without a colour of its own has that behind the curve before it.
void AssignColors(std::vector<Curve>& curves);

// At the end of the list.
void AddCurve(Graph& graph, Curve curve);
// The first curve of that kind, of the dataset or the model, and of the Quantity unless it is -1. False if there is
// none.
bool RemoveCurve(Graph& graph, CurveKind kind, std::uint32_t id, std::optional<Quantity> quantity);

// What every graph does when it hears of a change. Without autoUpdate a changed parameter leaves the curves as they
// are, until a forced update.
void AnswerGraphEvent(GraphTable& table, GraphEvent event, std::int64_t id, bool autoUpdate);

// "DATA [R] "gold.dat"" and the like; what no longer exists has an empty name.
std::string CurveText(const Curve& curve, const DatasetTable& datasets, const ParamTables& params);

}  // namespace kalvex

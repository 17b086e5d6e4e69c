// Making graphs, changing what they show, and updating them after changes elsewhere. Nothing is painted here: a graph
// records what a screen must repaint and which strokes are stale.
#pragma once

#include <cstdint>
#include <optional>

#include "datasets/dataset.h"
#include "graphs/graph.h"
#include "records/model.h"

namespace kalvex {

// A change elsewhere that concerns graphs.
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

// The graph with that number; null if there is none. 0 marks free slots and is never found.
Graph* GetGraphByNumber(GraphTable& table, std::uint32_t number);
const Graph* GetGraphByNumber(const GraphTable& table, std::uint32_t number);

// Makes a graph with default axes and no curves in the first free slot. Null if all slots are taken.
Graph* CreateGraph(GraphTable& table);
// Frees the slot. The number is not used again.
void CloseGraph(Graph& graph);

// Computes the layout after a change of the size, the axes or the list of curves: ticks, frame, the value of each
// pixel. All strokes become stale, and everything must be repainted. If the window is too large, the plot has no
// pixels.
void RebuildGraph(Graph& graph);

// Normalises the limits of both axes and rebuilds the graph.
void ApplyAxes(Graph& graph);

// New curves of each kind with the defaults of the macro language.
Curve DataCurve(const Dataset& dataset);
Curve ModelCurve(const Model& model, Quantity quantity);
Curve ChiSqCurve(const Dataset& dataset, const Model& model);
Curve MultiCurve(const Model& model, Quantity quantity);
Curve FreqCurve(const Model& model);

// Order for building curves: the model curves of one model are neighbours.
bool IsBuiltBefore(const Curve& a, const Curve& b);

// Sets the colour in which each curve is drawn. A curve with an automatic colour takes the next row of the table after
// the colour of the previous curve.
void AssignColors(std::vector<Curve>& curves);

// True if a user cannot tell the two apart. Strokes, and what is stale or not yet painted, do not count.
bool LooksTheSame(const Curve& a, const Curve& b);
bool LooksTheSame(const Graph& a, const Graph& b);

// Appends a curve to the list.
void AddCurve(Graph& graph, Curve curve);
// Removes the first curve of that kind, of the dataset or the model, and of the Quantity unless it is -1. False if
// there is none.
bool RemoveCurve(Graph& graph, CurveKind kind, std::uint32_t id, std::optional<Quantity> quantity);

// Updates all graphs after a change. Without autoUpdate a changed parameter leaves the curves as they are until a
// forced update.
void AnswerGraphEvent(GraphTable& table, GraphEvent event, std::int64_t id, bool autoUpdate);

// The description of a curve, such as "DATA [R] "gold.dat"". A dataset or model that no longer exists has an empty
// name.
std::string CurveText(const Curve& curve, const DatasetTable& datasets, const ParamTables& params);

}  // namespace kalvex

// Builds the strokes of a graph's curves.
#pragma once

#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

// Upper bound of the number of strokes of a curve in a plot of that size.
std::size_t StrokeCapacity(const Graph& graph, const Curve& curve, const EvalContext& ctx);

// Rebuilds the strokes of the stale kinds and keeps the previously painted ones. All curves of one model share one
// evaluation. If StrokeCapacity turns out too small, a message box reports the internal error.
void RebuildStaleCurves(Graph& graph, EvalContext& ctx);

}  // namespace kalvex

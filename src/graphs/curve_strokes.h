// The strokes of a graph's curves, made from what they show.
#pragma once

#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

// How many strokes a curve can need at most in a plot of that size.
std::size_t StrokeCapacity(const Graph& graph, const Curve& curve, const EvalContext& ctx);

// Builds the strokes of the stale kinds anew and remembers those that were painted last; the model curves of a model
// take one evaluation together. A fault of this program's own counting of strokes is told by a message box.
void RebuildStaleCurves(Graph& graph, EvalContext& ctx);

}  // namespace kalvex

// Export of a graph's leading model curves as columns of text.
#pragma once

#include <string>

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

// Writes a line "W" and the short names of the Quantities, then a line for each column of pixels of the plot: its value
// on the X axis and the value of each Quantity, without Scale and Shift. The curves are taken from the start of the
// list, in the user's order, up to the first one that is not a model curve. A plot without pixels gives an empty file.
// Returns the number of curves.
Result<int> ExportGraph(const Graph& graph, EvalContext& ctx, const std::string& path);

}  // namespace kalvex

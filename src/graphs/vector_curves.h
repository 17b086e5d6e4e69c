// A graph for paper: lines and symbols as they are, not as pixels.
#pragma once

#include "evaluation/eval_context.h"
#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

// Draws the graph at its window's size with black axes on white ground. Model curves take several points a pixel.
void DrawGraphForPaper(Graph& graph, EvalContext& ctx, Canvas& canvas);

}  // namespace kalvex

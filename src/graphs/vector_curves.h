// Drawing a graph with lines and symbols instead of pixels, for vector pictures.
#pragma once

#include "evaluation/eval_context.h"
#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

// Draws the graph at its window's size with black axes on a white ground. Model curves have several points per pixel.
void DrawGraphForPaper(Graph& graph, EvalContext& ctx, Canvas& canvas);

}  // namespace kalvex

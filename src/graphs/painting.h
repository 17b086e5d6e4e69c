// Painting a graph on a screen or into a picture of pixels: everything, or only the pixels that have changed.
#pragma once

#include "evaluation/eval_context.h"
#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

// Paints the whole window: frame, ticks, labels, titles, then the curves in the user's order, later ones over earlier
// ones, and the reader's cross last. Stale curves are rebuilt first. The canvas has the size of the graph's window.
void PaintGraph(Graph& graph, EvalContext& ctx, Canvas& canvas);

// Updates a canvas that shows an earlier state of the graph. Paints only the pixels of the plot whose colours have
// changed, or everything if that is necessary, or nothing. The result equals that of PaintGraph.
void RepaintGraph(Graph& graph, EvalContext& ctx, Canvas& canvas);

// Curves in the order in which the user chose them. They are painted and exported in this order.
std::vector<const Curve*> InUsersOrder(const Graph& graph);

// Colours of axes and titles. The inside of the frame is filled with white.
struct AxisColors {
  std::uint32_t ground, frame, ticks, labels, titles;
};
void PaintAxes(Graph& graph, Canvas& canvas, const AxisColors& colors);

// Whether a pixel of the window belongs to the plot.
bool IsInFrame(const Graph& graph, int x, int y);

// Moves the reader's cross to a pixel of the window. Outside of the frame the cross disappears. The window's title
// changes too.
void MoveReader(Graph& graph, int x, int y);
void HideReader(Graph& graph);
// The window's title: the graph's name and the position of the reader.
std::string GraphTitle(const Graph& graph);

}  // namespace kalvex

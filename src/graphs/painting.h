// A graph on a screen or a picture of pixels: everything, or only the pixels that have changed.
#pragma once

#include "evaluation/eval_context.h"
#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

// Everything, in the whole window: frame, ticks, labels, titles, then the curves in the user's order, later ones over
// earlier ones, the reader's cross last. Stale curves are built before. The canvas is as large as the graph's window.
void PaintGraph(Graph& graph, EvalContext& ctx, Canvas& canvas);

// Brings a canvas that shows the graph as it was to what it is now: paints only the pixels of the plot whose colours
// have changed, or everything if that is needed, or nothing. Leaves the same pixels as PaintGraph.
void RepaintGraph(Graph& graph, EvalContext& ctx, Canvas& canvas);

// Curves in the order in which they are painted and exported: as the user chose them.
std::vector<const Curve*> InUsersOrder(const Graph& graph);

// Axes and titles; the inside of the frame becomes white.
struct AxisColors {
  std::uint32_t ground, frame, ticks, labels, titles;
};
void PaintAxes(Graph& graph, Canvas& canvas, const AxisColors& colors);

// Whether a pixel of the window belongs to the plot.
bool IsInFrame(const Graph& graph, int x, int y);

// Shows or moves the reader's cross: to a pixel of the window, if it lies within the frame, else it vanishes. The
// window's title follows.
void MoveReader(Graph& graph, int x, int y);
void HideReader(Graph& graph);
// The window's title: the graph's name, and where the reader is.
std::string GraphTitle(const Graph& graph);

}  // namespace kalvex

// Strokes: the pixels of a line or a symbol in each column.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

// Size of a plot in pixels, including its frame.
struct PlotSize {
  int width;
  int height;
};

struct RowRun {
  int first;
  int last;
};

// Rounds a place to a whole number, limited to the range that a plot can have.
inline int Rounded(double place) { return static_cast<int>(std::floor(std::clamp(place, -1e6, 1e6) + 0.5)); }

// The rows of a column that the straight segment between two places covers. The line is one pixel thick and ends at its
// points.
std::optional<RowRun> StrokeForColumn(Point from, Point to, int column, PlotSize size);

inline bool HasPlace(Point p) { return p.x != kMissing && p.y != kMissing; }
// True if both points lie outside of the plot on the same side.
bool AreBeyondOneSide(Point a, Point b, PlotSize size);

// Calls visit(number of the segment, column, RowRun) for the pixels between each pair of consecutive places. Pairs with
// a missing place, or with both places outside on the same side, are skipped.
template <class Visit>
void ForEachLineStroke(std::span<const Point> places, PlotSize size, Visit visit) {
  for (std::size_t i = 0; i + 1 < places.size(); ++i) {
    const Point from = places[i], to = places[i + 1];
    if (!HasPlace(from) || !HasPlace(to) || AreBeyondOneSide(from, to, size)) continue;
    const int first = Rounded(std::min(from.x, to.x)), last = Rounded(std::max(from.x, to.x));
    for (int column = std::max(first, 0); column <= std::min(last, size.width - 1); ++column) {
      if (const auto rows = StrokeForColumn(from, to, column, size)) visit(i, column, *rows);
    }
  }
}

// One column of a symbol, with rows relative to its middle. The hole is empty if holeFirst is above holeLast.
struct SymbolColumn {
  int first, last;
  int holeFirst, holeLast;

  bool HasHole() const { return holeFirst <= holeLast; }
};
// The columns of a symbol at the distances 0, 1, ... from its middle column, the same on both sides. size: odd, 1 to
// 15.
std::vector<SymbolColumn> SymbolColumns(SymbolShape shape, int size);

// Empties the buffer and sets its limit.
void Restart(StrokeBuffer& buffer, std::size_t capacity);
// False, and adds nothing, if the buffer is full.
bool AddStroke(StrokeBuffer& buffer, int column, RowRun rows);
// Cuts the strokes to the plot, sorts them, merges strokes of a column that overlap or touch, and stores the index of
// each column's strokes.
void IndexStrokes(StrokeBuffer& buffer, PlotSize size);

}  // namespace kalvex

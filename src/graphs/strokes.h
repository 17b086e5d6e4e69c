// Strokes: what of a line or a symbol falls on each column of pixels.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

// Size of a plot in pixels, its frame included.
struct PlotSize {
  int width;
  int height;
};

struct RowRun {
  int first;
  int last;
};

// The whole number next to a place, held within what a plot can ever have.
inline int Rounded(double place) { return static_cast<int>(std::floor(std::clamp(place, -1e6, 1e6) + 0.5)); }

// The rows of a column that the straight segment between two places covers. The line is one pixel thick, and ends
// with its points.
std::optional<RowRun> StrokeForColumn(Point from, Point to, int column, PlotSize size);

inline bool HasPlace(Point p) { return p.x != kMissing && p.y != kMissing; }
// Both beyond the same side of the plot.
bool AreBeyondOneSide(Point a, Point b, PlotSize size);

// Calls visit(number of the segment, column, RowRun) for what each pair of consecutive places covers, in pairs that
// have places and do not lie beyond one side of the plot.
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

// One column of a symbol, rows relative to its middle; the hole is empty if holeFirst is above holeLast.
struct SymbolColumn {
  int first, last;
  int holeFirst, holeLast;

  bool HasHole() const { return holeFirst <= holeLast; }
};
// The columns of a symbol at the distances 0, 1, ... from its middle column, to both sides. size: odd, 1 to 15.
std::vector<SymbolColumn> SymbolColumns(SymbolShape shape, int size);

// Empties the buffer and sets its limit.
void Restart(StrokeBuffer& buffer, std::size_t capacity);
// False, with nothing added, if the buffer is full.
bool AddStroke(StrokeBuffer& buffer, int column, RowRun rows);
// Cuts the strokes to the plot, sorts them, merges those of a column that overlap or touch, and finds those of each
// column.
void IndexStrokes(StrokeBuffer& buffer, PlotSize size);

}  // namespace kalvex

// From values to pixels and back, and the ticks and labels of the two axes. Places are fractions of a pixel; the middle
// of a pixel is a whole number. Columns count from the left, rows from the bottom.
#pragma once

#include <string>
#include <vector>

#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

inline constexpr Font kTitleFont{Face::kSerif, 20};
inline constexpr Font kLabelFont{Face::kSans, 16};

// Makes the limits such that an axis can be drawn between them: finite, ascending and not equal; above 0 if it is
// logarithmic, on which 0 becomes 1 as the lower and 100 as the upper limit, and a negative limit loses its sign.
void NormalizeAxis(Axis& axis);

// Place of a value along an axis of so many pixels; kMissing for what has none: kNoValue, a number that is not finite,
// on a logarithmic axis also 0 and below.
double PlaceOf(const Axis& axis, int pixels, double value);
// Value at a place; an axis of one pixel has its upper limit there.
double ValueAt(const Axis& axis, int pixels, double place);

struct Tick {
  double value;
  std::string label;  // empty for a minor tick
};
// All ticks for the axis's tick distance, the labelled ones first.
std::vector<Tick> TicksOf(const Axis& axis);

// The labelled ticks of both axes with what the layout needs of them, as `tick` of the axes stands.
struct AxisLayout {
  PlotFrame frame;
  std::vector<Tick> xTicks;
  std::vector<Tick> yTicks;
};
// Also sets the axes' number of ticks and the gap between labels.
AxisLayout LayOut(Graph& graph);

// Finds for both axes the finest distance of ticks at which labels do not crowd.
void ChooseTicks(Graph& graph);

}  // namespace kalvex

// The conversion between values and pixels, and the ticks and labels of the two axes. Places are fractions of a pixel;
// the middle of a pixel is a whole number. Columns count from the left, rows from the bottom.
#pragma once

#include <string>
#include <vector>

#include "graphs/graph.h"
#include "pictures/canvas.h"

namespace kalvex {

inline constexpr Font kTitleFont{Face::kSerif, 20};
inline constexpr Font kLabelFont{Face::kSans, 16};

// Makes the limits of an axis drawable: finite, ascending and different. On a logarithmic axis a negative limit loses
// its sign; a lower limit of 0 becomes 1, an upper limit of 0 becomes 100.
void NormalizeAxis(Axis& axis);

// Place of a value along an axis with this number of pixels. kMissing if it has no place: kNoValue, a number that is
// not finite, or on a logarithmic axis a number that is not positive.
double PlaceOf(const Axis& axis, int pixels, double value);
// Value at a place. An axis of one pixel returns its upper limit.
double ValueAt(const Axis& axis, int pixels, double place);

struct Tick {
  double value;
  std::string label;  // empty for a minor tick
};
// All ticks for the axis's tick distance; those with a label come first.
std::vector<Tick> TicksOf(const Axis& axis);

// The labelled ticks of both axes for the present tick distances, with the sizes that the layout needs.
struct AxisLayout {
  PlotFrame frame;
  std::vector<Tick> xTicks;
  std::vector<Tick> yTicks;
};
// Also stores the number of ticks and the gap between labels in the axes.
AxisLayout LayOut(Graph& graph);

// Sets the finest tick distance of both axes at which labels keep their free space.
void ChooseTicks(Graph& graph);

}  // namespace kalvex

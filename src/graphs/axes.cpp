#include "graphs/axes.h"

#include <algorithm>
#include <cmath>

#include "core/text.h"
#include "pictures/text_metrics.h"

namespace kalvex {
namespace {

double LimitedLog10(double value) { return value <= 1e-300 ? -300 : std::log10(value); }

// The first of consecutive whole multiples of the tick distance, and their number.
struct TickRun {
  double first = 0;
  int count = 0;
};

TickRun RunBetween(double min, double max, double tick) {
  constexpr double kMostTicks = 1000;  // an axis with more ticks is only a trial, and is rejected
  const double first = std::ceil(min / tick), last = std::floor(max / tick);
  if (!(last >= first)) return {first, 0};
  return {first, static_cast<int>(std::min(last - first + 1, kMostTicks))};
}

std::vector<Tick> LinearTicks(const Axis& axis) {
  const TickRun run = RunBetween(axis.min, axis.max, axis.tick);
  std::vector<Tick> ticks;
  for (int i = 0; i < run.count; ++i) {
    const double value = (run.first + i) * axis.tick;
    ticks.push_back({value == 0 ? 0 : value, TextG(value == 0 ? 0 : value)});
  }
  for (int i = -1; i < run.count; ++i) {
    const double value = (run.first + i + 0.5) * axis.tick;
    if (value >= axis.min && value < axis.max) ticks.push_back({value, {}});
  }
  return ticks;
}

std::vector<Tick> DecadeTicks(const Axis& axis) {
  const TickRun run = RunBetween(axis.logMin, axis.logMax, axis.tick);
  std::vector<Tick> ticks;
  for (int i = 0; i < run.count; ++i) {
    const double value = std::pow(10.0, std::trunc((run.first + i) * axis.tick));
    ticks.push_back({value, TextG(value)});
  }
  if (axis.tick > 1) return ticks;
  for (int i = -1; i < run.count; ++i) {
    const double decade = std::pow(10.0, (run.first + i) * axis.tick);
    for (int k = 2; k <= 9; ++k) {
      if (const double value = k * decade; value >= axis.min && value < axis.max) ticks.push_back({value, {}});
    }
  }
  return ticks;
}

// Smallest free distance between neighbouring labels. extentOf returns the length of a label along the axis.
template <class ExtentOf>
int GapBetween(const Axis& axis, int pixels, const std::vector<Tick>& ticks, ExtentOf extentOf) {
  double gap = pixels, placeBefore = 0, extentBefore = 0;
  bool isFirst = true;
  for (const Tick& tick : ticks) {
    if (tick.label.empty()) break;
    const double place = PlaceOf(axis, pixels, tick.value), extent = extentOf(tick.label);
    if (!isFirst) gap = std::min(gap, place - placeBefore - (extent + extentBefore) / 2);
    isFirst = false;
    placeBefore = place;
    extentBefore = extent;
  }
  return static_cast<int>(std::floor(gap));
}

int CountLabels(const std::vector<Tick>& ticks) {
  return static_cast<int>(std::count_if(ticks.begin(), ticks.end(), [](const Tick& t) { return !t.label.empty(); }));
}

int LabelHeight() { return TextExtent(kLabelFont, "0").height; }
int TitleRoom(const Axis& axis) { return axis.titleShown ? TextExtent(kTitleFont, axis.title).height + 2 : 0; }

PlotFrame FrameFor(const Graph& graph, const std::vector<Tick>& yTicks) {
  int widest = 0;
  for (const Tick& tick : yTicks) widest = std::max(widest, TextExtent(kLabelFont, tick.label).width);
  return {widest + 10 + TitleRoom(graph.Y), 10, graph.Width - 20,
          graph.Height - LabelHeight() - 10 - TitleRoom(graph.X)};
}

// Tries distances from fine to coarse until the gap between labels exceeds freeBy. If none does, the last one tried
// stays.
void ChooseTick(Graph& graph, Axis& axis, int freeBy) {
  const auto fits = [&](double tick) {
    axis.tick = tick;
    LayOut(graph);
    return axis.labelGap > freeBy;
  };
  if (axis.log) {
    for (int k = std::max(1, static_cast<int>(axis.logMax - axis.logMin) / 15); k <= 100; ++k) {
      if (fits(k)) return;
    }
    return;
  }
  const double range = axis.max - axis.min, finest = range / 15;
  axis.tick = finest;
  const int last = static_cast<int>(std::ceil(LimitedLog10(range)));
  for (int e = static_cast<int>(std::floor(LimitedLog10(finest))); e <= last; ++e) {
    for (const int mantissa : {1, 2, 5}) {
      if (fits(mantissa * std::pow(10.0, e))) return;
    }
  }
}

}  // namespace

void NormalizeAxis(Axis& axis) {
  constexpr double kFarthest = 1e300;  // so that the range does not overflow
  for (double* const limit : {&axis.min, &axis.max}) {
    *limit = std::isnan(*limit) ? 0 : std::clamp(*limit, -kFarthest, kFarthest);
  }
  if (axis.log) {
    if (axis.min == 0) axis.min = 1.0;
    if (axis.max == 0) axis.max = 100.0;
    axis.min = std::fabs(axis.min);
    axis.max = std::fabs(axis.max);
  }
  if (axis.min > axis.max) std::swap(axis.min, axis.max);
  if (axis.min == axis.max) axis.max += 1.0;
  // Adding 1 does not change a large number.
  if (axis.min == axis.max) axis.max = std::nextafter(axis.max, 2 * kFarthest);
  if (axis.log) {
    axis.logMin = LimitedLog10(axis.min);
    axis.logMax = LimitedLog10(axis.max);
  }
}

double PlaceOf(const Axis& axis, int pixels, double value) {
  if (!std::isfinite(value) || value == kNoValue || (axis.log && value <= 0)) return kMissing;
  const double t = axis.log ? (LimitedLog10(value) - axis.logMin) / (axis.logMax - axis.logMin)
                            : (value - axis.min) / (axis.max - axis.min);
  // A clamp against overflow. At this distance a line through the plot is vertical to the last digit.
  constexpr double kFarthest = 1e9;
  return std::isfinite(t) ? std::clamp((pixels - 1) * t, -kFarthest, kFarthest) : kMissing;
}

double ValueAt(const Axis& axis, int pixels, double place) {
  const double t = pixels < 2 ? 1.0 : place / (pixels - 1);
  return axis.log ? axis.min * std::pow(axis.max / axis.min, t) : axis.min + (axis.max - axis.min) * t;
}

std::vector<Tick> TicksOf(const Axis& axis) { return axis.log ? DecadeTicks(axis) : LinearTicks(axis); }

AxisLayout LayOut(Graph& graph) {
  AxisLayout layout{{}, TicksOf(graph.X), TicksOf(graph.Y)};
  layout.frame = FrameFor(graph, layout.yTicks);
  const int width = std::max(0, layout.frame.right - layout.frame.left + 1);
  const int height = std::max(0, layout.frame.bottom - layout.frame.top + 1);
  graph.X.tickCount = CountLabels(layout.xTicks);
  graph.Y.tickCount = CountLabels(layout.yTicks);
  graph.X.labelGap =
      GapBetween(graph.X, width, layout.xTicks, [](const auto& label) { return TextExtent(kLabelFont, label).width; });
  graph.Y.labelGap = GapBetween(graph.Y, height, layout.yTicks, [](const auto&) { return LabelHeight(); });
  return layout;
}

void ChooseTicks(Graph& graph) {
  constexpr int kFreeAbove = 19, kFreeBeside = 24;  // pixels
  ChooseTick(graph, graph.Y, kFreeAbove);
  ChooseTick(graph, graph.X, kFreeBeside);
}

}  // namespace kalvex

#include "graphs/axes.h"

#include <limits>

#include "graphs/graphs.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

Axis AxisOf(double min, double max, bool log = false) {
  Axis axis;
  axis.min = min;
  axis.max = max;
  axis.log = log;
  NormalizeAxis(axis);
  return axis;
}

TEST(Axes, LimitsThatNoAxisCanHaveAreReplaced) {
  const auto limits = [](const Axis& axis) { return std::pair(axis.min, axis.max); };
  EXPECT_EQ(limits(AxisOf(0, 1000, true)), std::pair(1.0, 1000.0));
  EXPECT_EQ(limits(AxisOf(10, 0, true)), std::pair(10.0, 100.0));
  EXPECT_EQ(limits(AxisOf(-5, 2, true)), std::pair(2.0, 5.0));
  EXPECT_EQ(limits(AxisOf(3, 2)), std::pair(2.0, 3.0));
  EXPECT_EQ(limits(AxisOf(1, 1)), std::pair(1.0, 2.0));
  EXPECT_EQ(limits(AxisOf(0, 0)), std::pair(0.0, 1.0));
  EXPECT_EQ(limits(AxisOf(std::numeric_limits<double>::quiet_NaN(), 4)), std::pair(0.0, 4.0));
  const Axis wide = AxisOf(-std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isfinite(wide.max - wide.min));
  const Axis far = AxisOf(1e20, 1e20);
  EXPECT_GT(far.max, far.min);
  EXPECT_EQ(AxisOf(10, 1000, true).logMin, 1);
  EXPECT_EQ(AxisOf(10, 1000, true).logMax, 3);
  EXPECT_EQ(AxisOf(1e-305, 1, true).logMin, -300);
}

TEST(Axes, MapValuesToTheMiddlesOfPixelsAndBack) {
  const Axis linear = AxisOf(100, 200), decades = AxisOf(1, 1000, true);
  EXPECT_EQ(PlaceOf(linear, 101, 100), 0);
  EXPECT_EQ(PlaceOf(linear, 101, 200), 100);
  EXPECT_DOUBLE_EQ(PlaceOf(linear, 101, 150.5), 50.5);
  EXPECT_DOUBLE_EQ(PlaceOf(decades, 301, 10), 100);
  for (int i = 0; i <= 300; ++i) {
    EXPECT_NEAR(PlaceOf(decades, 301, ValueAt(decades, 301, i)), i, kLongSum);
    EXPECT_NEAR(PlaceOf(linear, 301, ValueAt(linear, 301, i)), i, kLongSum);
  }
  EXPECT_EQ(ValueAt(linear, 1, 0), 200);
  EXPECT_EQ(ValueAt(decades, 1, 0), 1000);
}

TEST(Axes, GiveNoPlaceToWhatHasNone) {
  const Axis linear = AxisOf(0, 1), decades = AxisOf(1, 1000, true);
  EXPECT_EQ(PlaceOf(linear, 100, kNoValue), kMissing);
  EXPECT_EQ(PlaceOf(linear, 100, std::numeric_limits<double>::quiet_NaN()), kMissing);
  EXPECT_EQ(PlaceOf(linear, 100, std::numeric_limits<double>::infinity()), kMissing);
  EXPECT_EQ(PlaceOf(decades, 100, 0), kMissing);
  EXPECT_EQ(PlaceOf(decades, 100, -3), kMissing);
  EXPECT_NE(PlaceOf(linear, 100, -3), kMissing);
}

std::vector<std::string> Labels(const std::vector<Tick>& ticks) {
  std::vector<std::string> labels;
  for (const Tick& tick : ticks) {
    if (!tick.label.empty()) labels.push_back(tick.label);
  }
  return labels;
}
std::vector<double> Minor(const std::vector<Tick>& ticks) {
  std::vector<double> values;
  for (const Tick& tick : ticks) {
    if (tick.label.empty()) values.push_back(tick.value);
  }
  return values;
}

TEST(Axes, HaveTicksAtWholeMultiplesAndBetweenThem) {
  Axis axis = AxisOf(-0.4, 0.65);
  axis.tick = 0.2;
  EXPECT_EQ(Labels(TicksOf(axis)), (std::vector<std::string>{"-0.4", "-0.2", "0", "0.2", "0.4", "0.6"}));
  const auto between = Minor(TicksOf(axis));
  ASSERT_EQ(between.size(), 5u);
  for (std::size_t i = 0; i < between.size(); ++i) EXPECT_NEAR(between[i], -0.3 + 0.2 * static_cast<double>(i), kStep);
}

TEST(Axes, HaveDecadesAndTheirMultiplesOnLogarithms) {
  Axis axis = AxisOf(30, 2500, true);
  axis.tick = 1;
  EXPECT_EQ(Labels(TicksOf(axis)), (std::vector<std::string>{"100", "1000"}));
  EXPECT_EQ(Minor(TicksOf(axis)),
            (std::vector<double>{30, 40, 50, 60, 70, 80, 90, 200, 300, 400, 500, 600, 700, 800, 900, 2000}));
  axis = AxisOf(1, 1e6, true);
  axis.tick = 2;
  EXPECT_EQ(Labels(TicksOf(axis)), (std::vector<std::string>{"1", "100", "10000", "1e+06"}));
  EXPECT_TRUE(Minor(TicksOf(axis)).empty());
}

class ChosenTicks : public Graphs {};

TEST_F(ChosenTicks, AreTheFinestThatDoNotCrowd) {
  Graph& graph = NewGraph();
  for (const double range : {0.07, 1.0, 33.0, 1000.0, 7.3e5}) {
    for (const int size : {150, 300, 800, 2000}) {
      graph.Width = graph.Height = size;
      graph.X.min = graph.Y.min = -range / 3;
      graph.X.max = graph.Y.max = range;
      ApplyAxes(graph);
      EXPECT_GT(graph.X.labelGap, 24) << range << ' ' << size;
      EXPECT_GT(graph.Y.labelGap, 19) << range << ' ' << size;
      // With the next finer distance the labels are too close.
      const auto finer = [](double tick) {
        const double mantissa = tick / std::pow(10.0, std::floor(std::log10(tick * 1.0001)));
        return tick / (mantissa > 4 ? 2.5 : 2);
      };
      const double xTick = graph.X.tick, yTick = graph.Y.tick;
      graph.X.tick = finer(xTick);
      LayOut(graph);
      EXPECT_LE(graph.X.labelGap, 24) << range << ' ' << size;
      graph.X.tick = xTick;
      graph.Y.tick = finer(yTick);
      LayOut(graph);
      EXPECT_LE(graph.Y.labelGap, 19) << range << ' ' << size;
      graph.Y.tick = yTick;
    }
  }
}

TEST_F(ChosenTicks, OfManyDecadesAreSeveralDecadesApart) {
  Graph& graph = NewGraph();
  graph.Y.log = true;
  graph.Y.min = 1e-60;
  graph.Y.max = 1;
  ApplyAxes(graph);
  EXPECT_GE(graph.Y.tick, 4);
  EXPECT_EQ(graph.Y.tick, std::floor(graph.Y.tick));
  EXPECT_GT(graph.Y.labelGap, 19);
}

TEST_F(ChosenTicks, EndWhateverTheLimitsAre) {
  Graph& graph = NewGraph();
  const double limits[] = {-1e308, -1e17, -1e-320, 0, 1e-320, 1e-300, 5, 1e17, 1e17 + 32, 1e308};
  for (const double min : limits) {
    for (const double max : limits) {
      for (const bool log : {false, true}) {
        graph.X.min = graph.Y.min = min;
        graph.X.max = graph.Y.max = max;
        graph.X.log = graph.Y.log = log;
        ApplyAxes(graph);
        EXPECT_LT(graph.X.min, graph.X.max);
      }
    }
  }
}

// Digits are 0.556 em wide; the em is 16/1.117 pixels. "0.2" has 1.39 em, 19.9 pixels.
TEST_F(ChosenTicks, LeaveRoomForLabelsAndTitlesAroundTheFrame) {
  Graph& graph = NewGraph();
  EXPECT_EQ(graph.frame.left, 20 + 10 + 22);
  EXPECT_EQ(graph.frame.top, 10);
  EXPECT_EQ(graph.frame.right, 400 - 20);
  EXPECT_EQ(graph.frame.bottom, 300 - 16 - 10 - 22);
  EXPECT_EQ(graph.plotWidth, 329);
  EXPECT_EQ(graph.plotHeight, 243);
  graph.X.titleShown = graph.Y.titleShown = false;
  RebuildGraph(graph);
  EXPECT_EQ(graph.frame.left, 20 + 10);
  EXPECT_EQ(graph.frame.bottom, 300 - 16 - 10);
}

TEST_F(ChosenTicks, OfAWindowTooSmallLeaveNoPlot) {
  Graph& graph = NewGraph();
  graph.Width = 40;
  graph.Height = 20;
  RebuildGraph(graph);
  EXPECT_EQ(graph.plotWidth, 0);
  EXPECT_EQ(graph.plotHeight, 0);
  graph.Width = 2000000000;
  RebuildGraph(graph);
  EXPECT_EQ(graph.plotWidth, 0);
  graph.Width = -5;
  RebuildGraph(graph);
  EXPECT_EQ(graph.plotWidth, 0);
}

}  // namespace
}  // namespace kalvex

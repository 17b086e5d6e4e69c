// What curves show, as numbers: the points of their lines, whatever they are drawn with afterwards.
#pragma once

#include <span>
#include <vector>

#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

// The Quantities that a "MULTI" curve can show.
bool HasRowContributions(Quantity quantity);

// Value of a "MULTI" curve: what a Lorentz oscillator of these numbers alone gives for "E1", "E2", "S1" or "S2" at x,
// cm-1. kNoValue where it has none, at its frequency without a width.
double RowContribution(double Wo, double Wp, double G, Quantity quantity, double x);

// The rows of the curve's dataset that the graph shows; empty if there is no such dataset.
std::span<const DataRow> ShownRows(const Graph& graph, const Curve& curve, const DatasetTable& datasets);

// Values of the model's Quantities at the frequencies x (cm-1), a list for each Quantity asked for, all from one
// evaluation. A title "PlotDCvsT" of the X axis asks for Quantities at zero frequency.
std::vector<std::vector<double>> ModelValues(const Graph& graph, EvalContext& ctx, const Model& model,
                                             std::span<const Quantity> quantities, std::span<const double> x);

// What a curve shows of a value.
inline double ShownValue(const Curve& curve, double value) {
  return value == kNoValue ? kNoValue : value * curve.Scale + curve.Shift;
}

}  // namespace kalvex

// The numbers that curves show, independent of how they are drawn.
#pragma once

#include <span>
#include <vector>

#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

// The Quantities that a "MULTI" curve can show.
bool HasRowContributions(Quantity quantity);

// Value of a "MULTI" curve: "E1", "E2", "S1" or "S2" of one Lorentz oscillator alone at x, cm-1. kNoValue at the
// resonance of an oscillator without width.
double RowContribution(double Wo, double Wp, double G, Quantity quantity, double x);

// The rows of the curve's dataset that the graph shows; empty if there is no such dataset.
std::span<const DataRow> ShownRows(const Graph& graph, const Curve& curve, const DatasetTable& datasets);

// Values of the model's Quantities at the frequencies x (cm-1): one list for each requested Quantity, from a single
// evaluation. If the title of the X axis is "PlotDCvsT", the Quantities are those at zero frequency.
std::vector<std::vector<double>> ModelValues(const Graph& graph, EvalContext& ctx, const Model& model,
                                             std::span<const Quantity> quantities, std::span<const double> x);

// The value as drawn, with the curve's Scale and Shift.
inline double ShownValue(const Curve& curve, double value) {
  return value == kNoValue ? kNoValue : value * curve.Scale + curve.Shift;
}

}  // namespace kalvex

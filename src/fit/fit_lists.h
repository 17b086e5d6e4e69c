// Builds the fit's lists of points and parameters, and computes ChiSq.
#pragma once

#include <cstdint>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"
#include "fit/fit_state.h"

namespace kalvex {

// Inserts a term with the next id and default values. A position outside the list becomes the nearest valid one.
ChiSqTerm& InsertChiSqTerm(FitState& fit, ChiSqTermList& list, int position);
// An empty list stays empty. A position outside the list becomes the nearest valid one.
void RemoveChiSqTerm(ChiSqTermList& list, int position);
void ClearChiSqTerms(ChiSqTermList& list);

// Lists the active rows of every term with a weight other than 0, by model and x. Points of a model within 1e-10 cm-1
// of the first point at a frequency share that frequency.
void RebuildFitPoints(FitState& fit, const EvalContext& eval);
std::size_t CountFitPoints(const FitState& fit);

// Collects the adjustable parameters and keeps those that influence a term. The masters of coupling groups come first.
// Each term gets the list of the parameters on which it depends. Undo is then no longer available.
void RebuildFitParams(FitState& fit, ParamTables& params, EvalContext& eval);

// The records of the fit parameters. Valid during an operation that adds or removes no row, mesh or model.
using FitCells = std::vector<ModelParam*>;
// If a parameter of the list no longer exists, the list is rebuilt first. No entry is null.
FitCells CellsOfFit(FitState& fit, ParamTables& params, EvalContext& eval);

// Rebuilds points, parameters and ChiSq. To be called after a change of the list of terms.
void RebuildFitLists(FitState& fit, ParamTables& params, EvalContext& eval);

// ChiSq of each term, the sum of ((y - Q)/sigma)^2 over its points, and the weighted total. There is no division by the
// number of points.
void ComputeChiSq(FitState& fit, EvalContext& eval);

// The same sum for the points of a term in one block of its spectrum.
double ChiSqInBlock(const TermPoints& points, const SpectrumBlock& block);

// The request for the values of a spectrum, without derivatives.
SpectrumRequest RequestOf(const FitSpectrum& spectrum);

// Index of the frequency of point p of a term.
std::size_t FrequencyOf(const TermPoints& points, std::size_t p);

// Points of a term from `first` up to, but not including, `end`. They are in one block of frequencies.
struct PointRange {
  std::size_t first = 0;
  std::size_t end = 0;
  std::size_t Count() const { return end - first; }
};
PointRange PointsInBlock(const TermPoints& points, const SpectrumBlock& block);

// Whether the points are at successive frequencies. The range must not be empty.
bool AreSuccessive(const TermPoints& points, PointRange range);

}  // namespace kalvex

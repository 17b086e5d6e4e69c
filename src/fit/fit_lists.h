// Building the fit's work lists, and ChiSq.
#pragma once

#include <cstdint>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"
#include "fit/fit_state.h"

namespace kalvex {

// A term with the next id and the defaults, at a position held inside 0 to the number of terms.
ChiSqTerm& InsertChiSqTerm(FitState& fit, ChiSqTermList& list, int position);
// Nothing happens to an empty list; the position is held inside it.
void RemoveChiSqTerm(ChiSqTermList& list, int position);
void ClearChiSqTerms(ChiSqTermList& list);

// Lists the active rows of every term of weight other than 0 by model and x. All points of a model within 1e-10 of the
// x of the first one share that frequency.
void RebuildFitPoints(FitState& fit, const DatasetTable& datasets);
std::size_t CountFitPoints(const FitState& fit);

// Collects the adjustable parameters, keeps those that influence a term, puts the masters of coupling groups first, and
// notes for each term the parameters it depends on. Ends the possibility of Undo.
void RebuildFitParams(FitState& fit, ParamTables& params, EvalContext& eval);

// The records of the fit's parameters, for an operation during which no row, mesh or model comes or goes.
using FitCells = std::vector<ModelParam*>;
// If a parameter of the list no longer exists the list is rebuilt first, so that no entry is null.
FitCells CellsOfFit(FitState& fit, ParamTables& params, EvalContext& eval);

// After the list of terms has changed: points, parameters, ChiSq.
void RebuildFitLists(FitState& fit, ParamTables& params, EvalContext& eval);

// ((y - Q)/sigma)^2 summed over the points of each term, and the weighted total. Not divided by anything.
void ComputeChiSq(FitState& fit, EvalContext& eval);

// That sum over the points of a term in one block of its spectrum.
double ChiSqInBlock(const TermPoints& points, const SpectrumBlock& block);

// What a spectrum asks of its model, without derivatives.
SpectrumRequest RequestOf(const FitSpectrum& spectrum);

// The number of the frequency at which point p of a term stands.
std::size_t FrequencyOf(const TermPoints& points, std::size_t p);

// Points of a term from `first` up to but not including `end`, which are in one block of frequencies.
struct PointRange {
  std::size_t first = 0;
  std::size_t end = 0;
  std::size_t Count() const { return end - first; }
};
PointRange PointsInBlock(const TermPoints& points, const SpectrumBlock& block);

// Whether the points, one or more, stand at successive frequencies.
bool AreSuccessive(const TermPoints& points, PointRange range);

}  // namespace kalvex

// Building the fit's work lists, and ChiSq.
#pragma once

#include <cstdint>

#include "fit/fit_state.h"
#include "models/eval_context.h"
#include "models/spectrum_block.h"

namespace kalvex {

// A term with the next id and the defaults, at a position held inside 0 to the number of terms.
ChiSqTerm& InsertChiSqTerm(FitState& fit, ChiSqTermList& list, int position);
// Nothing happens to an empty list; the position is held inside it.
void RemoveChiSqTerm(ChiSqTermList& list, int position);
void ClearChiSqTerms(ChiSqTermList& list);

// Flattens the active rows of every term of weight other than 0 into points sorted by model and x, and cuts them into
// groups: all points of a model within 1e-10 of the first one's x.
void RebuildFitPoints(FitState& fit, const EvalContext& eval);

// Collects the adjustable parameters, keeps those that influence a term, puts the masters of coupling groups first, and
// notes for each term the parameters it depends on. Ends the possibility of Undo.
void RebuildFitParams(FitState& fit, EvalContext& eval);

// ((y - Q)/sigma)^2 summed over the points of each term, and the weighted total. Not divided by anything.
void ComputeChiSq(FitState& fit, EvalContext& eval);

// What a run of groups asks of its model, without derivatives.
SpectrumRequest RequestOf(const FitState& fit, std::size_t first, std::size_t end);

// Calls visit(first, end) for each run of groups with one model.
template <class Visit>
void ForEachModelRun(const FitState& fit, Visit visit) {
  const std::size_t count = fit.groups.size();
  for (std::size_t first = 0; first < count;) {
    std::size_t end = first + 1;
    while (end < count && fit.groups[end].modelId == fit.groups[first].modelId) ++end;
    visit(first, end);
    first = end;
  }
}

}  // namespace kalvex

// The residuals of a term of the fit, as a table for other programs.
#pragma once

#include <string>

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"

namespace kalvex {

// A line for each point of the term: x in cm-1, y, sigma, the model's value, and (model - y)/sigma, modulo the period
// if the fit compares angles so. The numbers have the fewest digits that read back to the same bits. A head line names
// the columns. kNotThere: no point of the term takes part in the fit.
Result<std::string> ResidualsOf(const FitState& fit, const ChiSqTerm& term, EvalContext& eval);

}  // namespace kalvex

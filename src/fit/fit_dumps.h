// Three diagnostic tables about a fit: how a Quantity's uncertainty follows from ChiSq, and what the conductivity knows
// of a variational mesh. Each fails if what it needs is not there, or its file cannot be written.
#pragma once

#include <functional>

#include "core/platform.h"
#include "core/status.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"
#include "fit/run_fit.h"

namespace kalvex {

// "QntyErrorBars.dat": the ChiSq of all terms but the last against the value of the last term's Quantity, scanned point
// by point over 0.90 to 1.10 of the fitted curve, with the parameters fitted anew at every value. Needs three terms.
// The last term's dataset, weight and cutting range are back in place at the end; the parameters end where the last of
// the runs left them.
// datasetChanged hears of every change of that dataset.
Status WriteQuantityErrorBars(FitState& fit, ParamTables& params, EvalContext& eval, DatasetTable& datasets,
                              Platform& platform, FitObserver& observer, const std::function<void()>& datasetChanged);

// "Jakob.dat": derivatives of S1 and S2 of models 3 and 4 by the mesh point of models 1 and 2 that belongs to each
// active row of dataset 1. Needs those four models and the dataset; rows outside a mesh are left out.
Status WriteDerivativeDump(ParamTables& params, EvalContext& eval);

// "Jakob2.dat": how well S1 and S2 of model 3 fix the two values of the mesh point of model 1 at each active row of
// dataset 1: the row sums of the magnitudes of the inverse Jacobian. Needs models 1 to 3 and the dataset.
Status WriteSensitivityDump(ParamTables& params, EvalContext& eval);

}  // namespace kalvex

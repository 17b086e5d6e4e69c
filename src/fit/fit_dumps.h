// Three diagnostic tables of a fit: the uncertainty of a Quantity from ChiSq, and how well the conductivity determines
// a variational mesh. Each fails if an input is missing or its file cannot be written.
#pragma once

#include <functional>

#include "core/platform.h"
#include "core/status.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"
#include "fit/run_fit.h"

namespace kalvex {

// "QntyErrorBars.dat": the ChiSq of all terms except the last, as a function of the last term's Quantity. At each point
// the Quantity is varied from 0.90 to 1.10 of the fitted curve, and the parameters are fitted for every value. Needs
// three terms. At the end the last term's dataset, weight and cutting range are restored. The parameters keep the
// values of the last run. datasetChanged is called after every change of that dataset.
Status WriteQuantityErrorBars(FitState& fit, ParamTables& params, EvalContext& eval, DatasetTable& datasets,
                              Platform& platform, FitObserver& observer, const std::function<void()>& datasetChanged);

// "Jakob.dat": the derivatives of S1 and S2 of models 3 and 4 at each active row of dataset 1. They are taken by the
// values of models 1 and 2 at the mesh point at or below the row's frequency. Needs these four models and the dataset.
// Rows outside a mesh are left out.
Status WriteDerivativeDump(ParamTables& params, EvalContext& eval);

// "Jakob2.dat": how well S1 and S2 of model 3 determine the two values of the mesh point of model 1, at each active row
// of dataset 1. The measure is the row sums of the magnitudes of the inverse Jacobian. Needs models 1 to 3 and the
// dataset.
Status WriteSensitivityDump(ParamTables& params, EvalContext& eval);

}  // namespace kalvex

// Tables that compare the analytic derivatives with difference quotients, for developers of models.
#pragma once

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"

namespace kalvex {

// "TestDeriv1.txt": the derivative of each term's sum of squares by each master parameter. The step is the number in
// "DELTA.DAT" of the current directory, or 1e-5 without that file. 777 there means 1e-5 of the value. Rows that differ
// by 1 % are marked "(!!!)".
Status TestDerivatives(FitState& fit, ParamTables& params, EvalContext& eval);

// "TestDeriv.txt": the derivative of each Quantity of each term's model at 100 cm-1 by each fit parameter, with an
// absolute step. Rows that differ by 1 % are marked "FALSE".
Status TestQuantityDerivatives(FitState& fit, ParamTables& params, EvalContext& eval);

}  // namespace kalvex

// The Levenberg-Marquardt loop in its multiplicative form: the diagonal of the curvature matrix is scaled by 1 +
// Lambda.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/platform.h"
#include "core/status.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"

namespace kalvex {

// Who follows a run.
class FitObserver {
 public:
  virtual ~FitObserver() = default;
  // Before the first iteration, which may take long: windows show that the run has begun.
  virtual void RunStarts() {}
  // After each accepted iteration: windows, graphs and progress lines follow.
  virtual void IterationEnds() {}
  // Once for each accepted iteration: the chance of a stop request to set FitState::StopRequested.
  virtual void Poll() {}
};

inline constexpr double kLambdaFactor = 10.0;
inline constexpr int kMostIterations = 1000;

// Adjusts the values of fit.params to lower TotalChiSq until a stop rule holds, and writes the files that the options
// ask for to the current directory. Without parameters it does nothing. fit.report tells how it ended. Fails only if
// memory is too short.
Status RunFit(FitState& fit, ParamTables& params, EvalContext& eval, Platform& platform, FitObserver& observer);

// Swaps each parameter's value and the one before the run, past limits and coupling, and computes ChiSq. Nothing
// happens unless start values are stored.
void UndoFit(FitState& fit, ParamTables& params, EvalContext& eval);

// Stores every parameter's value for Undo.
void StoreStartValues(FitState& fit, ParamTables& params, EvalContext& eval);

}  // namespace kalvex

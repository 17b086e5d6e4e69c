// The Levenberg-Marquardt loop in its multiplicative form: the diagonal of the curvature matrix is scaled by 1 +
// Lambda.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/platform.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"

namespace kalvex {

// What happens around a run.
struct FitHooks {
  void* self = nullptr;
  // After each accepted iteration: windows, graphs and progress lines follow.
  void (*iterationDone)(void* self) = nullptr;
  // Lets a stop request set FitState::StopRequested; called once for each accepted iteration.
  void (*poll)(void* self) = nullptr;
  // Before the first iteration, which may take long: windows show that the run has begun.
  void (*started)(void* self) = nullptr;
};

inline constexpr double kLambdaFactor = 10.0;
inline constexpr int kMostIterations = 1000;

// Adjusts the values of fit.params to lower TotalChiSq until a stop rule holds, and writes the files that the options
// ask for to the current directory. Without parameters it does nothing. fit.report tells how it ended. Gives 0, or -1
// if memory is too short.
int RunFit(FitState& fit, EvalContext& eval, const Platform& platform, const FitHooks& hooks);

// Swaps each parameter's value and the one before the run, past limits and coupling, and computes ChiSq. Nothing
// happens unless UndoAvailable.
void UndoFit(FitState& fit, EvalContext& eval);

// Stores every parameter's value for Undo.
void StoreStartValues(FitState& fit);

}  // namespace kalvex

// Runs of the fit, and their undo.
#pragma once

#include <cstdint>
#include <string_view>

#include "core/platform.h"
#include "core/status.h"
#include "evaluation/eval_context.h"
#include "fit/fit_state.h"

namespace kalvex {

// Receives the progress of a run.
class FitObserver {
 public:
  virtual ~FitObserver() = default;
  // Called before the first iteration, which may take long. Windows can show that the run has begun.
  virtual void RunStarts() {}
  // Called after each accepted iteration. Windows, graphs and progress lines are updated.
  virtual void IterationEnds() {}
  // Called once for each accepted iteration. A stop request can set FitState::StopRequested here.
  virtual void Poll() {}
};

inline constexpr int kMostIterations = 1000;

// From where a run starts.
struct FitStarts {
  int count = 1;  // more than 1, for the bounded fit: from the present values, and from points scattered around them
  std::uint32_t seed = 1;
};

// Varies fit.params to minimise TotalChiSq until a stop rule applies. Writes the files that the options demand to the
// current directory. Without parameters it does nothing. fit.report holds how the run ended. Fails only if memory runs
// out.
Status RunFit(FitState& fit, ParamTables& params, EvalContext& eval, Platform& platform, FitObserver& observer,
              const FitStarts& starts = {});

// Swaps each parameter's value with the stored start value, its error too if StandardErrors is on, and computes ChiSq.
// Limits and coupling are not applied. Nothing happens if no start values are stored.
void UndoFit(FitState& fit, ParamTables& params, EvalContext& eval);

// Stores every parameter's value for UndoFit.
void StoreStartValues(FitState& fit, ParamTables& params, EvalContext& eval);

}  // namespace kalvex

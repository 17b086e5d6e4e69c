// What the methods of the fit share: the state of a run, its normal equations, and what follows each iteration.
#pragma once

#include <cstdint>
#include <vector>

#include "core/platform.h"
#include "evaluation/eval_context.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "fit/fit_log.h"
#include "fit/fit_state.h"
#include "fit/normal_equations.h"
#include "fit/run_fit.h"

namespace kalvex {

struct FitRun {
  FitState& fit;
  ParamTables& params;
  EvalContext& eval;
  Platform& platform;
  FitObserver& observer;
  FitStarts starts;
  FitCells cells;                          // of fit.params
  std::vector<FitCoordinate> coordinates;  // of cells, at the start of the iteration
  NormalEquations equations;
  std::vector<double> history;  // ChiSq at the start of each iteration
  FitLog log;
  std::int64_t startTime = 0;

  FitRun(FitState& state, ParamTables& tables, EvalContext& context, Platform& machine, FitObserver& follower,
         const FitStarts& from);

  std::size_t Masters() const { return equations.beta.size(); }
  ModelParam& CellOf(std::size_t i) const { return *cells[i]; }
};

// Fills the normal equations in the run's coordinates, and TotalChiSq, at the present values.
void Linearise(FitRun& run);

// Coupled parameters are also set one by one: the group of the master reaches them, but a limit of their own may apply.
void SetCoupledOnes(FitRun& run);

// Sets the seconds since the start of the run.
void TakeTime(FitRun& run);

// Counts the iteration and the seconds, notifies the observer and writes a row of the log.
void FinishIteration(FitRun& run);

// The text of the rule if it ends the run, or null. UserStops polls the observer.
const char* IterationsAreOver(const FitRun& run);
const char* TimeIsOver(const FitRun& run);
const char* UserStops(FitRun& run);

}  // namespace kalvex

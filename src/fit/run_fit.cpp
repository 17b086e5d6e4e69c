#include "fit/run_fit.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

#include "evaluation/slopes.h"
#include "fit/bounded_run.h"
#include "fit/damped_loop.h"
#include "fit/fit_run.h"

namespace kalvex {
namespace {

// Stores the values that Undo restores. Entries of coupled parameters keep their stored values.
void NoteStartValues(FitRun& run) {
  run.fit.startValues.resize(run.cells.size());
  for (std::size_t i = 0; i < run.Masters(); ++i) run.fit.startValues[i] = run.CellOf(i).value;
}

// A limit holds a parameter if ChiSq would fall beyond it.
bool IsHeld(const ModelParam& cell, double slope) {
  return (cell.useMin && cell.value <= cell.min && slope > 0) || (cell.useMax && cell.value >= cell.max && slope < 0);
}

void LineariseInValues(FitRun& run) {
  for (std::size_t i = 0; i < run.cells.size(); ++i) run.coordinates[i] = {.at = run.CellOf(i).value};
  Linearise(run);
}

// Near a limit the coordinate of the damped loop has no slope: a parameter that came there stays. Near is small beside
// the value, the limit, or the value at the start, since a limit is often 0.
bool IsNear(double limit, const FitRun& run, std::size_t i) {
  constexpr double kNear = 1e-6;
  const double value = run.CellOf(i).value;
  return std::fabs(value - limit) <=
         kNear * std::max({std::fabs(value), std::fabs(limit), std::fabs(run.fit.startValues[i])});
}
bool IsAtMin(const FitRun& run, std::size_t i) { return run.CellOf(i).useMin && IsNear(run.CellOf(i).min, run, i); }
bool IsAtMax(const FitRun& run, std::size_t i) { return run.CellOf(i).useMax && IsNear(run.CellOf(i).max, run, i); }

// By how much an undamped step of the parameters that no limit holds lowers ChiSq, as far as its curvature tells.
double GainOfAStep(FitRun& run, std::span<const char> held) {
  constexpr double kHolding = 1e20, kDamping = 1e-9;
  const SquareMatrix alpha = run.equations.Alpha();
  std::vector<double> right = run.equations.beta, step(run.Masters());
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    alpha(i, i) = alpha(i, i) > 0 ? alpha(i, i) * (held[i] ? kHolding : 1 + kDamping) : 1;
    if (held[i]) right[i] = 0;
  }
  BandFactor factor;
  if (SolveBanded(alpha, factor, right, step, true, run.eval.pool) != 0) return 0;
  double gain = 0;
  for (std::size_t i = 0; i < run.Masters(); ++i) gain += right[i] * step[i] / 2;
  return gain;
}

bool AnyAtALimit(const FitRun& run) {
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    if (IsAtMin(run, i) || IsAtMax(run, i)) return true;
  }
  return false;
}

// The parameters at a limit, and which of them it holds. Results and files stay as the loop left them.
std::vector<char> NoteLimits(FitRun& run) {
  FitReport& report = run.fit.report;
  const double chiSq = run.fit.TotalChiSq;
  SlopeTable slopes;
  StartFromSaved(slopes, run.params);
  LineariseInValues(run);
  TakeOverSlopes(run.params, slopes);
  run.fit.TotalChiSq = chiSq;
  std::vector<char> held(run.Masters());
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    const bool isAtMin = IsAtMin(run, i);
    if (!isAtMin && !IsAtMax(run, i)) continue;
    const bool pushes = isAtMin == (run.equations.beta[i] > 0);
    held[i] = pushes;
    (pushes ? report.onLimit : report.stuckOnLimit).push_back(static_cast<int>(i));
  }
  return held;
}

// Notes whether the damped loop may have ended away from a minimum: on a limit, or with steps that were damped to its
// end.
void NoteEndOfDampedLoop(FitRun& run) {
  const double chiSq = run.fit.TotalChiSq;
  const bool isAtALimit = AnyAtALimit(run);
  if (!(chiSq > 0 && std::isfinite(chiSq)) || (run.fit.Lambda < 1 && !isAtALimit)) return;
  const std::vector<char> held = isAtALimit ? NoteLimits(run) : std::vector<char>(run.Masters());
  run.fit.report.gainLeft = GainOfAStep(run, held) / chiSq;
}

// Standard errors of the parameters at their present values, without those on a limit.
void SetStandardErrors(FitRun& run) {
  LineariseInValues(run);
  const SquareMatrix alpha = run.equations.Alpha();
  std::vector<char> counts;
  run.fit.report.onLimit.clear();
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    const bool isFinite =
        std::isfinite(run.equations.beta[i]) &&
        std::all_of(alpha.Row(i) + i, alpha.Row(i) + alpha.size, [](double a) { return std::isfinite(a); });
    const bool isHeld = IsHeld(run.CellOf(i), run.equations.beta[i]);
    if (isHeld) run.fit.report.onLimit.push_back(static_cast<int>(i));
    counts.push_back(isFinite && !isHeld);
  }
  Determination& found = run.fit.report.determination;
  found = DetermineErrors(alpha, counts);
  for (std::size_t i = 0; i < run.cells.size(); ++i) {
    run.CellOf(i).error = found.errors[static_cast<std::size_t>(run.fit.params[i].master)];
  }
}

void RunToItsEnd(FitRun& run) {
  FitState& fit = run.fit;
  run.startTime = run.platform.ClockSeconds();
  fit.Lambda = fit.options.InitialLambda;
  fit.IterationCount = fit.ElapsedSeconds = 0;
  fit.ChiSqChange = 0;
  ComputeChiSq(fit, run.eval);
  fit.report.startChiSq = fit.TotalChiSq;
  if (fit.options.LogFit) NoteIfNotWritten(run.log.Begin(fit, run.cells), fit.report);
  if (fit.options.Method == 2) {
    fit.report.stop = RunBounded(run);
  } else {
    fit.report.stop = RunDampedLoop(run);
    NoteEndOfDampedLoop(run);
  }
  if (fit.options.StandardErrors) SetStandardErrors(run);
}

void NoteNothingToFit(FitState& fit) {
  fit.report.stop = "no parameter to fit";
  fit.report.startChiSq = fit.TotalChiSq;
}

}  // namespace

Status RunFit(FitState& fit, ParamTables& params, EvalContext& eval, Platform& platform, FitObserver& observer,
              const FitStarts& starts) {
  fit.report = {};
  if (fit.NumFitParams < 1) {
    NoteNothingToFit(fit);
    return {};
  }
  fit.FitRunning = true;
  Status status;
  try {
    FitRun run(fit, params, eval, platform, observer, starts);
    // All parameters of an outdated list may have been removed.
    if (run.cells.empty()) {
      NoteNothingToFit(fit);
    } else {
      NoteStartValues(run);
      observer.RunStarts();
      RunToItsEnd(run);
    }
  } catch (const std::bad_alloc&) {
    fit.report.stop = "not enough memory";
    status = {StatusCode::kOutOfMemory, fit.report.stop};
  }
  fit.FitRunning = false;
  return status;
}

void StoreStartValues(FitState& fit, ParamTables& params, EvalContext& eval) {
  fit.startValues.clear();
  fit.startErrors.clear();
  for (const ModelParam* const cell : CellsOfFit(fit, params, eval)) {
    fit.startValues.push_back(cell->value);
    fit.startErrors.push_back(cell->error);
  }
  fit.startValuesStored = true;
}

void UndoFit(FitState& fit, ParamTables& params, EvalContext& eval) {
  const FitCells cells = CellsOfFit(fit, params, eval);
  if (!fit.startValuesStored) return;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    std::swap(cells[i]->value, fit.startValues[i]);
    if (fit.options.StandardErrors) std::swap(cells[i]->error, fit.startErrors[i]);
  }
  ComputeChiSq(fit, eval);
}

}  // namespace kalvex

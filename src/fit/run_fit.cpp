#include "fit/run_fit.h"

#include <cmath>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "core/limits.h"
#include "core/text.h"
#include "evaluation/spectrum_team.h"
#include "fit/confidence.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "fit/fit_log.h"
#include "fit/normal_equations.h"
#include "records/model_table.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

struct Run {
  FitState& fit;
  ParamTables& params;
  EvalContext& eval;
  Platform& platform;
  FitObserver& observer;
  FitCells cells;                          // of fit.params
  std::vector<FitCoordinate> coordinates;  // of cells, at the start of the iteration
  NormalEquations equations;
  std::vector<double> diagonal;  // of alpha, without damping
  BandFactor factor;
  std::vector<double> delta, saved;
  std::vector<double> history;  // ChiSq at the start of each iteration
  bool limitHit = false;
  FitLog log;
  std::int64_t startTime = 0;

  Run(FitState& state, ParamTables& tables, EvalContext& context, Platform& machine, FitObserver& follower)
      : fit(state),
        params(tables),
        eval(context),
        platform(machine),
        observer(follower),
        cells(CellsOfFit(state, tables, context)),
        coordinates(cells.size()),
        equations(static_cast<std::size_t>(state.NumFreeParams)),
        diagonal(equations.beta.size()),
        delta(equations.beta.size()),
        saved(equations.beta.size()) {}

  std::size_t Masters() const { return equations.beta.size(); }
  ModelParam& CellOf(std::size_t i) const { return *cells[i]; }
};

// Wakes sleeping threads if the whole iteration has enough work for them. A single piece of it may be too short.
void RouseThreads(Run& run) {
  if (!run.eval.pool) return;
  double nanoseconds = 0;
  for (const FitSpectrum& spectrum : run.fit.spectra) {
    const Model* const model = GetModelByNumber(*run.eval.params, spectrum.modelId);
    SpectrumRequest request = RequestOf(spectrum);
    request.derivatives = true;
    if (model) nanoseconds += NanosecondsOf(run.eval, *model, request);
    for (const TermPoints& points : spectrum.terms) {
      nanoseconds += NanosecondsOfOuterProducts(points.y.size(), run.Masters());
    }
  }
  if (run.eval.pool->Pays(nanoseconds)) run.eval.pool->Rouse();
}

void BeginIteration(Run& run) {
  RouseThreads(run);
  for (std::size_t i = 0; i < run.cells.size(); ++i) run.coordinates[i] = FitCoordinateOf(*run.cells[i]);
  AccumulateNormalEquations(run.fit, run.params, run.eval, run.coordinates, run.equations);
  const SquareMatrix alpha = run.equations.Alpha();
  for (std::size_t i = 0; i < run.Masters(); ++i) run.diagonal[i] = alpha(i, i);
  run.history.push_back(run.fit.TotalChiSq);
}

void SetDamping(Run& run, double factor) {
  const SquareMatrix alpha = run.equations.Alpha();
  for (std::size_t i = 0; i < run.Masters(); ++i) alpha(i, i) = run.diagonal[i] * factor;
}

// Coupled parameters are also set one by one: the group of the master reaches them, but a limit of their own may apply.
void SetCoupledOnes(Run& run) {
  for (std::size_t i = run.Masters(); i < run.cells.size(); ++i) {
    const auto master = static_cast<std::size_t>(run.fit.params[i].master);
    SetValue(run.params, run.CellOf(i), run.CellOf(master).value);
  }
}

void TakeStep(Run& run) {
  run.limitHit = false;
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    ModelParam& cell = run.CellOf(i);
    const double candidate = run.coordinates[i].limited ? FitCoordToValue(cell, run.coordinates[i].at - run.delta[i])
                                                        : cell.value - run.delta[i];
    run.saved[i] = cell.value;
    if (SetValue(run.params, cell, candidate) < 0) run.limitHit = true;
  }
  SetCoupledOnes(run);
}

void TakeBack(Run& run) {
  for (std::size_t i = 0; i < run.Masters(); ++i) run.CellOf(i).value = run.saved[i];
  SetCoupledOnes(run);
  run.fit.TotalChiSq = run.history.back();
}

// Raises Lambda until a step lowers ChiSq or a parameter meets a limit. False if Lambda leaves its range first.
bool FindDownhillStep(Run& run) {
  while (true) {
    SetDamping(run, 1 + run.fit.Lambda);
    if (SolveBanded(run.equations.Alpha(), run.factor, run.equations.beta, run.delta, true, run.eval.pool) == 0) {
      TakeStep(run);
      ComputeChiSq(run.fit, run.eval);
      if (!(run.fit.TotalChiSq >= run.history.back())) return true;
      TakeBack(run);
      if (run.limitHit) return true;
    }
    const double before = run.fit.Lambda;
    run.fit.Lambda *= kLambdaFactor;
    // An infinite Lambda, or 0, would repeat the same step. The run ends, whatever the options are.
    if (!std::isfinite(run.fit.Lambda) || run.fit.Lambda == before) return false;
    if (run.fit.options.StopOnLambda && run.fit.Lambda > run.fit.options.MaxLambda) return false;
  }
}

void NoteParamsWithoutInfluence(Run& run) {
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    if (run.diagonal[i] == 0) run.fit.report.withoutInfluence.push_back(static_cast<int>(i));
  }
}

void FinishIteration(Run& run) {
  FitState& fit = run.fit;
  if (fit.options.CalcConfidence) {
    SetDamping(run, 1);
    WriteConfidence(fit, run.cells, run.coordinates, run.equations.Alpha(), run.factor);
  }
  fit.IterationCount = static_cast<int>(run.history.size());
  fit.ElapsedSeconds = static_cast<int>(run.platform.ClockSeconds() - run.startTime);
  fit.ChiSqChange = run.history.front() - fit.TotalChiSq;
  run.observer.IterationEnds();
  NoteIfNotWritten(run.log.WriteRow(fit, run.cells), fit.report);
}

void ShowLimitMessage(const Run& run) {
  std::string text = "One or more parameters run out of limits:\n [";
  AppendG(text, -kValueClamp);
  text += ", ";
  AppendG(text, kValueClamp);
  text += "].\n\nThe fitting routine is stopped.";
  run.platform.ShowMessage("Attention", text);
}

bool ReductionTooSmall(const Run& run) {
  const FitOptions& options = run.fit.options;
  if (options.ReductionIterations < 1 || options.ReductionIterations > run.fit.IterationCount) return false;
  const auto from = static_cast<std::size_t>(run.fit.IterationCount - options.ReductionIterations);
  return run.history[from] - run.fit.TotalChiSq < options.ReductionAmount;
}

// The text of the first stop rule that applies, or null.
const char* StopRuleThatHolds(Run& run) {
  const FitState& fit = run.fit;
  const FitOptions& options = fit.options;
  if (run.limitHit) {
    ShowLimitMessage(run);
    return "a parameter ran out of limits";
  }
  if (fit.IterationCount >= kMostIterations) return "largest number of iterations of a run";
  if (options.StopOnIterations && fit.IterationCount >= options.MaxIterations) return "number of iterations";
  if (options.StopOnTime && fit.ElapsedSeconds >= options.MaxSeconds) return "time";
  if (options.StopOnReduction && ReductionTooSmall(run)) return "ChiSq no longer falls";
  run.observer.Poll();
  return fit.StopRequested ? "stopped by the user" : nullptr;
}

// Stores the values that Undo restores. Entries of coupled parameters keep their stored values.
void NoteStartValues(Run& run) {
  run.fit.startValues.resize(run.cells.size());
  for (std::size_t i = 0; i < run.Masters(); ++i) run.fit.startValues[i] = run.CellOf(i).value;
}

const char* Iterate(Run& run) {
  while (true) {
    BeginIteration(run);
    if (!FindDownhillStep(run)) {
      NoteParamsWithoutInfluence(run);
      return "Lambda above its limit: no step lowers ChiSq";
    }
    FinishIteration(run);
    if (const char* const why = StopRuleThatHolds(run)) return why;
    run.fit.Lambda /= kLambdaFactor;
  }
}

void RunToItsEnd(Run& run) {
  FitState& fit = run.fit;
  run.startTime = run.platform.ClockSeconds();
  fit.Lambda = fit.options.InitialLambda;
  fit.IterationCount = fit.ElapsedSeconds = 0;
  fit.ChiSqChange = 0;
  ComputeChiSq(fit, run.eval);
  fit.report.startChiSq = fit.TotalChiSq;
  if (fit.options.LogFit) NoteIfNotWritten(run.log.Begin(fit, run.cells), fit.report);
  fit.report.stop = Iterate(run);
}

void NoteNothingToFit(FitState& fit) {
  fit.report.stop = "no parameter to fit";
  fit.report.startChiSq = fit.TotalChiSq;
}

}  // namespace

Status RunFit(FitState& fit, ParamTables& params, EvalContext& eval, Platform& platform, FitObserver& observer) {
  fit.report = {};
  if (fit.NumFitParams < 1) {
    NoteNothingToFit(fit);
    return {};
  }
  fit.FitRunning = true;
  Status status;
  try {
    Run run(fit, params, eval, platform, observer);
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
  for (const ModelParam* const cell : CellsOfFit(fit, params, eval)) fit.startValues.push_back(cell->value);
  fit.startValuesStored = true;
}

void UndoFit(FitState& fit, ParamTables& params, EvalContext& eval) {
  const FitCells cells = CellsOfFit(fit, params, eval);
  if (!fit.startValuesStored) return;
  for (std::size_t i = 0; i < cells.size(); ++i) std::swap(cells[i]->value, fit.startValues[i]);
  ComputeChiSq(fit, eval);
}

}  // namespace kalvex

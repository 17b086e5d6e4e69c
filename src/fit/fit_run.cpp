#include "fit/fit_run.h"

#include "evaluation/spectrum_team.h"
#include "records/model_table.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

// Wakes sleeping threads if the whole iteration has enough work for them. A single piece of it may be too short.
void RouseThreads(FitRun& run) {
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

}  // namespace

FitRun::FitRun(FitState& state, ParamTables& tables, EvalContext& context, Platform& machine, FitObserver& follower,
               const FitStarts& from)
    : fit(state),
      params(tables),
      eval(context),
      platform(machine),
      observer(follower),
      starts(from),
      cells(CellsOfFit(state, tables, context)),
      coordinates(cells.size()),
      equations(static_cast<std::size_t>(state.NumFreeParams)) {}

void Linearise(FitRun& run) {
  RouseThreads(run);
  AccumulateNormalEquations(run.fit, run.params, run.eval, run.coordinates, run.equations);
}

void SetCoupledOnes(FitRun& run) {
  for (std::size_t i = run.Masters(); i < run.cells.size(); ++i) {
    const auto master = static_cast<std::size_t>(run.fit.params[i].master);
    SetValue(run.params, run.CellOf(i), run.CellOf(master).value);
  }
}

void TakeTime(FitRun& run) { run.fit.ElapsedSeconds = static_cast<int>(run.platform.ClockSeconds() - run.startTime); }

void FinishIteration(FitRun& run) {
  FitState& fit = run.fit;
  fit.IterationCount = static_cast<int>(run.history.size());
  TakeTime(run);
  fit.ChiSqChange = run.history.front() - fit.TotalChiSq;
  run.observer.IterationEnds();
  NoteIfNotWritten(run.log.WriteRow(fit, run.cells), fit.report);
}

const char* IterationsAreOver(const FitRun& run) {
  const FitState& fit = run.fit;
  if (fit.IterationCount >= kMostIterations) return "largest number of iterations of a run";
  const bool isOver = fit.options.StopOnIterations && fit.IterationCount >= fit.options.MaxIterations;
  return isOver ? "number of iterations" : nullptr;
}

const char* TimeIsOver(const FitRun& run) {
  return run.fit.options.StopOnTime && run.fit.ElapsedSeconds >= run.fit.options.MaxSeconds ? "time" : nullptr;
}

const char* UserStops(FitRun& run) {
  run.observer.Poll();
  return run.fit.StopRequested ? "stopped by the user" : nullptr;
}

}  // namespace kalvex

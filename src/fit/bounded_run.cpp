#include "fit/bounded_run.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/limits.h"
#include "fit/many_starts.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

// ChiSq of the spectra as a function of the masters' values.
class SpectraProblem : public LeastSquares {
 public:
  explicit SpectraProblem(FitRun& run) : run_(run) {}

  std::size_t Unknowns() const override { return run_.Masters(); }
  double SumAt(std::span<const double> x) override {
    Set(x);
    ComputeChiSq(run_.fit, run_.eval);
    return run_.fit.TotalChiSq;
  }
  Linearised LineariseAt(std::span<const double> x) override {
    Set(x);
    for (std::size_t i = 0; i < run_.cells.size(); ++i) run_.coordinates[i] = {.at = run_.CellOf(i).value};
    Linearise(run_);
    return {run_.fit.TotalChiSq, run_.equations.Alpha(), run_.equations.beta};
  }

 private:
  void Set(std::span<const double> x) {
    for (std::size_t i = 0; i < x.size(); ++i) SetValue(run_.params, run_.CellOf(i), x[i]);
    SetCoupledOnes(run_);
  }
  FitRun& run_;
};

struct Limits {
  std::vector<double> lower, upper;
};

// The limits of each master and of those coupled to it. Limits that exclude each other hold the parameter.
Limits LimitsOf(const FitRun& run) {
  Limits limits{std::vector(run.Masters(), -kValueClamp), std::vector(run.Masters(), kValueClamp)};
  for (std::size_t i = 0; i < run.cells.size(); ++i) {
    const ModelParam& cell = run.CellOf(i);
    const auto master = static_cast<std::size_t>(run.fit.params[i].master);
    if (cell.useMin) limits.lower[master] = std::max(limits.lower[master], cell.min);
    if (cell.useMax) limits.upper[master] = std::min(limits.upper[master], cell.max);
  }
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    if (!(limits.lower[i] <= limits.upper[i])) limits.lower[i] = limits.upper[i] = run.CellOf(i).value;
  }
  return limits;
}

const char* TextOf(BoundedFitEnd end) {
  switch (end) {
    case BoundedFitEnd::kGain:
      return "converged: a further step would not lower ChiSq";
    case BoundedFitEnd::kSmallStep:
      return "converged: a further step would not change the parameters";
    case BoundedFitEnd::kGradient:
      return "converged: ChiSq has no slope left";
    case BoundedFitEnd::kRounding:
      return "converged: to the rounding of ChiSq";
    case BoundedFitEnd::kNoBetterPoint:
      return "no step lowers ChiSq";
    case BoundedFitEnd::kStalled:
      return "not converged: many steps gained next to nothing";
    case BoundedFitEnd::kTooManyIterations:
      return "largest number of iterations of a run";
    case BoundedFitEnd::kStopped:
      return "stopped by the user";
    case BoundedFitEnd::kNothingFree:
      return "no parameter is free: all are held, or have no influence";
    case BoundedFitEnd::kStartNotFinite:
      return "ChiSq or its derivatives are not finite at the start";
  }
  return "";
}

void NoteEnds(FitRun& run, const BoundedFitResult& result) {
  FitReport& report = run.fit.report;
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    if (result.noInfluence[i]) report.withoutInfluence.push_back(static_cast<int>(i));
    if (result.onLimit[i]) report.onLimit.push_back(static_cast<int>(i));
  }
  report.converged = IsConverged(result.end);
}

BoundedFitOptions OptionsOf(const FitRun& run) {
  const FitOptions& options = run.fit.options;
  BoundedFitOptions out;
  out.mostIterations = options.StopOnIterations ? std::min(kMostIterations, options.MaxIterations) : kMostIterations;
  out.pool = run.eval.pool;
  return out;
}

// The text of the rule that ends one fit after a step, or null.
const char* FinishStep(FitRun& run, const BoundedFitProgress& now) {
  run.fit.TotalChiSq = now.sum;
  run.fit.Lambda = now.lambda;
  run.history.push_back(now.sumBefore);
  FinishIteration(run);
  if (const char* const why = IterationsAreOver(run)) return why;
  if (const char* const why = TimeIsOver(run)) return why;
  return UserStops(run);
}

// Many starts are ended only by the time and the user.
const char* FinishStepOfMany(FitRun& run) {
  TakeTime(run);
  const char* const why = TimeIsOver(run);
  return why ? why : UserStops(run);
}

void NoteMinima(FitRun& run, ManyStartsResult& many) {
  run.fit.report.minima = std::move(many.minima);
  run.fit.report.startsNotConverged = many.notConverged;
  run.history.assign(1, many.best.startSum);
  FinishIteration(run);
  run.fit.IterationCount = many.best.iterations;
}

}  // namespace

const char* RunBounded(FitRun& run) {
  SpectraProblem problem(run);
  const Limits limits = LimitsOf(run);
  std::vector<double> x;
  for (std::size_t i = 0; i < run.Masters(); ++i) {
    x.push_back(run.CellOf(i).value);
    if (x[i] < limits.lower[i] || x[i] > limits.upper[i]) run.fit.report.movedInside.push_back(static_cast<int>(i));
  }
  const BoundedFitOptions options = OptionsOf(run);
  const FitStarts& starts = run.starts;
  const char* why = nullptr;
  ManyStartsResult many;
  if (starts.count > 1) {
    many = FitFromManyStarts(problem, x, limits.lower, limits.upper, starts.count, starts.seed, options,
                             [&](const BoundedFitProgress&) { return (why = FinishStepOfMany(run)) == nullptr; });
  } else {
    many.best = FitWithinLimits(problem, x, limits.lower, limits.upper, options,
                                [&](const BoundedFitProgress& now) { return (why = FinishStep(run, now)) == nullptr; });
  }
  if (!many.best.endsAtX) problem.SumAt(x);
  if (starts.count > 1) NoteMinima(run, many);
  NoteEnds(run, many.best);
  if (why) return why;
  const bool byNumber = many.best.end == BoundedFitEnd::kTooManyIterations && run.fit.options.StopOnIterations;
  return byNumber ? "number of iterations" : TextOf(many.best.end);
}

}  // namespace kalvex

#include "fit/damped_loop.h"

#include <cmath>
#include <string>
#include <vector>

#include "core/limits.h"
#include "core/text.h"
#include "fit/confidence.h"
#include "records/param_value.h"

namespace kalvex {
namespace {

class DampedLoop {
 public:
  explicit DampedLoop(FitRun& run)
      : run_(run), diagonal_(run.Masters()), delta_(run.Masters()), saved_(run.Masters()) {}

  const char* Iterate() {
    FitState& fit = run_.fit;
    while (true) {
      BeginIteration();
      if (!FindDownhillStep()) {
        NoteParamsWithoutInfluence();
        return "Lambda above its limit: no step lowers ChiSq";
      }
      if (fit.options.CalcConfidence) {
        SetDamping(1);
        WriteConfidence(fit, run_.cells, run_.coordinates, run_.equations.Alpha(), factor_);
      }
      FinishIteration(run_);
      if (const char* const why = StopRuleThatHolds()) return why;
      fit.Lambda /= kLambdaFactor;
    }
  }

  void SetDamping(double factor) {
    const SquareMatrix alpha = run_.equations.Alpha();
    for (std::size_t i = 0; i < run_.Masters(); ++i) alpha(i, i) = diagonal_[i] * factor;
  }

 private:
  void BeginIteration() {
    for (std::size_t i = 0; i < run_.cells.size(); ++i) run_.coordinates[i] = FitCoordinateOf(*run_.cells[i]);
    Linearise(run_);
    const SquareMatrix alpha = run_.equations.Alpha();
    for (std::size_t i = 0; i < run_.Masters(); ++i) diagonal_[i] = alpha(i, i);
    run_.history.push_back(run_.fit.TotalChiSq);
  }

  void TakeStep() {
    limitHit_ = false;
    for (std::size_t i = 0; i < run_.Masters(); ++i) {
      ModelParam& cell = run_.CellOf(i);
      const FitCoordinate& coordinate = run_.coordinates[i];
      const double candidate =
          coordinate.limited ? FitCoordToValue(cell, coordinate.at - delta_[i]) : cell.value - delta_[i];
      saved_[i] = cell.value;
      if (SetValue(run_.params, cell, candidate) < 0) limitHit_ = true;
    }
    SetCoupledOnes(run_);
  }

  void TakeBack() {
    for (std::size_t i = 0; i < run_.Masters(); ++i) run_.CellOf(i).value = saved_[i];
    SetCoupledOnes(run_);
    run_.fit.TotalChiSq = run_.history.back();
  }

  // Raises Lambda until a step lowers ChiSq or a parameter meets a limit. False if Lambda leaves its range first.
  bool FindDownhillStep() {
    FitState& fit = run_.fit;
    while (true) {
      SetDamping(1 + fit.Lambda);
      if (SolveBanded(run_.equations.Alpha(), factor_, run_.equations.beta, delta_, true, run_.eval.pool) == 0) {
        TakeStep();
        ComputeChiSq(fit, run_.eval);
        if (!(fit.TotalChiSq >= run_.history.back())) return true;
        TakeBack();
        if (limitHit_) return true;
      }
      const double before = fit.Lambda;
      fit.Lambda *= kLambdaFactor;
      // An infinite Lambda, or 0, would repeat the same step. The run ends, whatever the options are.
      if (!std::isfinite(fit.Lambda) || fit.Lambda == before) return false;
      if (fit.options.StopOnLambda && fit.Lambda > fit.options.MaxLambda) return false;
    }
  }

  void NoteParamsWithoutInfluence() {
    for (std::size_t i = 0; i < run_.Masters(); ++i) {
      if (diagonal_[i] == 0) run_.fit.report.withoutInfluence.push_back(static_cast<int>(i));
    }
  }

  void ShowLimitMessage() const {
    std::string text = "One or more parameters run out of limits:\n [";
    AppendG(text, -kValueClamp);
    text += ", ";
    AppendG(text, kValueClamp);
    text += "].\n\nThe fitting routine is stopped.";
    run_.platform.ShowMessage("Attention", text);
  }

  bool ReductionTooSmall() const {
    const FitOptions& options = run_.fit.options;
    if (options.ReductionIterations < 1 || options.ReductionIterations > run_.fit.IterationCount) return false;
    const auto from = static_cast<std::size_t>(run_.fit.IterationCount - options.ReductionIterations);
    const double least =
        options.RelativeReduction ? options.ReductionAmount * run_.history[from] : options.ReductionAmount;
    return run_.history[from] - run_.fit.TotalChiSq < least;
  }

  // The text of the first stop rule that applies, or null.
  const char* StopRuleThatHolds() {
    if (limitHit_) {
      ShowLimitMessage();
      return "a parameter ran out of limits";
    }
    if (const char* const why = IterationsAreOver(run_)) return why;
    if (const char* const why = TimeIsOver(run_)) return why;
    if (run_.fit.options.StopOnReduction && ReductionTooSmall()) return "ChiSq no longer falls";
    return UserStops(run_);
  }

  FitRun& run_;
  std::vector<double> diagonal_;  // of alpha, without damping
  BandFactor factor_;
  std::vector<double> delta_, saved_;
  bool limitHit_ = false;
};

}  // namespace

const char* RunDampedLoop(FitRun& run) {
  DampedLoop loop(run);
  const char* const why = loop.Iterate();
  loop.SetDamping(1);
  return why;
}

}  // namespace kalvex

#include "fit/bounded_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numeric/band_solver.h"

namespace kalvex {
namespace {

// How the scales of the unknowns are made.
struct Scaling {
  double relativeChange;  // added to the scale: a change of an unknown by its own value costs this part of the sum
  double memory;          // a scale is at least this part of the last one
};
constexpr Scaling kCautious{1e-3, 0.25}, kBold{0, 0};
// A step is accepted if it gains this part of what is predicted.
constexpr double kLeastGainRatio = 1e-4;
// Differences of two sums below this part of them are rounding.
constexpr double kRoundingOfSum = 1e-13;
// With a larger Lambda a small step says nothing about the distance from the minimum.
constexpr double kMostLambdaOfConvergence = 1e-2;
constexpr double kLeastLambda = 1e-15, kMostLambda = 1e30;

using Observer = std::function<bool(const BoundedFitProgress&)>;

enum class Hold : char { kFree, kOnLimit, kByLimits, kNoInfluence };

bool IsFinite(const LeastSquares::Linearised& at) {
  const auto isFinite = [](double number) { return std::isfinite(number); };
  if (!isFinite(at.sum) || !std::all_of(at.gradient.begin(), at.gradient.end(), isFinite)) return false;
  for (std::size_t i = 0; i < at.curvature.size; ++i) {
    if (!std::all_of(at.curvature.Row(i) + i, at.curvature.Row(i) + at.curvature.size, isFinite)) return false;
  }
  return true;
}

class Minimiser {
 public:
  Minimiser(LeastSquares& problem, std::span<double> x, std::span<const double> lower, std::span<const double> upper,
            const BoundedFitOptions& options, const Scaling& scaling)
      : problem_(problem),
        scaling_(scaling),
        x_(x),
        lower_(lower),
        upper_(upper),
        options_(options),
        lambda_(options.initialLambda),
        scale_(x.size()),
        diagonal_(x.size()),
        hold_(x.size()),
        step_(x.size()),
        target_(x.size()),
        trial_(x.size()),
        before_(x.size()),
        right_(x.size()) {}

  // `before` holds the counts of an earlier attempt.
  BoundedFitResult Run(const Observer& goesOn, const BoundedFitResult& before = {}) {
    result_.iterations = before.iterations;
    result_.sums = before.sums;
    for (std::size_t i = 0; i < x_.size(); ++i) x_[i] = std::clamp(x_[i], lower_[i], upper_[i]);
    Linearise();
    result_.startSum = sum_;
    result_.end = IsFinite(here_) ? Iterate(goesOn) : BoundedFitEnd::kStartNotFinite;
    result_.sum = sum_;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      // The derivatives at the end of the last step are not known. What the step ended on, it was pushed to.
      const bool endsThere = !isLinearised_ && hold_[i] == Hold::kFree && ends_[i];
      result_.onLimit.push_back(hold_[i] == Hold::kOnLimit || endsThere);
      result_.noInfluence.push_back(hold_[i] == Hold::kNoInfluence);
    }
    return std::move(result_);
  }

 private:
  void Linearise() {
    here_ = problem_.LineariseAt(x_);
    sum_ = here_.sum;
    isLinearised_ = result_.endsAtX = true;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      diagonal_[i] = here_.curvature(i, i);
      scale_[i] = std::max(diagonal_[i], scaling_.memory * scale_[i]);
    }
    FindHeld();
  }

  // Goes back to the last point if the derivatives at the present one are not finite.
  void LineariseOrGoBack() {
    const std::vector<double> scaleBefore = scale_;
    Linearise();
    if (IsFinite(here_)) return;
    std::copy(before_.begin(), before_.end(), x_.begin());
    scale_ = scaleBefore;
    lambda_ *= 10;
    Linearise();
  }

  void FindHeld() {
    for (std::size_t i = 0; i < x_.size(); ++i) {
      const bool pushes =
          (x_[i] <= lower_[i] && here_.gradient[i] > 0) || (x_[i] >= upper_[i] && here_.gradient[i] < 0);
      hold_[i] = Hold::kFree;
      if (pushes) hold_[i] = Hold::kOnLimit;
      if (diagonal_[i] == 0) hold_[i] = Hold::kNoInfluence;
      if (lower_[i] == upper_[i]) hold_[i] = Hold::kByLimits;
    }
  }

  bool Any(Hold hold) const { return std::find(hold_.begin(), hold_.end(), hold) != hold_.end(); }

  // The largest cosine between the residuals and the derivative by a free unknown.
  double LargestSlope() const {
    double largest = 0;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      if (hold_[i] == Hold::kFree) {
        largest = std::max(largest, std::fabs(here_.gradient[i]) / std::sqrt(2 * diagonal_[i] * here_.sum));
      }
    }
    return largest;
  }

  double DampingOf(std::size_t i) const {
    const double relative = x_[i] == 0 ? 0 : scaling_.relativeChange * here_.sum / (x_[i] * x_[i]);
    return lambda_ * (scale_[i] + (std::isfinite(relative) ? relative : 0));
  }

  // Solves for the step. False if the matrix is not positive definite.
  bool SolveStep() {
    for (std::size_t i = 0; i < x_.size(); ++i) {
      ends_[i] = hold_[i] != Hold::kFree;
      target_[i] = 0;
    }
    // In each round at least one more unknown ends on a limit.
    while (true) {
      if (!SolveRound()) return false;
      bool crosses = false;
      for (std::size_t i = 0; i < x_.size(); ++i) {
        if (ends_[i] || (x_[i] + step_[i] >= lower_[i] && x_[i] + step_[i] <= upper_[i])) continue;
        target_[i] = (step_[i] < 0 ? lower_[i] : upper_[i]) - x_[i];
        ends_[i] = crosses = true;
      }
      if (!crosses) return true;
    }
  }

  // Unknowns that are held, or end on a limit, get a diagonal element so large that their step is the target.
  bool SolveRound() {
    constexpr double kHolding = 1e20;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      double& element = here_.curvature(i, i);
      element = diagonal_[i] + DampingOf(i);
      right_[i] = -here_.gradient[i];
      if (!ends_[i]) continue;
      element = element > 0 ? element * kHolding : 1;
      right_[i] = element * target_[i];
    }
    if (SolveBanded(here_.curvature, factor_, right_, step_, true, options_.pool) != 0) return false;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      if (ends_[i]) step_[i] = target_[i];
    }
    return true;
  }

  // By how much the quadratic model of the sum falls with the step. For unknowns that are solved for, H p follows from
  // the equations.
  double PredictedGain() const {
    double gain = 0;
    for (std::size_t i = 0; i < x_.size(); ++i) {
      if (step_[i] == 0) continue;
      const double curved = ends_[i] ? RowTimesStep(i) : -here_.gradient[i] - DampingOf(i) * step_[i];
      gain -= step_[i] * (here_.gradient[i] + curved / 2);
    }
    return gain;
  }

  double RowTimesStep(std::size_t i) const {
    double sum = diagonal_[i] * step_[i];
    for (std::size_t j = 0; j < i; ++j) sum += here_.curvature(j, i) * step_[j];
    for (std::size_t j = i + 1; j < x_.size(); ++j) sum += here_.curvature(i, j) * step_[j];
    return sum;
  }

  bool IsSmallStep() const {
    for (std::size_t i = 0; i < x_.size(); ++i) {
      if (std::fabs(step_[i]) > options_.leastStep * std::fabs(x_[i])) return false;
    }
    return true;
  }

  BoundedFitEnd Iterate(const Observer& goesOn) {
    std::vector<double> sums;
    while (true) {
      if (result_.iterations >= options_.mostIterations) return BoundedFitEnd::kTooManyIterations;
      if (!isLinearised_) LineariseOrGoBack();
      sums.push_back(sum_);
      if (!Any(Hold::kFree) && !Any(Hold::kOnLimit)) return BoundedFitEnd::kNothingFree;
      if (sum_ == 0 || LargestSlope() <= options_.leastSlope) return BoundedFitEnd::kGradient;
      if (IsStalled(sums)) return BoundedFitEnd::kStalled;
      const Attempt attempt = TakeStep();
      if (!attempt.taken) return attempt.end;
      ++result_.iterations;
      if (!goesOn({result_.iterations, sums.back(), sum_, lambda_})) return BoundedFitEnd::kStopped;
      if (attempt.isLast) return attempt.end;
    }
  }

  // Many steps that gain next to nothing: the sum has an edge that the derivatives do not show.
  static bool IsStalled(std::span<const double> sums) {
    constexpr std::size_t kSteps = 20;
    constexpr double kLeast = 1e-8;
    return sums.size() > kSteps && sums[sums.size() - 1 - kSteps] - sums.back() < kLeast * sums.back();
  }

  // A step that was taken or not, and whether and why it is the last one.
  struct Attempt {
    bool taken = false;
    bool isLast = true;
    BoundedFitEnd end = BoundedFitEnd::kNoBetterPoint;
  };

  // Raises Lambda until a step is accepted.
  Attempt TakeStep() {
    double factor = 2;
    for (; lambda_ <= kMostLambda; lambda_ *= factor, factor *= 2) {
      if (!SolveStep()) continue;
      const double predicted = PredictedGain();
      if (!(predicted >= 0)) continue;
      const bool near = lambda_ <= kMostLambdaOfConvergence;
      const bool noGain = predicted <= options_.leastGain * sum_, isSmall = IsSmallStep();
      const bool isRounding = predicted <= kRoundingOfSum * sum_;
      if (TryStep(predicted, isRounding)) {
        return {true, near && (noGain || isSmall), noGain ? BoundedFitEnd::kGain : BoundedFitEnd::kSmallStep};
      }
      if (near && isRounding) return {false, true, BoundedFitEnd::kRounding};
    }
    return {};
  }

  bool TryStep(double predicted, bool isRounding) {
    for (std::size_t i = 0; i < x_.size(); ++i) trial_[i] = std::clamp(x_[i] + step_[i], lower_[i], upper_[i]);
    ++result_.sums;
    result_.endsAtX = false;
    const double sum = problem_.SumAt(trial_);
    if (!std::isfinite(sum)) return false;
    const double ratio = (sum_ - sum) / predicted;
    if (isRounding ? sum > sum_ * (1 + kRoundingOfSum) : !(ratio > kLeastGainRatio)) return false;
    std::copy(x_.begin(), x_.end(), before_.begin());
    std::copy(trial_.begin(), trial_.end(), x_.begin());
    sum_ = sum;
    result_.endsAtX = true;
    isLinearised_ = false;
    // Nielsen's rule: a ratio of 1 divides Lambda by 3, of 1/2 keeps it.
    const double q = 2 * ratio - 1;
    lambda_ = std::max(kLeastLambda, lambda_ * (isRounding ? 0.1 : std::max(1.0 / 3, 1 - q * q * q)));
    return true;
  }

  LeastSquares& problem_;
  const Scaling& scaling_;
  std::span<double> x_;
  std::span<const double> lower_, upper_;
  const BoundedFitOptions& options_;
  double lambda_;
  double sum_ = 0;             // at x
  bool isLinearised_ = false;  // here_ is that of x
  LeastSquares::Linearised here_;
  std::vector<double> scale_, diagonal_;
  std::vector<Hold> hold_;
  std::vector<double> step_, target_, trial_, before_, right_;
  std::vector<char> ends_ = std::vector<char>(x_.size());  // the unknown is held, or its step ends on a limit
  BandFactor factor_;
  BoundedFitResult result_;
};

}  // namespace

bool IsConverged(BoundedFitEnd end) {
  return end == BoundedFitEnd::kGain || end == BoundedFitEnd::kSmallStep || end == BoundedFitEnd::kGradient ||
         end == BoundedFitEnd::kRounding;
}

BoundedFitResult FitWithinLimits(LeastSquares& problem, std::span<double> x, std::span<const double> lower,
                                 std::span<const double> upper, const BoundedFitOptions& options,
                                 const Observer& goesOn) {
  const std::vector<double> start(x.begin(), x.end());
  BoundedFitResult first = Minimiser(problem, x, lower, upper, options, kCautious).Run(goesOn);
  if (first.end != BoundedFitEnd::kStalled && first.end != BoundedFitEnd::kNoBetterPoint) return first;
  std::vector<double> other = start;
  BoundedFitResult second = Minimiser(problem, other, lower, upper, options, kBold).Run(goesOn, first);
  const bool isBetter = second.sum < first.sum;
  if (isBetter) std::copy(other.begin(), other.end(), x.begin());
  BoundedFitResult result = isBetter ? second : first;
  result.endsAtX = isBetter && second.endsAtX;
  result.iterations = second.iterations;
  result.sums = second.sums;
  return result;
}

}  // namespace kalvex

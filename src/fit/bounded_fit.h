// Least squares within limits: a Levenberg-Marquardt method for any problem that can give its sum of squares with
// gradient and curvature. It knows nothing of spectra.
//
// A step p solves (H + Lambda S) p = -g for the unknowns that are free, where H is the curvature, g the gradient and S
// the diagonal of the scales. Lambda follows the gain ratio (Nielsen, IMM-REP-1999-05): the reduction of the sum
// divided by the reduction that H and g predict. So it sets the size of the region in which the quadratic model is
// trusted.
//
// The scale of an unknown is its curvature, and at least a quarter of its last scale. To it a small part is added that
// limits its relative change: otherwise an unknown on a flat part of the sum can leave by orders of magnitude.
//
// If a fit does not converge, a second one begins at the start without these two rules, and the better point is kept.
//
// Limits are an active set. An unknown on a limit whose gradient pushes on is held for the step. If a step of the
// others crosses a limit, those unknowns end there, and the step of the rest is solved again.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// A sum of squares F = sum r^2 of residuals r, as a function of unknowns x.
class LeastSquares {
 public:
  // The sum near a point: gradient dF/dx = 2 J^T r, curvature 2 J^T J, where J = dr/dx.
  struct Linearised {
    double sum = 0;
    SquareMatrix curvature;  // on the diagonal and above. The method overwrites the diagonal and what is below.
    std::span<const double> gradient;
  };

  virtual ~LeastSquares() = default;
  virtual std::size_t Unknowns() const = 0;
  // The sum; not finite if it cannot be computed at x.
  virtual double SumAt(std::span<const double> x) = 0;
  // Valid until the next call.
  virtual Linearised LineariseAt(std::span<const double> x) = 0;
};

// Why a bounded fit ended.
enum class BoundedFitEnd {
  kGain,               // converged: the predicted gain of the last step is below leastGain
  kSmallStep,          // converged: the last step changed every unknown by less than leastStep of its value
  kGradient,           // converged: no free unknown has a slope above leastSlope
  kRounding,           // converged: what a step could gain is below the rounding of the sum
  kNoBetterPoint,      // not converged: no step along the derivatives lowers the sum
  kStalled,            // not converged: many steps gained next to nothing
  kTooManyIterations,  // not converged
  kStopped,            // by the observer
  kNothingFree,        // all unknowns are held by limits, or have no influence
  kStartNotFinite,     // the sum at the start is not finite
};
bool IsConverged(BoundedFitEnd end);

struct BoundedFitOptions {
  int mostIterations = 10000;
  // The three tests of convergence. They are relative: of the sum; of each unknown; and the cosine of the angle between
  // the residuals and the derivative by an unknown.
  double leastGain = 1e-15;
  double leastStep = 1e-10;
  double leastSlope = 1e-12;
  double initialLambda = 1e-3;
  ThreadPool* pool = nullptr;  // for the solution of large systems; the result does not depend on it
};

// The unknowns at the end of an iteration.
struct BoundedFitProgress {
  int iterations = 0;
  double sumBefore = 0;
  double sum = 0;
  double lambda = 0;
};

struct BoundedFitResult {
  BoundedFitEnd end = BoundedFitEnd::kNothingFree;
  int iterations = 0;  // accepted steps
  int sums = 0;        // calls of SumAt
  double startSum = 0;
  double sum = 0;
  bool endsAtX = false;           // the last evaluation of the problem was at the best point
  std::vector<char> onLimit;      // the unknown stands on a limit, and its gradient pushes on
  std::vector<char> noInfluence;  // the curvature of the unknown is 0
};

// Minimises the sum from the start x, which is first moved inside the limits. x holds the best point at the end.
//
//   lower, upper   one entry for each unknown, lower <= upper; infinite where there is no limit. Equal limits hold the
//                  unknown.
//   goesOn         called after each accepted step; false ends the fit
BoundedFitResult FitWithinLimits(LeastSquares& problem, std::span<double> x, std::span<const double> lower,
                                 std::span<const double> upper, const BoundedFitOptions& options,
                                 const std::function<bool(const BoundedFitProgress&)>& goesOn);

}  // namespace kalvex

// Derivatives by Ridders' extrapolation of central difference quotients, with an error estimate: the reference for
// every analytic derivative.
#pragma once

#include <functional>

namespace kalvex {

// A slope may differ by this many error estimates, since these are only estimates.
inline constexpr double kRidders = 20;
// Relative, the rounding of a slope beside that: of a closed formula, of a chain of them, of a sum over many states, of
// an integral by quadrature, and where two branches of a formula meet.
inline constexpr double kSlopeOfFormula = 1e-9;
inline constexpr double kSlopeOfChain = 1e-8;
inline constexpr double kSlopeOfSum = 1e-7;
inline constexpr double kSlopeOfIntegral = 1e-6;
inline constexpr double kSlopeOfBranches = 1e-5;

struct SlopeEstimate {
  double value = 0;
  double error = 0;
};

// Slope of f at x. scale: a distance over which f changes noticeably; the first step is a fraction of it.
//
//     C. J. F. Ridders, Adv. Eng. Software 4, 75 (1982)
SlopeEstimate RiddersSlope(const std::function<double(double)>& f, double x, double scale);

}  // namespace kalvex

// Derivatives by Ridders' extrapolation of central difference quotients, with an error estimate: the reference for
// every analytic derivative.
#pragma once

#include <functional>

namespace kalvex {

struct SlopeEstimate {
  double value = 0;
  double error = 0;
};

// Slope of f at x. scale: a distance over which f changes noticeably; the first step is a fraction of it.
//
//     C. J. F. Ridders, Adv. Eng. Software 4, 75 (1982)
SlopeEstimate RiddersSlope(const std::function<double(double)>& f, double x, double scale);

}  // namespace kalvex

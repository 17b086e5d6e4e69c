// Method 1: the Levenberg-Marquardt loop that multiplies the diagonal of the curvature matrix by 1 + Lambda. Limits are
// a change of variable (fit_coordinate.h).
#pragma once

#include "fit/fit_run.h"

namespace kalvex {

inline constexpr double kLambdaFactor = 10.0;

// Iterates until a stop rule applies. Returns its text. The normal equations are then those at the start of the last
// iteration, without damping.
const char* RunDampedLoop(FitRun& run);

}  // namespace kalvex

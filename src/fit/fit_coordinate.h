// Limits by a change of variable: the fit varies a coordinate, and the value is a function of it that stays within the
// active limits.
#pragma once

#include "records/model_param.h"

namespace kalvex {

inline bool HasLimit(const ModelParam& param) { return param.useMin || param.useMax; }

// A parameter as the fit sees it.
struct FitCoordinate {
  double at = 0;         // the coordinate of the value
  double scale = 1;      // derivative of the value by the coordinate; 0 at a limit
  bool limited = false;  // a limit is active; otherwise the coordinate is the value
};
FitCoordinate FitCoordinateOf(const ModelParam& param);
// The value at a coordinate.
double FitCoordToValue(const ModelParam& param, double coordinate);

}  // namespace kalvex

// Limits by a change of variable: the fit steps in a coordinate, and the value is a function of it that cannot leave
// the limits in force.
#pragma once

#include "records/model_param.h"

namespace kalvex {

inline bool HasLimit(const ModelParam& param) { return param.useMin || param.useMax; }

// Sets fitCoord, and fitScale, the derivative of value by it; the latter is 0 on a limit.
void FitSetCoord(ModelParam& param);
// The value that belongs to a coordinate.
double FitCoordToValue(const ModelParam& param, double coordinate);

}  // namespace kalvex

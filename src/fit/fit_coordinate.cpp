#include "fit/fit_coordinate.h"

#include <algorithm>
#include <cmath>

namespace kalvex {

//     limits   value                                        coordinate
//     none     u                                            value
//     min      min + u^2                                    sqrt(value - min)
//     max      max - u^2                                    sqrt(max - value)
//     both     (max + min)/2 + (max - min)/2 sin(2 u/s)     (s/2) asin((2 value - max - min)/(max - min)),  s =
//     sqrt(max - min)

void FitSetCoord(ModelParam& param) {
  if (param.useMin && param.useMax) {
    const double range = param.max - param.min;
    if (!(range > 0)) {
      param.fitCoord = param.fitScale = 0;
      return;
    }
    const double s = std::sqrt(range);
    // A value set past its limits by hand stands on the limit for the fit.
    const double sine = std::clamp((2 * param.value - param.max - param.min) / range, -1.0, 1.0);
    param.fitCoord = s / 2 * std::asin(sine);
    param.fitScale = s * std::cos(2 * param.fitCoord / s);
  } else if (param.useMin) {
    param.fitCoord = std::sqrt(std::max(0.0, param.value - param.min));
    param.fitScale = 2 * param.fitCoord;
  } else if (param.useMax) {
    param.fitCoord = std::sqrt(std::max(0.0, param.max - param.value));
    param.fitScale = -2 * param.fitCoord;
  } else {
    param.fitCoord = param.value;
    param.fitScale = 1.0;
  }
}

double FitCoordToValue(const ModelParam& param, double coordinate) {
  if (param.useMin && param.useMax) {
    const double range = param.max - param.min;
    if (!(range > 0)) return 0;
    return std::sin(2 * coordinate / std::sqrt(range)) * range / 2 + (param.max + param.min) / 2;
  }
  if (param.useMin) return coordinate * coordinate + param.min;
  if (param.useMax) return param.max - coordinate * coordinate;
  return coordinate;
}

}  // namespace kalvex

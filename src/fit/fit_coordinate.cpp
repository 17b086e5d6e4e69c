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

FitCoordinate FitCoordinateOf(const ModelParam& param) {
  if (param.useMin && param.useMax) {
    const double range = param.max - param.min;
    if (!(range > 0)) return {0, 0, true};
    const double s = std::sqrt(range);
    // The user may have set a value outside its limits. The fit then starts at the limit.
    const double sine = std::clamp((2 * param.value - param.max - param.min) / range, -1.0, 1.0);
    const double u = s / 2 * std::asin(sine);
    return {u, s * std::cos(2 * u / s), true};
  }
  if (param.useMin) {
    const double u = std::sqrt(std::max(0.0, param.value - param.min));
    return {u, 2 * u, true};
  }
  if (param.useMax) {
    const double u = std::sqrt(std::max(0.0, param.max - param.value));
    return {u, -2 * u, true};
  }
  return {param.value, 1.0, false};
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

// Integrals whose integrand ends like a power of the distance from the end, with features on scales that may lie many
// decades apart.
//
// The variable runs uniformly along the logarithm of the distance between the smallest and the largest scale, and bends
// to doubly exponential where a square root at the end of an interval would take long to die out: with y in equal
// steps,
//     s = exp(y - exp(a - y))                                        from 0 to infinity, left end bent,
//     s = 1/(1 + exp(-z)),  z = y - exp(a - y) + exp(y - b)          from 0 to 1, both ends bent.
// The plain sum over y converges like exp(-2 pi d/step), d the distance of the nearest singularity in y, some 1.2 here.
//     Takahasi and Mori, Publ. RIMS Kyoto Univ. 9, 721 (1974)
#pragma once

#include <cmath>

namespace kalvex {

inline constexpr double kLogStep = 0.3;       // 4e-11 of the integral for a pole on the imaginary axis of s
inline constexpr double kLogMargin = 1.5;     // between a scale and the bend of the map
inline constexpr double kLogReach = 3.9;      // beyond the bend: there s is e^-49 of the scale
inline constexpr double kTailReach = 12;      // beyond the largest scale on a half line, where no bend is
inline constexpr double kLeastScale = 1e-14;  // of a finite interval

// Integral over s from 0 to infinity: visit(s, ds) at each node.
//   smallest, largest   below and above them the integrand goes like powers of s, at the end like s^-3 or faster.
//                       Only the left end is bent: a Fermi function has poles all the way up the imaginary axis
template <class Visit>
void OnHalfLine(double smallest, double largest, Visit visit) {
  const double a = std::log(smallest) - kLogMargin;
  const double from = a - kLogReach, to = std::log(largest) + kTailReach;
  const auto count = static_cast<int>(std::ceil((to - from) / kLogStep));
  for (int i = 0; i <= count; ++i) {
    const double y = from + i * kLogStep;
    const double below = std::exp(a - y);
    const double s = std::exp(y - below);
    visit(s, kLogStep * (1 + below) * s);
  }
}

// Integral over s from 0 to 1: visit(s, 1 - s, ds) at each node, both distances without cancellation.
//   left, right   the smallest scales of the integrand at the two ends, at most 1; below kLeastScale they count as that
template <class Visit>
void OnUnitInterval(double left, double right, Visit visit) {
  const auto scale = [](double x) { return std::log(std::fmin(std::fmax(x, kLeastScale), 1)); };
  const double a = scale(left) - kLogMargin, b = kLogMargin - scale(right);
  const double from = a - kLogReach, to = b + kLogReach;
  const auto count = static_cast<int>(std::ceil((to - from) / kLogStep));
  for (int i = 0; i <= count; ++i) {
    const double y = from + i * kLogStep;
    const double below = std::exp(a - y), above = std::exp(y - b);
    const double z = y - below + above;
    const double s = 1 / (1 + std::exp(-z)), r = 1 / (1 + std::exp(z));
    visit(s, r, s * r * kLogStep * (1 + below + above));
  }
}

}  // namespace kalvex

// Integrals over an integrand that follows a power of the distance near the ends of the interval. Its features may lie
// on scales that differ by many decades.
//
// The variable of integration is uniform in the logarithm of the distance between the smallest and the largest scale.
// Near an end it becomes doubly exponential, because a square root there would otherwise decay slowly. With y in equal
// steps:
//
//     s = exp(y - exp(a - y))                                        from 0 to infinity, left end doubly exponential,
//     s = 1/(1 + exp(-z)),  z = y - exp(a - y) + exp(y - b)          from 0 to 1, both ends doubly exponential.
//
// The sum over y converges like exp(-2 pi d/step), where d is the distance of the nearest singularity in y, about 1.2
// here.
//
//     Takahasi and Mori, Publ. RIMS Kyoto Univ. 9, 721 (1974)
#pragma once

#include <cmath>

namespace kalvex {

inline constexpr double kLogStep = 0.3;       // relative error 4e-11 for a pole on the imaginary axis of s
inline constexpr double kLogMargin = 1.5;     // between a scale and the doubly exponential part
inline constexpr double kLogReach = 3.9;      // of the doubly exponential part: s falls to e^-49 of the scale
inline constexpr double kTailReach = 12;      // beyond the largest scale on a half line
inline constexpr double kLeastScale = 1e-14;  // smallest scale on a finite interval

// Integral over s from 0 to infinity: visit(s, ds) at each node.
//
//   smallest, largest   outside them the integrand follows powers of s, at infinity s^-3 or a higher inverse power
//
// Only the left end is doubly exponential: a Fermi function has poles along the whole imaginary axis.
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

// Integral over s from 0 to 1: visit(s, 1 - s, ds) at each node. Both distances are free of cancellation.
//
//   left, right   the smallest scales of the integrand at the two ends, at most 1 and held at kLeastScale or more
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

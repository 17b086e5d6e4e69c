#include "windows/slider_map.h"

#include <cmath>

namespace kalvex::slider {
namespace {

constexpr double kSlopeTolerance = 0.001;

// Rises from 0 to 1 over four decades.
double WholeRange(double t) { return (std::pow(10000.0, t) - 1) / 9999; }

double UpperTail(int n, double d, double high, double hi) {
  const double w = hi - high;
  const double base = w > 0 ? SlopeBase(d * 0.025 * 20 / w) : 1;
  return std::fmin(high + w * E(base, (n - 60) * 0.05), hi);
}

}  // namespace

double H(double t) {
  if (t < 0.3) return (std::pow(100.0, t) - 1) / 99;
  return 0.420180508 - 3.076936616 * t + 6.893331709 * t * t - 3.236575601 * t * t * t;
}

double E(double L, double t) { return L > 1 ? (std::pow(L, t) - 1) / (L - 1) : t; }

double SlopeBase(double r) {
  if (!(r > 0)) return 0;
  if (r >= 1) return 1;
  // With x = 1/L the slope ln(L)/(L - 1) is ln(x) x/(x - 1), which rises from 0 to 1 over the interval from 0 to 1.
  double below = 0, above = 1, x = 0.5;
  for (double g = std::log(x) * x / (x - 1); std::fabs(g - r) >= kSlopeTolerance; g = std::log(x) * x / (x - 1)) {
    (g < r ? below : above) = x;
    x = 0.5 * (below + above);
  }
  return 1 / x;
}

double Map(int n, double base, double lo, double hi) {
  if (!(base > lo && base < hi)) return lo + (hi - lo) * WholeRange(n * 0.0125);
  const double d = base - lo, low = lo + 0.8 * d, high = lo + 1.2 * d;
  if (n < 1) return lo;
  if (n < 20) return lo + (low - lo) * H(n * 0.05);
  if (n <= 60) return std::fmin(low + (high - low) * (n - 20) * 0.025, hi);
  if (n < 80) return UpperTail(n, d, high, hi);
  return hi;
}

}  // namespace kalvex::slider

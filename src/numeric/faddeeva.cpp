#include "numeric/faddeeva.h"

#include <cmath>
#include <numbers>

namespace kalvex {
namespace {

// w(z) = (2 i z/pi) integral of exp(-t^2)/(z^2 - t^2) from 0 to infinity, by the trapezoidal or the midpoint rule with
// 12 nodes. Near the real axis the residue of the pole at z is added. Of the two rules the one with nodes farther from
// Re z is used.
constexpr int kNodes = 12;
const double kStep = std::sqrt(std::numbers::pi / kNodes);

// (2 i h z/pi) times the sum over the nodes offset*h, (offset + 1)*h, ...
Cplx NodeSum(const Cplx& z, double offset) {
  const Cplx z2 = z * z;
  Cplx sum;
  for (int k = 0; k < kNodes; ++k) {
    const double t = (k + offset) * kStep;
    sum += Cplx{std::exp(-t * t), 0} / (z2 - t * t);
  }
  return TimesI(z * sum) * (2 * kStep / std::numbers::pi);
}

// 2 exp(-z^2)/(1 + sign exp(-2 pi i z/h)), with the large exponential in the denominator.
Cplx PoleTerm(const Cplx& z, double sign) {
  constexpr double kFarBelow = 700;  // exp(-700) is negligible in the sum, and exp(710) overflows
  if (z.re * z.re - z.im * z.im > kFarBelow || 2 * std::numbers::pi / kStep * z.im > kFarBelow) return {};
  const Cplx e = Exp(TimesI(z) * (-2 * std::numbers::pi / kStep));
  return 2.0 * (Exp(-(z * z)) / (1.0 + sign * e));
}

Cplx InFirstQuadrant(const Cplx& z) {
  if (z.im >= std::fmax(z.re, std::numbers::pi / kStep)) return NodeSum(z, 0.5);
  const double place = z.re / kStep, part = place - std::floor(place);
  if (z.im < z.re && part >= 0.25 && part <= 0.75) {
    return PoleTerm(z, -1) + TimesI(Cplx{kStep / std::numbers::pi, 0} / z) + NodeSum(z, 1);
  }
  return PoleTerm(z, 1) + NodeSum(z, 0.5);
}

Cplx InUpperHalf(const Cplx& z) { return z.re >= 0 ? InFirstQuadrant(z) : Conj(InFirstQuadrant({-z.re, z.im})); }

}  // namespace

Cplx Faddeeva(const Cplx& z) { return z.im >= 0 ? InUpperHalf(z) : 2.0 * Exp(-(z * z)) - InUpperHalf(-z); }

}  // namespace kalvex

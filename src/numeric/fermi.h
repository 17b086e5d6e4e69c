// Fermi occupation of an electron level.
#pragma once

#include "numeric/dual.h"

namespace kalvex {

// 1/(exp(e/kT) + 1). e is the energy relative to the chemical potential, in the same unit as kT. A step function at a
// temperature of 0; exactly 0 or 1 beyond 100 kT.
template <class T>
T Fermi(const T& e, const T& kT) {
  constexpr double kCertain = 100;
  const double energy = ValueOf(e), thermal = ValueOf(kT);
  if (!(thermal > 0)) return T(energy < 0 ? 1 : energy > 0 ? 0 : 0.5);
  if (energy < -kCertain * thermal) return T(1);
  if (energy > kCertain * thermal) return T(0);
  return T(1) / (Exp(e / kT) + T(1));
}

// The derivative of Fermi by e; 0 at a temperature of 0.
template <class T>
T FermiSlope(const T& e, const T& kT) {
  if (!(ValueOf(kT) > 0)) return T(0);
  const T f = Fermi(e, kT);
  return f * (f - T(1)) / kT;
}

// (f(a) - f(b))/(b - a), whose limit is -df/de where a and b meet. With m and h half the sum and half the difference of
// a and b in units of kT:
//
//     sinh h/(2 h kT (cosh m + cosh h))
template <class T>
T FermiQuotient(const T& a, const T& b, const T& kT) {
  const double gap = ValueOf(b) - ValueOf(a), thermal = ValueOf(kT);
  if (!(thermal > 0)) return gap == 0 ? T(0) : (Fermi(a, kT) - Fermi(b, kT)) / (b - a);
  T m = (a + b) / (T(2) * kT), h = (b - a) / (T(2) * kT);
  if (ValueOf(m) < 0) m = -m;
  if (ValueOf(h) < 0) h = -h;
  // Numerator and denominator are multiplied by 2 exp(-larger): no exponential overflows.
  constexpr double kSmall = 0.02;  // below it four terms of the series of sinh h/h are exact
  const bool wide = ValueOf(h) > ValueOf(m);
  const T larger = wide ? h : m;
  const T denominator = Exp(m - larger) + Exp(-m - larger) + Exp(h - larger) + Exp(-h - larger);
  if (ValueOf(h) < kSmall) {
    const T h2 = h * h;
    const T series = T(1) + h2 * (T(1.0 / 6) + h2 * (T(1.0 / 120) + h2 * T(1.0 / 5040)));
    return T(2) * Exp(-larger) * series / (T(2) * kT * denominator);
  }
  return (Exp(h - larger) - Exp(-h - larger)) / (T(2) * h * kT * denominator);
}

}  // namespace kalvex

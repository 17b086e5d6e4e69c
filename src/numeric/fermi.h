// Occupation of an electron level.
#pragma once

#include "numeric/dual.h"

namespace kalvex {

// 1/(exp(e/kT) + 1), e counted from the chemical potential, in the unit of kT. At a temperature of 0 a step; beyond 100
// kT exactly 0 or 1.
template <class T>
T Fermi(const T& e, const T& kT) {
  constexpr double kCertain = 100;
  const double energy = ValueOf(e), thermal = ValueOf(kT);
  if (!(thermal > 0)) return T(energy < 0 ? 1 : energy > 0 ? 0 : 0.5);
  if (energy < -kCertain * thermal) return T(1);
  if (energy > kCertain * thermal) return T(0);
  return T(1) / (Exp(e / kT) + T(1));
}

// The derivative of Fermi by e, 0 at a temperature of 0.
template <class T>
T FermiSlope(const T& e, const T& kT) {
  if (!(ValueOf(kT) > 0)) return T(0);
  const T f = Fermi(e, kT);
  return f * (f - T(1)) / kT;
}

}  // namespace kalvex

// The Faddeeva function w(z) = exp(-z^2) erfc(-i z).
#pragma once

#include "numeric/dual.h"

namespace kalvex {

// Relative accuracy about 1e-14 in the upper half-plane. In the lower one w(-z) = 2 exp(-z^2) - w(z), which may
// overflow.
//
//     M. Al Azah and S. N. Chandler-Wilde, SIAM J. Numer. Anal. 59, 2346 (2021)
Cplx Faddeeva(const Cplx& z);

// The function and its first derivatives, over any number type. w' = -2 z w + 2 i/sqrt(pi)
template <class T>
Complex<T> FaddeevaOf(const Complex<T>& z);
template <class T>
Complex<T> FaddeevaSlopeOf(const Complex<T>& z);

inline Cplx FaddeevaSlope(const Cplx& z) {
  constexpr double kTwoOverRootPi = 1.1283791670955126;
  return -2.0 * (z * Faddeeva(z)) + Cplx{0, kTwoOverRootPi};
}

template <class T>
Complex<T> FaddeevaOf(const Complex<T>& z) {
  const Cplx at = ValueOf(z);
  return Analytic(z, Faddeeva(at), FaddeevaSlope(at));
}

// w'' = -2 w - 2 z w'
template <class T>
Complex<T> FaddeevaSlopeOf(const Complex<T>& z) {
  const Cplx at = ValueOf(z), slope = FaddeevaSlope(at);
  return Analytic(z, slope, -2.0 * Faddeeva(at) - 2.0 * (at * slope));
}

}  // namespace kalvex

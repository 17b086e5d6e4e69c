// Single films and plates: phase factors, interfaces, and a coherent pile of films on a thick substrate.
#pragma once

#include <numbers>

#include "types/frame.h"

namespace kalvex {

// exp(2 pi i x n d) of one passage, exactly 1 where it would grow beyond the guard; and the exponent.
template <class T>
Complex<T> PassageExponent(const Complex<T>& n, const T& thickness, double x) {
  return GuardedExponent(TimesI(n) * (thickness * T(2 * std::numbers::pi * x)));
}
template <class T>
Complex<T> PassageFactor(const Complex<T>& n, const T& thickness, double x) {
  return Exp(PassageExponent(n, thickness, x));
}

// (b - a)/(b + a) of the admittances on both sides.
template <class T>
Complex<T> InterfaceReflection(const Complex<T>& a, const Complex<T>& b) {
  return Quotient(b - a, b + a);
}

// |(1 - n)/(1 + n)|^2 of a thick sample at normal incidence.
template <class T>
T NormalReflectivity(const Complex<T>& eps) {
  return Norm(InterfaceReflection(Complex<T>{T(1), T(0)}, Sqrt(eps)));
}

// A film between two interfaces and the same without interference: r01 from outside, r12 behind, `round` the factor of
// a round trip.
template <class T>
T CoherentReflectivity(const Complex<T>& r01, const Complex<T>& r12, const Complex<T>& round) {
  return Norm(Quotient(r01 + r12 * round, T(1) + r01 * r12 * round));
}
template <class T>
T IncoherentReflectivity(const Complex<T>& r01, const Complex<T>& r12, const Complex<T>& round) {
  const T R01 = Norm(r01), R12 = Norm(r12), A = Norm(round);
  const T rest = T(1) - R01 * R12 * A;
  return R01 + Norm(T(1) - r01 * r01) * R12 * A / (ValueOf(rest) < kTinyNorm ? T(kTinyNorm) : rest);
}

}  // namespace kalvex

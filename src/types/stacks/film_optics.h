// Single films and plates: phase factors, interfaces, coherent and incoherent reflectivity of a film.
#pragma once

#include <numbers>

#include "types/frame.h"

namespace kalvex {

// The factor exp(2 pi i x n d) of one passage, and its exponent. With gain beyond GuardedExponent's limit it is 1.
template <class T>
Complex<T> PassageExponent(const Complex<T>& n, const T& thickness, double x) {
  return GuardedExponent(TimesI(n) * (thickness * T(2 * std::numbers::pi * x)));
}
template <class T>
Complex<T> PassageFactor(const Complex<T>& n, const T& thickness, double x) {
  return Exp(PassageExponent(n, thickness, x));
}

// Reflected amplitude (b - a)/(b + a) of an interface between the admittances a and b.
template <class T>
Complex<T> InterfaceReflection(const Complex<T>& a, const Complex<T>& b) {
  return Quotient(b - a, b + a);
}

// Reflectivity |(1 - n)/(1 + n)|^2 of a thick sample at normal incidence.
template <class T>
T NormalReflectivity(const Complex<T>& eps) {
  return Norm(InterfaceReflection(Complex<T>{T(1), T(0)}, Sqrt(eps)));
}

// Reflectivity of a film with and without interference. r01: amplitude of the front face from outside, r12: amplitude
// of the back face from inside, round: factor of a round trip in the film.
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

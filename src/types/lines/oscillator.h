// Oscillators that are coupled to each other.
#pragma once

#include "numeric/complex.h"
#include "numeric/dual.h"

namespace kalvex {

inline constexpr double kLeastOscillatorNorm = 1e-10;

// strength/(W^2 - x^2 - i width x), 0 if the denominator is too small.
template <class T>
Complex<T> Oscillator(const T& strength, const T& W, const T& width, double x) {
  const Complex<T> denominator{W * W - T(x * x), -(width * T(x))};
  if (Norm(ValueOf(denominator)) < kLeastOscillatorNorm) return {};
  return Complex<T>{strength, T(0)} / denominator;
}

// A phonon screened by an electronic transition: phonon/(1 - coupling phonon electronic).
template <class T>
Complex<T> ScreenedPhonon(const Complex<T>& phonon, const Complex<T>& electronic, const T& coupling) {
  const Complex<T> screening = T(1) - phonon * electronic * coupling;
  if (Norm(ValueOf(screening)) < kLeastOscillatorNorm) return {};
  return phonon / screening;
}

}  // namespace kalvex

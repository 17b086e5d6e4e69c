// The plain Lorentzian: the meaning of a row without a code. All frequencies, widths and plasma frequencies in cm-1.
#pragma once

#include <array>
#include <numbers>

#include "core/limits.h"
#include "numeric/complex.h"
#include "terms/term_record.h"

namespace kalvex {

// D(W, G) = W^2 - w^2 - i w G; a positive width gives a positive imaginary part of the dielectric function.
template <class T>
Complex<T> OscillatorDenominator(const T& w, const T& W, const T& G) {
  return {W * W - w * w, -(w * G)};
}

// eps = Wp^2/D and 1/D, for a frequency or a pack of frequencies. If |D|^2 is below 1e-30, eps is the marker (1e30,
// 1e30), and 1/D is set to 0, which makes all derivatives 0.
template <class T>
struct Oscillator {
  Complex<T> eps;
  Complex<T> inverse;
};
template <class T>
Oscillator<T> OscillatorAt(const T& w, const T& Wo, const T& Wp, const T& G) {
  const Complex<T> D = OscillatorDenominator(w, Wo, G);
  const T norm = Norm(D), perNorm = T(1) / norm, share = (Wp * Wp) / norm;
  const auto fails = norm < T(kTinyNorm);
  return {{Select(fails, T(kNoValue), D.re * share), Select(fails, T(kNoValue), -(D.im * share))},
          {Select(fails, T(0), D.re * perNorm), Select(fails, T(0), -(D.im * perNorm))}};
}
// The |w G| above which |D|^2 cannot reach the guard for any Wo.
inline constexpr double kSafeDamping = 1.001e-15;

// d eps/d(Wo, Wp, G) = (-2 Wo eps/D, 2 Wp/D, i w eps/D)
template <class T>
std::array<Complex<T>, 3> OscillatorSlopes(const T& w, const T& Wo, const T& Wp, const Complex<T>& inverse) {
  const Complex<T> slope = (Wp * Wp) * (inverse * inverse);
  return {(T(-2) * Wo) * slope, (T(2) * Wp) * inverse, w * TimesI(slope)};
}

// eps = Wp^2/D(Wo, G); inputs Wo, Wp, G. If |D|^2 is below 1e-30, the marker (1e30, 1e30) with derivatives 0.
int CalcLorentz(const TermCall& call, Cplx& result);

// Partial spectral weight of a Lorentzian of unit plasma frequency,
//     F(w, W, G) = integral from 0 to w of G x^2/((W^2 - x^2)^2 + G^2 x^2) dx,   pi/2 for w -> infinity,
// with its derivatives by W and G. G >= 0, w >= 0.
struct PartialWeight {
  double F = 0;
  double dW = 0;
  double dG = 0;
};
PartialWeight PartialWeightOf(double w, double W, double G);

// Wp^2 F(w, Wo, G)/(4 pi), with the limit Wp^2/8 at high frequency; inputs Wo, Wp, G. 0 if w or G is negative.
int ScalarLorentz(const TermCall& call, double& result);

// The factor of Wp^2 F in the sum of spectral weights.
inline constexpr double kWeightUnit = 0.25 / std::numbers::pi;

// The result of a calculator whose denominator vanishes: the marker as value, 0 for every requested derivative.
void GiveMarker(const TermCall& call, Cplx& result);
// Writes a derivative if it is requested for the input.
inline void PutSlope(const TermInput& input, const Cplx& slope) {
  if (!input.adjustable) return;
  *input.outRe = slope.re;
  *input.outIm = slope.im;
}

// The same for the real row sum.
inline void PutScalarSlope(const TermCall& call, std::size_t i, double slope) {
  if (call.derivatives && call.inputs[i].adjustable) *call.inputs[i].outScalar = slope;
}

}  // namespace kalvex

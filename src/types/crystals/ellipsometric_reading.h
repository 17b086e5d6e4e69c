// What an ellipsometer reads of a sample: Psi, Delta, the intensities of a rotating analyser, and the dielectric
// function that a bulk isotropic sample would have. R. M. A. Azzam, N. M. Bashara, Ellipsometry and Polarized Light.
#pragma once

#include "types/frame.h"

namespace kalvex {

// Sine squared and cosine of an angle of incidence in degrees; their ratio counts as 0 at grazing incidence, where the
// cosine of 90 degrees is no more than its rounding.
template <class T>
struct Incidence {
  explicit Incidence(const T& degrees)
      : cosine(Cos(degrees * T(kRadiansPerDegree))), sine2(T(1) - cosine * cosine), tangent2(T(0)) {
    if (ValueOf(cosine * cosine) > kTinyNorm) tangent2 = sine2 / (cosine * cosine);
  }
  T cosine, sine2, tangent2;
};

// (|rho|^2 - tan^2 P)/(|rho|^2 + tan^2 P) and 2 Re rho tan P/(|rho|^2 + tan^2 P) to S1 and S2, P in degrees.
template <class T>
void FillRotatingAnalyser(const Complex<T>& rho, const T& polariser, Slots<T>& q) {
  const T angle = polariser * T(kRadiansPerDegree), tangent = Sin(angle) / Cos(angle), square = tangent * tangent;
  const T modulus = Sqrt(Norm(rho)), sum = Norm(rho) + square;
  q[kS1] = (Norm(rho) - square) / sum;
  q[kS2] = T(2) * modulus * (rho.re / modulus) * tangent / sum;
}

// Psi and Delta in degrees to E1 and E2.
template <class T>
void FillPsiDelta(const Complex<T>& rho, Slots<T>& q) {
  q[kE1] = T(kDegreesPerRadian) * Atan(Modulus(rho));
  q[kE2] = T(kDegreesPerRadian) * Argument(rho);
}

// sin^2 (1 + tan^2 w^2) to N1 and N2, w = (1 + rho)/(1 - rho) or its negative by the sign convention of rho.
template <class T>
void FillPseudoResponse(const Incidence<T>& at, const Complex<T>& w, Slots<T>& q) {
  const Complex<T> pseudo = at.sine2 * (T(1) + w * w * at.tangent2);
  q[kN1] = pseudo.re;
  q[kN2] = pseudo.im;
}

}  // namespace kalvex

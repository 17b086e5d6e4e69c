// Readings of an ellipsometer from rho: Psi, Delta, the intensities of a rotating analyser, and the pseudo dielectric
// function, that of a bulk isotropic sample with the same rho.
// R. M. A. Azzam, N. M. Bashara, Ellipsometry and Polarized Light.
#pragma once

#include "types/frame.h"

namespace kalvex {

// Cosine, sine squared and tangent squared of an angle of incidence in degrees. tangent2 is 0 at 90 degrees, where the
// cosine is only a rounding error.
template <class T>
struct Incidence {
  explicit Incidence(const T& degrees)
      : cosine(Cos(degrees * T(kRadiansPerDegree))), sine2(T(1) - cosine * cosine), tangent2(T(0)) {
    if (ValueOf(cosine * cosine) > kTinyNorm) tangent2 = sine2 / (cosine * cosine);
  }
  T cosine, sine2, tangent2;
};

// S1 = (|rho|^2 - tan^2 P)/(|rho|^2 + tan^2 P), S2 = 2 Re rho tan P/(|rho|^2 + tan^2 P). P in degrees.
template <class T>
void FillRotatingAnalyser(const Complex<T>& rho, const T& polariser, Slots<T>& q) {
  const T angle = polariser * T(kRadiansPerDegree), tangent = Sin(angle) / Cos(angle), square = tangent * tangent;
  const T modulus = Sqrt(Norm(rho)), sum = Norm(rho) + square;
  q[kS1] = (Norm(rho) - square) / sum;
  q[kS2] = T(2) * modulus * (rho.re / modulus) * tangent / sum;
}

// E1 = Psi, E2 = Delta, in degrees.
template <class T>
void FillPsiDelta(const Complex<T>& rho, Slots<T>& q) {
  q[kE1] = T(kDegreesPerRadian) * Atan(Modulus(rho));
  q[kE2] = T(kDegreesPerRadian) * Argument(rho);
}

// N1 + i N2 = sin^2 (1 + tan^2 w^2). w = (1 + rho)/(1 - rho), or its inverse in the other sign convention of rho.
template <class T>
void FillPseudoResponse(const Incidence<T>& at, const Complex<T>& w, Slots<T>& q) {
  const Complex<T> pseudo = at.sine2 * (T(1) + w * w * at.tangent2);
  q[kN1] = pseudo.re;
  q[kN2] = pseudo.im;
}

}  // namespace kalvex

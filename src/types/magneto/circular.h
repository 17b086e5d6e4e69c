// Circular polarisation along the field: conventions and results that magnetised samples share.
//
// sigma_+- = sigma_xx +- i sigma_xy, eps_+- likewise. A sheet is a layer of conductivity sigma and thickness d; it
// enters as the dimensionless s = Z0 d sigma. For graphene d = 3.35 A.
#pragma once

#include "evaluation/quantity_formulas.h"
#include "types/frame.h"

namespace kalvex {

// Z0 times 3.35 A: s divided by the conductivity of the layer in Ohm^-1 cm^-1.
inline constexpr double kSheetOfLayer = 1.2619984361819279e-05;

template <class T>
struct Circular {
  Complex<T> plus;
  Complex<T> minus;
};

template <class T>
Circular<T> CircularOf(const Complex<T>& xx, const Complex<T>& xy) {
  return {xx + TimesI(xy), xx - TimesI(xy)};
}

// Amplitudes of an interface with a sheet, at normal incidence from medium 1.
template <class T>
Complex<T> SheetTransmission(const Complex<T>& n1, const Complex<T>& n2, const Complex<T>& s) {
  return Quotient(T(2) * n1, n1 + n2 + s);
}
template <class T>
Complex<T> SheetReflection(const Complex<T>& n1, const Complex<T>& n2, const Complex<T>& s) {
  return Quotient(n1 - n2 - s, n1 + n2 + s);
}

// Rotation and ellipticity of linearly polarised light, from a pair of circular amplitudes.
template <class T>
struct Polarisation {
  T rotation{};  // radians
  T ellipticity{};
};
template <class T>
Polarisation<T> PolarisationOf(const Circular<T>& amplitude) {
  if (Norm(ValueOf(amplitude.plus)) < 1e-20 || Norm(ValueOf(amplitude.minus)) < 1e-20) return {};
  const Complex<T> L = Log(amplitude.minus / amplitude.plus);
  return {T(0.5) * L.im, -Tanh(T(0.5) * L.re)};
}

// Amplitude reflected by a half-space; 0 if eps or n + 1 is 0.
template <class T>
Complex<T> FaceReflection(const Complex<T>& eps) {
  if (Norm(ValueOf(eps)) < 1e-20) return {};
  const Complex<T> n = Sqrt(eps);
  if (Norm(ValueOf(n) + 1.0) < 1e-20) return {};
  return (T(1) - n) / (T(1) + n);
}

// Results of a thick magnetised sample: reflectivities, Kerr angles, and the tensors of eps and sigma.
template <class T>
void FillMagnetised(const Circular<T>& eps, double x, Slots<T>& q) {
  const Circular<T> r{FaceReflection(eps.plus), FaceReflection(eps.minus)};
  const Polarisation<T> kerr = PolarisationOf(r);
  q[kRp] = kerr.rotation;
  q[kRs] = kerr.ellipticity;
  q[kRps] = Norm(r.plus);
  q[kDefringed] = Norm(r.minus);
  q[kRefl] = T(0.5) * (q[kRps] + q[kDefringed]);
  const Complex<T> xx = T(0.5) * (eps.plus + eps.minus), xy = T(0.5) * TimesI(eps.minus - eps.plus);
  const T perEps(x / 60);
  q[kE1] = xx.re;
  q[kE2] = xx.im;
  q[kS1] = perEps * xx.im;
  q[kS2] = perEps * (T(1) - xx.re);
  q[kN1] = xy.re;
  q[kN2] = xy.im;
  q[kDepth] = perEps * xy.im;
  q[kLoss] = -(perEps * xy.re);
}
// The Quantities that these results fill. imaginary and hall: the inputs on which Im eps_xx and eps_xy depend.
// transmission: the meaning of Quantity 1 in the type.
constexpr std::array<SlotUse, 14> MagnetisedFills(const char* transmission, std::uint64_t imaginary,
                                                  std::uint64_t hall) {
  return {{{kRefl, "reflectivity, mean of both circular ones"},
           {kTrans, transmission},
           {kRp, "Kerr rotation, radians"},
           {kRs, "Kerr ellipticity"},
           {kRps, "reflectivity of +"},
           {kE1, "Re eps_xx"},
           {kE2, "Im eps_xx", imaginary},
           {kS1, "Re sigma_xx, Ohm^-1 cm^-1", imaginary},
           {kS2, "Im sigma_xx, Ohm^-1 cm^-1"},
           {kN1, "Re eps_xy", hall},
           {kN2, "Im eps_xy", hall},
           {kDepth, "Re sigma_xy, Ohm^-1 cm^-1", hall},
           {kLoss, "Im sigma_xy, Ohm^-1 cm^-1", hall},
           {kDefringed, "reflectivity of -"}}};
}

// Results of a sheet on a thick substrate, from the conductivities of its layer in the field and at zero field.
template <class T>
void FillSheetOnSubstrate(const Circular<T>& sigma, const Complex<T>& sigma0, const T& layers,
                          const Complex<T>& substrate, Slots<T>& q) {
  const T perSigma = T(kSheetOfLayer) * layers;
  const Complex<T> one{T(1), T(0)};
  const Circular<T> s{sigma.plus * perSigma, sigma.minus * perSigma};
  const Circular<T> t{SheetTransmission(one, substrate, s.plus), SheetTransmission(one, substrate, s.minus)};
  const Circular<T> r{SheetReflection(one, substrate, s.plus), SheetReflection(one, substrate, s.minus)};
  const T zeroField = Norm(SheetTransmission(one, substrate, sigma0 * perSigma));
  q[kRefl] = T(0.5) * (Norm(r.plus) + Norm(r.minus));
  q[kTrans] = T(0.5) * (Norm(t.plus) + Norm(t.minus)) * substrate.re;
  q[kE1] = Norm(t.plus) / zeroField;
  q[kE2] = Norm(t.minus) / zeroField;
  q[kS1] = sigma.plus.re;
  q[kS2] = sigma.plus.im;
  q[kN1] = sigma.minus.re;
  q[kN2] = sigma.minus.im;
  q[kDepth] = PolarisationOf(t).rotation;
  q[kLoss] = PolarisationOf(r).rotation;
  q[kDefringed] = zeroField * substrate.re;
}
// The Quantities that these results fill, with the inputs on which sigma, sigma at zero field and the substrate depend.
constexpr std::array<SlotUse, 11> SheetFills(std::uint64_t sigma, std::uint64_t sigma0, std::uint64_t substrate) {
  return {{{kRefl, "reflectivity, mean of both circular ones", sigma | substrate},
           {kTrans, "transmission into the substrate, mean of both", sigma | substrate},
           {kE1, "transmission of + relative to that without field", sigma | sigma0 | substrate},
           {kE2, "transmission of - relative to that without field", sigma | sigma0 | substrate},
           {kS1, "Re sigma_+, Ohm^-1 cm^-1 of a layer of 3.35 A", sigma},
           {kS2, "Im sigma_+", sigma},
           {kN1, "Re sigma_-", sigma},
           {kN2, "Im sigma_-", sigma},
           {kDepth, "Faraday rotation, radians", sigma | substrate},
           {kLoss, "rotation of the reflected light, radians", sigma | substrate},
           {kDefringed, "transmission without field", sigma0 | substrate}}};
}

}  // namespace kalvex

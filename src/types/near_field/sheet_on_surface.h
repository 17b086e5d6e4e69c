// p-polarised reflection of a surface with a conducting sheet.
#pragma once

#include <numbers>

#include "types/frame.h"

namespace kalvex {

inline constexpr double kUniversalSheet = 0.02292420159324472;  // pi times the fine-structure constant

// The conductivity of a sheet in units of e^2/(4 hbar). re and im: that of a layer of 3.35 A in Ohm^-1 cm^-1.
inline Cplx SheetOfData(double re, double im) { return Cplx{re, im} * 0.0005505092210294523; }

// r_p at frequency x and momentum 2 pi q (x and q in cm-1) of a substrate with the dielectric functions along the
// surface and along the normal. sheet: in units of e^2/(4 hbar).
inline Cplx SurfaceReflection(double x, const Cplx& q, const Cplx& along, const Cplx& normal, const Cplx& sheet) {
  const double k = 2 * std::numbers::pi * x;
  const Cplx Q = q * (2 * std::numbers::pi), Q2 = Q * Q;
  const Cplx kz1 = Sqrt(k * k - Q2), kz2 = Sqrt(along * (k * k) - Q2 * Quotient(along, normal));
  const Cplx S = k == 0 ? Cplx{} : kz1 * kz2 * sheet * (kUniversalSheet / k);
  return Quotient(along * kz1 - kz2 + S, along * kz1 + kz2 + S);
}

}  // namespace kalvex

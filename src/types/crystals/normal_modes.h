// The waves of a given in-plane wave vector inside an anisotropic crystal.
#pragma once

#include "numeric/polynomial_roots.h"

namespace kalvex {

template <class T>
struct SymmetricTensor {
  Complex<T> xx, yy, zz, xy, xz, yz;
};

// Components q of the wave vectors along the normal z, for a component s along x; both in units of the wave number in
// vacuum.
struct NormalModes {
  PolynomialRoots q;
};

// The four roots of the dispersion relation of D. W. Berreman, J. Opt. Soc. Am. 62, 502 (1972). There are fewer if the
// leading coefficients are 0.
inline NormalModes NormalModesOf(const SymmetricTensor<double>& e, double s) {
  const double s2 = s * s;
  const Cplx a4 = e.zz, a3 = 2.0 * s * e.xz;
  const Cplx a2 = e.xz * e.xz + e.yz * e.yz - e.xx * e.zz - e.yy * e.zz + (e.xx + e.zz) * s2;
  const Cplx a1 = (2.0 * e.xy * e.yz - 2.0 * e.xz * e.yy) * s + 2.0 * e.xz * (s * s2);
  const Cplx a0 = 2.0 * e.xy * e.xz * e.yz + e.xx * e.yy * e.zz - e.xx * e.yz * e.yz - e.yy * e.xz * e.xz -
                  e.zz * e.xy * e.xy + (e.xy * e.xy + e.xz * e.xz - e.xx * e.yy - e.xx * e.zz) * s2 + e.xx * (s2 * s2);
  return {RootsOf({a0, a1, a2, a3, a4})};
}

}  // namespace kalvex

// The reduced conductivity of a superconductor of arbitrary purity.
#pragma once

#include "numeric/complex.h"
#include "numeric/dual.h"

namespace kalvex {

// J of eps = -Wp^2/(2 w^2) J, all energies in units of 2 Delta (Delta: half the gap).
//
//     W. Zimmermann, E. H. Brandt, M. Bauer, E. Seider and L. Genzel, Physica C 183, 99 (1991)
//
//   X   frequency, above 0; X = 1 is treated as below the edge
//   Y   scattering rate, 0 or above
//   t   kT; up to kColdest, and for negative t, there are no excited quasi-particles
//
// The reduced conductivity of the paper is S = i Y/(2 X) J. Without a gap J is 2 X/(X + i Y), the Drude term.
Cplx PairIntegral(double X, double Y, double t);
// The same with derivatives by X, Y, t in the directions of the arguments.
Complex<Dual<3>> PairIntegral(const Dual<3>& X, const Dual<3>& Y, const Dual<3>& t);

// The largest t at which exp(-1/(2t)) underflows.
inline constexpr double kColdest = 5e-4;

}  // namespace kalvex

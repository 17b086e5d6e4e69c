// Superconductors of arbitrary purity: eps = i Wp^2/(w G) S, S the reduced conductivity of Zimmermann et al., Physica C
// 183, 99 (1991), see superconductor_integral.h.
//
// Common to all of them: without a gap, and where w is more than 1e10 gaps, they are the Drude term -Wp^2/(w^2 + i w
// G). The signs of G and of the gap do not count; eps(-w) = conj eps(w). The marker where (w G)^2 is below 1e-30.
#pragma once

#include "terms/term_table.h"

namespace kalvex {

// Two fluids: a share u of the weight stays unpaired,
//     eps = (1 - u) Paired(Wp, G, 2 Delta, T) + u Drude(Wp, G),   2 Delta = in2 d(T/Tc), d of gap_table.h
//   inputs   Wp, G (cm-1), 2 Delta at T = 0 (cm-1), Tc (K), T (K), u
//   guards   a Drude term for T >= Tc or Tc <= 0; T below 0 counts as 0
int CalcTwoFluidSuperconductor(const TermCall& call, Cplx& result);

// The gap follows from Tc, in the interpolation of T. P. Sheahen, Phys. Rev. 149, 368 (1966):
//     2 Delta = 3.52 kTc sqrt(cos(pi/2 (T/Tc)^2))
//   inputs   Wp, G (cm-1), T, Tc (K)
//   guards   as above
int CalcSuperconductorOfTc(const TermCall& call, Cplx& result);

// The gap is given.
//   inputs   Wp, G, 2 Delta (cm-1), T (K)
//   guards   T below 0 counts as 0
int CalcSuperconductorOfGap(const TermCall& call, Cplx& result);

}  // namespace kalvex

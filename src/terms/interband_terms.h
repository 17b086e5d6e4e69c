// Broadened lines and interband transitions. in0, in1, ... are the inputs in the order of the record; frequencies and
// widths in cm-1, weights in cm-2; D(W, G) = W^2 - w^2 - i w G.
#pragma once

#include "terms/term_table.h"

namespace kalvex {

// Lorentzian A/D(W, G) whose frequency is spread by a Gaussian of width S, in terms of the Faddeeva function.
// in0 weight A, in1 width G, in2 resonance W, in3 Gaussian width S; below 1e-10 there is no spread
int CalcFamily47(const TermCall& call, Cplx& result);
// Partial weight: the mean over the Gaussian, on 121 points from -3 to 3 of sqrt(2) S.
int ScalarFamily47(const TermCall& call, double& result);

// Interband absorption of an amorphous semiconductor: above the gap
//     Im eps = A E0 C (w - Eg)^2/(w ((w^2 - E0^2)^2 + C^2 w^2)),
// nothing below, and the real part its Kramers-Kronig transform, which tends to 0.
// in0 A, in1 broadening C, in2 peak E0, in3 gap Eg
//     G. E. Jellison and F. A. Modine, Appl. Phys. Lett. 69, 371 and 2137 (1996)
int CalcFamily200(const TermCall& call, Cplx& result);

// Gaussian lines in the real part, sum A N(w - c, s), and in the imaginary part 60 X/w with the absorption edge of a
// gap g,
//     X = E(w, g) sum A N(g - c, s) above 2 g,   E = (g^2 log((w - g + r)/g) + (w + g) r)/(w sqrt(w^2 - g^2)), r^2 = w
//     (w - 2 g)
// in0 g, then five triples A, c, s. Its real part replaces that of the whole sum so far.
int CalcGauss220(const TermCall& call, Cplx& result);

// A sum of Lorentzians A/D(W, G) over triples A, W, G. What a number of inputs that is no multiple of three has left
// stands in front: one input, a factor of the whole sum; two, weight and width of a Drude term.
int CalcBands(const TermCall& call, Cplx& result);

}  // namespace kalvex

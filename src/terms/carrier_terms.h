// Terms of free and scattered carriers. in0, in1, ... are the inputs in the order of the record; frequencies, widths
// and plasma frequencies in cm-1. A term given as a conductivity sigma in ohm-1 cm-1 adds i 60 sigma/w.
#pragma once

#include "terms/term_table.h"

namespace kalvex {

// Drude term whose width follows a power law: -Wp^2/(w (w + i G1)^(2a) (w + i G2)^(1 - 2a)).
// in0 Wp, in1 exponent a, held inside 0 to 0.5, in2 G1, in3 G2. The derivative by a is not held back where a is.
int CalcPair1(const TermCall& call, Cplx& result);

// (2 i 60/w) S ((1 + 2 z^2)(1 - 8 z^4 - 8 z^2) + 16 (z^3 + z^5) q),  z = sqrt((G - i w)/W), q = sqrt(1 + z^2).
// in0 S, in1 G, in2 W. Where w, G or W is 0: 1e30 in the imaginary part.
int CalcPair3(const TermCall& call, Cplx& result);

// (i 60/w) in0 in1/(sqrt(in1 - i w) sqrt(in1 + in2 - i w)).   in0 static conductivity, in1, in2 rates
// Where w, in1 or in2 is 0: 1e30 in the real part.
int CalcFamily5(const TermCall& call, Cplx& result);

// Drude term with back-scattering: sigma = (Wp^2/60)/(G1 - i w) (1 + c G2/(G2 - i w)).   in0 Wp, in1 c, in2 G1, in3 G2
// c = 0 is Drude, c = -1 has no static conductivity if G2 = G1 is the one rate.
//     N. V. Smith, Phys. Rev. B 64, 155106 (2001)
int CalcPair33(const TermCall& call, Cplx& result);

// Two fluids: (i/w)(4 pi S + Wp^2 (G1 - i w)/((G1 - i w)(G2 - i w) + W^2)).   in0 Wp, in1 G1, in2 G2, in3 W, in4 S
int CalcTriple140(const TermCall& call, Cplx& result);

// Interband step of a layer of Dirac electrons: imaginary part 60 X/w with
//     X = 1816.5 (3.35/d) 1/2 [tanh(h (w/2 - m)/2T) - tanh(h (-w/2 - m)/2T)] w^2/(w^2 + 4 B^2)
// in0 broadening B, in1 chemical potential m, in2 temperature T, K, in3 layer spacing d, A; h = 1.4388 cm K.
int CalcPair60(const TermCall& call, Cplx& result);

}  // namespace kalvex

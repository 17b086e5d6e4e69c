// Terms of modes that interfere or mix. in0, in1, ... are the inputs in the order of the record; frequencies, widths
// and plasma frequencies in cm-1; D(W, G) = W^2 - w^2 - i w G.
#pragma once

#include "terms/term_table.h"

namespace kalvex {

// Drude term with an impurity and a resonance: (Wp^2/w^2)(G0^2/W^2 - (w + i G0)^2/(w^2 - W^2 + i w G)).
// in0 Wp, in1 G0, in2 W, in3 G. Large W: Drude.
int CalcFamily31(const TermCall& call, Cplx& result);

// Two modes that mix: (S1^2 D2 - 2 S1 S2 C + S2^2 D1)/(D1 D2 - C^2), C = V^2 - i w g.
// in0 W1, in1 S1, in2 G1, in3 W2, in4 S2, in5 G2, in6 V, in7 g. V = g = 0: two Lorentzians.
//     A. S. Barker and J. J. Hopfield, Phys. Rev. 135, A1732 (1964)
int CalcQuad51(const TermCall& call, Cplx& result);

// Causal Fano mode: Wp^2/D(W, G) (1 + i Q/w)^2 + (Wp Q/(w W))^2.   in0 Wp, in1 G, in2 W, in3 Q. Q = 0: a Lorentzian.
//     J. Humlicek, R. Henn, M. Cardona, Phys. Rev. B 61, 14554 (2000)
int CalcFamily55(const TermCall& call, Cplx& result);

// Interference term: -(A exp(i p)/w^2)/(w - W + i G).   in0 A, in1 phase p in radians, in2 W, in3 G
int CalcPair61(const TermCall& call, Cplx& result);

// Fano line in the conductivity: sigma = (2 A/(pi G)) (1 + i q)^2/((i u - 1) q^2), u = 2 (w - W)/G; adds i 60 sigma/w.
// in0 A, in1 q, in2 W, in3 G
int CalcPair63(const TermCall& call, Cplx& result);

// Coupled oscillators: (D2 P1^2 + D1 P2^2 + K V^2 C^2)/(D1 D2 - L C^4).
// in0 W1, in1 W2, in2 P1, in3 P2, in4 G1, in5 G2, in6 C, in7 V, in8 K, in9 L
int CalcPenta80(const TermCall& call, Cplx& result);

// A resonant and an antiresonant Lorentzian: in3 (exp(i p)/(W - w - i G/2) + exp(-i p)/(W + w + i G/2)).
// in0 W, in1 G, in2 phase p in radians, in3 amplitude
//     P. G. Etchegoin, E. C. Le Ru, M. Meyer, J. Chem. Phys. 125, 164705 (2006)
int CalcPair90(const TermCall& call, Cplx& result);

}  // namespace kalvex

// Terms of one denominator: weight, width and resonance given in the way that suits the problem. in0, in1, ... are the
// inputs in the order of the record; frequencies and widths in cm-1, weights in cm-2.
#pragma once

#include "terms/term_table.h"

namespace kalvex {

// Drude term by its weight: in0/(-w^2 - i w in1).   in0 weight, in1 width
int CalcSingle9(const TermCall& call, Cplx& result);
int ScalarSingle9(const TermCall& call, double& result);

// A constant: in0 + i in1.
int CalcSingle10(const TermCall& call, Cplx& result);

// A conductivity that cannot be fitted: 60 in1/w - i 60 in0/w, 0 at w = 0. Writes no derivatives.
int CalcSingle15(const TermCall& call, Cplx& result);

// Lorentzian by its weight: in0/D(in2, in1).   in0 weight, in1 width, in2 resonance
int CalcFamily25(const TermCall& call, Cplx& result);
int ScalarFamily25(const TermCall& call, double& result);

// Transfer of weight between two resonances: in2/D(in0, in3) - in2/D(in1, in3).   in0, in1 resonances, in2 weight, in3
// width
int CalcPair27(const TermCall& call, Cplx& result);
int ScalarPair27(const TermCall& call, double& result);

// Lorentzian whose width parameter enters squared, so that a fit cannot make it negative: in0/(in2^2 - w^2 - i w
// in1^2). in0 weight, in1 root of the width, in2 resonance; in3 keeps the record's shape and is not used
int CalcFamily100(const TermCall& call, Cplx& result);
int ScalarFamily100(const TermCall& call, double& result);

}  // namespace kalvex

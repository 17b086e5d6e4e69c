// The factorised dielectric function: zeros and poles, that is longitudinal and transverse modes with widths of their
// own.
#pragma once

#include "terms/term_table.h"

namespace kalvex {

// P = A prod D(W_k, G_k)/prod D(W'_k, G'_k), D(W, G) = W^2 - w^2 - i w G   (Berreman and Unterwald, Phys. Rev. 174,
// 791)
//   inputs   A; the number n of numerators (value alone); the number m of denominators (value alone); W, G of each
//            numerator; W', G' of each denominator. cm-1
//   gives    -1 without writing anything if n and m differ; the marker where a denominator fails
int CalcFactorised(const TermCall& call, Cplx& result);

}  // namespace kalvex

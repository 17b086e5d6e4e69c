// The digamma function psi = (log Gamma)' and its derivatives for a complex argument.
#pragma once

#include <span>

#include "numeric/complex.h"

namespace kalvex {

// psi(z) and psi'(z) to about 1e-13. At a pole (0 and the negative integers) the value is not finite.
Cplx Digamma(const Cplx& z);
Cplx Trigamma(const Cplx& z);

// psi' and psi'' of many z, eight at a time, to about 1e-13 for Re z > 0.
void Trigammas(std::span<const Cplx> z, std::span<Cplx> values, std::span<Cplx> slopes);

inline constexpr int kMostPolygammas = 8;

// psi and its derivatives for Re z > 0; out[n] is the n-th derivative. At most kMostPolygammas entries.
void Polygammas(const Cplx& z, std::span<Cplx> out);

}  // namespace kalvex

// Roots of polynomials up to the fourth degree with complex coefficients.
#pragma once

#include <array>

#include "numeric/complex.h"

namespace kalvex {

inline constexpr int kMostRoots = 4;

struct PolynomialRoots {
  int degree = 0;  // that of the highest coefficient whose norm is at least 1e-20
  std::array<Cplx, kMostRoots> root{};
};

// The roots of a[0] + a[1] q + ... + a[4] q^4. Where all coefficients but the first vanish the degree is 0.
PolynomialRoots RootsOf(const std::array<Cplx, kMostRoots + 1>& a);

}  // namespace kalvex

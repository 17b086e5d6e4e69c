// Roots of polynomials up to the fourth degree with complex coefficients.
#pragma once

#include <array>

#include "numeric/complex.h"

namespace kalvex {

inline constexpr int kMostRoots = 4;

struct PolynomialRoots {
  int degree = 0;  // of the highest coefficient with a norm of at least 1e-20
  std::array<Cplx, kMostRoots> root{};
};

// The roots of a[0] + a[1] q + ... + a[4] q^4. The degree is 0 if all coefficients except the first vanish.
PolynomialRoots RootsOf(const std::array<Cplx, kMostRoots + 1>& a);

}  // namespace kalvex

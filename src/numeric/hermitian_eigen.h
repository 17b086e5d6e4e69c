// Eigenvalues and eigenvectors of real symmetric and of Hermitian matrices of any size: Householder reflections to
// tridiagonal form, then implicit QL steps. J. H. Wilkinson, C. Reinsch, Handbook for Automatic Computation II (1971),
// contributions II/2 and II/4.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "numeric/complex.h"

namespace kalvex {

inline constexpr int kMostQlSteps = 30;  // for one eigenvalue

// Room that grows to the largest size asked for, and holds the results.
struct EigenScratch {
  std::vector<double> matrix, values, vectors, beside, reflection;  // of the real problem
  std::vector<double> levels;                                       // of the Hermitian one
  std::vector<Cplx> states, candidate;
};

// The n by n symmetric matrix stands row by row in scratch.matrix, its lower triangle counts; it is used up.
//   scratch.values    n eigenvalues, ascending
//   scratch.vectors   row k is the eigenvector of eigenvalue k, of norm 1; only if wanted
//   gives             false if an eigenvalue took more than kMostQlSteps; the results then are what they had become
bool SymmetricEigen(std::size_t n, bool wantVectors, EigenScratch& scratch);

// A Hermitian n by n matrix, row by row, as the real symmetric [Re -Im; Im Re] of size 2n, in which each eigenvalue
// stands twice: every second one is read back.
//   scratch.levels    n eigenvalues, ascending
//   scratch.states    row k is the eigenvector of eigenvalue k, of norm 1 and any phase; only if wanted
//   gives             as SymmetricEigen
bool HermitianEigen(std::span<const Cplx> matrix, std::size_t n, bool wantVectors, EigenScratch& scratch);

}  // namespace kalvex

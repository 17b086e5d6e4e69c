// Eigenvalues and eigenvectors of real symmetric and of Hermitian matrices of any size: Householder reflections to
// tridiagonal form, then implicit QL steps.
//
//     J. H. Wilkinson, C. Reinsch, Handbook for Automatic Computation II (1971), contributions II/2 and II/4
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "numeric/complex.h"

namespace kalvex {

inline constexpr int kMostQlSteps = 30;  // per eigenvalue

// Work space and results. It grows to the largest size used.
struct EigenScratch {
  std::vector<double> matrix, values, vectors, beside, reflection;  // of the real problem: SymmetricEigen
  std::vector<double> levels;                                       // of the Hermitian problem
  std::vector<Cplx> states, candidate;
};

// Diagonalises a symmetric matrix. scratch.matrix holds it row by row; only the lower triangle is read. It is
// overwritten.
//
//   scratch.values    n eigenvalues, ascending
//   scratch.vectors   row k is the normalised eigenvector of eigenvalue k; only if wanted
//   returns           false if an eigenvalue needed more than kMostQlSteps; the results are then unfinished
bool SymmetricEigen(std::size_t n, bool wantVectors, EigenScratch& scratch);

// Diagonalises a Hermitian n by n matrix, given row by row, as the real symmetric matrix [Re -Im; Im Re] of size 2n.
// There each eigenvalue appears twice; every second one is used.
//
//   scratch.levels    n eigenvalues, ascending
//   scratch.states    row k is the normalised eigenvector of eigenvalue k, of arbitrary phase; only if wanted
//   returns           as SymmetricEigen
bool HermitianEigen(std::span<const Cplx> matrix, std::size_t n, bool wantVectors, EigenScratch& scratch);

}  // namespace kalvex

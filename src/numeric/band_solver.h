// Cholesky solution of a symmetric, positive definite system whose matrix may be full, or banded, or banded but for a
// few unknowns that meet all the others.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// What is known of the factors of a matrix besides those that stand below its diagonal.
struct BandFactor {
  std::vector<double> inverseDiagonal;
  std::size_t border = 0;        // leading rows that were kept out
  std::vector<std::size_t> top;  // of each column behind the border: its first row behind it with something in it
};

// Solves A x = b by A = L L^T inside the profile that A itself shows: no column is looked at above its first entry that
// is not 0. Leading rows that would fill all columns are kept out and eliminated last, so that a band with a few full
// rows or columns costs what a band costs.
//
//   a          read on the diagonal and above, which stay as they are; the factors go below
//
//   decompose  false: the factors are those of an earlier call with the same a
//
//   pool       shares the decomposition of a full matrix; what comes out does not depend on it
//
//   gives      0, or -1 if A is not positive definite (x is then untouched)
int SolveBanded(const SquareMatrix& a, BandFactor& factor, std::span<const double> b, std::span<double> x,
                bool decompose, ThreadPool* pool = nullptr);

}  // namespace kalvex

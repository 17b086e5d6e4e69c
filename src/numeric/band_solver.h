// Cholesky solution of a symmetric, positive definite system. The matrix may be full, banded, or banded with a few full
// rows and columns.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// What describes the factors of a matrix in addition to the entries below its diagonal.
struct BandFactor {
  std::vector<double> inverseDiagonal;
  std::size_t border = 0;        // number of leading rows that are eliminated last
  std::vector<std::size_t> top;  // first nonzero row of each column, after the border
};

// Solves A x = b by A = L L^T within the profile of A: in each column only the entries from the first nonzero one are
// used. Full leading rows would fill all columns. They are eliminated last, and the cost stays that of a band.
//
//   a          read on the diagonal and above, which stay unchanged; the factors are written below
//
//   decompose  false: reuse the factors of an earlier call with the same a
//
//   pool       shares the decomposition of a full matrix; the result does not depend on it
//
//   returns    0, or -1 if A is not positive definite (x is then unchanged)
int SolveBanded(const SquareMatrix& a, BandFactor& factor, std::span<const double> b, std::span<double> x,
                bool decompose, ThreadPool* pool = nullptr);

}  // namespace kalvex

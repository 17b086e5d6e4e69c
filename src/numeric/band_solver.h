// Cholesky solution of a symmetric, positive definite system whose matrix may be banded, or banded but for a few
// leading unknowns that meet all the others.
#pragma once

#include <cstddef>
#include <span>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// Solves A x = b by A = L L^T inside the band that A itself shows. Leading rows that are much longer than the rest are
// kept out of the band and eliminated last, so that a band with a few full rows costs what a band costs.
//
//   a                read on the diagonal and above, which stay as they are; the factors go below
//
//   inverseDiagonal  of the factors, size entries
//
//   decompose        false: the factors are those of an earlier call with the same a
//
//   pool             shares the decomposition of a wide band; what comes out does not depend on it
//
//   gives            0, or -1 if A is not positive definite (x is then untouched)
int SolveBanded(const SquareMatrix& a, std::span<double> inverseDiagonal, std::span<const double> b,
                std::span<double> x, bool decompose, ThreadPool* pool = nullptr);

}  // namespace kalvex

// Cholesky factors of a full matrix, or of one whose band is so wide that it is treated as full.
#pragma once

#include <cstddef>
#include <span>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// A = L L^T. Reads the diagonal of a and the entries above it. Writes L below the diagonal, and the inverses of the
// diagonal elements of L to inverseDiagonal. Returns 0, or -1 if the matrix is not positive definite. The result does
// not depend on the pool.
int FactorFull(const SquareMatrix& a, std::span<double> inverseDiagonal, ThreadPool* pool);

}  // namespace kalvex

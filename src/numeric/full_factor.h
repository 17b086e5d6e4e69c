// Cholesky factors of a matrix that is full, or whose band is so wide that it counts as full.
#pragma once

#include <cstddef>
#include <span>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// A = L L^T. Reads the diagonal of a and what is above, writes L below the diagonal and the inverses of its diagonal
// elements to inverseDiagonal. Gives 0, or -1 if the matrix is not positive definite. The pool changes nothing in the
// result.
int FactorFull(const SquareMatrix& a, std::span<double> inverseDiagonal, ThreadPool* pool);

}  // namespace kalvex

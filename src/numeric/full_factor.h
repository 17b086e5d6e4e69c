// Cholesky factors of a matrix that is full, or whose band is so wide that it counts as full.
#pragma once

#include <cstddef>
#include <span>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// A = L L^T for the part of a from row and column `first` on. Reads the diagonal and what is above, writes L below the
// diagonal and the inverses of its diagonal elements, from `first` on, to inverseDiagonal. Gives 0, or -1 if that part
// is not positive definite. The pool changes nothing in the result.
int FactorFull(const SquareMatrix& a, std::size_t first, std::span<double> inverseDiagonal, ThreadPool* pool);

}  // namespace kalvex

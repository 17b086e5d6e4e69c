// Cholesky solution of a symmetric, positive definite system whose matrix may be banded.
#pragma once

#include <cstddef>
#include <span>

namespace kalvex {

// A square matrix in row order: entry (i, j) at data[i*size + j].
struct SquareMatrix {
  double* data = nullptr;
  std::size_t size = 0;
  double& operator()(std::size_t i, std::size_t j) const { return data[i * size + j]; }
  double* Row(std::size_t i) const { return data + i * size; }
};

// Half-bandwidth: the largest j - i with a non-zero entry (i, j) above the diagonal, at least 1.
std::size_t HalfBandwidth(const SquareMatrix& a);

// Solves A x = b by A = L L^T inside the band that A itself shows.
//   a                reads the diagonal and the upper triangle, which stay as they are; L goes below the diagonal
//   inverseDiagonal  1/L(i, i), size entries
//   decompose        false: L and inverseDiagonal are those of an earlier call
//   gives            0, or -1 if A is not positive definite (x is then untouched); allocates nothing
int SolveBanded(const SquareMatrix& a, std::span<double> inverseDiagonal, std::span<const double> b,
                std::span<double> x, bool decompose);

}  // namespace kalvex

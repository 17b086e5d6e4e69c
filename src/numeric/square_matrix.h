#pragma once

#include <cstddef>

namespace kalvex {

// A square matrix in row order: entry (i, j) at data[i*size + j].
struct SquareMatrix {
  double* data = nullptr;
  std::size_t size = 0;
  double& operator()(std::size_t i, std::size_t j) const { return data[i * size + j]; }
  double* Row(std::size_t i) const { return data + i * size; }
};

}  // namespace kalvex

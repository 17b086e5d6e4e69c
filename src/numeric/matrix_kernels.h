// The loops of sums of outer products and of factorisations. A small tile of a matrix stays in registers while the
// products of many vectors are added to it.
//
// Only in these sums may the compiler fuse a product with a sum: a solution then takes a tenth less time. They
// determine the steps of a fit. The last bits of its result therefore depend on whether the machine fuses.
#pragma once

#include <cstddef>
#include <span>

#include "core/vector_width.h"

namespace kalvex {

// A tile has 8 rows and 16 columns; vectors are read in strips of 16 entries.
inline constexpr std::size_t kTileRows = 8;
inline constexpr std::size_t kTileColumns = 16;

struct MatrixKernels {
  // out[r*stride + c] += sign * sum over p < count of rows[16 p + r] columns[16 p + c]. sign is 1 or -1. The sum is
  // formed first, in the order of p.
  void (*addTile)(const double* rows, const double* columns, std::size_t count, double sign, double* out,
                  std::size_t stride);
  // out[c] += weights[p] strip[16 p + c], for one p after the other and the 16 entries of the strip.
  void (*addWeightedStrip)(std::span<const double> weights, const double* strip, double* out);
  // Solves L X = X for a tile X of rows of 16, where L is 8 by 8: its entry (r, q) is l[16 q + r], and the
  // inverse of its diagonal element r is inverseDiagonal[r].
  void (*solveTile)(const double* l, const double* inverseDiagonal, double* x);
  // Sum of a[i] b[i]: eight partial sums, each of every eighth product, are added at the end.
  double (*dot)(const double* a, const double* b, std::size_t count);
  // out -= factor a
  void (*subtract)(double factor, const double* a, std::size_t count, double* out);
  std::size_t (*countOthersThanZero)(const double* a, std::size_t count);
};

}  // namespace kalvex

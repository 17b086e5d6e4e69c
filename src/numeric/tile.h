// The loop that sums of outer products and blocked factorisations share: a small tile of a matrix stays in registers
// while the products of many vectors are added to it.
#pragma once

#include <cstddef>
#include <span>

namespace kalvex {

// A tile has 8 rows and 16 columns. Vectors are stored in strips of 16 entries.
inline constexpr std::size_t kTileRows = 8;
inline constexpr std::size_t kTileColumns = 16;

// out[r*stride + c] += sign * sum over p < count of rows[16 p + r] columns[16 p + c]. sign is 1 or -1. The sum is
// formed first, in the order of p.
void AddTile(const double* rows, const double* columns, std::size_t count, double sign, double* out,
             std::size_t stride);

// out[c] += weights[p] strip[16 p + c] for the 16 entries of the strip, in the order of p.
void AddWeightedStrip(std::span<const double> weights, const double* strip, double* out);

// Solves L X = B in place, for a tile x with rows of 16. L is 8 by 8: its entry (r, q) is l[16 q + r], and
// inverseDiagonal[r] is the inverse of its diagonal element r.
void SolveTile(const double* l, const double* inverseDiagonal, double* x);

}  // namespace kalvex

#include "numeric/tile.h"

#include <cstring>

#include "core/vector_clones.h"

namespace kalvex {
namespace {

constexpr std::size_t kPack = 8;
typedef double Pack __attribute__((vector_size(kPack * sizeof(double))));

// Rows rows and Packs packs of columns of a tile. Each sum is a variable that stays in a register.
template <std::size_t Rows, std::size_t Packs>
[[gnu::always_inline]] inline void AddPart(const double* rows, const double* columns, std::size_t count, double sign,
                                           double* out, std::size_t stride) {
#pragma GCC unroll 8
  for (std::size_t r = 0; r < Rows; ++r) {  // prefetched while the sums are formed
    __builtin_prefetch(out + r * stride, 1);
    __builtin_prefetch(out + r * stride + Packs * kPack - 1, 1);
  }
  Pack sum[Rows][Packs] = {};
  for (std::size_t p = 0; p < count; ++p, rows += kTileColumns, columns += kTileColumns) {
    Pack b[Packs];
#pragma GCC unroll 2
    for (std::size_t c = 0; c < Packs; ++c) std::memcpy(&b[c], columns + c * kPack, sizeof(Pack));
#pragma GCC unroll 8
    for (std::size_t r = 0; r < Rows; ++r) {
#pragma GCC unroll 2
      for (std::size_t c = 0; c < Packs; ++c) sum[r][c] += rows[r] * b[c];
    }
  }
#pragma GCC unroll 8
  for (std::size_t r = 0; r < Rows; ++r) {
#pragma GCC unroll 2
    for (std::size_t c = 0; c < Packs; ++c) {
      Pack before;
      std::memcpy(&before, out + r * stride + c * kPack, sizeof(Pack));
      before += sign * sum[r][c];
      std::memcpy(out + r * stride + c * kPack, &before, sizeof(Pack));
    }
  }
}

// With 32 registers of 8 numbers the whole tile fits into registers.
KALVEX_VECTOR_CLONES void AddWhole(const double* rows, const double* columns, std::size_t count, double sign,
                                   double* out, std::size_t stride) {
  AddPart<kTileRows, 2>(rows, columns, count, sign, out, stride);
}

// With 16 registers of 4 numbers a quarter of the tile fits.
KALVEX_VECTOR_CLONES void AddQuarters(const double* rows, const double* columns, std::size_t count, double sign,
                                      double* out, std::size_t stride) {
  for (std::size_t r = 0; r < kTileRows; r += 4) {
    for (std::size_t c = 0; c < kTileColumns; c += kPack) {
      AddPart<4, 1>(rows + r, columns + c, count, sign, out + r * stride + c, stride);
    }
  }
}

}  // namespace

KALVEX_VECTOR_CLONES void AddWeightedStrip(std::span<const double> weights, const double* strip, double* out) {
  Pack sum[2];
  std::memcpy(sum, out, sizeof(sum));
  for (const double weight : weights) {
    Pack v[2];
    std::memcpy(v, strip, sizeof(v));
    sum[0] += weight * v[0];
    sum[1] += weight * v[1];
    strip += kTileColumns;
  }
  std::memcpy(out, sum, sizeof(sum));
}

KALVEX_VECTOR_CLONES void SolveTile(const double* l, const double* inverseDiagonal, double* x) {
  for (std::size_t c = 0; c < kTileColumns; c += kPack) {
    Pack rows[kTileRows];
#pragma GCC unroll 8
    for (std::size_t r = 0; r < kTileRows; ++r) {
      std::memcpy(&rows[r], x + r * kTileColumns + c, sizeof(Pack));
#pragma GCC unroll 8
      for (std::size_t q = 0; q < r; ++q) rows[r] -= l[q * kTileColumns + r] * rows[q];
      rows[r] *= inverseDiagonal[r];
      std::memcpy(x + r * kTileColumns + c, &rows[r], sizeof(Pack));
    }
  }
}

void AddTile(const double* rows, const double* columns, std::size_t count, double sign, double* out,
             std::size_t stride) {
  (HasWideVectors() ? AddWhole : AddQuarters)(rows, columns, count, sign, out, stride);
}

}  // namespace kalvex

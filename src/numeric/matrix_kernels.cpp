#include "numeric/matrix_kernels.h"

#include <cstdint>

#include "numeric/pack.h"

namespace kalvex {
namespace {

constexpr VectorWidth kWidth = VectorWidth::KALVEX_VECTOR_WIDTH;

// A part of the tile of `Rows` rows and `Packs` packs of columns. Each sum is a variable that stays in a register.
template <std::size_t Rows, std::size_t Packs>
[[gnu::always_inline]] inline void AddPart(const double* rows, const double* columns, std::size_t count, double sign,
                                           double* out, std::size_t stride) {
#pragma GCC unroll 8
  for (std::size_t r = 0; r < Rows; ++r) {  // in the cache when the sums are complete
    __builtin_prefetch(out + r * stride, 1);
    __builtin_prefetch(out + r * stride + Packs * kPack - 1, 1);
  }
  Pack sum[Rows][Packs] = {};
  for (std::size_t p = 0; p < count; ++p, rows += kTileColumns, columns += kTileColumns) {
    Pack b[Packs];
#pragma GCC unroll 2
    for (std::size_t c = 0; c < Packs; ++c) b[c] = Pack::Load(columns + c * kPack);
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
      double* const to = out + r * stride + c * kPack;
      (Pack::Load(to) + sign * sum[r][c]).Store(to);
    }
  }
}

KALVEX_FLATTEN void AddTile(const double* rows, const double* columns, std::size_t count, double sign, double* out,
                            std::size_t stride) {
  if constexpr (kWidth == VectorWidth::kAvx512) {
    // With 32 registers of 8 numbers the whole tile fits.
    AddPart<kTileRows, 2>(rows, columns, count, sign, out, stride);
  } else {
    // With 16 registers of 4 numbers a quarter of it fits.
    for (std::size_t r = 0; r < kTileRows; r += 4) {
      for (std::size_t c = 0; c < kTileColumns; c += kPack) {
        AddPart<4, 1>(rows + r, columns + c, count, sign, out + r * stride + c, stride);
      }
    }
  }
}

KALVEX_FLATTEN void AddWeightedStrip(std::span<const double> weights, const double* strip, double* out) {
  Pack low = Pack::Load(out), high = Pack::Load(out + kPack);
  for (const double weight : weights) {
    low += weight * Pack::Load(strip);
    high += weight * Pack::Load(strip + kPack);
    strip += kTileColumns;
  }
  low.Store(out);
  high.Store(out + kPack);
}

KALVEX_FLATTEN void SolveTile(const double* l, const double* inverseDiagonal, double* x) {
  for (std::size_t c = 0; c < kTileColumns; c += kPack) {
    Pack rows[kTileRows];
#pragma GCC unroll 8
    for (std::size_t r = 0; r < kTileRows; ++r) {
      rows[r] = Pack::Load(x + r * kTileColumns + c);
#pragma GCC unroll 8
      for (std::size_t q = 0; q < r; ++q) rows[r] -= l[q * kTileColumns + r] * rows[q];
      rows[r] *= inverseDiagonal[r];
      rows[r].Store(x + r * kTileColumns + c);
    }
  }
}

KALVEX_FLATTEN double Dot(const double* a, const double* b, std::size_t count) {
  Pack sums;
  std::size_t i = 0;
  for (; i + kPack <= count; i += kPack) sums += Pack::Load(a + i) * Pack::Load(b + i);
  double rest = 0;
  for (; i < count; ++i) rest += a[i] * b[i];
  const auto& sum = sums.x;
  return ((sum[0] + sum[1]) + (sum[2] + sum[3])) + ((sum[4] + sum[5]) + (sum[6] + sum[7])) + rest;
}

void Subtract(double factor, const double* a, std::size_t count, double* out) {
  for (std::size_t i = 0; i < count; ++i) out[i] -= factor * a[i];
}

std::size_t CountOthersThanZero(const double* a, std::size_t count) {
  std::int64_t others = 0;  // 64 bits like a double: the comparison vectorises
  for (std::size_t i = 0; i < count; ++i) others += a[i] != 0 ? 1 : 0;
  return static_cast<std::size_t>(others);
}

}  // namespace

template <>
const MatrixKernels& KernelsOfWidth<MatrixKernels, kWidth>() {
  static constexpr MatrixKernels kKernels = {AddTile, AddWeightedStrip, SolveTile, Dot, Subtract, CountOthersThanZero};
  return kKernels;
}

}  // namespace kalvex

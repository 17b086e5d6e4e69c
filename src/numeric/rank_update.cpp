#include "numeric/rank_update.h"

#include <algorithm>

// One binary for every x86-64: the kernel is compiled for each width of the vector units, and the best one is taken
// when the program starts.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define KALVEX_VECTOR_CLONES __attribute__((target_clones("arch=x86-64-v4", "arch=x86-64-v3", "default")))
#else
#define KALVEX_VECTOR_CLONES
#endif

namespace kalvex {
namespace {

// A tile of the matrix that the registers of a vector unit can hold: 4 x 16 doubles.
constexpr std::size_t kTileRows = 4;
constexpr std::size_t kTileColumns = 16;

KALVEX_VECTOR_CLONES void AddTile(const double* rows, const double* columns, std::size_t stride, std::size_t count,
                                  double* tile) {
  double sum[kTileRows][kTileColumns] = {};
  for (std::size_t p = 0; p < count; ++p, rows += stride, columns += stride) {
    for (std::size_t r = 0; r < kTileRows; ++r) {
      for (std::size_t c = 0; c < kTileColumns; ++c) sum[r][c] += rows[r] * columns[c];
    }
  }
  for (std::size_t r = 0; r < kTileRows; ++r) {
    for (std::size_t c = 0; c < kTileColumns; ++c) tile[r * kTileColumns + c] = sum[r][c];
  }
}

}  // namespace

VectorPanel::VectorPanel(std::size_t length)
    : length_(length), stride_((length + kTileColumns - 1) / kTileColumns * kTileColumns), data_(kMost * stride_) {}

std::span<double> VectorPanel::Add() {
  double* const row = data_.data() + count_++ * stride_;
  std::fill_n(row, stride_, 0.0);
  return {row, length_};
}

void AddOuterProducts(const VectorPanel& panel, const SquareMatrix& a) {
  double tile[kTileRows * kTileColumns];
  for (std::size_t i = 0; i < a.size; i += kTileRows) {
    const std::size_t rows = std::min(kTileRows, a.size - i);
    for (std::size_t j = i / kTileColumns * kTileColumns; j < a.size; j += kTileColumns) {
      AddTile(panel.Row(0) + i, panel.Row(0) + j, panel.Stride(), panel.Count(), tile);
      const std::size_t columns = std::min(kTileColumns, a.size - j);
      for (std::size_t r = 0; r < rows; ++r) {
        for (std::size_t c = 0; c < columns; ++c) a(i + r, j + c) += tile[r * kTileColumns + c];
      }
    }
  }
}

}  // namespace kalvex

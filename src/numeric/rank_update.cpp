#include "numeric/rank_update.h"

#include <algorithm>
#include <cstring>

#include "core/vector_clones.h"

namespace kalvex {
namespace {

// A tile of the matrix that the registers of a wide vector unit can hold: 8 rows of two packs of 8.
constexpr std::size_t kTileRows = 8;
constexpr std::size_t kPack = 8;
typedef double Pack __attribute__((vector_size(kPack * sizeof(double))));

// tile = sum over the vectors of rows times columns; both point at their entries in the first vector.
KALVEX_VECTOR_CLONES void SumTile(const double* rows, const double* columns, std::size_t count, double* tile) {
  Pack sum[kTileRows][2] = {};
  for (std::size_t p = 0; p < count; ++p, rows += VectorPanel::kStrip, columns += VectorPanel::kStrip) {
    Pack b[2];
    std::memcpy(b, columns, sizeof(b));
#pragma GCC unroll 8
    for (std::size_t r = 0; r < kTileRows; ++r) {
      sum[r][0] += rows[r] * b[0];
      sum[r][1] += rows[r] * b[1];
    }
  }
  std::memcpy(tile, sum, sizeof(sum));
}

}  // namespace

VectorPanel::VectorPanel(std::size_t length) : data_((length + kStrip - 1) / kStrip * kStrip * kMost) {}

void VectorPanel::Begin(double weight) {
  weight_[count_] = weight;
  double* entry = data_.data() + count_++ * kStrip;
  for (std::size_t done = 0; done < data_.size(); done += kMost * kStrip, entry += kMost * kStrip) {
    std::fill_n(entry, kStrip, 0.0);
  }
}

namespace {

constexpr std::size_t kStrip = VectorPanel::kStrip;

// The columns of one strip of the matrix.
void AddToStrip(std::span<const VectorPanel* const> panels, const SquareMatrix& a, std::size_t j) {
  double tile[kTileRows * kStrip];
  const std::size_t columns = std::min(kStrip, a.size - j);
  for (std::size_t i = 0; i < std::min(j + kStrip, a.size); i += kTileRows) {
    const std::size_t rows = std::min(kTileRows, a.size - i);
    for (const VectorPanel* const panel : panels) {
      SumTile(panel->Strip(i) + i % kStrip, panel->Strip(j), panel->Count(), tile);
      for (std::size_t r = 0; r < rows; ++r) {
        double* const out = a.Row(i + r) + j;
        for (std::size_t c = 0; c < columns; ++c) out[c] += tile[r * kStrip + c];
      }
    }
  }
}

// The entries of one strip of the weighted sum.
void AddToSum(std::span<const VectorPanel* const> panels, std::span<double> b, std::size_t j) {
  double sum[kStrip] = {};
  const std::size_t columns = std::min(kStrip, b.size() - j);
  std::copy_n(b.data() + j, columns, sum);
  for (const VectorPanel* const panel : panels) {
    const double* v = panel->Strip(j);
    for (std::size_t p = 0; p < panel->Count(); ++p, v += kStrip) {
      for (std::size_t c = 0; c < kStrip; ++c) sum[c] += panel->Weight(p) * v[c];
    }
  }
  std::copy_n(sum, columns, b.data() + j);
}

}  // namespace

void AddOuterProducts(std::span<const VectorPanel* const> panels, const SquareMatrix& a, std::span<double> b,
                      ThreadPool* pool) {
  constexpr std::size_t kLeastWork = 1000000;  // products that are worth waking a thread
  const std::size_t strips = (a.size + kStrip - 1) / kStrip;
  const bool pays = panels.size() * VectorPanel::kMost * a.size * a.size >= kLeastWork;
  // The longest strips first, so that no thread is left alone with one at the end.
  ParallelFor(pays ? pool : nullptr, strips, [&](std::size_t task, std::size_t) {
    const std::size_t j = (strips - 1 - task) * kStrip;
    AddToStrip(panels, a, j);
    AddToSum(panels, b, j);
  });
}

}  // namespace kalvex

#include "numeric/rank_update.h"

#include <algorithm>

#include "numeric/matrix_kernels.h"

namespace kalvex {

static_assert(VectorPanel::kStrip == kTileColumns);

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

// A tile at the edge of the matrix, which is only partly inside.
void AddToEdge(const VectorPanel& panel, const SquareMatrix& a, std::size_t i, std::size_t j) {
  double tile[kTileRows * kStrip] = {};
  const std::size_t rows = std::min(kTileRows, a.size - i), columns = std::min(kStrip, a.size - j);
  for (std::size_t r = 0; r < rows; ++r) std::copy_n(a.Row(i + r) + j, columns, tile + r * kStrip);
  WidestKernels<MatrixKernels>().addTile(panel.Rows(i), panel.Strip(j), panel.Count(), 1, tile, kStrip);
  for (std::size_t r = 0; r < rows; ++r) std::copy_n(tile + r * kStrip, columns, a.Row(i + r) + j);
}

// Adds to one block of rows of the matrix. The entries of its vectors stay in the cache while the strips of columns are
// read one by one.
void AddToRows(std::span<const VectorPanel* const> panels, const SquareMatrix& a, std::size_t from, std::size_t to) {
  for (std::size_t j = from / kStrip * kStrip; j < a.size; j += kStrip) {
    for (const VectorPanel* const panel : panels) {
      for (std::size_t i = from; i < std::min(to, j + kStrip); i += kTileRows) {
        if (i + kTileRows > a.size || j + kStrip > a.size) {
          AddToEdge(*panel, a, i, j);
        } else {
          WidestKernels<MatrixKernels>().addTile(panel->Rows(i), panel->Strip(j), panel->Count(), 1, a.Row(i) + j,
                                                 a.size);
        }
      }
    }
  }
}

// Adds to one strip of the weighted sum.
void AddToSum(std::span<const VectorPanel* const> panels, std::span<double> b, std::size_t j) {
  double sum[kStrip] = {};
  const std::size_t columns = std::min(kStrip, b.size() - j);
  std::copy_n(b.data() + j, columns, sum);
  for (const VectorPanel* const panel : panels) {
    WidestKernels<MatrixKernels>().addWeightedStrip(panel->Weights(), panel->Strip(j), sum);
  }
  std::copy_n(sum, columns, b.data() + j);
}

}  // namespace

void AddOuterProducts(std::span<const VectorPanel* const> panels, const SquareMatrix& a, std::span<double> b,
                      ThreadPool* pool) {
  // A task has few rows, which shortens the wait for the last thread. The longest tasks come first.
  const std::size_t rowsOfTask = a.size < 512 ? kTileRows : 4 * kTileRows;
  const std::size_t tasks = (a.size + rowsOfTask - 1) / rowsOfTask;
  const double nanoseconds = NanosecondsOfOuterProducts(panels.size() * VectorPanel::kMost, a.size);
  ParallelFor(IfItPays(pool, nanoseconds), tasks, [&](std::size_t task, std::size_t) {
    const std::size_t from = task * rowsOfTask, to = std::min(a.size, from + rowsOfTask);
    AddToRows(panels, a, from, to);
    for (std::size_t j = (from + kStrip - 1) / kStrip * kStrip; j < to; j += kStrip) AddToSum(panels, b, j);
  });
}

}  // namespace kalvex

#include "numeric/full_factor.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "numeric/matrix_kernels.h"

namespace kalvex {
namespace {

constexpr std::size_t kBlock = 64;            // columns of L computed together
constexpr std::size_t kStrip = kTileColumns;  // rows of L stored together
constexpr std::size_t kPiece = kBlock * kStrip;
constexpr std::size_t kStripsOfBlock = kBlock / kStrip;

// L in the storage order in which the tiles read it. L is divided into blocks of columns. A piece holds one strip of 16
// rows of a block: the 16 entries of its first column, then those of the next. The pieces of a block begin at the strip
// with its diagonal.
class PackedFactor {
 public:
  explicit PackedFactor(std::size_t rows)
      : strips_((rows + kStrip - 1) / kStrip),
        data_(std::make_unique_for_overwrite<double[]>(PlaceOf((rows + kBlock - 1) / kBlock) * kPiece)) {}

  std::size_t Strips() const { return strips_; }
  double* Piece(std::size_t block, std::size_t strip) const {
    return data_.get() + (PlaceOf(block) + strip - block * kStripsOfBlock) * kPiece;
  }
  // Row i in the block's first column.
  const double* Row(std::size_t block, std::size_t i) const { return Piece(block, i / kStrip) + i % kStrip; }

 private:
  // The number of pieces in front of a block. Each block has kStripsOfBlock pieces fewer than the previous one.
  std::size_t PlaceOf(std::size_t block) const {
    return block * strips_ - (block > 0 ? block * (block - 1) / 2 * kStripsOfBlock : 0);
  }

  std::size_t strips_;
  std::unique_ptr<double[]> data_;
};

struct Factoring {
  const SquareMatrix& a;
  std::span<double> inverseDiagonal;
  PackedFactor packed;
  const MatrixKernels& kernels = WidestKernels<MatrixKernels>();

  std::size_t Rows() const { return a.size; }
};

// Copies the block's rows of the matrix above the diagonal, which are its columns by symmetry. The rest of the piece is
// 0.
void TakeFromMatrix(const Factoring& work, std::size_t block, std::size_t strip) {
  const std::size_t from = block * kBlock, j = strip * kStrip;
  double* const piece = work.packed.Piece(block, strip);
  std::fill_n(piece, kPiece, 0.0);
  const std::size_t end = std::min(j + kStrip, work.Rows());
  for (std::size_t k = from; k < std::min(from + kBlock, end); ++k) {
    const double* const row = work.a.Row(k);
    const std::size_t begin = std::max(j, k);
    std::copy(row + begin, row + end, piece + (k - from) * kStrip + (begin - j));
  }
}

// Subtracts the products of the finished blocks from the strips begin to end - 1 of a block.
void SubtractFinished(const Factoring& work, std::size_t block, std::size_t begin, std::size_t end) {
  for (std::size_t done = 0; done < block; ++done) {
    for (std::size_t k = 0; k < kBlock; k += kTileRows) {
      if (block * kBlock + k >= work.Rows()) break;
      const double* const rows = work.packed.Row(done, block * kBlock + k);
      for (std::size_t s = begin; s < end; ++s) {
        work.kernels.addTile(rows, work.packed.Piece(done, s), kBlock, -1, work.packed.Piece(block, s) + k * kStrip,
                             kStrip);
      }
    }
  }
}

// Factors a few columns in the strip of their diagonal, from lane `lane` on. The products of the earlier columns are
// already subtracted. False if a pivot is not positive.
bool FindPivots(std::size_t lane, std::size_t count, double* inverseDiagonal, double* tile) {
  for (std::size_t r = 0; r < count; ++r) {
    double* const out = tile + r * kStrip;
    for (std::size_t q = 0; q < r; ++q) {
      const double l = tile[q * kStrip + lane + r];
      for (std::size_t c = lane + r; c < kStrip; ++c) out[c] -= l * tile[q * kStrip + c];
    }
    if (!(out[lane + r] > 0)) return false;
    inverseDiagonal[r] = 1 / std::sqrt(out[lane + r]);
    for (std::size_t c = lane + r; c < kStrip; ++c) out[c] *= inverseDiagonal[r];
  }
  return true;
}

void SubtractOwn(const Factoring& work, std::size_t block, std::size_t k, std::size_t strip) {
  double* const piece = work.packed.Piece(block, strip);
  work.kernels.addTile(work.packed.Row(block, block * kBlock + k), piece, k, -1, piece + k * kStrip, kStrip);
}

void SolveColumns(const Factoring& work, std::size_t block, std::size_t k, std::size_t strip) {
  const std::size_t i = block * kBlock + k;
  if (i >= work.Rows()) return;
  double inverse[kTileRows] = {};
  std::copy_n(work.inverseDiagonal.data() + i, std::min(kTileRows, work.Rows() - i), inverse);
  work.kernels.solveTile(work.packed.Row(block, i) + k * kStrip, inverse, work.packed.Piece(block, strip) + k * kStrip);
}

// Factors the square on the diagonal. False if a pivot is not positive.
bool FactorSquare(const Factoring& work, std::size_t block) {
  const std::size_t from = block * kBlock, begin = block * kStripsOfBlock;
  const std::size_t end = std::min(begin + kStripsOfBlock, work.packed.Strips());
  for (std::size_t k = 0; k < kBlock && from + k < work.Rows(); k += kTileRows) {
    const std::size_t own = begin + k / kStrip;
    for (std::size_t s = own; s < end; ++s) SubtractOwn(work, block, k, s);
    const std::size_t count = std::min(kTileRows, work.Rows() - from - k);
    double* const tile = work.packed.Piece(block, own) + k * kStrip;
    if (!FindPivots(k % kStrip, count, work.inverseDiagonal.data() + from + k, tile)) return false;
    for (std::size_t s = own + 1; s < end; ++s) SolveColumns(work, block, k, s);
  }
  return true;
}

void PutIntoMatrix(const Factoring& work, std::size_t block, std::size_t strip) {
  const std::size_t from = block * kBlock;
  const double* const piece = work.packed.Piece(block, strip);
  for (std::size_t j = strip * kStrip; j < std::min(strip * kStrip + kStrip, work.Rows()); ++j) {
    double* const row = work.a.Row(j);
    for (std::size_t k = from; k < std::min(from + kBlock, j); ++k) row[k] = piece[(k - from) * kStrip + j % kStrip];
  }
}

// Computes some strips of a block below its square. Strips are independent of each other, and threads can share them.
void FinishStrips(const Factoring& work, std::size_t block, std::size_t begin, std::size_t end) {
  for (std::size_t s = begin; s < end; ++s) TakeFromMatrix(work, block, s);
  SubtractFinished(work, block, begin, end);
  for (std::size_t s = begin; s < end; ++s) {
    for (std::size_t k = 0; k < kBlock; k += kTileRows) {
      SubtractOwn(work, block, k, s);
      SolveColumns(work, block, k, s);
    }
    PutIntoMatrix(work, block, s);
  }
}

}  // namespace

int FactorFull(const SquareMatrix& a, std::span<double> inverseDiagonal, ThreadPool* pool) {
  constexpr std::size_t kStripsOfTask = 4;
  constexpr double kNanosecondsOfProduct = 0.012;
  const auto poolFor = [&](std::size_t products) {
    return IfItPays(pool, static_cast<double>(products) * kNanosecondsOfProduct);
  };
  const Factoring work{a, inverseDiagonal, PackedFactor(a.size)};
  const std::size_t strips = work.packed.Strips();
  for (std::size_t block = 0; block * kBlock < work.Rows(); ++block) {
    const std::size_t begin = block * kStripsOfBlock, below = std::min(begin + kStripsOfBlock, strips);
    ParallelFor(poolFor(block * kBlock * kBlock * kBlock), below - begin, [&](std::size_t task, std::size_t) {
      TakeFromMatrix(work, block, begin + task);
      SubtractFinished(work, block, begin + task, begin + task + 1);
    });
    if (!FactorSquare(work, block)) return -1;
    for (std::size_t s = begin; s < below; ++s) PutIntoMatrix(work, block, s);
    const std::size_t products = (strips - below) * kStrip * (block + 1) * kBlock * kBlock;
    ParallelFor(poolFor(products), (strips - below + kStripsOfTask - 1) / kStripsOfTask,
                [&](std::size_t task, std::size_t) {
                  const std::size_t from = below + task * kStripsOfTask;
                  FinishStrips(work, block, from, std::min(strips, from + kStripsOfTask));
                });
  }
  return 0;
}

}  // namespace kalvex

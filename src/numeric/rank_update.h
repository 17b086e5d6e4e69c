// Adds many outer products to a symmetric matrix at once.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "numeric/square_matrix.h"
#include "numeric/thread_pool.h"

namespace kalvex {

// Vectors of one length that are collected to be added as outer products. They are stored in strips of 16 entries. A
// strip holds its entries of all vectors, one vector after the other: a tile of the matrix reads memory in order.
class VectorPanel {
 public:
  static constexpr std::size_t kMost = 64;
  static constexpr std::size_t kStrip = 16;

  explicit VectorPanel(std::size_t length);

  std::size_t Count() const { return count_; }
  bool IsFull() const { return count_ == kMost; }
  // Begins the next vector, filled with zeros, with its weight.
  void Begin(double weight);
  // Entry i of the vector that was begun last.
  double& operator[](std::size_t i) {
    return data_[i / kStrip * (kMost * kStrip) + (count_ - 1) * kStrip + i % kStrip];
  }
  void Clear() { count_ = 0; }
  std::span<const double> Weights() const { return std::span(weight_).first(count_); }

  // Begins several vectors. The caller must write all their entries: RowsFrom(i, v), with i a multiple of kStrip,
  // points to entries i to i + kStrip - 1 of vector v. Those of the next vector follow at kStrip.
  void BeginMany(std::span<const double> weights) {
    for (const double weight : weights) weight_[count_++] = weight;
  }
  double* RowsFrom(std::size_t i, std::size_t vector) {
    return data_.data() + i / kStrip * (kMost * kStrip) + vector * kStrip;
  }
  // Removes all vectors except the first `count`.
  void Shorten(std::size_t count) { count_ = count; }
  const double* Strip(std::size_t first) const { return data_.data() + first / kStrip * (kMost * kStrip); }
  // Entry i of the first vector; that of the next vector is at a stride of kStrip.
  const double* Rows(std::size_t i) const { return Strip(i) + i % kStrip; }

 private:
  std::size_t count_ = 0;
  std::array<double, kMost> weight_{};
  std::vector<double> data_;
};

// a(i, j) += sum over a panel of v_i v_j for i <= j, and b_i += weight v_i, vector by vector and panel by panel. All
// vectors have the size of the matrix. Entries just below the diagonal of a are overwritten. The result does not depend
// on the pool.
void AddOuterProducts(std::span<const VectorPanel* const> panels, const SquareMatrix& a, std::span<double> b,
                      ThreadPool* pool = nullptr);

// Estimated time of AddOuterProducts in one thread.
inline double NanosecondsOfOuterProducts(std::size_t vectors, std::size_t size) {
  constexpr double kOfProduct = 0.006;
  return kOfProduct * static_cast<double>(vectors * size * (size + VectorPanel::kStrip));
}

}  // namespace kalvex

// Adding many outer products to a symmetric matrix at once.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "numeric/band_solver.h"

namespace kalvex {

// Vectors of one length, one behind the other, waiting to be added as outer products. Their length is padded with zeros
// to full vector units.
class VectorPanel {
 public:
  explicit VectorPanel(std::size_t length);

  std::size_t Count() const { return count_; }
  std::size_t Stride() const { return stride_; }
  const double* Row(std::size_t i) const { return data_.data() + i * stride_; }
  bool IsFull() const { return count_ == kMost; }
  // The next vector, all zero.
  std::span<double> Add();
  void Clear() { count_ = 0; }

 private:
  static constexpr std::size_t kMost = 64;
  std::size_t length_;
  std::size_t stride_;
  std::size_t count_ = 0;
  std::vector<double> data_;
};

// a(i, j) += sum over the panel of v_i v_j, for i <= j. What stands below the diagonal near it is overwritten.
void AddOuterProducts(const VectorPanel& panel, const SquareMatrix& a);

}  // namespace kalvex

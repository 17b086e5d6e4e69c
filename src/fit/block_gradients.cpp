#include "fit/block_gradients.h"

#include <cmath>

namespace kalvex {

void BlockGradients::Clear() {
  panelsInUse_ = 0;
  idx_.clear();
  grad_.clear();
  single_.clear();
}

// Rows are written in groups of eight.
VectorPanel& BlockGradients::PanelWithRoom(std::size_t count) {
  const std::size_t rounded = (count + kPack - 1) / kPack * kPack;
  if (panelsInUse_ > 0 && panels_[panelsInUse_ - 1].Count() + rounded <= VectorPanel::kMost) {
    return panels_[panelsInUse_ - 1];
  }
  if (panelsInUse_ == panels_.size()) panels_.emplace_back(size_);
  panels_[panelsInUse_].Clear();
  return panels_[panelsInUse_++];
}

void BlockGradients::EndPoint(double residual) {
  const std::size_t from = single_.empty() ? 0 : single_.back().end, count = idx_.size() - from;
  bool finite = std::isfinite(residual);
  for (std::size_t a = from; a < idx_.size(); ++a) finite = finite && std::isfinite(grad_[a]);
  if (2 * count < size_ || !finite) {
    single_.push_back({idx_.size(), residual});
    return;
  }
  VectorPanel& panel = PanelWithRoom(1);
  panel.Begin(residual);
  for (std::size_t a = from; a < idx_.size(); ++a) panel[idx_[a]] += grad_[a];
  idx_.resize(from);
  grad_.resize(from);
}

// Two entries of the same master contribute to the diagonal in both orders, which gives the square of their sum.
void BlockGradients::AddSinglePoints(const SquareMatrix& alpha, std::span<double> beta) const {
  std::size_t from = 0;
  for (const SinglePoint& point : single_) {
    for (std::size_t a = from; a < point.end; ++a) {
      beta[idx_[a]] += point.residual * grad_[a];
      double* const row = alpha.Row(idx_[a]);
      for (std::size_t b = from; b < point.end; ++b) {
        if (idx_[a] <= idx_[b]) row[idx_[b]] += grad_[a] * grad_[b];
      }
    }
    from = point.end;
  }
}

}  // namespace kalvex

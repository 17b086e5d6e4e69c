// The derivatives of the points in a block of frequencies, in the form in which they are added to the normal equations.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "evaluation/spectrum_kernels.h"
#include "numeric/rank_update.h"

namespace kalvex {

// How the gradients of one term's points are formed. Entry i of a gradient is factor[i] times the slope number slope[i]
// at the point, and 0 if there is no slope.
struct GradientColumns {
  static constexpr std::size_t kNone = ~std::size_t{0};
  std::vector<std::size_t> slope;  // for each entry of the gradient: the slope's number in the request, or kNone
  std::vector<double> factor;
  bool most = false;  // the term depends on most parameters, and no two of them share an entry
};

// The gradients of the points of a block, ready to be added. Points that depend on most parameters are collected in
// panels and added many at a time. A point that depends on few parameters is added separately. So is a point with a
// number that is not finite: it must not affect parameters on which the point does not depend.
class BlockGradients {
 public:
  explicit BlockGradients(std::size_t size) : size_(size) {}

  void Clear();

  // Adds a derivative to the current point.
  void Put(std::size_t master, double slope) {
    idx_.push_back(master);
    grad_.push_back(slope);
  }

  // Ends the current point.
  void EndPoint(double residual);

  // Adds at most VectorPanel::kMost points of a term together. roots are the square roots of their weights.
  // columnAt(slope) points to the values of that slope at the points, readable up to the next multiple of 8. Returns
  // false, and adds nothing, if a number is not finite.
  template <class ColumnAt>
  bool PutTogether(const GradientColumns& columns, std::span<const double> roots, std::span<const double> residuals,
                   ColumnAt columnAt);

  std::span<const VectorPanel> Panels() const { return std::span(panels_).first(panelsInUse_); }
  bool HasSinglePoints() const { return !single_.empty(); }

  // Adds the points that are not in a panel.
  void AddSinglePoints(const SquareMatrix& alpha, std::span<double> beta) const;

 private:
  VectorPanel& PanelWithRoom(std::size_t count);

  struct SinglePoint {
    std::size_t end;  // of its derivatives in idx_ and grad_
    double residual;
  };

  std::size_t size_;
  std::vector<VectorPanel> panels_;
  std::size_t panelsInUse_ = 0;
  std::vector<std::size_t> idx_;  // of the points outside the panels, one after the other
  std::vector<double> grad_;
  std::vector<SinglePoint> single_;
};

template <class ColumnAt>
bool BlockGradients::PutTogether(const GradientColumns& columns, std::span<const double> roots,
                                 std::span<const double> residuals, ColumnAt columnAt) {
  static constexpr std::array<double, VectorPanel::kMost> kZeros{};
  VectorPanel& panel = PanelWithRoom(roots.size());
  const std::size_t before = panel.Count();
  panel.BeginMany(residuals);
  for (std::size_t i = 0; i < size_; i += VectorPanel::kStrip) {
    std::array<const double*, VectorPanel::kStrip> at;
    std::array<double, VectorPanel::kStrip> factors{};
    at.fill(kZeros.data());
    for (std::size_t c = 0; c < VectorPanel::kStrip && i + c < size_; ++c) {
      if (columns.slope[i + c] == GradientColumns::kNone) continue;
      at[c] = columnAt(columns.slope[i + c]);
      factors[c] = columns.factor[i + c];
    }
    if (WidestKernels<SpectrumKernels>().weightedRows(at.data(), factors.data(), roots.data(), roots.size(),
                                                      panel.RowsFrom(i, before))) {
      continue;
    }
    panel.Shorten(before);
    return false;
  }
  return true;
}

}  // namespace kalvex

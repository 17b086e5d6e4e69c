// The derivatives of the points of a block of frequencies, in the shape in which they are added to the normal
// equations.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "evaluation/spectrum_kernels.h"
#include "numeric/rank_update.h"

namespace kalvex {

// The derivatives of one term's points by the parameters that count, one column for each: entry i of a gradient is
// `factor` times the column's number for the point, and 0 where there is no column.
struct GradientColumns {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  std::vector<std::size_t> slope;  // by the entry of the gradient: which slope of the request, or kNone
  std::vector<double> factor;
  bool most = false;  // the term depends on most parameters, and no two of its own share an entry
};

// The gradients of the points of a block, ready to be added. Points that depend on most parameters are collected and
// added many at a time. A point of few parameters is added by itself, and so is one with a number that is not finite,
// since that must not reach the parameters on which the point does not depend.
class BlockGradients {
 public:
  explicit BlockGradients(std::size_t size) : size_(size) {}

  void Clear();

  // The next derivative of the point that is being gathered.
  void Put(std::size_t master, double slope) {
    idx_.push_back(master);
    grad_.push_back(slope);
  }

  // All derivatives of the point have been put.
  void EndPoint(double residual);

  // Puts at most VectorPanel::kMost points of a term at once: roots are those of their weights, and columnAt(slope)
  // points to that slope's numbers at the points, to be read up to the next multiple of 8. False, and nothing is put,
  // if a number is not finite.
  template <class ColumnAt>
  bool PutTogether(const GradientColumns& columns, std::span<const double> roots, std::span<const double> residuals,
                   ColumnAt columnAt);

  std::span<const VectorPanel> Panels() const { return std::span(panels_).first(panelsInUse_); }
  bool HasSinglePoints() const { return !single_.empty(); }

  // Adds the points that are in no panel.
  void AddSinglePoints(const SquareMatrix& alpha, std::span<double> beta) const;

 private:
  VectorPanel& PanelWithRoom(std::size_t count);

  struct SinglePoint {
    std::size_t end;  // of its derivatives
    double residual;
  };

  std::size_t size_;
  std::vector<VectorPanel> panels_;
  std::size_t panelsInUse_ = 0;
  std::vector<std::size_t> idx_;  // of the points in no panel, one behind the other
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

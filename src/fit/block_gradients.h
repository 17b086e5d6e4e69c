// The derivatives of the points of a block of frequencies, in the shape in which they are added to the normal
// equations.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "numeric/rank_update.h"

namespace kalvex {

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

  std::span<const VectorPanel> Panels() const { return std::span(panels_).first(panelsInUse_); }
  bool HasSinglePoints() const { return !single_.empty(); }

  // Adds the points that are in no panel.
  void AddSinglePoints(const SquareMatrix& alpha, std::span<double> beta) const;

 private:
  VectorPanel& PanelWithRoom();

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

}  // namespace kalvex

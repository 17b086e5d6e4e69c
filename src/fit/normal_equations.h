// The normal equations of the fit in its coordinates u: with W = weight/sigma^2 and J = dQ/du,
//     alpha = sum 2 W J J,   beta = sum 2 W (Q - y) J
#pragma once

#include <span>
#include <vector>

#include "evaluation/eval_context.h"
#include "fit/block_gradients.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_state.h"
#include "numeric/band_solver.h"

namespace kalvex {

// The contributions of the points in a portion of a spectrum.
struct PortionSums {
  BlockGradients gradients;  // of the present block
  double chiSq = 0;
  std::vector<double> alphaData, beta;  // used only for small equations

  explicit PortionSums(std::size_t size) : gradients(size) {}
  SquareMatrix Alpha() { return {alphaData.data(), beta.size()}; }
};

struct NormalEquations {
  std::vector<double> alphaData;  // upper triangle and diagonal
  std::vector<double> beta;
  std::vector<PortionSums> portions;  // kept between the iterations
  std::size_t waiting = 0;            // number of portions whose gradients are not yet added to large equations

  explicit NormalEquations(std::size_t size) : alphaData(size * size), beta(size) {}
  SquareMatrix Alpha() { return {alphaData.data(), beta.size()}; }
  // Whether the matrix fits into the cache. Each portion of a spectrum then has its own matrix.
  bool AreSmall() const { return beta.size() <= 320; }
};

// Evaluates every spectrum with derivatives at the present values, fills the equations, and sets TotalChiSq.
//
//   coordinates   one entry per parameter of the fit, at its present value
void AccumulateNormalEquations(FitState& fit, ParamTables& params, EvalContext& eval,
                               std::span<const FitCoordinate> coordinates, NormalEquations& equations);

}  // namespace kalvex

// The normal equations of the fit in its coordinates u: with W = weight/sigma^2 and J = dQ/du,
//     alpha = sum 2 W J J,   beta = sum 2 W (Q - y) J
#pragma once

#include <vector>

#include "fit/block_gradients.h"
#include "fit/fit_state.h"
#include "models/eval_context.h"
#include "numeric/band_solver.h"

namespace kalvex {

struct NormalEquations {
  std::vector<double> alphaData;  // upper triangle and diagonal
  std::vector<double> beta;
  std::vector<BlockGradients> gradients;  // room for the blocks that wait, kept between the iterations
  std::size_t waiting = 0;                // blocks gathered and not yet added

  explicit NormalEquations(std::size_t size) : alphaData(size * size), beta(size) {}
  SquareMatrix Alpha() { return {alphaData.data(), beta.size()}; }
};

// Evaluates every spectrum with derivatives, fills the equations at the present values, and sets TotalChiSq. The
// parameters' fitScale must be that of the present values.
void AccumulateNormalEquations(FitState& fit, EvalContext& eval, NormalEquations& equations);

}  // namespace kalvex

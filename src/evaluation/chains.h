// The chain rule from a Quantity to the parameters: the slopes dQuantity[q] by each adjustable parameter of a model, of
// the experimental parameters and of the mesh, out of the derivatives that the Quantity and the row sum have left.
#pragma once

#include "evaluation/eval_context.h"

namespace kalvex {

// dQuantity[q] = 0 for all of them.
void ClearDerivativeColumn(EvalContext& ctx, const Model& model, Quantity quantity);
// dQuantity[q] += dRe dEpsRe + dIm dEpsIm, and += dExp of each experimental parameter.
void AddChain(EvalContext& ctx, const Model& model, Quantity quantity);
// The same with = in the place of +=.
void SetChain(EvalContext& ctx, const Model& model, Quantity quantity);
// For the model that holds the magnetic response: dQuantity[q] = dMuRe dEpsRe + dMuIm dEpsIm.
void SetChainForMu(EvalContext& ctx, const Model& model, Quantity quantity);
// For a Quantity of the real row sum: dQuantity[q] = (dQuantity/dsum) dScalar.
void SetChainForScalar(EvalContext& ctx, const Model& model, Quantity quantity);

}  // namespace kalvex

// The chain rule from a Quantity to the parameters. The slopes dQuantity[q] by the adjustable parameters of a model, of
// the mesh and of the experiment follow from the derivatives of the Quantity and of the row sum.
#pragma once

#include "evaluation/eval_context.h"

namespace kalvex {

// Sets dQuantity[q] of these parameters to 0.
void ClearDerivativeColumn(EvalContext& ctx, const Model& model, Quantity quantity);
// dQuantity[q] += dRe dEpsRe + dIm dEpsIm, and += dExp of each experimental parameter.
void AddChain(EvalContext& ctx, const Model& model, Quantity quantity);
// The same with = instead of +=.
void SetChain(EvalContext& ctx, const Model& model, Quantity quantity);
// For the model of the magnetic response: dQuantity[q] = dMuRe dEpsRe + dMuIm dEpsIm.
void SetChainForMu(EvalContext& ctx, const Model& model, Quantity quantity);
// For a Quantity of the real row sum: dQuantity[q] = (dQuantity/dsum) dScalar.
void SetChainForScalar(EvalContext& ctx, const Model& model, Quantity quantity);

}  // namespace kalvex

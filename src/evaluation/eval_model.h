// One model at one frequency: the reference implementation. The caller first sets the wanted flags of ctx.quantities.
// The results are in ctx.quantities and, with derivatives, in ctx.slopes. After an evaluation with derivatives, and
// after the dependency pass, the owner of the parameters calls TakeOverSlopes.
#pragma once

#include "evaluation/eval_context.h"
#include "evaluation/quantity_formulas.h"

namespace kalvex {

// Computes the wanted Quantities at frequency x (cm-1) and, on request, their derivatives by every adjustable
// parameter. Returns 0, or the status of a special model that fails. With -1 the Quantities keep their previous values.
int EvalModel(EvalContext& ctx, const Model& model, double x, bool derivatives);

// The dependency pass. For an adjustable parameter, dQuantity[q] of a wanted Quantity becomes nonzero exactly if the
// Quantity can depend on the parameter. The size of the number has no meaning.
int EvalModelAfter(EvalContext& ctx, const Model& model);

// The same two as part of another evaluation: the slopes are not reset.
int EvalPartner(EvalContext& ctx, const Model& model, double x, bool derivatives);
int EvalPartnerAfter(EvalContext& ctx, const Model& model);

// The same two for a plain model.
int StdEvalBulk(EvalContext& ctx, const Model& model, double x, bool derivatives);
int StdEvalAfter(EvalContext& ctx, const Model& model);

// The input of QuantityOfEps from a context, at frequency x.
QuantityInput QuantityInputAt(const EvalContext& ctx, double x, bool derivatives);

// Weight of the delta function at zero frequency, -eps1 w^2 at w = 1e-5 cm-1. The model is evaluated as a plain one.
// Afterwards E1 is marked as wanted.
double ZeroFrequencyWeight(EvalContext& ctx, const Model& model);

}  // namespace kalvex

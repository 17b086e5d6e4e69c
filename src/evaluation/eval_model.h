// One model at one frequency: the reference for what is right. The caller sets the wanted flags of ctx.quantities
// before and reads ctx.quantities and, with derivatives, ctx.slopes after. After an evaluation with derivatives, and
// after the dependency pass, the owner of the parameters calls TakeOverSlopes.
#pragma once

#include "evaluation/eval_context.h"
#include "evaluation/quantity_formulas.h"

namespace kalvex {

// Wanted Quantities at frequency x (cm-1), and on request their derivatives by every adjustable parameter. A special
// model may give -1; the Quantities then stand as they stood.
int EvalModel(EvalContext& ctx, const Model& model, double x, bool derivatives);

// The dependency pass: among the adjustable parameters dQuantity[q] of each wanted Quantity is other than 0 exactly for
// those that the Quantity can depend on. The numbers themselves mean nothing.
int EvalModelAfter(EvalContext& ctx, const Model& model);

// The two as a part of another evaluation: the slopes go on as they stand.
int EvalPartner(EvalContext& ctx, const Model& model, double x, bool derivatives);
int EvalPartnerAfter(EvalContext& ctx, const Model& model);

// The two for a plain model.
int StdEvalBulk(EvalContext& ctx, const Model& model, double x, bool derivatives);
int StdEvalAfter(EvalContext& ctx, const Model& model);

// What QuantityOfEps reads of a context, at frequency x.
QuantityInput QuantityInputAt(const EvalContext& ctx, double x, bool derivatives);

// Weight of the delta function at zero frequency, -eps1 w^2 at w = 1e-5 cm-1, as a plain model. Leaves E1 wanted.
double ZeroFrequencyWeight(EvalContext& ctx, const Model& model);

}  // namespace kalvex

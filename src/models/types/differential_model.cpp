// "Differential model": the linear change of a Quantity about a reference, caused by a small additional response.
//     Q = dRe(epsA) Re(epsB) + dIm(epsA) Im(epsB),   dRe, dIm the derivatives of the Quantity at the reference
//     row   Wo
//     0     A, the reference (model)        1     B, the change (model)        fills all 15 Quantities
// A is a fixed reference: no parameter of A gets a derivative, nor does a row of this model.
#include "models/chains.h"
#include "models/eps_sum.h"
#include "models/eval_model.h"
#include "models/quantity_formulas.h"
#include "models/types/frame.h"
#include "models/types/types.h"

namespace kalvex {
namespace {

constexpr RowRule kRows = AtLeast(2, 0);  // too few rows are no failure, and leave the Quantities as they stand

int Evaluate(EvalContext& ctx, Model& model, double x, bool derivatives) {
  if (!kRows.Admits(RowCount(model))) return kRows.failure;
  Model* const reference = PartnerAt(ctx, model, 0, Wo);
  Model* const change = PartnerAt(ctx, model, 1, Wo);
  if (!reference || !change) return -1;
  const Cplx epsA = EpsSum(ctx, *reference, x, false);
  const Cplx epsB = EpsSum(ctx, *change, x, derivatives);
  const QuantityInput input = QuantityInputAt(ctx, x, true);
  for (int q = 0; q < kQuantityCount; ++q) {
    Quantity& quantity = ctx.quantities[static_cast<std::size_t>(q)];
    if (!quantity.wanted) continue;
    QuantityOfEps(input, epsA, q, quantity);
    quantity.value = quantity.dRe * epsB.re + quantity.dIm * epsB.im;
    if (derivatives) SetChain(ctx, *change, q);
  }
  return 0;
}

int After(EvalContext& ctx, Model& model) {
  if (!kRows.Admits(RowCount(model))) return kRows.failure;
  Model* const change = PartnerAt(ctx, model, 1, Wo);
  if (!PartnerAt(ctx, model, 0, Wo) || !change) return -1;
  return StdEvalAfter(ctx, *change);
}

}  // namespace

constinit const ModelType kDifferentialModel = {1, "Differential model", Evaluate, After};

}  // namespace kalvex

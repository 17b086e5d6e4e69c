// The linear change of a Quantity about a reference, caused by a small additional response. The reference is fixed: no
// parameter of it gets a derivative.
#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "evaluation/quantity_formulas.h"
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr RowRule kRows = AtLeast(2, 0);  // with fewer rows the status is 0 and the Quantities keep their values
constexpr RowCell kHead[] = {{0, Wo, CellUse::kReference, "A, the reference"}, Partner(1, Wo, "B, the change")};

int Evaluate(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  if (!kRows.Admits(RowCount(model))) return kRows.FailureOf(RowCount(model));
  const Model* const reference = PartnerAt(ctx, model, 0, Wo);
  const Model* const change = PartnerAt(ctx, model, 1, Wo);
  if (!reference || !change) return -1;
  const Cplx epsA = EpsSum(ctx, *reference, x, false);
  const Cplx epsB = EpsSum(ctx, *change, x, derivatives);
  const QuantityInput input = QuantityInputAt(ctx, x, true);
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (!quantity.wanted) continue;
    QuantityOfEps(input, epsA, q, quantity);
    quantity.value = quantity.dRe * epsB.re + quantity.dIm * epsB.im;
    if (derivatives) SetChain(ctx, *change, q);
  }
  return 0;
}

int After(EvalContext& ctx, const Model& model) {
  if (!kRows.Admits(RowCount(model))) return kRows.FailureOf(RowCount(model));
  const Model* const change = PartnerAt(ctx, model, 1, Wo);
  if (!PartnerAt(ctx, model, 0, Wo) || !change) return -1;
  return StdEvalAfter(ctx, *change);
}

}  // namespace

constinit const ModelType kDifferentialModel = {
    .code = 1,
    .name = "Differential model",
    .evaluate = Evaluate,
    .after = After,
    .fitted = true,
    .material = true,
    .map = {.rows = kRows, .head = kHead},
    .page = {.sample = "a small change of a known sample: a difference or modulation spectrum",
             .formula = "Q = (dQ/dRe eps)(A) Re eps(B) + (dQ/dIm eps)(A) Im eps(B), for each Quantity",
             .source = "first order of the Taylor expansion about A, whose parameters are not fitted"}};

}  // namespace kalvex

#include "evaluation/eval_model.h"

#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/quantity_formulas.h"

namespace kalvex {
namespace {

template <class Visit>
void ForEachWanted(EvalContext& ctx, Visit visit) {
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (quantity.wanted) visit(q, quantity);
  }
}

}  // namespace

const ModelType* TypeOf(const EvalContext& ctx, const Model& model) {
  const std::int32_t code = NegatedCode(model.epsInf);
  if (code == 0) return nullptr;
  for (const ModelType* type : ctx.types) {
    if (type->code == code) return type;
  }
  return nullptr;
}

const char* TypeNameOf(const EvalContext& ctx, const Model& model) {
  const ModelType* type = TypeOf(ctx, model);
  return type ? type->name : "Diel. function";
}

int EvalModel(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  if (derivatives) StartFromSaved(ctx.slopes, *ctx.params);
  return EvalPartner(ctx, model, x, derivatives);
}

int EvalModelAfter(EvalContext& ctx, const Model& model) {
  StartFromSaved(ctx.slopes, *ctx.params);
  ForEachWanted(ctx, [&](Quantity q, const QuantityResult&) {
    ForEachFreeParam(*ctx.params, ctx.slopes, [&](ParamSlopes& slopes) { slopes.Put(q, 0); });
  });
  return EvalPartnerAfter(ctx, model);
}

int EvalPartner(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  const ModelType* type = TypeOf(ctx, model);
  const int status = type ? type->evaluate(ctx, model, x, derivatives) : StdEvalBulk(ctx, model, x, derivatives);
  if (ctx.notesFormer && status == 0) {
    ForEachWanted(ctx, [&](Quantity, const QuantityResult& quantity) {
      ctx.readFormerResult = ctx.readFormerResult || quantity.formerValue;
    });
  }
  return status;
}

int EvalPartnerAfter(EvalContext& ctx, const Model& model) {
  const ModelType* type = TypeOf(ctx, model);
  return type ? type->after(ctx, model) : StdEvalAfter(ctx, model);
}

QuantityInput QuantityInputAt(const EvalContext& ctx, double x, bool derivatives) {
  return {x, derivatives, ctx.DcFlag, &ctx.params->ExpParams};
}

int StdEvalBulk(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  const Cplx eps = EpsSum(ctx, model, x, derivatives);
  const QuantityInput input = QuantityInputAt(ctx, ctx.DcFlag ? kDcFrequency : x, derivatives);
  ForEachWanted(ctx, [&](Quantity q, QuantityResult& quantity) {
    QuantityOfEps(input, eps, q, quantity);
    if (derivatives) SetChain(ctx, model, q);
  });
  return 0;
}

int StdEvalAfter(EvalContext& ctx, const Model& model) {
  SeedDependencies(ctx, model);
  ForEachWanted(ctx, [&](Quantity q, QuantityResult& quantity) {
    DependencyStub(q, quantity);
    SetChain(ctx, model, q);
  });
  return 0;
}

double ZeroFrequencyWeight(EvalContext& ctx, const Model& model) {
  constexpr double kNearZero = 1e-5;  // cm-1
  ctx.quantities[kE1].wanted = 1;
  StdEvalBulk(ctx, model, kNearZero, false);
  return -ctx.quantities[kE1].value * kNearZero * kNearZero;
}

}  // namespace kalvex

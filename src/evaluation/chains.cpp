#include "evaluation/chains.h"

namespace kalvex {
namespace {

// Calls write(slopes) for each adjustable parameter of the model.
template <class Write>
void OnModel(EvalContext& ctx, const Model& model, Write write) {
  ForEachParam(model, SlopesOf(ctx, model), [&](const ModelParam& param, ParamSlopes& slopes) {
    if (param.adjustable) write(slopes);
  });
}

// Calls write(dExp of the Quantity, slopes) for each adjustable experimental parameter.
template <class Write>
void OnExpParams(EvalContext& ctx, Quantity quantity, Write write) {
  const QuantityResult& of = ctx.quantities[quantity];
  for (std::size_t k = 0; k < of.dExp.size(); ++k) {
    if (ctx.params->ExpParams[k].adjustable) write(of.dExp[k], ctx.slopes.ExpParams[k]);
  }
}

const QuantityResult& QuantityAt(const EvalContext& ctx, Quantity quantity) { return ctx.quantities[quantity]; }

}  // namespace

void ClearDerivativeColumn(EvalContext& ctx, const Model& model, Quantity quantity) {
  OnModel(ctx, model, [&](ParamSlopes& slopes) { slopes.Put(quantity, 0); });
  OnExpParams(ctx, quantity, [&](double, ParamSlopes& slopes) { slopes.Put(quantity, 0); });
}

void AddChain(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = QuantityAt(ctx, quantity);
  OnModel(ctx, model, [&](ParamSlopes& slopes) {
    slopes.Add(quantity, of.dRe * slopes.dEpsRe + of.dIm * slopes.dEpsIm);
    if (slopes.formerEps) slopes.madeOfFormer = true;
  });
  OnExpParams(ctx, quantity, [&](double slope, ParamSlopes& slopes) {
    slopes.Add(quantity, slope);
    if (of.formerExp) slopes.madeOfFormer = true;
  });
}

void SetChain(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = QuantityAt(ctx, quantity);
  OnModel(ctx, model, [&](ParamSlopes& slopes) {
    slopes.Put(quantity, of.dRe * slopes.dEpsRe + of.dIm * slopes.dEpsIm);
    if (slopes.formerEps) slopes.madeOfFormer = true;
  });
  OnExpParams(ctx, quantity, [&](double slope, ParamSlopes& slopes) {
    slopes.Put(quantity, slope);
    if (of.formerExp) slopes.madeOfFormer = true;
  });
}

void SetChainForMu(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = QuantityAt(ctx, quantity);
  OnModel(ctx, model, [&](ParamSlopes& slopes) {
    slopes.Put(quantity, of.dMuRe * slopes.dEpsRe + of.dMuIm * slopes.dEpsIm);
    if (slopes.formerEps) slopes.madeOfFormer = true;
  });
}

void SetChainForScalar(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = QuantityAt(ctx, quantity);
  OnModel(ctx, model, [&](ParamSlopes& slopes) { slopes.Put(quantity, of.dScalar * slopes.dScalar); });
}

}  // namespace kalvex

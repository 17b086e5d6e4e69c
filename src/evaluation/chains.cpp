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

// d(Quantity)/d(parameter) = d(Quantity)/d(re) d(re)/d(parameter) + d(Quantity)/d(im) d(im)/d(parameter) for each
// parameter of the model; put is ParamSlopes::Put or Add.
template <auto put>
void ChainOnModel(EvalContext& ctx, const Model& model, Quantity quantity, double byRe, double byIm) {
  OnModel(ctx, model, [&](ParamSlopes& slopes) {
    (slopes.*put)(quantity, byRe * slopes.dEpsRe + byIm * slopes.dEpsIm);
    if (slopes.formerEps) slopes.madeOfFormer = true;
  });
}

// The same, and d(Quantity)/d(experimental parameter).
template <auto put>
void Chain(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = ctx.quantities[quantity];
  ChainOnModel<put>(ctx, model, quantity, of.dRe, of.dIm);
  OnExpParams(ctx, quantity, [&](double slope, ParamSlopes& slopes) {
    (slopes.*put)(quantity, slope);
    if (of.formerExp) slopes.madeOfFormer = true;
  });
}

}  // namespace

void ClearDerivativeColumn(EvalContext& ctx, const Model& model, Quantity quantity) {
  OnModel(ctx, model, [&](ParamSlopes& slopes) { slopes.Put(quantity, 0); });
  OnExpParams(ctx, quantity, [&](double, ParamSlopes& slopes) { slopes.Put(quantity, 0); });
}

void AddChain(EvalContext& ctx, const Model& model, Quantity quantity) {
  Chain<&ParamSlopes::Add>(ctx, model, quantity);
}

void SetChain(EvalContext& ctx, const Model& model, Quantity quantity) {
  Chain<&ParamSlopes::Put>(ctx, model, quantity);
}

void SetChainForMu(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = ctx.quantities[quantity];
  ChainOnModel<&ParamSlopes::Put>(ctx, model, quantity, of.dMuRe, of.dMuIm);
}

void SetChainForScalar(EvalContext& ctx, const Model& model, Quantity quantity) {
  const QuantityResult& of = ctx.quantities[quantity];
  OnModel(ctx, model, [&](ParamSlopes& slopes) { slopes.Put(quantity, of.dScalar * slopes.dScalar); });
}

}  // namespace kalvex

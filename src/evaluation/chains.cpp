#include "evaluation/chains.h"

namespace kalvex {
namespace {

// Calls write(parameter, dQuantity[q]) for each adjustable parameter of the model.
template <class Write>
void OnModel(Model& model, int quantity, Write write) {
  ForEachParam(model, [&](ModelParam& param) {
    if (param.adjustable) write(param, param.dQuantity[static_cast<std::size_t>(quantity)]);
  });
}

// Calls write(dExp, dQuantity[q]) for each adjustable experimental parameter.
template <class Write>
void OnExpParams(EvalContext& ctx, int quantity, Write write) {
  const auto q = static_cast<std::size_t>(quantity);
  for (std::size_t k = 0; k < ctx.params->ExpParams.size(); ++k) {
    ModelParam& param = ctx.params->ExpParams[k];
    if (param.adjustable) write(ctx.quantities[q].dExp[k], param.dQuantity[q]);
  }
}

const Quantity& QuantityAt(const EvalContext& ctx, int quantity) {
  return ctx.quantities[static_cast<std::size_t>(quantity)];
}

}  // namespace

void ClearDerivativeColumn(EvalContext& ctx, Model& model, int quantity) {
  OnModel(model, quantity, [](const ModelParam&, double& column) { column = 0; });
  OnExpParams(ctx, quantity, [](double, double& column) { column = 0; });
}

void AddChain(EvalContext& ctx, Model& model, int quantity) {
  const Quantity& of = QuantityAt(ctx, quantity);
  OnModel(model, quantity,
          [&](const ModelParam& p, double& column) { column += of.dRe * p.dEpsRe + of.dIm * p.dEpsIm; });
  OnExpParams(ctx, quantity, [](double slope, double& column) { column += slope; });
}

void SetChain(EvalContext& ctx, Model& model, int quantity) {
  const Quantity& of = QuantityAt(ctx, quantity);
  OnModel(model, quantity,
          [&](const ModelParam& p, double& column) { column = of.dRe * p.dEpsRe + of.dIm * p.dEpsIm; });
  OnExpParams(ctx, quantity, [](double slope, double& column) { column = slope; });
}

void SetChainForMu(EvalContext& ctx, Model& model, int quantity) {
  const Quantity& of = QuantityAt(ctx, quantity);
  OnModel(model, quantity,
          [&](const ModelParam& p, double& column) { column = of.dMuRe * p.dEpsRe + of.dMuIm * p.dEpsIm; });
}

void SetChainForScalar(EvalContext& ctx, Model& model, int quantity) {
  const Quantity& of = QuantityAt(ctx, quantity);
  OnModel(model, quantity, [&](const ModelParam& p, double& column) { column = of.dScalar * p.dScalar; });
}

}  // namespace kalvex

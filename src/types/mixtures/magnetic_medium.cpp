// A medium with a dielectric function and a magnetic permeability.
#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr RowRule kRows = Exactly(1);
constexpr RowCell kHead[] = {Partner(0, Wo, "dielectric function"), Partner(0, Wp, "magnetic permeability")};

struct Media {
  const Model* eps = nullptr;
  const Model* mu = nullptr;
};

// Finds both models. Returns false if one is missing or both are the same.
bool FindMedia(EvalContext& ctx, const Model& model, Media& media) {
  media = {PartnerAt(ctx, model, 0, Wo), PartnerAt(ctx, model, 0, Wp)};
  return media.eps && media.mu && media.eps != media.mu;
}

void ChainBoth(EvalContext& ctx, const Media& media, Quantity quantity) {
  SetChain(ctx, *media.eps, quantity);
  SetChainForMu(ctx, *media.mu, quantity);
}

template <class Visit>
void ForEachWanted(EvalContext& ctx, Visit visit) {
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (quantity.wanted) visit(q, quantity);
  }
}

int Evaluate(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  Media media;
  if (!kRows.Admits(RowCount(model))) return kRows.FailureOf(RowCount(model));
  if (!FindMedia(ctx, model, media)) return -1;
  const Cplx eps = EpsSum(ctx, *media.eps, x, derivatives), mu = EpsSum(ctx, *media.mu, x, derivatives);
  const QuantityInput input = QuantityInputAt(ctx, x, derivatives);
  ForEachWanted(ctx, [&](Quantity q, QuantityResult& quantity) {
    QuantityOfEpsMu(input, eps, mu, q, quantity);
    if (derivatives) ChainBoth(ctx, media, q);
  });
  return 0;
}

int After(EvalContext& ctx, const Model& model) {
  Media media;
  if (!kRows.Admits(RowCount(model))) return kRows.FailureOf(RowCount(model));
  if (!FindMedia(ctx, model, media)) return -1;
  SeedDependencies(ctx, *media.eps);
  SeedDependencies(ctx, *media.mu);
  ForEachWanted(ctx, [&](Quantity q, QuantityResult& quantity) {
    DependencyStubMu(q, quantity);
    ChainBoth(ctx, media, q);
  });
  return 0;
}

}  // namespace

constinit const ModelType kEpsilonMu = {
    .code = 9,
    .name = "Epsilon+Mu",
    .evaluate = Evaluate,
    .after = After,
    .fitted = true,
    .material = true,
    .map = {.rows = kRows, .head = kHead, .group = {}, .groupStart = 0, .groupRows = 1},
    .page = {
        .sample = "a medium with a dielectric function and a magnetic permeability",
        .formula = "n = sqrt(eps mu), z = sqrt(mu/eps): the Quantities of a bulk sample with both\n"
                   "E1, E2, S1, S2 and LF are 0. The two models must be different ones.",
        .source = "Fresnel equations of a magnetic medium, J. D. Jackson, Classical Electrodynamics, chapter 7.3"}};

}  // namespace kalvex

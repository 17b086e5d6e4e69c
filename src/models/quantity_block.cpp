#include "models/quantity_block.h"

#include "models/bulk_formulas.h"
#include "numeric/pack.h"

namespace kalvex {
namespace {

constexpr std::size_t kPacks = kSpectrumBlock / kPack;

struct PackQuantity {
  Pack value, dRe, dIm;
  std::array<Pack, kExpParamCount> dExp;
};

void Store(const PackQuantity& from, bool derivatives, std::size_t i, QuantityBlock& to) {
  from.value.Store(to.value.data() + i);
  if (!derivatives) return;
  from.dRe.Store(to.dRe.data() + i);
  from.dIm.Store(to.dIm.data() + i);
  for (std::size_t k = 0; k < from.dExp.size(); ++k) from.dExp[k].Store(to.dExp[k].data() + i);
}

// Tells for each pack whether it was done; otherwise its lanes need different branches of the formula.
template <int K>
std::array<bool, kPacks> FillPacks(const QuantityInput& in, const EpsBlock& eps, int quantity, QuantityBlock& out) {
  std::array<bool, kPacks> done{};
  for (std::size_t p = 0; p < kPacks; ++p) {
    const std::size_t i = p * kPack;
    const QuantityInputOf<Pack> packed{Pack::Load(eps.w.data() + i), in.derivatives, in.dcFlag, in.exp};
    const Complex<Pack> at{Pack::Load(eps.re.data() + i), Pack::Load(eps.im.data() + i)};
    const Pack norm = Norm(at);
    const PackMask inside = (norm > Pack(kTinyNorm * kTinyNorm)) & (norm < Pack(kNoValue * kNoValue));
    if (LanesOf(inside) != Lanes::kAll) continue;
    PackQuantity result;
    done[p] = bulk::QuantityBetweenLimits<K>(packed, at, quantity, result);
    Store(result, K > 0, i, out);
  }
  return done;
}

KALVEX_VECTOR_KERNEL std::array<bool, kPacks> FillValues(const QuantityInput& in, const EpsBlock& eps, int quantity,
                                                         QuantityBlock& out) {
  return FillPacks<0>(in, eps, quantity, out);
}

KALVEX_VECTOR_KERNEL std::array<bool, kPacks> FillValuesAndSlopes(const QuantityInput& in, const EpsBlock& eps,
                                                                  int quantity, QuantityBlock& out) {
  return FillPacks<1>(in, eps, quantity, out);
}

void FillLane(QuantityInput in, const EpsBlock& eps, int quantity, std::size_t i, QuantityBlock& out) {
  const Cplx at{eps.re[i], eps.im[i]};
  const double modulus = Abs(at);
  out.anyLimit = out.anyLimit || modulus > kNoValue || modulus < kTinyNorm;
  in.w = eps.w[i];
  Quantity result;
  QuantityOfEps(in, at, quantity, result);
  out.value[i] = result.value;
  out.dRe[i] = result.dRe;
  out.dIm[i] = result.dIm;
  for (std::size_t k = 0; k < result.dExp.size(); ++k) out.dExp[k][i] = result.dExp[k];
}

}  // namespace

void QuantityOfEpsBlock(const QuantityInput& in, const EpsBlock& eps, int quantity, QuantityBlock& out) {
  out.anyLimit = false;
  const auto done = in.derivatives ? FillValuesAndSlopes(in, eps, quantity, out) : FillValues(in, eps, quantity, out);
  for (std::size_t p = 0; p < kPacks; ++p) {
    if (done[p]) continue;
    for (std::size_t i = p * kPack; i < (p + 1) * kPack; ++i) FillLane(in, eps, quantity, i, out);
  }
}

}  // namespace kalvex

#include "evaluation/quantity_block.h"

#include "evaluation/spectrum_kernels.h"

namespace kalvex {
namespace {

void FillLane(QuantityInput in, const EpsBlock& eps, Quantity quantity, std::size_t i, QuantityBlock& out) {
  const Cplx at{eps.re[i], eps.im[i]};
  const double modulus = Abs(at);
  out.anyLimit = out.anyLimit || modulus > kNoValue || modulus < kTinyNorm;
  in.w = eps.w[i];
  QuantityResult result;
  QuantityOfEps(in, at, quantity, result);
  out.value[i] = result.value;
  out.dRe[i] = result.dRe;
  out.dIm[i] = result.dIm;
  for (std::size_t k = 0; k < result.dExp.size(); ++k) out.dExp[k][i] = result.dExp[k];
}

}  // namespace

void QuantityOfEpsBlock(const QuantityInput& in, const EpsBlock& eps, Quantity quantity, QuantityBlock& out) {
  out.anyLimit = false;
  const PacksDone done = (in.derivatives ? WidestKernels<SpectrumKernels>().quantityValuesAndSlopes
                                         : WidestKernels<SpectrumKernels>().quantityValues)(in, eps, quantity, out);
  for (std::size_t p = 0; p < done.size(); ++p) {
    if (done[p]) continue;
    for (std::size_t i = p * kPack; i < (p + 1) * kPack; ++i) FillLane(in, eps, quantity, i, out);
  }
}

}  // namespace kalvex

#include "types/near_field/tip_kernels.h"

#include "core/limits.h"

namespace kalvex {
namespace {

KALVEX_FLATTEN Cplx SumOverMesh(std::span<const double> places, const double* weights, const Cplx& top,
                                const Cplx& bottom, const Cplx& slope) {
  Pack re, im;
  for (std::size_t j = 0; j < places.size(); j += kPack) {
    const Pack place = Pack::Load(&places[j]), sRe = place * slope.re, sIm = place * slope.im;
    const Pack aRe = top.re + sRe, aIm = top.im + sIm, bRe = bottom.re + sRe, bIm = bottom.im + sIm;
    const Pack norm = bRe * bRe + bIm * bIm;
    const Pack share = Pack::Load(weights + j) / Select(norm < Pack(kTinyNorm), kTinyNorm, norm);
    re += (aRe * bRe + aIm * bIm) * share;
    im += (aIm * bRe - aRe * bIm) * share;
  }
  Cplx sum;
  for (std::size_t lane = 0; lane < kPack; ++lane) sum += Cplx{re.x[lane], im.x[lane]};
  return sum;
}

}  // namespace

template <>
const TipKernels& KernelsOfWidth<TipKernels, VectorWidth::KALVEX_VECTOR_WIDTH>() {
  static constexpr TipKernels kKernels = {SumOverMesh};
  return kKernels;
}

}  // namespace kalvex

#include "numeric/digamma_kernels.h"

#include "numeric/pack.h"

namespace kalvex {
namespace {

// psi' and psi'' at z.
struct Derivatives {
  Complex<Pack> first, second;
};

// As Polygammas for n = 1 and 2, in all lanes together.
Derivatives DerivativesAt(const Complex<Pack>& z) {
  constexpr double kFarEnough = 10 * 10;  // enough for n = 1 and 2 with all ten terms
  Derivatives out;
  Pack re = z.re;
  const Pack im = z.im;
  for (;;) {
    const Pack norm = re * re + im * im;
    const PackMask near = norm < Pack(kFarEnough);
    if (LanesOf(near) == Lanes::kNone) break;
    const Pack step = Select(near, 1, 0), ir = step * re / norm, ii = -(step * im) / norm;
    const Pack r2 = ir * ir - ii * ii, i2 = 2 * ir * ii;
    out.first += {r2, i2};
    out.second -= {2 * (r2 * ir - i2 * ii), 2 * (r2 * ii + i2 * ir)};
    re += step;
  }
  const Pack norm = re * re + im * im, ir = re / norm, ii = -im / norm;
  const Pack r2 = ir * ir - ii * ii, i2 = 2 * ir * ii;
  // By Horner's rule in z^-2: psi' = 1/z + 1/(2z^2) + sum/z, psi'' = -1/z^2 - 1/z^3 - sum/z^2.
  Pack aRe, aIm, bRe, bIm;
  for (std::size_t k = std::size(kBernoulli); k-- > 0;) {
    const Pack ar = aRe + kPolygammaSeries[1][k], br = bRe + kPolygammaSeries[2][k];
    aRe = ar * r2 - aIm * i2;
    aIm = ar * i2 + aIm * r2;
    bRe = br * r2 - bIm * i2;
    bIm = br * i2 + bIm * r2;
  }
  aRe += 1 + 0.5 * ir;
  aIm += 0.5 * ii;
  bRe += 1 + ir;
  bIm += ii;
  out.first += {aRe * ir - aIm * ii, aRe * ii + aIm * ir};
  out.second -= {bRe * r2 - bIm * i2, bRe * i2 + bIm * r2};
  return out;
}

KALVEX_FLATTEN void TrigammasInPacks(std::span<const Cplx> z, std::span<Cplx> values, std::span<Cplx> slopes) {
  for (std::size_t first = 0; first < z.size(); first += kPack) {
    double re[kPack], im[kPack];
    for (std::size_t i = 0; i < kPack; ++i) {
      const Cplx& of = z[first + i < z.size() ? first + i : z.size() - 1];
      re[i] = of.re;
      im[i] = of.im;
    }
    const Derivatives psi = DerivativesAt({Pack::Load(re), Pack::Load(im)});
    for (std::size_t i = 0; i < kPack && first + i < z.size(); ++i) {
      values[first + i] = {psi.first.re.x[i], psi.first.im.x[i]};
      slopes[first + i] = {psi.second.re.x[i], psi.second.im.x[i]};
    }
  }
}

}  // namespace

template <>
const DigammaKernels& KernelsOfWidth<DigammaKernels, VectorWidth::KALVEX_VECTOR_WIDTH>() {
  static constexpr DigammaKernels kKernels = {TrigammasInPacks};
  return kKernels;
}

}  // namespace kalvex

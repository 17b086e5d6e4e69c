#include "types/landau/ladder_kernels.h"

namespace kalvex {
namespace {

KALVEX_FLATTEN void Invert(const double* squares, std::size_t stride, std::size_t count, const Complex<Pack>& z2,
                           LadderReciprocals& u) {
  const Complex<Pack> at = z2;
  for (std::size_t k = 0; k < count; ++k) {
    const Pack d = squares[k * stride] - at.re, norm = d * d + at.im * at.im;
    u[k] = {d / norm, at.im / norm};
  }
}

KALVEX_FLATTEN void AddValues(const double* weights, std::size_t count, const LadderReciprocals& u,
                              Complex<Pack>& sum) {
  Complex<Pack> s = sum;
  for (std::size_t k = 0; k < count; ++k) s += u[k] * Pack(weights[k]);
  sum = s;
}

KALVEX_FLATTEN void AddSlopes(const TypeDual* squares, const TypeDual* weights, std::size_t count,
                              const LadderReciprocals& u, LadderSlopeSum& sum) {
  LadderSlopeSum s = sum;
  for (std::size_t k = 0; k < count; ++k) {
    const TypeDual &square = squares[k], &weight = weights[k];
    const Pack a = weight.a;
    const Complex<Pack> by = u[k] * u[k] * a;
    s.value += u[k] * a;
    s.bySquare += by;
    for (std::size_t l = 0; l < s.byLane.size(); ++l) s.byLane[l] += u[k] * Pack(weight.v[l]) - by * Pack(square.v[l]);
  }
  sum = s;
}

}  // namespace

template <>
const LadderKernels& KernelsOfWidth<LadderKernels, VectorWidth::KALVEX_VECTOR_WIDTH>() {
  static constexpr LadderKernels kKernels = {Invert, AddValues, AddSlopes};
  return kKernels;
}

}  // namespace kalvex

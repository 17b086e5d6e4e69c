#include "models/oscillator_block.h"

#include "numeric/pack.h"
#include "terms/lorentz.h"

namespace kalvex {
namespace {

// Packs that go through the rows together: their sums stay in registers.
constexpr std::size_t kTogether = 4;
static_assert(kSpectrumBlock % (kTogether * kPack) == 0);

template <bool kKeepInverses>
void AddRows(std::span<const PlainRow> rows, const double* w, double* re, double* im, double* inverses) {
  for (std::size_t first = 0; first < kSpectrumBlock; first += kTogether * kPack) {
    Complex<Pack> sum[kTogether];
    for (std::size_t p = 0; p < kTogether; ++p) {
      const std::size_t i = first + p * kPack;
      sum[p] = {Pack::Load(re + i), Pack::Load(im + i)};
    }
    double* inverse = inverses + first;
    for (const PlainRow& row : rows) {
      for (std::size_t p = 0; p < kTogether; ++p) {
        const Pack at = Pack::Load(w + first + p * kPack);
        const Oscillator<Pack> oscillator = OscillatorAt(at, Pack(row.Wo), Pack(row.Wp), Pack(row.G));
        sum[p] += oscillator.eps;
        if constexpr (kKeepInverses) {
          oscillator.inverse.re.Store(inverse + p * kPack);
          oscillator.inverse.im.Store(inverse + kSpectrumBlock + p * kPack);
        }
      }
      if constexpr (kKeepInverses) inverse += 2 * kSpectrumBlock;
    }
    for (std::size_t p = 0; p < kTogether; ++p) {
      const std::size_t i = first + p * kPack;
      sum[p].re.Store(re + i);
      sum[p].im.Store(im + i);
    }
  }
}

}  // namespace

KALVEX_VECTOR_KERNEL void AddOscillators(std::span<const PlainRow> rows, const double* w, double* re, double* im) {
  AddRows<false>(rows, w, re, im, re);
}

KALVEX_VECTOR_KERNEL void AddOscillatorsForSlopes(std::span<const PlainRow> rows, const double* w, double* re,
                                                  double* im, double* inverses) {
  AddRows<true>(rows, w, re, im, inverses);
}

KALVEX_VECTOR_KERNEL void OscillatorSlopesOf(const PlainRow& row, const double* w, const double* inverses,
                                             const double* dRe, const double* dIm, double* byWo, double* byWp,
                                             double* byG) {
  for (std::size_t i = 0; i < kSpectrumBlock; i += kPack) {
    const Complex<Pack> inverse{Pack::Load(inverses + i), Pack::Load(inverses + kSpectrumBlock + i)};
    const auto slopes = OscillatorSlopes(Pack::Load(w + i), Pack(row.Wo), Pack(row.Wp), inverse);
    const Pack byRe = Pack::Load(dRe + i), byIm = Pack::Load(dIm + i);
    const auto along = [&](const Complex<Pack>& slope) { return byRe * slope.re + byIm * slope.im; };
    along(slopes[0]).Store(byWo + i);
    along(slopes[1]).Store(byWp + i);
    along(slopes[2]).Store(byG + i);
  }
}

}  // namespace kalvex

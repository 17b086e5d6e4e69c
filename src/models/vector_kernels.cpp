// Compiled once for each width, KALVEX_VECTOR_LEVEL being its name. Whatever is called from here must be inlined: a
// function of its own would be one for all widths.
#include "models/vector_kernels.h"

#include <cmath>

#include "models/bulk_formulas.h"
#include "models/stack_formulas.h"
#include "terms/lorentz.h"

namespace kalvex::KALVEX_VECTOR_LEVEL {
namespace {

// ---- rows

// Packs that go through the rows together: their sums stay in registers.
constexpr std::size_t kTogether = 4;
static_assert(kSpectrumBlock % (kTogether * kPack) == 0);

double LeastModulus(const double* w) {
  Pack leasts = Fabs(Pack::Load(w));
  for (std::size_t i = kPack; i < kSpectrumBlock; i += kPack) {
    const Pack next = Fabs(Pack::Load(w + i));
    leasts = Select(next < leasts, next, leasts);
  }
  double least = leasts.x[0];
  for (std::size_t lane = 1; lane < kPack; ++lane) least = leasts.x[lane] < least ? leasts.x[lane] : least;
  return least;
}

// Adds one row at kTogether packs of frequencies.
template <bool kGuarded, bool kKeepInverses>
void AddRow(const PlainRow& row, const double* w, Complex<Pack> (&sum)[kTogether], double* inverses) {
#pragma GCC unroll 4
  for (std::size_t p = 0; p < kTogether; ++p) {
    const Oscillator<Pack> at =
        OscillatorAt<kGuarded>(Pack::Load(w + p * kPack), Pack(row.Wo), Pack(row.Wp), Pack(row.G));
    sum[p] += at.eps;
    if constexpr (kKeepInverses) {
      at.inverse.re.Store(inverses + p * kPack);
      at.inverse.im.Store(inverses + kSpectrumBlock + p * kPack);
    }
  }
}

template <bool kGuarded, bool kKeepInverses>
void AddRows(std::span<const PlainRow> rows, const double* w, double* re, double* im, double* inverses) {
  for (std::size_t first = 0; first < kSpectrumBlock; first += kTogether * kPack) {
    Complex<Pack> sum[kTogether];
#pragma GCC unroll 4
    for (std::size_t p = 0; p < kTogether; ++p) {
      const std::size_t i = first + p * kPack;
      sum[p] = {Pack::Load(re + i), Pack::Load(im + i)};
    }
    double* inverse = inverses + first;
    for (const PlainRow& row : rows) {
      AddRow<kGuarded, kKeepInverses>(row, w + first, sum, inverse);
      if constexpr (kKeepInverses) inverse += 2 * kSpectrumBlock;
    }
#pragma GCC unroll 4
    for (std::size_t p = 0; p < kTogether; ++p) {
      const std::size_t i = first + p * kPack;
      sum[p].re.Store(re + i);
      sum[p].im.Store(im + i);
    }
  }
}

template <bool kKeepInverses>
void AddRows(std::span<const PlainRow> rows, double leastG, const double* w, double* re, double* im, double* inverses) {
  if (leastG * LeastModulus(w) > kSafeDamping) {
    AddRows<false, kKeepInverses>(rows, w, re, im, inverses);
  } else {
    AddRows<true, kKeepInverses>(rows, w, re, im, inverses);
  }
}

KALVEX_FLATTEN void AddOscillators(std::span<const PlainRow> rows, double leastG, const double* w, double* re,
                                   double* im) {
  AddRows<false>(rows, leastG, w, re, im, re);
}

KALVEX_FLATTEN void AddOscillatorsForSlopes(std::span<const PlainRow> rows, double leastG, const double* w, double* re,
                                            double* im, double* inverses) {
  AddRows<true>(rows, leastG, w, re, im, inverses);
}

KALVEX_FLATTEN void SlopesOfOscillator(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                                       const double* dIm, double* byWo, double* byWp, double* byG) {
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

// ---- Quantities

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

template <int K>
PacksDone FillPacks(const QuantityInput& in, const EpsBlock& eps, int quantity, QuantityBlock& out) {
  PacksDone done{};
  for (std::size_t p = 0; p < done.size(); ++p) {
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

KALVEX_FLATTEN PacksDone QuantityValues(const QuantityInput& in, const EpsBlock& eps, int quantity,
                                        QuantityBlock& out) {
  return FillPacks<0>(in, eps, quantity, out);
}

KALVEX_FLATTEN PacksDone QuantityValuesAndSlopes(const QuantityInput& in, const EpsBlock& eps, int quantity,
                                                 QuantityBlock& out) {
  return FillPacks<1>(in, eps, quantity, out);
}

// ---- columns to rows

// Lanes of x and y, those of y counted from kPack on.
template <int... kFrom>
Pack Shuffled(const Pack& x, const Pack& y) {
  return Pack(__builtin_shufflevector(x.x, y.x, kFrom...));
}

template <int... kFrom>
struct LaneList {};

// Packs that stand `step` apart exchange lanes.
template <std::size_t step, int... kLow, int... kHigh>
void Exchange(Pack (&a)[kPack], LaneList<kLow...>, LaneList<kHigh...>) {
#pragma GCC unroll 8
  for (std::size_t r = 0; r < kPack; ++r) {
    if (r & step) continue;
    const Pack low = Shuffled<kLow...>(a[r], a[r + step]);
    a[r + step] = Shuffled<kHigh...>(a[r], a[r + step]);
    a[r] = low;
  }
}

// Rows become columns.
void Transpose(Pack (&a)[kPack]) {
  Exchange<1>(a, LaneList<0, 8, 2, 10, 4, 12, 6, 14>{}, LaneList<1, 9, 3, 11, 5, 13, 7, 15>{});
  Exchange<2>(a, LaneList<0, 1, 8, 9, 4, 5, 12, 13>{}, LaneList<2, 3, 10, 11, 6, 7, 14, 15>{});
  Exchange<4>(a, LaneList<0, 1, 2, 3, 8, 9, 10, 11>{}, LaneList<4, 5, 6, 7, 12, 13, 14, 15>{});
}

KALVEX_FLATTEN bool WeightedRows(const double* const* columns, const double* factors, const double* weights,
                                 std::size_t count, double* out) {
  constexpr std::size_t kColumns16 = 16;
  Pack zeros = 0;  // what is not finite leaves a NaN here
  for (std::size_t p = 0; p < count; p += kPack) {
    Pack at = 0;
    for (std::size_t i = 0; i < kPack && p + i < count; ++i) at.x[i] = weights[p + i];
    for (std::size_t c = 0; c < kColumns16; c += kPack) {
      Pack tile[kPack];
#pragma GCC unroll 8
      for (std::size_t k = 0; k < kPack; ++k) {
        const Pack entry = (at * Pack(factors[c + k])) * Pack::Load(columns[c + k] + p);
        tile[k] = Select(at == Pack(0.0), Pack(0.0), entry);
        zeros += tile[k] * Pack(0.0);
      }
      Transpose(tile);
#pragma GCC unroll 8
      for (std::size_t k = 0; k < kPack; ++k) tile[k].Store(out + (p + k) * kColumns16 + c);
    }
  }
  return LanesOf(zeros == Pack(0.0)) == Lanes::kAll;
}

// ---- sums of squares

KALVEX_FLATTEN double SumOfSquares(const double* values, const double* y, const double* sigma, std::size_t count) {
  Pack sums = 0;
  std::size_t i = 0;
  for (; i + kPack <= count; i += kPack) {
    const Pack d = (Pack::Load(y + i) - Pack::Load(values + i)) / Pack::Load(sigma + i);
    sums += d * d;
  }
  for (std::size_t lane = 0; i < count; ++i, ++lane) {
    const double d = (y[i] - values[i]) / sigma[i];
    sums.x[lane] += d * d;
  }
  double sum = 0;
  for (std::size_t lane = 0; lane < kPack; ++lane) sum += sums.x[lane];
  return sum;
}

// ---- stacks

struct ThisWidth {};

// Media and walk for the pack of frequencies that starts at i.
template <bool kSlopes, bool kAmplitudes>
void WalkPack(const StackBlockInput& in, std::size_t i, StackBlockRoom& room) {
  const Pack x = Pack::Load(in.x + i);
  StackOf<Pack>& stack = room.stack;
  stack.emptyPath = EmptyPathOf(in.head, x).k;
  for (std::size_t j = 0; j < room.media.size(); ++j) {
    Complex<Pack> eps{Pack(1.0), Pack(0.0)};
    if (j > 0 && j <= in.layers.size()) {
      eps = {Pack::Load(in.layers[j - 1]->re.data() + i), Pack::Load(in.layers[j - 1]->im.data() + i)};
    }
    room.media[j] = StackMediumOf(in.head, x, eps);
    stack.y[j] = room.media[j].y;
    stack.k[j] = room.media[j].k;
  }
  WalkStack<Pack, ThisWidth, kSlopes, kAmplitudes>(stack);
}

// How the results change with one number that changes admittance and wave vector of medium j.
StackSlopes<Pack> AlongMedium(const StackOf<Pack>& stack, std::size_t j, const Complex<Pack>& dy,
                              const Complex<Pack>& dk) {
  StackSlopes<Pack> slopes = stack.byY[j].Along(dy);
  const StackSlopes<Pack> byK = stack.byK[j].Along(dk);
  for (std::size_t q = 0; q < slopes.size(); ++q) slopes[q] += byK[q];
  return slopes;
}

void StoreHeadSlopes(const StackBlockInput& in, std::size_t i, const StackBlockRoom& room,
                     std::span<StackBlockResult> results) {
  const StackOf<Pack>& stack = room.stack;
  for (std::size_t h = 0; h < 2; ++h) {
    const Pack byScale = h == 0 ? EmptyPathOf(in.head, Pack::Load(in.x + i)).byScale : Pack(0.0);
    StackSlopes<Pack> sum = stack.byEmptyPath.Along({byScale, Pack(0.0)});
    for (std::size_t j = 0; j < room.media.size(); ++j) {
      const StackSlopes<Pack> slopes = AlongMedium(stack, j, room.media[j].yByHead[h], room.media[j].kByHead[h]);
      for (std::size_t q = 0; q < results.size(); ++q) sum[q] += slopes[q];
    }
    for (std::size_t q = 0; q < results.size(); ++q) sum[q].Store(results[q].byHead[h].data() + i);
  }
}

void StoreLayerSlopes(const StackBlockInput& in, std::size_t i, const StackBlockRoom& room,
                      std::span<StackBlockResult> results) {
  const StackOf<Pack>& stack = room.stack;
  for (std::size_t j = 1; j <= in.layers.size(); ++j) {
    const StackMedium<Pack>& medium = room.media[j];
    const StackSlopes<Pack> byRe = AlongMedium(stack, j, medium.yByEps, medium.kByEps);
    const StackSlopes<Pack> byIm = AlongMedium(stack, j, TimesI(medium.yByEps), TimesI(medium.kByEps));
    for (std::size_t q = 0; q < results.size(); ++q) {
      StackBlockResult::Layer& layer = results[q].layers[j - 1];
      byRe[q].Store(layer.byRe.data() + i);
      Select(medium.byIm == Pack(0.0), Pack(0.0), byIm[q]).Store(layer.byIm.data() + i);
      stack.byThickness[j][q].Store(layer.byThickness.data() + i);
      stack.bySpread[j][q].Store(layer.bySpread.data() + i);
    }
  }
}

template <bool kSlopes, bool kAmplitudes>
void FillStack(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results) {
  for (std::size_t i = 0; i < kSpectrumBlock; i += kPack) {
    WalkPack<kSlopes, kAmplitudes>(in, i, room);
    for (std::size_t q = 0; q < results.size(); ++q) room.stack.value[q].Store(results[q].value.data() + i);
    if constexpr (kSlopes) {
      StoreLayerSlopes(in, i, room, results);
      if (in.head.geometry != StackGeometry::kNormal) StoreHeadSlopes(in, i, room, results);
    }
  }
}

KALVEX_FLATTEN void StackBlock(const StackBlockInput& in, StackBlockRoom& room, std::span<StackBlockResult> results) {
  if (in.derivatives) {
    in.amplitudes ? FillStack<true, true>(in, room, results) : FillStack<true, false>(in, room, results.first(2));
  } else {
    in.amplitudes ? FillStack<false, true>(in, room, results) : FillStack<false, false>(in, room, results.first(2));
  }
}

}  // namespace

extern const VectorKernels kKernels;
constinit const VectorKernels kKernels = {AddOscillators,
                                          AddOscillatorsForSlopes,
                                          SlopesOfOscillator,
                                          QuantityValues,
                                          QuantityValuesAndSlopes,
                                          WeightedRows,
                                          SumOfSquares,
                                          StackBlock};

}  // namespace kalvex::KALVEX_VECTOR_LEVEL

#include "evaluation/spectrum_kernels.h"

#include <cmath>

#include "evaluation/bulk_formulas.h"
#include "evaluation/stack_formulas.h"
#include "terms/lorentz.h"

namespace kalvex {
namespace {

// ---- rows

// The smallest and the largest modulus in a block.
struct Moduli {
  double least;
  double most;
};
Moduli ModuliOf(const double* w) {
  Pack leasts = Fabs(Pack::Load(w)), mosts = leasts;
  for (std::size_t i = kPack; i < kSpectrumBlock; i += kPack) {
    const Pack next = Fabs(Pack::Load(w + i));
    leasts = Select(next < leasts, next, leasts);
    mosts = Select(next > mosts, next, mosts);
  }
  Moduli all{leasts.x[0], mosts.x[0]};
  for (std::size_t lane = 1; lane < kPack; ++lane) {
    all.least = leasts.x[lane] < all.least ? leasts.x[lane] : all.least;
    all.most = mosts.x[lane] > all.most ? mosts.x[lane] : all.most;
  }
  return all;
}

// Number of rows that share a quotient.
constexpr std::size_t kShare = 4;

// Whether |D|^2 needs no guard for any row, and the product of kShare of them stays in the range of doubles.
bool MayShareQuotients(const RowBounds& bounds, const Moduli& w) {
  constexpr double kModerate = 1e15;
  return bounds.leastG * w.least > kSafeDamping && bounds.most < kModerate && w.most < kModerate;
}

// 1/x of each by a single quotient, which takes longer than all these products. Within 2 ulp.
template <std::size_t N>
void Reciprocals(const Pack (&x)[N], Pack (&out)[N]) {
  if constexpr (N == 1) {
    out[0] = Pack(1.0) / x[0];
  } else {
    Pack pairs[N / 2], perPair[N / 2];
#pragma GCC unroll 2
    for (std::size_t i = 0; i < N / 2; ++i) pairs[i] = x[2 * i] * x[2 * i + 1];
    Reciprocals(pairs, perPair);
#pragma GCC unroll 2
    for (std::size_t i = 0; i < N / 2; ++i) {
      out[2 * i] = perPair[i] * x[2 * i + 1];
      out[2 * i + 1] = perPair[i] * x[2 * i];
    }
  }
}

// The factors of a row that do not depend on frequency.
struct RowFactors {
  Pack squareOfWo, squareOfWp, G, squareOfG;
};

// Adds N rows that share one quotient: with d = Wo^2 - w^2, eps is Wp^2 (d + i w G)/(d^2 + w^2 G^2).
template <std::size_t N, bool kKeepInverses>
void AddTogether(const PlainRow* rows, const double* w, double* re, double* im, double* inverses) {
  RowFactors row[N];
#pragma GCC unroll 4
  for (std::size_t r = 0; r < N; ++r) {
    const auto& [Wo, Wp, G] = rows[r];
    row[r] = {Wo * Wo, Wp * Wp, G, G * G};
  }
  for (std::size_t i = 0; i < kSpectrumBlock; i += kPack) {
    const Pack at = Pack::Load(w + i), square = at * at;
    Pack d[N], norms[N], perNorm[N];
#pragma GCC unroll 4
    for (std::size_t r = 0; r < N; ++r) {
      d[r] = row[r].squareOfWo - square;
      norms[r] = d[r] * d[r] + row[r].squareOfG * square;
    }
    Reciprocals(norms, perNorm);
    Pack sum = Pack::Load(re + i), sumPerW = 0;
#pragma GCC unroll 4
    for (std::size_t r = 0; r < N; ++r) {
      const Pack share = row[r].squareOfWp * perNorm[r];
      sum += d[r] * share;
      sumPerW += row[r].G * share;
      if constexpr (kKeepInverses) {
        (d[r] * perNorm[r]).Store(inverses + 2 * r * kSpectrumBlock + i);
        (at * (row[r].G * perNorm[r])).Store(inverses + (2 * r + 1) * kSpectrumBlock + i);
      }
    }
    sum.Store(re + i);
    (Pack::Load(im + i) + at * sumPerW).Store(im + i);
  }
}

// Adds a row whose |D|^2 may be near zero.
template <bool kKeepInverses>
void AddGuarded(const PlainRow& row, const double* w, double* re, double* im, double* inverses) {
  for (std::size_t i = 0; i < kSpectrumBlock; i += kPack) {
    const Oscillator<Pack> at = OscillatorAt(Pack::Load(w + i), Pack(row.Wo), Pack(row.Wp), Pack(row.G));
    (Pack::Load(re + i) + at.eps.re).Store(re + i);
    (Pack::Load(im + i) + at.eps.im).Store(im + i);
    if constexpr (kKeepInverses) {
      at.inverse.re.Store(inverses + i);
      at.inverse.im.Store(inverses + kSpectrumBlock + i);
    }
  }
}

// Adds the rows in groups of N, and the rest in smaller groups.
template <std::size_t N, bool kKeepInverses>
void AddInGroups(std::span<const PlainRow> rows, const double* w, double* re, double* im, double* inverses) {
  std::size_t row = 0;
  for (; row + N <= rows.size(); row += N) {
    AddTogether<N, kKeepInverses>(&rows[row], w, re, im, inverses);
    if constexpr (kKeepInverses) inverses += 2 * kSpectrumBlock * N;
  }
  if constexpr (N > 1) {
    AddInGroups<N / 2, kKeepInverses>(rows.subspan(row), w, re, im, inverses);
  }
}

template <bool kKeepInverses>
void AddRows(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re, double* im,
             double* inverses) {
  if (MayShareQuotients(bounds, ModuliOf(w))) {
    return AddInGroups<kShare, kKeepInverses>(rows, w, re, im, inverses);
  }
  for (const PlainRow& row : rows) {
    AddGuarded<kKeepInverses>(row, w, re, im, inverses);
    if constexpr (kKeepInverses) inverses += 2 * kSpectrumBlock;
  }
}

KALVEX_FLATTEN void AddRowsToBlock(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                                   double* im) {
  AddRows<false>(rows, bounds, w, re, im, nullptr);
}

KALVEX_FLATTEN void AddRowsToBlockForSlopes(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w,
                                            double* re, double* im, double* inverses) {
  AddRows<true>(rows, bounds, w, re, im, inverses);
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

template <std::size_t K>
PacksDone FillPacks(const QuantityInput& in, const EpsBlock& eps, Quantity quantity, QuantityBlock& out) {
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

KALVEX_FLATTEN PacksDone QuantityValues(const QuantityInput& in, const EpsBlock& eps, Quantity quantity,
                                        QuantityBlock& out) {
  return FillPacks<0>(in, eps, quantity, out);
}

KALVEX_FLATTEN PacksDone QuantityValuesAndSlopes(const QuantityInput& in, const EpsBlock& eps, Quantity quantity,
                                                 QuantityBlock& out) {
  return FillPacks<1>(in, eps, quantity, out);
}

// ---- columns to rows

// A choice of lanes of x and y; the lanes of y count from kPack on.
template <int... kFrom>
Pack Shuffled(const Pack& x, const Pack& y) {
  return Pack(__builtin_shufflevector(x.x, y.x, kFrom...));
}

template <int... kFrom>
struct LaneList {};

// Packs at a distance of `step` exchange lanes.
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

// Transposes the matrix whose rows are the packs.
void Transpose(Pack (&a)[kPack]) {
  Exchange<1>(a, LaneList<0, 8, 2, 10, 4, 12, 6, 14>{}, LaneList<1, 9, 3, 11, 5, 13, 7, 15>{});
  Exchange<2>(a, LaneList<0, 1, 8, 9, 4, 5, 12, 13>{}, LaneList<2, 3, 10, 11, 6, 7, 14, 15>{});
  Exchange<4>(a, LaneList<0, 1, 2, 3, 8, 9, 10, 11>{}, LaneList<4, 5, 6, 7, 12, 13, 14, 15>{});
}

KALVEX_FLATTEN bool WeightedRows(const double* const* columns, const double* factors, const double* weights,
                                 std::size_t count, double* out) {
  constexpr std::size_t kColumns16 = 16;
  Pack zeros = 0;  // becomes NaN if a number is not finite
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

// Sets up the media and evaluates the stack for the pack of frequencies that starts at i.
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

// The change of the results when a number changes admittance and wave vector of medium j.
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

// ---- products

void Multiply(const double* a, const double* b, double* out) {
  for (std::size_t i = 0; i < kSpectrumBlock; ++i) out[i] = a[i] * b[i];
}

void AddMultiples(const double* a, const double* rows, std::size_t count, double* out) {
  double sum[kSpectrumBlock] = {};
  for (std::size_t j = 0; j < count; ++j, rows += kSpectrumBlock) {
    for (std::size_t i = 0; i < kSpectrumBlock; ++i) sum[i] += a[j] * rows[i];
  }
  for (std::size_t i = 0; i < kSpectrumBlock; ++i) out[i] += sum[i];
}

void MultiplyPairs(const double* a, const double* b, const double* c, const double* d, double* out) {
  for (std::size_t i = 0; i < kSpectrumBlock; ++i) out[i] = a[i] * b[i] + c[i] * d[i];
}

}  // namespace

template <>
const SpectrumKernels& KernelsOfWidth<SpectrumKernels, VectorWidth::KALVEX_VECTOR_WIDTH>() {
  static constexpr SpectrumKernels kKernels = {AddRowsToBlock,
                                               AddRowsToBlockForSlopes,
                                               SlopesOfOscillator,
                                               QuantityValues,
                                               QuantityValuesAndSlopes,
                                               WeightedRows,
                                               SumOfSquares,
                                               StackBlock,
                                               Multiply,
                                               AddMultiples,
                                               MultiplyPairs};
  return kKernels;
}

}  // namespace kalvex

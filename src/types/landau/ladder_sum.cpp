#include "types/landau/ladder_sum.h"

#include <algorithm>

#include "core/vector_clones.h"

namespace kalvex {
namespace {

// Frequencies are summed in groups, one frequency in each lane of a vector. Each group runs over the transitions in
// portions that fit in the cache; the reciprocals of a portion serve both sums. Unused lanes repeat the last frequency.
constexpr std::size_t kGroup = 8, kPortion = 32;
typedef double Pack __attribute__((vector_size(kGroup * sizeof(double))));
// Records that vector clones of different widths share have the alignment of the widest.
constexpr std::size_t kAlignment = sizeof(Pack);

constexpr auto kLanes = static_cast<std::size_t>(kTypeLanes);

// 1/(D^2 - Z^2) of the transitions of a portion.
struct alignas(kAlignment) Reciprocals {
  std::array<Pack, kPortion> re, im;
};

struct alignas(kAlignment) ValueSum {
  Pack re{}, im{};
  Cplx At(std::size_t lane, const Cplx&) const { return {re[lane], im[lane]}; }
};

// A sum, its derivative by Z^2, and its derivatives by the directions of the dual numbers in weights and D^2.
struct alignas(kAlignment) SlopeSum {
  ValueSum value, bySquare;
  std::array<Pack, kLanes> re{}, im{};

  Complex<TypeDual> At(std::size_t lane, const Complex<TypeDual>& square) const {
    Complex<TypeDual> sum{value.re[lane], value.im[lane]};
    for (std::size_t l = 0; l < kLanes; ++l) {
      sum.re.v[l] = re[l][lane];
      sum.im.v[l] = im[l][lane];
    }
    return sum + Analytic(square, {}, bySquare.At(lane, {}));
  }
};

// squares: D^2 of the transitions, `stride` numbers apart.
KALVEX_VECTOR_CLONES void Invert(const double* squares, std::size_t stride, std::size_t count, const ValueSum& z2,
                                 Reciprocals& u) {
  const Pack zRe = z2.re, zIm = z2.im;
  for (std::size_t k = 0; k < count; ++k) {
    const Pack d = squares[k * stride] - zRe, norm = d * d + zIm * zIm;
    u.re[k] = d / norm;
    u.im[k] = zIm / norm;
  }
}

KALVEX_VECTOR_CLONES void AddUp(const double*, const double* weights, std::size_t count, const Reciprocals& u,
                                ValueSum& sum) {
  Pack re = sum.re, im = sum.im;
  for (std::size_t k = 0; k < count; ++k) {
    re += u.re[k] * weights[k];
    im += u.im[k] * weights[k];
  }
  sum = {re, im};
}

KALVEX_VECTOR_CLONES void AddUp(const TypeDual* squares, const TypeDual* weights, std::size_t count,
                                const Reciprocals& u, SlopeSum& sum) {
  SlopeSum s = sum;
  for (std::size_t k = 0; k < count; ++k) {
    const TypeDual &square = squares[k], &weight = weights[k];
    const Pack re = u.re[k], im = u.im[k];
    const Pack byRe = (re * re - im * im) * weight.a, byIm = (re * im + im * re) * weight.a;
    s.value.re += re * weight.a;
    s.value.im += im * weight.a;
    s.bySquare.re += byRe;
    s.bySquare.im += byIm;
    for (std::size_t l = 0; l < kLanes; ++l) {
      s.re[l] += re * weight.v[l] - byRe * square.v[l];
      s.im[l] += im * weight.v[l] - byIm * square.v[l];
    }
  }
  sum = s;
}

const double* FirstOf(const std::vector<double>& squares) { return squares.data(); }
const double* FirstOf(const std::vector<TypeDual>& squares) { return &squares.data()->a; }

template <class Sum>
struct GroupSums {
  ValueSum z2;
  Sum diagonal, hall;
};

template <class T, class Sum>
void AddTransitions(const LadderTable<T>& table, std::vector<GroupSums<Sum>>& groups) {
  Reciprocals u;
  const std::size_t all = table.square.size();
  for (std::size_t from = 0; from < all; from += kPortion) {
    const std::size_t count = std::min(kPortion, all - from);
    const T* const squares = table.square.data() + from;
    for (GroupSums<Sum>& group : groups) {
      Invert(FirstOf(table.square) + from * (sizeof(T) / sizeof(double)), sizeof(T) / sizeof(double), count, group.z2,
             u);
      AddUp(squares, table.diagonal.data() + from, count, u, group.diagonal);
      if (!table.hall.empty()) AddUp(squares, table.hall.data() + from, count, u, group.hall);
    }
  }
}

template <class T, class Sum>
void Make(const LadderTable<T>& table, const Complex<T>& z, std::span<const double> ahead) {
  auto& [at, sums, last] = table.made;
  at.assign(1, z);
  if (ahead.empty() || kElectronvoltPerWavenumber * ahead[0] != ValueOf(z.re)) ahead = {};
  for (std::size_t i = 1; i < ahead.size(); ++i) at.push_back({T(kElectronvoltPerWavenumber * ahead[i]), z.im});
  last = 0;
  std::vector<GroupSums<Sum>> groups((at.size() + kGroup - 1) / kGroup);
  for (std::size_t i = 0; i < groups.size() * kGroup; ++i) {
    const Cplx of = ValueOf(at[std::min(i, at.size() - 1)]), square = of * of;
    groups[i / kGroup].z2.re[i % kGroup] = square.re;
    groups[i / kGroup].z2.im[i % kGroup] = square.im;
  }
  AddTransitions(table, groups);
  sums.clear();
  for (std::size_t i = 0; i < at.size(); ++i) {
    const GroupSums<Sum>& group = groups[i / kGroup];
    const Complex<T> square = at[i] * at[i];
    sums.push_back({group.diagonal.At(i % kGroup, square), group.hall.At(i % kGroup, square)});
  }
}

bool AreSame(double a, double b) { return a == b; }
bool AreSame(const TypeDual& a, const TypeDual& b) { return a.a == b.a && a.v == b.v; }

template <class T, class Sum>
const LadderSums<T>& MadeOrKept(const LadderTable<T>& table, const Complex<T>& z, std::span<const double> ahead) {
  auto& [at, sums, last] = table.made;
  const auto stands = [&z, &at = at](std::size_t i) {
    return i < at.size() && AreSame(at[i].re, z.re) && AreSame(at[i].im, z.im);
  };
  if (stands(last + 1)) ++last;
  if (!stands(last)) Make<T, Sum>(table, z, ahead);
  return sums[last];
}

}  // namespace

LadderSums<double> SumLadder(const LadderTable<double>& table, const Cplx& z, std::span<const double> ahead) {
  return MadeOrKept<double, ValueSum>(table, z, ahead);
}

LadderSums<TypeDual> SumLadder(const LadderTable<TypeDual>& table, const Complex<TypeDual>& z,
                               std::span<const double> ahead) {
  return MadeOrKept<TypeDual, SlopeSum>(table, z, ahead);
}

}  // namespace kalvex

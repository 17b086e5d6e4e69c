#include "types/landau/ladder_sum.h"

#include <algorithm>

#include "types/landau/ladder_kernels.h"

namespace kalvex {
namespace {

Cplx LaneOf(const Complex<Pack>& sum, std::size_t lane) { return {sum.re.x[lane], sum.im.x[lane]}; }
Cplx LaneOf(const Complex<Pack>& sum, std::size_t lane, const Cplx&) { return LaneOf(sum, lane); }
Complex<TypeDual> LaneOf(const LadderSlopeSum& of, std::size_t lane, const Complex<TypeDual>& square) {
  Complex<TypeDual> sum{of.value.re.x[lane], of.value.im.x[lane]};
  for (std::size_t l = 0; l < of.byLane.size(); ++l) {
    sum.re.v[l] = of.byLane[l].re.x[lane];
    sum.im.v[l] = of.byLane[l].im.x[lane];
  }
  return sum + Analytic(square, {}, LaneOf(of.bySquare, lane));
}

void AddUp(const LadderKernels& kernels, const double*, const double* weights, std::size_t count,
           const LadderReciprocals& u, Complex<Pack>& sum) {
  kernels.addValues(weights, count, u, sum);
}
void AddUp(const LadderKernels& kernels, const TypeDual* squares, const TypeDual* weights, std::size_t count,
           const LadderReciprocals& u, LadderSlopeSum& sum) {
  kernels.addSlopes(squares, weights, count, u, sum);
}

const double* FirstOf(const std::vector<double>& squares) { return squares.data(); }
const double* FirstOf(const std::vector<TypeDual>& squares) { return &squares.data()->a; }

template <class Sum>
struct GroupSums {
  Complex<Pack> z2;
  Sum diagonal, hall;
};

template <class T, class Sum>
void AddTransitions(const LadderTable<T>& table, std::vector<GroupSums<Sum>>& groups) {
  const LadderKernels& kernels = WidestKernels<LadderKernels>();
  constexpr std::size_t kStride = sizeof(T) / sizeof(double);  // NOLINT(bugprone-sizeof-expression): 1 for double
  LadderReciprocals u;
  const std::size_t all = table.square.size();
  for (std::size_t from = 0; from < all; from += kLadderPortion) {
    const std::size_t count = std::min(kLadderPortion, all - from);
    const T* const squares = table.square.data() + from;
    for (GroupSums<Sum>& group : groups) {
      kernels.invert(FirstOf(table.square) + from * kStride, kStride, count, group.z2, u);
      AddUp(kernels, squares, table.diagonal.data() + from, count, u, group.diagonal);
      if (!table.hall.empty()) AddUp(kernels, squares, table.hall.data() + from, count, u, group.hall);
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
  std::vector<GroupSums<Sum>> groups((at.size() + kPack - 1) / kPack);
  for (std::size_t i = 0; i < groups.size() * kPack; ++i) {
    const Cplx of = ValueOf(at[std::min(i, at.size() - 1)]), square = of * of;
    groups[i / kPack].z2.re.x[i % kPack] = square.re;
    groups[i / kPack].z2.im.x[i % kPack] = square.im;
  }
  AddTransitions(table, groups);
  sums.clear();
  for (std::size_t i = 0; i < at.size(); ++i) {
    const GroupSums<Sum>& group = groups[i / kPack];
    const Complex<T> square = at[i] * at[i];
    sums.push_back({LaneOf(group.diagonal, i % kPack, square), LaneOf(group.hall, i % kPack, square)});
  }
}

bool AreSame(double a, double b) { return a == b; }
bool AreSame(const TypeDual& a, const TypeDual& b) { return a.a == b.a && a.v == b.v; }

template <class T, class Sum>
const LadderSums<T>& MadeOrKept(const LadderTable<T>& table, const Complex<T>& z, std::span<const double> ahead) {
  auto& made = table.made;
  const auto stands = [&](std::size_t i) {
    return i < made.at.size() && AreSame(made.at[i].re, z.re) && AreSame(made.at[i].im, z.im);
  };
  if (stands(made.last + 1)) ++made.last;
  if (!stands(made.last)) Make<T, Sum>(table, z, ahead);
  return made.sums[made.last];
}

}  // namespace

LadderSums<double> SumLadder(const LadderTable<double>& table, const Cplx& z, std::span<const double> ahead) {
  return MadeOrKept<double, Complex<Pack>>(table, z, ahead);
}

LadderSums<TypeDual> SumLadder(const LadderTable<TypeDual>& table, const Complex<TypeDual>& z,
                               std::span<const double> ahead) {
  return MadeOrKept<TypeDual, LadderSlopeSum>(table, z, ahead);
}

}  // namespace kalvex

#include "types/lattice/band_response.h"

namespace kalvex {
namespace {

void Resize(std::size_t n, std::initializer_list<std::vector<Cplx>*> matrices) {
  for (std::vector<Cplx>* const matrix : matrices) {
    if (matrix->size() < n * n) matrix->resize(n * n);
  }
}

// States of H(k), and v between them. H has the given hopping sizes and site energies.
template <class SizeOf, class EnergyOf>
bool SolveValues(std::size_t n, const std::vector<Hop>& hops, const Vector3& k, SizeOf sizeOf, EnergyOf energyOf,
                 BandScratch& s) {
  Resize(n, {&s.matrix, &s.room, &s.v});
  PhasesAt(hops, k, s.phases);
  AssembleBloch(n, hops, s.phases, sizeOf, energyOf, s.matrix);
  const bool found = HermitianEigen(s.matrix, n, true, s.eigen);
  AssembleBlochSlope(n, hops, s.phases, sizeOf, s.matrix);
  BetweenStates(n, s.eigen.states, s.matrix, s.room, s.v);
  return found;
}

}  // namespace

bool BandPoint<double>::SolveAt(const Vector3& k) {
  return SolveValues(
      size(), *model_.hops, k, [&](std::size_t type) { return model_.sizes[type]; },
      [&](std::size_t i) { return model_.energies[i]; }, scratch_);
}

bool BandPoint<TypeDual>::Varies(std::size_t lane) const {
  const auto varies = [&](const TypeDual& number) { return number.v[lane] != 0; };
  return std::any_of(model_.sizes.begin(), model_.sizes.end(), varies) ||
         std::any_of(model_.energies.begin(), model_.energies.end(), varies);
}

bool BandPoint<TypeDual>::SolveAt(const Vector3& k) {
  const std::size_t n = size();
  const bool found = SolveValues(
      n, *model_.hops, k, [&](std::size_t type) { return model_.sizes[type].a; },
      [&](std::size_t i) { return model_.energies[i].a; }, scratch_);
  for (std::size_t lane = 0; lane < kTypeLanes; ++lane) {
    BandScratch& s = scratch_;
    Resize(n, {&s.h[lane], &s.dv[lane]});
    if (!Varies(lane)) {
      std::fill(s.h[lane].begin(), s.h[lane].end(), Cplx{});
      std::fill(s.dv[lane].begin(), s.dv[lane].end(), Cplx{});
      continue;
    }
    const auto sizeOf = [&](std::size_t type) { return model_.sizes[type].v[lane]; };
    AssembleBloch(
        n, *model_.hops, s.phases, sizeOf, [&](std::size_t i) { return model_.energies[i].v[lane]; }, s.matrix);
    BetweenStates(n, s.eigen.states, s.matrix, s.room, s.h[lane]);
    AssembleBlochSlope(n, *model_.hops, s.phases, sizeOf, s.matrix);
    BetweenStates(n, s.eigen.states, s.matrix, s.room, s.dv[lane]);
    PerturbElements(lane);
  }
  return found;
}

// Adds the change of the elements of v that comes from the change of the states.
void BandPoint<TypeDual>::PerturbElements(std::size_t lane) {
  const std::size_t n = size();
  const std::vector<Cplx>&v = scratch_.v, &h = scratch_.h[lane];
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < n; ++k) {
      const double gap = Gap(i, k);
      if (std::fabs(gap) < kLevelsApart) continue;
      for (std::size_t j = 0; j < n; ++j) {
        scratch_.dv[lane][i * n + j] += h[i * n + k] * v[k * n + j] / gap;
        scratch_.dv[lane][j * n + i] += v[j * n + k] * h[k * n + i] / gap;
      }
    }
  }
}

TypeDual BandPoint<TypeDual>::Strength(std::size_t i, std::size_t j) const {
  const std::size_t at = i * size() + j;
  const Cplx v = scratch_.v[at];
  TypeDual strength(Norm(v));
  for (std::size_t lane = 0; lane < kTypeLanes; ++lane) {
    const Cplx dv = scratch_.dv[lane][at];
    strength.v[lane] = 2 * (v.re * dv.re + v.im * dv.im);
  }
  return strength;
}

TypeDual BandPoint<TypeDual>::Level(std::size_t i) const {
  TypeDual level(scratch_.eigen.levels[i]);
  for (std::size_t lane = 0; lane < kTypeLanes; ++lane) level.v[lane] = scratch_.h[lane][i * size() + i].re;
  return level;
}

TypeDual BandPoint<TypeDual>::LevelFor(std::size_t i, std::size_t j) const {
  const std::size_t n = size();
  TypeDual level = Level(i);
  const Cplx v = scratch_.v[i * n + j];
  if (Norm(v) == 0) return level;  // by rounding only one of v_ij and v_ji may be exactly 0
  for (std::size_t k = 0; k < n; ++k) {
    if (k == i || std::fabs(Gap(i, k)) >= kLevelsApart) continue;
    const Cplx part = scratch_.v[k * n + j] * Conj(v) / Norm(v);
    for (std::size_t lane = 0; lane < kTypeLanes; ++lane) level.v[lane] += (scratch_.h[lane][i * n + k] * part).re;
  }
  return level;
}

}  // namespace kalvex

// The response of electrons in the bands of a lattice, with derivatives by everything that the bands are made of.
//
// Kubo's sum over the wave vectors k, two spins, v = dH/dk_x between the states of k, E the energy of the light:
//     sheet conductivity = i (e^2/hbar) (2/A) mean over k, sum over all i, j of |v_ij|^2 phi(E_i, E_j)/(E - D + ig),
//     D = E_j - E_i,  phi = (f_i - f_j)/D,  which is -df/dE where levels meet.
// Both orders of a pair taken together make 2 Z/(Z^2 - D^2) with Z = E + ig.
//
// Derivatives. H is linear in its parameters; h = dH between the states of k. Of pairs of levels that stand apart the
// first order of perturbation,
//     dv_ij = (dv)_ij + sum over k apart from i of h_ik v_kj/(E_i - E_k) + sum over k apart from j of v_ik h_kj/(E_j -
//     E_k).
// Levels that meet have no states of their own; but as the sum takes them all together, it depends on their common
// space alone, and what they mix within it acts as a shift of level i as the transition to j sees it:
//     |v_ij|^2 dE_i = sum over k at E_i of Re h_ik v_kj v_ji,
// in which k = i is the plain slope of the level. (Yu. L. Daleckii, S. G. Krein, Trudy Sem. Funkts. Anal. 1, 81, 1956)
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "evaluation/type_scratch.h"
#include "types/landau/ladder_sum.h"
#include "types/lattice/lattice.h"

namespace kalvex {

// The hops of a lattice whose sizes and site energies are numbers of a model.
template <class T>
struct BandModel {
  const std::vector<Hop>* hops = nullptr;
  std::vector<T> sizes;     // of each kind of hop, eV
  std::vector<T> energies;  // of each atom, eV
  T mu{}, kT{};             // eV
};

// What of the sum does not depend on the light.
template <class T>
struct BandTable {
  LadderTable<T> between;  // transitions between levels that stand apart, weight (2/A) |v|^2 phi each
  T within{};              // the same of levels that meet, a level with itself first of all
  T electrons{};           // in the cell, less those of half filled bands
  bool unsolved = false;   // an eigenvalue took too many iterations

  void Clear() {
    between.Clear();
    within = electrons = T(0);
    unsolved = false;
  }
};

// From here on levels stand apart, eV: below it the terms left out are 1e-9 of those kept, at energies of 1 meV; above
// it the quotients keep nine digits.
inline constexpr double kLevelsApart = 1e-7;

struct BandScratch {
  EigenScratch eigen;
  std::vector<Cplx> phases, matrix, room;
  std::vector<Cplx> v;                          // between the states
  std::array<std::vector<Cplx>, kTypeLanes> h;  // in each direction dH between the states
  std::array<std::vector<Cplx>, kTypeLanes> dv;
};

// One wave vector solved.
template <class T>
class BandPoint;

template <>
class BandPoint<double> {
 public:
  BandPoint(const BandModel<double>& model, BandScratch& scratch) : model_(model), scratch_(scratch) {}

  // False if an eigenvalue took too many iterations; it is used nevertheless.
  bool SolveAt(const Vector3& k);
  std::size_t size() const { return model_.energies.size(); }
  double Level(std::size_t i) const { return scratch_.eigen.levels[i]; }
  double LevelFor(std::size_t i, std::size_t) const { return Level(i); }
  double Strength(std::size_t i, std::size_t j) const { return Norm(scratch_.v[i * size() + j]); }

 private:
  const BandModel<double>& model_;
  BandScratch& scratch_;
};

template <>
class BandPoint<TypeDual> {
 public:
  BandPoint(const BandModel<TypeDual>& model, BandScratch& scratch) : model_(model), scratch_(scratch) {}

  bool SolveAt(const Vector3& k);
  std::size_t size() const { return model_.energies.size(); }
  TypeDual Level(std::size_t i) const;
  // Level i as the transition to j sees it.
  TypeDual LevelFor(std::size_t i, std::size_t j) const;
  // |v_ij|^2
  TypeDual Strength(std::size_t i, std::size_t j) const;

 private:
  bool Varies(std::size_t lane) const;
  void PerturbElements(std::size_t lane);
  double Gap(std::size_t i, std::size_t k) const { return scratch_.eigen.levels[i] - scratch_.eigen.levels[k]; }
  const BandModel<TypeDual>& model_;
  BandScratch& scratch_;
};

// Adds a wave vector that stands for a part of the zone.
template <class T>
void AddBandPoint(const BandModel<T>& model, const BandPoint<T>& point, double perArea, double share,
                  BandTable<T>& table) {
  const std::size_t n = point.size();
  const auto from = [&](const T& level) { return level - model.mu; };
  for (std::size_t i = 0; i < n; ++i) {
    table.electrons += T(2 * share) * (Fermi(from(point.Level(i)), model.kT) - T(0.5));
    for (std::size_t j = i; j < n; ++j) {
      const T strength = point.Strength(i, j);
      if (ValueOf(strength) == 0) continue;  // then its derivatives are 0, too
      const T low = point.LevelFor(i, j), high = point.LevelFor(j, i), step = high - low;
      const T weight =
          T((i == j ? 1 : 2) * perArea * share) * strength * FermiQuotient(from(low), from(high), model.kT);
      if (ValueOf(step) < kLevelsApart) {
        table.within += weight;
      } else if (ValueOf(weight) != 0) {  // not where both levels are full or empty
        table.between.Add(step * step, weight);
      }
    }
  }
}

}  // namespace kalvex

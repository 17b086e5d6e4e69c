// The response of electrons in the bands of a lattice, with derivatives by hoppings and site energies.
//
// Kubo formula: a sum over the wave vectors k and two spins, v = dH/dk_x between the states of k, E the photon energy:
//     sheet conductivity = i (e^2/hbar) (2/A) mean over k, sum over all i, j of |v_ij|^2 phi(E_i, E_j)/(E - D + ig),
//     D = E_j - E_i,  phi = (f_i - f_j)/D,  which is -df/dE for equal levels.
// Both orders of a pair add to 2 Z/(Z^2 - D^2) with Z = E + ig.
//
// Derivatives. H is linear in its parameters; h = dH between the states of k. For pairs of levels that differ, first
// order perturbation theory:
//     dv_ij = (dv)_ij + sum over E_k other than E_i of h_ik v_kj/(E_i - E_k)
//                     + sum over E_k other than E_j of v_ik h_kj/(E_j - E_k).
// Degenerate levels have no unique states. The sum contains all of them and therefore depends only on the space that
// they span. Mixing within this space acts as a shift of level i in the transition to j:
//     |v_ij|^2 dE_i = sum over k at E_i of Re h_ik v_kj v_ji,
// where k = i is the slope of the level itself. (Yu. L. Daleckii, S. G. Krein, Trudy Sem. Funkts. Anal. 1, 81, 1956)
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "evaluation/type_scratch.h"
#include "types/landau/ladder_sum.h"
#include "types/lattice/lattice.h"

namespace kalvex {

// The hops of a lattice, with hopping sizes and site energies from the rows of a model.
template <class T>
struct BandModel {
  const std::vector<Hop>* hops = nullptr;
  std::vector<T> sizes;     // of each kind of hop, eV
  std::vector<T> energies;  // of each atom, eV
  T mu{}, kT{};             // eV
};

// The part of the sum that does not depend on the frequency.
template <class T>
struct BandTable {
  LadderTable<T> between;  // transitions between different levels, with weights (2/A) |v|^2 phi
  T within{};              // sum of these weights for equal levels, also of a level with itself
  T electrons{};           // per cell, minus those of half filled bands
  bool unsolved = false;   // an eigenvalue took too many iterations

  void Clear() {
    between.Clear();
    within = electrons = T(0);
    unsolved = false;
  }
};

// Levels closer than this, in eV, count as equal. Below it the neglected terms are 1e-9 of the others at energies of 1
// meV; above it the difference quotients keep nine digits.
inline constexpr double kLevelsApart = 1e-7;

struct BandScratch {
  EigenScratch eigen;
  std::vector<Cplx> phases, matrix, room;
  std::vector<Cplx> v;                          // between the states
  std::array<std::vector<Cplx>, kTypeLanes> h;  // dH between the states, in each direction
  std::array<std::vector<Cplx>, kTypeLanes> dv;
};

// The states of one wave vector.
template <class T>
class BandPoint;

template <>
class BandPoint<double> {
 public:
  BandPoint(const BandModel<double>& model, BandScratch& scratch) : model_(model), scratch_(scratch) {}

  // Returns false if an eigenvalue did not converge; its last iterate is used.
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
  // Level i in the transition to j: its slopes contain the mixing with degenerate levels.
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

// Adds a wave vector. share: the part of the zone that it represents.
template <class T>
void AddBandPoint(const BandModel<T>& model, const BandPoint<T>& point, double perArea, double share,
                  BandTable<T>& table) {
  const std::size_t n = point.size();
  const auto from = [&](const T& level) { return level - model.mu; };
  for (std::size_t i = 0; i < n; ++i) {
    table.electrons += T(2 * share) * (Fermi(from(point.Level(i)), model.kT) - T(0.5));
    for (std::size_t j = i; j < n; ++j) {
      const T strength = point.Strength(i, j);
      if (ValueOf(strength) == 0) continue;  // its derivatives are then 0, too
      const T low = point.LevelFor(i, j), high = point.LevelFor(j, i), step = high - low;
      const T weight =
          T((i == j ? 1 : 2) * perArea * share) * strength * FermiQuotient(from(low), from(high), model.kT);
      if (ValueOf(step) < kLevelsApart) {
        table.within += weight;
      } else if (ValueOf(weight) != 0) {  // 0 if both levels are full or both are empty
        table.between.Add(step * step, weight);
      }
    }
  }
}

}  // namespace kalvex

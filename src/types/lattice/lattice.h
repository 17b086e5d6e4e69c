// A crystal lattice for tight-binding bands: its vectors, its atoms, and the hops between them.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "numeric/complex.h"
#include "numeric/hermitian_eigen.h"
#include "types/lattice/wave_vector_mesh.h"

namespace kalvex {

inline constexpr double kConductance = 2.43413e-4;  // e^2/hbar, S
inline constexpr int kMostAtoms = 10;
inline constexpr int kMostHopTypes = 100;
inline constexpr std::size_t kMostAtomName = 9;

struct Atom {
  std::string name;
  Vector3 place{};  // relative to the lattice vectors, 0 <= c < 1
  double energy = 0;
};

// Hops between two kinds of atoms at a distance R.
struct HopType {
  std::size_t first = 0, second = 0;  // atoms
  double R = 0, tolerance = 0;
  double size = 0;
};

struct Lattice {
  std::array<Vector3, 3> vectors{};
  std::array<Vector3, 3> reciprocal{};
  double volume = 0;
  std::vector<Atom> atoms;
  std::vector<HopType> types;
};

// Computes lattice vectors from three lengths and three angles in degrees: a1 along x, a2 in the plane of x and y.
// Returns false if there is no such cell.
bool SetLatticeVectors(const Vector3& lengths, const Vector3& degrees, Lattice& lattice);
// Computes volume and reciprocal vectors from the lattice vectors. Returns false if the volume is 0.
bool SetReciprocalVectors(Lattice& lattice);

struct Hop {
  std::size_t from = 0, to = 0;  // atoms
  std::array<int, 3> cell;       // of the second atom
  std::size_t type = 0;
  Vector3 step{};  // from the first atom to the second, in the unit of the lattice vectors
};

// Finds every pair of atoms, in both orders, whose distance is that of a hop type within its tolerance. Returns false
// if the types reach over too many cells or give too many hops.
bool FindHops(const Lattice& lattice, std::vector<Hop>& hops);

// exp(i k step) of each hop.
void PhasesAt(std::span<const Hop> hops, const Vector3& k, std::vector<Cplx>& phases);

// H(k) as an n by n matrix, row by row: energies on the diagonal, and sizeOf(type) exp(i k step) for each hop.
template <class SizeOf, class EnergyOf>
void AssembleBloch(std::size_t n, std::span<const Hop> hops, std::span<const Cplx> phases, SizeOf sizeOf,
                   EnergyOf energyOf, std::span<Cplx> matrix) {
  for (std::size_t i = 0; i < n * n; ++i) matrix[i] = {};
  for (std::size_t i = 0; i < n; ++i) matrix[i * n + i].re = energyOf(i);
  for (std::size_t h = 0; h < hops.size(); ++h) {
    const std::size_t at = hops[h].from * n + hops[h].to;
    matrix[at] += phases[h] * sizeOf(hops[h].type);
  }
}

// dH/dk_x: each hop of H times i step_x.
template <class SizeOf>
void AssembleBlochSlope(std::size_t n, std::span<const Hop> hops, std::span<const Cplx> phases, SizeOf sizeOf,
                        std::span<Cplx> matrix) {
  for (std::size_t i = 0; i < n * n; ++i) matrix[i] = {};
  for (std::size_t h = 0; h < hops.size(); ++h) {
    const std::size_t at = hops[h].from * n + hops[h].to;
    matrix[at] += TimesI(phases[h]) * (hops[h].step[0] * sizeOf(hops[h].type));
  }
}

// Matrix elements of an operator between the states of an eigenproblem: out_ij = <i|O|j>. room: a buffer of n by n.
void BetweenStates(std::size_t n, std::span<const Cplx> states, std::span<const Cplx> matrix, std::span<Cplx> room,
                   std::span<Cplx> out);

}  // namespace kalvex

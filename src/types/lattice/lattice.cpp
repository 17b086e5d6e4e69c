#include "types/lattice/lattice.h"

#include <cmath>
#include <numbers>

#include "evaluation/quantity_formulas.h"

namespace kalvex {

bool SetLatticeVectors(const Vector3& lengths, const Vector3& degrees, Lattice& lattice) {
  const double cosA = std::cos(degrees[0] * kRadiansPerDegree), cosB = std::cos(degrees[1] * kRadiansPerDegree);
  const double cosG = std::cos(degrees[2] * kRadiansPerDegree), sinG = std::sin(degrees[2] * kRadiansPerDegree);
  const double t = (cosA - cosG * cosB) / sinG;
  const double u = 1 - cosB * cosB - t * t;
  if (!(u > 0)) return false;
  lattice.vectors = {{{lengths[0], 0, 0},
                      {lengths[1] * cosG, lengths[1] * sinG, 0},
                      {lengths[2] * cosB, lengths[2] * t, lengths[2] * std::sqrt(u)}}};
  return true;
}

bool SetReciprocalVectors(Lattice& lattice) {
  const auto& a = lattice.vectors;
  lattice.volume = Dot(a[0], Cross(a[1], a[2]));
  if (lattice.volume == 0 || !std::isfinite(lattice.volume)) return false;
  const double scale = 2 * std::numbers::pi / lattice.volume;
  lattice.reciprocal = {Cross(a[1], a[2]), Cross(a[2], a[0]), Cross(a[0], a[1])};
  for (Vector3& b : lattice.reciprocal) {
    for (double& part : b) part *= scale;
  }
  return true;
}

namespace {

Vector3 StepBetween(const Lattice& lattice, const Vector3& from, const Vector3& to, const std::array<int, 3>& cell) {
  Vector3 step{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const double relative = to[axis] - from[axis] + cell[axis];
    for (std::size_t i = 0; i < 3; ++i) step[i] += relative * lattice.vectors[axis][i];
  }
  return step;
}

bool Joins(const HopType& type, std::size_t from, std::size_t to) {
  return (type.first == from && type.second == to) || (type.first == to && type.second == from);
}

// The hops between two atoms in two cells.
void AddHops(const Lattice& lattice, std::size_t from, std::size_t to, const std::array<int, 3>& cell,
             std::vector<Hop>& hops) {
  const Vector3 step = StepBetween(lattice, lattice.atoms[from].place, lattice.atoms[to].place, cell);
  const double distance = std::sqrt(Dot(step, step));
  for (std::size_t t = 0; t < lattice.types.size(); ++t) {
    const HopType& type = lattice.types[t];
    if (!Joins(type, from, to) || !(std::fabs(distance - type.R) <= type.tolerance)) continue;
    hops.push_back({from, to, cell, t, step});
  }
}

}  // namespace

bool FindHops(const Lattice& lattice, std::vector<Hop>& hops) {
  constexpr double kMostCells = 1e6;
  constexpr std::size_t kMostHops = 1'000'000;
  hops.clear();
  double longest = 0;
  for (const HopType& type : lattice.types) longest = std::fmax(longest, type.R);
  std::array<int, 3> range{};
  double cells = 1;
  for (std::size_t i = 0; i < 3; ++i) {
    const Vector3& b = lattice.reciprocal[i];
    const double reach = std::ceil(std::sqrt(Dot(b, b)) * longest / (2 * std::numbers::pi)) + 1;
    cells *= 2 * reach + 1;
    if (!(cells <= kMostCells)) return false;
    range[i] = static_cast<int>(reach);
  }
  const std::size_t atoms = lattice.atoms.size();
  for (int a = -range[0]; a <= range[0]; ++a) {
    for (int b = -range[1]; b <= range[1]; ++b) {
      for (int c = -range[2]; c <= range[2]; ++c) {
        for (std::size_t pair = 0; pair < atoms * atoms; ++pair) {
          AddHops(lattice, pair / atoms, pair % atoms, {a, b, c}, hops);
        }
        if (hops.size() > kMostHops) return false;
      }
    }
  }
  return true;
}

void PhasesAt(std::span<const Hop> hops, const Vector3& k, std::vector<Cplx>& phases) {
  phases.resize(hops.size());
  for (std::size_t h = 0; h < hops.size(); ++h) phases[h] = Exp({0, Dot(k, hops[h].step)});
}

void BetweenStates(std::size_t n, std::span<const Cplx> states, std::span<const Cplx> matrix, std::span<Cplx> room,
                   std::span<Cplx> out) {
  for (std::size_t r = 0; r < n; ++r) {
    for (std::size_t j = 0; j < n; ++j) {
      Cplx sum;
      for (std::size_t c = 0; c < n; ++c) sum += matrix[r * n + c] * states[j * n + c];
      room[r * n + j] = sum;
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      Cplx sum;
      for (std::size_t r = 0; r < n; ++r) sum += Conj(states[i * n + r]) * room[r * n + j];
      out[i * n + j] = sum;
    }
  }
}

}  // namespace kalvex

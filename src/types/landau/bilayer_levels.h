// Electrons of bilayer graphene in a magnetic field: the level matrix, and its transitions.
//
// Level n has the components (A1|n>, B1|n-1>, A2|n-1>, B2|n-2>), B1 and A2 the dimer:
//     [U/2 + s,  e sqrt n,        -e4 sqrt n,        0              ]
//     [          U/2 + d,          g1,              -e4 sqrt(n - 1) ]
//     [                           -U/2 + d,          e sqrt(n - 1)  ]
//     [                                             -U/2 + s        ],
// e = eps, e4 = eps g4/g0. Level 0 has only the first component, level 1 the first three. A = dH/d(eps a+) has ones at
// (A1, B1), (A2, B2) and -g4/g0 at (A1, A2), (B1, B2); it takes level n to n - 1. The other valley has -U.
// E. McCann, M. Koshino, Rep. Prog. Phys. 76, 056503 (2013). Trigonal hopping, which couples n with n + 3, is left out.
#pragma once

#include <algorithm>

#include "numeric/small_eigen.h"
#include "types/landau/dirac_levels.h"

namespace kalvex {

inline constexpr std::size_t kBilayerSize = 4;
inline constexpr double kVelocityPerHopping = 326000;  // m/s for 1 eV of in-plane hopping

template <class T>
struct BilayerBands {
  T ratio4{};  // g4/g0
  T g1{};      // eV, as all energies
  T U{};       // between the layers
  T dimer{};   // site energy of B1, A2
  T other{};   // and of A1, B2
};

// The matrix for ladder factors `first` = eps sqrt(n) and `second` = eps sqrt(n - 1).
template <class T>
SmallMatrix<T, kBilayerSize> BilayerMatrix(const BilayerBands<T>& bands, const T& first, const T& second) {
  SmallMatrix<T, kBilayerSize> h{};
  const T half = T(0.5) * bands.U;
  h[0] = {half + bands.other, first, -(bands.ratio4 * first), T(0)};
  h[1] = {T(0), half + bands.dimer, bands.g1, -(bands.ratio4 * second)};
  h[2] = {T(0), T(0), bands.dimer - half, second};
  h[3] = {T(0), T(0), T(0), bands.other - half};
  return h;
}

inline std::size_t SizeOfLevel(int n) { return n == 0 ? 1 : n == 1 ? 3 : 4; }

template <class T>
SmallEigen<T, kBilayerSize> BilayerLevel(const BilayerBands<T>& bands, const T& eps, int n) {
  const T first = eps * T(std::sqrt(n)), second = eps * T(std::sqrt(std::max(n - 1, 0)));
  return EigenOf(BilayerMatrix(bands, first, second), SizeOfLevel(n));
}

// <lower|A|upper>
template <class T>
T BilayerElement(const BilayerBands<T>& bands, const std::array<T, kBilayerSize>& lower,
                 const std::array<T, kBilayerSize>& upper) {
  return lower[0] * upper[1] + lower[2] * upper[3] - bands.ratio4 * (lower[0] * upper[2] + lower[1] * upper[3]);
}

template <class T>
void AddBilayerPairs(LadderTable<T>& table, const BilayerBands<T>& bands, const SmallEigen<T, kBilayerSize>& lower,
                     std::size_t lowerSize, const SmallEigen<T, kBilayerSize>& upper, std::size_t upperSize,
                     const T& weight, const T& mu, const T& kT) {
  for (std::size_t a = 0; a < lowerSize; ++a) {
    for (std::size_t b = 0; b < upperSize; ++b) {
      const T element = BilayerElement(bands, lower.vector[a], upper.vector[b]);
      AddTransition(table, weight * element * element, lower.value[a] - mu, upper.value[b] - mu, kT);
    }
  }
}

// Adds the transitions of one valley and both spins between the levels 0 to `highest`. Two valleys of weight 0.5 make
// the four flavours of the ladder sum.
template <class T>
void AddBilayerTransitions(LadderTable<T>& table, const BilayerBands<T>& bands, const T& eps, const T& weight,
                           const T& mu, const T& kT, int highest) {
  SmallEigen<T, kBilayerSize> lower = BilayerLevel(bands, eps, 0);
  for (int n = 1; n <= highest; ++n) {
    const SmallEigen<T, kBilayerSize> upper = BilayerLevel(bands, eps, n);
    AddBilayerPairs(table, bands, lower, SizeOfLevel(n - 1), upper, SizeOfLevel(n), weight * eps * eps, mu, kT);
    lower = upper;
  }
}

// Adds the free-carrier (Drude) term of a band that runs from energy - half to energy + half within a step.
template <class T>
void AddCharge(LadderTable<T>& table, const T& strength, const T& energy, const T& half, const T& kT) {
  if (SameOccupation(ValueOf(energy - half), ValueOf(energy + half), ValueOf(kT))) return;
  const bool flat = std::fabs(ValueOf(half)) < 1e-12;
  const T perEnergy =
      flat ? -FermiSlope(energy, kT) : (Fermi(energy - half, kT) - Fermi(energy + half, kT)) / (T(2) * half);
  table.Add(T(0), strength * perEnergy);
}

// The limit of zero field: eps^2 times the sum over n becomes the integral of 2 k dk over the in-plane energy k = hbar
// v q, up to 3 eV. The steps are smaller than the broadening `width` up to 1 eV, where the transitions lie, and four
// times as wide above.
template <class T>
void AddBilayerContinuum(LadderTable<T>& table, const BilayerBands<T>& bands, const T& weight, const T& mu, const T& kT,
                         double width) {
  constexpr double kFine = 1, kLargest = 3, kWider = 4;
  constexpr int kPortion = 32, kMost = 4096;
  const double wanted = std::ceil(4 * kFine / std::fmax(std::fabs(width), 1e-9) / kPortion);
  const int fine = static_cast<int>(std::fmin(kMost, kPortion * wanted));
  const double step = kFine / fine;
  const auto add = [&](double k, double dk) {
    const auto at = EigenOf(BilayerMatrix(bands, T(k), T(k)), 4);
    const T part = weight * T(2 * k * dk);
    for (std::size_t i = 0; i < kBilayerSize; ++i) {
      // Within a band the energy varies by +- own dk over the step, since dE/dk is twice the matrix element.
      const T own = BilayerElement(bands, at.vector[i], at.vector[i]);
      AddCharge(table, part * own * own, at.value[i] - mu, own * T(dk), kT);
      for (std::size_t f = 0; f < i; ++f) {  // from f to i, and from i to f
        const T up = BilayerElement(bands, at.vector[f], at.vector[i]),
                down = BilayerElement(bands, at.vector[i], at.vector[f]);
        AddTransition<HallPart::kNone>(table, part * (up * up + down * down), at.value[f] - mu, at.value[i] - mu, kT);
      }
    }
  };
  for (int i = 0; i < fine; ++i) add((i + 0.5) * step, step);
  const int coarse = static_cast<int>((kLargest - kFine) / (kWider * step));
  for (int i = 0; i < coarse; ++i) add(kFine + (i + 0.5) * kWider * step, kWider * step);
}

// All energies of the levels 0 to `highest`, ascending.
inline std::vector<double> BilayerEnergies(const BilayerBands<double>& bands, double eps, int highest) {
  std::vector<double> energies;
  for (int n = 0; n <= highest; ++n) {
    const auto level = BilayerLevel(bands, eps, n);
    energies.insert(energies.end(), level.value.begin(), level.value.begin() + SizeOfLevel(n));
  }
  std::sort(energies.begin(), energies.end());
  return energies;
}

}  // namespace kalvex

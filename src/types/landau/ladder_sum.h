// Conductivity of electrons in Landau levels: one sum for all Hamiltonians that are linear in the ladder operator.
//
// With eps = sqrt(2 hbar e v^2 |B|) and A = dH/d(eps a+), a transition i -> f in which the level index grows by one
// adds to the circular conductivities, in units of a layer of 3.35 A and for four flavours of electrons,
//     sigma_+-(E) = (14532/pi) eps^2 sum |A_fi|^2 (f_i - f_f)/D i/(E -+ D + ig),   D = E_f - E_i.
// The sum over all pairs of bands contains resonant and antiresonant parts. With Z = E + ig both tensor elements are
// sums over 1/(D^2 - Z^2):
//     sigma_xx = -i (14532/pi) Z sum w/(D^2 - Z^2),  sigma_xy = -(14532/pi) sum w D/(D^2 - Z^2),
//     w = eps^2 |A_fi|^2 (f_i - f_f)/D.
// V. P. Gusynin, S. G. Sharapov, J. P. Carbotte, J. Phys.: Condens. Matter 19, 026222 (2007), Kubo formula.
#pragma once

#include <cmath>
#include <numbers>
#include <span>
#include <vector>

#include "evaluation/type_scratch.h"
#include "numeric/complex.h"
#include "numeric/dual.h"
#include "numeric/fermi.h"

namespace kalvex {

inline constexpr double kElectronvoltPerWavenumber = 0.00012399256044637322;
inline constexpr double kElectronvoltPerKelvin = 8.617346718945237e-05;
// 2 hbar e in eV^2 s^2/(m^2 T): eps^2 = kLadderScale v^2 |B|.
inline constexpr double kLadderScale = 2 * 6.577e-16;
// Eight times e^2/(4 hbar) over 3.35 A, in Ohm^-1 cm^-1.
inline constexpr double kLadderConductivity = 14532;

template <class T>
struct LadderSums {
  Complex<T> diagonal;
  Complex<T> hall;
};

// The transitions of a spectrum.
template <class T>
struct LadderTable {
  std::vector<T> square;    // D^2
  std::vector<T> diagonal;  // numerator over D^2 - Z^2 in sigma_xx
  std::vector<T> hall;      // the same in sigma_xy; empty without a field

  // Cache: sums that were computed together, their Z, and the index of the last one that was read.
  struct Made {
    std::vector<Complex<T>> at;
    std::vector<LadderSums<T>> sums;
    std::size_t last = 0;
  };
  mutable Made made;

  void Clear() {
    made.at.clear();
    square.clear();
    diagonal.clear();
    hall.clear();
  }
  void Add(const T& squareOfStep, const T& ofDiagonal, const T& ofHall) {
    square.push_back(squareOfStep);
    diagonal.push_back(ofDiagonal);
    hall.push_back(ofHall);
  }
  void Add(const T& squareOfStep, const T& ofDiagonal) {
    square.push_back(squareOfStep);
    diagonal.push_back(ofDiagonal);
  }
};

// Whether both levels are full or both empty: beyond 40 kT the occupation is 0 or 1 within exp(-40), 4e-18.
inline bool SameOccupation(double from, double to, double kT) {
  const double certain = 40 * std::fmax(kT, 0);
  return (from > certain && to > certain) || (from < -certain && to < -certain);
}

// Adds a transition of weight eps^2 |A_fi|^2 between two energies, counted from the chemical potential, unless both
// levels are full or both are empty. Without a field there is no Hall part.
enum class HallPart { kThere, kNone };
template <HallPart hall = HallPart::kThere, class T>
void AddTransition(LadderTable<T>& table, const T& weight, const T& from, const T& to, const T& kT) {
  if (SameOccupation(ValueOf(from), ValueOf(to), ValueOf(kT))) return;
  const T step = to - from;
  // Within a band at zero field the difference quotient becomes the slope.
  const bool same = std::fabs(ValueOf(step)) < 1e-12;
  const T w = same ? -weight * FermiSlope(from, kT) : weight * (Fermi(from, kT) - Fermi(to, kT)) / step;
  if constexpr (hall == HallPart::kThere) {
    table.Add(step * step, w, w * step);
  } else {
    table.Add(step * step, w);
  }
}

// Both sums at Z = E + ig in eV. ahead: frequencies in cm-1, the first one that of Z. Reading the table from memory
// takes longer than summing it. The sums at all these frequencies are therefore computed together and cached for the
// next calls. A sum does not depend on the frequencies with which it is computed.
LadderSums<double> SumLadder(const LadderTable<double>& table, const Cplx& z, std::span<const double> ahead = {});
LadderSums<TypeDual> SumLadder(const LadderTable<TypeDual>& table, const Complex<TypeDual>& z,
                               std::span<const double> ahead = {});

template <class T>
struct SheetTensor {
  Complex<T> xx;
  Complex<T> xy;
};

// sigma_xx and sigma_xy in Ohm^-1 cm^-1 of a layer of 3.35 A at Z = E + ig in eV. reversed: the field is negative.
template <class T>
SheetTensor<T> LadderTensor(const LadderTable<T>& table, const Complex<T>& z, bool reversed,
                            std::span<const double> ahead = {}) {
  const LadderSums<T> sums = SumLadder(table, z, ahead);
  const T scale(kLadderConductivity / std::numbers::pi);
  return {-TimesI(z * sums.diagonal * scale), sums.hall * (reversed ? scale : -scale)};
}

}  // namespace kalvex

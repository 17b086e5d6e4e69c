// Electrons with a linear spectrum: Landau levels +-sqrt(D^2 + n eps^2), and their conductivity without a field.
#pragma once

#include "types/landau/ladder_sum.h"

namespace kalvex {

template <class T>
T Magnitude(const T& x) {
  return ValueOf(x) < 0 ? -x : x;
}

// D^2/(E1 E2). Transitions between bands have the factor 1 + this, those within a band 1 - this. 0 for a level at 0.
template <class T>
T GapRatio(const T& gap, const T& E1, const T& E2) {
  if (ValueOf(E1) == 0 || ValueOf(E2) == 0) return T(0);
  return gap * gap / (E1 * E2);
}

// Adds all transitions between the levels 0 to `highest` of both valleys, with the strength `weight` = eps^2. Energies
// in eV.
template <class T>
void AddDiracTransitions(LadderTable<T>& table, const T& weight, const T& eps2, const T& gap, const T& mu, const T& kT,
                         int highest) {
  T E1 = Magnitude(gap);
  for (int n = 0; n < highest; ++n) {
    const T E2 = Sqrt(gap * gap + T(n + 1) * eps2);
    const T ratio = GapRatio(gap, E1, E2);
    const T between = T(0.25) * weight * (T(1) + ratio), within = T(0.25) * weight * (T(1) - ratio);
    AddTransition(table, between, -E1 - mu, E2 - mu, kT);
    AddTransition(table, between, E1 - mu, -E2 - mu, kT);
    AddTransition(table, within, E1 - mu, E2 - mu, kT);
    AddTransition(table, within, -E1 - mu, -E2 - mu, kT);
    E1 = E2;
  }
}

// The limit of zero field: the sum over levels becomes the integral of 2 E dE from the gap to the largest energy. The
// steps are at most width/4 and kT/2, as long as their number stays below 40000.
template <class T>
void AddDiracContinuum(LadderTable<T>& table, const T& weight, const T& gap, const T& mu, const T& kT, double largest,
                       double width) {
  constexpr int kLeast = 400, kMost = 40000;
  const T from = Magnitude(gap);
  const double range = largest - ValueOf(from);
  if (!(range > 0)) return;
  const double thermal = ValueOf(kT) > 0 ? ValueOf(kT) / 2 : range;
  const double finest = std::fmax(std::fmin(std::fabs(width) / 4, thermal), 1e-12);
  const int count = static_cast<int>(std::fmin(kMost, std::fmax(kLeast, range / finest)));
  const T step = (T(largest) - from) / T(count);
  for (int i = 0; i < count; ++i) {
    const T E = from + step * T(i + 0.5), part = T(0.5) * weight * E * step, ratio = gap * gap / (E * E);
    // From -E to E, and with the same weight from E to -E.
    AddTransition<HallPart::kNone>(table, T(2) * part * (T(1) + ratio), -E - mu, E - mu, kT);
    AddTransition<HallPart::kNone>(table, part * (T(1) - ratio), E - mu, E - mu, kT);
    AddTransition<HallPart::kNone>(table, part * (T(1) - ratio), -E - mu, -E - mu, kT);
  }
}

// A chiral band of winding J (1 for one layer, 2 for two) with half gap D, at zero field and T = 0, for one flavour.
// z = E + ig in eV; results in Ohm^-1 cm^-1 of a layer of 3.35 A. For J = 1 the four flavours give 1816.5 far above
// the gap.
//     sigma_xx = (u/4) J [(1 + 4 D^2/z^2) ln((2c + z)/(2c - z)) - 4 D^2/(c z)]/(i pi) + (u/pi) J i (mu^2 - D^2)/(c z),
//     sigma_xy = (u/pi) J (D/z) ln((2c + z)/(2c - z)),  c = max(|D|, |mu|).
// R. Nandkishore, L. Levitov, Phys. Rev. Lett. 107, 097402 (2011).
template <class T>
SheetTensor<T> ChiralBand(const Complex<T>& z, const T& gap, const T& mu, double winding) {
  const T D = Magnitude(gap), m = Magnitude(mu);
  const bool filled = ValueOf(m) > ValueOf(D);
  const T c = filled ? m : D;
  const T u(0.125 * kLadderConductivity * winding);
  // The limit of the logarithm for gap = mu = 0 is i pi.
  Complex<T> log{T(0), T(std::numbers::pi)};
  Complex<T> subtracted, intraband;
  if (ValueOf(c) > 0) {
    log = Log((T(2) * c + z) / (T(2) * c - z));
    subtracted = Complex<T>{T(4) * D * D / c, T(0)} / z;
    if (filled) intraband = TimesI(Complex<T>{u / T(std::numbers::pi) * (m * m - D * D) / c, T(0)} / z);
  }
  const T four = T(4) * D * D;
  const Complex<T> between = (Complex<T>{T(1), T(0)} + Complex<T>{four, T(0)} / (z * z)) * log - subtracted;
  const Complex<T> xx = -TimesI(between * (u / T(4 * std::numbers::pi))) + intraband;
  const Complex<T> xy = Complex<T>{u / T(std::numbers::pi) * gap, T(0)} / z * log;
  return {xx, xy};
}

}  // namespace kalvex

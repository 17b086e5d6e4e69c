// Oscillators whose resonances for the two circular polarisations are shifted apart by a magnetic field. Each one has a
// row (W, S, G) and a next row with the shift B.
#pragma once

#include "types/magneto/circular.h"

namespace kalvex {

struct OscillatorPair {
  enum Cell { kFrequency, kStrength, kWidth, kShift };
  static constexpr RowCell kCells[] = {Own(0, Wo, "frequency W, cm-1, 0 for free electrons", 150),
                                       Own(0, Wp, "plasma frequency S, cm-1", 300), Own(0, G, "width G, cm-1", 20),
                                       Own(1, Wo, "cyclotron shift B, cm-1: of free electrons eB/m", 12)};
  static constexpr int kRows = 2;
};

// S^2/(W^2 - x^2 - iGx + shift), 0 if the denominator is 0.
template <class T>
Complex<T> ShiftedOscillator(const T& W, const T& S, const T& G, const T& shift, double x) {
  const Complex<T> D{W * W - T(x * x) + shift, -(G * T(x))};
  if (Norm(ValueOf(D)) < 1e-20) return {};
  return Complex<T>{S * S, T(0)} / D;
}

// The sum over all groups of the row map for one circular polarisation. side is -1 for eps+, 1 for eps- and 0 at zero
// field. For B > 0 the resonance of eps+ lies above W.
template <class T>
Complex<T> SumOfPairs(const TypeInputs<T>& in, double side) {
  using enum OscillatorPair::Cell;
  Complex<T> sum;
  for (std::size_t k = 0; k < in.groups(); ++k) {
    sum += ShiftedOscillator(in[in.Of(k, kFrequency)], in[in.Of(k, kStrength)], in[in.Of(k, kWidth)],
                             in[in.Of(k, kShift)] * T(side * in.x), in.x);
  }
  return sum;
}
template <class T>
Circular<T> SumOfPairs(const TypeInputs<T>& in) {
  return {SumOfPairs(in, -1), SumOfPairs(in, 1)};
}

}  // namespace kalvex

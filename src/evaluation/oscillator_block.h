// Plain rows at a block of frequencies: rows one after the other, each at all frequencies.
#pragma once

#include <cstddef>
#include <limits>
#include <span>

#include "evaluation/spectrum_block.h"

namespace kalvex {

struct PlainRow {
  double Wo = 0;
  double Wp = 0;
  double G = 0;
};

// What tells whether the rows can be summed in a hurry.
struct RowBounds {
  double leastG = std::numeric_limits<double>::infinity();  // the smallest |G|
  double most = 0;                                          // the largest of |Wo| and |G|
};
RowBounds BoundsOf(std::span<const PlainRow> rows);

// Adds the sum of the rows at kSpectrumBlock frequencies w (cm-1) to re and im. Where no denominator is next to nothing
// or out of all range, rows share quotients, so that a sum may differ from that of single rows by a few units in the
// last place.
void AddOscillators(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re, double* im);

// The same, and leaves 1/D of each row for OscillatorSlopesOf: kSpectrumBlock real parts and as many imaginary ones for
// each row, one behind the other.
void AddOscillatorsForSlopes(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                             double* im, double* inverses);

// How a Quantity with the derivatives dRe and dIm by the dielectric function changes with the three columns of one row.
// inverses: those of the row.
void OscillatorSlopesOf(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                        const double* dIm, double* byWo, double* byWp, double* byG);

}  // namespace kalvex

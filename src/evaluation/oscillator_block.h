// Plain rows at a block of frequencies: the rows one after the other, each at all frequencies.
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

// Bounds that decide whether rows can share quotients.
struct RowBounds {
  double leastG = std::numeric_limits<double>::infinity();  // the smallest |G|
  double most = 0;                                          // the largest of |Wo| and |G|
};
RowBounds BoundsOf(std::span<const PlainRow> rows);

// Adds the sum of the rows at kSpectrumBlock frequencies w (cm-1) to re and im. If no denominator is near zero or out
// of range, rows share quotients. The sum may then differ from that of single rows by a few units in the last place.
void AddOscillators(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re, double* im);

// The same. It also stores 1/D of each row for OscillatorSlopesOf: kSpectrumBlock real parts, then as many imaginary
// parts, row after row.
void AddOscillatorsForSlopes(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                             double* im, double* inverses);

// The derivatives of a Quantity by the three columns of one row, from its derivatives dRe and dIm by the dielectric
// function. inverses: 1/D of this row.
void OscillatorSlopesOf(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                        const double* dIm, double* byWo, double* byWp, double* byG);

}  // namespace kalvex

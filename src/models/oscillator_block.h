// Plain rows at a block of frequencies: rows one after the other, each at all frequencies.
#pragma once

#include <cstddef>
#include <span>

#include "models/spectrum_block.h"

namespace kalvex {

struct PlainRow {
  double Wo = 0;
  double Wp = 0;
  double G = 0;
};

// Adds the sum of the rows at kSpectrumBlock frequencies w (cm-1) to re and im. leastG: the smallest |G| of the rows.
void AddOscillators(std::span<const PlainRow> rows, double leastG, const double* w, double* re, double* im);

// The same, and leaves 1/D of each row for OscillatorSlopesOf: kSpectrumBlock real parts and as many imaginary ones for
// each row, one behind the other.
void AddOscillatorsForSlopes(std::span<const PlainRow> rows, double leastG, const double* w, double* re, double* im,
                             double* inverses);

// How a Quantity with the derivatives dRe and dIm by the dielectric function changes with the three columns of one row.
// inverses: those of the row.
void OscillatorSlopesOf(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                        const double* dIm, double* byWo, double* byWp, double* byG);

}  // namespace kalvex

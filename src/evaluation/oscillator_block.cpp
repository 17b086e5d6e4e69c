#include "evaluation/oscillator_block.h"

#include <algorithm>
#include <cmath>

#include "evaluation/spectrum_kernels.h"

namespace kalvex {

RowBounds BoundsOf(std::span<const PlainRow> rows) {
  RowBounds bounds;
  for (const PlainRow& row : rows) {
    bounds.leastG = std::min(bounds.leastG, std::fabs(row.G));
    bounds.most = std::max({bounds.most, std::fabs(row.Wo), std::fabs(row.G)});
  }
  return bounds;
}

void AddOscillators(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re, double* im) {
  WidestKernels<SpectrumKernels>().addOscillators(rows, bounds, w, re, im);
}

void AddOscillatorsForSlopes(std::span<const PlainRow> rows, const RowBounds& bounds, const double* w, double* re,
                             double* im, double* inverses) {
  WidestKernels<SpectrumKernels>().addOscillatorsForSlopes(rows, bounds, w, re, im, inverses);
}

void OscillatorSlopesOf(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                        const double* dIm, double* byWo, double* byWp, double* byG) {
  WidestKernels<SpectrumKernels>().oscillatorSlopes(row, w, inverses, dRe, dIm, byWo, byWp, byG);
}

}  // namespace kalvex

#include "models/oscillator_block.h"

#include "models/vector_kernels.h"

namespace kalvex {

void AddOscillators(std::span<const PlainRow> rows, double leastG, const double* w, double* re, double* im) {
  WidestKernels().addOscillators(rows, leastG, w, re, im);
}

void AddOscillatorsForSlopes(std::span<const PlainRow> rows, double leastG, const double* w, double* re, double* im,
                             double* inverses) {
  WidestKernels().addOscillatorsForSlopes(rows, leastG, w, re, im, inverses);
}

void OscillatorSlopesOf(const PlainRow& row, const double* w, const double* inverses, const double* dRe,
                        const double* dIm, double* byWo, double* byWp, double* byG) {
  WidestKernels().oscillatorSlopes(row, w, inverses, dRe, dIm, byWo, byWp, byG);
}

}  // namespace kalvex

// Sums over momenta of the reflection of a surface below a tip, in packs.
#pragma once

#include <span>

#include "core/vector_width.h"
#include "numeric/complex.h"
#include "numeric/pack.h"

namespace kalvex {

struct TipKernels {
  // The sum of weight*(top + s)/(bottom + s) with s = slope*place. The mesh consists of whole packs.
  Cplx (*sumOverMesh)(std::span<const double> places, const double* weights, const Cplx& top, const Cplx& bottom,
                      const Cplx& slope);
};

}  // namespace kalvex

// The value of a variational dielectric function: piecewise linear curves. Under the constraint the real part is the
// exact Kramers-Kronig transform of the imaginary part, which is a sum of triangles.
#pragma once

#include <span>

#include "evaluation/slopes.h"
#include "numeric/complex.h"
#include "records/var_diel_func.h"

namespace kalvex {

// The kernel of the transform at frequency X (cm-1). out[j] is the real part due to a triangle of height 1 at mesh
// point j, (2/pi) P-integral of w T(w)/(w^2 - X^2) dw; 0 at the two end points. out has the size of the mesh.
void VdfKernel(const VarDielFunc& vdf, double X, double* out);

// The one or two mesh points that determine the piecewise linear curves at a frequency, with their weights.
struct VdfWeights {
  static constexpr std::size_t kNoPoint = ~std::size_t{0};
  std::size_t first = kNoPoint;  // kNoPoint outside the mesh
  std::size_t second = kNoPoint;
  double firstWeight = 0;
  double secondWeight = 0;
};
VdfWeights VdfWeightsAt(const VarDielFunc& vdf, double X);

// Value at frequency X. With slopes: also dEpsRe and dEpsIm of both parameters of every mesh point; empty slopes mean
// no derivatives. Outside the mesh the imaginary part is 0. The real part there is 0, or the tail of the transform.
Cplx EvalVdf(const VarDielFunc& vdf, double X, std::span<MeshSlopes> slopes = {});
// Sets the derivatives by the parameters on which EvalVdf depends to 1.
void VdfGradient(const VarDielFunc& vdf, std::span<MeshSlopes> slopes);

// Integral of w e2(w)/(4 pi) from the first mesh point to the limit. With slopes: derivatives are written to dScalar.
double VdfScalarSum(const VarDielFunc& vdf, double limit, std::span<MeshSlopes> slopes = {});
void VdfScalarGradient(std::span<MeshSlopes> slopes);

}  // namespace kalvex

// The sums over a model's rows: the complex dielectric function, and the real sum of spectral weights; each with the
// seed that marks what it depends on.
#pragma once

#include "models/eval_context.h"

namespace kalvex {

// Dielectric function at frequency x (cm-1): epsInf, the rows, the composite terms, the variational function. With
// derivatives, those of the sum by each adjustable parameter go to its dEpsRe and dEpsIm. Cannot fail.
Cplx EpsSum(EvalContext& ctx, Model& model, double x, bool derivatives);
// Sets dEpsRe and dEpsIm of every adjustable parameter to 1 if EpsSum depends on it and to 0 if not.
void SeedDependencies(EvalContext& ctx, Model& model);

// Sum of the partial spectral weights of the rows up to frequency x; 0 as a whole if a composite term of the model has
// no such weight. epsInf takes no part. Derivatives go to dScalar.
double ScalarSum(EvalContext& ctx, Model& model, double x, bool derivatives);
void SeedScalarDependencies(EvalContext& ctx, Model& model);

}  // namespace kalvex

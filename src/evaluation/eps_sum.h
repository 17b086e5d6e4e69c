// The sums over a model's rows: the complex dielectric function, and the real sum of spectral weights; each with the
// seed that marks what it depends on.
#pragma once

#include "evaluation/eval_context.h"

namespace kalvex {

// Dielectric function at frequency x (cm-1): epsInf, the rows, the composite terms, the variational function. With
// derivatives, those of the sum by each adjustable parameter go to dEpsRe and dEpsIm of its slopes. Cannot fail.
Cplx EpsSum(EvalContext& ctx, const Model& model, double x, bool derivatives);
// The same without the variational function.
Cplx RowSum(EvalContext& ctx, const Model& model, double x, bool derivatives);
inline bool HasVdf(const Model& model) { return model.vdf.On && !model.vdf.mesh.empty(); }
// The frequency at which the sum is taken when x is asked for.
double SumFrequency(const EvalContext& ctx, double x);
// Sets dEpsRe and dEpsIm of every adjustable parameter to 1 if EpsSum depends on it and to 0 if not.
void SeedDependencies(EvalContext& ctx, const Model& model);

// Raises every mesh value of the variational function under which the imaginary part of the whole sum is negative, so
// that the sum's imaginary part there becomes 1e-7; in mesh order, each point seeing the corrections before it.
void MakeVdfPositive(EvalContext& ctx, Model& model);

// Sum of the partial spectral weights of the rows up to frequency x; 0 as a whole if a composite term of the model has
// no such weight. epsInf takes no part. Derivatives go to dScalar.
double ScalarSum(EvalContext& ctx, const Model& model, double x, bool derivatives);
void SeedScalarDependencies(EvalContext& ctx, const Model& model);

}  // namespace kalvex

// The sums over a model's rows: the complex dielectric function, and the real sum of spectral weights. For each there
// is a dependency pass, which marks the parameters on which the sum depends.
#pragma once

#include "evaluation/eval_context.h"

namespace kalvex {

// Dielectric function at frequency x (cm-1): epsInf, the rows, the composite terms and the variational function. With
// derivatives, the slopes of the sum by each adjustable parameter are written to dEpsRe and dEpsIm. Cannot fail.
Cplx EpsSum(EvalContext& ctx, const Model& model, double x, bool derivatives);
// The same without the variational function.
Cplx RowSum(EvalContext& ctx, const Model& model, double x, bool derivatives);
inline bool HasVdf(const Model& model) { return model.vdf.On && !model.vdf.mesh.empty(); }
// The frequency at which the sum is evaluated for a requested frequency x.
double SumFrequency(const EvalContext& ctx, double x);
// Sets dEpsRe and dEpsIm of every adjustable parameter to 1 if EpsSum depends on it and to 0 if not.
void SeedDependencies(EvalContext& ctx, const Model& model);

// Raises mesh values of the variational function where the imaginary part of the whole sum is negative. The sum's
// imaginary part becomes 1e-7 there. The points are corrected in mesh order; each correction includes the earlier ones.
void MakeVdfPositive(EvalContext& ctx, Model& model);

// Sum of the partial spectral weights of the rows up to frequency x, without epsInf. The whole sum is 0 if a composite
// term of the model has no partial spectral weight. Derivatives are written to dScalar.
double ScalarSum(EvalContext& ctx, const Model& model, double x, bool derivatives);
void SeedScalarDependencies(EvalContext& ctx, const Model& model);

}  // namespace kalvex

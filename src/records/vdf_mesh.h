// Creates a mesh and switches its options.
#pragma once

#include "core/status.h"
#include "datasets/dataset.h"
#include "records/var_diel_func.h"

namespace kalvex {

// Removes the mesh and switches all options off. The sources stay.
void ClearVdf(VarDielFunc& vdf);

// Creates a mesh at the frequencies of the active rows of the sources. Each frequency appears once, and all values are
// 0. The options come from initOn, initKK and initFitActive. Without any row the mesh is removed. Fails only if memory
// runs out.
Status InitVdfMesh(VarDielFunc& vdf, const DatasetTable& datasets);

// These three do nothing without a mesh.
void ToggleVdfOn(VarDielFunc& vdf);
// Makes every e2 adjustable, whatever FitActive is, and every e1 unless the constraint is now on. In a constrained mesh
// the two end points are fixed, with e2 = 0.
void ToggleVdfKK(VarDielFunc& vdf);
void ToggleVdfFitActive(VarDielFunc& vdf);

// The limits stored with a mesh parameter. They are not active.
inline constexpr double kVdfE1Bound = 1e10;
inline constexpr double kVdfE2Bound = 1e6;

// Fixes the two end points of a constrained mesh, which do not contribute.
void FixVdfEnds(VarDielFunc& vdf);

}  // namespace kalvex

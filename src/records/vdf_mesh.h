// Making a mesh and switching what it does.
#pragma once

#include "core/status.h"
#include "datasets/dataset.h"
#include "records/var_diel_func.h"

namespace kalvex {

// No mesh, everything off; the sources stay.
void ClearVdf(VarDielFunc& vdf);

// A mesh at the frequencies of the active rows of the sources, each frequency once, all values 0, with the choices of
// initOn, initKK and initFitActive. Without a single row it is cleared. Fails only if memory is too short.
Status InitVdfMesh(VarDielFunc& vdf, const DatasetTable& datasets);

// These three do nothing without a mesh.
void ToggleVdfOn(VarDielFunc& vdf);
// Frees every e2, whatever FitActive says, and every e1 unless the constraint is now on; the two end points of a
// constrained mesh are fixed, with e2 at 0.
void ToggleVdfKK(VarDielFunc& vdf);
void ToggleVdfFitActive(VarDielFunc& vdf);

// The bounds that a mesh parameter stores, though they are not in force.
inline constexpr double kVdfE1Bound = 1e10;
inline constexpr double kVdfE2Bound = 1e6;

// Under the constraint the two end points have no say.
void FixVdfEnds(VarDielFunc& vdf);

}  // namespace kalvex

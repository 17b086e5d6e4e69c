// Error bars and correlations of the fit's parameters: "Params.dat" and "ParCorrs.dat".
#pragma once

#include <span>

#include "fit/fit_coordinate.h"
#include "fit/fit_state.h"
#include "numeric/band_solver.h"

namespace kalvex {

// From the undamped curvature matrix alpha (its lower triangle is scratch): error = sqrt(DeltaChiSq cov_ii), carried
// from the fit's coordinate to the value, 0 where cov_ii is not above 0; and the correlation of each pair of masters.
// Writes both files to the current directory; one that cannot be written is noted in the report. factor: scratch.
//   cells, coordinates   of each parameter of the fit
void WriteConfidence(FitState& fit, std::span<ModelParam* const> cells, std::span<const FitCoordinate> coordinates,
                     const SquareMatrix& alpha, BandFactor& factor);

}  // namespace kalvex

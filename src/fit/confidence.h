// Error bars and correlations of the fit parameters: "Params.dat" and "ParCorrs.dat".
#pragma once

#include <span>

#include "fit/fit_coordinate.h"
#include "fit/fit_state.h"
#include "numeric/band_solver.h"

namespace kalvex {

// Computes from the undamped curvature matrix alpha the errors and the correlation of each pair of masters. error =
// sqrt(DeltaChiSq cov_ii), converted from the fit's coordinate to the value; 0 if cov_ii is not above 0. Writes both
// files to the current directory. A file that cannot be written is recorded in the report.
//
//   cells, coordinates   one entry per parameter of the fit
//   alpha                its lower triangle is overwritten
//   factor               work space
void WriteConfidence(FitState& fit, std::span<ModelParam* const> cells, std::span<const FitCoordinate> coordinates,
                     const SquareMatrix& alpha, BandFactor& factor);

}  // namespace kalvex

// Standard errors from the curvature of ChiSq at its minimum, and which parameters the data do not determine.
//
// The curvature is scaled to a diagonal of 1. An eigenvector whose eigenvalue is only rounding is a change of
// parameters that does not change ChiSq. Parameters with a part in one are not determined; the errors of the others do
// not depend on it.
#pragma once

#include <vector>

#include "numeric/square_matrix.h"

namespace kalvex {

// A common change of parameters along which ChiSq does not change.
struct WeakDirection {
  struct Part {
    int param = 0;
    double weight = 0;  // in units of the parameter's error if the others were known
    bool operator==(const Part&) const = default;
  };
  std::vector<Part> parts;  // the largest first; those below a tenth of the largest are left out
  bool operator==(const WeakDirection&) const = default;
};

struct Determination {
  std::size_t rank = 0;
  double condition = 0;        // largest over smallest eigenvalue that is not rounding
  std::vector<double> errors;  // of each parameter; kNotDetermined for those that do not take part, too
  std::vector<WeakDirection> undetermined;

  bool operator==(const Determination&) const = default;
};

// curvature: second derivatives of a ChiSq by the parameters, on the diagonal and above. They are finite. Below the
// diagonal it is overwritten. counts: whether a parameter takes part; the others are held.
Determination DetermineErrors(const SquareMatrix& curvature, const std::vector<char>& counts);

}  // namespace kalvex

// Method 2: the bounded fit (bounded_fit.h) of the parameters to the spectra. Its unknowns are the values themselves.
#pragma once

#include "fit/fit_run.h"

namespace kalvex {

// Iterates until the fit converges or a rule on iterations, time or the user ends it. Returns what ended it.
const char* RunBounded(FitRun& run);

}  // namespace kalvex

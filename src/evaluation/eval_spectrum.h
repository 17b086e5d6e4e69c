// One model at many frequencies: what the fit and the exports call. The results are those of EvalModel, handed over in
// blocks, so that whatever does not depend on the frequency can be done once for a spectrum, and long spectra be shared
// out over the threads of the context.
#pragma once

#include <functional>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"
#include "evaluation/spectrum_team.h"

namespace kalvex {

// Evaluates the model at every frequency of the request, in their order, and calls sink, on the caller's thread, for
// each block. Gives the last status other than 0 that an evaluation gave, else 0. The context holds afterwards what it
// would hold if EvalModel had been called at each frequency; see there for what is to be done with the slopes.
int EvalSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink);

// The same for a sink whose own work can be shared out.
int EvalSpectrumInBatches(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink);

}  // namespace kalvex

// One model at many frequencies, for the fit and the exports. The results are those of EvalModel, delivered in blocks.
// Work that does not depend on the frequency is done once per spectrum. Threads of the context share long spectra.
#pragma once

#include <functional>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"
#include "evaluation/spectrum_team.h"

namespace kalvex {

// Evaluates the model at every frequency of the request, in order, and calls sink for each block on the caller's
// thread. Returns the last status of an evaluation that is not 0, else 0. Afterwards the context has the same content
// as after a call of EvalModel at each frequency; the slopes must be taken over in the same way.
int EvalSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink);

// The same for a sink whose own work can run on several threads.
int EvalSpectrumInBatches(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink);

}  // namespace kalvex

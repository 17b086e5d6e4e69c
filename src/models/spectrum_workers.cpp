#include "models/spectrum_workers.h"

namespace kalvex {

SpectrumWorkers::SpectrumWorkers(int threads) : pool(threads) {
  for (std::size_t k = 0; k < pool.Threads(); ++k) workers_.push_back(std::make_unique<Worker>());
}

void SpectrumWorkers::Follow(const EvalContext& ctx) {
  for (const auto& worker : workers_) {
    worker->params = *ctx.params;
    EvalContext& own = worker->ctx;
    own.params = &worker->params;
    own.datasets = ctx.datasets;
    own.types = ctx.types;
    own.termEnvironment.datasets = ctx.termEnvironment.datasets;
    own.DcFlag = ctx.DcFlag;
    own.FrequencyOverrideFlag = ctx.FrequencyOverrideFlag;
    own.spectrum = ++own.spectraBefore;
  }
}

}  // namespace kalvex

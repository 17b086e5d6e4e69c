#include "models/eval_spectrum.h"

#include <algorithm>

#include "models/eval_model.h"

namespace kalvex {

int EvalSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink) {
  std::vector<const ModelParam*> params;
  if (request.derivatives) {
    for (const ParamPlace& place : request.slopesOf) params.push_back(&ParamAt(*ctx.params, place));
  }
  SpectrumBlock block;
  block.values_.resize(SpectrumBlock::kPerParam);
  block.slopes_.resize(params.size() * SpectrumBlock::kPerParam);
  int status = 0;
  for (block.first = 0; block.first < request.x.size(); block.first += block.count) {
    block.count = std::min(kSpectrumBlock, request.x.size() - block.first);
    for (std::size_t i = 0; i < block.count; ++i) {
      const QuantitySet wanted = request.wanted[block.first + i];
      WantOnly(ctx.quantities, wanted);
      if (const int failed = EvalModel(ctx, model, request.x[block.first + i], request.derivatives)) status = failed;
      for (int q = 0; q < kQuantityCount; ++q) {
        if (!Contains(wanted, q)) continue;
        const std::size_t at = SpectrumBlock::Index(q, i);
        block.values_[at] = ctx.quantities[static_cast<std::size_t>(q)].value;
        for (std::size_t k = 0; k < params.size(); ++k) {
          block.slopes_[k * SpectrumBlock::kPerParam + at] = params[k]->dQuantity[static_cast<std::size_t>(q)];
        }
      }
    }
    sink(block);
  }
  return status;
}

}  // namespace kalvex

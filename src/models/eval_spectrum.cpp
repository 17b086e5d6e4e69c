#include "models/eval_spectrum.h"

#include <algorithm>

#include "models/eval_model.h"

namespace kalvex {

void SpectrumBlock::MakeRoom(const SpectrumRequest& request) {
  QuantitySet anywhere = 0;
  for (const QuantitySet wanted : request.wanted) anywhere |= wanted;
  std::size_t columns = 0;
  for (int q = 0; q < kQuantityCount; ++q) {
    if (Contains(anywhere, q)) column_[static_cast<std::size_t>(q)] = columns++;
  }
  values_.resize(columns * kSpectrumBlock);
  slopes_.resize(request.derivatives ? request.slopesOf.size() * values_.size() : 0);
}

int EvalSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink) {
  std::vector<const ModelParam*> params;
  if (request.derivatives) {
    for (const ParamPlace& place : request.slopesOf) params.push_back(&ParamAt(*ctx.params, place));
  }
  SpectrumBlock block;
  block.MakeRoom(request);
  int status = 0;
  for (block.first = 0; block.first < request.x.size(); block.first += block.count) {
    block.count = std::min(kSpectrumBlock, request.x.size() - block.first);
    for (std::size_t i = 0; i < block.count; ++i) {
      const QuantitySet wanted = request.wanted[block.first + i];
      WantOnly(ctx.quantities, wanted);
      if (const int failed = EvalModel(ctx, model, request.x[block.first + i], request.derivatives)) status = failed;
      for (int q = 0; q < kQuantityCount; ++q) {
        if (!Contains(wanted, q)) continue;
        const std::size_t at = block.Index(q, i);
        block.values_[at] = ctx.quantities[static_cast<std::size_t>(q)].value;
        for (std::size_t k = 0; k < params.size(); ++k) {
          block.slopes_[k * block.values_.size() + at] = params[k]->dQuantity[static_cast<std::size_t>(q)];
        }
      }
    }
    sink(block);
  }
  return status;
}

}  // namespace kalvex

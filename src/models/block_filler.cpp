#include "models/block_filler.h"

#include "models/eval_model.h"

namespace kalvex {

BlockFiller::BlockFiller(EvalContext& ctx, Model& model, const SpectrumRequest& request, VdfKernelCache& kernels)
    : ctx_(ctx), model_(model), request_(request), plain_(ctx, model, request, kernels) {
  if (!request.derivatives) return;
  for (const ParamPlace& place : request.slopesOf) params_.push_back(&ParamAt(*ctx.params, place));
}

int BlockFiller::FillOneByOne(SpectrumBlock& block) {
  int status = 0;
  for (std::size_t i = 0; i < block.count; ++i) {
    const QuantitySet wanted = request_.wanted[block.first + i];
    WantOnly(ctx_.quantities, wanted);
    if (const int failed = EvalModel(ctx_, model_, request_.x[block.first + i], request_.derivatives)) status = failed;
    for (int q = 0; q < kQuantityCount; ++q) {
      if (!Contains(wanted, q)) continue;
      block.Values(q)[i] = ctx_.quantities[static_cast<std::size_t>(q)].value;
      for (std::size_t k = 0; k < params_.size(); ++k) {
        block.Slopes(k, q)[i] = params_[k]->dQuantity[static_cast<std::size_t>(q)];
      }
    }
  }
  return status;
}

}  // namespace kalvex

#include "evaluation/block_filler.h"

#include <memory>

#include "evaluation/eval_model.h"
#include "evaluation/plain_spectrum.h"

namespace kalvex {

BlockFiller::BlockFiller(EvalContext& ctx, Model& model, const SpectrumRequest& request, VdfKernelCache& kernels)
    : ctx_(ctx), model_(model), request_(request) {
  if (const ModelType* const type = TypeOf(ctx, model)) {
    if (type->fillerOf) atOnce_ = type->fillerOf(ctx, model, request);
  } else if (PlainSpectrum::AppliesTo(ctx, model)) {
    const auto spectrum = std::make_shared<PlainSpectrum>(ctx, model, request, kernels);
    readsTables_ = spectrum->GoesThroughTables();
    atOnce_ = [spectrum](SpectrumBlock& block) { return spectrum->FillBlock(block); };
  }
  if (!request.derivatives) return;
  for (const ParamPlace& place : request.slopesOf) params_.push_back(&ParamAt(*ctx.params, place));
}

int BlockFiller::FillOneByOne(SpectrumBlock& block) {
  int status = 0;
  for (std::size_t i = 0; i < block.count; ++i) {
    ctx_.typeScratch.ahead = request_.x.subspan(block.first + i, block.count - i);
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
  ctx_.typeScratch.ahead = {};
  return status;
}

}  // namespace kalvex

#include "evaluation/block_filler.h"

#include <algorithm>
#include <memory>

#include "evaluation/eval_model.h"
#include "evaluation/plain_spectrum.h"

namespace kalvex {

BlockFiller::BlockFiller(EvalContext& ctx, const Model& model, const SpectrumRequest& request, VdfKernelCache& kernels)
    : ctx_(ctx), model_(model), request_(request) {
  if (const ModelType* const type = TypeOf(ctx, model)) {
    if (type->fillerOf) atOnce_ = type->fillerOf(ctx, model, request);
  } else if (PlainSpectrum::AppliesTo(ctx, model)) {
    const auto spectrum = std::make_shared<PlainSpectrum>(ctx, model, request, kernels);
    atOnce_ = [spectrum](SpectrumBlock& block) { return spectrum->FillBlock(block); };
  }
  if (!request.derivatives) return;
  for (const ParamPlace& place : request.slopesOf) slopes_.push_back(&SlopesAt(ctx.slopes, place));
}

void BlockFiller::Forget() {
  for (QuantityResult& quantity : ctx_.quantities) quantity.Forget();
  for (ParamSlopes* const slopes : slopes_) slopes->Forget();
  ctx_.readFormerResult = false;
}

bool BlockFiller::HasFormer(QuantitySet wanted) const {
  return ctx_.readFormerResult || std::any_of(slopes_.begin(), slopes_.end(),
                                              [&](const ParamSlopes* slopes) { return slopes->HasFormer(wanted); });
}

int BlockFiller::FillOneByOne(SpectrumBlock& block) {
  int status = 0;
  block.hasFormer = false;
  for (std::size_t i = 0; i < block.count; ++i) {
    ctx_.typeScratch.ahead = request_.x.subspan(block.first + i, block.count - i);
    const QuantitySet wanted = request_.wanted[block.first + i];
    WantOnly(ctx_.quantities, wanted);
    if (ctx_.notesFormer) Forget();
    const int failed = EvalPartner(ctx_, model_, request_.x[block.first + i], request_.derivatives);
    if (failed != 0) status = failed;
    for (const Quantity q : wanted) {
      block.Values(q)[i] = ctx_.quantities[q].value;
      for (std::size_t k = 0; k < slopes_.size(); ++k) {
        block.Slopes(k, q)[i] = slopes_[k]->dQuantity[q];
      }
    }
    block.hasFormer = block.hasFormer || failed != 0 || (ctx_.notesFormer && HasFormer(wanted));
  }
  ctx_.typeScratch.ahead = {};
  return status;
}

}  // namespace kalvex

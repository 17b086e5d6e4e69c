// Fills the blocks of a spectrum in one context. The method is chosen once, from the model.
#pragma once

#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"

namespace kalvex {

class BlockFiller {
 public:
  // With derivatives, the slopes of ctx must have the shape of the tables. kernels: see PlainSpectrum.
  BlockFiller(EvalContext& ctx, const Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Whether blocks are filled without EvalModel. The context then does not receive the results of EvalModel.
  bool FillsAtOnce() const { return static_cast<bool>(atOnce_); }
  // False if the block must be filled one frequency at a time.
  bool FillAtOnce(SpectrumBlock& block) { return atOnce_(block); }

  // Evaluates one frequency after the other. Returns the last status other than 0, else 0.
  int FillOneByOne(SpectrumBlock& block);

 private:
  void Forget();
  bool HasFormer(QuantitySet wanted) const;

  EvalContext& ctx_;
  const Model& model_;
  const SpectrumRequest& request_;
  std::vector<ParamSlopes*> slopes_;  // of the requested parameters
  FillBlock atOnce_;
};

}  // namespace kalvex

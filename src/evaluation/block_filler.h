// A spectrum block by block, in one context: the road that the model takes is chosen once.
#pragma once

#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"

namespace kalvex {

class BlockFiller {
 public:
  // With derivatives there is room in the slopes of ctx. kernels: see PlainSpectrum.
  BlockFiller(EvalContext& ctx, const Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Whether blocks are filled without EvalModel. What that would leave in the context is then not there.
  bool FillsAtOnce() const { return static_cast<bool>(atOnce_); }
  // False where the block has to be filled one by one.
  bool FillAtOnce(SpectrumBlock& block) { return atOnce_(block); }

  // Evaluates one frequency after the other; gives the last status other than 0, else 0.
  int FillOneByOne(SpectrumBlock& block);

 private:
  void Forget();
  bool HasFormer(QuantitySet wanted) const;

  EvalContext& ctx_;
  const Model& model_;
  const SpectrumRequest& request_;
  std::vector<ParamSlopes*> slopes_;  // that are asked for
  FillBlock atOnce_;
};

}  // namespace kalvex

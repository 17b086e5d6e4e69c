// A spectrum block by block, in one context: the road that the model takes is chosen once.
#pragma once

#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/spectrum_block.h"

namespace kalvex {

class BlockFiller {
 public:
  // ctx, model: what is evaluated, and where its derivatives go. kernels: see PlainSpectrum.
  BlockFiller(EvalContext& ctx, Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Whether blocks are filled without EvalModel. What it would leave in the tables is then not there;
  // and unless a row has a code, nothing that stands in the tables has a say in the results.
  bool FillsAtOnce() const { return static_cast<bool>(atOnce_); }
  bool ReadsTables() const { return !FillsAtOnce() || readsTables_; }
  // False where results would depend on what another frequency has left; the block has then to be filled one by one.
  bool FillAtOnce(SpectrumBlock& block) { return atOnce_(block); }

  // Evaluates one frequency after the other; gives the last status other than 0, else 0.
  int FillOneByOne(SpectrumBlock& block);

 private:
  EvalContext& ctx_;
  Model& model_;
  const SpectrumRequest& request_;
  std::vector<const ModelParam*> params_;  // whose slopes are asked for
  FillBlock atOnce_;
  bool readsTables_ = false;
};

}  // namespace kalvex

// A spectrum block by block, in one context: the road that the model takes is chosen once.
#pragma once

#include <vector>

#include "models/eval_context.h"
#include "models/mesh_spectrum.h"
#include "models/spectrum_block.h"

namespace kalvex {

class BlockFiller {
 public:
  // ctx, model: what is evaluated, and where its derivatives go. kernels: see MeshSpectrum.
  BlockFiller(EvalContext& ctx, Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Evaluates the frequencies of the block; gives the last status other than 0, else 0.
  int Fill(SpectrumBlock& block);

 private:
  int FillOneByOne(SpectrumBlock& block);

  EvalContext& ctx_;
  Model& model_;
  const SpectrumRequest& request_;
  std::vector<const ModelParam*> params_;  // whose slopes are asked for
  MeshSpectrum mesh_;
};

}  // namespace kalvex

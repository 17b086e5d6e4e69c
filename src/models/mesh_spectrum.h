// Spectra of a plain model with a variational dielectric function. A mesh has hundreds of parameters, and its kernels
// depend on the frequencies only: they are kept, and the slopes by the mesh are formed for a block of frequencies at
// once.
#pragma once

#include <span>
#include <vector>

#include "models/eval_context.h"
#include "models/quantity_formulas.h"
#include "models/spectrum_block.h"
#include "vdf/vdf_eval.h"

namespace kalvex {

class MeshSpectrum {
 public:
  // kernels: prepared for the frequencies of the request if the mesh is constrained.
  MeshSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Whether this is a model for it; otherwise FillBlock must not be called.
  static bool AppliesTo(const EvalContext& ctx, const Model& model);
  bool Applies() const { return applies_; }
  void FillBlock(SpectrumBlock& block);

 private:
  // What the slope by one requested parameter is made of.
  enum class Source { kRow, kMesh, kExp, kStale };
  struct Slope {
    Source source;
    const ModelParam* param;
    std::size_t index;  // among the row slopes, of the mesh point, or of the experimental parameter
    bool imaginary;     // of a mesh point
  };

  void Classify();
  void SumRows(const SpectrumBlock& block);
  void AddMesh(const SpectrumBlock& block);
  void ComputeQuantities(SpectrumBlock& block);
  void FillSlopes(SpectrumBlock& block, int quantity);
  void FillMeshSlopes(SpectrumBlock& block, int quantity, std::size_t k, const Slope& slope) const;

  EvalContext& ctx_;
  Model& model_;
  const SpectrumRequest& request_;
  VdfKernelCache& kernelCache_;
  bool applies_;
  std::vector<Slope> slopes_;
  std::vector<Cplx> rowSlopes_;  // of the sum by each row parameter, kSpectrumBlock of them one behind the other
  std::size_t rowParams_ = 0;
  const double* kernels_ = nullptr;
  std::vector<double> spareKernels_;
  std::vector<Cplx> eps_;
  std::vector<VdfWeights> weights_;
  std::vector<Quantity> results_;  // of each wanted Quantity at each frequency
};

}  // namespace kalvex

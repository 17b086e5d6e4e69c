// Spectra of a plain model, a block of frequencies at a time: the sum of the rows, the variational dielectric function
// if there is one, the Quantities, and the slopes, each as one loop over the frequencies. The results are those of
// EvalModel within rounding, without its detour through the table of slopes; only rows with codes use that.
#pragma once

#include <span>
#include <vector>

#include "evaluation/eval_context.h"
#include "evaluation/plain_rows.h"
#include "evaluation/quantity_block.h"
#include "evaluation/vdf_eval.h"

namespace kalvex {

class PlainSpectrum {
 public:
  // kernels: prepared for the frequencies of the request if the model has a constrained mesh.
  PlainSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Whether this is a model for it.
  static bool AppliesTo(const EvalContext& ctx, const Model& model);
  // False where a slope is asked for that EvalModel would keep from another frequency.
  bool FillBlock(SpectrumBlock& block);

 private:
  // What the slope by one requested parameter is made of.
  enum class Source {
    kRow,    // epsInf or an element of a row; comes from rows_
    kTable,  // the same in a model that has rows with codes
    kMesh,
    kExp,
    kKept  // nothing here changes it
  };
  struct Slope {
    Source source;
    const ModelParam* param;
    ParamSlopes* of;    // of kTable
    std::size_t index;  // among the kept slopes of kTable, of the mesh parameter, or of the experimental parameter
  };

  void Classify();
  Slope SourceOf(const ParamPlace& place, std::size_t k);
  void TakeFrequencies(const SpectrumBlock& block);
  void SumRows(SpectrumBlock& block);
  void AddMesh(const SpectrumBlock& block);
  void FillSlopes(SpectrumBlock& block, Quantity quantity, const QuantityBlock& result);
  void AddMeshWeights(SpectrumBlock& block, Quantity quantity, const QuantityBlock& result);

  EvalContext& ctx_;
  const Model& model_;
  const SpectrumRequest& request_;
  VdfKernelCache& kernelCache_;
  bool anyCode_;    // of a row: its slopes come through the table
  PlainRows rows_;  // otherwise
  std::vector<Slope> slopes_;
  std::vector<std::size_t> meshSlopes_;  // of both parameters of each mesh point, the number in the request
  std::vector<double> tableSlopes_;  // kSpectrumBlock real parts and as many imaginary ones for each slope of kTable
  std::size_t tableParams_ = 0;
  bool anyExpSlope_ = false;
  const double* kernels_ = nullptr;
  std::vector<double> spareKernels_;
  std::vector<VdfWeights> weights_;
  std::vector<double> meshValues_;
  BlockNumbers x_;  // frequencies of the block; the last one repeated where it is not full
  EpsBlock eps_;
  QuantityBlock result_;
};

}  // namespace kalvex

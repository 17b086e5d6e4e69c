// Spectra of a plain model, one block of frequencies at a time. The sum of the rows, the variational dielectric
// function, the Quantities and the slopes are one loop over the frequencies each. The results agree with EvalModel to
// rounding. Only rows with codes need the table of slopes.
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
  // kernels: prepared for the frequencies of the request, if the model has a constrained mesh.
  PlainSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request, VdfKernelCache& kernels);

  // Whether the model can be evaluated in this way.
  static bool AppliesTo(const EvalContext& ctx, const Model& model);
  // False if a requested slope would, in EvalModel, be left from another frequency.
  bool FillBlock(SpectrumBlock& block);

 private:
  // How the slope by a requested parameter is computed.
  enum class Source {
    kRow,    // epsInf or an element of a row; computed by rows_
    kTable,  // the same in a model that has rows with codes
    kMesh,
    kExp,
    kKept  // not changed by this model
  };
  struct Slope {
    Source source;
    const ModelParam* param;
    ParamSlopes* of;    // for kTable
    std::size_t index;  // of the stored slope (kTable), of the mesh parameter, or of the experimental parameter
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
  bool anyCode_;    // a row has a code: slopes of rows come from the table
  PlainRows rows_;  // used if no row has a code
  std::vector<Slope> slopes_;
  std::vector<std::size_t> meshSlopes_;  // index in the request, for both parameters of each mesh point
  std::vector<double> tableSlopes_;  // for each slope of kTable: kSpectrumBlock real parts, then the imaginary parts
  std::size_t tableParams_ = 0;
  bool anyExpSlope_ = false;
  const double* kernels_ = nullptr;
  std::vector<double> spareKernels_;
  std::vector<VdfWeights> weights_;
  std::vector<double> meshValues_;
  BlockNumbers x_;  // frequencies of the block; the last one is repeated to fill the block
  EpsBlock eps_;
  QuantityBlock result_;
};

}  // namespace kalvex

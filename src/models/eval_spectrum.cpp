#include "models/eval_spectrum.h"

#include <algorithm>

#include "models/eval_model.h"
#include "models/mesh_spectrum.h"

namespace kalvex {
namespace {

// Frequency by frequency, for any model.
int FillBlock(EvalContext& ctx, Model& model, const SpectrumRequest& request, std::span<const ModelParam* const> params,
              SpectrumBlock& block) {
  int status = 0;
  for (std::size_t i = 0; i < block.count; ++i) {
    const QuantitySet wanted = request.wanted[block.first + i];
    WantOnly(ctx.quantities, wanted);
    if (const int failed = EvalModel(ctx, model, request.x[block.first + i], request.derivatives)) status = failed;
    for (int q = 0; q < kQuantityCount; ++q) {
      if (!Contains(wanted, q)) continue;
      block.Values(q)[i] = ctx.quantities[static_cast<std::size_t>(q)].value;
      for (std::size_t k = 0; k < params.size(); ++k) {
        block.Slopes(k, q)[i] = params[k]->dQuantity[static_cast<std::size_t>(q)];
      }
    }
  }
  return status;
}

// Within a spectrum within a spectrum the outer one goes on to be the one that counts.
class SpectrumNumber {
 public:
  explicit SpectrumNumber(EvalContext& ctx) : ctx_(ctx), before_(ctx.spectrum) {
    if (before_ == 0) ctx_.spectrum = ++ctx_.spectraBefore;
  }
  SpectrumNumber(const SpectrumNumber&) = delete;
  SpectrumNumber& operator=(const SpectrumNumber&) = delete;
  ~SpectrumNumber() { ctx_.spectrum = before_; }

 private:
  EvalContext& ctx_;
  std::uint64_t before_;
};

}  // namespace

int EvalSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink) {
  std::vector<const ModelParam*> params;
  if (request.derivatives) {
    for (const ParamPlace& place : request.slopesOf) params.push_back(&ParamAt(*ctx.params, place));
  }
  const SpectrumNumber number(ctx);
  MeshSpectrum mesh(ctx, model, request);
  SpectrumBlock block(request);
  int status = 0;
  for (; block.first < request.x.size(); block.first += block.count) {
    block.count = std::min(kSpectrumBlock, request.x.size() - block.first);
    if (mesh.Applies()) {
      mesh.FillBlock(block);
    } else if (const int failed = FillBlock(ctx, model, request, params, block)) {
      status = failed;
    }
    sink(block);
  }
  return status;
}

}  // namespace kalvex

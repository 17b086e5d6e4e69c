#include "models/eval_spectrum.h"

#include <algorithm>

#include "models/block_filler.h"

namespace kalvex {
namespace {

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

// The blocks, in order, in which a Quantity is wanted for the last time, and the last one. After them the caller's
// tables hold what they would hold after the whole spectrum.
std::vector<std::size_t> LastBlocks(const SpectrumRequest& request) {
  std::vector<std::size_t> blocks;
  QuantitySet seen = 0;
  for (std::size_t i = request.x.size(); i-- > 0;) {
    const std::size_t first = i / kSpectrumBlock * kSpectrumBlock;
    const bool isNew = (request.wanted[i] & ~seen) != 0 || i + 1 == request.x.size();
    seen |= request.wanted[i];
    if (isNew && (blocks.empty() || blocks.back() != first)) blocks.push_back(first);
  }
  std::reverse(blocks.begin(), blocks.end());
  return blocks;
}

void FillAt(BlockFiller& filler, const SpectrumRequest& request, std::size_t first, SpectrumBlock& block, int& status) {
  block.first = first;
  block.count = std::min(kSpectrumBlock, request.x.size() - first);
  if (const int failed = filler.Fill(block)) status = failed;
}

}  // namespace

int EvalSpectrumInBatches(EvalContext& ctx, Model& model, const SpectrumRequest& request, const BatchSink& sink) {
  const SpectrumNumber number(ctx);
  if (model.vdf.KK && MeshSpectrum::AppliesTo(ctx, model)) {
    ctx.vdfKernels.Prepare(model.number, model.vdf, request.x);
  }
  const std::size_t done = PaysToShare(ctx, model, request) ? FillByTeam(ctx, model, request, sink) : 0;
  BlockFiller filler(ctx, model, request, ctx.vdfKernels);
  SpectrumBlock block(request);
  int status = 0;
  if (done > 0 && done == request.x.size()) {
    for (const std::size_t first : LastBlocks(request)) FillAt(filler, request, first, block, status);
    return status;
  }
  // Where not every block can be trusted, the blocks before are needed once more for what they leave behind.
  for (std::size_t first = 0; first < request.x.size(); first += kSpectrumBlock) {
    FillAt(filler, request, first, block, status);
    if (first < done) continue;
    sink.work(block, 0);
    sink.take({&block, 1});
  }
  return status;
}

int EvalSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink) {
  const auto handOver = [&](std::span<const SpectrumBlock> batch) {
    for (const SpectrumBlock& block : batch) sink(block);
  };
  return EvalSpectrumInBatches(ctx, model, request, {[](const SpectrumBlock&, std::size_t) {}, handOver});
}

}  // namespace kalvex

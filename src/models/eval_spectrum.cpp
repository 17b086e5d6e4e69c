#include "models/eval_spectrum.h"

#include <algorithm>

#include "models/block_filler.h"
#include "models/eps_sum.h"
#include "models/eval_model.h"
#include "models/plain_spectrum.h"

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

// The frequencies, in order, at which a Quantity is wanted for the last time, and the last one.
std::vector<std::size_t> LastFrequencies(const SpectrumRequest& request) {
  std::vector<std::size_t> last;
  const QuantitySet anywhere = WantedAnywhere(request);
  QuantitySet seen = 0;
  for (std::size_t i = request.x.size(); i-- > 0 && (last.empty() || seen != anywhere);) {
    if ((request.wanted[i] & ~seen) != 0 || last.empty()) last.push_back(i);
    seen |= request.wanted[i];
  }
  std::reverse(last.begin(), last.end());
  return last;
}

int FillOneByOne(BlockFiller& filler, const SpectrumRequest& request, std::size_t first, SpectrumBlock& block) {
  block.first = first;
  block.count = std::min(kSpectrumBlock, request.x.size() - first);
  return filler.FillOneByOne(block);
}

// Brings the caller's tables to what they would hold if every frequency had been evaluated there. A special model that
// gives up without a word takes its results from the frequency before, so that of such a one whole blocks count.
int LeaveBehind(EvalContext& ctx, Model& model, const SpectrumRequest& request, BlockFiller& filler) {
  int status = 0;
  SpectrumBlock block(request);
  std::size_t next = 0;
  for (const std::size_t i : LastFrequencies(request)) {
    if (filler.FillsAtOnce()) {
      WantOnly(ctx.quantities, request.wanted[i]);
      EvalModel(ctx, model, request.x[i], request.derivatives);
    } else if (i >= next) {
      const std::size_t first = i / kSpectrumBlock * kSpectrumBlock;
      if (const int failed = FillOneByOne(filler, request, first, block)) status = failed;
      next = first + kSpectrumBlock;
    }
  }
  return status;
}

// Fills blocks until one cannot be filled at once, and hands over those after the first `done` frequencies; gives the
// number of frequencies that have now been handed over.
std::size_t FillAlone(BlockFiller& filler, const SpectrumRequest& request, const BatchSink& sink, std::size_t done) {
  SpectrumBlock block(request);
  for (block.first = 0; block.first < request.x.size(); block.first += kSpectrumBlock) {
    block.count = std::min(kSpectrumBlock, request.x.size() - block.first);
    if (!filler.FillAtOnce(block)) break;
    if (block.first < done) continue;
    sink.work(block, 0);
    sink.take({&block, 1});
    done = block.first + block.count;
  }
  return done;
}

}  // namespace

int EvalSpectrumInBatches(EvalContext& ctx, Model& model, const SpectrumRequest& request, const BatchSink& sink) {
  const SpectrumNumber number(ctx);
  if (HasVdf(model) && model.vdf.KK && PlainSpectrum::AppliesTo(ctx, model)) {
    ctx.vdfKernels.Prepare(model.number, model.vdf, request.x);
  }
  BlockFiller filler(ctx, model, request, ctx.vdfKernels);
  std::size_t done = PaysToShare(ctx, model, request) ? FillByTeam(ctx, model, request, sink) : 0;
  if (filler.FillsAtOnce() && done < request.x.size()) done = FillAlone(filler, request, sink, done);
  if (done > 0 && done == request.x.size()) return LeaveBehind(ctx, model, request, filler);
  // Where not every block can be trusted, the blocks before are needed once more for what they leave behind.
  SpectrumBlock block(request);
  int status = 0;
  for (std::size_t first = 0; first < request.x.size(); first += kSpectrumBlock) {
    if (const int failed = FillOneByOne(filler, request, first, block)) status = failed;
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

#include "evaluation/eval_spectrum.h"

#include <algorithm>

#include "evaluation/block_filler.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "evaluation/plain_spectrum.h"

namespace kalvex {
namespace {

// Gives the context a spectrum number. A spectrum inside another one keeps the number of the outer one.
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

// For each Quantity the last frequency at which it is wanted, and the last frequency of the request, in ascending
// order.
std::vector<std::size_t> LastFrequencies(const SpectrumRequest& request) {
  std::vector<std::size_t> last;
  const QuantitySet anywhere = WantedAnywhere(request);
  QuantitySet seen;
  for (std::size_t i = request.x.size(); i-- > 0 && (last.empty() || seen != anywhere);) {
    if (!(request.wanted[i] - seen).IsEmpty() || last.empty()) last.push_back(i);
    seen |= request.wanted[i];
  }
  std::reverse(last.begin(), last.end());
  return last;
}

// Brings the context to the state that it would have after an evaluation at every frequency. Since no result has
// entered a later one, the last evaluation of each Quantity is enough.
void EvaluateLastFrequencies(EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  for (const std::size_t i : LastFrequencies(request)) {
    WantOnly(ctx.quantities, request.wanted[i]);
    EvalPartner(ctx, model, request.x[i], request.derivatives);
  }
}

// Passes to the sink, on this thread, the blocks of the portions that it has not received yet.
class HandingOver {
 public:
  HandingOver(const SpectrumRequest& request, const BatchSink& sink, std::size_t done)
      : size_(request.x.size()), sink_(sink), done_(done) {}

  void Give(const SpectrumBlock& block) {
    if (block.first < done_) return;
    sink_.work(block, 0);
    const std::size_t end = block.first + block.count;
    if (end % sink_.Frequencies() != 0 && end != size_) return;
    sink_.take(1);
    done_ = end;
  }
  bool AreAllDone() const { return done_ == size_; }

 private:
  std::size_t size_;
  const BatchSink& sink_;
  std::size_t done_;
};

// Fills blocks until one must be filled one frequency at a time.
void FillAlone(BlockFiller& filler, const SpectrumRequest& request, HandingOver& rest) {
  SpectrumBlock block(request);
  for (block.first = 0; block.first < request.x.size(); block.first += kSpectrumBlock) {
    block.count = std::min(kSpectrumBlock, request.x.size() - block.first);
    if (!filler.FillAtOnce(block)) return;
    rest.Give(block);
  }
}

}  // namespace

int EvalSpectrumInBatches(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink) {
  const SpectrumNumber number(ctx);
  if (request.derivatives) StartFromSaved(ctx.slopes, *ctx.params);
  if (HasVdf(model) && model.vdf.KK && PlainSpectrum::AppliesTo(ctx, model)) {
    ctx.vdfKernels.Prepare(model.number, model.vdf, request.x);
  }
  BlockFiller filler(ctx, model, request, ctx.vdfKernels);
  HandingOver rest(request, sink, PaysToShare(ctx, model, request) ? FillByTeam(ctx, model, request, sink) : 0);
  if (filler.FillsAtOnce() && !rest.AreAllDone()) FillAlone(filler, request, rest);
  if (!request.x.empty() && rest.AreAllDone()) {
    EvaluateLastFrequencies(ctx, model, request);
    return 0;
  }
  // From here on every frequency is evaluated, including those already passed to the sink: each may leave results for
  // later ones.
  SpectrumBlock block(request);
  int status = 0;
  for (block.first = 0; block.first < request.x.size(); block.first += kSpectrumBlock) {
    block.count = std::min(kSpectrumBlock, request.x.size() - block.first);
    if (const int failed = filler.FillOneByOne(block)) status = failed;
    rest.Give(block);
  }
  return status;
}

int EvalSpectrum(EvalContext& ctx, const Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink) {
  std::vector<SpectrumBlock> batch(MostPortionsOfBatch(ctx));
  const auto keep = [&](const SpectrumBlock& block, std::size_t place) { batch[place] = block; };
  const auto handOver = [&](std::size_t blocks) {
    for (const SpectrumBlock& block : std::span(batch).first(blocks)) sink(block);
  };
  return EvalSpectrumInBatches(ctx, model, request, {keep, handOver});
}

}  // namespace kalvex

#include "models/eval_spectrum.h"

#include <algorithm>

#include "models/eps_sum.h"
#include "models/eval_model.h"
#include "models/mesh_spectrum.h"
#include "models/model_table.h"
#include "models/spectrum_workers.h"

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

std::vector<const ModelParam*> ParamsOf(EvalContext& ctx, const SpectrumRequest& request) {
  std::vector<const ModelParam*> params;
  if (!request.derivatives) return params;
  for (const ParamPlace& place : request.slopesOf) params.push_back(&ParamAt(*ctx.params, place));
  return params;
}

std::size_t CountFrom(const SpectrumRequest& request, std::size_t first) {
  return std::min(kSpectrumBlock, request.x.size() - first);
}

// All blocks from `first` on, one after the other.
int EvalInOrder(EvalContext& ctx, Model& model, const SpectrumRequest& request, std::size_t first,
                const std::function<void(const SpectrumBlock&)>& sink) {
  const auto params = ParamsOf(ctx, request);
  MeshSpectrum mesh(ctx, model, request);
  SpectrumBlock block(request);
  int status = 0;
  for (block.first = first; block.first < request.x.size(); block.first += block.count) {
    block.count = CountFrom(request, block.first);
    if (mesh.Applies()) {
      mesh.FillBlock(block);
    } else if (const int failed = FillBlock(ctx, model, request, params, block)) {
      status = failed;
    }
    sink(block);
  }
  return status;
}

// A spectrum is shared if it is long enough, and nothing in it wants to see its frequencies in order.
bool IsShared(const EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  constexpr std::size_t kLeast = 4 * kSpectrumBlock;
  if (!ctx.workers || ctx.workers->pool.Threads() < 2 || request.x.size() < kLeast) return false;
  if (HasVdf(model) && !TypeOf(ctx, model)) return false;  // its kernels are shared as a whole
  return std::none_of(ctx.params->models.begin(), ctx.params->models.end(), [&](const Model& other) {
    const ModelType* const type = other.number != 0 ? TypeOf(ctx, other) : nullptr;
    return type && type->whole;
  });
}

// Blocks by all threads, handed over in order. A failing evaluation leaves the results of the one before it as they
// stand: from the first one on everything is done in order, after the block before it has been done here once more.
int EvalShared(EvalContext& ctx, Model& model, const SpectrumRequest& request,
               const std::function<void(const SpectrumBlock&)>& sink) {
  constexpr std::size_t kBlocksAThread = 4;
  SpectrumWorkers& workers = *ctx.workers;
  workers.Follow(ctx);
  std::vector<std::vector<const ModelParam*>> params;
  for (std::size_t k = 0; k < workers.pool.Threads(); ++k) params.push_back(ParamsOf(workers.Context(k), request));
  std::vector<SpectrumBlock> blocks(kBlocksAThread * workers.pool.Threads(), SpectrumBlock(request));
  std::vector<int> status(blocks.size());
  const int slot = SlotOf(*ctx.params, model);
  for (std::size_t first = 0; first < request.x.size(); first += blocks.size() * kSpectrumBlock) {
    const std::size_t left = (request.x.size() - first + kSpectrumBlock - 1) / kSpectrumBlock;
    const std::size_t count = std::min(blocks.size(), left);
    workers.pool.ForEach(count, [&](std::size_t part, std::size_t thread) {
      SpectrumBlock& block = blocks[part];
      block.first = first + part * kSpectrumBlock;
      block.count = CountFrom(request, block.first);
      EvalContext& own = workers.Context(thread);
      status[part] = FillBlock(own, own.params->models[static_cast<std::size_t>(slot)], request, params[thread], block);
    });
    for (std::size_t part = 0; part < count; ++part) {
      if (status[part] != 0) {
        SpectrumBlock before(request);
        before.first = blocks[part].first - std::min(blocks[part].first, kSpectrumBlock);
        before.count = blocks[part].first - before.first;
        FillBlock(ctx, model, request, ParamsOf(ctx, request), before);
        return EvalInOrder(ctx, model, request, blocks[part].first, sink);
      }
      sink(blocks[part]);
    }
  }
  // What the last frequency leaves in the models is what an evaluation in order leaves.
  SpectrumBlock last(request);
  last.count = std::min<std::size_t>(1, request.x.size());
  last.first = request.x.size() - last.count;
  return FillBlock(ctx, model, request, ParamsOf(ctx, request), last);
}

}  // namespace

int EvalSpectrum(EvalContext& ctx, Model& model, const SpectrumRequest& request,
                 const std::function<void(const SpectrumBlock&)>& sink) {
  const SpectrumNumber number(ctx);
  if (IsShared(ctx, model, request)) return EvalShared(ctx, model, request, sink);
  return EvalInOrder(ctx, model, request, 0, sink);
}

}  // namespace kalvex

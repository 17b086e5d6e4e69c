#include "evaluation/spectrum_team.h"

#include <algorithm>
#include <bit>
#include <optional>

#include "evaluation/block_filler.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "evaluation/plain_spectrum.h"
#include "terms/term_tables.h"

namespace kalvex {

struct SpectrumWorker {
  EvalContext ctx;
  std::optional<BlockFiller> filler;
  SpectrumBlock block;
};

SpectrumTeam::SpectrumTeam(std::size_t threads) {
  while (workers.size() < threads) workers.push_back(std::make_unique<SpectrumWorker>());
}

SpectrumTeam::~SpectrumTeam() = default;

namespace {

// ---- cost estimate

// Nanoseconds per frequency, measured on a core of 4 GHz. The estimate is rather too low than too high.
struct Cost {
  double values;
  double withSlopes;
};
constexpr Cost kOfFrequency = {2, 4};
constexpr Cost kOfRow = {0.15, 0.8};
constexpr Cost kOfMeshPoint = {0.15, 0.3};
constexpr Cost kOfCodes = {100, 200};  // rows with codes, for any number of them
constexpr Cost kOfAverage = {40, 60};  // a Quantity that is an average over thickness or angle
constexpr Cost kOfLayer = {10, 25};    // a row of a type that fills blocks at once
constexpr Cost kOfType = {50, 100};    // any other type
constexpr QuantitySet kAverages = {kTrans, kRp, kRs, kRps, kDefringed};

Cost operator+(const Cost& a, const Cost& b) { return {a.values + b.values, a.withSlopes + b.withSlopes}; }
Cost operator*(std::size_t n, const Cost& a) {
  return {static_cast<double>(n) * a.values, static_cast<double>(n) * a.withSlopes};
}

Cost CostOfSum(const Model& model) {
  const Cost rows =
      static_cast<std::size_t>(RowCount(model)) * kOfRow + (model.vdf.On ? model.vdf.mesh.size() : 0) * kOfMeshPoint;
  return PlainRows::Are(model) ? rows : rows + kOfCodes;
}

Cost CostOfQuantities(const EvalContext& ctx, const Model& model, QuantitySet wanted) {
  const ModelType* const type = TypeOf(ctx, model);
  if (!type) {
    const std::size_t averages = (wanted & kAverages).Count();
    return kOfFrequency + CostOfSum(model) + averages * kOfAverage;
  }
  Cost cost = type->fillerOf ? static_cast<std::size_t>(RowCount(model)) * kOfLayer : kOfType;
  for (const Model& partner : ctx.params->models) {
    if (partner.number != 0 && !TypeOf(ctx, partner)) cost = cost + CostOfSum(partner);
  }
  return cost;
}

bool AnyWhole(const EvalContext& ctx) {
  return std::any_of(ctx.params->models.begin(), ctx.params->models.end(), [&](const Model& model) {
    const ModelType* const type = model.number != 0 ? TypeOf(ctx, model) : nullptr;
    return type && type->whole;
  });
}

// ---- a worker

void Prepare(SpectrumWorker& worker, EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  EvalContext& own = worker.ctx;
  own.params = ctx.params;
  own.datasets = ctx.datasets;
  own.types = ctx.types;
  own.termEnvironment.datasets = ctx.termEnvironment.datasets;
  CopyTables(own.termEnvironment, ctx.termEnvironment);
  own.spectrum = ctx.spectrum;
  own.notesFormer = true;
  own.DcFlag = ctx.DcFlag;
  own.FrequencyOverrideFlag = ctx.FrequencyOverrideFlag;
  if (request.derivatives) MakeRoom(own.slopes, *own.params);
  worker.filler.emplace(own, model, request, ctx.vdfKernels);
}

// ---- batches

constexpr std::size_t kPortionsOfThread = 16;  // per batch

// Fills the blocks of a portion and passes them to the sink. Stops with false at a block with a failure or with a
// result left from an earlier evaluation.
bool FillPortion(SpectrumWorker& worker, const SpectrumRequest& request, QuantitySet anywhere, std::size_t first,
                 const BatchSink& sink, std::size_t place) {
  const std::size_t end = std::min(first + sink.Frequencies(), request.x.size());
  SpectrumBlock& block = worker.block;
  BlockFiller& filler = *worker.filler;
  block.MakeRoomFor(request, anywhere);
  for (block.first = first; block.first < end; block.first += kSpectrumBlock) {
    block.count = std::min(kSpectrumBlock, end - block.first);
    const bool filled = filler.FillsAtOnce() ? filler.FillAtOnce(block) : filler.FillOneByOne(block) == 0;
    if (!filled || block.hasFormer) return false;
    sink.work(block, place);
  }
  return true;
}

}  // namespace

void ForgetModel(EvalContext& ctx, std::uint32_t number) {
  ctx.vdfKernels.Forget(number);
  ctx.typeScratch.caches.erase(number);
  if (!ctx.team) return;
  for (const auto& worker : ctx.team->workers) {
    worker->filler.reset();
    ForgetModel(worker->ctx, number);
  }
}

double NanosecondsOf(const EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  const Cost cost = CostOfQuantities(ctx, model, WantedAnywhere(request));
  return static_cast<double>(request.x.size()) * (request.derivatives ? cost.withSlopes : cost.values);
}

std::size_t BlocksOfPortion(const EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  constexpr double kNanoseconds = 20e3, kMost = 8;
  const double ofBlock = NanosecondsOf(ctx, model, request) / static_cast<double>(request.x.size()) * kSpectrumBlock;
  return static_cast<std::size_t>(std::clamp(kNanoseconds / ofBlock, 1.0, kMost));
}

bool PaysToShare(const EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  if (!ctx.pool || request.x.size() < 4 * kSpectrumBlock) return false;
  if (TypeOf(ctx, model) && AnyWhole(ctx)) return false;  // that model may be a partner
  return ctx.pool->Pays(NanosecondsOf(ctx, model, request));
}

std::size_t MostPortionsOfBatch(const EvalContext& ctx) {
  return ctx.pool ? ctx.pool->Threads() * kPortionsOfThread : 1;
}

std::size_t FillByTeam(EvalContext& ctx, const Model& model, const SpectrumRequest& request, const BatchSink& sink) {
  ThreadPool& pool = *ctx.pool;
  if (!ctx.team) ctx.team = std::make_shared<SpectrumTeam>(pool.Threads());
  const QuantitySet anywhere = WantedAnywhere(request);
  std::vector<char> whole(MostPortionsOfBatch(ctx));
  std::vector<char> ready(ctx.team->workers.size());
  std::size_t next = 0;
  while (next < request.x.size()) {
    const std::size_t left = (request.x.size() - next + sink.Frequencies() - 1) / sink.Frequencies();
    const std::size_t count = std::min(whole.size(), left);
    pool.Run(count, [&](std::size_t task, std::size_t thread) {
      SpectrumWorker& worker = *ctx.team->workers[thread];
      if (!ready[thread]) Prepare(worker, ctx, model, request);
      ready[thread] = 1;
      whole[task] = FillPortion(worker, request, anywhere, next + task * sink.Frequencies(), sink, task);
    });
    const auto good = static_cast<std::size_t>(
        std::find(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(count), 0) - whole.begin());
    if (good > 0) sink.take(good);
    next = std::min(next + good * sink.Frequencies(), request.x.size());
    if (good < count) break;
  }
  return next;
}

}  // namespace kalvex

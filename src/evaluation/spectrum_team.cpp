#include "evaluation/spectrum_team.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <optional>

#include "evaluation/block_filler.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "evaluation/plain_spectrum.h"
#include "records/model_table.h"
#include "terms/term_tables.h"

namespace kalvex {

struct SpectrumWorker {
  ParamTables params;
  EvalContext ctx;
  Model* model = nullptr;
  std::optional<BlockFiller> filler;
  SpectrumBlock block;  // no unused number in it is NaN
};

SpectrumTeam::SpectrumTeam(std::size_t threads) {
  while (workers.size() < threads) workers.push_back(std::make_unique<SpectrumWorker>());
}

SpectrumTeam::~SpectrumTeam() = default;

namespace {

// ---- what is worth it

// Nanoseconds that one frequency takes, rather too few than too many, measured on a core of 4 GHz.
struct Cost {
  double values;
  double withSlopes;
};
constexpr Cost kOfFrequency = {2, 4};
constexpr Cost kOfRow = {0.15, 0.8};
constexpr Cost kOfMeshPoint = {0.15, 0.3};
constexpr Cost kOfCodes = {100, 200};  // of rows with codes, whatever their number
constexpr Cost kOfAverage = {40, 60};  // of a Quantity that is an average over thickness or angle
constexpr Cost kOfLayer = {10, 25};    // of a type that fills blocks at once
constexpr Cost kOfType = {50, 100};    // of another
constexpr QuantitySet kAverages = SetOf(kTrans) | SetOf(kRp) | SetOf(kRs) | SetOf(kRps) | SetOf(kDefringed);

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
    const auto averages = static_cast<std::size_t>(std::popcount(static_cast<QuantitySet>(wanted & kAverages)));
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

// A plain model reads nothing of other models.
bool NeedsAllModels(const EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  if (TypeOf(ctx, model)) return true;
  const int slot = SlotOf(*ctx.params, model);
  return request.derivatives && std::any_of(request.slopesOf.begin(), request.slopesOf.end(), [&](auto& place) {
           return place.Where != ParamKind::kExp && place.nm != slot;
         });
}

void Prepare(SpectrumWorker& worker, EvalContext& ctx, const Model& model, const SpectrumRequest& request) {
  const auto slot = static_cast<std::size_t>(SlotOf(*ctx.params, model));
  if (NeedsAllModels(ctx, model, request)) {
    worker.params = *ctx.params;
  } else {
    worker.params.models[slot] = model;
    worker.params.ExpParams = ctx.params->ExpParams;
  }
  EvalContext& own = worker.ctx;
  own.params = &worker.params;
  own.datasets = ctx.datasets;
  own.types = ctx.types;
  own.termEnvironment.datasets = ctx.termEnvironment.datasets;
  CopyTables(own.termEnvironment, ctx.termEnvironment);
  own.spectrum = ctx.spectrum;
  own.DcFlag = ctx.DcFlag;
  own.FrequencyOverrideFlag = ctx.FrequencyOverrideFlag;
  worker.model = &worker.params.models[slot];
  worker.filler.emplace(own, *worker.model, request, ctx.vdfKernels);
}

constexpr double kForgotten = std::numeric_limits<double>::quiet_NaN();

void Forget(ModelParam& param) {
  if (!param.adjustable) return;
  param.dEpsRe = param.dEpsIm = param.dScalar = kForgotten;
  param.dQuantity.fill(kForgotten);
}

void Forget(SpectrumWorker& worker, bool derivatives) {
  for (Quantity& quantity : worker.ctx.quantities) {
    quantity.value = quantity.dRe = quantity.dIm = quantity.dScalar = quantity.dMuRe = quantity.dMuIm = kForgotten;
    quantity.dExp.fill(kForgotten);
  }
  if (!derivatives) return;
  if (!worker.filler->FillsAtOnce()) {
    ForEachFreeParam(worker.params, [](ModelParam& param) { Forget(param); });
  } else if (worker.filler->ReadsTables()) {
    for (ModelParam& param : worker.model->rows) Forget(param);
  }
}

// ---- batches

constexpr std::size_t kPortionsOfThread = 16;  // in a batch

bool AnyNaN(const double* numbers, std::size_t count) {
  std::int64_t any = 0;  // as wide as the numbers, so that many are tried at once
  for (std::size_t i = 0; i < count; ++i) any |= numbers[i] != numbers[i] ? 1 : 0;
  return any != 0;
}

bool IsWhole(SpectrumBlock& block, const SpectrumRequest& request) {
  QuantitySet anywhere = 0;
  for (std::size_t i = 0; i < block.count; ++i) anywhere |= request.wanted[block.first + i];
  const std::size_t slopes = request.derivatives ? request.slopesOf.size() : 0;
  for (int q = 0; q < kQuantityCount; ++q) {
    if (!Contains(anywhere, q)) continue;
    if (AnyNaN(block.Values(q), block.count)) return false;
    for (std::size_t k = 0; k < slopes; ++k) {
      if (AnyNaN(block.Slopes(k, q), block.count)) return false;
    }
  }
  return true;
}

// Fills the blocks of a portion and lets them go through the sink, until one is not trusted.
bool FillPortion(SpectrumWorker& worker, const SpectrumRequest& request, QuantitySet anywhere, std::size_t first,
                 const BatchSink& sink, std::size_t place) {
  const std::size_t end = std::min(first + sink.Frequencies(), request.x.size());
  SpectrumBlock& block = worker.block;
  BlockFiller& filler = *worker.filler;
  block.MakeRoomFor(request, anywhere);
  for (block.first = first; block.first < end; block.first += kSpectrumBlock) {
    block.count = std::min(kSpectrumBlock, end - block.first);
    Forget(worker, request.derivatives);
    const bool filled = filler.FillsAtOnce() ? filler.FillAtOnce(block) : filler.FillOneByOne(block) == 0;
    if (!filled || (filler.ReadsTables() && !IsWhole(block, request))) {
      block = {};
      return false;
    }
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
  if (TypeOf(ctx, model) && AnyWhole(ctx)) return false;  // it may be a partner
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

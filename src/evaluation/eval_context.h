// EvalContext: everything that an evaluation reads or writes is reached from here, and it keeps nothing elsewhere. A
// second context over a copy of the parameter tables can evaluate at the same time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/platform.h"
#include "datasets/dataset.h"
#include "evaluation/model_type.h"
#include "evaluation/quantity_table.h"
#include "evaluation/slopes.h"
#include "evaluation/type_scratch.h"
#include "evaluation/vdf_kernel_cache.h"
#include "numeric/thread_pool.h"
#include "records/model_table.h"
#include "records/row_code.h"
#include "terms/term_environment.h"
#include "terms/term_table.h"

namespace kalvex {

struct SpectrumTeam;  // made by the first spectrum that is shared out, see spectrum_team.h

struct EvalContext {
  const ParamTables* params = nullptr;
  const DatasetTable* datasets = nullptr;
  std::span<const ModelType* const> types;  // the table of special models

  QuantityTable quantities{};
  SlopeTable slopes;
  TermSlots slots;
  std::vector<TermInput> termScratch;
  TermEnvironment termEnvironment;
  VdfKernelCache vdfKernels;
  TypeScratchStack typeScratch;

  Platform* platform = nullptr;  // who is told of a fault in a file that a type reads; null: nobody

  ThreadPool* pool = nullptr;  // null: this thread alone
  std::shared_ptr<SpectrumTeam> team;

  // A partner's result went into the evaluation that its own evaluation had left as it was.
  bool readFormerResult = false;

  // Number of the spectrum that is being evaluated, 0 outside of one: while it is the same no parameter, dataset or
  // setting changes, so that a type may keep what it made for the frequency before.
  std::uint64_t spectrum = 0;
  std::uint64_t spectraBefore = 0;

  bool DcFlag = false;                 // Quantities are computed at the frequency kDcFrequency
  bool FrequencyOverrideFlag = false;  // the sum of a model's rows is taken at the value of "Scaling factor of T"
};

// Where the slopes by the parameters of a model of the table go.
inline ModelSlopes& SlopesOf(EvalContext& ctx, const Model& model) {
  return ctx.slopes.models[static_cast<std::size_t>(SlotOf(*ctx.params, model))];
}

inline constexpr double kDcFrequency = 1e-10;  // cm-1

}  // namespace kalvex

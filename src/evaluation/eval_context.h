// Evaluation: what a model's Quantities are at a frequency, and how they change with each parameter.
//
// An evaluation is a function. Parameters, datasets and frequencies go in and are only read. It computes in an
// EvalContext, and its results stand there: Quantities, and slopes in a table beside the parameters. It keeps nothing
// elsewhere, so that a second context over the same parameters can evaluate at the same time.
//
//   eval_model.h         EvalModel: one model at one frequency; the reference for what is right
//   eps_sum.h            the sum of a model's rows and terms; vdf_eval.h: of its variational function
//   quantity_formulas.h  from the sum to the 15 Quantities; stack_optics.h: fields in stacks of layers
//   slopes.h, chains.h   where the slopes stand; the chain rule from Quantities to parameters
//   model_type.h         what a special model is; type_scratch.h: its room between frequencies
//   eval_spectrum.h      many frequencies, in blocks; block_filler.h chooses how a block is filled
//   plain_spectrum.h     blocks of a plain model at once, by plain_rows.h and the loops in vector_kernels.h
//   spectrum_team.h      spectra shared out over threads
//
// What stands from the evaluation before counts in one case: an evaluation that makes no value or slope keeps it. A
// special model does so that fails; so do slopes by what an evaluation does not reach, by the factors of a product that
// is not computed, and by experimental parameters where the dielectric function has left its range. Values stay in the
// context from call to call; slopes start from those that the parameters have saved (StartFromSaved).
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

// A row with a code.
struct CodedRow {
  int row = 0;
  std::int32_t code = 0;
  bool operator==(const CodedRow&) const = default;
};

// The composite terms that such rows of a model make, kept as long as the rows are the same.
struct CompleteTerms {
  std::vector<CodedRow> rows;
  TermSlots slots;
  std::vector<std::size_t> records;  // those that have all their rows, in table order
};

struct EvalContext {
  const ParamTables* params = nullptr;
  const DatasetTable* datasets = nullptr;
  std::span<const ModelType* const> types;  // the table of special models

  QuantityTable quantities{};
  SlopeTable slopes;
  std::vector<CodedRow> codedRows;
  CompleteTerms completeTerms;
  std::vector<TermInput> termScratch;
  TermEnvironment termEnvironment;
  VdfKernelCache vdfKernels;
  TypeScratchStack typeScratch;

  Platform* platform = nullptr;  // who is told of a fault in a file that a type reads; null: nobody

  ThreadPool* pool = nullptr;  // null: this thread alone
  std::shared_ptr<SpectrumTeam> team;

  // Where results go to several threads it is noted whether one is of a former evaluation: then the marks of Quantities
  // and slopes count, and the flag tells that such a result of a partner has gone into another.
  bool notesFormer = false;
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

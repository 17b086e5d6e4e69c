// src/evaluation (floor 4) computes the Quantities of a model at given frequencies and their derivatives by each
// parameter.
//
// An evaluation is a function. Parameters, datasets and frequencies are its input and are only read. It computes in an
// EvalContext, which receives the results: Quantities, and slopes in a table parallel to the parameters. Nothing else
// changes, and several contexts can evaluate the same parameters at the same time.
//
//   eval_model.h         EvalModel: one model at one frequency; the reference implementation
//   eps_sum.h            the sum of a model's rows and terms; vdf_eval.h: its variational function
//   quantity_formulas.h  from the sum to the Quantities; stack_optics.h: fields in stacks of layers
//   slopes.h, chains.h   the table of slopes; the chain rule from Quantities to parameters
//   model_type.h         the record of a special model; type_scratch.h: its work space
//   eval_spectrum.h      many frequencies, in blocks; block_filler.h selects how a block is filled
//   plain_spectrum.h     blocks of a plain model, with plain_rows.h and the loops in spectrum_kernels.h
//   spectrum_team.h      spectra shared by several threads
//
// Read the files in this order. EvalContext explains which results of a previous evaluation stay.
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

struct SpectrumTeam;  // created by the first spectrum that threads share, see spectrum_team.h

// A row with a code.
struct CodedRow {
  int row = 0;
  std::int32_t code = 0;
  bool operator==(const CodedRow&) const = default;
};

// The composite terms of the rows of a model. Recomputed only if the rows change.
struct CompleteTerms {
  std::vector<CodedRow> rows;
  TermSlots slots;
  std::vector<std::size_t> records;  // terms that have all their rows, in table order
};

// A result of the previous evaluation stays if an evaluation does not compute it. This happens for a special model that
// fails. It also happens for slopes by parameters that the evaluation does not reach, by the factors of a product that
// is not computed, and by experimental parameters if the dielectric function is out of range. Values stay in the
// context between calls; slopes start from those saved in the parameters (StartFromSaved).
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

  Platform* platform = nullptr;  // reports a fault in a file that a type reads; may be null

  ThreadPool* pool = nullptr;  // null: only the calling thread computes
  std::shared_ptr<SpectrumTeam> team;

  // Set in the contexts of worker threads. The Quantities and slopes then record whether a result is left from an
  // earlier evaluation. readFormerResult: such a result of a partner has entered another result.
  bool notesFormer = false;
  bool readFormerResult = false;

  // Serial number of the present spectrum, 0 outside a spectrum. While it stays the same, no parameter, dataset or
  // setting changes: a type may reuse what it computed for the previous frequency.
  std::uint64_t spectrum = 0;
  std::uint64_t spectraBefore = 0;

  bool DcFlag = false;                 // Quantities are computed at the frequency kDcFrequency
  bool FrequencyOverrideFlag = false;  // the sum of a model's rows is taken at the value of "Scaling factor of T"
};

// The slopes by the parameters of a model of the table.
inline ModelSlopes& SlopesOf(EvalContext& ctx, const Model& model) {
  return ctx.slopes.models[static_cast<std::size_t>(SlotOf(*ctx.params, model))];
}

inline constexpr double kDcFrequency = 1e-10;  // cm-1

}  // namespace kalvex

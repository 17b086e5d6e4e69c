// EvalContext: everything that an evaluation reads or writes is reached from here, and it keeps nothing elsewhere. A
// second context over a copy of the parameter tables can evaluate at the same time.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "datasets/dataset.h"
#include "models/model.h"
#include "models/quantity.h"
#include "models/row_code.h"
#include "terms/term_environment.h"
#include "terms/term_table.h"
#include "vdf/vdf_kernel_cache.h"

namespace kalvex {

struct ModelType;

struct EvalContext {
  ParamTables* params = nullptr;
  const DatasetTable* datasets = nullptr;
  std::span<const ModelType* const> types;  // the table of special models

  QuantityTable quantities{};
  TermSlots slots;
  std::vector<TermInput> termScratch;
  TermEnvironment termEnvironment;
  VdfKernelCache vdfKernels;

  bool DcFlag = false;                 // Quantities are computed at the frequency kDcFrequency
  bool FrequencyOverrideFlag = false;  // the sum of a model's rows is taken at the value of "Scaling factor of T"
};

inline constexpr double kDcFrequency = 1e-10;  // cm-1

// One kind of sample: how a model with the negated code as its leading parameter is evaluated.
struct ModelType {
  int code = 0;
  const char* name = "";
  // As StdEvalBulk and StdEvalAfter: -1 leaves the Quantities as they stand.
  int (*evaluate)(EvalContext& ctx, Model& model, double x, bool derivatives) = nullptr;
  int (*after)(EvalContext& ctx, Model& model) = nullptr;
};

// The type of a model, null for a plain one. Unlike a row's code, a type code is only truncated: -2.7 is type 2.
const ModelType* TypeOf(const EvalContext& ctx, const Model& model);
// The name of the type, "Diel. function" for a plain model.
const char* TypeNameOf(const EvalContext& ctx, const Model& model);

}  // namespace kalvex

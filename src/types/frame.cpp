#include "types/frame.h"

#include <algorithm>
#include <cmath>

#include "datasets/interpolation.h"
#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_model.h"
#include "evaluation/vdf_eval.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

TypeScratch& NextLevel(EvalContext& ctx) {
  TypeScratchStack& stack = ctx.typeScratch;
  if (stack.levels.size() == stack.depth) stack.levels.emplace_back();
  TypeScratch& level = stack.levels[stack.depth++];
  level.ahead = stack.ahead;
  return level;
}

bool HasFreeParam(const Model& model) {
  bool any = false;
  ForEachParam(model, [&](const ModelParam& param) { any = any || param.adjustable; });
  return any;
}

bool IsResponse(CellUse use) {
  return use == CellUse::kPartner || use == CellUse::kOptional || use == CellUse::kReference ||
         use == CellUse::kOwnMesh;
}

bool IsEvaluated(CellUse use) { return use == CellUse::kEvaluated || use == CellUse::kEvaluatedIf; }
bool NamesModel(CellUse use) {
  return IsEvaluated(use) || use == CellUse::kMeshPartner || (IsResponse(use) && use != CellUse::kOwnMesh);
}

// The rows of a special model do not enter the dielectric function of its own mesh: their slopes are 0.
void ClearRowSlopes(EvalContext& ctx, const Model& model) {
  ForEachParam(model, SlopesOf(ctx, model), [](const ModelParam&, ParamSlopes& slopes) { slopes.PutEps(0, 0); });
}

}  // namespace

template <class T>
TypeInputs<T>::TypeInputs(const TypeScratch& scratch, const RowMap& map, double frequency)
    : x(frequency),
      scratch_(scratch),
      head_(map.head.size()),
      group_(map.group.size()),
      groups_(group_ == 0 ? 0 : (scratch.raw.size() - head_) / group_) {
  if constexpr (std::is_same_v<T, double>) {
    values_ = scratch.at.data();
    quantities_ = scratch.quantities.data();
  } else {
    values_ = scratch.dual.data();
    quantities_ = scratch.dualQuantities.data();
  }
}

template <class T>
int TypeInputs<T>::TruncatedSetting(double value) {
  constexpr double kMost = 2147483647;
  return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -kMost, kMost));
}

template class TypeInputs<double>;
template class TypeInputs<TypeDual>;

TypeRun::TypeRun(EvalContext& ctx, const Model& model, const RowMap& map, std::span<const SlotUse> fills,
                 std::span<const Quantity> asked)
    : ctx_(ctx), model_(model), map_(map), fills_(fills), asked_(asked), scratch_(NextLevel(ctx)) {}

TypeRun::~TypeRun() { --ctx_.typeScratch.depth; }

template <class Visit>
void TypeRun::ForEachWanted(Visit visit) {
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx_.quantities[q];
    if (quantity.wanted) visit(q, quantity);
  }
}

const RowCell& TypeRun::CellOf(std::size_t i) const {
  if (i < map_.head.size()) return map_.head[i];
  return map_.group[(i - map_.head.size()) % map_.group.size()];
}

ParamSlopes* TypeRun::SlopesOfOwn(std::size_t i) {
  if (!scratch_.param[i]) return nullptr;
  const RowCell& cell = CellOf(i);
  if (cell.use == CellUse::kExperimental) return &ctx_.slopes.ExpParams[static_cast<std::size_t>(cell.row)];
  return &Cell(SlopesOf(ctx_, model_), scratch_.row[i], cell.column);
}

bool TypeRun::IsEvaluatedPartner(std::size_t i) const { return IsEvaluated(CellOf(i).use) && scratch_.partner[i]; }

int TypeRun::ReadRows() {
  const int rows = RowCount(model_);
  if (!map_.rows.Admits(rows)) return map_.rows.FailureOf(rows);
  // More nested partners than models: the partners form a cycle.
  if (ctx_.typeScratch.depth > static_cast<std::size_t>(kMaxModels)) return -1;
  const int groups = map_.group.empty() ? 0 : std::max(0, rows - map_.groupStart) / map_.groupRows;
  const std::size_t count = map_.head.size() + static_cast<std::size_t>(groups) * map_.group.size();
  scratch_.free.clear();
  scratch_.raw.assign(count, 0);
  scratch_.at.assign(count, {});
  scratch_.partner.assign(count, nullptr);
  scratch_.partnerX.assign(count, 0);
  scratch_.param.assign(count, nullptr);
  scratch_.row.resize(count);
  scratch_.quantities.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const RowCell& cell = CellOf(i);
    if (cell.use == CellUse::kExperimental) {
      scratch_.param[i] = &ctx_.params->ExpParams[static_cast<std::size_t>(cell.row)];
      scratch_.raw[i] = scratch_.param[i]->value;
      continue;
    }
    const bool inGroup = i >= map_.head.size();
    const auto group = inGroup ? static_cast<int>((i - map_.head.size()) / map_.group.size()) : 0;
    const int row = cell.row + (inGroup ? map_.groupStart + group * map_.groupRows : 0);
    scratch_.row[i] = row;
    const ModelParam* const param = row < rows ? &Cell(model_, row, cell.column) : nullptr;
    scratch_.raw[i] = param ? param->value : cell.absent;
    if (cell.use == CellUse::kOwn) scratch_.param[i] = param;
    if (cell.use == CellUse::kOwnMesh && HasVdf(model_) && TypeInputs<double>(scratch_, map_, 0).setting(i) != 0) {
      scratch_.partner[i] = &model_;
    }
    if (!NamesModel(cell.use)) continue;
    scratch_.partner[i] = GetModelByReal(*ctx_.params, scratch_.raw[i]);
    const bool none = (cell.use == CellUse::kOptional || cell.use == CellUse::kEvaluatedIf) && scratch_.raw[i] == 0;
    if (!scratch_.partner[i] && !none) return -1;
    if (cell.demanded != 0 && scratch_.partner[i]->epsInf.value != -cell.demanded) return -1;
  }
  return 0;
}

void TypeRun::Ask(std::size_t i, double x, bool derivatives) {
  derivatives_ = derivatives;
  scratch_.partnerX[i] = x;
  const CellUse use = CellOf(i).use;
  if (use == CellUse::kDataset) {
    const Dataset* const dataset = DatasetInSlot(*ctx_.datasets, TypeInputs<double>(scratch_, map_, x).setting(i));
    scratch_.at[i] = {dataset && dataset->id != 0 ? DatasetValueAt(*dataset, x) : 0, 0};
  } else if (use == CellUse::kOwnMesh) {
    scratch_.at[i] = {};
    if (!scratch_.partner[i]) return;
    if (derivatives) ClearRowSlopes(ctx_, model_);
    scratch_.at[i] =
        EvalVdf(model_.vdf, x, derivatives ? std::span(SlopesOf(ctx_, model_).mesh) : std::span<MeshSlopes>());
  } else if (IsResponse(use)) {
    const Model* const partner = scratch_.partner[i];
    scratch_.at[i] = partner ? EpsSum(ctx_, *partner, x, derivatives && use != CellUse::kReference) : Cplx{1, 0};
  } else {
    scratch_.at[i] = {scratch_.raw[i], 0};
  }
}

int TypeRun::AskAll(double x, bool derivatives) {
  // Evaluated partners come first: their evaluation overwrites slopes in other models, also those of responses.
  for (std::size_t i = 0; i < InputCount(); ++i) {
    if (IsEvaluatedPartner(i) && AskEvaluated(i, x, derivatives) != 0) return -1;
  }
  for (std::size_t i = 0; i < InputCount(); ++i) Ask(i, x, derivatives);
  return 0;
}

double* TypeRun::ColumnOf(std::size_t i, std::size_t slot) {
  return scratch_.columns.data() + (i * AskedCount() + slot) * scratch_.free.size();
}

int TypeRun::AskEvaluated(std::size_t i, double x, bool derivatives) {
  if (derivatives) {
    scratch_.free.clear();
    ForEachFreeParam(*ctx_.params, ctx_.slopes, [&](ParamSlopes& slopes) { scratch_.free.push_back(&slopes); });
    scratch_.columns.resize(InputCount() * AskedCount() * scratch_.free.size());
    for (std::size_t s = 0; s < AskedCount(); ++s) ClearColumns(Asked(s));
  }
  QuantitySet set;
  for (std::size_t s = 0; s < AskedCount(); ++s) set |= {Asked(s)};
  const WantedForPartner wanted(ctx_.quantities, set);
  if (EvalPartner(ctx_, *scratch_.partner[i], x, derivatives) != 0) return -1;
  for (std::size_t s = 0; s < AskedCount(); ++s) {
    const Quantity q = Asked(s);
    scratch_.quantities[i][q] = ctx_.quantities[q].value;
    if (!derivatives) continue;
    double* const column = ColumnOf(i, s);
    for (std::size_t p = 0; p < scratch_.free.size(); ++p) column[p] = scratch_.free[p]->dQuantity[q];
  }
  return 0;
}

void TypeRun::CountDirections() {
  directions_ = 0;
  scratch_.direction.assign(InputCount(), kNoDirection);
  for (std::size_t i = 0; i < InputCount(); ++i) {
    const CellUse use = CellOf(i).use;
    std::size_t count = 0;
    if (IsEvaluated(use)) {
      count = scratch_.partner[i] ? AskedCount() : 0;
    } else if (scratch_.partner[i] && IsResponse(use) && use != CellUse::kReference) {
      count = HasFreeParam(*scratch_.partner[i]) ? 2 : 0;
    } else if (scratch_.param[i]) {
      count = scratch_.param[i]->adjustable ? 1 : 0;
    }
    if (count > 0) scratch_.direction[i] = directions_;
    directions_ += count;
  }
  scratch_.slopes.assign(kEnumCount<Quantity> * directions_, 0);
  scratch_.epsSlopes.assign(directions_, {});
}

void TypeRun::MakeDuals(std::size_t first) {
  scratch_.dual.resize(InputCount());
  scratch_.dualQuantities.resize(InputCount());
  const auto vary = [&](TypeDual& value, std::size_t direction) {
    if (direction >= first && direction < first + kTypeLanes) value.v[direction - first] = 1;
  };
  for (std::size_t i = 0; i < InputCount(); ++i) {
    scratch_.dual[i] = {TypeDual(scratch_.at[i].re), TypeDual(scratch_.at[i].im)};
    const std::size_t direction = scratch_.direction[i];
    if (direction == kNoDirection) continue;
    if (!IsEvaluated(CellOf(i).use)) {
      vary(scratch_.dual[i].re, direction);
      if (scratch_.partner[i]) vary(scratch_.dual[i].im, direction + 1);
      continue;
    }
    for (std::size_t s = 0; s < AskedCount(); ++s) {
      const Quantity q = Asked(s);
      scratch_.dualQuantities[i][q] = TypeDual(scratch_.quantities[i][q]);
      vary(scratch_.dualQuantities[i][q], direction + s);
    }
  }
}

void TypeRun::Store(const Slots<double>& values) {
  ForEachWanted([&](Quantity q, QuantityResult& quantity) {
    quantity.Put(values[q]);
    quantity.ClearExp();
  });
}

void TypeRun::StoreMaterial(const Cplx& eps, double x, bool derivatives) {
  const QuantityInput input = QuantityInputAt(ctx_, x, derivatives);
  ForEachWanted([&](Quantity q, QuantityResult& quantity) {
    quantity.ClearExp();
    QuantityOfEps(input, eps, q, quantity);
  });
}

void TypeRun::Chain() {
  ForEachWanted([&](Quantity q, QuantityResult& quantity) { ChainQuantity(q, quantity.dExp); });
}

void TypeRun::ChainOfMaterial() {
  ForEachWanted([&](Quantity q, QuantityResult& quantity) {
    for (std::size_t d = 0; d < directions_; ++d) {
      const Cplx& slope = scratch_.epsSlopes[d];
      Slope(q, d) = quantity.dRe * slope.re + quantity.dIm * slope.im;
    }
  });
  Chain();
}

void TypeRun::ClearColumns(Quantity quantity) {
  for (ParamSlopes* const slopes : scratch_.free) slopes->Put(quantity, 0);
  for (const Model* const partner : scratch_.partner) {
    if (partner) ClearDerivativeColumn(ctx_, *partner, quantity);
  }
  for (std::size_t k = 0; k < kExpParamCount; ++k) {
    if (ctx_.params->ExpParams[k].adjustable) ctx_.slopes.ExpParams[k].Put(quantity, 0);
  }
}

void TypeRun::AddEvaluated(Quantity quantity) {
  for (std::size_t i = 0; i < InputCount(); ++i) {
    if (!IsEvaluatedPartner(i)) continue;
    for (std::size_t s = 0; s < AskedCount(); ++s) {
      const double slope = Slope(quantity, scratch_.direction[i] + s);
      if (slope == 0) continue;
      const double* const column = ColumnOf(i, s);
      for (std::size_t p = 0; p < scratch_.free.size(); ++p) {
        scratch_.free[p]->Add(quantity, slope * column[p]);
      }
    }
  }
}

// Whether an input evaluates the model at another frequency.
bool TypeRun::AsksElsewhere(const Model& partner, double x) const {
  for (std::size_t i = 0; i < InputCount(); ++i) {
    if (scratch_.partner[i] == &partner && scratch_.partnerX[i] != x) return true;
  }
  return false;
}

void TypeRun::ChainQuantity(Quantity quantity, const std::array<double, kExpParamCount>& dExp) {
  const std::array<double, kExpParamCount> ofMaterial = dExp;
  QuantityResult& of = ctx_.quantities[quantity];
  ClearColumns(quantity);
  of.ClearExp();
  for (std::size_t i = 0; i < InputCount(); ++i) {
    const std::size_t direction = scratch_.direction[i];
    if (direction == kNoDirection || !IsResponse(CellOf(i).use)) continue;
    const Model& partner = *scratch_.partner[i];
    // The same model evaluated at another frequency has overwritten the slopes of this response.
    const bool overwritten = derivatives_ && AsksElsewhere(partner, scratch_.partnerX[i]);
    if (overwritten) EpsSum(ctx_, partner, scratch_.partnerX[i], true);
    of.dRe = Slope(quantity, direction);
    of.dIm = Slope(quantity, direction + 1);
    AddChain(ctx_, partner, quantity);
  }
  of.dExp = ofMaterial;
  for (std::size_t k = 0; k < kExpParamCount; ++k) {
    if (ctx_.params->ExpParams[k].adjustable) ctx_.slopes.ExpParams[k].Add(quantity, ofMaterial[k]);
  }
  AddEvaluated(quantity);
  for (std::size_t i = 0; i < InputCount(); ++i) {
    if (!scratch_.param[i] || scratch_.direction[i] == kNoDirection) continue;
    const double slope = Slope(quantity, scratch_.direction[i]);
    ParamSlopes& slopes = *SlopesOfOwn(i);
    if (CellOf(i).use == CellUse::kExperimental) {
      slopes.Add(quantity, slope);
    } else {
      slopes.Put(quantity, slope);
    }
  }
}

// Marks the parameters on which the Quantities of an evaluated partner depend.
int TypeRun::SeedEvaluated(std::size_t i) {
  for (std::size_t s = 0; s < AskedCount(); ++s) {
    const Quantity quantity = Asked(s);
    const WantedForPartner wanted(ctx_.quantities, QuantitySet{quantity});
    ClearColumns(quantity);
    if (EvalPartnerAfter(ctx_, *scratch_.partner[i]) != 0) return -1;
    double* const column = ColumnOf(i, s);
    for (std::size_t p = 0; p < scratch_.free.size(); ++p) {
      column[p] = scratch_.free[p]->dQuantity[quantity] != 0 ? 1 : 0;
    }
  }
  return 0;
}

// Sets the slope of 1 by every direction of the inputs in use. The slopes of a response are the weights wRe and wIm of
// its parts. Of an evaluated partner the directions are all its Quantities in kAsked; without kAsked, the Quantity of
// the same number.
void TypeRun::SeedSlopes(Quantity quantity, std::size_t slot, const SlotUse& use, double wRe, double wIm) {
  const std::size_t head = map_.head.size(), group = map_.group.size(), count = InputCount();
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t direction = scratch_.direction[i];
    const std::size_t cell = i < head ? i : (i - head) % group;
    const bool idle = i >= head && i + group >= count && (use.lastIdle >> cell & 1) != 0;
    if (direction == kNoDirection || idle || !(use.inputs >> (i < head ? cell : head + cell) & 1)) continue;
    const CellUse of = CellOf(i).use;
    if (IsResponse(of)) {
      Slope(quantity, direction) = wRe;
      Slope(quantity, direction + 1) = wIm;
    } else if (IsEvaluated(of) && !asked_.empty()) {
      for (std::size_t k = 0; k < asked_.size(); ++k) {
        if (use.asked >> k & 1) Slope(quantity, direction + k) = 1;
      }
    } else {
      Slope(quantity, direction + (IsEvaluated(of) ? slot : 0)) = 1;
    }
  }
}

int MarkDependencies(EvalContext& ctx, const Model& model, const RowMap& map, std::span<const SlotUse> fills,
                     std::span<const Quantity> asked, Parts parts, IdleInputs idle) {
  TypeRun run(ctx, model, map, fills, asked);
  if (const int status = run.ReadRows()) return status;
  TypeScratch& scratch = run.scratch_;
  ForEachFreeParam(*ctx.params, ctx.slopes, [&](ParamSlopes& slopes) { scratch.free.push_back(&slopes); });
  scratch.columns.assign(run.InputCount() * run.AskedCount() * scratch.free.size(), 0);
  for (std::size_t i = 0; i < run.InputCount(); ++i) {
    if (run.IsEvaluatedPartner(i) && run.SeedEvaluated(i) != 0) return -1;
  }
  for (std::size_t i = 0; i < run.InputCount(); ++i) {
    const Model* const partner = scratch.partner[i];
    if (!partner || !IsResponse(run.CellOf(i).use)) continue;
    if (run.CellOf(i).use == CellUse::kOwnMesh) {
      ClearRowSlopes(ctx, model);
      VdfGradient(model.vdf, SlopesOf(ctx, model).mesh);
    } else {
      SeedDependencies(ctx, *partner);
    }
  }
  run.CountDirections();
  const std::uint64_t counting = idle ? ~idle(TypeInputs<double>(scratch, map, 0)) : kAllInputs;
  run.ForEachWanted([&](Quantity q, QuantityResult& quantity) {
    quantity.ClearExp();
    if (parts != Parts::kOwn) {
      DependencyStub(q, quantity);
      const bool apart = parts == Parts::kApart;
      run.SeedSlopes(q, 0, {.quantity = q, .inputs = counting}, apart ? quantity.dRe : 1, apart ? quantity.dIm : 1);
    }
    for (std::size_t s = 0; s < fills.size(); ++s) {
      SlotUse use = fills[s];
      use.inputs &= counting;
      if (use.quantity == q) run.SeedSlopes(q, s, use, 1, 1);
    }
  });
  run.Chain();
  return 0;
}

const Model* PartnerAt(EvalContext& ctx, const Model& model, int row, int column) {
  return GetModelByReal(*ctx.params, Cell(model, row, column).value);
}

}  // namespace kalvex

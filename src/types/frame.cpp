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

constexpr auto kSlots = static_cast<std::size_t>(kQuantityCount);

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
      head_(static_cast<int>(map.head.size())),
      group_(static_cast<int>(map.group.size())),
      groups_(group_ == 0 ? 0 : (static_cast<int>(scratch.raw.size()) - head_) / group_) {
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
                 std::span<const int> asked)
    : ctx_(ctx), model_(model), map_(map), fills_(fills), asked_(asked), scratch_(NextLevel(ctx)) {}

TypeRun::~TypeRun() { --ctx_.typeScratch.depth; }

template <class Visit>
void TypeRun::ForEachWanted(Visit visit) {
  for (int q = 0; q < kQuantityCount; ++q) {
    Quantity& quantity = ctx_.quantities[static_cast<std::size_t>(q)];
    if (quantity.wanted) visit(q, quantity);
  }
}

const RowCell& TypeRun::CellOf(int i) const {
  const auto at = static_cast<std::size_t>(i);
  if (at < map_.head.size()) return map_.head[at];
  return map_.group[(at - map_.head.size()) % map_.group.size()];
}

ParamSlopes* TypeRun::SlopesOfOwn(int i) {
  if (!scratch_.param[static_cast<std::size_t>(i)]) return nullptr;
  const RowCell& cell = CellOf(i);
  if (cell.use == CellUse::kExperimental) return &ctx_.slopes.ExpParams[static_cast<std::size_t>(cell.row)];
  return &Cell(SlopesOf(ctx_, model_), scratch_.row[static_cast<std::size_t>(i)], cell.column);
}

bool TypeRun::IsEvaluatedPartner(int i) const {
  return IsEvaluated(CellOf(i).use) && scratch_.partner[static_cast<std::size_t>(i)];
}

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
    const int index = static_cast<int>(i);
    const RowCell& cell = CellOf(index);
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
    if (cell.use == CellUse::kOwnMesh && HasVdf(model_) && TypeInputs<double>(scratch_, map_, 0).setting(index) != 0) {
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

void TypeRun::Ask(int i, double x, bool derivatives) {
  const auto at = static_cast<std::size_t>(i);
  derivatives_ = derivatives;
  scratch_.partnerX[at] = x;
  const CellUse use = CellOf(i).use;
  if (use == CellUse::kDataset) {
    const Dataset* const dataset = DatasetInSlot(*ctx_.datasets, TypeInputs<double>(scratch_, map_, x).setting(i));
    scratch_.at[at] = {dataset && dataset->id != 0 ? DatasetValueAt(*dataset, x) : 0, 0};
  } else if (use == CellUse::kOwnMesh) {
    scratch_.at[at] = {};
    if (!scratch_.partner[at]) return;
    if (derivatives) ClearRowSlopes(ctx_, model_);
    scratch_.at[at] =
        EvalVdf(model_.vdf, x, derivatives ? std::span(SlopesOf(ctx_, model_).mesh) : std::span<MeshSlopes>());
  } else if (IsResponse(use)) {
    const Model* const partner = scratch_.partner[at];
    scratch_.at[at] = partner ? EpsSum(ctx_, *partner, x, derivatives && use != CellUse::kReference) : Cplx{1, 0};
  } else {
    scratch_.at[at] = {scratch_.raw[at], 0};
  }
}

int TypeRun::AskAll(double x, bool derivatives) {
  const int count = static_cast<int>(InputCount());
  // Evaluated partners come first: their evaluation overwrites slopes in other models, also those of responses.
  for (int i = 0; i < count; ++i) {
    if (IsEvaluatedPartner(i) && AskEvaluated(i, x, derivatives) != 0) return -1;
  }
  for (int i = 0; i < count; ++i) Ask(i, x, derivatives);
  return 0;
}

double* TypeRun::ColumnOf(int i, int slot) {
  const std::size_t column = static_cast<std::size_t>(i) * AskedCount() + static_cast<std::size_t>(slot);
  return scratch_.columns.data() + column * scratch_.free.size();
}

int TypeRun::AskEvaluated(int i, double x, bool derivatives) {
  if (derivatives) {
    scratch_.free.clear();
    ForEachFreeParam(*ctx_.params, ctx_.slopes, [&](ParamSlopes& slopes) { scratch_.free.push_back(&slopes); });
    scratch_.columns.resize(InputCount() * AskedCount() * scratch_.free.size());
    for (std::size_t s = 0; s < AskedCount(); ++s) ClearColumns(Asked(s));
  }
  QuantitySet set = 0;
  for (std::size_t s = 0; s < AskedCount(); ++s) set = static_cast<QuantitySet>(set | SetOf(Asked(s)));
  const WantedForPartner wanted(ctx_.quantities, set);
  if (EvalPartner(ctx_, *scratch_.partner[static_cast<std::size_t>(i)], x, derivatives) != 0) return -1;
  for (std::size_t s = 0; s < AskedCount(); ++s) {
    const auto q = static_cast<std::size_t>(Asked(s));
    scratch_.quantities[static_cast<std::size_t>(i)][q] = ctx_.quantities[q].value;
    if (!derivatives) continue;
    double* const column = ColumnOf(i, static_cast<int>(s));
    for (std::size_t p = 0; p < scratch_.free.size(); ++p) column[p] = scratch_.free[p]->dQuantity[q];
  }
  return 0;
}

void TypeRun::CountDirections() {
  directions_ = 0;
  scratch_.direction.assign(InputCount(), -1);
  for (std::size_t i = 0; i < InputCount(); ++i) {
    const CellUse use = CellOf(static_cast<int>(i)).use;
    int count = 0;
    if (IsEvaluated(use)) {
      count = scratch_.partner[i] ? static_cast<int>(AskedCount()) : 0;
    } else if (scratch_.partner[i] && IsResponse(use) && use != CellUse::kReference) {
      count = HasFreeParam(*scratch_.partner[i]) ? 2 : 0;
    } else if (scratch_.param[i]) {
      count = scratch_.param[i]->adjustable ? 1 : 0;
    }
    if (count > 0) scratch_.direction[i] = directions_;
    directions_ += count;
  }
  scratch_.slopes.assign(kSlots * static_cast<std::size_t>(directions_), 0);
  scratch_.epsSlopes.assign(static_cast<std::size_t>(directions_), {});
}

void TypeRun::MakeDuals(int first) {
  scratch_.dual.resize(InputCount());
  scratch_.dualQuantities.resize(InputCount());
  const auto vary = [&](TypeDual& value, int direction) {
    if (direction >= first && direction < first + kTypeLanes) {
      value.v[static_cast<std::size_t>(direction - first)] = 1;
    }
  };
  for (std::size_t i = 0; i < InputCount(); ++i) {
    scratch_.dual[i] = {TypeDual(scratch_.at[i].re), TypeDual(scratch_.at[i].im)};
    const int direction = scratch_.direction[i];
    if (direction < 0) continue;
    if (!IsEvaluated(CellOf(static_cast<int>(i)).use)) {
      vary(scratch_.dual[i].re, direction);
      if (scratch_.partner[i]) vary(scratch_.dual[i].im, direction + 1);
      continue;
    }
    for (std::size_t s = 0; s < AskedCount(); ++s) {
      const auto q = static_cast<std::size_t>(Asked(s));
      scratch_.dualQuantities[i][q] = TypeDual(scratch_.quantities[i][q]);
      vary(scratch_.dualQuantities[i][q], direction + static_cast<int>(s));
    }
  }
}

void TypeRun::Store(const Slots<double>& values) {
  ForEachWanted([&](int q, Quantity& quantity) {
    quantity.Put(values[static_cast<std::size_t>(q)]);
    quantity.ClearExp();
  });
}

void TypeRun::StoreMaterial(const Cplx& eps, double x, bool derivatives) {
  const QuantityInput input = QuantityInputAt(ctx_, x, derivatives);
  ForEachWanted([&](int q, Quantity& quantity) {
    quantity.ClearExp();
    QuantityOfEps(input, eps, q, quantity);
  });
}

void TypeRun::Chain() {
  ForEachWanted([&](int q, Quantity& quantity) { ChainQuantity(q, quantity.dExp); });
}

void TypeRun::ChainOfMaterial() {
  ForEachWanted([&](int q, Quantity& quantity) {
    for (int d = 0; d < directions_; ++d) {
      const Cplx& slope = scratch_.epsSlopes[static_cast<std::size_t>(d)];
      Slope(q, d) = quantity.dRe * slope.re + quantity.dIm * slope.im;
    }
  });
  Chain();
}

void TypeRun::ClearColumns(int quantity) {
  for (ParamSlopes* const slopes : scratch_.free) slopes->Put(quantity, 0);
  for (const Model* const partner : scratch_.partner) {
    if (partner) ClearDerivativeColumn(ctx_, *partner, quantity);
  }
  for (std::size_t k = 0; k < kExpParamCount; ++k) {
    if (ctx_.params->ExpParams[k].adjustable) ctx_.slopes.ExpParams[k].Put(quantity, 0);
  }
}

void TypeRun::AddEvaluated(int quantity) {
  for (std::size_t i = 0; i < InputCount(); ++i) {
    if (!IsEvaluatedPartner(static_cast<int>(i))) continue;
    for (std::size_t s = 0; s < AskedCount(); ++s) {
      const double slope = Slope(quantity, scratch_.direction[i] + static_cast<int>(s));
      if (slope == 0) continue;
      const double* const column = ColumnOf(static_cast<int>(i), static_cast<int>(s));
      for (std::size_t p = 0; p < scratch_.free.size(); ++p) {
        scratch_.free[p]->Add(quantity, slope * column[p]);
      }
    }
  }
}

void TypeRun::ChainQuantity(int quantity, const std::array<double, kExpParamCount>& dExp) {
  const auto q = static_cast<std::size_t>(quantity);
  const std::array<double, kExpParamCount> ofMaterial = dExp;
  Quantity& of = ctx_.quantities[q];
  ClearColumns(quantity);
  of.ClearExp();
  for (std::size_t i = 0; i < InputCount(); ++i) {
    const int direction = scratch_.direction[i];
    if (direction < 0 || !IsResponse(CellOf(static_cast<int>(i)).use)) continue;
    const Model& partner = *scratch_.partner[i];
    // The same model evaluated at another frequency has overwritten the slopes of this response.
    const bool overwritten =
        derivatives_ && std::any_of(scratch_.partner.begin(), scratch_.partner.end(), [&](auto& p) {
          return p == &partner &&
                 scratch_.partnerX[static_cast<std::size_t>(&p - scratch_.partner.data())] != scratch_.partnerX[i];
        });
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
    if (!scratch_.param[i] || scratch_.direction[i] < 0) continue;
    const double slope = Slope(quantity, scratch_.direction[i]);
    ParamSlopes& slopes = *SlopesOfOwn(static_cast<int>(i));
    if (CellOf(static_cast<int>(i)).use == CellUse::kExperimental) {
      slopes.Add(quantity, slope);
    } else {
      slopes.Put(quantity, slope);
    }
  }
}

// Marks the parameters on which the Quantities of an evaluated partner depend.
int TypeRun::SeedEvaluated(int i) {
  for (std::size_t s = 0; s < AskedCount(); ++s) {
    const int quantity = Asked(s);
    const WantedForPartner wanted(ctx_.quantities, SetOf(quantity));
    ClearColumns(quantity);
    if (EvalPartnerAfter(ctx_, *scratch_.partner[static_cast<std::size_t>(i)]) != 0) return -1;
    double* const column = ColumnOf(i, static_cast<int>(s));
    for (std::size_t p = 0; p < scratch_.free.size(); ++p) {
      column[p] = scratch_.free[p]->dQuantity[static_cast<std::size_t>(quantity)] != 0 ? 1 : 0;
    }
  }
  return 0;
}

// Sets the slope of 1 by every direction of the inputs in use. The slopes of a response are the weights wRe and wIm of
// its parts. Of an evaluated partner the directions are all its Quantities in kAsked; without kAsked, the Quantity of
// the same number.
void TypeRun::SeedSlopes(int quantity, std::size_t slot, const SlotUse& use, double wRe, double wIm) {
  const int head = static_cast<int>(map_.head.size()), group = static_cast<int>(map_.group.size());
  const int count = static_cast<int>(InputCount());
  for (int i = 0; i < count; ++i) {
    const int direction = scratch_.direction[static_cast<std::size_t>(i)];
    const int cell = i < head ? i : (i - head) % group;
    const bool idle = i >= head && i >= count - group && (use.lastIdle >> cell & 1) != 0;
    if (direction < 0 || idle || !(use.inputs >> (i < head ? cell : head + cell) & 1)) continue;
    const CellUse of = CellOf(i).use;
    if (IsResponse(of)) {
      Slope(quantity, direction) = wRe;
      Slope(quantity, direction + 1) = wIm;
    } else if (IsEvaluated(of) && !asked_.empty()) {
      for (int k = 0; k < static_cast<int>(asked_.size()); ++k) {
        if (use.asked >> k & 1) Slope(quantity, direction + k) = 1;
      }
    } else {
      Slope(quantity, direction + (IsEvaluated(of) ? static_cast<int>(slot) : 0)) = 1;
    }
  }
}

int MarkDependencies(EvalContext& ctx, const Model& model, const RowMap& map, std::span<const SlotUse> fills,
                     std::span<const int> asked, Parts parts, IdleInputs idle) {
  TypeRun run(ctx, model, map, fills, asked);
  if (const int status = run.ReadRows()) return status;
  TypeScratch& scratch = run.scratch_;
  ForEachFreeParam(*ctx.params, ctx.slopes, [&](ParamSlopes& slopes) { scratch.free.push_back(&slopes); });
  scratch.columns.assign(run.InputCount() * run.AskedCount() * scratch.free.size(), 0);
  const int count = static_cast<int>(run.InputCount());
  for (int i = 0; i < count; ++i) {
    if (run.IsEvaluatedPartner(i) && run.SeedEvaluated(i) != 0) return -1;
  }
  for (int i = 0; i < count; ++i) {
    const Model* const partner = scratch.partner[static_cast<std::size_t>(i)];
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
  run.ForEachWanted([&](int q, Quantity& quantity) {
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

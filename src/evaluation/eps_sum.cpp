#include "evaluation/eps_sum.h"

#include <utility>

#include "evaluation/vdf_eval.h"
#include "terms/lorentz.h"

namespace kalvex {
namespace {

TermInput InputOf(ModelParam& param) {
  return {param.value, param.adjustable, &param.dEpsRe, &param.dEpsIm, &param.dScalar};
}

void SetEpsSlopes(ModelParam& param, double value) {
  if (!param.adjustable) return;
  param.dEpsRe = value;
  param.dEpsIm = value;
}

void SetScalarSlope(ModelParam& param, double value) {
  if (param.adjustable) param.dScalar = value;
}

template <class Visit>
void ForEachColumn(Model& model, int row, Visit visit) {
  for (int column = 0; column < kColumns; ++column) visit(Cell(model, row, column));
}

// Walks the rows: plain(row) for a plain one; any other fills the slots, and special(row, code) is called. Gives false
// if there was no special row, so that no composite term can be complete.
template <class Plain, class Special>
bool WalkRows(EvalContext& ctx, Model& model, Plain plain, Special special) {
  bool anySpecial = false;
  const int count = RowCount(model);
  for (int row = 0; row < count; ++row) {
    const std::int32_t code = RowCode(Cell(model, row, Wo));
    if (code == kPlainRow) {
      plain(row);
      continue;
    }
    if (!std::exchange(anySpecial, true)) ClearSlots(ctx.slots);
    FillSlots(ctx.slots, code, row);
    special(row, code);
  }
  return anySpecial;
}

// The parameter that input number i of a complete record names.
ModelParam& NamedParam(const EvalContext& ctx, Model& model, std::size_t record, const TermCell& input) {
  return Cell(model, ctx.slots.row[record][static_cast<std::size_t>(input.idIndex)], input.column);
}

template <class Visit>
void ForEachFactorRow(Model& model, std::int32_t code, Visit visit) {
  const int count = RowCount(model);
  for (int row = 0; row < count; ++row) {
    if (RowCode(Cell(model, row, Wo)) == code) visit(row);
  }
}

// A term with factor rows has more inputs after its own: the number of rows of each kind, then columns Wp and G of all
// of them, kind by kind.
void AppendFactors(EvalContext& ctx, Model& model, std::span<const FactorRow> factors) {
  auto& inputs = ctx.termScratch;
  const std::size_t counts = inputs.size();
  inputs.resize(counts + factors.size());
  for (std::size_t i = 0; i < factors.size(); ++i) {
    const std::size_t before = inputs.size();
    ForEachFactorRow(model, factors[i].code, [&](int row) {
      inputs.push_back(InputOf(Cell(model, row, Wp)));
      inputs.push_back(InputOf(Cell(model, row, G)));
    });
    inputs[counts + i].value = static_cast<double>((inputs.size() - before) / 2);
  }
}

void CollectInputs(EvalContext& ctx, Model& model, std::size_t number, const TermRecord& record) {
  ctx.termScratch.clear();
  for (const TermCell& input : record.inputs) {
    ctx.termScratch.push_back(InputOf(NamedParam(ctx, model, number, input)));
  }
  AppendFactors(ctx, model, record.factors);
}

// Calls visit(record number, record) for each composite term that has all its rows, in table order, until visit gives
// false.
template <class Visit>
bool ForEachCompleteTerm(const EvalContext& ctx, Visit visit) {
  for (std::size_t record = 0; record < kTermRecords; ++record) {
    if (IsComplete(ctx.slots, record) && !visit(record, *TermTable[record])) return false;
  }
  return true;
}

}  // namespace

double SumFrequency(const EvalContext& ctx, double x) {
  return ctx.FrequencyOverrideFlag ? ctx.params->ExpParams[kScalingFactorOfT].value : x;
}

Cplx EpsSum(EvalContext& ctx, Model& model, double x, bool derivatives) {
  const Cplx sum = RowSum(ctx, model, x, derivatives);
  if (!HasVdf(model)) return sum;
  return sum + EvalVdf(model.vdf, SumFrequency(ctx, x), derivatives);
}

Cplx RowSum(EvalContext& ctx, Model& model, double x, bool derivatives) {
  const double w = SumFrequency(ctx, x);
  Cplx sum{model.epsInf.value, 0};
  if (derivatives && model.epsInf.adjustable) {
    model.epsInf.dEpsRe = 1;
    model.epsInf.dEpsIm = 0;
  }
  // A calculator that writes nothing leaves this as it is, and then the contribution before it counts once more.
  Cplx term;
  const auto plain = [&](int row) {
    const TermInput inputs[] = {InputOf(Cell(model, row, Wo)), InputOf(Cell(model, row, Wp)),
                                InputOf(Cell(model, row, G))};
    CalcLorentz({w, derivatives, inputs, nullptr}, term);
    sum += term;
  };
  const auto special = [&](int row, std::int32_t code) {
    const bool factor = code == kNumeratorRow || code == kDenominatorRow;
    if (derivatives && !factor) ForEachColumn(model, row, [](ModelParam& param) { SetEpsSlopes(param, 0); });
  };
  if (!WalkRows(ctx, model, plain, special)) return sum;

  ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
    CollectInputs(ctx, model, number, record);
    ctx.termEnvironment.dcFlag = ctx.DcFlag;
    record.calc({w, derivatives, ctx.termScratch, &ctx.termEnvironment}, term);
    sum += term;
    if (record.replacesRealPart) sum.re = term.re;
    return true;
  });
  return sum;
}

void SeedDependencies(EvalContext& ctx, Model& model) {
  if (model.epsInf.adjustable) {
    model.epsInf.dEpsRe = 1;
    model.epsInf.dEpsIm = 0;
  }
  const auto set = [&](int row, double value) {
    ForEachColumn(model, row, [&](ModelParam& param) { SetEpsSlopes(param, value); });
  };
  const auto plain = [&](int row) { set(row, 1); };
  const auto special = [&](int row, std::int32_t) { set(row, 0); };
  const bool anySpecial = WalkRows(ctx, model, plain, special);
  if (model.vdf.On) VdfGradient(model.vdf);
  if (!anySpecial) return;
  ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
    for (const TermCell& input : record.inputs) SetEpsSlopes(NamedParam(ctx, model, number, input), 1);
    for (const FactorRow& factor : record.factors) {
      ForEachFactorRow(model, factor.code, [&](int row) {
        SetEpsSlopes(Cell(model, row, Wp), 1);
        SetEpsSlopes(Cell(model, row, G), 1);
      });
    }
    return true;
  });
}

void MakeVdfPositive(EvalContext& ctx, Model& model) {
  constexpr double kLeast = 1e-7;
  for (VdfMeshPoint& point : model.vdf.mesh) {
    const double imaginary = EpsSum(ctx, model, point.x, false).im;
    if (imaginary < 0) point.e2.value -= imaginary - kLeast;
  }
}

double ScalarSum(EvalContext& ctx, Model& model, double x, bool derivatives) {
  double sum = 0, term = 0;
  const auto plain = [&](int row) {
    const TermInput inputs[] = {InputOf(Cell(model, row, Wo)), InputOf(Cell(model, row, Wp)),
                                InputOf(Cell(model, row, G))};
    ScalarLorentz({x, derivatives, inputs, nullptr}, term);
    sum += term;
  };
  const auto special = [&](int row, std::int32_t) {
    if (derivatives) ForEachColumn(model, row, [](ModelParam& param) { SetScalarSlope(param, 0); });
  };
  const bool anySpecial = WalkRows(ctx, model, plain, special);
  const bool allHaveWeights =
      !anySpecial || ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
        if (!record.scalarCalc) return false;
        CollectInputs(ctx, model, number, record);
        record.scalarCalc({x, derivatives, ctx.termScratch, &ctx.termEnvironment}, term);
        sum += term;
        return true;
      });
  if (!allHaveWeights) return 0;
  return model.vdf.On ? sum + VdfScalarSum(model.vdf, x, derivatives) : sum;
}

void SeedScalarDependencies(EvalContext& ctx, Model& model) {
  const auto set = [&](int row, double value) {
    ForEachColumn(model, row, [&](ModelParam& param) { SetScalarSlope(param, value); });
  };
  const auto plain = [&](int row) { set(row, 1); };
  const auto special = [&](int row, std::int32_t) { set(row, 0); };
  const bool anySpecial = WalkRows(ctx, model, plain, special);
  if (model.vdf.On) VdfScalarGradient(model.vdf);
  if (!anySpecial) return;
  ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
    for (const TermCell& input : record.inputs) SetScalarSlope(NamedParam(ctx, model, number, input), 1);
    return true;
  });
}

}  // namespace kalvex

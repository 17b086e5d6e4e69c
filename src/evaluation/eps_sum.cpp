#include "evaluation/eps_sum.h"

#include <array>
#include <span>

#include "evaluation/vdf_eval.h"
#include "terms/lorentz.h"

namespace kalvex {
namespace {

// The model whose terms are summed, and its slopes (null without derivatives).
struct Summed {
  const Model& model;
  ModelSlopes* slopes;

  Summed(EvalContext& ctx, const Model& of, bool derivatives)
      : model(of), slopes(derivatives ? &SlopesOf(ctx, of) : nullptr) {}

  TermInput Input(int row, int column) const {
    const ModelParam& param = Cell(model, row, column);
    if (!slopes) return {param.value, param.adjustable, nullptr, nullptr, nullptr};
    ParamSlopes& of = Cell(*slopes, row, column);
    return {param.value, param.adjustable, &of.dEpsRe, &of.dEpsIm, &of.dScalar};
  }
  std::array<TermInput, kColumns> Row(int row) const { return {Input(row, Wo), Input(row, Wp), Input(row, G)}; }

  // Calls visit on the slopes of the row's adjustable parameters. Does nothing without slopes.
  template <class Visit>
  void ForEachSlope(int row, Visit visit) const {
    for (int column = 0; slopes && column < kColumns; ++column) ForSlope(row, column, visit);
  }
  template <class Visit>
  void ForSlope(int row, int column, Visit visit) const {
    if (slopes && Cell(model, row, column).adjustable) visit(Cell(*slopes, row, column));
  }
  void SetEpsInfSlope() const {
    if (slopes && model.epsInf.adjustable) slopes->epsInf.PutEps(1, 0);
  }
  std::span<MeshSlopes> Mesh() const { return slopes ? std::span(slopes->mesh) : std::span<MeshSlopes>(); }
};

void FindCompleteTerms(const std::vector<CodedRow>& rows, CompleteTerms& terms) {
  terms.rows = rows;
  terms.records.clear();
  ClearSlots(terms.slots);
  for (const CodedRow& row : rows) FillSlots(terms.slots, row.code, row.row);
  for (std::size_t record = 0; record < kTermRecords; ++record) {
    if (IsComplete(terms.slots, record)) terms.records.push_back(record);
  }
}

// Calls plain(row) or special(row, code) for each row, and finds the composite terms. Returns false if there is no row
// with a code; then no composite term is complete.
template <class Plain, class Special>
bool WalkRows(EvalContext& ctx, const Model& model, Plain plain, Special special) {
  ctx.codedRows.clear();
  const int count = RowCount(model);
  for (int row = 0; row < count; ++row) {
    const std::int32_t code = RowCode(Cell(model, row, Wo));
    if (code == kPlainRow) {
      plain(row);
    } else {
      ctx.codedRows.push_back({row, code});
      special(row, code);
    }
  }
  if (ctx.codedRows.empty()) return false;
  if (ctx.codedRows != ctx.completeTerms.rows) FindCompleteTerms(ctx.codedRows, ctx.completeTerms);
  return true;
}

// The row of an input of a complete record.
int RowOf(const EvalContext& ctx, std::size_t record, const TermCell& input) {
  return ctx.completeTerms.slots.row[record][static_cast<std::size_t>(input.idIndex)];
}

template <class Visit>
void ForEachFactorRow(const Model& model, std::int32_t code, Visit visit) {
  const int count = RowCount(model);
  for (int row = 0; row < count; ++row) {
    if (RowCode(Cell(model, row, Wo)) == code) visit(row);
  }
}

// A term with factor rows has more inputs after its own: the number of rows of each kind, then columns Wp and G of all
// of them, kind by kind.
void AppendFactors(EvalContext& ctx, const Summed& sum, std::span<const FactorRow> factors) {
  auto& inputs = ctx.termScratch;
  const std::size_t counts = inputs.size();
  inputs.resize(counts + factors.size());
  for (std::size_t i = 0; i < factors.size(); ++i) {
    const std::size_t before = inputs.size();
    ForEachFactorRow(sum.model, factors[i].code, [&](int row) {
      inputs.push_back(sum.Input(row, Wp));
      inputs.push_back(sum.Input(row, G));
    });
    const std::size_t rows = (inputs.size() - before) / 2;
    inputs[counts + i].value = static_cast<double>(rows);
  }
}

void CollectInputs(EvalContext& ctx, const Summed& sum, std::size_t number, const TermRecord& record) {
  ctx.termScratch.clear();
  for (const TermCell& input : record.inputs) {
    ctx.termScratch.push_back(sum.Input(RowOf(ctx, number, input), input.column));
  }
  AppendFactors(ctx, sum, record.factors);
}

bool IsFactor(std::int32_t code) { return code == kNumeratorRow || code == kDenominatorRow; }

// The slopes by a factor's code keep their earlier content. So do those by its numbers if the product is not computed.
void MarkFactorSlopes(const Summed& sum, bool productIsComputed) {
  for (const std::int32_t code : {kNumeratorRow, kDenominatorRow}) {
    ForEachFactorRow(sum.model, code, [&](int row) {
      for (const int column : {Wo, Wp, G}) {
        const bool former = column == Wo || !productIsComputed;
        sum.ForSlope(row, column, [&](ParamSlopes& of) { of.formerEps = former; });
      }
    });
  }
}

// Calls visit(record number, record) for each composite term that has all its rows, in table order, until visit returns
// false.
template <class Visit>
bool ForEachCompleteTerm(const EvalContext& ctx, Visit visit) {
  for (const std::size_t record : ctx.completeTerms.records) {
    if (!visit(record, *TermTable[record])) return false;
  }
  return true;
}

}  // namespace

double SumFrequency(const EvalContext& ctx, double x) {
  return ctx.FrequencyOverrideFlag ? ctx.params->ExpParams[kScalingFactorOfT].value : x;
}

Cplx EpsSum(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  const Cplx sum = RowSum(ctx, model, x, derivatives);
  if (!HasVdf(model)) return sum;
  return sum + EvalVdf(model.vdf, SumFrequency(ctx, x), Summed(ctx, model, derivatives).Mesh());
}

Cplx RowSum(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  const double w = SumFrequency(ctx, x);
  const Summed summed(ctx, model, derivatives);
  Cplx sum{model.epsInf.value, 0};
  summed.SetEpsInfSlope();
  // If a calculator writes nothing, the previous contribution is added again.
  Cplx term;
  const auto plain = [&](int row) {
    const auto inputs = summed.Row(row);
    CalcLorentz({w, derivatives, inputs, nullptr}, term);
    sum += term;
  };
  const auto special = [&](int row, std::int32_t code) {
    if (!IsFactor(code)) summed.ForEachSlope(row, [](ParamSlopes& of) { of.PutEps(0, 0); });
  };
  if (!WalkRows(ctx, model, plain, special)) return sum;

  bool product = false;
  ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
    CollectInputs(ctx, summed, number, record);
    ctx.termEnvironment.dcFlag = ctx.DcFlag;
    const int status = record.calc({w, derivatives, ctx.termScratch, &ctx.termEnvironment}, term);
    sum += term;
    if (record.replacesRealPart) sum.re = term.re;
    product = product || (!record.factors.empty() && status >= 0);
    return true;
  });
  if (ctx.notesFormer) MarkFactorSlopes(summed, product);
  return sum;
}

void SeedDependencies(EvalContext& ctx, const Model& model) {
  const Summed summed(ctx, model, true);
  summed.SetEpsInfSlope();
  const auto one = [](ParamSlopes& of) { of.PutEps(1, 1); };
  const auto plain = [&](int row) { summed.ForEachSlope(row, one); };
  const auto special = [&](int row, std::int32_t) {
    summed.ForEachSlope(row, [](ParamSlopes& of) { of.PutEps(0, 0); });
  };
  const bool anySpecial = WalkRows(ctx, model, plain, special);
  if (model.vdf.On) VdfGradient(model.vdf, summed.Mesh());
  if (!anySpecial) return;
  ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
    for (const TermCell& input : record.inputs) summed.ForSlope(RowOf(ctx, number, input), input.column, one);
    for (const FactorRow& factor : record.factors) {
      ForEachFactorRow(model, factor.code, [&](int row) {
        for (const int column : {Wp, G}) summed.ForSlope(row, column, one);
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

double ScalarSum(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  const Summed summed(ctx, model, derivatives);
  if (summed.slopes) {
    ForEachParam(model, *summed.slopes, [](const ModelParam&, ParamSlopes& of) { of.dScalar = 0; });
  }
  double sum = 0, term = 0;
  const auto plain = [&](int row) {
    const auto inputs = summed.Row(row);
    ScalarLorentz({x, derivatives, inputs, nullptr}, term);
    sum += term;
  };
  const bool anySpecial = WalkRows(ctx, model, plain, [](int, std::int32_t) {});
  const bool allHaveWeights =
      !anySpecial || ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
        if (!record.scalarCalc) return false;
        CollectInputs(ctx, summed, number, record);
        record.scalarCalc({x, derivatives, ctx.termScratch, &ctx.termEnvironment}, term);
        sum += term;
        return true;
      });
  if (!allHaveWeights) return 0;
  return model.vdf.On ? sum + VdfScalarSum(model.vdf, x, summed.Mesh()) : sum;
}

void SeedScalarDependencies(EvalContext& ctx, const Model& model) {
  const Summed summed(ctx, model, true);
  ForEachParam(model, *summed.slopes, [](const ModelParam&, ParamSlopes& of) { of.dScalar = 0; });
  const auto one = [](ParamSlopes& of) { of.dScalar = 1; };
  const auto plain = [&](int row) { summed.ForEachSlope(row, one); };
  const bool anySpecial = WalkRows(ctx, model, plain, [](int, std::int32_t) {});
  if (model.vdf.On) VdfScalarGradient(summed.Mesh());
  if (!anySpecial) return;
  ForEachCompleteTerm(ctx, [&](std::size_t number, const TermRecord& record) {
    for (const TermCell& input : record.inputs) summed.ForSlope(RowOf(ctx, number, input), input.column, one);
    return true;
  });
}

}  // namespace kalvex

#include "fit/normal_equations.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "models/eval_spectrum.h"
#include "models/model_table.h"

namespace kalvex {
namespace {

// A parameter with a limit that stands closer to it than this has no say in the step.
constexpr double kLeastScale = 1e-10;

// One parameter, as the points of a run of groups see it.
struct SlopeColumn {
  std::size_t slope = 0;  // its number in the request
  std::size_t master = 0;
  double scale = 1;
  bool counts = true;
};

// The columns of all parameters of the fit that a term of the run depends on; the others have no place in the request.
std::vector<SlopeColumn> ColumnsOf(const FitState& fit, std::size_t first, std::size_t end,
                                   std::vector<ParamPlace>& places) {
  std::vector<char> used(fit.params.size());
  std::vector<char> seen(fit.list.terms.size());
  for (int p = fit.groups[first].first; p < fit.groups[end - 1].end; ++p) {
    const auto term = static_cast<std::size_t>(fit.points[static_cast<std::size_t>(p)].term);
    if (std::exchange(seen[term], 1)) continue;
    for (const int j : fit.list.terms[term].params) used[static_cast<std::size_t>(j)] = 1;
  }
  std::vector<SlopeColumn> columns(fit.params.size());
  for (std::size_t j = 0; j < fit.params.size(); ++j) {
    if (!used[j]) continue;
    const FitParam& param = fit.params[j];
    const bool limited = HasLimit(*param.cell);
    columns[j].slope = places.size();
    columns[j].master = static_cast<std::size_t>(param.master);
    columns[j].scale = limited ? param.cell->fitScale : 1;
    columns[j].counts = !limited || !(std::fabs(param.cell->fitScale) < kLeastScale);
    places.push_back(param.place);
  }
  return columns;
}

// The same columns, for each term of the run, by the entry of the gradient.
std::vector<GradientColumns> ColumnsOfTerms(const FitState& fit, std::span<const SlopeColumn> columns,
                                            std::size_t size) {
  std::vector<GradientColumns> ofTerms(fit.list.terms.size());
  for (std::size_t t = 0; t < ofTerms.size(); ++t) {
    const ChiSqTerm& term = fit.list.terms[t];
    GradientColumns& out = ofTerms[t];
    out.most = 2 * term.params.size() >= size;
    if (!out.most) continue;
    out.slope.assign(size, GradientColumns::kNone);
    out.factor.assign(size, 0.0);
    for (const int j : term.params) {
      const SlopeColumn& column = columns[static_cast<std::size_t>(j)];
      if (out.slope[column.master] != GradientColumns::kNone) out.most = false;
      out.slope[column.master] = column.slope;
      out.factor[column.master] = column.counts ? column.scale : 0;
    }
  }
  return ofTerms;
}

// Calls visit(point, term, i) for the points of a block, i being their frequency's place in it.
template <class Fit, class Visit>
void ForEachPoint(Fit& fit, std::size_t firstGroup, const SpectrumBlock& block, Visit visit) {
  for (std::size_t i = 0; i < block.count; ++i) {
    const FitGroup& group = fit.groups[firstGroup + block.first + i];
    for (int p = group.first; p < group.end; ++p) {
      const FitPoint& point = fit.points[static_cast<std::size_t>(p)];
      visit(point, fit.list.terms[static_cast<std::size_t>(point.term)], i);
    }
  }
}

double RootOfWeight(const FitPoint& point, const ChiSqTerm& term) {
  return std::sqrt(2 * term.weight) / std::fabs(point.sigma);
}

// Points of one term in a block, as many as go together.
struct TermPoints {
  const FitPoint* points[VectorPanel::kMost];
  std::size_t at[VectorPanel::kMost];  // their frequencies' places in the block
  std::size_t count = 0;
};

// What a block's gradients are gathered from.
struct GatherInput {
  const FitState& fit;
  std::span<const SlopeColumn> columns;
  std::span<const GradientColumns> ofTerms;
  const SpectrumBlock& block;
};

void GatherOne(const GatherInput& in, const FitPoint& point, std::size_t i, BlockGradients& out) {
  const ChiSqTerm& term = in.fit.list.terms[static_cast<std::size_t>(point.term)];
  const double s = RootOfWeight(point, term);
  for (const int j : term.params) {
    const SlopeColumn& column = in.columns[static_cast<std::size_t>(j)];
    const double d = in.block.Slope(column.slope, point.quantity, i);
    if (d != 0 && column.counts) out.Put(column.master, s * d * column.scale);
  }
  out.EndPoint(s * (in.block.Value(point.quantity, i) - point.y));
}

bool GatherTogether(const GatherInput& in, const TermPoints& some, BlockGradients& out) {
  const auto t = static_cast<std::size_t>(some.points[0]->term);
  const ChiSqTerm& term = in.fit.list.terms[t];
  const int quantity = some.points[0]->quantity;
  double roots[VectorPanel::kMost], residuals[VectorPanel::kMost];
  bool inOrder = some.at[0] % kPack == 0;
  for (std::size_t p = 0; p < some.count; ++p) {
    const FitPoint& point = *some.points[p];
    roots[p] = RootOfWeight(point, term);
    residuals[p] = roots[p] * (in.block.Value(quantity, some.at[p]) - point.y);
    if (!std::isfinite(residuals[p])) return false;
    inOrder = inOrder && some.at[p] == some.at[0] + p;
  }
  double picked[VectorPanel::kStrip][VectorPanel::kMost];
  std::size_t next = 0;
  const auto columnAt = [&](std::size_t slope) -> const double* {
    const double* const from = in.block.Slopes(slope, quantity);
    if (inOrder) return from + some.at[0];
    double* const to = picked[next++ % VectorPanel::kStrip];
    for (std::size_t p = 0; p < some.count; ++p) to[p] = from[some.at[p]];
    std::fill(to + some.count, to + VectorPanel::kMost, 0.0);
    return to;
  };
  return out.PutTogether(in.ofTerms[t], std::span(roots).first(some.count), std::span(residuals).first(some.count),
                         columnAt);
}

// Whether the first of the points has a slope by most parameters; behind a free mesh each has few.
bool AreDense(const GatherInput& in, const TermPoints& some) {
  const GradientColumns& columns = in.ofTerms[static_cast<std::size_t>(some.points[0]->term)];
  if (!columns.most) return false;
  std::size_t count = 0;
  for (const std::size_t slope : columns.slope) {
    if (slope == GradientColumns::kNone) continue;
    if (in.block.Slope(slope, some.points[0]->quantity, some.at[0]) != 0) ++count;
  }
  return 2 * count >= columns.slope.size();
}

void GatherTerm(const GatherInput& in, TermPoints& some, BlockGradients& out) {
  if (some.count == 0) return;
  if (!AreDense(in, some) || !GatherTogether(in, some, out)) {
    for (std::size_t p = 0; p < some.count; ++p) GatherOne(in, *some.points[p], some.at[p], out);
  }
  some.count = 0;
}

void Gather(const GatherInput& in, std::size_t firstGroup, BlockGradients& out) {
  out.Clear();
  std::vector<TermPoints> byTerm(in.fit.list.terms.size());
  ForEachPoint(in.fit, firstGroup, in.block, [&](const FitPoint& point, const ChiSqTerm&, std::size_t i) {
    TermPoints& some = byTerm[static_cast<std::size_t>(point.term)];
    some.points[some.count] = &point;
    some.at[some.count++] = i;
    if (some.count == VectorPanel::kMost) GatherTerm(in, some, out);
  });
  for (TermPoints& some : byTerm) GatherTerm(in, some, out);
}

void AddChiSq(FitState& fit, std::size_t firstGroup, const SpectrumBlock& block) {
  double total = fit.TotalChiSq;
  ForEachPoint(fit, firstGroup, block, [&](const FitPoint& point, const ChiSqTerm& term, std::size_t i) {
    const double w = 1 / (point.sigma * point.sigma);
    const double r = block.Value(point.quantity, i) - point.y;
    total += term.weight * w * r * r;
  });
  fit.TotalChiSq = total;
}

// Adds block after block, in an order that does not depend on how many of them come at once; the panels of blocks
// between which nothing else is to be added go together.
void AddGradients(NormalEquations& equations, ThreadPool* pool) {
  std::vector<const VectorPanel*> panels;
  const auto addPanels = [&] {
    if (!panels.empty()) AddOuterProducts(panels, equations.Alpha(), equations.beta, pool);
    panels.clear();
  };
  for (const BlockGradients& block : std::span(equations.gradients).first(equations.waiting)) {
    if (block.HasSinglePoints()) {
      addPanels();
      block.AddSinglePoints(equations.Alpha(), equations.beta);
    }
    for (const VectorPanel& panel : block.Panels()) panels.push_back(&panel);
  }
  addPanels();
  equations.waiting = 0;
}

}  // namespace

void AccumulateNormalEquations(FitState& fit, EvalContext& eval, NormalEquations& equations) {
  std::fill(equations.alphaData.begin(), equations.alphaData.end(), 0.0);
  std::fill(equations.beta.begin(), equations.beta.end(), 0.0);
  fit.TotalChiSq = 0;
  // A matrix that does not stay in the cache is read and written once for several blocks.
  constexpr std::size_t kSmall = 200 * 200;
  const std::size_t together = equations.alphaData.size() > kSmall ? 8 : 1;
  const std::size_t most = MostBlocksOfBatch(eval);
  std::vector<BlockGradients>& gradients = equations.gradients;
  if (gradients.empty()) gradients.resize(most + together - 1, BlockGradients(equations.beta.size()));
  ForEachModelRun(fit, [&](std::size_t first, std::size_t end) {
    Model* const model = GetModelByNumber(*eval.params, fit.groups[first].modelId);
    if (!model) return;
    std::vector<ParamPlace> places;
    const std::vector<SlopeColumn> columns = ColumnsOf(fit, first, end, places);
    SpectrumRequest request = RequestOf(fit, first, end);
    request.derivatives = true;
    request.slopesOf = places;
    const std::vector<GradientColumns> ofTerms = ColumnsOfTerms(fit, columns, equations.beta.size());
    const auto gather = [&](const SpectrumBlock& block, std::size_t place) {
      Gather({fit, columns, ofTerms, block}, first, gradients[equations.waiting + place]);
    };
    const auto add = [&](std::span<const SpectrumBlock> batch) {
      for (const SpectrumBlock& block : batch) AddChiSq(fit, first, block);
      equations.waiting += batch.size();
      if (equations.waiting + most > gradients.size()) AddGradients(equations, eval.pool);
    };
    EvalSpectrumInBatches(eval, *model, request, {gather, add});
  });
  AddGradients(equations, eval.pool);
}

}  // namespace kalvex

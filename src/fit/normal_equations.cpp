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

void Gather(const FitState& fit, std::size_t firstGroup, std::span<const SlopeColumn> columns,
            const SpectrumBlock& block, BlockGradients& out) {
  out.Clear();
  ForEachPoint(fit, firstGroup, block, [&](const FitPoint& point, const ChiSqTerm& term, std::size_t i) {
    const double w = 1 / (point.sigma * point.sigma);
    const double s = std::sqrt(2 * term.weight * w);
    for (const int j : term.params) {
      const SlopeColumn& column = columns[static_cast<std::size_t>(j)];
      const double d = block.Slope(column.slope, point.quantity, i);
      if (d != 0 && column.counts) out.Put(column.master, s * d * column.scale);
    }
    out.EndPoint(s * (block.Value(point.quantity, i) - point.y));
  });
}

void AddChiSq(FitState& fit, std::size_t firstGroup, const SpectrumBlock& block) {
  ForEachPoint(fit, firstGroup, block, [&](const FitPoint& point, const ChiSqTerm& term, std::size_t i) {
    const double w = 1 / (point.sigma * point.sigma);
    const double r = block.Value(point.quantity, i) - point.y;
    fit.TotalChiSq += term.weight * w * r * r;
  });
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
    const auto gather = [&](const SpectrumBlock& block, std::size_t place) {
      Gather(fit, first, columns, block, gradients[equations.waiting + place]);
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

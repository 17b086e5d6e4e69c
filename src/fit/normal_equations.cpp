#include "fit/normal_equations.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "models/eval_spectrum.h"
#include "models/model_table.h"
#include "numeric/rank_update.h"

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

// The gradients of the points of a block, ready to be added. Points that depend on most parameters are collected and
// added many at a time. A point of few parameters is added by itself, and so is one with a number that is not finite,
// since that must not reach the parameters on which the point does not depend.
class BlockGradients {
 public:
  explicit BlockGradients(std::size_t size) : size_(size) {}

  void Clear() {
    panelsInUse_ = 0;
    idx_.clear();
    grad_.clear();
    single_.clear();
  }

  // The next derivative of the point that is being gathered.
  void Put(std::size_t master, double slope) {
    idx_.push_back(master);
    grad_.push_back(slope);
  }

  // All derivatives of the point have been put.
  void EndPoint(double residual) {
    const std::size_t from = single_.empty() ? 0 : single_.back().end, count = idx_.size() - from;
    bool finite = std::isfinite(residual);
    for (std::size_t a = from; a < idx_.size(); ++a) finite = finite && std::isfinite(grad_[a]);
    if (2 * count < size_ || !finite) {
      single_.push_back({idx_.size(), residual});
      return;
    }
    VectorPanel& panel = PanelWithRoom();
    panel.Begin(residual);
    for (std::size_t a = from; a < idx_.size(); ++a) panel[idx_[a]] += grad_[a];
    idx_.resize(from);
    grad_.resize(from);
  }

  std::span<const VectorPanel> Panels() const { return std::span(panels_).first(panelsInUse_); }
  bool HasSinglePoints() const { return !single_.empty(); }

  // Adds the points that are in no panel. Two entries with one master meet on the diagonal in both orders, which gives
  // the square of their sum.
  void AddSinglePoints(NormalEquations& equations) const {
    const SquareMatrix alpha = equations.Alpha();
    std::size_t from = 0;
    for (const SinglePoint& point : single_) {
      for (std::size_t a = from; a < point.end; ++a) {
        equations.beta[idx_[a]] += point.residual * grad_[a];
        double* const row = alpha.Row(idx_[a]);
        for (std::size_t b = from; b < point.end; ++b) {
          if (idx_[a] <= idx_[b]) row[idx_[b]] += grad_[a] * grad_[b];
        }
      }
      from = point.end;
    }
  }

 private:
  VectorPanel& PanelWithRoom() {
    if (panelsInUse_ > 0 && !panels_[panelsInUse_ - 1].IsFull()) return panels_[panelsInUse_ - 1];
    if (panelsInUse_ == panels_.size()) panels_.emplace_back(size_);
    panels_[panelsInUse_].Clear();
    return panels_[panelsInUse_++];
  }

  struct SinglePoint {
    std::size_t end;  // of its derivatives
    double residual;
  };

  std::size_t size_;
  std::vector<VectorPanel> panels_;
  std::size_t panelsInUse_ = 0;
  std::vector<std::size_t> idx_;  // of the points in no panel, one behind the other
  std::vector<double> grad_;
  std::vector<SinglePoint> single_;
};

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
void AddGradients(std::span<const BlockGradients> gradients, NormalEquations& equations, ThreadPool* pool) {
  std::vector<const VectorPanel*> panels;
  const auto addPanels = [&] {
    if (!panels.empty()) AddOuterProducts(panels, equations.Alpha(), equations.beta, pool);
    panels.clear();
  };
  for (const BlockGradients& block : gradients) {
    if (block.HasSinglePoints()) {
      addPanels();
      block.AddSinglePoints(equations);
    }
    for (const VectorPanel& panel : block.Panels()) panels.push_back(&panel);
  }
  addPanels();
}

}  // namespace

void AccumulateNormalEquations(FitState& fit, EvalContext& eval, NormalEquations& equations) {
  std::fill(equations.alphaData.begin(), equations.alphaData.end(), 0.0);
  std::fill(equations.beta.begin(), equations.beta.end(), 0.0);
  fit.TotalChiSq = 0;
  std::vector<BlockGradients> gradients;
  ForEachModelRun(fit, [&](std::size_t first, std::size_t end) {
    Model* const model = GetModelByNumber(*eval.params, fit.groups[first].modelId);
    if (!model) return;
    std::vector<ParamPlace> places;
    const std::vector<SlopeColumn> columns = ColumnsOf(fit, first, end, places);
    SpectrumRequest request = RequestOf(fit, first, end);
    request.derivatives = true;
    request.slopesOf = places;
    EvalSpectrumInBatches(eval, *model, request, [&](std::span<const SpectrumBlock> blocks) {
      while (gradients.size() < blocks.size()) gradients.emplace_back(equations.beta.size());
      ParallelFor(eval.pool, blocks.size(),
                  [&](std::size_t task, std::size_t) { Gather(fit, first, columns, blocks[task], gradients[task]); });
      for (const SpectrumBlock& block : blocks) AddChiSq(fit, first, block);
      AddGradients(std::span(gradients).first(blocks.size()), equations, eval.pool);
    });
  });
}

}  // namespace kalvex

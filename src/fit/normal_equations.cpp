#include "fit/normal_equations.h"

#include <algorithm>
#include <cmath>

#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "models/eval_spectrum.h"
#include "models/model_table.h"
#include "models/spectrum_workers.h"
#include "numeric/rank_update.h"

namespace kalvex {
namespace {

// A parameter with a limit that stands closer to it than this has no say in the step.
constexpr double kLeastScale = 1e-10;

// The non-zero derivatives of one data point.
struct Gradient {
  std::vector<std::size_t> idx;
  std::vector<double> grad;
};

void GatherSlopes(const FitState& fit, const SpectrumBlock& block, std::size_t i, const FitPoint& point, double s,
                  Gradient& out) {
  out.idx.clear();
  out.grad.clear();
  for (const int j : fit.list.terms[static_cast<std::size_t>(point.term)].params) {
    const FitParam& param = fit.params[static_cast<std::size_t>(j)];
    const double d = block.Slope(static_cast<std::size_t>(j), point.quantity, i);
    if (d == 0) continue;
    const bool limited = HasLimit(*param.cell);
    if (limited && std::fabs(param.cell->fitScale) < kLeastScale) continue;
    out.idx.push_back(static_cast<std::size_t>(param.master));
    out.grad.push_back(limited ? s * d * param.cell->fitScale : s * d);
  }
}

// Two entries with one master meet on the diagonal in both orders, which gives the square of their sum.
void AddOuterProduct(const Gradient& gradient, const SquareMatrix& alpha) {
  const std::size_t count = gradient.idx.size();
  for (std::size_t a = 0; a < count; ++a) {
    double* const row = alpha.Row(gradient.idx[a]);
    for (std::size_t b = 0; b < count; ++b) {
      if (gradient.idx[a] <= gradient.idx[b]) row[gradient.idx[b]] += gradient.grad[a] * gradient.grad[b];
    }
  }
}

// Sums the gradients of the points into the equations. Points that depend on most parameters are collected and added
// many at a time. A point of few parameters goes in by itself, and so does one with a derivative that is not finite,
// since that must not reach the parameters on which the point does not depend.
class EquationSum {
 public:
  EquationSum(NormalEquations& equations, ThreadPool* pool)
      : alpha_(equations.Alpha()), beta_(equations.beta), panel_(equations.beta.size()), pool_(pool) {}
  EquationSum(const EquationSum&) = delete;
  EquationSum& operator=(const EquationSum&) = delete;
  ~EquationSum() { AddPanel(); }

  void Add(const Gradient& gradient, double residual) {
    const std::size_t count = gradient.idx.size();
    for (std::size_t a = 0; a < count; ++a) beta_[gradient.idx[a]] += residual * gradient.grad[a];
    const bool finite =
        std::all_of(gradient.grad.begin(), gradient.grad.end(), [](double g) { return std::isfinite(g); });
    if (2 * count < beta_.size() || !finite) return AddOuterProduct(gradient, alpha_);
    if (panel_.IsFull()) AddPanel();
    panel_.Begin();
    for (std::size_t a = 0; a < count; ++a) panel_[gradient.idx[a]] += gradient.grad[a];
  }

 private:
  void AddPanel() {
    if (panel_.Count() > 0) AddOuterProducts(panel_, alpha_, pool_);
    panel_.Clear();
  }

  SquareMatrix alpha_;
  std::vector<double>& beta_;
  VectorPanel panel_;
  ThreadPool* pool_;
};

}  // namespace

void AccumulateNormalEquations(FitState& fit, EvalContext& eval, NormalEquations& equations) {
  std::fill(equations.alphaData.begin(), equations.alphaData.end(), 0.0);
  std::fill(equations.beta.begin(), equations.beta.end(), 0.0);
  fit.TotalChiSq = 0;
  std::vector<ParamPlace> places;
  for (const FitParam& param : fit.params) places.push_back(param.place);
  EquationSum sum(equations, PoolOf(eval));
  Gradient gradient;
  ForEachModelRun(fit, [&](std::size_t first, std::size_t end) {
    Model* const model = GetModelByNumber(*eval.params, fit.groups[first].modelId);
    if (!model) return;
    SpectrumRequest request = RequestOf(fit, first, end);
    request.derivatives = true;
    request.slopesOf = places;
    EvalSpectrum(eval, *model, request, [&](const SpectrumBlock& block) {
      for (std::size_t i = 0; i < block.count; ++i) {
        const FitGroup& group = fit.groups[first + block.first + i];
        for (int p = group.first; p < group.end; ++p) {
          const FitPoint& point = fit.points[static_cast<std::size_t>(p)];
          const double weight = fit.list.terms[static_cast<std::size_t>(point.term)].weight;
          const double w = 1 / (point.sigma * point.sigma);
          const double r = block.Value(point.quantity, i) - point.y;
          fit.TotalChiSq += weight * w * r * r;
          const double s = std::sqrt(2 * weight * w);
          GatherSlopes(fit, block, i, point, s, gradient);
          sum.Add(gradient, s * r);
        }
      }
    });
  });
}

}  // namespace kalvex

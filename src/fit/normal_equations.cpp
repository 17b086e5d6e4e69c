#include "fit/normal_equations.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

#include "evaluation/eval_spectrum.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

// A limited parameter with a smaller scale is at its limit: it is excluded from the step.
constexpr double kLeastScale = 1e-10;

// How the slope of one parameter enters the gradients of a spectrum.
struct SlopeColumn {
  std::size_t slope = 0;  // index of the slope in the request
  std::size_t master = 0;
  double scale = 1;
  bool counts = true;
};

// The columns of all fit parameters on which a term of the spectrum depends. Other parameters are not in the request.
std::vector<SlopeColumn> ColumnsOf(const FitState& fit, const FitSpectrum& spectrum,
                                   std::span<const FitCoordinate> coordinates, std::vector<ParamPlace>& places) {
  std::vector<char> used(fit.params.size());
  for (const TermPoints& points : spectrum.terms) {
    if (points.y.empty()) continue;
    for (const int j : fit.list.terms[static_cast<std::size_t>(points.term)].params) {
      used[static_cast<std::size_t>(j)] = 1;
    }
  }
  std::vector<SlopeColumn> columns(fit.params.size());
  for (std::size_t j = 0; j < fit.params.size(); ++j) {
    if (!used[j]) continue;
    const FitParam& param = fit.params[j];
    columns[j].slope = places.size();
    columns[j].master = static_cast<std::size_t>(param.master);
    columns[j].scale = coordinates[j].scale;
    columns[j].counts = !coordinates[j].limited || !(std::fabs(coordinates[j].scale) < kLeastScale);
    places.push_back(param.place);
  }
  return columns;
}

// The same columns for each term, ordered by the entry of the gradient.
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

// The input for the gradients of one term's points in a block.
struct GatherInput {
  const ChiSqTerm& term;
  std::span<const SlopeColumn> columns;
  const GradientColumns& together;  // of this term
  const TermPoints& points;
  const SpectrumBlock& block;

  double RootOfWeight(std::size_t p) const { return std::sqrt(2 * term.weight) / std::fabs(points.sigma[p]); }
  // Without the period of an angle. A loop over many points tests once for it.
  double Difference(std::size_t p) const { return block.Value(points.quantity, points.at[p]) - points.y[p]; }
  double Misfit(std::size_t p) const { return points.Misfit(block.Value(points.quantity, points.at[p]), p); }
};

void GatherOne(const GatherInput& in, std::size_t p, BlockGradients& out) {
  const double s = in.RootOfWeight(p);
  for (const int j : in.term.params) {
    const SlopeColumn& column = in.columns[static_cast<std::size_t>(j)];
    const double d = in.block.Slope(column.slope, in.points.quantity, in.points.at[p]);
    if (d != 0 && column.counts) out.Put(column.master, s * d * column.scale);
  }
  out.EndPoint(s * in.Misfit(p));
}

bool GatherTogether(const GatherInput& in, PointRange some, BlockGradients& out) {
  double roots[VectorPanel::kMost], residuals[VectorPanel::kMost];
  const bool isAngle = in.points.period > 0;
  for (std::size_t i = 0; i < some.Count(); ++i) {
    roots[i] = in.RootOfWeight(some.first + i);
    residuals[i] = roots[i] * (isAngle ? in.Misfit(some.first + i) : in.Difference(some.first + i));
    if (!std::isfinite(residuals[i])) return false;
  }
  const std::uint8_t* const at = in.points.at.data() + some.first;
  const bool inOrder = at[0] % kPack == 0 && AreSuccessive(in.points, some);
  double picked[VectorPanel::kStrip][VectorPanel::kMost];
  std::size_t next = 0;
  const auto columnAt = [&](std::size_t slope) -> const double* {
    const double* const from = in.block.Slopes(slope, in.points.quantity);
    if (inOrder) return from + at[0];
    double* const to = picked[next++ % VectorPanel::kStrip];
    for (std::size_t i = 0; i < some.Count(); ++i) to[i] = from[at[i]];
    std::fill(to + some.Count(), to + VectorPanel::kMost, 0.0);
    return to;
  };
  return out.PutTogether(in.together, std::span(roots).first(some.Count()), std::span(residuals).first(some.Count()),
                         columnAt);
}

// Whether point p has a nonzero slope by most parameters. With a free mesh each point has few.
bool IsDense(const GatherInput& in, std::size_t p) {
  if (!in.together.most) return false;
  std::size_t count = 0;
  for (const std::size_t slope : in.together.slope) {
    if (slope == GradientColumns::kNone) continue;
    if (in.block.Slope(slope, in.points.quantity, in.points.at[p]) != 0) ++count;
  }
  return 2 * count >= in.together.slope.size();
}

void Gather(const GatherInput& in, BlockGradients& out) {
  const PointRange all = PointsInBlock(in.points, in.block);
  for (std::size_t first = all.first; first < all.end; first += VectorPanel::kMost) {
    const PointRange some{first, std::min(first + VectorPanel::kMost, all.end)};
    if (IsDense(in, first) && GatherTogether(in, some, out)) continue;
    for (std::size_t p = some.first; p < some.end; ++p) GatherOne(in, p, out);
  }
}

double ChiSqOf(const GatherInput& in) {
  const PointRange range = PointsInBlock(in.points, in.block);
  const auto sumOf = [&](auto misfit) {
    double sum = 0;
    for (std::size_t p = range.first; p < range.end; ++p) {
      const double r = misfit(p) / in.points.sigma[p];
      sum += in.term.weight * r * r;
    }
    return sum;
  };
  if (in.points.period > 0) return sumOf([&](std::size_t p) { return in.Misfit(p); });
  return sumOf([&](std::size_t p) { return in.Difference(p); });
}

// Adds the gradients block by block, in an order that does not depend on the number of blocks per call. Successive
// panels are added together if no single points come between them.
void AddGradients(std::span<const PortionSums> portions, const SquareMatrix& alpha, std::span<double> beta,
                  ThreadPool* pool) {
  std::vector<const VectorPanel*> panels;
  const auto addPanels = [&] {
    if (!panels.empty()) AddOuterProducts(panels, alpha, beta, pool);
    panels.clear();
  };
  for (const PortionSums& portion : portions) {
    if (portion.gradients.HasSinglePoints()) {
      addPanels();
      portion.gradients.AddSinglePoints(alpha, beta);
    }
    for (const VectorPanel& panel : portion.gradients.Panels()) panels.push_back(&panel);
  }
  addPanels();
}

void AddWaiting(NormalEquations& equations, ThreadPool* pool) {
  AddGradients(std::span(equations.portions).first(equations.waiting), equations.Alpha(), equations.beta, pool);
  equations.waiting = 0;
}

void AddPortion(PortionSums& portion, NormalEquations& equations) {
  const std::size_t n = equations.beta.size();
  const SquareMatrix alpha = equations.Alpha(), own = portion.Alpha();
  for (std::size_t i = 0; i < n; ++i) {
    equations.beta[i] += portion.beta[i];
    for (std::size_t j = i; j < n; ++j) alpha(i, j) += own(i, j);
  }
}

// Accumulates one spectrum into the equations.
struct Accumulation {
  FitState& fit;
  NormalEquations& equations;
  const FitSpectrum& spectrum;
  ThreadPool* pool;
  std::vector<SlopeColumn> columns;
  std::vector<GradientColumns> ofTerms;
  std::size_t mostPortions;

  void Add(const SpectrumBlock& block, bool begins, std::size_t place) {
    PortionSums& sums = equations.portions[equations.waiting + place];
    if (begins) Clear(sums);
    sums.gradients.Clear();
    for (const TermPoints& points : spectrum.terms) {
      const auto t = static_cast<std::size_t>(points.term);
      const GatherInput in{fit.list.terms[t], columns, ofTerms[t], points, block};
      Gather(in, sums.gradients);
      sums.chiSq += ChiSqOf(in);
    }
    if (equations.AreSmall()) AddGradients({&sums, 1}, sums.Alpha(), sums.beta, nullptr);
  }

  void Take(std::size_t portions) {
    for (PortionSums& sums : std::span(equations.portions).subspan(equations.waiting, portions)) {
      fit.TotalChiSq += sums.chiSq;
      if (equations.AreSmall()) AddPortion(sums, equations);
    }
    if (equations.AreSmall()) return;
    equations.waiting += portions;
    if (equations.waiting + mostPortions > equations.portions.size()) AddWaiting(equations, pool);
  }

 private:
  void Clear(PortionSums& sums) {
    sums.chiSq = 0;
    if (!equations.AreSmall()) return;
    sums.alphaData.assign(equations.alphaData.size(), 0.0);
    sums.beta.assign(equations.beta.size(), 0.0);
  }
};

}  // namespace

void AccumulateNormalEquations(FitState& fit, ParamTables& params, EvalContext& eval,
                               std::span<const FitCoordinate> coordinates, NormalEquations& equations) {
  std::fill(equations.alphaData.begin(), equations.alphaData.end(), 0.0);
  std::fill(equations.beta.begin(), equations.beta.end(), 0.0);
  fit.TotalChiSq = 0;
  // A matrix larger than the cache is read and written once for several blocks.
  const std::size_t together = equations.AreSmall() ? 1 : 8, most = MostPortionsOfBatch(eval);
  if (equations.portions.empty()) equations.portions.resize(most + together - 1, PortionSums(equations.beta.size()));
  for (const FitSpectrum& spectrum : fit.spectra) {
    const Model* const model = GetModelByNumber(params, spectrum.modelId);
    if (!model) continue;
    std::vector<ParamPlace> places;
    std::vector<SlopeColumn> columns = ColumnsOf(fit, spectrum, coordinates, places);
    SpectrumRequest request = RequestOf(spectrum);
    request.derivatives = true;
    request.slopesOf = places;
    std::vector<GradientColumns> ofTerms = ColumnsOfTerms(fit, columns, equations.beta.size());
    Accumulation sums{fit, equations, spectrum, eval.pool, std::move(columns), std::move(ofTerms), most};
    BatchSink sink;
    if (equations.AreSmall()) sink.blocksOfPortion = BlocksOfPortion(eval, *model, request);
    sink.work = [&](const SpectrumBlock& block, std::size_t place) {
      sums.Add(block, sink.BeginsPortion(block), place);
    };
    sink.take = [&](std::size_t portions) { sums.Take(portions); };
    EvalSpectrumInBatches(eval, *model, request, sink);
    TakeOverSlopes(params, eval.slopes);
  }
  AddWaiting(equations, eval.pool);
}

}  // namespace kalvex

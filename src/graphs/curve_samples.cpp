#include "graphs/curve_samples.h"

#include <algorithm>
#include <cmath>

#include "evaluation/eval_spectrum.h"
#include "numeric/complex.h"

namespace kalvex {
namespace {

// Switches to Quantities at zero frequency during its lifetime.
class DcSwitch {
 public:
  DcSwitch(EvalContext& ctx, bool on) : ctx_(ctx) { ctx_.DcFlag = on; }
  DcSwitch(const DcSwitch&) = delete;
  DcSwitch& operator=(const DcSwitch&) = delete;
  ~DcSwitch() { ctx_.DcFlag = false; }

 private:
  EvalContext& ctx_;
};

}  // namespace

bool HasRowContributions(Quantity quantity) {
  return quantity == kE1 || quantity == kE2 || quantity == kS1 || quantity == kS2;
}

double RowContribution(double Wo, double Wp, double G, Quantity quantity, double x) {
  const double a = Wo * Wo - x * x, b = x * G, D = a * a + b * b;
  const Cplx e = Cplx{a, b} * (Wp * Wp / D);
  if (!(D >= kTinyNorm) || !(std::hypot(e.re, e.im) <= kNoValue)) {
    return quantity == kE1 || quantity == kS2 ? 0 : kNoValue;
  }
  if (std::hypot(e.re, e.im) < kTinyNorm) return 0;
  const Cplx s{x * e.im / 60, -x * e.re / 60};  // -i x e/60
  if (quantity == kE1) return e.re;
  if (quantity == kE2) return e.im;
  return quantity == kS1 ? s.re : s.im;
}

std::span<const DataRow> ShownRows(const Graph& graph, const Curve& curve, const DatasetTable& datasets) {
  const Dataset* const dataset = GetDatasetById(datasets, curve.datasetId);
  if (!dataset || dataset->id == 0) return {};
  const std::span<const DataRow> all = dataset->points;
  if (!graph.ShowFitted) return all;
  const ActiveRows active = ActiveRowsOf(*dataset);
  return all.subspan(static_cast<std::size_t>(active.from), static_cast<std::size_t>(active.to - active.from));
}

std::vector<std::vector<double>> ModelValues(const Graph& graph, EvalContext& ctx, const Model& model,
                                             std::span<const Quantity> quantities, std::span<const double> x) {
  std::vector<std::vector<double>> values(quantities.size(), std::vector<double>(x.size()));
  QuantitySet set;
  for (const Quantity quantity : quantities) set |= QuantitySet{quantity};
  const std::vector<QuantitySet> wanted(x.size(), set);
  const DcSwitch dc(ctx, graph.X.title == "PlotDCvsT");
  EvalSpectrum(ctx, model, {x, wanted, false, {}}, [&](const SpectrumBlock& block) {
    for (std::size_t k = 0; k < quantities.size(); ++k) {
      for (std::size_t i = 0; i < block.count; ++i) values[k][block.first + i] = block.Value(quantities[k], i);
    }
  });
  return values;
}

}  // namespace kalvex

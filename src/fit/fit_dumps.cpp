#include "fit/fit_dumps.h"

#include <array>
#include <cmath>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "core/files.h"
#include "core/text.h"
#include "datasets/dataset.h"
#include "evaluation/eval_model.h"
#include "fit/fit_lists.h"
#include "records/model_table.h"

namespace kalvex {
namespace {

void Rebuild(FitState& fit, ParamTables& params, EvalContext& eval) {
  RebuildFitParams(fit, params, eval);
  RebuildFitPoints(fit, eval);
  ComputeChiSq(fit, eval);
}

// The dataset's Quantity, computed from the model at all rows of the dataset.
std::vector<double> CurveOf(EvalContext& eval, const Model& model, const Dataset& dataset) {
  std::vector<double> curve;
  WantOnly(eval.quantities, QuantitySet{dataset.Quantity});
  for (const DataRow& row : dataset.points) {
    EvalModel(eval, model, row.x, false);
    curve.push_back(eval.quantities[dataset.Quantity].value);
  }
  return curve;
}

double ChiSqOfAllButTheLast(const FitState& fit) {
  double sum = 0;
  for (std::size_t t = 0; t + 1 < fit.list.terms.size(); ++t) {
    sum += fit.list.terms[t].weight * fit.list.terms[t].termChiSq;
  }
  return sum;
}

// The derivatives of a Quantity by the two parameters of a mesh point.
struct PointSlopes {
  double e1;
  double e2;
};
PointSlopes SlopesAtPoint(EvalContext& eval, const Model& model, int meshIndex, Quantity quantity) {
  const MeshSlopes& point = SlopesOf(eval, model).mesh[static_cast<std::size_t>(meshIndex)];

  return {point.e1.dQuantity[quantity], point.e2.dQuantity[quantity]};
}

void EvaluateConductivity(ParamTables& params, EvalContext& eval, const Model& model, double x) {
  WantOnly(eval.quantities, QuantitySet{kS1, kS2});
  EvalModel(eval, model, x, true);
  TakeOverSlopes(params, eval.slopes);
}

Status Needs(const std::string& what) { return {StatusCode::kNotThere, "it needs " + what}; }

bool HasDataset1(const DatasetTable& datasets) { return datasets.slots.front().id != 0; }

// Calls visit(row) for each active row of dataset 1.
template <class Visit>
void ForEachActiveRow(const DatasetTable& datasets, Visit visit) {
  const Dataset& dataset = datasets.slots.front();
  const ActiveRows active = ActiveRowsOf(dataset);
  for (int i = active.from; i < active.to; ++i) visit(dataset.points[static_cast<std::size_t>(i)]);
}

// Finds the models with the numbers 1, 2, ...; false if one does not exist.
bool FindModelsFromOne(const ParamTables& params, std::span<const Model*> models) {
  for (std::uint32_t i = 0; i < models.size(); ++i) {
    models[i] = GetModelByNumber(params, i + 1);
    if (!models[i]) return false;
  }
  return true;
}

}  // namespace

Status WriteQuantityErrorBars(FitState& fit, ParamTables& params, EvalContext& eval, DatasetTable& datasets,
                              Platform& platform, FitObserver& observer, const std::function<void()>& datasetChanged) {
  constexpr std::array<double, 11> kFactors = {0.90, 0.92, 0.94, 0.96, 0.98, 1.00, 1.02, 1.04, 1.06, 1.08, 1.10};
  constexpr std::array<double, 3> kAnchorWeights = {1e-8, 1e-7, 1e-6};
  if (fit.list.terms.size() < 3) return Needs("three ChiSq terms");
  Dataset* const dataset = GetDatasetById(datasets, fit.list.terms.back().datasetId);
  Model* const model = GetModelByNumber(params, fit.list.terms.back().modelId);
  if (!dataset || dataset->id == 0 || !model) return Needs("a dataset and a model for the last ChiSq term");

  const std::vector<DataRow> points = dataset->points;
  const double weight = fit.list.terms.back().weight;
  const int maxIterations = fit.options.MaxIterations;
  const double cutMin = dataset->CutMin, cutMax = dataset->CutMax;
  const auto anchorWeight = [&](double value) {
    fit.list.terms.back().weight = value;
    ComputeChiSq(fit, eval);
  };
  Status status;
  const auto run = [&](int iterations) {
    fit.options.MaxIterations = iterations;
    Status ended = RunFit(fit, params, eval, platform, observer);
    if (!ended.Ok()) status = std::move(ended);
  };

  CellsOfFit(fit, params, eval);  // rebuild outdated lists while the last term has a weight
  anchorWeight(0);
  run(10);
  const std::vector<double> reference = CurveOf(eval, *model, *dataset);
  std::string text;
  for (std::size_t i = 0; i < reference.size(); ++i) {
    dataset->CutMin = dataset->CutMax = dataset->points[i].x;
    dataset->firstActive = dataset->lastActive = static_cast<int>(i);
    dataset->nActive = 1;
    // A term of weight 0 would be left out of the lists.
    fit.list.terms.back().weight = kAnchorWeights.front();
    datasetChanged();
    Rebuild(fit, params, eval);
    AppendG(text, dataset->points[i].x);
    text += ' ';
    AppendG(text, reference[i]);
    text += ' ';
    for (const double factor : kFactors) {
      dataset->points[i].y = reference[i] * factor;
      RebuildFitPoints(fit, eval);
      ComputeChiSq(fit, eval);
      datasetChanged();
      for (const double value : kAnchorWeights) {
        anchorWeight(value);
        run(5);
      }
      AppendG(text, ChiSqOfAllButTheLast(fit));
      text += ' ';
    }
    text += '\n';
  }
  const Status written = WriteWholeFile("QntyErrorBars.dat", text);

  fit.list.terms.back().weight = weight;
  fit.options.MaxIterations = maxIterations;
  dataset->points = points;
  dataset->CutMin = cutMin;
  dataset->CutMax = cutMax;
  ComputeActiveRange(*dataset);
  Rebuild(fit, params, eval);
  datasetChanged();
  return written.Ok() ? status : written;
}

Status WriteDerivativeDump(ParamTables& params, EvalContext& eval) {
  std::array<const Model*, 4> models{};
  if (!FindModelsFromOne(params, models) || !HasDataset1(*eval.datasets)) return Needs("dataset 1 and models 1 to 4");
  std::string text;
  ForEachActiveRow(*eval.datasets, [&](const DataRow& row) {
    const int at = FindVdfInterval(row.x, models[0]->vdf);
    if (at < 0 || at >= static_cast<int>(models[1]->vdf.mesh.size())) return;
    AppendUpperG(text, row.x);
    for (const Model* const measured : {models[2], models[3]}) {
      EvaluateConductivity(params, eval, *measured, row.x);
      for (const Quantity quantity : {kS1, kS2}) {
        for (const Model* const owner : {models[0], models[1]}) {
          const PointSlopes slopes = SlopesAtPoint(eval, *owner, at, quantity);
          for (const double slope : {slopes.e1, slopes.e2}) {
            text += ' ';
            AppendUpperG(text, slope);
          }
        }
      }
    }
    text += '\n';
  });
  return WriteWholeFile("Jakob.dat", text);
}

Status WriteSensitivityDump(ParamTables& params, EvalContext& eval) {
  std::array<const Model*, 3> models{};
  if (!FindModelsFromOne(params, models) || !HasDataset1(*eval.datasets)) return Needs("dataset 1 and models 1 to 3");
  std::string text;
  ForEachActiveRow(*eval.datasets, [&](const DataRow& row) {
    const int at = FindVdfInterval(row.x, models[0]->vdf);
    if (at < 0) return;
    EvaluateConductivity(params, eval, *models[2], row.x);
    const auto [a, b] = SlopesAtPoint(eval, *models[0], at, kS1);
    const auto [c, d] = SlopesAtPoint(eval, *models[0], at, kS2);
    const double det = a * d - b * c;
    const bool regular = std::fabs(det) > kTinyNorm;
    AppendUpperG(text, row.x);
    text += ' ';
    AppendUpperG(text, regular ? std::fabs(d / det) + std::fabs(b / det) : 2 * kNoValue);
    text += ' ';
    AppendUpperG(text, regular ? std::fabs(c / det) + std::fabs(a / det) : 2 * kNoValue);
    text += '\n';
  });
  return WriteWholeFile("Jakob2.dat", text);
}

}  // namespace kalvex

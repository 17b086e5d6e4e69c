// Tables with a spectrum and a model, ready to be fitted.
#pragma once

#include <vector>

#include "evaluation/eval_model.h"
#include "evaluation/eval_spectrum.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_dumps.h"
#include "fit/fit_lists.h"
#include "fit/run_fit.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/tables.h"

namespace kalvex {

struct SampleFit {
  Tables tables;

  explicit SampleFit(int threads = 1) : tables(threads) {}

  FitState& fit() { return tables.fit; }
  FitCells Cells() { return CellsOfFit(tables.fit, tables.params, tables.eval); }
  Model& model(std::uint32_t number) { return *GetModelByNumber(tables.params, number); }

  Model& AddModel(double epsInf, double wo, double wp, double g) {
    Model& made = *CreateModel(tables.params);
    Set(made, epsInf, wo, wp, g);
    return made;
  }

  static void Set(Model& of, double epsInf, double wo, double wp, double g) {
    of.epsInf.value = epsInf;
    Cell(of, 0, Wo).value = wo;
    Cell(of, 0, Wp).value = wp;
    Cell(of, 0, G).value = g;
  }

  // Fills a slot with a Quantity of the model's present values, plus a bend that no model can fit.
  void Measure(int slot, Model& of, Quantity quantity, double sigma = 0.01, double bend = 0, int points = 60) {
    Dataset& dataset = tables.datasets.slots[static_cast<std::size_t>(slot - 1)];
    dataset = Dataset{};
    dataset.id = tables.datasets.nextId++;
    dataset.Quantity = quantity;
    std::vector<double> x;
    for (int i = 0; i < points; ++i) x.push_back(30 + 4.0 * i);
    const std::vector<QuantitySet> wanted(x.size(), QuantitySet{quantity});
    EvalSpectrum(tables.eval, of, {x, wanted, false, {}}, [&](const SpectrumBlock& block) {
      for (std::size_t i = 0; i < block.count; ++i) {
        const std::size_t at = block.first + i;
        dataset.points.push_back({x[at], block.Value(quantity, i) + bend * (static_cast<double>(at % 3) - 1), sigma});
      }
    });
    dataset.firstActive = 0;
    dataset.lastActive = points - 1;
    dataset.nActive = points;
  }

  void Term(int slot, std::uint32_t number, double weight = 1) {
    ChiSqTerm& term = InsertChiSqTerm(tables.fit, tables.fit.list, static_cast<int>(tables.fit.list.terms.size()));
    term.datasetId = tables.datasets.slots[static_cast<std::size_t>(slot - 1)].id;
    term.modelId = number;
    term.weight = weight;
    Rebuild();
  }
  void Rebuild() { RebuildFitLists(tables.fit, tables.params, tables.eval); }

  void Run() {
    FitObserver silent;
    Run(silent);
  }
  void Run(FitObserver& observer) {
    ASSERT_TRUE(RunFit(tables.fit, tables.params, tables.eval, tables.platform, observer).Ok());
  }
  // A run that can be undone.
  void RunWithUndo() {
    StoreStartValues(tables.fit, tables.params, tables.eval);
    Run();
  }
  void Undo() { UndoFit(tables.fit, tables.params, tables.eval); }

  Status ErrorBars(const std::function<void()>& datasetChanged = [] {}) {
    FitObserver silent;
    return WriteQuantityErrorBars(tables.fit, tables.params, tables.eval, tables.datasets, tables.platform, silent,
                                  datasetChanged);
  }

  std::vector<FitCoordinate> Coordinates() {
    std::vector<FitCoordinate> coordinates;
    for (const ModelParam* const cell : Cells()) coordinates.push_back(FitCoordinateOf(*cell));
    return coordinates;
  }
};

// One point as the fit sees it.
struct SeenPoint {
  double x;
  double y;
  double sigma;
  Quantity quantity;
  std::uint32_t modelId;
  int term;
};
inline std::vector<SeenPoint> SeenPointsOf(const FitState& fit) {
  std::vector<SeenPoint> seen;
  for (const FitSpectrum& spectrum : fit.spectra) {
    for (const TermPoints& points : spectrum.terms) {
      for (std::size_t p = 0; p < points.y.size(); ++p) {
        const double x = spectrum.x[FrequencyOf(points, p)];
        seen.push_back({x, points.y[p], points.sigma[p], points.quantity, spectrum.modelId, points.term});
      }
    }
  }
  return seen;
}

}  // namespace kalvex

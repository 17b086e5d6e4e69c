// Spectra of special models: a stack whose thicknesses have a spread, a pulse, Landau levels, a tip, bands.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <tuple>

#include "evaluation/eval_model.h"
#include "evaluation/eval_spectrum.h"
#include "fit/fit_lists.h"
#include "fit/run_fit.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "tables.h"

namespace {

using kalvex::Model;
using kalvex::Tables;

Model& NewModel(Tables& tables, double epsInf, std::initializer_list<std::array<double, 3>> rows) {
  Model& model = *kalvex::CreateModel(tables.params);
  kalvex::ClearRows(model);
  model.epsInf.value = epsInf;
  model.epsInf.adjustable = epsInf > 0;
  for (const auto& row : rows) {
    const int r = kalvex::RowCount(model);
    kalvex::InsertRow(model, r);
    for (int c = 0; c < kalvex::kColumns; ++c) kalvex::Cell(model, r, c).value = row[static_cast<std::size_t>(c)];
  }
  return model;
}

// Quantities of a model at a number of frequencies, with the derivatives by all free parameters, after a change of
// parameters as in a fit. Results that depend only on the parameters must be recomputed.
template <class Change>
void EvaluateWithDerivatives(benchmark::State& state, Tables& tables, Model& model, double from, double to,
                             std::size_t points, kalvex::QuantitySet wanted, Change change) {
  std::vector<double> x(points);
  for (std::size_t i = 0; i < points; ++i)
    x[i] = from + (to - from) * static_cast<double>(i) / static_cast<double>(points);
  const std::vector<kalvex::QuantitySet> sets(points, wanted);
  kalvex::SpectrumRequest request;
  request.x = x;
  request.wanted = sets;
  request.derivatives = true;
  for (auto _ : state) {
    double sum = 0;
    change();
    kalvex::EvalSpectrum(tables.eval, model, request,
                         [&](const kalvex::SpectrumBlock& block) { sum += block.count > 0 ? 1 : 0; });
    benchmark::DoNotOptimize(sum);
  }
}

void EvaluateWithDerivatives(benchmark::State& state, Tables& tables, Model& model, double from, double to,
                             std::size_t points, kalvex::QuantitySet wanted) {
  EvaluateWithDerivatives(state, tables, model, from, to, points, wanted, [] {});
}

// Five layers of three materials. On request the second and the fourth thickness have a spread.
void StackOfFiveLayers(benchmark::State& state) {
  Tables tables(static_cast<int>(state.range(1)));
  const double spread = state.range(0) ? 0.05 : 0;
  NewModel(tables, 2.2, {{1000, 300, 40}, {450, 200, 30}});
  NewModel(tables, 4, {{600, 400, 30}, {300, 150, 20}});
  NewModel(tables, 3, {{0, 3000, 200}});
  Model& stack =
      NewModel(tables, -2, {{1, 0.0004, 0}, {2, 0.0006, spread}, {3, 0.00002, 0}, {1, 0.0009, spread}, {2, 0.0003, 0}});
  EvaluateWithDerivatives(state, tables, stack, 50, 4000, 4000, kalvex::QuantitySet{kalvex::kRefl, kalvex::kTrans});
}
BENCHMARK(StackOfFiveLayers)
    ->ArgNames({"spread", "threads"})
    ->ArgsProduct({{0, 1}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// The work of one iteration of a fit in the time domain: the trace of 4096 points with its derivatives.
void PulseOf4096Points(benchmark::State& state) {
  constexpr int kPoints = 4096;
  Tables tables;
  kalvex::Dataset& reference = tables.datasets.slots[0];
  reference.id = tables.datasets.nextId++;
  for (int i = 0; i < kPoints; ++i) {
    const double t = 12.0 * i / (kPoints - 1);
    reference.points.push_back({t, (1 - 30 * (t - 3) * (t - 3)) * std::exp(-(t - 3) * (t - 3) * 40), 0.01});
  }
  NewModel(tables, 2.1, {{53, 9, 10}, {1000, 570, 22000}});
  Model& slab = NewModel(tables, -51, {{1, 1, 0}, {0, 12, kPoints}, {0, 0.05, 0}, {3, 0, 100}});
  EvaluateWithDerivatives(state, tables, slab, 0, 12, kPoints, kalvex::QuantitySet{kalvex::kRp});
}
BENCHMARK(PulseOf4096Points)->Unit(benchmark::kMillisecond);

// Graphene in a field: 1000 frequencies of the tensor, 11 free parameters, about 60 levels.
void GrapheneInAField(benchmark::State& state) {
  Tables tables;
  Model& model = NewModel(tables, -41, {{50, 7, 40}, {1.5, 0, 0}, {0.01, 0.15, 0.01}, {1e6, 1, 0}});
  EvaluateWithDerivatives(state, tables, model, 50, 4000, 1000, kalvex::QuantitySet{kalvex::kS1, kalvex::kS2},
                          [&] { kalvex::Cell(model, 2, kalvex::Wp).value += 1e-6; });
}
BENCHMARK(GrapheneInAField)->Unit(benchmark::kMillisecond);

// A fit to both parts of the tensor's diagonal, 1000 points each, with background, broadening and weight free. The
// start values are off by 10 %. The velocity is fixed: it moves levels across the cut-off, where ChiSq has steps.
void FitOfGrapheneInAField(benchmark::State& state) {
  Tables tables;
  Model& model = NewModel(tables, -41, {{50, 7, 40}, {1.5, 0, 0}, {0.01, 0.15, 0.01}, {1e6, 1, 0}});
  const auto setBackgroundBroadeningWeight = [&](double off) {
    for (const auto& [row, column, truth] :
         {std::tuple{1, kalvex::Wp, 5000.0}, {2, kalvex::G, 0.01}, {3, kalvex::Wp, 1.0}}) {
      kalvex::ModelParam& param = kalvex::Cell(model, row, column);
      param.value = truth * (1 + off);
      param.adjustable = true;
    }
  };
  for (kalvex::ModelParam& param : model.rows) param.adjustable = false;
  setBackgroundBroadeningWeight(0);
  for (const kalvex::Quantity quantity : {kalvex::kS1, kalvex::kS2}) {
    kalvex::Dataset& dataset = tables.datasets.slots[quantity == kalvex::kS1 ? 0 : 1];
    dataset.id = tables.datasets.nextId++;
    dataset.Quantity = quantity;
    kalvex::WantOnly(tables.eval.quantities, kalvex::QuantitySet{quantity});
    for (int i = 0; i < 1000; ++i) {
      const double x = 50 + 3.95 * i;
      kalvex::EvalModel(tables.eval, model, x, false);
      const double y = tables.eval.quantities[quantity].value;
      dataset.points.push_back({x, y, 0.01 * std::fabs(y) + 1});
    }
    dataset.firstActive = 0;
    dataset.lastActive = 999;
    kalvex::AddTerm(tables, quantity == kalvex::kS1 ? 1 : 2, model);
  }
  for (auto _ : state) {
    state.PauseTiming();
    setBackgroundBroadeningWeight(0.1);
    kalvex::ComputeChiSq(tables.fit, tables.eval);
    state.ResumeTiming();
    if (!kalvex::RunFit(tables).Ok()) state.SkipWithError("out of memory");
  }
  if (tables.fit.TotalChiSq > 1e-6) state.SkipWithError("the fit did not find the true values");
  state.counters["iterations"] = tables.fit.IterationCount;
}
BENCHMARK(FitOfGrapheneInAField)->Unit(benchmark::kMillisecond);

// Bilayer graphene in a field: transmission and rotation at 1000 frequencies, 13 free parameters, 60 levels.
void BilayerInAField(benchmark::State& state) {
  Tables tables;
  Model& model = NewModel(tables, -62,
                          {{50, 8, 0.01},
                           {3.1, 0.38, 0.14},
                           {0.1, 0.02, 0.1},
                           {60, 0, 0},
                           {0, 1, 0},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0}});
  EvaluateWithDerivatives(state, tables, model, 50, 4000, 1000, kalvex::QuantitySet{kalvex::kTrans, kalvex::kDepth},
                          [&] { kalvex::Cell(model, 2, kalvex::G).value += 1e-6; });
}
BENCHMARK(BilayerInAField)->Unit(benchmark::kMillisecond);

// Bismuth in a field: reflectivity and Kerr rotation at 1000 frequencies, 15 free parameters, 60 levels at 100 wave
// vectors.
void BismuthInAField(benchmark::State& state) {
  Tables tables;
  Model& model = NewModel(tables, -74,
                          {{20, 4, 0.002},
                           {0.0153, 0.035, 0.006},
                           {0.25, 3, 60},
                           {0.046, 0.064, 0.7},
                           {30, 0.8, 100},
                           {0, 0, 0},
                           {80, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0}});
  EvaluateWithDerivatives(state, tables, model, 20, 1000, 1000, kalvex::QuantitySet{kalvex::kRefl, kalvex::kRp},
                          [&] { kalvex::Cell(model, 1, kalvex::Wp).value += 1e-6; });
}
BENCHMARK(BismuthInAField)->Unit(benchmark::kMillisecond);

// A tip on silicon carbide and gold, 1000 frequencies, 64 points of its cycle, 100 momenta: contrast and phase of the
// sum over momenta. The sample: a plain model, or a surface of type 73 that is evaluated at each momentum.
void TipOnASurface(benchmark::State& state) {
  Tables tables;
  NewModel(tables, 0, {{-1000, 6.56, 0}, {-1002, 970, 5}, {-1001, 797, 5}});
  NewModel(tables, 1, {{0, 68920, 341}});
  NewModel(tables, -73, {{1, 0, 0}, {0, 0, 0}});
  const double sample = state.range(0) ? 3 : 1;
  Model& model = NewModel(tables, -80, {{sample, 2, 2}, {0, 0, 0}, {2e-6, 1.02, 1}, {0, 12, 100}, {0, 60, 64}});
  EvaluateWithDerivatives(state, tables, model, 800, 1050, 1000, kalvex::QuantitySet{kalvex::kE1, kalvex::kE2});
}
BENCHMARK(TipOnASurface)->ArgName("surface")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The lattice of bilayer graphene: 1000 points of the path with all bands, or the conductivity on a mesh with the given
// number of wave vectors in each direction. The chemical potential changes from one spectrum to the next.
void BandsOfABilayer(benchmark::State& state) {
  const std::filesystem::path before = std::filesystem::current_path(),
                              folder = std::filesystem::temp_directory_path() / "kalvex_bench_bands";
  std::filesystem::create_directories(folder);
  std::filesystem::current_path(folder);  // the type writes its files there
  Tables tables;
  const double cells = static_cast<double>(state.range(0));
  Model& model = NewModel(tables, -31,
                          {{-3, 0.4, -0.3},
                           {0.15, 0.018, 0.1},
                           {0, 0, 10},
                           {0, 0, 0},
                           {1.7031, 0.33333333, 0.66666667},
                           {2.5547, 0.5, 0.5},
                           {4.0296, 0, 0},
                           {0, 1.2, 60},
                           {0.3333, 0.14, cells},
                           {0.6667, 0.14, cells}});
  const kalvex::QuantitySet wanted = cells > 0
                                         ? kalvex::QuantitySet{kalvex::kDepth}
                                         : kalvex::QuantitySet{kalvex::kRefl, kalvex::kTrans, kalvex::kRp, kalvex::kRs};
  EvaluateWithDerivatives(state, tables, model, 0, cells > 0 ? 1.2 : 4.0296, 1000, wanted,
                          [&] { kalvex::Cell(model, 2, kalvex::Wo).value += 1e-6; });
  std::filesystem::current_path(before);
  std::filesystem::remove_all(folder);
}
BENCHMARK(BandsOfABilayer)->ArgName("cells")->Arg(0)->Arg(300)->Unit(benchmark::kMillisecond);

// The dielectric function of bilayer graphene at 1000 frequencies, 14 free parameters, 120 rings in 12 directions.
void BandsOfABilayerInTheInfrared(benchmark::State& state) {
  Tables tables;
  Model& model = NewModel(tables, -36,
                          {{-3, 0.4, -0.3},
                           {0.15, 0.018, 0.1},
                           {0.15, 0, 100},
                           {120, 0.025, 1},
                           {1, 1, 6.7},
                           {0.06, 12, 0},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0}});
  EvaluateWithDerivatives(state, tables, model, 1500, 5000, 1000, kalvex::QuantitySet{kalvex::kE1, kalvex::kE2},
                          [&] { kalvex::Cell(model, 2, kalvex::Wo).value += 1e-6; });
}
BENCHMARK(BandsOfABilayerInTheInfrared)->Unit(benchmark::kMillisecond);

}  // namespace

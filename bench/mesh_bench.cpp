// Fits of a variational dielectric function. The matrix of the constrained mesh is full; that of the free mesh is a
// band with a few full rows. 2000 points of R; the free mesh has 2000 points of each of two Quantities.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>

#include "evaluation/eval_model.h"
#include "fit/fit_coordinate.h"
#include "fit/fit_lists.h"
#include "fit/normal_equations.h"
#include "fit/run_fit.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "records/vdf_mesh.h"
#include "tables.h"

namespace {

constexpr int kPoints = 2000;

double Frequency(int i, int count) { return 20 * std::pow(1000.0, i / (count - 1.0)); }

void SetRow(kalvex::Model& model, int row, double wo, double wp, double g) {
  kalvex::Cell(model, row, kalvex::Wo).value = wo;
  kalvex::Cell(model, row, kalvex::Wp).value = wp;
  kalvex::Cell(model, row, kalvex::G).value = g;
}

// A spectrum of three oscillators and a bump of E2. A mesh on two of the oscillators is fitted to it.
struct Problem {
  kalvex::Tables tables;
  kalvex::Model& model;

  Problem(int meshPoints, bool kk, bool twoQuantities, int threads)
      : tables(threads), model(*kalvex::CreateModel(tables.params)) {
    kalvex::InsertRow(model, 1);
    kalvex::InsertRow(model, 2);
    SetRow(model, 0, 300, 500, 30);
    SetRow(model, 1, 1200, 900, 200);
    SetRow(model, 2, 5000, 2500, 2000);
    Measure(1, kalvex::kRefl);
    if (twoQuantities) Measure(2, kalvex::kE2);
    kalvex::Cell(model, 2, kalvex::Wp).value = 2000;
    kalvex::FixAll(model, !twoQuantities);
    kalvex::Dataset& mesh = Slot(10);
    for (int i = 0; i < meshPoints; ++i) mesh.points.push_back({Frequency(i, meshPoints), 0, 1});
    mesh.firstActive = 0;
    mesh.lastActive = meshPoints - 1;
    kalvex::VarDielFunc& vdf = model.vdf;
    vdf.source[0].datasetId = mesh.id;
    vdf.initOn = vdf.initFitActive = 1;
    vdf.initKK = kk ? 1 : 0;
    if (!kalvex::InitVdfMesh(vdf, tables.datasets).Ok()) std::abort();
    kalvex::AddTerm(tables, 1, model);
    if (twoQuantities) kalvex::AddTerm(tables, 2, model);
  }

  kalvex::Dataset& Slot(int slot) {
    kalvex::Dataset& dataset = tables.datasets.slots[static_cast<std::size_t>(slot - 1)];
    dataset.id = tables.datasets.nextId++;
    return dataset;
  }

  void Measure(int slot, kalvex::Quantity quantity) {
    kalvex::Dataset& dataset = Slot(slot);
    dataset.Quantity = quantity;
    kalvex::WantOnly(tables.eval.quantities, kalvex::QuantitySet{quantity});
    for (int i = 0; i < kPoints; ++i) {
      const double x = Frequency(i, kPoints);
      kalvex::EvalModel(tables.eval, model, x, false);
      dataset.points.push_back({x, tables.eval.quantities[quantity].value, 0.005});
    }
    dataset.firstActive = 0;
    dataset.lastActive = kPoints - 1;
  }
};

void RunFits(benchmark::State& state, Problem& problem) {
  kalvex::Tables& tables = problem.tables;
  tables.fit.options.StopOnIterations = true;
  tables.fit.options.StopOnReduction = false;
  tables.fit.options.MaxIterations = 5;
  int iterations = 0;
  for (auto _ : state) {
    for (kalvex::VdfMeshPoint& point : problem.model.vdf.mesh) point.e1.value = point.e2.value = 0;
    if (!kalvex::RunFit(tables).Ok()) state.SkipWithError("out of memory");
    iterations += tables.fit.IterationCount;
  }
  state.counters["unknowns"] = tables.fit.NumFreeParams;
  state.counters["iteration_s"] =
      benchmark::Counter(iterations, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// The given numbers of points, with one thread and with two.
void OnThreads(benchmark::internal::Benchmark* benchmark, const std::vector<std::int64_t>& points) {
  benchmark->ArgNames({"points", "threads"})->ArgsProduct({points, {1, 2}});
  benchmark->UseRealTime()->Unit(benchmark::kMillisecond);
}
void FreeSizes(benchmark::internal::Benchmark* benchmark) { OnThreads(benchmark, {500, 2000}); }
void FullSizes(benchmark::internal::Benchmark* benchmark) { OnThreads(benchmark, {300, 1000, 2500}); }

void ConstrainedMesh(benchmark::State& state) {
  Problem problem(static_cast<int>(state.range(0)), true, false, static_cast<int>(state.range(1)));
  RunFits(state, problem);
}
BENCHMARK(ConstrainedMesh)->Apply(FullSizes);

void FreeMesh(benchmark::State& state) {
  Problem problem(static_cast<int>(state.range(0)), false, true, static_cast<int>(state.range(1)));
  RunFits(state, problem);
}
BENCHMARK(FreeMesh)->Apply(FreeSizes);

// The parts of an iteration: the evaluation with cached kernels together with alpha, and the solution alone.
void ConstrainedMeshAlpha(benchmark::State& state) {
  Problem problem(static_cast<int>(state.range(0)), true, false, static_cast<int>(state.range(1)));
  kalvex::FitState& fit = problem.tables.fit;
  std::vector<kalvex::FitCoordinate> coordinates;
  for (const kalvex::ModelParam* const cell : kalvex::CellsOfFit(fit, problem.tables.params, problem.tables.eval)) {
    coordinates.push_back(kalvex::FitCoordinateOf(*cell));
  }
  kalvex::NormalEquations equations(static_cast<std::size_t>(fit.NumFreeParams));
  for (auto _ : state)
    kalvex::AccumulateNormalEquations(fit, problem.tables.params, problem.tables.eval, coordinates, equations);
}
BENCHMARK(ConstrainedMeshAlpha)->Apply(FullSizes);

void ConstrainedMeshEvaluation(benchmark::State& state) {
  Problem problem(static_cast<int>(state.range(0)), true, false, static_cast<int>(state.range(1)));
  for (auto _ : state) kalvex::ComputeChiSq(problem.tables.fit, problem.tables.eval);
}
BENCHMARK(ConstrainedMeshEvaluation)->Apply(FullSizes);

void FullSolution(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  std::vector<double> data(n * n, 1.0), b(n, 1.0), x(n);
  kalvex::BandFactor factor;
  for (std::size_t i = 0; i < n; ++i) data[i * n + i] = 2.0 * static_cast<double>(n);
  kalvex::ThreadPool pool(static_cast<int>(state.range(1)));
  for (auto _ : state) kalvex::SolveBanded({data.data(), n}, factor, b, x, true, &pool);
}
BENCHMARK(FullSolution)->Apply(FullSizes);

}  // namespace

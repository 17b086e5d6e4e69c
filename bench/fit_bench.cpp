// A fit with all 76 parameters of 25 oscillators free, on 5000 points of R from 20 to 20000 cm-1.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

#include "evaluation/eval_model.h"
#include "fit/fit_lists.h"
#include "fit/run_fit.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "tables.h"

namespace {

constexpr int kOscillators = 25;
constexpr int kPoints = 5000;

void SetRow(kalvex::Model& model, int row, double wo, double wp, double g) {
  kalvex::Cell(model, row, kalvex::Wo).value = wo;
  kalvex::Cell(model, row, kalvex::Wp).value = wp;
  kalvex::Cell(model, row, kalvex::G).value = g;
}

// off: relative deviation of Wp, G and epsInf from the true values.
void SetModel(kalvex::Model& model, double off) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> spread(-1, 1);
  model.epsInf.value = 4 * (1 + off * spread(random));
  for (int row = 0; row < kOscillators; ++row) {
    if (kalvex::RowCount(model) <= row) kalvex::InsertRow(model, row);
    const double wo = 40 * std::pow(400.0, row / 24.0);
    SetRow(model, row, wo * (1 + 0.1 * off * spread(random)), 0.8 * wo * (1 + off * spread(random)),
           0.1 * wo * (1 + off * spread(random)));
  }
}

void MakeProblem(kalvex::Tables& tables) {
  kalvex::Model& model = *kalvex::CreateModel(tables.params);
  SetModel(model, 0);
  kalvex::Dataset& dataset = tables.datasets.slots[0];
  dataset.id = tables.datasets.nextId++;
  std::mt19937 random(2);
  std::normal_distribution<double> noise(0, 0.002);
  kalvex::WantOnly(tables.eval.quantities, kalvex::QuantitySet{kalvex::kRefl});
  for (int i = 0; i < kPoints; ++i) {
    const double x = 20 * std::pow(1000.0, i / (kPoints - 1.0));
    kalvex::EvalModel(tables.eval, model, x, false);
    dataset.points.push_back({x, tables.eval.quantities[kalvex::kRefl].value + noise(random), 0.002});
  }
  dataset.firstActive = 0;
  dataset.lastActive = kPoints - 1;
  kalvex::AddTerm(tables, 1, model);
}

void FitOf76Parameters(benchmark::State& state) {
  kalvex::Tables tables(static_cast<int>(state.range(1)));
  MakeProblem(tables);
  kalvex::FitOptions& options = tables.fit.options;
  options.StopOnIterations = true;
  options.MaxIterations = static_cast<int>(state.range(0));
  options.StopOnReduction = false;
  for (auto _ : state) {
    state.PauseTiming();
    SetModel(tables.params.models[0], 0.1);
    state.ResumeTiming();
    if (!kalvex::RunFit(tables).Ok()) state.SkipWithError("out of memory");
  }
  state.counters["ChiSq"] = tables.fit.TotalChiSq;
  state.counters["iterations"] = tables.fit.IterationCount;
}
BENCHMARK(FitOf76Parameters)
    ->ArgNames({"iterations", "threads"})
    ->ArgsProduct({{5, 20}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void ChiSqOf5000Points(benchmark::State& state) {
  kalvex::Tables tables(static_cast<int>(state.range(0)));
  MakeProblem(tables);
  for (auto _ : state) kalvex::ComputeChiSq(tables.fit, tables.eval);
}
BENCHMARK(ChiSqOf5000Points)->ArgName("threads")->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

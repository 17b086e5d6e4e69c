// Spectra of special models: a stack whose layers spread, a pulse, Landau levels.
#include <benchmark/benchmark.h>

#include <cmath>

#include "models/eval_spectrum.h"
#include "models/model_rows.h"
#include "models/model_table.h"
#include "program/program.h"

namespace {

using kalvex::Model;
using kalvex::Program;

Model& NewModel(Program& program, double epsInf, std::initializer_list<std::array<double, 3>> rows) {
  Model& model = *kalvex::CreateModel(program.params);
  kalvex::ClearRows(&model);
  model.epsInf.value = epsInf;
  model.epsInf.adjustable = epsInf > 0;
  for (const auto& row : rows) {
    const int r = kalvex::RowCount(model);
    kalvex::InsertRow(&model, r);
    for (int c = 0; c < kalvex::kColumns; ++c) kalvex::Cell(model, r, c).value = row[static_cast<std::size_t>(c)];
  }
  return model;
}

// Two Quantities of a model at so many frequencies, with the derivatives by all free parameters.
void EvaluateWithDerivatives(benchmark::State& state, Program& program, Model& model, double from, double to,
                             std::size_t points, kalvex::QuantitySet wanted) {
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
    kalvex::EvalSpectrum(program.eval, model, request,
                         [&](const kalvex::SpectrumBlock& block) { sum += block.count > 0 ? 1 : 0; });
    benchmark::DoNotOptimize(sum);
  }
}

// Five layers of three materials; the second and the fourth thickness spread when asked for.
void StackOfFiveLayers(benchmark::State& state) {
  Program program(static_cast<int>(state.range(1)));
  const double spread = state.range(0) ? 0.05 : 0;
  NewModel(program, 2.2, {{1000, 300, 40}, {450, 200, 30}});
  NewModel(program, 4, {{600, 400, 30}, {300, 150, 20}});
  NewModel(program, 3, {{0, 3000, 200}});
  Model& stack = NewModel(program, -2,
                          {{1, 0.0004, 0}, {2, 0.0006, spread}, {3, 0.00002, 0}, {1, 0.0009, spread}, {2, 0.0003, 0}});
  EvaluateWithDerivatives(
      state, program, stack, 50, 4000, 4000,
      static_cast<kalvex::QuantitySet>(kalvex::SetOf(kalvex::kRefl) | kalvex::SetOf(kalvex::kTrans)));
}
BENCHMARK(StackOfFiveLayers)
    ->ArgNames({"spread", "threads"})
    ->ArgsProduct({{0, 1}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

// One iteration's worth of a fit in the time domain: the trace of 4096 points with its derivatives.
void PulseOf4096Points(benchmark::State& state) {
  constexpr int kPoints = 4096;
  Program program;
  kalvex::Dataset& reference = program.datasets.slots[0];
  reference.id = program.datasets.nextId++;
  for (int i = 0; i < kPoints; ++i) {
    const double t = 12.0 * i / (kPoints - 1);
    reference.points.push_back({t, (1 - 30 * (t - 3) * (t - 3)) * std::exp(-(t - 3) * (t - 3) * 40), 0.01});
  }
  NewModel(program, 2.1, {{53, 9, 10}, {1000, 570, 22000}});
  Model& slab = NewModel(program, -51, {{1, 1, 0}, {0, 12, kPoints}, {0, 0.05, 0}, {3, 0, 100}});
  EvaluateWithDerivatives(state, program, slab, 0, 12, kPoints, kalvex::SetOf(kalvex::kRp));
}
BENCHMARK(PulseOf4096Points)->Unit(benchmark::kMillisecond);

// Graphene in a field: 1000 frequencies of the tensor, 11 free parameters, about 60 levels.
void GrapheneInAField(benchmark::State& state) {
  Program program;
  Model& model = NewModel(program, -41, {{50, 7, 40}, {1.5, 0, 0}, {0.01, 0.15, 0.01}, {1e6, 1, 0}});
  EvaluateWithDerivatives(state, program, model, 50, 4000, 1000,
                          static_cast<kalvex::QuantitySet>(kalvex::SetOf(kalvex::kS1) | kalvex::SetOf(kalvex::kS2)));
}
BENCHMARK(GrapheneInAField)->Unit(benchmark::kMillisecond);

}  // namespace

// Printing the numbers of a curve: frequencies on a grid, and values that span many powers of ten.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "core/text.h"

namespace {

void PrintAMillionNumbers(benchmark::State& state) {
  std::vector<double> numbers;
  for (int i = 0; i < 500'000; ++i) {
    numbers.push_back(1 + 0.039998 * i);
    numbers.push_back(std::exp(-4e-5 * i) * std::sin(1e-3 * i));
  }
  std::string text;
  for (auto _ : state) {
    text.clear();
    for (const double number : numbers) {
      kalvex::AppendG(text, number);
      text += ' ';
    }
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(PrintAMillionNumbers)->Unit(benchmark::kMillisecond);

}  // namespace

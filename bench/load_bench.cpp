// Loading a text file of a million lines of three columns.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "datasets/load_dataset.h"

namespace {

constexpr int kLines = 1'000'000;

void LoadAMillionLines(benchmark::State& state) {
  const std::string path =
      (std::filesystem::temp_directory_path() / ("kalvex_bench_" + std::to_string(::getpid()) + ".dat")).string();
  std::FILE* const file = std::fopen(path.c_str(), "w");
  for (int i = 0; i < kLines; ++i) {
    std::fprintf(file, "%.4f %.6f %.4f\n", 20 + 0.01 * i, 0.5 + 1e-7 * (i % 4999999), 0.005);
  }
  std::fclose(file);
  for (auto _ : state) {
    kalvex::DatasetTable table;
    kalvex::DatasetSource source;
    source.MasterFile = path;
    if (!kalvex::LoadDataset(table.slots[0], source, table.nextId).Ok()) state.SkipWithError("does not load");
  }
  std::filesystem::remove(path);
}
BENCHMARK(LoadAMillionLines)->Unit(benchmark::kMillisecond);

}  // namespace

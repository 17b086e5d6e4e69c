// The whole program from start to end with an empty macro: time, and peak memory.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

void StartWithAnEmptyMacro(benchmark::State& state) {
  const std::string macro =
      (std::filesystem::temp_directory_path() / ("kalvex_bench_" + std::to_string(::getpid()) + ".kvs")).string();
  std::fclose(std::fopen(macro.c_str(), "w"));
  long mostKib = 0;
  for (auto _ : state) {
    pid_t child = 0;
    std::string program = KALVEX_PROGRAM, option = "--headless", name = macro;
    char* const args[] = {program.data(), option.data(), name.data(), nullptr};
    if (::posix_spawn(&child, KALVEX_PROGRAM, nullptr, nullptr, args, environ) != 0) state.SkipWithError("no start");
    int status = 0;
    struct rusage usage {};
    ::wait4(child, &status, 0, &usage);
    if (status != 0) state.SkipWithError("fails");
    if (usage.ru_maxrss > mostKib) mostKib = usage.ru_maxrss;
  }
  state.counters["MiB"] = static_cast<double>(mostKib) / 1024;
  std::filesystem::remove(macro);
}
BENCHMARK(StartWithAnEmptyMacro)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

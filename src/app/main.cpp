#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "app/command_line.h"
#include "app/progress.h"
#include "app/window_layer.h"
#include "core/interrupt.h"
#include "core/platform.h"
#include "macro/run_macro.h"
#include "numeric/thread_pool.h"
#include "session/session.h"
#include "terms/describe.h"
#include "types/describe.h"
#include "windows/desk.h"

namespace {

enum ExitStatus : int { kRan = 0, kCouldNotRun = 1, kWrongCommandLine = 2, kPassesFailed = 3 };

int RunOrCheck(const kalvex::CommandLine& line, int argc, char** argv) {
  kalvex::HeadlessPlatform platform;
  const int threads = line.threads > 0 ? line.threads : kalvex::ProcessorsAtHand();
  const auto session = std::make_unique<kalvex::Session>(platform, threads);
  const auto desk = std::make_unique<kalvex::Desk>(*session);
  kalvex::Progress progress(*session);
  desk->macro.verbose = line.verbose;
  desk->macro.defaults = line.defaults == 2 ? kalvex::Defaults::kPresent : kalvex::Defaults::kFormer;
  desk->macro.progress = line.progress || isatty(STDERR_FILENO) != 0;
  if (desk->macro.progress) session->Listen(progress);
  std::string fault = line.macroFile.empty() ? "no macro file is given, and no windows can be opened" : "";
  if (!line.headless && !line.check) {
    if (const auto status = kalvex::RunInWindows(*desk, line.macroFile, argc, argv, fault)) return *status;
  }
  if (!fault.empty()) std::fprintf(stderr, "kalvex: %s\n", fault.c_str());
  if (line.macroFile.empty()) return kRan;
  desk->macro.endsProgram = true;
  const int result = line.check ? kalvex::CheckMacro(*desk, line.macroFile) : kalvex::RunMacro(*desk, line.macroFile);
  if (result >= 0 && kalvex::InterruptWatch::IsInterrupted()) return kCouldNotRun;
  if (result >= 0) return desk->macro.failedPasses > 0 ? kPassesFailed : kRan;
  std::fprintf(stderr, "%s\n", desk->macro.fault.c_str());
  return kCouldNotRun;
}

}  // namespace

int main(int argc, char** argv) {
  kalvex::CommandLine line;
  std::string fault;
  const std::span<const char* const> args(argv, static_cast<std::size_t>(argc));
  if (!kalvex::ReadCommandLine(args.empty() ? args : args.subspan(1), line, fault)) {
    std::fprintf(stderr, "kalvex: %s\n%s", fault.c_str(), kalvex::kUsage);
    return kWrongCommandLine;
  }
  if (line.help) {
    std::fputs(kalvex::kUsage, stdout);
    return kRan;
  }
  if (line.version) {
    std::puts("Kalvex " KALVEX_VERSION);
    return kRan;
  }
  if (line.listTypes) {
    std::fputs(kalvex::ListOfTypes().c_str(), stdout);
    return kRan;
  }
  if (line.describeType >= 0) {
    const kalvex::ModelType* const type = kalvex::TypeOfCode(line.describeType);
    std::fputs((type ? kalvex::PageOf(*type) : kalvex::IndexOfTypes()).c_str(), stdout);
    return kRan;
  }
  if (line.listTerms) {
    std::fputs(kalvex::ListOfTerms().c_str(), stdout);
    return kRan;
  }
  if (line.describeTerm >= 0) {
    const kalvex::TermRecord* const record = kalvex::TermOfCode(line.describeTerm);
    std::fputs((record ? kalvex::PageOf(*record) : kalvex::IndexOfTerms()).c_str(), stdout);
    return kRan;
  }
  return RunOrCheck(line, argc, argv);
}

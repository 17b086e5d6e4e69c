#include "support/run_program.h"

#include <sys/wait.h>

#include <cstdlib>

namespace kalvex {
namespace {

std::string ShellQuoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

}  // namespace

ProgramRun RunProgram(const ScratchFolder& folder, const std::vector<std::string>& args,
                      const std::vector<std::string>& environment) {
  return RunCopy(KALVEX_PROGRAM, folder, args, environment);
}

ProgramRun RunCopy(const std::string& program, const ScratchFolder& folder, const std::vector<std::string>& args,
                   const std::vector<std::string>& environment) {
  const ScratchFolder outputs;
  std::string command = "cd " + ShellQuoted(folder.Name()) + " && ";
  for (const std::string& setting : environment) command += ShellQuoted(setting).insert(0, "env ") + ' ';
  command += ShellQuoted(program);
  for (const std::string& arg : args) command += ' ' + ShellQuoted(arg);
  command += " </dev/null >" + ShellQuoted(outputs.Path("out")) + " 2>" + ShellQuoted(outputs.Path("err"));
  const int raw = std::system(command.c_str());
  ProgramRun run;
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
  run.out = outputs.Read("out");
  run.err = outputs.Read("err");
  return run;
}

ProgramRun RunMacroText(const ScratchFolder& folder, std::string_view macro) {
  folder.Write("macro.kvs", macro);
  return RunProgram(folder, {"--verbose", "macro.kvs"});
}

}  // namespace kalvex

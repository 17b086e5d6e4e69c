// Runs the real program on real macro files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/scratch_folder.h"

namespace kalvex {

struct ProgramRun {
  int status = -1;  // exit status; 128 plus the signal's number if one ended it
  std::string out;
  std::string err;
};

// Runs build/kalvex in the folder with these arguments. environment: "NAME=value" settings added to the test's own.
ProgramRun RunProgram(const ScratchFolder& folder, const std::vector<std::string>& args,
                      const std::vector<std::string>& environment = {});
// The same for a copy of the program in another folder.
ProgramRun RunCopy(const std::string& program, const ScratchFolder& folder, const std::vector<std::string>& args,
                   const std::vector<std::string>& environment = {});

// Writes the text as "macro.kvs" into the folder and runs it with --verbose.
ProgramRun RunMacroText(const ScratchFolder& folder, std::string_view macro);

}  // namespace kalvex

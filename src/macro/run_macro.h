// Running a macro file: read and parsed as a whole, then executed statement by statement.
#pragma once

#include <string_view>

#include "program/program.h"

namespace kalvex {

enum RunMacroResult : int { kMacroEnded = 0, kMacroQuit = 1, kMacroFailed = -1, kMacroAlreadyRunning = -2 };

// Runs the file, whose name may stand in double quotes. kMacroQuit asks the caller to leave the program. After
// kMacroFailed, program.macro.fault says why; unless a loop file was at fault, no statement has then had any effect.
int RunMacro(Program& program, std::string_view fileName);

// Reads and parses only: kMacroEnded or kMacroFailed.
int CheckMacro(Program& program, std::string_view fileName);

}  // namespace kalvex

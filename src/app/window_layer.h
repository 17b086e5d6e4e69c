// The library of windows beside the program.
#pragma once

#include <optional>
#include <string>

#include "windows/desk.h"

namespace kalvex {

// Loads the library and hands the desk over to its windows. Gives the exit status; nothing where there are to be no
// windows: the library is not installed, or no screen answers. In fault is what is broken, if something is.
std::optional<int> RunInWindows(Desk& desk, const std::string& macroFile, int argc, char** argv, std::string& fault);

}  // namespace kalvex

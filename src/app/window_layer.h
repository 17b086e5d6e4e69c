// Loads the library of windows, which lies beside the program.
#pragma once

#include <optional>
#include <string>

#include "windows/desk.h"

namespace kalvex {

// Loads the library and runs its windows on the desk. Returns the exit status. Returns nothing if the library is not
// installed, if there is no screen, or if the windows cannot be opened; in the last case `fault` contains the reason.
std::optional<int> RunInWindows(Desk& desk, const std::string& macroFile, int argc, char** argv, std::string& fault);

}  // namespace kalvex

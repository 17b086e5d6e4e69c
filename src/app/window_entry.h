// What the program calls of the library of windows, which it loads when there is a screen.
#pragma once

#include <string>

#include "windows/desk.h"

// Opens the windows, runs the macro if one is named, and stays until the main window is closed. Gives the exit status
// of the program, or -1 where there can be none: nothing has happened then. No screen that answers is no fault; what is
// missing for one that does, is told in fault.
extern "C" int KalvexRunWindows(kalvex::Desk& desk, const char* macroFile, int argc, char** argv, std::string& fault);

namespace kalvex {
inline constexpr const char* kNoWindows = "windows cannot be opened: ";  // and why
inline constexpr const char* kLayerEntry = "KalvexRunWindows";
using LayerEntry = decltype(&KalvexRunWindows);
}  // namespace kalvex

// What the program calls of the library of windows, which it loads when there is a screen.
#pragma once

#include "program/program.h"

// Opens the windows, runs the macro if one is named, and stays until the main window is closed. Gives the exit status
// of the program, or -1 where no screen answers: nothing has happened then.
extern "C" int KalvexRunWindows(kalvex::Program& program, const char* macroFile, int argc, char** argv);

namespace kalvex {
inline constexpr const char* kLayerEntry = "KalvexRunWindows";
using LayerEntry = decltype(&KalvexRunWindows);
}  // namespace kalvex

// The function that the program calls in the library of windows. The library is loaded if there is a screen.
#pragma once

#include <string>

#include "windows/desk.h"

// Opens the windows, runs the macro if one is given, and returns when the main window is closed. Returns the exit
// status of the program, or -1 if no window can be opened; then nothing has been done. A missing screen is not an error
// and leaves `fault` as it is. If the screen exists but the windows cannot be opened, `fault` contains the reason.
extern "C" int KalvexRunWindows(kalvex::Desk& desk, const char* macroFile, int argc, char** argv, std::string& fault);

namespace kalvex {
inline constexpr const char* kNoWindows = "windows cannot be opened: ";  // followed by the reason
inline constexpr const char* kLayerEntry = "KalvexRunWindows";
using LayerEntry = decltype(&KalvexRunWindows);
}  // namespace kalvex

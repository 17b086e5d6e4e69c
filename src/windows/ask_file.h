// Asking for a file, with the memory of where the last one was.
#pragma once

#include <optional>
#include <string>

#include "core/platform.h"

namespace kalvex {

// The file that the user chose, nothing if the dialog was cancelled. A file to be written gets the default extension if
// its name has none. folder is where the dialog opens, and becomes where the file lies.
std::optional<std::string> AskFile(Platform& platform, std::string& folder, const FileQuestion& question);

}  // namespace kalvex

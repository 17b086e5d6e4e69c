// Asking for a file, with the memory of where the last one was.
#pragma once

#include <optional>
#include <string>

#include "core/platform.h"

namespace kalvex {

struct Desk;

// The file that the user chose, nothing if the dialog was cancelled. A file to be written gets the default extension if
// its name has none. The dialog opens where the last one of this run has ended.
std::optional<std::string> AskFile(Desk& desk, const FileQuestion& question);

}  // namespace kalvex

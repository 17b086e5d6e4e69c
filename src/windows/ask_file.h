// Asks for a file and remembers the directory of the last one.
#pragma once

#include <optional>
#include <string>

#include "core/platform.h"

namespace kalvex {

struct Desk;

// The file that the user chose; nothing if the dialog was cancelled. A file to be written gets the default extension if
// its name has none. The dialog opens in the directory of the last file dialog of this run.
std::optional<std::string> AskFile(Desk& desk, const FileQuestion& question);

}  // namespace kalvex

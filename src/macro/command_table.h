// The tables of the commands. Their order resolves ambiguous abbreviations, so a new command is always appended.
#pragma once

#include <span>

#include "macro/command.h"

namespace kalvex {

// The 36 commands of the format.
std::span<const MacroCommand> MacroCommandTable();
// Additional commands, for operations that the format lacks. They are searched only if no name of the first table
// matches.
std::span<const MacroCommand> MacroExtraTable();

}  // namespace kalvex

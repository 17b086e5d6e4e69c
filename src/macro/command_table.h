// The tables of the commands. Their order decides what an abbreviation means, so new commands are always appended.
#pragma once

#include <span>

#include "macro/command.h"

namespace kalvex {

// The 36 commands of the format.
std::span<const MacroCommand> MacroCommandTable();
// Commands of our own for what the format has no word for, looked at only when no name of the first table matches.
std::span<const MacroCommand> MacroExtraTable();

}  // namespace kalvex

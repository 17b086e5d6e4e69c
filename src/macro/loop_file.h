// Loop files: each line is one pass of a loop, and its tokens replace %1, %2, ...
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "macro/command_table.h"
#include "macro/macro_state.h"

namespace kalvex {

// The rows of a loop file. False if it cannot be opened or is empty.
bool ReadLoopFile(const std::string& path, std::vector<LoopRow>& rows);

// Replaces the loop columns in all given parameters by the row's tokens, and %1 to %8 inside of strings.
void SubstituteLoopValues(const MacroCommand& command, const LoopRow& row, MacroBlock& block);

}  // namespace kalvex

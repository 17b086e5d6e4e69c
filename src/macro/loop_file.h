// Loop files: one pass of a loop for each line, its tokens standing for %1, %2, ...
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "macro/command_table.h"
#include "macro/macro_state.h"

namespace kalvex {

// The rows of a loop file. False if it cannot be opened or is empty.
bool ReadLoopFile(const std::string& path, std::vector<LoopRow>& rows);

// Puts the row's tokens in the place of the loop columns, and of %1 to %8 in strings, of every parameter that was
// given.
void SubstituteLoopValues(const MacroCommand& command, const LoopRow& row, MacroBlock& block);

}  // namespace kalvex

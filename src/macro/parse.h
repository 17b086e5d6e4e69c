// The second phase of reading a macro: the compact text becomes a list of statements, or a description of the first
// fault.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "macro/command_table.h"

namespace kalvex {

struct MacroStatement {
  const MacroCommand* command = nullptr;
  MacroBlock block;
  std::size_t at = 0;  // place in the compact text
};

struct MacroFault {
  std::size_t at = 0;       // place in the compact text
  std::string description;  // what was found, and what was expected
};

// False at the first fault, which is then described in `fault`. Text after the last ';' is ignored.
bool ParseMacro(std::string_view compact, std::vector<MacroStatement>& statements, MacroFault& fault);

// The first command of the tables, or the first parameter of a command, whose name starts with the text, ignoring case.
// Null if there is none.
const MacroCommand* FindCommand(std::string_view name);
const MacroParam* FindParam(const MacroCommand& command, std::string_view name);

}  // namespace kalvex

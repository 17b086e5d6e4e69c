// Helpers for tests of the language: statements from a compact text, and faults as one line.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "macro/parse.h"

namespace kalvex {

inline std::vector<MacroStatement> Parsed(const std::string& compact) {
  std::vector<MacroStatement> statements;
  MacroFault fault;
  EXPECT_TRUE(ParseMacro(compact, statements, fault)) << compact << ": " << fault.description;
  return statements;
}

// "place: description", where the place counts the characters of the compact text from 0; "none" if the text parses.
inline std::string FaultOf(const std::string& compact) {
  std::vector<MacroStatement> statements;
  MacroFault fault;
  if (ParseMacro(compact, statements, fault)) return "none";
  return std::to_string(fault.at) + ": " + fault.description;
}

inline MacroSlot Slot(const MacroStatement& statement, const std::string& name) {
  for (std::size_t i = 0; i < statement.block.size(); ++i) {
    if (statement.command->params[i].name == name) return statement.block[i];
  }
  ADD_FAILURE() << statement.command->name << " has no " << name;
  return {};
}

// The slot of a parameter in a text with one statement.
inline MacroSlot SlotIn(const std::string& compact, const std::string& name) {
  const auto statements = Parsed(compact);
  if (statements.size() == 1) return Slot(statements[0], name);
  ADD_FAILURE() << compact << " has " << statements.size() << " statements";
  return {};
}

}  // namespace kalvex

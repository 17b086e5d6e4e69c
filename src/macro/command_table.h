// The commands of the macro language: their names, their parameters and what executes them.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kalvex {

struct Program;
struct MacroCall;

enum class ParamType { kInteger, kReal, kString };

struct MacroParam {
  const char* name;
  ParamType type;
  int length = 0;  // capacity of a string in characters
};

// What a statement tells the executor; anything above kQuit counts as kStop.
enum class MacroResult : int { kNext = 0, kBeginLoop = 1, kEndLoop = 2, kStop = 3, kQuit = 4 };

using MacroHandler = MacroResult (*)(MacroCall& call);

struct MacroCommand {
  const char* name;
  MacroHandler handler;
  std::span<const MacroParam> params;
};

// The 36 commands of the format, whose order decides what an abbreviation means.
std::span<const MacroCommand> MacroCommandTable();
// Commands of our own for what the format has no word for, looked at only when no name of the first table matches.
std::span<const MacroCommand> MacroExtraTable();

// The value of one parameter in one statement.
struct MacroSlot {
  bool given = false;
  int intValue = 0;
  double realValue = 0;
  std::string text;
  int loopColumn = -1;  // column of the loop file from 0, -1 for a literal
};
using MacroBlock = std::vector<MacroSlot>;  // a slot for each parameter of the command, in their order

// One statement being executed: its parameters, each absent unless given, and what verbose output will say of it.
struct MacroCall {
  Program& program;
  const MacroCommand& command;
  const MacroBlock& block;
  std::string said;

  std::optional<int> Int(std::string_view name) const;
  std::optional<double> Real(std::string_view name) const;
  std::optional<std::string> Text(std::string_view name) const;

  // Ends a handler: what was done, or why nothing was.
  MacroResult Done(std::string what);
  // "nothing done: " and the reason.
  MacroResult Nothing(std::string why);

 private:
  const MacroSlot* Given(std::string_view name) const;
};

}  // namespace kalvex

// A command: the record of its parameters, the description that connects the record with the text of a statement, and
// its handler.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "core/status.h"

namespace kalvex {

struct Desk;
class Session;

enum class ParamType { kInteger, kReal, kString };

// A parameter as the parser needs it.
struct MacroParam {
  const char* name = "";
  ParamType type = ParamType::kInteger;
  int length = 0;  // capacity of a string in bytes
};

// The value of one parameter in one statement.
struct MacroSlot {
  bool given = false;
  int intValue = 0;
  double realValue = 0;
  std::string text;
  int loopColumn = -1;  // column of the loop file, counted from 0; -1 for a literal
};
using MacroBlock = std::vector<MacroSlot>;  // one slot for each parameter of the command, in the same order

// What the executor does after a statement. kFail: the macro ends with a fault.
enum class MacroResult : int { kNext = 0, kBeginLoop = 1, kEndLoop = 2, kStop = 3, kQuit = 4, kFail = 5 };

// One statement during its execution: the desk and session it works on, and the text for verbose output.
struct MacroCall {
  Desk& desk;
  Session& session;
  std::string said{};
  bool didNothing = false;              // the statement could not do what it says
  std::vector<std::string> warnings{};  // lines for standard error, verbose or not

  // Each of these ends a handler and sets the verbose text. Done: what was done. Nothing: "nothing done: " and the
  // reason. Missing: a parameter that the command needs is not given. Told: what was done, or why the operation of the
  // session failed.
  MacroResult Done(std::string what);
  MacroResult Nothing(const std::string& why);
  MacroResult Missing(const char* param);
  MacroResult Told(const Status& status, std::string done);
};

struct MacroCommand {
  const char* name = "";
  MacroResult (*run)(MacroCall& call, const MacroBlock& block) = nullptr;
  std::span<const MacroParam> params;  // their order resolves ambiguous abbreviations
};

// One row of the description of a command's parameters: a name and the member of the record P that receives the value.
// The type of the member is the type of the parameter.
template <class P, class T>
struct ParamRow {
  MacroParam param;
  std::optional<T> P::*member;

  void Take(const MacroSlot& slot, P& record) const {
    if (!slot.given) return;
    if constexpr (std::is_same_v<T, int>) record.*member = slot.intValue;
    if constexpr (std::is_same_v<T, double>) record.*member = slot.realValue;
    if constexpr (std::is_same_v<T, std::string>) record.*member = slot.text;
  }
};
template <class P>
constexpr ParamRow<P, int> Param(const char* name, std::optional<int> P::*member) {
  return {{name, ParamType::kInteger, 0}, member};
}
template <class P>
constexpr ParamRow<P, double> Param(const char* name, std::optional<double> P::*member) {
  return {{name, ParamType::kReal, 0}, member};
}
template <class P>
constexpr ParamRow<P, std::string> Param(const char* name, std::optional<std::string> P::*member, int length) {
  return {{name, ParamType::kString, length}, member};
}

// The parameters of a record P for the parser, from the tuple that P::Describe() returns.
template <class P>
inline constexpr auto kParamsOf =
    std::apply([](const auto&... row) { return std::array<MacroParam, sizeof...(row)>{row.param...}; }, P::Describe());

template <class P>
P RecordOf([[maybe_unused]] const MacroBlock& block) {
  P record;
  std::apply([&, i = std::size_t{0}](const auto&... row) mutable { (row.Take(block[i++], record), ...); },
             P::Describe());
  return record;
}

// A row of a table of commands: the name, and the handler, whose second argument is the record.
template <auto kHandler>
constexpr MacroCommand Command(const char* name) {
  return [name]<class P>(MacroResult (*)(MacroCall&, const P&)) {
    const auto run = [](MacroCall& call, const MacroBlock& block) { return kHandler(call, RecordOf<P>(block)); };
    return MacroCommand{name, run, kParamsOf<P>};
  }(kHandler);
}

}  // namespace kalvex

// What a command is: the record of its parameters, the description that ties the record to the text of a statement, and
// the function that carries it out.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "core/status.h"

namespace kalvex {

struct Desk;
class Session;

enum class ParamType { kInteger, kReal, kString };

// A parameter as the parser sees it.
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
  int loopColumn = -1;  // column of the loop file from 0, -1 for a literal
};
using MacroBlock = std::vector<MacroSlot>;  // a slot for each parameter of the command, in their order

// What a statement tells the executor; anything above kQuit counts as kStop.
enum class MacroResult : int { kNext = 0, kBeginLoop = 1, kEndLoop = 2, kStop = 3, kQuit = 4 };

// One statement being executed: what it works on, and what verbose output will say of it.
struct MacroCall {
  Desk& desk;
  Session& session;
  std::string said;

  // Each ends a handler. Done says what was done; Nothing says "nothing done: " and why; Missing that a parameter which
  // the command needs is not given; Told what was done, or why the operation of the session has failed.
  MacroResult Done(std::string what);
  MacroResult Nothing(const std::string& why);
  MacroResult Missing(const char* param);
  MacroResult Told(const Status& status, std::string done);
};

struct MacroCommand {
  const char* name = "";
  MacroResult (*run)(MacroCall& call, const MacroBlock& block) = nullptr;
  std::span<const MacroParam> params;  // their order decides what an abbreviation means
};

// One row of the description of a command's parameters: the name, and how its value goes into the record P.
template <class P>
struct ParamRow {
  MacroParam param;
  void (*take)(const MacroSlot& slot, P& record);
};

inline void TakeValue(const MacroSlot& slot, std::optional<int>& member) { member = slot.intValue; }
inline void TakeValue(const MacroSlot& slot, std::optional<double>& member) { member = slot.realValue; }
inline void TakeValue(const MacroSlot& slot, std::optional<std::string>& member) { member = slot.text; }

template <class T>
inline constexpr ParamType kTypeOfMember = ParamType::kString;
template <>
inline constexpr ParamType kTypeOfMember<int> = ParamType::kInteger;
template <>
inline constexpr ParamType kTypeOfMember<double> = ParamType::kReal;

// The row of a member of the record, whose type is the type of the parameter. length: the capacity of a string, bytes.
template <auto kMember>
constexpr auto Row(const char* name, int length = 0) {
  return [&]<class P, class T>(std::optional<T> P::*) {
    static_assert(kTypeOfMember<T> != ParamType::kString || std::is_same_v<T, std::string>);
    const auto take = [](const MacroSlot& slot, P& record) { TakeValue(slot, record.*kMember); };
    return ParamRow<P>{{name, kTypeOfMember<T>, length}, take};
  }(kMember);
}

// The rows of a record P, which P::Describe() gives, and what the parser sees of them.
template <class P>
inline constexpr auto kRowsOf = P::Describe();
template <class P>
inline constexpr auto kParamsOf = [] {
  std::array<MacroParam, kRowsOf<P>.size()> params;
  for (std::size_t i = 0; i < params.size(); ++i) params[i] = kRowsOf<P>[i].param;
  return params;
}();

template <class P>
P RecordOf(const MacroBlock& block) {
  P record;
  for (std::size_t i = 0; i < kRowsOf<P>.size(); ++i) {
    if (block[i].given) kRowsOf<P>[i].take(block[i], record);
  }
  return record;
}

// The row of a table of commands: the name, and the handler, whose second argument is the record.
template <auto kHandler>
constexpr MacroCommand Command(const char* name) {
  return [name]<class P>(MacroResult (*)(MacroCall&, const P&)) {
    const auto run = [](MacroCall& call, const MacroBlock& block) { return kHandler(call, RecordOf<P>(block)); };
    return MacroCommand{name, run, kParamsOf<P>};
  }(kHandler);
}

}  // namespace kalvex

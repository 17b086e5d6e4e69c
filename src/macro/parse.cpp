#include "macro/parse.h"

#include <algorithm>

#include "core/text.h"

namespace kalvex {
namespace {

template <class Table>
auto FirstMatch(const Table& table, std::string_view name) -> decltype(&*table.begin()) {
  for (const auto& row : table) {
    if (StartsWithIgnoringCase(row.name, name)) return &row;
  }
  return nullptr;
}

std::string Quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

std::string NamesOf(std::span<const MacroParam> params) {
  std::string names;
  for (const MacroParam& param : params) names += (names.empty() ? "" : ", ") + std::string(param.name);
  return names;
}

class Parser {
 public:
  Parser(std::string_view text, MacroFault& fault) : text_(text), fault_(fault) {}

  bool AtEnd() const { return at_ == text_.size(); }

  bool TakeStatement(MacroStatement& statement) {
    statement.at = at_;
    std::string_view name;
    if (!TakeName(name, "a command name")) return false;
    statement.command = FindCommand(name);
    if (!statement.command) {
      at_ = statement.at;
      return Fail("unknown command " + Quoted(name), "a command name");
    }
    statement.block.assign(statement.command->params.size(), MacroSlot{});
    if (Take(';')) return true;
    if (!Take('(')) return FailHere("'(' or ';' after " + std::string(statement.command->name));
    return TakeParams(statement) && (Take(';') || FailHere("';'"));
  }

 private:
  char Next() const { return AtEnd() ? '\0' : text_[at_]; }

  bool Take(char c) {
    if (AtEnd() || text_[at_] != c) return false;
    ++at_;
    return true;
  }

  template <class Accepts>
  void SkipWhile(Accepts accepts) {
    while (!AtEnd() && accepts(text_[at_])) ++at_;
  }

  bool Fail(const std::string& found, const std::string& expected) {
    fault_.at = at_;
    fault_.description = found + "; expected " + expected;
    return false;
  }

  bool FailHere(const std::string& expected) {
    return Fail(AtEnd() ? "the file ends" : "found " + Quoted(text_.substr(at_, 1)), expected);
  }

  bool TakeName(std::string_view& name, const std::string& expected) {
    if (!IsAsciiLetter(Next())) return FailHere(expected);
    const std::size_t start = at_;
    SkipWhile([](char c) { return IsAsciiLetter(c) || IsAsciiDigit(c); });
    name = text_.substr(start, at_ - start);
    return true;
  }

  bool TakeParams(MacroStatement& statement) {
    while (!Take(')')) {
      if (!TakeItem(statement)) return false;
      if (!Take(',') && Next() != ')') return FailHere("',' or ')' after a value");
    }
    return true;
  }

  bool TakeItem(MacroStatement& statement) {
    const std::size_t start = at_;
    const MacroCommand& command = *statement.command;
    std::string_view name;
    if (!TakeName(name, "a parameter name or ')'")) return false;
    const MacroParam* const param = FindParam(command, name);
    if (!param) {
      at_ = start;
      const std::string known =
          command.params.empty() ? "')', since it has no parameters" : "one of " + NamesOf(command.params);
      return Fail("unknown parameter " + Quoted(name) + " of " + command.name, known);
    }
    if (!Take('=')) return FailHere("'=' after " + std::string(param->name));
    MacroSlot slot;
    slot.given = true;
    if (!TakeValue(*param, slot)) return false;
    statement.block[static_cast<std::size_t>(param - command.params.data())] = slot;
    return true;
  }

  bool TakeValue(const MacroParam& param, MacroSlot& slot) {
    switch (param.type) {
      case ParamType::kInteger:
        return TakeLoopColumn(slot) || TakeInteger(slot) ||
               FailHere("an integer or a loop column for " + std::string(param.name));
      case ParamType::kReal:
        return TakeLoopColumn(slot) || TakeReal(slot) ||
               FailHere("a number or a loop column for " + std::string(param.name));
      case ParamType::kString:
        return TakeString(param, slot);
    }
    return false;
  }

  bool TakeLoopColumn(MacroSlot& slot) {
    if (Next() != '%' || at_ + 1 >= text_.size() || !IsAsciiDigit(text_[at_ + 1])) return false;
    const std::size_t start = ++at_;
    SkipWhile(IsAsciiDigit);
    slot.loopColumn = IntegerOf(text_.substr(start, at_ - start)) - 1;
    return true;
  }

  bool TakeInteger(MacroSlot& slot) {
    const char c = Next();
    if (!IsAsciiDigit(c) && c != '+' && c != '-') return false;
    const std::size_t start = at_++;
    SkipWhile(IsAsciiDigit);
    slot.intValue = IntegerOf(text_.substr(start, at_ - start));
    return true;
  }

  // The scan accepts more than the conversion reads: "1-2" is scanned as one number and counts as 1.
  bool TakeReal(MacroSlot& slot) {
    const char c = Next();
    if (!IsAsciiDigit(c) && c != '+' && c != '-' && c != '.') return false;
    const std::size_t start = at_++;
    SkipWhile([](char d) { return IsAsciiDigit(d) || d == '+' || d == '-' || d == '.' || d == 'E' || d == 'e'; });
    slot.realValue = RealOf(text_.substr(start, at_ - start));
    return true;
  }

  bool TakeString(const MacroParam& param, MacroSlot& slot) {
    if (!Take('"')) return FailHere("a text in quotes for " + std::string(param.name));
    const std::size_t end = text_.find('"', at_);
    if (end == std::string_view::npos) return Fail("a text without its closing quote", "'\"'");
    slot.text = CutToBytes(text_.substr(at_, end - at_), static_cast<std::size_t>(param.length));
    at_ = end + 1;
    return true;
  }

  std::string_view text_;
  MacroFault& fault_;
  std::size_t at_ = 0;
};

}  // namespace

const MacroCommand* FindCommand(std::string_view name) {
  const MacroCommand* const command = FirstMatch(MacroCommandTable(), name);
  return command ? command : FirstMatch(MacroExtraTable(), name);
}

const MacroParam* FindParam(const MacroCommand& command, std::string_view name) {
  return FirstMatch(command.params, name);
}

bool ParseMacro(std::string_view compact, std::vector<MacroStatement>& statements, MacroFault& fault) {
  // The number of semicolons, including those inside of strings, is an upper bound for the number of statements.
  const auto most = static_cast<std::size_t>(std::count(compact.begin(), compact.end(), ';'));
  Parser parser(compact, fault);
  while (statements.size() < most && !parser.AtEnd()) {
    MacroStatement statement;
    if (!parser.TakeStatement(statement)) return false;
    statements.push_back(std::move(statement));
  }
  return true;
}

}  // namespace kalvex

#include "macro/run_macro.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "core/files.h"
#include "core/interrupt.h"
#include "macro/clean.h"
#include "macro/command_table.h"
#include "macro/loop_file.h"
#include "macro/parse.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

std::string_view WithoutQuotes(std::string_view name) {
  const bool quoted = name.size() >= 2 && name.front() == '"' && name.back() == '"';
  return quoted ? name.substr(1, name.size() - 2) : name;
}

struct Macro {
  std::string fileName;
  std::string text;
  std::string compact;
  std::vector<MacroStatement> statements;
};

// Line and column of a place in the compact text. The end of the text stands for the end of the file.
LineAndColumn SourcePlace(const Macro& macro, std::size_t at) {
  std::vector<std::uint32_t> sources;
  CleanMacro(macro.text, &sources);
  return PlaceOf(macro.text, at < sources.size() ? sources[at] : macro.text.size());
}

std::optional<Macro> ReadMacro(Desk& desk, std::string_view fileName) {
  Macro macro;
  macro.fileName = WithoutQuotes(fileName);
  std::string& fault = desk.macro.fault;
  fault.clear();
  if (macro.fileName.empty()) {
    fault = "no macro file is given";
    return std::nullopt;
  }
  if (!ReadTextFile(macro.fileName, macro.text)) {
    fault = macro.fileName + ": the macro file cannot be opened";
    return std::nullopt;
  }
  macro.compact = CleanMacro(macro.text);
  MacroFault found;
  if (ParseMacro(macro.compact, macro.statements, found)) return macro;
  const LineAndColumn place = SourcePlace(macro, found.at);
  fault =
      macro.fileName + ':' + std::to_string(place.line) + ':' + std::to_string(place.column) + ": " + found.description;
  return std::nullopt;
}

bool Calls(const MacroStatement& statement, std::string_view command) { return statement.command->name == command; }

class Executor {
 public:
  Executor(Desk& desk, const Macro& macro) : desk_(desk), macro_(macro) {}

  int Run() {
    while (pc_ < macro_.statements.size()) {
      switch (Execute(macro_.statements[pc_])) {
        case MacroResult::kNext:
          ++pc_;
          break;
        case MacroResult::kBeginLoop:
          if (!BeginLoop()) return kMacroFailed;
          break;
        case MacroResult::kEndLoop:
          EndLoop();
          break;
        case MacroResult::kFail:
          return kMacroFailed;
        case MacroResult::kQuit:
          return kMacroQuit;
        case MacroResult::kStop:
          return kMacroEnded;
      }
    }
    return kMacroEnded;
  }

 private:
  MacroResult Execute(const MacroStatement& statement) {
    MacroBlock block = statement.block;
    if (inLoop_) SubstituteLoopValues(*statement.command, desk_.macro.loopRows[loopRow_], block);
    MacroCall call{desk_, desk_.session};
    const MacroResult result = statement.command->run(call, block);
    desk_.session.EndGesture();  // each statement is a step of its own
    ++desk_.macro.statements;
    if (desk_.macro.verbose) {
      std::string said = result == MacroResult::kEndLoop ? EndLoopText() : call.said;
      for (const std::string& warning : call.warnings) said += "; " + warning;
      Say(said);
    } else {
      for (const std::string& warning : call.warnings) Say(warning);
    }
    return call.didNothing ? AfterNothing(call, result) : result;
  }

  // A line on standard error about the present statement.
  void Say(const std::string& text) { std::fprintf(stderr, "%s%s\n", PlaceOfStatement().c_str(), text.c_str()); }

  std::string PlaceOfStatement() {
    if (lines_.empty()) FindLines();
    return macro_.fileName + ':' + std::to_string(lines_[pc_]) + ": " + macro_.statements[pc_].command->name + ": ";
  }

  void FindLines() {
    std::vector<std::uint32_t> sources;
    CleanMacro(macro_.text, &sources);
    std::size_t from = 0;
    int line = 1;
    for (const MacroStatement& statement : macro_.statements) {
      for (; from < sources[statement.at]; ++from) line += macro_.text[from] == '\n';
      lines_.push_back(line);
    }
  }

  MacroResult AfterNothing(const MacroCall& call, MacroResult result) {
    MacroState& state = desk_.macro;
    ++state.didNothing;
    if (state.onError == OnError::kGoOn) return result;
    if (state.onError == OnError::kNextPass && inLoop_) {
      ++state.failedPasses;
      if (!state.verbose) Say(call.said);
      GoToEndOfLoop();
      return MacroResult::kEndLoop;
    }
    state.fault = PlaceOfStatement() + call.said;
    return MacroResult::kFail;
  }

  // Without an EndLoop the rest of the macro is the loop.
  void GoToEndOfLoop() {
    while (pc_ + 1 < macro_.statements.size() && !Calls(macro_.statements[pc_], "EndLoop")) ++pc_;
  }

  // The verbose text of EndLoop. Its handler does not know whether another pass follows.
  std::string EndLoopText() const {
    if (!inLoop_) return "nothing done: there is no loop";
    const std::size_t passes = desk_.macro.loopRows.size();
    if (loopRow_ + 1 == passes) return "the loop has ended, number of passes: " + std::to_string(passes);
    return "continues with pass " + std::to_string(loopRow_ + 2) + " of " + std::to_string(passes);
  }

  bool BeginLoop() {
    const std::string& file = desk_.macro.loopFile;
    if (!ReadLoopFile(file, desk_.macro.loopRows)) {
      const LineAndColumn place = SourcePlace(macro_, macro_.statements[pc_].at);
      desk_.macro.fault = macro_.fileName + ':' + std::to_string(place.line) + ':' + std::to_string(place.column) +
                          ": the loop file '" + file +
                          "' cannot be opened or is empty; it should have a line for each pass";
      return false;
    }
    inLoop_ = true;
    loopRow_ = 0;
    loopStart_ = pc_++;
    return true;
  }

  void EndLoop() {
    if (inLoop_ && !InterruptWatch::IsInterrupted() && ++loopRow_ < desk_.macro.loopRows.size()) {
      pc_ = loopStart_ + 1;
      return;
    }
    inLoop_ = false;
    ++pc_;
  }

  Desk& desk_;
  const Macro& macro_;
  std::vector<int> lines_;  // the line of each statement, for verbose output
  std::size_t pc_ = 0;
  bool inLoop_ = false;
  std::size_t loopStart_ = 0;
  std::size_t loopRow_ = 0;
};

bool StepsBack(const Macro& macro) {
  return std::any_of(macro.statements.begin(), macro.statements.end(),
                     [](const MacroStatement& statement) { return Calls(statement, "StepBack"); });
}

void TakeOptions(Session& session, const FitOptions& options) {
  if (!(options == session.Fit().options)) session.SetFitOptions(options).Ignore();
}

void BeginWith(Desk& desk, Defaults defaults) {
  desk.macro.onError = OnErrorOf(defaults);
  TakeOptions(desk.session, WithDefaults(desk.session.Fit().options, defaults));
}

// One line on what a person would not notice otherwise.
void TellCounts(const MacroState& state) {
  const auto tell = [](int count, int of, const char* what) { std::fprintf(stderr, "%d of %d %s\n", count, of, what); };
  if (state.failedPasses > 0) {
    tell(state.failedPasses, static_cast<int>(state.loopRows.size()), "passes of the loop failed");
  } else if (state.didNothing > 0 && state.onError == OnError::kGoOn && !state.verbose) {
    tell(state.didNothing, state.statements, "statements did nothing: --verbose tells which");
  }
}

}  // namespace

int RunMacro(Desk& desk, std::string_view fileName) {
  MacroState& state = desk.macro;
  Session& session = desk.session;
  if (state.running) return kMacroAlreadyRunning;
  state.running = true;
  // The first interrupt ends a fit, and the loop after this pass, so that the rest of the macro saves the results.
  const InterruptWatch watch;
  session.EndGesture();
  const FitOptions before = session.Fit().options;
  BeginWith(desk, state.defaults);
  session.EndGesture();
  const std::optional<Macro> macro = ReadMacro(desk, fileName);
  if (state.endsProgram) {
    session.ForgetHistory();
    // Saved steps would take a quarter of the time of a series of small fits.
    if (macro && !StepsBack(*macro)) session.SetHistoryBound(0);
  }
  state.statements = state.didNothing = state.failedPasses = 0;
  const int result = macro ? Executor(desk, *macro).Run() : kMacroFailed;
  if (result >= 0) TellCounts(state);
  if (!state.endsProgram) TakeOptions(session, WithDefaultsOf(session.Fit().options, before));
  state.running = false;
  return result;
}

int CheckMacro(Desk& desk, std::string_view fileName) { return ReadMacro(desk, fileName) ? kMacroEnded : kMacroFailed; }

}  // namespace kalvex

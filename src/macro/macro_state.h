// State of the macro interpreter. A desk has one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "session/session.h"

namespace kalvex {

inline constexpr std::size_t kMaxLoopRows = 1000;
inline constexpr std::size_t kMaxLoopTokens = 200;
inline constexpr std::size_t kLoopTokenSize = 20;

// One line of a loop file: its tokens in consecutive fields of 20 characters. A token that fills its field has no
// terminator, so reading it continues into the next field.
struct LoopRow {
  std::string fields;
  std::size_t TokenCount() const { return fields.size() / kLoopTokenSize; }
};

// The text from the start of a token's field to the first free character.
std::string_view LoopToken(const LoopRow& row, std::size_t column);

// What follows a statement that cannot do what it says.
enum class OnError {
  kGoOn,      // the next statement
  kStop,      // the macro ends
  kNextPass,  // the next pass of the loop; without a loop the macro ends
};

struct MacroState {
  Defaults defaults = Defaults::kFormer;  // those at the start of a macro
  OnError onError = OnError::kGoOn;
  int statements = 0;  // that were executed
  int didNothing = 0;  // those of them that could not do what they say
  int failedPasses = 0;
  bool running = false;
  bool neverSuspend = false;  // the user chose that Suspend never asks again in this process
  std::string loopFile;       // as BeginLoop gave it
  std::vector<LoopRow> loopRows;
  bool endsProgram = false;  // no window or other macro follows
  bool verbose = false;      // report on standard error what each statement did
  bool progress = false;     // report on standard error how a fit ended
  std::string fault;         // why the last macro could not run: place, what was found, what was expected
};

inline OnError OnErrorOf(Defaults defaults) { return defaults == Defaults::kPresent ? OnError::kStop : OnError::kGoOn; }

}  // namespace kalvex

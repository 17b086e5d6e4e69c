// State of the macro interpreter, of which there is one on a desk.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kalvex {

inline constexpr std::size_t kMaxLoopRows = 1000;
inline constexpr std::size_t kMaxLoopTokens = 200;
inline constexpr std::size_t kLoopTokenSize = 20;

// One line of a loop file: its tokens in fields of 20 characters one behind the other. A token that fills its field has
// no end of its own, so that reading it runs on into the next one.
struct LoopRow {
  std::string fields;
  std::size_t TokenCount() const { return fields.size() / kLoopTokenSize; }
};

// The text from the start of a token's field to the first free character.
std::string_view LoopToken(const LoopRow& row, std::size_t column);

struct MacroState {
  bool running = false;
  bool neverSuspend = false;  // the user wants no more questions from Suspend, for the rest of the process
  std::string loopFile;       // as BeginLoop gave it
  std::vector<LoopRow> loopRows;
  bool verbose = false;   // tell on standard error what each statement did
  bool progress = false;  // tell on standard error how a fit ended
  std::string fault;      // why the last macro could not run: place, what was found and what was expected
};

}  // namespace kalvex

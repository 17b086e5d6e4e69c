// State of the macro interpreter. A desk has one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

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

struct MacroState {
  bool running = false;
  bool neverSuspend = false;  // the user chose that Suspend never asks again in this process
  std::string loopFile;       // as BeginLoop gave it
  std::vector<LoopRow> loopRows;
  bool endsProgram = false;  // no window or other macro follows
  bool verbose = false;      // report on standard error what each statement did
  bool progress = false;     // report on standard error how a fit ended
  std::string fault;         // why the last macro could not run: place, what was found, what was expected
};

}  // namespace kalvex

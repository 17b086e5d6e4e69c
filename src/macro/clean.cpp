#include "macro/clean.h"

#include <algorithm>

namespace kalvex {
namespace {

struct CleanState {
  bool inComment = false;
  bool inString = false;
};

// True if the character is kept. The order of the rules matters: the first one that applies decides.
bool Keeps(char c, CleanState& state) {
  if (c == '#' && !state.inString) {
    state.inComment = true;
    return false;
  }
  if (c == '\n') {
    state = {};
    return false;
  }
  if (c == '\t') return false;
  if (c == ' ' && !state.inString) return false;
  if (c == '"' && !state.inComment) {
    state.inString = !state.inString;
    return true;
  }
  return !state.inComment;
}

}  // namespace

std::string CleanMacro(std::string_view text, std::vector<std::uint32_t>* sources) {
  // The format defines two scans of the file, of which the first only counts. The second scan starts inside the comment
  // in which the first one ended.
  CleanState state;
  for (const char c : text) Keeps(c, state);
  state.inString = false;

  std::string compact;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!Keeps(text[i], state)) continue;
    compact.push_back(text[i]);
    if (sources) sources->push_back(static_cast<std::uint32_t>(i));
  }
  return compact;
}

LineAndColumn PlaceOf(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t feed = before.rfind('\n');
  LineAndColumn place;
  place.line += static_cast<int>(std::count(before.begin(), before.end(), '\n'));
  place.column += static_cast<int>(feed == std::string_view::npos ? before.size() : before.size() - feed - 1);
  return place;
}

}  // namespace kalvex

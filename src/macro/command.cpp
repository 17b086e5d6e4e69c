#include "macro/command.h"

#include <utility>

namespace kalvex {

MacroResult MacroCall::Done(std::string what) {
  said = std::move(what);
  return MacroResult::kNext;
}

MacroResult MacroCall::Nothing(const std::string& why) {
  didNothing = true;
  return Done("nothing done: " + why);
}

MacroResult MacroCall::Missing(const char* param) { return Nothing(std::string(param) + " is missing"); }

MacroResult MacroCall::Told(const Status& status, std::string done) {
  return status.Ok() ? Done(std::move(done)) : Nothing(status.Text());
}

}  // namespace kalvex

#include "macro/handlers.h"

namespace kalvex {

// Commands of the format whose subsystem this version does not have: a macro that uses them still runs.
MacroResult LaterCommand(MacroCall& call) { return call.Nothing("this version does not have it yet"); }

}  // namespace kalvex

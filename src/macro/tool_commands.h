// Commands for files of parameters, tests of derivatives, undo and redo.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

MacroResult SaveParamsCommand(MacroCall& call, const FileParams& p);
MacroResult LoadParamsCommand(MacroCall& call, const FileParams& p);
MacroResult SaveParamsSpecialCommand(MacroCall& call, const NoParams& p);
MacroResult TestDerivativesCommand(MacroCall& call, const NoParams& p);
MacroResult TestQuantityDerivativesCommand(MacroCall& call, const NoParams& p);
MacroResult WriteGapTableCommand(MacroCall& call, const NoParams& p);
MacroResult StepBackCommand(MacroCall& call, const NoParams& p);
MacroResult StepForwardCommand(MacroCall& call, const NoParams& p);

}  // namespace kalvex

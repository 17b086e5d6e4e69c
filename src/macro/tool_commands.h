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

struct DefaultsParams {
  std::optional<int> Level;
  std::optional<std::string> OnError;
  static constexpr auto Describe() {
    return std::tuple(Param("Level", &DefaultsParams::Level), Param("OnError", &DefaultsParams::OnError, 20));
  }
};
MacroResult DefaultsCommand(MacroCall& call, const DefaultsParams& p);
MacroResult StepBackCommand(MacroCall& call, const NoParams& p);
MacroResult StepForwardCommand(MacroCall& call, const NoParams& p);

}  // namespace kalvex

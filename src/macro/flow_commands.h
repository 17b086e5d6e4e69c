// Commands that steer the macro itself and the main window.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct BeginLoopParams {
  std::optional<std::string> LoopFile;
  static constexpr auto Describe() {
    return std::to_array<ParamRow<BeginLoopParams>>({{"LoopFile", &BeginLoopParams::LoopFile, 200}});
  }
};
MacroResult BeginLoopCommand(MacroCall& call, const BeginLoopParams& p);
MacroResult EndLoopCommand(MacroCall& call, const NoParams& p);

struct MainWindowParams {
  std::optional<int> XPos, YPos, Width, Height;
  std::optional<std::string> Title;
  static constexpr auto Describe() {
    using P = MainWindowParams;
    return std::to_array<ParamRow<P>>({{"XPos", &P::XPos},
                                       {"YPos", &P::YPos},
                                       {"Width", &P::Width},
                                       {"Height", &P::Height},
                                       {"Title", &P::Title, 200}});
  }
};
MacroResult MainWindowCommand(MacroCall& call, const MainWindowParams& p);

struct WaitParams {
  std::optional<int> Time;
  static constexpr auto Describe() { return std::to_array<ParamRow<WaitParams>>({{"Time", &WaitParams::Time}}); }
};
MacroResult WaitCommand(MacroCall& call, const WaitParams& p);
MacroResult SuspendCommand(MacroCall& call, const NoParams& p);

struct ExitParams {
  std::optional<int> QuitApp;
  static constexpr auto Describe() { return std::to_array<ParamRow<ExitParams>>({{"QuitApp", &ExitParams::QuitApp}}); }
};
MacroResult ExitCommand(MacroCall& call, const ExitParams& p);

struct EchoParams {
  std::optional<std::string> Text;
  static constexpr auto Describe() { return std::to_array<ParamRow<EchoParams>>({{"Text", &EchoParams::Text, 200}}); }
};
MacroResult EchoCommand(MacroCall& call, const EchoParams& p);

}  // namespace kalvex

// Commands for the flow of the macro and for the main window.
#pragma once

#include "macro/shared_params.h"

namespace kalvex {

struct BeginLoopParams {
  std::optional<std::string> LoopFile;
  static constexpr auto Describe() { return std::tuple(Param("LoopFile", &BeginLoopParams::LoopFile, 200)); }
};
MacroResult BeginLoopCommand(MacroCall& call, const BeginLoopParams& p);
MacroResult EndLoopCommand(MacroCall& call, const NoParams& p);

struct MainWindowParams {
  std::optional<int> XPos, YPos, Width, Height;
  std::optional<std::string> Title;
  static constexpr auto Describe() {
    using P = MainWindowParams;
    return std::tuple(Param("XPos", &P::XPos), Param("YPos", &P::YPos), Param("Width", &P::Width),
                      Param("Height", &P::Height), Param("Title", &P::Title, 200));
  }
};
MacroResult MainWindowCommand(MacroCall& call, const MainWindowParams& p);

struct WaitParams {
  std::optional<int> Time;
  static constexpr auto Describe() { return std::tuple(Param("Time", &WaitParams::Time)); }
};
MacroResult WaitCommand(MacroCall& call, const WaitParams& p);
MacroResult SuspendCommand(MacroCall& call, const NoParams& p);

struct ExitParams {
  std::optional<int> QuitApp;
  static constexpr auto Describe() { return std::tuple(Param("QuitApp", &ExitParams::QuitApp)); }
};
MacroResult ExitCommand(MacroCall& call, const ExitParams& p);

struct EchoParams {
  std::optional<std::string> Text;
  static constexpr auto Describe() { return std::tuple(Param("Text", &EchoParams::Text, 200)); }
};
MacroResult EchoCommand(MacroCall& call, const EchoParams& p);

}  // namespace kalvex

#include "macro/flow_commands.h"

#include <algorithm>
#include <cstdio>

#include "windows/desk.h"

namespace kalvex {

MacroResult BeginLoopCommand(MacroCall& call, const BeginLoopParams& p) {
  if (!p.LoopFile) return call.Nothing("LoopFile is missing, so there is no loop");
  call.desk.macro.loopFile = *p.LoopFile;
  call.Done("loop over the lines of '" + *p.LoopFile + "'");
  return MacroResult::kBeginLoop;
}

MacroResult EndLoopCommand(MacroCall&, const NoParams&) { return MacroResult::kEndLoop; }

MacroResult MainWindowCommand(MacroCall& call, const MainWindowParams& p) {
  MainWindow& window = call.desk.mainWindow;
  if (PlaceIfGiven(p, window)) {
    SetIfGiven(window.width, p.Width);
    SetIfGiven(window.height, p.Height);
  }
  if (p.Title) window.title = p.Title->empty() ? texts::kMainTitle : texts::kMainTitle + (' ' + *p.Title);
  return call.Done("main window '" + window.title + "'");
}

MacroResult WaitCommand(MacroCall& call, const WaitParams& p) {
  Platform& platform = call.session.GetPlatform();
  platform.PumpEvents();
  if (!p.Time) return call.Done("pending events handled");
  platform.Sleep(std::max(0, *p.Time));
  return call.Done("waited " + std::to_string(*p.Time) + " ms");
}

MacroResult SuspendCommand(MacroCall& call, const NoParams&) {
  MacroState& macro = call.desk.macro;
  if (macro.neverSuspend) return call.Done("continued without asking, as chosen earlier");
  const SuspendAnswer answer = call.session.GetPlatform().AskSuspend();
  if (answer == SuspendAnswer::kExitMacro) {
    call.Done("macro ended");
    return MacroResult::kStop;
  }
  macro.neverSuspend = answer == SuspendAnswer::kContinueAndNeverAskAgain;
  return call.Done("continued");
}

MacroResult ExitCommand(MacroCall& call, const ExitParams& p) {
  const bool quit = p.QuitApp.value_or(0) != 0;
  call.Done(quit ? "macro ended, program quits" : "macro ended");
  return quit ? MacroResult::kQuit : MacroResult::kStop;
}

MacroResult EchoCommand(MacroCall& call, const EchoParams& p) {
  std::printf("%s\n", p.Text.value_or("").c_str());
  std::fflush(stdout);
  return call.Done("one line printed");
}

}  // namespace kalvex

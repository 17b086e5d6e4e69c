#include <algorithm>
#include <cstdio>

#include "macro/handlers.h"
#include "program/program.h"

namespace kalvex {

MacroResult BeginLoopCommand(MacroCall& call) {
  const auto file = call.Text("LoopFile");
  if (!file) return call.Nothing("LoopFile is missing, so there is no loop");
  call.program.macro.loopFile = *file;
  call.Done("loop over the lines of '" + *file + "'");
  return MacroResult::kBeginLoop;
}

MacroResult EndLoopCommand(MacroCall&) { return MacroResult::kEndLoop; }

MacroResult MainWindowCommand(MacroCall& call) {
  MainWindow& window = call.program.mainWindow;
  const auto x = call.Int("XPos"), y = call.Int("YPos");
  if (x && y) {
    window.x = *x;
    window.y = *y;
    window.width = call.Int("Width").value_or(window.width);
    window.height = call.Int("Height").value_or(window.height);
  }
  if (const auto title = call.Text("Title"))
    window.title = title->empty() ? texts::kMainTitle : texts::kMainTitle + (' ' + *title);
  return call.Done("main window '" + window.title + "'");
}

MacroResult WaitCommand(MacroCall& call) {
  Platform& platform = *call.program.platform;
  platform.PumpEvents();
  const auto time = call.Int("Time");
  if (!time) return call.Done("events delivered");
  platform.Sleep(std::max(0, *time));
  return call.Done("waited " + std::to_string(*time) + " ms");
}

MacroResult SuspendCommand(MacroCall& call) {
  MacroState& macro = call.program.macro;
  if (macro.neverSuspend) return call.Done("goes on, as asked for before");
  Platform& platform = *call.program.platform;
  const SuspendAnswer answer = platform.AskSuspend();
  if (answer == SuspendAnswer::kExitMacro) {
    call.Done("macro ended");
    return MacroResult::kStop;
  }
  macro.neverSuspend = answer == SuspendAnswer::kContinueAndNeverAskAgain;
  return call.Done("goes on");
}

MacroResult ExitCommand(MacroCall& call) {
  const bool quit = call.Int("QuitApp").value_or(0) != 0;
  call.Done(quit ? "macro ended, program quits" : "macro ended");
  return quit ? MacroResult::kQuit : MacroResult::kStop;
}

MacroResult EchoCommand(MacroCall& call) {
  const std::string text = call.Text("Text").value_or("");
  std::printf("%s\n", text.c_str());
  std::fflush(stdout);
  return call.Done("one line printed");
}

}  // namespace kalvex

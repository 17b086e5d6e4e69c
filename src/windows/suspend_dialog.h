// The dialog with which a macro waits for a person.
#pragma once

#include <optional>

#include "core/platform.h"

namespace kalvex {

struct SuspendDialog {
  bool open = false;
  bool placed = false;  // it was shown before: reopen at its last position, else centred
  int x = 0;
  int y = 0;
  bool neverAgain = false;  // the check box is ticked
  SuspendAnswer answer = SuspendAnswer::kContinue;
};

void OpenSuspendDialog(SuspendDialog& dialog);
// Stores the present position of the dialog, set by the screen or by the user.
void PlaceSuspendDialog(SuspendDialog& dialog, int x, int y);
// The two buttons. Only "Continue" reads the check box.
void PressContinue(SuspendDialog& dialog);
void PressExitMacro(SuspendDialog& dialog);
// The answer after the dialog is closed. If the program quits while the dialog is open, the answer is "Continue".
SuspendAnswer AnswerOf(const SuspendDialog& dialog);

}  // namespace kalvex

// The dialog with which a macro waits for a person.
#pragma once

#include <optional>

#include "core/platform.h"

namespace kalvex {

struct SuspendDialog {
  bool open = false;
  bool placed = false;  // the user has seen it: it comes back where it was left, and is centred the first time
  int x = 0;
  int y = 0;
  bool neverAgain = false;  // its check box
  SuspendAnswer answer = SuspendAnswer::kContinue;
};

void OpenSuspendDialog(SuspendDialog& dialog);
// Where the dialog stands now, by the screen's own placing or by the user's hand.
void PlaceSuspendDialog(SuspendDialog& dialog, int x, int y);
// The two buttons. Only "Continue" looks at the check box.
void PressContinue(SuspendDialog& dialog);
void PressExitMacro(SuspendDialog& dialog);
// The answer once the dialog is closed; a dialog that is still open, because the program quits, counts as "Continue".
SuspendAnswer AnswerOf(const SuspendDialog& dialog);

}  // namespace kalvex

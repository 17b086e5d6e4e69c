#include "windows/suspend_dialog.h"

namespace kalvex {

void OpenSuspendDialog(SuspendDialog& dialog) {
  dialog.open = true;
  dialog.neverAgain = false;
  dialog.answer = SuspendAnswer::kContinue;
}

void PlaceSuspendDialog(SuspendDialog& dialog, int x, int y) {
  dialog.placed = true;
  dialog.x = x;
  dialog.y = y;
}

void PressContinue(SuspendDialog& dialog) {
  dialog.open = false;
  dialog.answer = dialog.neverAgain ? SuspendAnswer::kContinueAndNeverAskAgain : SuspendAnswer::kContinue;
}

void PressExitMacro(SuspendDialog& dialog) {
  dialog.open = false;
  dialog.answer = SuspendAnswer::kExitMacro;
}

SuspendAnswer AnswerOf(const SuspendDialog& dialog) { return dialog.open ? SuspendAnswer::kContinue : dialog.answer; }

}  // namespace kalvex

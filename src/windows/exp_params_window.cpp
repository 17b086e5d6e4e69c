#include "windows/exp_params_window.h"

#include "core/text.h"
#include "windows/desk.h"

namespace kalvex {
namespace {

constexpr int kCellDigits = 5;

const ModelParam& ParamOf(const Desk& desk, int index) { return *desk.session.FindParam(ParamRef::Exp(index)); }

void SelectUnderCursor(Desk& desk) {
  if (SelectParam(desk, ParamRef::Exp(desk.expParams.selectedIndex))) desk.expParams.paramSelected = true;
}

// Moving the cursor changes no value, so the fit is not notified.
void ShowCursor(Desk& desk) {
  SelectUnderCursor(desk);
  desk.session.RedrawExpParams();
}

void Commit(Desk& desk) {
  if (!desk.expParams.editor.open) return;
  const auto number = TakeNumber(desk.expParams.editor);
  const ParamRef param = ParamRef::Exp(desk.expParams.selectedIndex);
  const bool changed = number.has_value() && desk.session.SetParam(param, {.value = number}).Ok();
  changed ? SelectUnderCursor(desk) : ShowCursor(desk);
}

void MoveTo(Desk& desk, int index) {
  Commit(desk);
  desk.expParams.selectedIndex = (index + kExpParamCount) % kExpParamCount;
  ShowCursor(desk);
}

void Flip(Desk& desk, int index) {
  desk.session.SetParam(ParamRef::Exp(index), {.adjustable = ParamOf(desk, index).adjustable ? 0u : 1u}).Ignore();
  SelectUnderCursor(desk);
}

void OpenEditorUnderCursor(Desk& desk) {
  OpenEditor(desk.expParams.editor, ParamOf(desk, desk.expParams.selectedIndex).value);
}

void Sideways(Desk& desk, bool right) {
  if (desk.expParams.editor.open && MoveCaret(desk.expParams.editor, right)) return;
  MoveTo(desk, desk.expParams.selectedIndex + (right ? 1 : -1));
}

}  // namespace

void OpenExpParams(Desk& desk) {
  ExpParamsWindow& window = desk.expParams;
  window.wantsFront = true;
  if (window.open) return;
  window = {};  // at its initial position
  window.open = window.wantsFront = true;
  SelectUnderCursor(desk);
}

void CloseExpParams(Desk& desk) {
  ActivateExpParams(desk, false);
  desk.expParams.open = false;
  desk.expParams.paramSelected = false;
  DeselectExpParams(desk);
}

void ActivateExpParams(Desk& desk, bool active) {
  if (!active) Commit(desk);
  desk.expParams.windowShown = active;
}

ExpParamLine ExpParamLineOf(const Desk& desk, int index) {
  const ExpParamsWindow& window = desk.expParams;
  const ModelParam& param = ParamOf(desk, index);
  const bool marked = index == window.selectedIndex && (window.windowShown || window.paramSelected);
  return {std::string(NameOf(param)), CellOfParam(param, TextG(param.value, kCellDigits) + ' ', marked)};
}

bool PressExpParamsKey(Desk& desk, Key key) {
  ExpParamsWindow& window = desk.expParams;
  if (!window.windowShown || (window.editor.open && BelongsToEditor(key))) return false;
  if (desk.session.Fit().FitRunning) return true;
  switch (key) {
    case Key::kEnter:
      window.editor.open ? Commit(desk) : OpenEditorUnderCursor(desk);
      return true;
    case Key::kUp:
      MoveTo(desk, window.selectedIndex - 1);
      return true;
    case Key::kDown:
    case Key::kTab:
      MoveTo(desk, window.selectedIndex + 1);
      return true;
    case Key::kLeft:
    case Key::kRight:
      Sideways(desk, key == Key::kRight);
      return true;
    case Key::kPageUp:
      MoveTo(desk, 0);
      return true;
    case Key::kPageDown:
      MoveTo(desk, kExpParamCount - 1);
      return true;
    case Key::kEscape:
      window.editor = {};
      return true;
    case Key::kSpace:
      Flip(desk, window.selectedIndex);
      return true;
    default:
      return false;
  }
}

bool PressExpParamsDigit(Desk& desk, char digit) {
  ExpParamsWindow& window = desk.expParams;
  if (!window.windowShown || window.editor.open || desk.session.Fit().FitRunning) return false;
  OpenEditorWith(window.editor, digit);
  return true;
}

void PressExpParam(Desk& desk, int index) {
  if (desk.session.Fit().FitRunning) return;
  MoveTo(desk, index);
}

void DoublePressExpParam(Desk& desk, int index) {
  if (desk.session.Fit().FitRunning) return;
  MoveTo(desk, index);
  OpenEditorUnderCursor(desk);
}

void RightPressExpParam(Desk& desk, int index) {
  if (desk.session.Fit().FitRunning) return;
  Commit(desk);
  Flip(desk, index);
}

}  // namespace kalvex

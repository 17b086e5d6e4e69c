#include "windows/exp_params_window.h"

#include "core/text.h"
#include "records/param_value.h"
#include "windows/desk.h"
#include "windows/redraw.h"

namespace kalvex {
namespace {

constexpr int kCellDigits = 5;

ModelParam& ParamOf(const WindowDesk& desk, int index) {
  return desk.params.ExpParams[static_cast<std::size_t>(index)];
}
ModelParam& ParamUnderCursor(const WindowDesk& desk) { return ParamOf(desk, desk.expParams.selectedIndex); }

void SelectUnderCursor(const WindowDesk& desk) {
  ParamPlace place;
  place.Where = ParamKind::kExp;
  place.nep = desk.expParams.selectedIndex;
  if (SelectParam(desk, kExpParamsOwner, place)) desk.expParams.paramSelected = true;
}

// Moving the cursor leaves the values alone, so the fit need not hear of it.
void Refresh(const WindowDesk& desk, bool quiet) {
  SelectUnderCursor(desk);
  RefreshExpParams(desk.notices, desk.params, quiet);
}

void Commit(const WindowDesk& desk) {
  if (!desk.expParams.editor.open) return;
  const auto number = TakeNumber(desk.expParams.editor);
  if (!number || IsFrozen(desk)) return Refresh(desk, true);
  SetValue(desk.params, ParamUnderCursor(desk), *number);
  RedrawDirty(desk.notices, desk.params);
  Refresh(desk, false);
}

void MoveTo(const WindowDesk& desk, int index) {
  Commit(desk);
  desk.expParams.selectedIndex = (index + kExpParamCount) % kExpParamCount;
  Refresh(desk, true);
}

void Flip(const WindowDesk& desk, int index) {
  ModelParam& param = ParamOf(desk, index);
  SetAdjustable(desk.params, param, param.adjustable ? 0 : 1);
  RedrawDirty(desk.notices, desk.params);
  Refresh(desk, false);
}

void Sideways(const WindowDesk& desk, bool right) {
  if (desk.expParams.editor.open && MoveCaret(desk.expParams.editor, right)) return;
  MoveTo(desk, desk.expParams.selectedIndex + (right ? 1 : -1));
}

}  // namespace

void OpenExpParams(const WindowDesk& desk) {
  ExpParamsWindow& window = desk.expParams;
  window.wantsFront = true;
  if (window.open) return;
  window = {};  // at its first place
  window.open = window.wantsFront = true;
  SelectUnderCursor(desk);
}

void CloseExpParams(const WindowDesk& desk) {
  ActivateExpParams(desk, false);
  desk.expParams.open = false;
  desk.expParams.paramSelected = false;
  DeselectParam(desk, kExpParamsOwner);
}

void ActivateExpParams(const WindowDesk& desk, bool active) {
  if (!active) Commit(desk);
  desk.expParams.windowShown = active;
}

ExpParamLine ExpParamLineOf(const WindowDesk& desk, int index) {
  const ExpParamsWindow& window = desk.expParams;
  const ModelParam& param = ParamOf(desk, index);
  const bool marked = index == window.selectedIndex && (window.windowShown || window.paramSelected);
  return {std::string(NameOf(param)), CellOfParam(param, TextG(param.value, kCellDigits) + ' ', marked)};
}

bool PressExpParamsKey(const WindowDesk& desk, Key key) {
  ExpParamsWindow& window = desk.expParams;
  if (!window.windowShown || (window.editor.open && BelongsToEditor(key))) return false;
  if (IsFrozen(desk)) return true;
  switch (key) {
    case Key::kEnter:
      window.editor.open ? Commit(desk) : OpenEditor(window.editor, ParamUnderCursor(desk).value);
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

bool PressExpParamsDigit(const WindowDesk& desk, char digit) {
  ExpParamsWindow& window = desk.expParams;
  if (!window.windowShown || window.editor.open || IsFrozen(desk)) return false;
  OpenEditorWith(window.editor, digit);
  return true;
}

void PressExpParam(const WindowDesk& desk, int index) {
  if (IsFrozen(desk)) return;
  MoveTo(desk, index);
}

void DoublePressExpParam(const WindowDesk& desk, int index) {
  if (IsFrozen(desk)) return;
  MoveTo(desk, index);
  OpenEditor(desk.expParams.editor, ParamUnderCursor(desk).value);
}

void RightPressExpParam(const WindowDesk& desk, int index) {
  if (IsFrozen(desk)) return;
  Commit(desk);
  Flip(desk, index);
}

}  // namespace kalvex

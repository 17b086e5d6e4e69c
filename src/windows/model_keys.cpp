#include "windows/model_keys.h"

#include <algorithm>

#include "windows/cell_editor.h"
#include "windows/desk.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

// Up by some rows, the leading parameter standing above the first one.
void GoUp(Model& model, int rows) {
  ModelWindow& window = model.window;
  if (!window.rowSelected) return;
  window.rowSelected = window.curRow > 0;
  window.curRow = std::max(0, window.curRow - rows);
}

void GoDown(Model& model, int rows) {
  ModelWindow& window = model.window;
  window.curRow = window.rowSelected ? std::min(window.curRow + rows, RowCount(model) - 1) : 0;
  window.rowSelected = true;
}

void GoSideways(Model& model, bool right) {
  ModelWindow& window = model.window;
  if (window.rowSelected) {
    constexpr int kColumnCount = kLastParamColumn - kFirstParamColumn + 1;
    const int from = window.curColumn - kFirstParamColumn;
    window.curColumn = kFirstParamColumn + (from + (right ? 1 : kColumnCount - 1)) % kColumnCount;
  } else if (right) {
    window.rowSelected = true;
    window.curRow = 0;
    window.curColumn = kFirstParamColumn;
  }
}

template <class Move>
bool MoveCursor(const WindowDesk& desk, Model& model, Move move) {
  CommitEdit(desk, model);
  move();
  ShowCursor(desk, model);
  return true;
}

bool Press(const WindowDesk& desk, Model& model, ModelButton button) {
  PressModelButton(desk, model, button);
  return true;
}

bool PressEnter(const WindowDesk& desk, Model& model) {
  model.window.editor.open ? CommitEdit(desk, model) : EditParam(model);
  return true;
}

}  // namespace

bool PressModelKey(const WindowDesk& desk, Model& model, Key key) {
  ModelWindow& window = model.window;
  if (!window.windowShown || (window.editor.open && BelongsToEditor(key))) return false;
  if (IsFrozen(desk)) return true;
  HoldCursor(model);
  switch (key) {
    case Key::kEnter:
      return PressEnter(desk, model);
    case Key::kUp:
      return MoveCursor(desk, model, [&] { GoUp(model, 1); });
    case Key::kDown:
      return MoveCursor(desk, model, [&] { GoDown(model, 1); });
    case Key::kPageUp:
      return MoveCursor(desk, model, [&] { GoUp(model, window.visibleRows); });
    case Key::kPageDown:
      return MoveCursor(desk, model, [&] { GoDown(model, window.visibleRows); });
    case Key::kTab:
      return MoveCursor(desk, model, [&] { window.rowSelected = !window.rowSelected; });
    case Key::kLeft:
    case Key::kRight:
      if (window.editor.open && MoveCaret(window.editor, key == Key::kRight)) return true;
      return MoveCursor(desk, model, [&] { GoSideways(model, key == Key::kRight); });
    case Key::kEscape:
      window.editor = {};
      return true;
    case Key::kF2:
      return Press(desk, model, ModelButton::kSave);
    case Key::kF3:
      return Press(desk, model, ModelButton::kLoad);
    case Key::kF4:
      return Press(desk, model, ModelButton::kVdfOn);
    case Key::kF5:
      return Press(desk, model, ModelButton::kVdfKK);
    case Key::kF6:
      return Press(desk, model, ModelButton::kVdfInit);
    case Key::kF7:
      return Press(desk, model, ModelButton::kVdfFit);
    case Key::kF9:
      return Press(desk, model, ModelButton::kVdfPositive);
    case Key::kSpace:
      FlipAdjustable(desk, model, ParamUnderCursor(model));
      return true;
    case Key::kInsert:
      return Press(desk, model, ModelButton::kAdd);
    case Key::kDelete:
      return Press(desk, model, ModelButton::kRemove);
    case Key::kF8:
    case Key::kF10:
      return true;
  }
  return false;
}

bool PressModelDigit(const WindowDesk& desk, Model& model, char digit) {
  if (!model.window.windowShown || model.window.editor.open || IsFrozen(desk)) return false;
  EditParamWith(model, digit);
  return true;
}

}  // namespace kalvex

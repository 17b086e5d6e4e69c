#include "windows/model_keys.h"

#include <algorithm>

#include "windows/cell_editor.h"
#include "windows/desk.h"
#include "windows/model_window.h"

namespace kalvex {
namespace {

// Moves the cursor up by some rows. The leading parameter lies above the first row.
void GoUp(ModelWindow& window, int rows) {
  if (!window.rowSelected) return;
  window.rowSelected = window.curRow > 0;
  window.curRow = std::max(0, window.curRow - rows);
}

void GoDown(const Model& model, ModelWindow& window, int rows) {
  window.curRow = window.rowSelected ? std::min(window.curRow + rows, RowCount(model) - 1) : 0;
  window.rowSelected = true;
}

void GoSideways(ModelWindow& window, bool right) {
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
bool MoveCursor(Desk& desk, const Model& model, Move move) {
  CommitEdit(desk, model);
  move();
  ShowCursor(desk, model);
  return true;
}

bool Press(Desk& desk, const Model& model, ModelButton button) {
  PressModelButton(desk, model, button);
  return true;
}

bool PressEnter(Desk& desk, const Model& model) {
  WindowOf(desk, model).editor.open ? CommitEdit(desk, model) : EditParam(desk, model);
  return true;
}

}  // namespace

bool PressModelKey(Desk& desk, const Model& model, Key key) {
  ModelWindow& window = WindowOf(desk, model);
  if (!window.windowShown || (window.editor.open && BelongsToEditor(key))) return false;
  if (desk.session.Fit().FitRunning) return true;
  HoldCursor(model, window);
  switch (key) {
    case Key::kEnter:
      return PressEnter(desk, model);
    case Key::kUp:
      return MoveCursor(desk, model, [&] { GoUp(window, 1); });
    case Key::kDown:
      return MoveCursor(desk, model, [&] { GoDown(model, window, 1); });
    case Key::kPageUp:
      return MoveCursor(desk, model, [&] { GoUp(window, window.visibleRows); });
    case Key::kPageDown:
      return MoveCursor(desk, model, [&] { GoDown(model, window, window.visibleRows); });
    case Key::kTab:
      return MoveCursor(desk, model, [&] { window.rowSelected = !window.rowSelected; });
    case Key::kLeft:
    case Key::kRight:
      if (window.editor.open && MoveCaret(window.editor, key == Key::kRight)) return true;
      return MoveCursor(desk, model, [&] { GoSideways(window, key == Key::kRight); });
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
      FlipUnderCursor(desk, model);
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

bool PressModelDigit(Desk& desk, const Model& model, char digit) {
  const ModelWindow& window = WindowOf(desk, model);
  if (!window.windowShown || window.editor.open || desk.session.Fit().FitRunning) return false;
  EditParamWith(desk, model, digit);
  return true;
}

}  // namespace kalvex

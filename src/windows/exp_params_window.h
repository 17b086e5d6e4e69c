// The window of the six experimental parameters: one column of values with a cursor.
#pragma once

#include <string>

#include "records/model.h"
#include "windows/cell_editor.h"
#include "windows/keys.h"

namespace kalvex {

struct Desk;

struct ExpParamsWindow {
  bool open = false;
  int x = 400;
  int y = 300;
  int width = 285;
  int height = 160;
  bool wantsFront = false;     // a screen brings the window to the front, and clears this
  bool windowShown = false;    // the window is the active one, and has the keys
  bool paramSelected = false;  // the parameter control shows the parameter under the cursor
  int selectedIndex = 0;
  CellEditor editor;
};

void OpenExpParams(Desk& desk);
// "Close Window": commits what is typed and gives the selection back.
void CloseExpParams(Desk& desk);
// The window becomes the active one or stops being it, which commits what is typed.
void ActivateExpParams(Desk& desk, bool active);

// A line of the window.
struct ExpParamLine {
  std::string label;
  ParamCell value;
};
ExpParamLine ExpParamLineOf(const Desk& desk, int index);

// False if the window does not take the key, so that it goes to the editor, if that is open.
bool PressExpParamsKey(Desk& desk, Key key);
// A digit opens the editor, unless it is open.
bool PressExpParamsDigit(Desk& desk, char digit);

// The mouse on the value of one line: the left button once, twice, and the right button.
void PressExpParam(Desk& desk, int index);
void DoublePressExpParam(Desk& desk, int index);
void RightPressExpParam(Desk& desk, int index);

}  // namespace kalvex

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
  bool wantsFront = false;     // the screen brings the window to the front and clears this
  bool windowShown = false;    // the window is active and receives the keys
  bool paramSelected = false;  // the parameter control shows the parameter under the cursor
  int selectedIndex = 0;
  CellEditor editor;
};

void OpenExpParams(Desk& desk);
// "Close Window": commits the typed text and drops the selection.
void CloseExpParams(Desk& desk);
// The window becomes active or inactive. Becoming inactive commits the typed text.
void ActivateExpParams(Desk& desk, bool active);

// A line of the window.
struct ExpParamLine {
  std::string label;
  ParamCell value;
};
ExpParamLine ExpParamLineOf(const Desk& desk, int index);

// False if the window does not use the key. The key then goes to the editor if that is open.
bool PressExpParamsKey(Desk& desk, Key key);
// A digit opens the editor if it is not open.
bool PressExpParamsDigit(Desk& desk, char digit);

// Mouse on the value of a line: single click, double click, right button.
void PressExpParam(Desk& desk, int index);
void DoublePressExpParam(Desk& desk, int index);
void RightPressExpParam(Desk& desk, int index);

}  // namespace kalvex

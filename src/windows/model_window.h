// The window of a model: a table of its rows, with the leading parameter (epsInf) above and the panel of the
// variational dielectric function below. A cursor stands on the leading parameter or on an element of a row.
#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "records/model.h"
#include "session/session.h"
#include "windows/cell_editor.h"

namespace kalvex {

struct Desk;

// The position of the window, its cursor and selection, and the text that is being typed, with or without a screen.
struct ModelWindow {
  int x = 50;
  int y = 100;
  int width = 293;
  int height = 250;
  std::array<int, 6> columnWidths = {22, 50, 50, 50, 50, 50};
  bool vdfShown = false;
  bool windowShown = false;    // the window is active and receives the keys
  bool paramSelected = false;  // the parameter control shows the parameter under this window's cursor
  bool rowSelected = false;    // the cursor is on a row; otherwise it is on the leading parameter
  int curRow = 0;
  int curColumn = 1;  // column of the table; the parameters are in 1 to 3
  int topRow = 0;
  int visibleRows = 5;  // the number of rows that fit into the window, set by the screen
  CellEditor editor;
};

inline constexpr int kModelWindowMinWidth = 215, kModelWindowMinHeight = 225;

// The table shows the row's number, the three stored parameters, and two computed numbers.
enum class CellKind { kRowNumber, kStored, kComputed };
struct ModelColumn {
  CellKind kind;
  int index;  // index of the parameter or of the computed number
};
inline constexpr std::array<ModelColumn, 6> kModelColumnKinds = {{{CellKind::kRowNumber, 0},
                                                                  {CellKind::kStored, Wo},
                                                                  {CellKind::kStored, Wp},
                                                                  {CellKind::kStored, G},
                                                                  {CellKind::kComputed, 0},
                                                                  {CellKind::kComputed, 1}}};
inline constexpr int kFirstParamColumn = 1, kLastParamColumn = 3;

ParamCell EpsInfCell(const Model& model, const ModelWindow& window);
// The content of a cell; empty below the last row.
ParamCell CellOfLine(const Model& model, const ModelWindow& window, int line, int column);

// The contents of the controls, and which of them are enabled.
struct ModelControls {
  std::string vdfButton, einfGroup, rowsGroup, vdfGroup, vdfRange;
  bool remove = false, up = false, down = false;
  bool vdf = false;  // a mesh exists: "Save" of the panel and the three check boxes are enabled
  bool kk = false, on = false, fitActive = false;
};
ModelControls ModelControlsOf(const Desk& desk, const Model& model);

// Makes a model and selects its leading parameter. Null if the table of models is full.
const Model* NewModelWindow(Desk& desk);
// Closes the window and the model. Its curves are removed from the graphs and its terms from the fit.
void CloseModelWindow(Desk& desk, const Model& model);
// The window becomes active or inactive. Becoming inactive commits the typed text.
void ActivateModelWindow(Desk& desk, const Model& model, bool active);

// Selects the parameter under the cursor in the parameter control.
void SelectUnderCursor(Desk& desk, const Model& model);
// After a move of the cursor: scrolls to it and selects its parameter. The fit is not notified, because no value has
// changed.
void ShowCursor(Desk& desk, const Model& model);
// Moves the cursor back inside the rows after their number has changed.
void HoldCursor(const Model& model, ModelWindow& window);

// Opens the editor on the parameter under the cursor, with its value or with one digit; commits the typed text. A text
// that is not a number changes nothing.
void EditParam(Desk& desk, const Model& model);
void EditParamWith(Desk& desk, const Model& model, char digit);
void CommitEdit(Desk& desk, const Model& model);

enum class ModelButton {
  kFixAll,    // frees all if the leading parameter is fixed
  kVdfPanel,  // opens or closes the panel
  kSave,
  kLoad,
  kAdd,
  kRemove,  // if the cursor is on the leading parameter, only moves it to the rows
  kUp,
  kDown,
  kVdfInit,
  kVdfSave,
  kVdfLoad,
  kVdfKK,
  kVdfOn,
  kVdfFit,
  kVdfPositive,  // by key only
};
// A disabled button does nothing.
void PressModelButton(Desk& desk, const Model& model, ModelButton button);

// A field of the window under the mouse: the leading parameter, or a column of a line.
struct ModelField {
  bool epsInf = false;
  int line = 0;
  int column = 0;
};
// Single click, double click and right button. Only fields that hold a parameter react.
void PressModelField(Desk& desk, const Model& model, const ModelField& field);
void DoublePressModelField(Desk& desk, const Model& model, const ModelField& field);
void RightPressModelField(Desk& desk, const Model& model, const ModelField& field);
// Toggles whether the fit may vary the parameter under the cursor.
void FlipUnderCursor(Desk& desk, const Model& model);

// A click on the header: sorts the rows by that column, or reverses their order.
void PressModelHeader(Desk& desk, const Model& model, int column);
// The end of a drag at a column's divider, pixels.
void SetColumnWidth(ModelWindow& window, int column, int width);
// A double click on a divider: makes the column one pixel wider than its widest text. measure returns the width of a
// cell's text in pixels, which depends on its font.
template <class Measure>
void FitColumnWidth(const Model& model, ModelWindow& window, int column, Measure&& measure) {
  int widest = 0;
  for (int line = 0; line < window.visibleRows; ++line) {
    widest = std::max(widest, static_cast<int>(measure(CellOfLine(model, window, line, column))));
  }
  SetColumnWidth(window, column, widest + 1);
}

// The scroll bar: its positions count rows from 1.
struct ModelScrollBar {
  int from = 1;
  int to = 0;
  int page = 0;
  int position = 1;
  bool shown = false;
};
ModelScrollBar ScrollBarOf(const Model& model, const ModelWindow& window);
// Sets the number of rows that fit into the window. A row that is being edited stays visible.
void SetVisibleRows(const Model& model, ModelWindow& window, int rows);
// Scrolling would move the cell away from an open editor, so the typed text is committed first.
void ScrollByLines(Desk& desk, const Model& model, int lines);
void ScrollByPages(Desk& desk, const Model& model, int pages);
void ScrollToPosition(Desk& desk, const Model& model, int position);

}  // namespace kalvex

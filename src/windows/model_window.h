// The window of a model: a table of its rows with the leading parameter above and the panel of the variational
// dielectric function below. A cursor stands on the leading parameter or on an element of a row.
#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "records/model.h"
#include "session/session.h"
#include "windows/cell_editor.h"

namespace kalvex {

struct Desk;

// Where the window is, what is marked in it and what is typed into it, whether or not there is a screen.
struct ModelWindow {
  int x = 50;
  int y = 100;
  int width = 293;
  int height = 250;
  std::array<int, 6> columnWidths = {22, 50, 50, 50, 50, 50};
  bool vdfShown = false;
  bool windowShown = false;    // the window is the active one, and has the keys
  bool paramSelected = false;  // the parameter control shows the parameter under this window's cursor
  bool rowSelected = false;    // the cursor is on a row; otherwise it is on the leading parameter
  int curRow = 0;
  int curColumn = 1;  // of the window's table; those of the parameters are 1 to 3
  int topRow = 0;
  int visibleRows = 5;  // how many fit into the window, as the screen finds when it lays the window out
  CellEditor editor;
};

inline constexpr int kModelWindowMinWidth = 215, kModelWindowMinHeight = 225;

// The table shows the row's number, the three stored parameters, and two numbers that are computed.
enum class CellKind { kRowNumber, kStored, kComputed };
struct ModelColumn {
  CellKind kind;
  int index;  // of the parameter, or of the computed number
};
inline constexpr std::array<ModelColumn, 6> kModelColumnKinds = {{{CellKind::kRowNumber, 0},
                                                                  {CellKind::kStored, Wo},
                                                                  {CellKind::kStored, Wp},
                                                                  {CellKind::kStored, G},
                                                                  {CellKind::kComputed, 0},
                                                                  {CellKind::kComputed, 1}}};
inline constexpr int kFirstParamColumn = 1, kLastParamColumn = 3;

ParamCell EpsInfCell(const Model& model, const ModelWindow& window);
// Empty below the last row.
ParamCell CellOfLine(const Model& model, const ModelWindow& window, int line, int column);

// What the controls show, and which of them answer.
struct ModelControls {
  std::string vdfButton, einfGroup, rowsGroup, vdfGroup, vdfRange;
  bool remove = false, up = false, down = false;
  bool vdf = false;  // a mesh exists: "Save" of the panel and the three check boxes answer
  bool kk = false, on = false, fitActive = false;
};
ModelControls ModelControlsOf(const Desk& desk, const Model& model);

// A new model, whose leading parameter is selected; null if all places are taken.
const Model* NewModelWindow(Desk& desk);
// Closes the window and with it the model: its curves leave the graphs and its terms the fit.
void CloseModelWindow(Desk& desk, const Model& model);
// The window becomes the active one or stops being it, which commits what is typed.
void ActivateModelWindow(Desk& desk, const Model& model, bool active);

// The parameter under the cursor goes to the parameter control.
void SelectUnderCursor(Desk& desk, const Model& model);
// After a move of the cursor: scrolls to it, and selects. The fit does not hear of it, since no value has changed.
void ShowCursor(Desk& desk, const Model& model);
// Holds the cursor inside the rows, which may have become fewer.
void HoldCursor(const Model& model, ModelWindow& window);

// The editor: opening it on the parameter under the cursor, with its value or with one digit, and taking what was
// typed. A text that is no number changes nothing.
void EditParam(Desk& desk, const Model& model);
void EditParamWith(Desk& desk, const Model& model, char digit);
void CommitEdit(Desk& desk, const Model& model);

enum class ModelButton {
  kFixAll,    // or free all, if the leading parameter is fixed
  kVdfPanel,  // opens and closes the panel
  kSave,
  kLoad,
  kAdd,
  kRemove,  // while the cursor is on the leading parameter, it only moves to the rows
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
// A button that does not answer does nothing.
void PressModelButton(Desk& desk, const Model& model, ModelButton button);

// A field of the window under the mouse: the leading parameter, or a column of a line.
struct ModelField {
  bool epsInf = false;
  int line = 0;
  int column = 0;
};
// The left button once and twice, and the right one; only fields that hold a parameter answer.
void PressModelField(Desk& desk, const Model& model, const ModelField& field);
void DoublePressModelField(Desk& desk, const Model& model, const ModelField& field);
void RightPressModelField(Desk& desk, const Model& model, const ModelField& field);
// Flips whether the fit may vary the parameter under the cursor.
void FlipUnderCursor(Desk& desk, const Model& model);

// The header: a click sorts the rows by that column, or turns their order around.
void PressModelHeader(Desk& desk, const Model& model, int column);
// The end of a drag at a column's divider, pixels.
void SetColumnWidth(ModelWindow& window, int column, int width);
// A double click on a divider: one pixel wider than the widest text shown. measure gives the width of a cell's text in
// pixels, which depends on its font.
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
// How many rows fit into the window now. A row that is being typed into stays in sight.
void SetVisibleRows(const Model& model, ModelWindow& window, int rows);
// An open editor would leave its cell: what is typed is committed first.
void ScrollByLines(Desk& desk, const Model& model, int lines);
void ScrollByPages(Desk& desk, const Model& model, int pages);
void ScrollToPosition(Desk& desk, const Model& model, int position);

}  // namespace kalvex

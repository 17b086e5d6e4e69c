// The window of a model: a table of its rows with the leading parameter above and the panel of the variational
// dielectric function below. A cursor stands on the leading parameter or on an element of a row.
#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "records/model.h"
#include "windows/cell_editor.h"

namespace kalvex {

struct EvalContext;
struct WindowDesk;

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

ParamCell EpsInfCell(const Model& model);
// Empty below the last row.
ParamCell CellOfLine(const Model& model, int line, int column);

// What the controls show, and which of them answer.
struct ModelControls {
  std::string vdfButton, einfGroup, rowsGroup, vdfGroup, vdfRange;
  bool remove = false, up = false, down = false;
  bool vdf = false;  // a mesh exists: "Save" of the panel and the three check boxes answer
  bool kk = false, on = false, fitActive = false;
};
ModelControls ModelControlsOf(const EvalContext& eval, const Model& model);

// A model with a window; null if all places are taken.
Model* NewModelWindow(const WindowDesk& desk);
// Closes the window and with it the model: its curves leave the graphs and its terms the fit.
void CloseModelWindow(const WindowDesk& desk, Model& model);
// The window becomes the active one or stops being it, which commits what is typed.
void ActivateModelWindow(const WindowDesk& desk, Model& model, bool active);

// After a change of the parameters: the one under the cursor goes to the parameter control, then the graphs hear, and
// the fit unless quiet.
void RefreshAndSelect(const WindowDesk& desk, Model& model, bool quiet = false);
// After a change of the number or order of rows. The cursor is held inside.
void RefreshRowsAndSelect(const WindowDesk& desk, Model& model);
// After a move of the cursor: scrolls to it. The fit need not hear, since no value has changed.
void ShowCursor(const WindowDesk& desk, Model& model);
// Holds the cursor inside the rows, which may have become fewer.
void HoldCursor(Model& model);
// The parameter under the cursor.
ModelParam& ParamUnderCursor(Model& model);

// The editor: opening it on the parameter under the cursor, with its value or with one digit, and taking what was
// typed. A text that is no number changes nothing.
void EditParam(Model& model);
void EditParamWith(Model& model, char digit);
void CommitEdit(const WindowDesk& desk, Model& model);

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
void PressModelButton(const WindowDesk& desk, Model& model, ModelButton button);

// A field of the window under the mouse: the leading parameter, or a column of a line.
struct ModelField {
  bool epsInf = false;
  int line = 0;
  int column = 0;
};
// The left button once and twice, and the right one; only fields that hold a parameter answer.
void PressModelField(const WindowDesk& desk, Model& model, const ModelField& field);
void DoublePressModelField(const WindowDesk& desk, Model& model, const ModelField& field);
void RightPressModelField(const WindowDesk& desk, Model& model, const ModelField& field);
// Flips whether the fit may vary a parameter of the model.
void FlipAdjustable(const WindowDesk& desk, Model& model, ModelParam& param);

// The header: a click sorts the rows by that column, or turns their order around.
void PressModelHeader(const WindowDesk& desk, Model& model, int column);
// The end of a drag at a column's divider, pixels.
void SetColumnWidth(Model& model, int column, int width);
// A double click on a divider: one pixel wider than the widest text shown. measure gives the width of a cell's text in
// pixels, which depends on its font.
template <class Measure>
void FitColumnWidth(Model& model, int column, Measure&& measure) {
  int widest = 0;
  for (int line = 0; line < model.window.visibleRows; ++line) {
    widest = std::max(widest, static_cast<int>(measure(CellOfLine(model, line, column))));
  }
  SetColumnWidth(model, column, widest + 1);
}

// The scroll bar: its positions count rows from 1.
struct ModelScrollBar {
  int from = 1;
  int to = 0;
  int page = 0;
  int position = 1;
  bool shown = false;
};
ModelScrollBar ScrollBarOf(const Model& model);
// How many rows fit into the window now. A row that is being typed into stays in sight.
void SetVisibleRows(Model& model, int rows);
// An open editor would leave its cell: what is typed is committed first.
void ScrollByLines(const WindowDesk& desk, Model& model, int lines);
void ScrollByPages(const WindowDesk& desk, Model& model, int pages);
void ScrollToPosition(const WindowDesk& desk, Model& model, int position);

}  // namespace kalvex

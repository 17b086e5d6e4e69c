#include "windows/model_window.h"

#include "core/text.h"
#include "evaluation/eps_sum.h"
#include "evaluation/model_type.h"
#include "files/model_file.h"
#include "files/vdf_file.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "records/param_value.h"
#include "records/vdf_mesh.h"
#include "windows/ask_file.h"
#include "windows/desk.h"
#include "windows/redraw.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kStoredDigits = 5, kShortDigits = 3;

bool IsColumn(int column) { return column >= 0 && column < static_cast<int>(kModelColumnKinds.size()); }
const ModelColumn& ColumnAt(int column) { return kModelColumnKinds[static_cast<std::size_t>(column)]; }

int ParamOfColumn(int column) { return ColumnAt(column).index; }

std::string NumberText(double value, int digits) {
  return value == kUndefined ? texts::kUndefinedCell : TextG(value, digits) + ' ';
}

bool ShowsMark(const ModelWindow& window) { return window.windowShown || window.paramSelected; }

bool IsUnderCursor(const ModelWindow& window, int row, int column) {
  return window.rowSelected && row == window.curRow && column == window.curColumn;
}

int MostTopRow(const Model& model) { return std::max(0, RowCount(model) - model.window.visibleRows); }

void ScrollTo(Model& model, int row) { model.window.topRow = std::clamp(row, 0, MostTopRow(model)); }

ParamPlace PlaceUnderCursor(const WindowDesk& desk, const Model& model) {
  ParamPlace place;
  place.nm = SlotOf(desk.params, model);
  if (!model.window.rowSelected) return place;
  place.Where = ParamKind::kRow;
  place.nl = model.window.curRow;
  place.nc = ParamOfColumn(model.window.curColumn);
  return place;
}

// Scrolls just so far that the row of the cursor is shown.
void ScrollToCursor(Model& model) {
  HoldCursor(model);
  const ModelWindow& window = model.window;
  if (window.rowSelected)
    ScrollTo(model, std::clamp(window.topRow, window.curRow - window.visibleRows + 1, window.curRow));
}

void SelectUnderCursor(const WindowDesk& desk, Model& model) {
  HoldCursor(model);
  if (SelectParam(desk, OwnerOf(model), PlaceUnderCursor(desk, model))) model.window.paramSelected = true;
}

// The element of the rows that a field shows, null if it shows none.
ModelParam* ParamOfField(Model& model, const ModelField& field) {
  if (field.epsInf) return &model.epsInf;
  const int row = model.window.topRow + field.line;
  if (field.line < 0 || row >= RowCount(model)) return nullptr;
  if (field.column < kFirstParamColumn || field.column > kLastParamColumn) return nullptr;
  return &Cell(model, row, ParamOfColumn(field.column));
}

std::string VdfGroupText(const VarDielFunc& vdf) {
  std::string text = texts::kVdfGroupStart;
  if (vdf.mesh.empty()) return text + texts::kVdfGroupWithout;
  return text + std::to_string(vdf.mesh.size()) + texts::kVdfGroupPoints;
}

std::string VdfRangeText(const VarDielFunc& vdf) {
  if (vdf.mesh.empty()) return {};
  std::string text = "[";
  AppendUpperG(text, vdf.mesh.front().x);
  text += " - ";
  AppendUpperG(text, vdf.mesh.back().x);
  return text + ']';
}

void SaveByDialog(const WindowDesk& desk, Model& model) {
  const auto file = AskFile(desk.platform, desk.fileFolder, texts::kSaveModelFile);
  if (file) SaveModel(desk.eval, model, desk.fit.TotalChiSq, *file);
}

void LoadByDialog(const WindowDesk& desk, Model& model) {
  const auto file = AskFile(desk.platform, desk.fileFolder, texts::kLoadModelFile);
  if (file && LoadModel(model, *file) == 0) RefreshRowsAndSelect(desk, model);
}

void SaveVdfByDialog(const WindowDesk& desk, const Model& model) {
  const auto file = AskFile(desk.platform, desk.fileFolder, texts::kSaveVdfFile);
  if (file) SaveVdf(model.vdf, *file);
}

void LoadVdfByDialog(const WindowDesk& desk, Model& model) {
  const auto file = AskFile(desk.platform, desk.fileFolder, texts::kLoadVdfFile);
  if (file && LoadVdf(model.vdf, *file) == 0) RefreshAndSelect(desk, model);
}

void AddRow(const WindowDesk& desk, Model& model) {
  InsertRow(&model, model.window.curRow);
  model.window.rowSelected = true;
  RefreshRowsAndSelect(desk, model);
}

void RemoveRowUnderCursor(const WindowDesk& desk, Model& model) {
  if (!model.window.rowSelected) {
    model.window.rowSelected = true;
    ShowCursor(desk, model);
    return;
  }
  RemoveRow(&model, model.window.curRow);
  RefreshRowsAndSelect(desk, model);
}

void MoveRow(const WindowDesk& desk, Model& model, bool up) {
  up ? MoveRowUp(&model, model.window.curRow) : MoveRowDown(&model, model.window.curRow);
  model.window.curRow += up ? -1 : 1;
  RefreshRowsAndSelect(desk, model);
}

bool Answers(const ModelControls& controls, ModelButton button) {
  switch (button) {
    case ModelButton::kRemove:
      return controls.remove;
    case ModelButton::kUp:
      return controls.up;
    case ModelButton::kDown:
      return controls.down;
    case ModelButton::kVdfSave:
    case ModelButton::kVdfKK:
    case ModelButton::kVdfOn:
    case ModelButton::kVdfFit:
    case ModelButton::kVdfPositive:
      return controls.vdf;
    default:
      return true;
  }
}

// Puts the cursor on a field that holds a parameter.
void MoveCursorTo(Model& model, const ModelField& field) {
  model.window.rowSelected = !field.epsInf;
  if (field.epsInf) return;
  model.window.curRow = model.window.topRow + field.line;
  model.window.curColumn = field.column;
}

}  // namespace

ParamCell EpsInfCell(const Model& model) {
  return CellOfParam(model.epsInf, NumberText(model.epsInf.value, kShortDigits),
                     !model.window.rowSelected && ShowsMark(model.window));
}

ParamCell CellOfLine(const Model& model, int line, int column) {
  const int row = model.window.topRow + line;
  if (line < 0 || row >= RowCount(model) || !IsColumn(column)) return {};
  const int index = ColumnAt(column).index;
  switch (ColumnAt(column).kind) {
    case CellKind::kRowNumber:
      return {std::to_string(row + 1) + ' '};
    case CellKind::kComputed:
      return {NumberText(ComputedValue(&model, row, index), kShortDigits)};
    case CellKind::kStored:
      break;
  }
  const bool marked = IsUnderCursor(model.window, row, column) && ShowsMark(model.window);
  const ModelParam& param = Cell(model, row, index);
  return CellOfParam(param, NumberText(param.value, kStoredDigits), marked);
}

ModelControls ModelControlsOf(const EvalContext& eval, const Model& model) {
  const ModelWindow& window = model.window;
  const bool special = TypeOf(eval, model) != nullptr;
  ModelControls controls;
  controls.vdfButton = window.vdfShown ? texts::kVdfCloses : texts::kVdfOpens;
  controls.einfGroup = special ? texts::kCodeGroup : texts::kEinfGroup;
  controls.rowsGroup = special ? texts::kSpecialRowsGroup : texts::kPlainRowsGroup;
  controls.vdfGroup = VdfGroupText(model.vdf);
  controls.vdfRange = VdfRangeText(model.vdf);
  controls.remove = RowCount(model) > 0;
  controls.up = window.rowSelected && window.curRow > 0;
  controls.down = window.rowSelected && window.curRow + 1 < RowCount(model);
  controls.vdf = !model.vdf.mesh.empty();
  controls.kk = model.vdf.KK != 0;
  controls.on = model.vdf.On != 0;
  controls.fitActive = model.vdf.FitActive != 0;
  return controls;
}

Model* NewModelWindow(const WindowDesk& desk) {
  if (IsFrozen(desk)) return nullptr;
  Model* const model = CreateModel(desk.params);
  if (model) RefreshAndSelect(desk, *model);
  return model;
}

void CloseModelWindow(const WindowDesk& desk, Model& model) {
  if (IsFrozen(desk)) return;
  const std::uint32_t number = model.number;
  DeselectParam(desk, OwnerOf(model));
  if (desk.vdfDialog.model == number) desk.vdfDialog.open = false;
  CloseModelRecord(model);
  NotifyGraphs(desk.notices, GraphEvent::kModelClosed, number);
  NotifyFit(desk.notices, FitNotice::kModelGone, number);
}

void ActivateModelWindow(const WindowDesk& desk, Model& model, bool active) {
  if (!active) CommitEdit(desk, model);
  model.window.windowShown = active;
}

void RefreshAndSelect(const WindowDesk& desk, Model& model, bool quiet) {
  SelectUnderCursor(desk, model);
  RefreshModelWindow(desk.notices, model, quiet);
}

void RefreshRowsAndSelect(const WindowDesk& desk, Model& model) {
  ScrollToCursor(model);
  SelectUnderCursor(desk, model);
  RefreshModelRows(desk.notices, model);
}

void ShowCursor(const WindowDesk& desk, Model& model) {
  ScrollToCursor(model);
  RefreshAndSelect(desk, model, true);
}

void HoldCursor(Model& model) {
  ModelWindow& window = model.window;
  const int rows = RowCount(model);
  if (rows == 0) window.rowSelected = false;
  window.curRow = std::clamp(window.curRow, 0, std::max(0, rows - 1));
  ScrollTo(model, window.topRow);
}

ModelParam& ParamUnderCursor(Model& model) {
  HoldCursor(model);
  if (!model.window.rowSelected) return model.epsInf;
  return Cell(model, model.window.curRow, ParamOfColumn(model.window.curColumn));
}

void EditParam(Model& model) {
  ScrollToCursor(model);
  OpenEditor(model.window.editor, ParamUnderCursor(model).value);
}

void EditParamWith(Model& model, char digit) {
  ScrollToCursor(model);
  OpenEditorWith(model.window.editor, digit);
}

void CommitEdit(const WindowDesk& desk, Model& model) {
  // Whatever comes next may move the rows, and with them the parameter that the parameter control is typing into.
  LeaveParamField(desk);
  if (!model.window.editor.open) return;
  const auto number = TakeNumber(model.window.editor);
  if (!number || IsFrozen(desk)) return RefreshAndSelect(desk, model, true);
  SetValue(desk.params, ParamUnderCursor(model), *number);
  RedrawDirty(desk.notices, desk.params);
  RefreshAndSelect(desk, model);
}

void PressModelButton(const WindowDesk& desk, Model& model, ModelButton button) {
  if (IsFrozen(desk)) return;
  CommitEdit(desk, model);
  HoldCursor(model);
  if (!Answers(ModelControlsOf(desk.eval, model), button)) return;
  switch (button) {
    case ModelButton::kFixAll:
      FixAll(&model, model.epsInf.adjustable != 0);
      return RefreshAndSelect(desk, model);
    case ModelButton::kVdfPanel:
      model.window.vdfShown = !model.window.vdfShown;
      return;
    case ModelButton::kSave:
      return SaveByDialog(desk, model);
    case ModelButton::kLoad:
      return LoadByDialog(desk, model);
    case ModelButton::kAdd:
      return AddRow(desk, model);
    case ModelButton::kRemove:
      return RemoveRowUnderCursor(desk, model);
    case ModelButton::kUp:
    case ModelButton::kDown:
      return MoveRow(desk, model, button == ModelButton::kUp);
    case ModelButton::kVdfInit:
      return OpenVdfDialog(desk, model);
    case ModelButton::kVdfSave:
      return SaveVdfByDialog(desk, model);
    case ModelButton::kVdfLoad:
      return LoadVdfByDialog(desk, model);
    case ModelButton::kVdfKK:
      ToggleVdfKK(model.vdf);
      return RefreshAndSelect(desk, model);
    case ModelButton::kVdfOn:
      ToggleVdfOn(model.vdf);
      return RefreshAndSelect(desk, model);
    case ModelButton::kVdfFit:
      ToggleVdfFitActive(model.vdf);
      return RefreshAndSelect(desk, model);
    case ModelButton::kVdfPositive:
      MakeVdfPositive(desk.eval, model);
      return RefreshAndSelect(desk, model);
  }
}

void PressModelField(const WindowDesk& desk, Model& model, const ModelField& field) {
  if (IsFrozen(desk) || !ParamOfField(model, field)) return;
  CommitEdit(desk, model);
  MoveCursorTo(model, field);
  ShowCursor(desk, model);
}

void DoublePressModelField(const WindowDesk& desk, Model& model, const ModelField& field) {
  if (IsFrozen(desk) || !ParamOfField(model, field)) return;
  PressModelField(desk, model, field);
  EditParam(model);
}

void RightPressModelField(const WindowDesk& desk, Model& model, const ModelField& field) {
  if (IsFrozen(desk) || !ParamOfField(model, field)) return;
  CommitEdit(desk, model);
  FlipAdjustable(desk, model, *ParamOfField(model, field));
}

void FlipAdjustable(const WindowDesk& desk, Model& model, ModelParam& param) {
  SetAdjustable(desk.params, param, param.adjustable ? 0 : 1);
  RedrawDirty(desk.notices, desk.params);
  RefreshAndSelect(desk, model);
}

void PressModelHeader(const WindowDesk& desk, Model& model, int column) {
  if (IsFrozen(desk)) return;
  CommitEdit(desk, model);
  SortRows(&model, column);
  RefreshRowsAndSelect(desk, model);
}

void SetColumnWidth(Model& model, int column, int width) {
  if (IsColumn(column)) model.window.columnWidths[static_cast<std::size_t>(column)] = width;
}

ModelScrollBar ScrollBarOf(const Model& model) {
  const ModelWindow& window = model.window;
  return {1, RowCount(model), window.visibleRows, window.topRow + 1, RowCount(model) > window.visibleRows};
}

void SetVisibleRows(Model& model, int rows) {
  model.window.visibleRows = std::max(1, rows);
  model.window.editor.open ? ScrollToCursor(model) : ScrollTo(model, model.window.topRow);
}

void ScrollByLines(const WindowDesk& desk, Model& model, int lines) {
  ScrollToPosition(desk, model, model.window.topRow + lines + 1);
}

void ScrollByPages(const WindowDesk& desk, Model& model, int pages) {
  ScrollByLines(desk, model, pages * (model.window.visibleRows - 1));
}

void ScrollToPosition(const WindowDesk& desk, Model& model, int position) {
  CommitEdit(desk, model);
  ScrollTo(model, position - 1);
}

}  // namespace kalvex

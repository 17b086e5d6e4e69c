#include "windows/model_window.h"

#include "core/text.h"
#include "evaluation/model_type.h"
#include "records/model_rows.h"
#include "windows/ask_file.h"
#include "windows/desk.h"
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

void ScrollTo(const Model& model, ModelWindow& window, int row) {
  window.topRow = std::clamp(row, 0, std::max(0, RowCount(model) - window.visibleRows));
}

// Scrolls only as far as necessary to show the row of the cursor.
void ScrollToCursor(const Model& model, ModelWindow& window) {
  HoldCursor(model, window);
  if (window.rowSelected)
    ScrollTo(model, window, std::clamp(window.topRow, window.curRow - window.visibleRows + 1, window.curRow));
}

ParamRef RefUnderCursor(const Model& model, ModelWindow& window) {
  HoldCursor(model, window);
  if (!window.rowSelected) return ParamRef::EpsInf(model.number);
  return ParamRef::Row(model.number, window.curRow + 1, ParamOfColumn(window.curColumn));
}

// The parameter in a field; nothing if the field holds none.
std::optional<ParamRef> ParamOfField(const Model& model, const ModelWindow& window, const ModelField& field) {
  if (field.epsInf) return ParamRef::EpsInf(model.number);
  const int row = window.topRow + field.line;
  if (field.line < 0 || row >= RowCount(model)) return std::nullopt;
  if (field.column < kFirstParamColumn || field.column > kLastParamColumn) return std::nullopt;
  return ParamRef::Row(model.number, row + 1, ParamOfColumn(field.column));
}

// True if a field accepts the mouse: it holds a parameter, and no run of the fit uses that parameter.
bool Answers(const Desk& desk, const Model& model, const ModelWindow& window, const ModelField& field) {
  return !desk.session.Fit().FitRunning && ParamOfField(model, window, field);
}

void Flip(Desk& desk, const Model& model, const ParamRef& param) {
  desk.session.SetParam(param, {.adjustable = desk.session.FindParam(param)->adjustable ? 0u : 1u}).Ignore();
  SelectUnderCursor(desk, model);
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

void SaveByDialog(Desk& desk, const Model& model) {
  if (const auto file = AskFile(desk, texts::kSaveModelFile)) desk.session.SaveModel(model.number, *file).Ignore();
}

void SaveVdfByDialog(Desk& desk, const Model& model) {
  if (const auto file = AskFile(desk, texts::kSaveVdfFile)) desk.session.SaveMesh(model.number, *file).Ignore();
}

// Called after a change of the number or the order of rows.
void SelectAfter(Desk& desk, const Model& model, const Status& rowsChanged) {
  if (!rowsChanged.Ok()) return;
  ScrollToCursor(model, WindowOf(desk, model));
  SelectUnderCursor(desk, model);
}

void LoadByDialog(Desk& desk, const Model& model) {
  if (const auto file = AskFile(desk, texts::kLoadModelFile)) {
    SelectAfter(desk, model, desk.session.LoadModel(model.number, *file));
  }
}

void LoadVdfByDialog(Desk& desk, const Model& model) {
  const auto file = AskFile(desk, texts::kLoadVdfFile);
  if (file && desk.session.LoadMesh(model.number, *file).Ok()) SelectUnderCursor(desk, model);
}

void AddRow(Desk& desk, const Model& model) {
  ModelWindow& window = WindowOf(desk, model);
  const Status added = desk.session.InsertRow(model.number, window.curRow + 1);
  if (added.Ok()) window.rowSelected = true;
  SelectAfter(desk, model, added);
}

void RemoveRowUnderCursor(Desk& desk, const Model& model) {
  ModelWindow& window = WindowOf(desk, model);
  if (!window.rowSelected) {
    window.rowSelected = true;
    return ShowCursor(desk, model);
  }
  SelectAfter(desk, model, desk.session.RemoveRow(model.number, window.curRow + 1));
}

void MoveRow(Desk& desk, const Model& model, bool up) {
  ModelWindow& window = WindowOf(desk, model);
  const Status moved = desk.session.MoveRow(model.number, window.curRow + 1, up);
  if (moved.Ok()) window.curRow += up ? -1 : 1;
  SelectAfter(desk, model, moved);
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
void MoveCursorTo(ModelWindow& window, const ModelField& field) {
  window.rowSelected = !field.epsInf;
  if (field.epsInf) return;
  window.curRow = window.topRow + field.line;
  window.curColumn = field.column;
}

}  // namespace

ParamCell EpsInfCell(const Model& model, const ModelWindow& window) {
  return CellOfParam(model.epsInf, NumberText(model.epsInf.value, kShortDigits),
                     !window.rowSelected && ShowsMark(window));
}

ParamCell CellOfLine(const Model& model, const ModelWindow& window, int line, int column) {
  const int row = window.topRow + line;
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
  const bool marked = IsUnderCursor(window, row, column) && ShowsMark(window);
  const ModelParam& param = Cell(model, row, index);
  return CellOfParam(param, NumberText(param.value, kStoredDigits), marked);
}

ModelControls ModelControlsOf(const Desk& desk, const Model& model) {
  const ModelWindow& window = desk.models.at(model.number);
  const bool special = desk.session.TypeOfModel(model) != nullptr;
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

const Model* NewModelWindow(Desk& desk) {
  const auto number = desk.session.NewModel();
  if (!number.Ok()) return nullptr;
  const Model* const model = desk.session.FindModel(*number);
  SelectUnderCursor(desk, *model);
  return model;
}

void CloseModelWindow(Desk& desk, const Model& model) {
  if (desk.session.Fit().FitRunning) return;
  // A typed value of a parameter in this model still applies to the other parameters of its coupling group.
  DeselectModel(desk, model.number);
  desk.session.CloseModel(model.number).Ignore();
}

void ActivateModelWindow(Desk& desk, const Model& model, bool active) {
  if (!active) CommitEdit(desk, model);
  WindowOf(desk, model).windowShown = active;
}

void SelectUnderCursor(Desk& desk, const Model& model) {
  ModelWindow& window = WindowOf(desk, model);
  if (SelectParam(desk, RefUnderCursor(model, window))) window.paramSelected = true;
}

void ShowCursor(Desk& desk, const Model& model) {
  ScrollToCursor(model, WindowOf(desk, model));
  SelectUnderCursor(desk, model);
  desk.session.RedrawModel(model.number);
}

void HoldCursor(const Model& model, ModelWindow& window) {
  const int rows = RowCount(model);
  if (rows == 0) window.rowSelected = false;
  window.curRow = std::clamp(window.curRow, 0, std::max(0, rows - 1));
  ScrollTo(model, window, window.topRow);
}

void EditParam(Desk& desk, const Model& model) {
  ModelWindow& window = WindowOf(desk, model);
  ScrollToCursor(model, window);
  OpenEditor(window.editor, desk.session.FindParam(RefUnderCursor(model, window))->value);
}

void EditParamWith(Desk& desk, const Model& model, char digit) {
  ModelWindow& window = WindowOf(desk, model);
  ScrollToCursor(model, window);
  OpenEditorWith(window.editor, digit);
}

void CommitEdit(Desk& desk, const Model& model) {
  // The next action may move the rows, and with them the parameter that is being edited in the parameter control.
  LeaveParamField(desk);
  ModelWindow& window = WindowOf(desk, model);
  if (!window.editor.open) return;
  const auto number = TakeNumber(window.editor);
  const bool taken = number && desk.session.SetParam(RefUnderCursor(model, window), {.value = number}).Ok();
  SelectUnderCursor(desk, model);
  if (!taken) desk.session.RedrawModel(model.number);
}

void PressModelButton(Desk& desk, const Model& model, ModelButton button) {
  if (desk.session.Fit().FitRunning) return;
  ModelWindow& window = WindowOf(desk, model);
  CommitEdit(desk, model);
  HoldCursor(model, window);
  if (!Answers(ModelControlsOf(desk, model), button)) return;
  Session& session = desk.session;
  const auto select = [&](const Status& changed) {
    if (changed.Ok()) SelectUnderCursor(desk, model);
  };
  switch (button) {
    case ModelButton::kFixAll:
      return select(session.FixAllParams(model.number, model.epsInf.adjustable != 0));
    case ModelButton::kVdfPanel:
      window.vdfShown = !window.vdfShown;
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
      return select(session.ToggleMeshKK(model.number));
    case ModelButton::kVdfOn:
      return select(session.ToggleMeshOn(model.number));
    case ModelButton::kVdfFit:
      return select(session.ToggleMeshFitActive(model.number));
    case ModelButton::kVdfPositive:
      return select(session.MakeMeshPositive(model.number));
  }
}

void PressModelField(Desk& desk, const Model& model, const ModelField& field) {
  ModelWindow& window = WindowOf(desk, model);
  if (!Answers(desk, model, window, field)) return;
  CommitEdit(desk, model);
  MoveCursorTo(window, field);
  ShowCursor(desk, model);
}

void DoublePressModelField(Desk& desk, const Model& model, const ModelField& field) {
  if (!Answers(desk, model, WindowOf(desk, model), field)) return;
  PressModelField(desk, model, field);
  EditParam(desk, model);
}

void RightPressModelField(Desk& desk, const Model& model, const ModelField& field) {
  const ModelWindow& window = WindowOf(desk, model);
  if (!Answers(desk, model, window, field)) return;
  CommitEdit(desk, model);
  Flip(desk, model, *ParamOfField(model, window, field));
}

void FlipUnderCursor(Desk& desk, const Model& model) {
  Flip(desk, model, RefUnderCursor(model, WindowOf(desk, model)));
}

void PressModelHeader(Desk& desk, const Model& model, int column) {
  if (desk.session.Fit().FitRunning) return;
  CommitEdit(desk, model);
  // The first column contains the row numbers. Clicking it sorts nothing.
  SelectAfter(desk, model, desk.session.SortRows(model.number, column));
}

void SetColumnWidth(ModelWindow& window, int column, int width) {
  if (IsColumn(column)) window.columnWidths[static_cast<std::size_t>(column)] = width;
}

ModelScrollBar ScrollBarOf(const Model& model, const ModelWindow& window) {
  return {1, RowCount(model), window.visibleRows, window.topRow + 1, RowCount(model) > window.visibleRows};
}

void SetVisibleRows(const Model& model, ModelWindow& window, int rows) {
  window.visibleRows = std::max(1, rows);
  window.editor.open ? ScrollToCursor(model, window) : ScrollTo(model, window, window.topRow);
}

void ScrollByLines(Desk& desk, const Model& model, int lines) {
  ScrollToPosition(desk, model, WindowOf(desk, model).topRow + lines + 1);
}

void ScrollByPages(Desk& desk, const Model& model, int pages) {
  ScrollByLines(desk, model, pages * (WindowOf(desk, model).visibleRows - 1));
}

void ScrollToPosition(Desk& desk, const Model& model, int position) {
  CommitEdit(desk, model);
  ScrollTo(model, WindowOf(desk, model), position - 1);
}

}  // namespace kalvex

#include "windows/desk.h"

#include <algorithm>

#include "records/model_table.h"

namespace kalvex {
namespace {

// The text that is being typed for a parameter of a closed model is lost.
void ForgetModel(Desk& desk, std::uint32_t number) {
  desk.models.erase(number);
  if (desk.vdfDialog.model == number) desk.vdfDialog.open = false;
  ParamControl& control = desk.paramControl;
  if (!control.selected || control.selected->model != number) return;
  control.selected.reset();
  control.typed.reset();
  control.dragging = false;
}

void ForgetGraph(Desk& desk, std::uint32_t number) {
  desk.graphs.erase(number);
  if (desk.graphDialogs.propertiesOf == number) CancelProperties(desk);
  if (desk.graphDialogs.contentsOf == number) CancelContents(desk);
}

void MoveCursorToStart(ModelWindow& window) {
  window.rowSelected = false;
  window.curRow = window.topRow = 0;
}

template <class Window, class IsThere, class Forget>
void ForgetGone(const std::map<std::uint32_t, Window>& windows, IsThere isThere, Forget forget) {
  for (auto entry = windows.begin(); entry != windows.end();) {
    const std::uint32_t number = (entry++)->first;
    if (!isThere(number)) forget(number);
  }
}

// The text that is being typed belongs to the previous state.
void FollowModels(Desk& desk) {
  desk.paramControl.typed.reset();
  desk.expParams.editor = {};
  ForgetGone(
      desk.models, [&](std::uint32_t number) { return desk.session.FindModel(number); },
      [&](std::uint32_t number) { ForgetModel(desk, number); });
  for (const Model& model : desk.session.Params().models) {
    if (model.number == 0) continue;
    WindowOf(desk, model).editor = {};
    HoldCursor(model, WindowOf(desk, model));
  }
  SettleSlider(desk);
}

void FollowGraphs(Desk& desk) {
  ForgetGone(
      desk.graphs, [&](std::uint32_t number) { return desk.session.FindGraph(number); },
      [&](std::uint32_t number) { ForgetGraph(desk, number); });
  for (const Graph& graph : desk.session.Graphs().slots) {
    if (graph.number != 0) desk.graphs.try_emplace(graph.number);
  }
}

// The window is open while the fit follows changes. Existing terms stay selected.
void FollowFit(Desk& desk) {
  if (!desk.session.FitFollows()) HideFitWindow(desk.fitWindow);
  desk.fitWindow.open = desk.session.FitFollows();
  const auto& terms = desk.session.Fit().list.terms;
  std::erase_if(desk.fitWindow.selected, [&](int id) {
    return std::none_of(terms.begin(), terms.end(), [&](const ChiSqTerm& term) { return term.id == id; });
  });
  RefreshTermLines(desk);
  SelectionChanged(desk);
}

void FollowEverything(Desk& desk) {
  FollowModels(desk);
  FollowGraphs(desk);
  FollowFit(desk);
  RefreshDatasetManager(desk.datasetManager, desk.session.Datasets());
}

}  // namespace

Desk::Desk(Session& on) : session(on) {
  session.Listen(*this);
  FollowEverything(*this);
}

Desk::~Desk() { session.StopListening(*this); }

void Desk::Changed(const Change& change) {
  switch (change.kind) {
    case ChangeKind::kDatasetLoaded:
    case ChangeKind::kDatasetUnloaded:
      return RefreshDatasetManager(datasetManager, session.Datasets());
    case ChangeKind::kDatasetChanged:
      return RefreshDatasetRow(datasetManager, session.Datasets(), change.slot);
    case ChangeKind::kModelCreated:
      models.try_emplace(change.id);
      return;
    case ChangeKind::kModelClosed:
      return ForgetModel(*this, change.id);
    case ChangeKind::kModelLoaded:
      return MoveCursorToStart(models[change.id]);
    case ChangeKind::kModelRows:
      return HoldCursor(*session.FindModel(change.id), models[change.id]);
    case ChangeKind::kFitTerms:
      return FillTermLines(*this);
    case ChangeKind::kFitRun:
      SettleSlider(*this);
      return RefreshTermLines(*this);
    case ChangeKind::kFitValues:
      return RefreshTermLines(*this);
    case ChangeKind::kGraphCreated:
      graphs.try_emplace(change.id);
      return;
    case ChangeKind::kGraphClosed:
      return ForgetGraph(*this, change.id);
    case ChangeKind::kEverything:
      return FollowEverything(*this);
    case ChangeKind::kModelChanged:
    case ChangeKind::kExpParams:
    case ChangeKind::kFitOptions:
    case ChangeKind::kGraphChanged:
    case ChangeKind::kSettings:
      return;  // the screen reads these from the session
  }
}

}  // namespace kalvex

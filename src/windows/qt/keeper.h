// The windows on a screen, built with Qt. Widgets only show the records of src/windows and call their functions. This
// folder stands on floor 10, beside the program.
//
// Keeper updates all widgets to match the desk and the session. Windows exist as records first. After each action, and
// whenever events are processed, Reconcile opens, closes and refreshes the widgets of all records. Read in this order:
//
//   keeper.h          the list of all widgets, and Reconcile
//   layer.cpp         the start of the windows; qt_platform.h: message boxes, dialogs, events
//   show.h            updating single widgets; single_view.h: windows that exist once, and modal dialogs
//   fields.h, form_fields.h, editor_field.h   fields for parameters and for dialogs
//   *_view.h          the widgets of each window and dialog
//   qt_canvas.h       drawing a graph
#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>
#include <map>
#include <memory>
#include <vector>

#include "windows/desk.h"

namespace kalvex {

class MainView;
class GraphView;
class FitView;
class ManagerView;
class ModelView;
class ParamControlView;
class ExpParamsView;

class Keeper {
 public:
  explicit Keeper(Desk& desk);
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;
  ~Keeper();

  Desk& desk() { return desk_; }
  Session& session() { return desk_.session; }

  // Installs Ctrl+Z and Ctrl+Shift+Z in a window: undo and redo of the session. A field that is being edited uses these
  // keys itself.
  void TakeStepKeys(QWidget& window);

  void Reconcile();
  // Reconcile, but at most once every 15 ms. For long operations, which call it often.
  void ReconcileNowAndThen();
  bool IsReconciling() const { return reconciling_; }

  QWidget* mainWidget() const;
  QWidget* graphWidget(std::uint32_t number) const;
  QWidget* modelWidget(std::uint32_t number) const;

 private:
  void ReconcileAll();
  void ReconcileGraphs();
  void ReconcileModels();
  // Updates a window of which there is only one. The widget is made when the window first opens.
  template <class View>
  void ReconcileSingle(std::unique_ptr<View>& view, bool open);
  template <class View, class IsGone>
  void RetireIf(std::map<std::uint32_t, std::unique_ptr<View>>& views, IsGone isGone);
  // Hides a window and deletes it later, because one of its own handlers may be running.
  void Retire(QWidget* view);

  Desk& desk_;
  bool reconciling_ = false;
  bool asked_ = false;  // Reconcile was called since the present pass began
  bool runShown_ = false;
  QElapsedTimer sinceLast_;
  std::unique_ptr<MainView> main_;
  std::map<std::uint32_t, std::unique_ptr<GraphView>> graphs_;
  std::unique_ptr<FitView> fit_;
  std::unique_ptr<ManagerView> manager_;
  std::map<std::uint32_t, std::unique_ptr<ModelView>> models_;
  std::unique_ptr<ParamControlView> paramControl_;
  std::unique_ptr<ExpParamsView> expParams_;
  std::vector<QPointer<QWidget>> retired_;
};

}  // namespace kalvex

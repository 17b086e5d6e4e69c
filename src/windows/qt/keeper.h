// Keeper: makes the screen show what the desk and the session say. Windows exist as records first; after each action,
// and whenever events are pumped, Reconcile opens, closes and refreshes the widgets that show them. A widget holds no
// rule: its handlers call a window's functions and then Reconcile.
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

  // Ctrl+Z and Ctrl+Shift+Z of a window: a step back, and forward. A field that is being typed into has them for
  // itself.
  void TakeStepKeys(QWidget& window);

  void Reconcile();
  // The same, unless it was done a moment ago: for long operations, which ask often.
  void ReconcileNowAndThen();
  bool IsReconciling() const { return reconciling_; }

  QWidget* mainWidget() const;
  QWidget* graphWidget(std::uint32_t number) const;
  QWidget* modelWidget(std::uint32_t number) const;

 private:
  void ReconcileAll();
  void ReconcileGraphs();
  void ReconcileModels();
  // A window of which there is one: made when it is first opened.
  template <class View>
  void ReconcileSingle(std::unique_ptr<View>& view, bool open);
  template <class View, class IsGone>
  void RetireIf(std::map<std::uint32_t, std::unique_ptr<View>>& views, IsGone isGone);
  // Takes a window off the screen. It is deleted later, since it may be its own handler that is at work.
  void Retire(QWidget* view);

  Desk& desk_;
  bool reconciling_ = false;
  bool asked_ = false;  // since the last pass over the windows began
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

// Keeper: makes the screen show what the program's records say. Windows exist as records first; after each action, and
// whenever events are pumped, Reconcile opens, closes and refreshes the widgets that show them. A widget holds no rule:
// its handlers call a window's functions and then Reconcile.
#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <map>
#include <memory>

#include "program/program.h"

namespace kalvex {

class MainView;
class GraphView;
class FitView;
class ManagerView;

class Keeper {
 public:
  explicit Keeper(Program& program);
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;
  ~Keeper();

  Program& program() { return program_; }
  WindowDesk desk() { return WindowDeskOf(program_); }

  void Reconcile();
  // The same, unless it was done a moment ago: for long operations, which ask often.
  void ReconcileNowAndThen();
  bool IsReconciling() const { return reconciling_; }

  QWidget* mainWidget() const;
  QWidget* graphWidget(std::uint32_t number) const;

 private:
  void ReconcileGraphs();
  // A window of which there is one: made when it is first opened.
  template <class View>
  void ReconcileSingle(std::unique_ptr<View>& view, bool open);

  Program& program_;
  bool reconciling_ = false;
  bool runShown_ = false;
  QElapsedTimer sinceLast_;
  std::unique_ptr<MainView> main_;
  std::map<std::uint32_t, std::unique_ptr<GraphView>> graphs_;
  std::unique_ptr<FitView> fit_;
  std::unique_ptr<ManagerView> manager_;
};

}  // namespace kalvex

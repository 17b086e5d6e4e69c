#include "windows/qt/keeper.h"

#include "graphs/graph_table.h"
#include "windows/qt/fit_view.h"
#include "windows/qt/graph_view.h"
#include "windows/qt/main_view.h"
#include "windows/qt/manager_view.h"

namespace kalvex {

Keeper::Keeper(Program& program) : program_(program), main_(std::make_unique<MainView>(*this)) {
  sinceLast_.start();
  Reconcile();
}

Keeper::~Keeper() = default;

QWidget* Keeper::mainWidget() const { return main_.get(); }
QWidget* Keeper::graphWidget(std::uint32_t number) const {
  const auto found = graphs_.find(number);
  return found == graphs_.end() ? nullptr : found->second.get();
}

void Keeper::ReconcileGraphs() {
  for (auto entry = graphs_.begin(); entry != graphs_.end();) {
    const bool open = GetGraphByNumber(program_.graphs, entry->first) != nullptr;
    if (!open) {
      entry->second->Refresh();
      entry->second.release()->deleteLater();  // it may be in the middle of the event that closed it
    }
    entry = open ? std::next(entry) : graphs_.erase(entry);
  }
  for (Graph& graph : program_.graphs.slots) {
    if (graph.number == 0) continue;
    auto& view = graphs_[graph.number];
    if (!view) view = std::make_unique<GraphView>(*this, graph.number);
    view->Refresh();
  }
}

template <class View>
void Keeper::ReconcileSingle(std::unique_ptr<View>& view, bool open) {
  if (open && !view) view = std::make_unique<View>(*this);
  if (view) view->Refresh();
}

void Keeper::Reconcile() {
  // Showing a widget may send it events, whose handlers come here again.
  if (reconciling_) return;
  reconciling_ = true;
  main_->Refresh();
  ReconcileGraphs();
  ReconcileSingle(manager_, program_.datasetManager.open);
  ReconcileSingle(fit_, program_.fitWindow.open);
  reconciling_ = false;
  runShown_ = program_.fit.FitRunning;
  sinceLast_.restart();
}

void Keeper::ReconcileNowAndThen() {
  constexpr qint64 kPause = 15;  // ms, about a picture of the screen
  // A run that has begun shows at once how it can be stopped.
  if (sinceLast_.elapsed() >= kPause || runShown_ != program_.fit.FitRunning) Reconcile();
}

}  // namespace kalvex

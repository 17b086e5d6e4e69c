#include "windows/qt/keeper.h"

#include "graphs/graph_table.h"
#include "records/model_table.h"
#include "windows/qt/exp_params_view.h"
#include "windows/qt/fit_view.h"
#include "windows/qt/graph_view.h"
#include "windows/qt/main_view.h"
#include "windows/qt/manager_view.h"
#include "windows/qt/model_view.h"
#include "windows/qt/param_control_view.h"

namespace kalvex {
namespace {

template <class View>
QWidget* WidgetOf(const std::map<std::uint32_t, std::unique_ptr<View>>& views, std::uint32_t number) {
  const auto found = views.find(number);
  return found == views.end() ? nullptr : found->second.get();
}

}  // namespace

Keeper::Keeper(Program& program) : program_(program), main_(std::make_unique<MainView>(*this)) {
  sinceLast_.start();
  Reconcile();
}

Keeper::~Keeper() {
  reconciling_ = true;  // windows that go send events to others
  for (const QPointer<QWidget>& view : retired_) delete view.data();
}

QWidget* Keeper::mainWidget() const { return main_.get(); }
QWidget* Keeper::graphWidget(std::uint32_t number) const { return WidgetOf(graphs_, number); }
QWidget* Keeper::modelWidget(std::uint32_t number) const { return WidgetOf(models_, number); }

void Keeper::Retire(QWidget* view) {
  view->hide();
  view->deleteLater();
  std::erase_if(retired_, [](const QPointer<QWidget>& gone) { return gone.isNull(); });
  retired_.emplace_back(view);
}

template <class View, class IsGone>
void Keeper::RetireIf(std::map<std::uint32_t, std::unique_ptr<View>>& views, IsGone isGone) {
  for (auto entry = views.begin(); entry != views.end();) {
    if (!isGone(entry->first)) {
      ++entry;
      continue;
    }
    entry->second->Refresh();
    Retire(entry->second.release());
    entry = views.erase(entry);
  }
}

void Keeper::ReconcileGraphs() {
  RetireIf(graphs_, [&](std::uint32_t number) { return !GetGraphByNumber(program_.graphs, number); });
  for (Graph& graph : program_.graphs.slots) {
    if (graph.number == 0) continue;
    auto& view = graphs_[graph.number];
    if (!view) view = std::make_unique<GraphView>(*this, graph.number);
    view->Refresh();
  }
}

void Keeper::ReconcileModels() {
  RetireIf(models_, [&](std::uint32_t number) { return !GetModelByNumber(program_.params, number); });
  for (Model& model : program_.params.models) {
    if (model.number == 0) continue;
    auto& view = models_[model.number];
    if (!view) view = std::make_unique<ModelView>(*this, model.number);
    view->Refresh();
  }
}

template <class View>
void Keeper::ReconcileSingle(std::unique_ptr<View>& view, bool open) {
  if (open && !view) view = std::make_unique<View>(*this);
  if (view) view->Refresh();
}

void Keeper::ReconcileAll() {
  main_->Refresh();
  ReconcileGraphs();
  ReconcileSingle(manager_, program_.datasetManager.open);
  ReconcileSingle(fit_, program_.fitWindow.open);
  ReconcileSingle(paramControl_, program_.paramControl.open);
  ReconcileSingle(expParams_, program_.expParamsWindow.open);
  ReconcileModels();
}

void Keeper::Reconcile() {
  // Showing a widget may send it events, whose handlers change records and come here again.
  asked_ = true;
  if (reconciling_) return;
  reconciling_ = true;
  constexpr int kMostPasses = 3;
  for (int pass = 0; asked_ && pass < kMostPasses; ++pass) {
    asked_ = false;
    ReconcileAll();
  }
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

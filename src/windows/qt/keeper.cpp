#include "windows/qt/keeper.h"

#include <QShortcut>

#include "windows/main_window.h"
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

Keeper::Keeper(Desk& desk) : desk_(desk), main_(std::make_unique<MainView>(*this)) {
  sinceLast_.start();
  Reconcile();
}

Keeper::~Keeper() {
  reconciling_ = true;  // deleted windows send events to others
  for (const QPointer<QWidget>& view : retired_) delete view.data();
}

QWidget* Keeper::mainWidget() const { return main_.get(); }
QWidget* Keeper::graphWidget(std::uint32_t number) const { return WidgetOf(graphs_, number); }
QWidget* Keeper::modelWidget(std::uint32_t number) const { return WidgetOf(models_, number); }

void Keeper::TakeStepKeys(QWidget& window) {
  for (const auto& [keys, press] : {std::pair(Qt::CTRL | Qt::Key_Z, &PressStepBack),
                                    std::pair(Qt::CTRL | Qt::SHIFT | Qt::Key_Z, &PressStepForward)}) {
    auto* const shortcut = new QShortcut(QKeySequence(keys), &window);
    QObject::connect(shortcut, &QShortcut::activated, &window, [this, act = press] {
      act(desk_);
      Reconcile();
    });
  }
}

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
  RetireIf(graphs_, [&](std::uint32_t number) { return !desk_.graphs.contains(number); });
  for (const auto& [number, window] : desk_.graphs) {
    auto& view = graphs_[number];
    if (!view) view = std::make_unique<GraphView>(*this, number);
    view->Refresh();
  }
}

void Keeper::ReconcileModels() {
  RetireIf(models_, [&](std::uint32_t number) { return !desk_.models.contains(number); });
  for (const auto& [number, window] : desk_.models) {
    auto& view = models_[number];
    if (!view) view = std::make_unique<ModelView>(*this, number);
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
  ReconcileSingle(manager_, desk_.datasetManager.open);
  ReconcileSingle(fit_, desk_.fitWindow.open);
  ReconcileSingle(paramControl_, desk_.paramControl.open);
  ReconcileSingle(expParams_, desk_.expParams.open);
  ReconcileModels();
}

void Keeper::Reconcile() {
  // Showing a widget may send it events. Their handlers change records and call this function again.
  asked_ = true;
  if (reconciling_) return;
  reconciling_ = true;
  constexpr int kMostPasses = 3;
  for (int pass = 0; asked_ && pass < kMostPasses; ++pass) {
    asked_ = false;
    ReconcileAll();
  }
  reconciling_ = false;
  runShown_ = session().Fit().FitRunning;
  sinceLast_.restart();
}

void Keeper::ReconcileNowAndThen() {
  constexpr qint64 kPause = 15;  // ms, about one frame of the screen
  // The button that stops a run must appear at once.
  if (sinceLast_.elapsed() >= kPause || runShown_ != session().Fit().FitRunning) Reconcile();
}

}  // namespace kalvex

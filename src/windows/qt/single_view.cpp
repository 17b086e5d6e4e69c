#include "windows/qt/single_view.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPushButton>

#include "windows/qt/keeper.h"
#include "windows/window_texts.h"

namespace kalvex {

SingleView::SingleView(Keeper& keeper, const char* name, WindowPlace place, std::function<void()> close)
    : QWidget(nullptr), keeper_(keeper), place_(place), close_(std::move(close)) {
  setObjectName(name);
  keeper.TakeStepKeys(*this);
}

bool SingleView::ShowPlace() {
  if (place_.open && place_.width) resize(*place_.width, *place_.height);
  if (place_.open && pos() != QPoint(place_.x, place_.y)) move(place_.x, place_.y);
  if (isVisible() != place_.open) setVisible(place_.open);
  if (place_.open && place_.wantsFront) {
    raise();
    activateWindow();
  }
  place_.wantsFront = false;
  return place_.open;
}

void SingleView::moveEvent(QMoveEvent*) {
  if (keeper_.IsReconciling()) return;
  place_.x = pos().x();
  place_.y = pos().y();
}

void SingleView::resizeEvent(QResizeEvent*) {
  if (keeper_.IsReconciling() || !place_.width) return;
  *place_.width = width();
  *place_.height = height();
}

void SingleView::closeEvent(QCloseEvent* event) {
  event->ignore();  // the record decides whether the window is shown
  close_();
  keeper_.Reconcile();
}

ModalView::ModalView(Keeper& keeper, QWidget& owner, const char* name, ModalActions actions)
    : QDialog(&owner), keeper_(keeper), actions_(std::move(actions)) {
  setObjectName(name);
  setWindowModality(Qt::WindowModal);
}

void ModalView::ShowOpen(bool open) {
  if (isVisible() != open) setVisible(open);
}

QPushButton* ModalView::NewButton(const char* suffix, const char* text, const std::function<void()>& action) {
  auto* const button = new QPushButton(text);
  button->setObjectName(objectName() + suffix);
  QObject::connect(button, &QPushButton::clicked, this, [this, action] {
    action();
    keeper_.Reconcile();
  });
  return button;
}

QLayout* ModalView::ButtonRow(const char* ok, const char* cancel) {
  auto* const row = new QHBoxLayout;
  row->addStretch();
  QPushButton* const okButton = NewButton("Ok", ok, actions_.ok);
  okButton->setDefault(true);
  row->addWidget(okButton);
  if (actions_.apply) row->addWidget(NewButton("Apply", texts::kApply, actions_.apply));
  row->addWidget(NewButton("Cancel", cancel, actions_.cancel));
  return row;
}

void ModalView::accept() {
  actions_.ok();
  keeper_.Reconcile();
}

void ModalView::reject() {
  actions_.cancel();
  keeper_.Reconcile();
}

}  // namespace kalvex

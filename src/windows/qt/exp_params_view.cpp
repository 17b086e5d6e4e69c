#include "windows/qt/exp_params_view.h"

#include <QGridLayout>
#include <QKeyEvent>

#include "windows/exp_params_window.h"
#include "windows/qt/editor_field.h"
#include "windows/qt/fields.h"
#include "windows/qt/keeper.h"
#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

WindowPlace PlaceOf(ExpParamsWindow& window) {
  return {window.open, window.x, window.y, window.wantsFront, &window.width, &window.height};
}

}  // namespace

ExpParamsView::ExpParamsView(Keeper& keeper)
    : SingleView(keeper, "expParams", PlaceOf(keeper.desk().expParams), [&keeper] { CloseExpParams(keeper.desk()); }) {
  setWindowTitle(texts::kExpParamsTitle);
  setFont(SmallFont());
  setFocusPolicy(Qt::StrongFocus);
  LayOut();
  editor_ = new EditorField(
      this, [&keeper] { return &keeper.desk().expParams.editor; },
      [this](const QKeyEvent& event) { return Press(event); });
}

void ExpParamsView::LayOut() {
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(6, 4, 6, 4);
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(1);
  grid->setColumnStretch(0, 3);
  grid->setColumnStretch(1, 2);
  for (int index = 0; index < kExpParamCount; ++index) {
    const auto at = static_cast<std::size_t>(index);
    labels_[at] = new QLabel;
    labels_[at]->setObjectName(QString("label%1").arg(index));
    labels_[at]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    values_[at] = ValueField(QString("value%1").arg(index).toLatin1());
    grid->addWidget(labels_[at], index, 0);
    grid->addWidget(values_[at], index, 1);
    grid->setRowStretch(index, 1);
  }
  QPushButton* const close = SmallButton(texts::kExpParamsClose, "close");
  QObject::connect(close, &QPushButton::clicked, this, &QWidget::close);
  auto* const row = new QHBoxLayout;
  row->addStretch(1);
  row->addWidget(close, 2);
  row->addStretch(1);
  grid->addLayout(row, kExpParamCount, 0, 1, 2);
  setMinimumSize(grid->totalMinimumSize());
}

void ExpParamsView::Refresh() {
  if (!ShowPlace()) return;
  for (int index = 0; index < kExpParamCount; ++index) {
    const auto at = static_cast<std::size_t>(index);
    const ExpParamLine line = ExpParamLineOf(keeper_.desk(), index);
    ShowText(*labels_[at], line.label);
    ShowCell(*values_[at], line.value);
  }
  const ExpParamsWindow& record = keeper_.desk().expParams;
  editor_->Refresh(record.editor, values_[static_cast<std::size_t>(record.selectedIndex)]->geometry());
}

bool ExpParamsView::Press(const QKeyEvent& event) {
  const auto key = KeyOf(event);
  const auto digit = DigitOf(event);
  if (!key && !digit) return false;
  const bool taken = key ? PressExpParamsKey(keeper_.desk(), *key) : PressExpParamsDigit(keeper_.desk(), *digit);
  keeper_.Reconcile();
  return taken;
}

void ExpParamsView::keyPressEvent(QKeyEvent* event) {
  if (!Press(*event)) QWidget::keyPressEvent(event);
}

std::optional<int> ExpParamsView::IndexAt(const QMouseEvent& event) const {
  for (int index = 0; index < kExpParamCount; ++index) {
    if (values_[static_cast<std::size_t>(index)]->geometry().contains(event.position().toPoint())) return index;
  }
  return std::nullopt;
}

void ExpParamsView::mousePressEvent(QMouseEvent* event) {
  const auto index = IndexAt(*event);
  if (!index) return;
  const int line = *index;
  if (event->button() == Qt::LeftButton) PressExpParam(keeper_.desk(), line);
  if (event->button() == Qt::RightButton) RightPressExpParam(keeper_.desk(), line);
  keeper_.Reconcile();
}

void ExpParamsView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return mousePressEvent(event);
  if (const auto index = IndexAt(*event)) DoublePressExpParam(keeper_.desk(), *index);
  keeper_.Reconcile();
}

void ExpParamsView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::ActivationChange) return;
  ActivateExpParams(keeper_.desk(), isActiveWindow());
  keeper_.Reconcile();
}

}  // namespace kalvex

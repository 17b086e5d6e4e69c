#include "windows/qt/model_view.h"

#include <QCloseEvent>
#include <QGridLayout>

#include "windows/model_keys.h"
#include "windows/qt/editor_field.h"
#include "windows/qt/rows_table.h"
#include "windows/qt/show.h"
#include "windows/qt/vdf_dialog_view.h"
#include "windows/qt/vdf_panel.h"
#include "windows/window_texts.h"

namespace kalvex {

ModelView::ModelView(Keeper& keeper, std::uint32_t number)
    : QWidget(nullptr),
      shown_{keeper, number},
      einfGroup_(new QGroupBox(texts::kEinfGroup)),
      epsInf_(ValueField("epsInf")),
      rowsGroup_(new QGroupBox(texts::kPlainRowsGroup)),
      rows_(new RowsTable(shown_)),
      vdf_(new VdfPanel(shown_)) {
  setObjectName(QString("model%1").arg(number));
  setFont(SmallFont());
  setFocusPolicy(Qt::StrongFocus);
  setMinimumSize(kModelWindowMinWidth, kModelWindowMinHeight);
  LayOut();
  keeper.TakeStepKeys(*this);
  editor_ = new EditorField(
      this, [shown = shown_] { return shown.Get() ? &shown.Window().editor : nullptr; },
      [this](const QKeyEvent& event) { return Press(event); });
  Refresh();
  show();
  raise();
  activateWindow();
}

QPushButton* ModelView::AddButton(const char* text, const char* objectName, ModelButton button) {
  return buttons_[button] = shown_.NewButton(text, objectName, button);
}

QLayout* ModelView::TopRow() {
  auto* const top = new QGridLayout;
  top->setSpacing(2);
  top->addWidget(einfGroup_, 0, 0, 2, 1);
  top->addWidget(AddButton(texts::kFixAll, "fixAll", ModelButton::kFixAll), 0, 1);
  top->addWidget(AddButton(texts::kVdfButtonAtStart, "vdfButton", ModelButton::kVdfPanel), 0, 2);
  top->addWidget(AddButton(texts::kSave, "save", ModelButton::kSave), 0, 3);
  top->addWidget(AddButton(texts::kLoad, "load", ModelButton::kLoad), 0, 4);
  top->addWidget(AddButton(texts::kAddRow, "add", ModelButton::kAdd), 1, 1);
  top->addWidget(AddButton(texts::kRemoveRow, "remove", ModelButton::kRemove), 1, 2);
  top->addWidget(AddButton(texts::kRowUp, "up", ModelButton::kUp), 1, 3);
  top->addWidget(AddButton(texts::kRowDown, "down", ModelButton::kDown), 1, 4);
  top->setColumnStretch(0, 5);
  for (int column = 1; column <= 4; ++column) top->setColumnStretch(column, 4);
  return top;
}

void ModelView::LayOut() {
  einfGroup_->setObjectName("einfGroup");
  auto* const einf = new QVBoxLayout(einfGroup_);
  einf->setContentsMargins(4, 3, 4, 4);
  einf->addWidget(epsInf_);

  rowsGroup_->setObjectName("rowsGroup");
  rowsGroup_->setFlat(true);
  auto* const rows = new QVBoxLayout(rowsGroup_);
  rows->setContentsMargins(0, 1, 0, 0);
  rows->addWidget(rows_);

  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(2, 2, 2, 2);
  layout->setSpacing(2);
  layout->addLayout(TopRow());
  layout->addWidget(rowsGroup_, 1);
  layout->addWidget(vdf_);
}

void ModelView::Refresh() {
  ShowDialog();
  const Model* const model = shown_.Get();
  if (!model) return;
  setWindowTitle(QtText(model->name));
  ShowPlace(shown_.Window());
  ShowCell(*epsInf_, EpsInfCell(*model, shown_.Window()));
  RefreshControls(*model);
  rows_->Refresh(*model);
  RefreshEditor();
}

// A macro may have moved the window or changed its size.
void ModelView::ShowPlace(const ModelWindow& record) {
  resize(record.width, record.height);
  if (pos() != QPoint(record.x, record.y)) move(record.x, record.y);
}

void ModelView::RefreshControls(const Model& model) {
  const ModelControls controls = ModelControlsOf(shown_.keeper.desk(), model);
  ShowText(*einfGroup_, controls.einfGroup);
  ShowText(*rowsGroup_, controls.rowsGroup);
  ShowText(*buttons_[ModelButton::kVdfPanel], controls.vdfButton);
  buttons_[ModelButton::kRemove]->setEnabled(controls.remove);
  buttons_[ModelButton::kUp]->setEnabled(controls.up);
  buttons_[ModelButton::kDown]->setEnabled(controls.down);
  vdf_->setVisible(shown_.Window().vdfShown);
  vdf_->Refresh(controls);
}

void ModelView::RefreshEditor() {
  const ModelWindow& window = shown_.Window();
  QWidget* const over = window.rowSelected ? rows_->viewport() : static_cast<QWidget*>(epsInf_);
  QRect place = window.rowSelected ? rows_->CellRect(window.curRow, window.curColumn) : epsInf_->rect();
  place.moveTopLeft(over->mapTo(this, place.topLeft()));
  editor_->Refresh(window.editor, place);
}

void ModelView::ShowDialog() {
  const VdfDialog& record = shown_.keeper.desk().vdfDialog;
  const bool open = record.open && record.model == shown_.number;
  if (open && !dialog_) dialog_ = new VdfDialogView(shown_.keeper, *this);
  if (dialog_) dialog_->Refresh(open);
}

bool ModelView::Press(const QKeyEvent& event) {
  const auto key = KeyOf(event);
  const auto digit = DigitOf(event);
  if (!key && !digit) return false;
  bool taken = false;
  shown_.Do([&](Desk& desk, const Model& model) {
    taken = key ? PressModelKey(desk, model, *key) : PressModelDigit(desk, model, *digit);
  });
  return taken;
}

void ModelView::keyPressEvent(QKeyEvent* event) {
  if (!Press(*event)) QWidget::keyPressEvent(event);
}

// The field of the leading parameter passes mouse events to the window.
bool ModelView::IsOnEpsInf(const QMouseEvent& event) const {
  return epsInf_->rect().contains(epsInf_->mapFrom(this, event.position().toPoint()));
}

void ModelView::mousePressEvent(QMouseEvent* event) {
  const bool right = event->button() == Qt::RightButton;
  if (!IsOnEpsInf(*event) || (!right && event->button() != Qt::LeftButton)) return;
  shown_.Do([&](Desk& desk, const Model& model) {
    right ? RightPressModelField(desk, model, {true}) : PressModelField(desk, model, {true});
  });
}

void ModelView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return mousePressEvent(event);
  if (!IsOnEpsInf(*event)) return;
  shown_.Do([&](Desk& desk, const Model& model) { DoublePressModelField(desk, model, {true}); });
}

// Stores the position and size that the user has given the window.
void ModelView::NotePlace() {
  if (!shown_.Get() || shown_.keeper.IsReconciling()) return;
  ModelWindow& record = shown_.Window();
  record.x = x();
  record.y = y();
  record.width = width();
  record.height = height();
}

void ModelView::moveEvent(QMoveEvent*) { NotePlace(); }

void ModelView::resizeEvent(QResizeEvent*) {
  NotePlace();
  shown_.keeper.Reconcile();
}

void ModelView::closeEvent(QCloseEvent* event) {
  event->ignore();  // the window is deleted together with its record
  shown_.Do([](Desk& desk, const Model& model) { CloseModelWindow(desk, model); });
}

void ModelView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::ActivationChange) return;
  shown_.Do([this](Desk& desk, const Model& model) { ActivateModelWindow(desk, model, isActiveWindow()); });
}

}  // namespace kalvex

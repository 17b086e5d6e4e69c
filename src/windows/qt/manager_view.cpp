#include "windows/qt/manager_view.h"

#include <QGridLayout>

#include "datasets/quantity.h"
#include "windows/qt/keeper.h"
#include "windows/qt/load_dialog_view.h"
#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kNameWidth = 190, kLimitWidth = 80, kPointsWidth = 60;

WindowPlace PlaceOf(DatasetManager& window) { return {window.open, window.x, window.y, window.wantsFront}; }

QLineEdit* NewField(const QString& name, int width) {
  auto* const field = new QLineEdit;
  field->setObjectName(name);
  field->setMinimumWidth(width);
  if (width != kNameWidth) field->setMaximumWidth(width);
  return field;
}

QLabel* NewHead(const char* text) {
  auto* const head = new QLabel(text);
  head->setAlignment(Qt::AlignCenter);
  return head;
}

}  // namespace

ManagerView::ManagerView(Keeper& keeper)
    : SingleView(keeper, "datasetManager", PlaceOf(keeper.desk().datasetManager),
                 [&keeper] { CloseDatasetManager(keeper.desk()); }) {
  setWindowTitle(texts::kManagerTitle);
  auto* const layout = new QVBoxLayout(this);
  auto* const grid = new QGridLayout;
  grid->setVerticalSpacing(3);
  grid->setColumnStretch(1, 1);
  constexpr std::array<int, 5> kHeadColumns = {0, 1, 2, 3, 5}, kHeadSpans = {1, 1, 1, 2, 1};
  for (std::size_t k = 0; k < kHeadColumns.size(); ++k) {
    grid->addWidget(NewHead(texts::kManagerColumns[k]), 0, kHeadColumns[k], 1, kHeadSpans[k]);
  }
  for (int slot = 1; slot <= kManagerRows; ++slot) {
    const RowControls& row = rows_[static_cast<std::size_t>(slot - 1)] = NewRow(slot);
    int column = 0;
    for (QWidget* const control :
         std::initializer_list<QWidget*>{row.button, row.name, row.quantity, row.cutMin, row.cutMax, row.points}) {
      grid->addWidget(control, slot, column++);
    }
  }
  layout->addLayout(grid);
  layout->addStretch();
  auto* const foot = new QHBoxLayout;
  auto* const closeButton = new QPushButton(texts::kManagerClose);
  closeButton->setObjectName("managerClose");
  unloadAll_ = new QPushButton(texts::kUnloadAll);
  unloadAll_->setObjectName("managerUnloadAll");
  foot->addStretch();
  foot->addWidget(closeButton);
  foot->addWidget(unloadAll_);
  layout->addLayout(foot);
  QObject::connect(closeButton, &QPushButton::clicked, this, [this] { close(); });
  QObject::connect(unloadAll_, &QPushButton::clicked, this, [this] {
    PressUnloadAll(keeper_.desk());
    keeper_.Reconcile();
  });
}

ManagerView::RowControls ManagerView::NewRow(int slot) {
  const QString number = QString::number(slot);
  RowControls row{new QPushButton,
                  NewField("managerName" + number, kNameWidth),
                  new QComboBox,
                  NewField("managerCutMin" + number, kLimitWidth),
                  NewField("managerCutMax" + number, kLimitWidth),
                  NewField("managerPoints" + number, kPointsWidth)};
  row.button->setObjectName("managerButton" + number);
  for (QLineEdit* const limit : {row.cutMin, row.cutMax}) {
    QObject::connect(limit, &QLineEdit::editingFinished, this, [this] { LeaveCutField(keeper_.desk()); });
  }
  row.quantity->setObjectName("managerQuantity" + number);
  for (const Quantity quantity : kEveryQuantity) row.quantity->addItem(NamesOf(quantity).shortName);
  row.name->setReadOnly(true);
  row.points->setReadOnly(true);
  row.points->setAlignment(Qt::AlignRight);
  QObject::connect(row.button, &QPushButton::clicked, this, [this, slot] {
    PressDatasetButton(keeper_.desk(), slot);
    keeper_.Reconcile();
  });
  QObject::connect(row.quantity, &QComboBox::activated, this, [this, slot](int entry) {
    if (const auto quantity = QuantityOfNumber(entry)) ChooseQuantity(keeper_.desk(), slot, *quantity);
    keeper_.Reconcile();
  });
  QObject::connect(row.cutMin, &QLineEdit::textEdited, this, [this, slot](const QString& text) {
    TypeCutMin(keeper_.desk(), slot, text.toStdString());
    keeper_.Reconcile();
  });
  QObject::connect(row.cutMax, &QLineEdit::textEdited, this, [this, slot](const QString& text) {
    TypeCutMax(keeper_.desk(), slot, text.toStdString());
    keeper_.Reconcile();
  });
  return row;
}

void ManagerView::ShowRow(const RowControls& controls, const ManagerRow& row, bool answers) {
  ShowText(*controls.button, row.button);
  ShowText(*controls.name, row.name);
  ShowText(*controls.cutMin, row.cutMin);
  ShowText(*controls.cutMax, row.cutMax);
  ShowText(*controls.points, row.points);
  controls.quantity->setCurrentIndex(row.quantity ? NumberOf(*row.quantity) : -1);
  controls.button->setEnabled(answers);
  for (QWidget* const control : std::initializer_list<QWidget*>{controls.name, controls.quantity, controls.cutMin,
                                                                controls.cutMax, controls.points}) {
    control->setEnabled(row.enabled && answers);
  }
}

void ManagerView::Refresh() {
  const DatasetManager& manager = keeper_.desk().datasetManager;
  const bool answers = !keeper_.session().Fit().FitRunning;
  if (manager.open) {
    for (std::size_t k = 0; k < rows_.size(); ++k) ShowRow(rows_[k], manager.rows[k], answers);
    unloadAll_->setEnabled(manager.unloadAll && answers);
  }
  ShowPlace();
  if (keeper_.desk().loadDialog.open && !load_) load_ = new LoadDialogView(keeper_, *this);
  if (load_) load_->Refresh();
}

}  // namespace kalvex

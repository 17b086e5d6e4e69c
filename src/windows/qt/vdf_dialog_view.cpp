#include "windows/qt/vdf_dialog_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>

#include "windows/qt/keeper.h"
#include "windows/window_texts.h"

namespace kalvex {

VdfDialogView::VdfDialogView(Keeper& keeper, QWidget* over) : QDialog(over), keeper_(keeper) {
  setObjectName("initVdf");
  setWindowTitle(texts::kVdfDialogTitle);
  setWindowModality(Qt::WindowModal);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(MakeSources());
  AddChecks(*layout);
  layout->addStretch();
  AddButtons(*layout);
  QObject::connect(this, &QDialog::rejected, this, [&keeper] {
    CancelVdfDialog(keeper.desk());
    keeper.Reconcile();
  });
  show();
}

QWidget* VdfDialogView::MakeSources() {
  auto* const group = new QGroupBox(texts::kVdfDialogGroup);
  auto* const grid = new QGridLayout(group);
  grid->setColumnStretch(0, 1);
  const VdfDialog& record = keeper_.program().vdfDialog;
  for (std::size_t k = 0; k < record.choice.size(); ++k) {
    auto* const list = new QComboBox;
    list->setObjectName(QString("source%1").arg(k + 1));
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(18);
    for (const std::string& entry : record.entries) list->addItem(QString::fromStdString(entry));
    list->setCurrentIndex(static_cast<int>(record.choice[k]));
    auto* const every2nd = new QCheckBox(texts::kEvery2nd);
    every2nd->setObjectName(QString("every2nd%1").arg(k + 1));
    every2nd->setChecked(record.every2nd[k]);
    grid->addWidget(list, static_cast<int>(k), 0);
    grid->addWidget(every2nd, static_cast<int>(k), 1);
    QObject::connect(list, &QComboBox::currentIndexChanged, this, [this, k](int entry) {
      keeper_.program().vdfDialog.choice[k] = static_cast<std::size_t>(std::max(0, entry));
    });
    QObject::connect(every2nd, &QCheckBox::toggled, this,
                     [this, k](bool on) { keeper_.program().vdfDialog.every2nd[k] = on; });
  }
  return group;
}

void VdfDialogView::AddChecks(QVBoxLayout& layout) {
  constexpr std::array kFields = {&VdfDialog::kk, &VdfDialog::on, &VdfDialog::active};
  constexpr std::array kNames = {"initKK", "initOn", "initFitActive"};
  for (std::size_t k = 0; k < kFields.size(); ++k) {
    auto* const check = new QCheckBox(texts::kVdfDialogChecks[k]);
    check->setObjectName(kNames[k]);
    check->setChecked(keeper_.program().vdfDialog.*kFields[k]);
    QObject::connect(check, &QCheckBox::toggled, this,
                     [this, field = kFields[k]](bool on) { keeper_.program().vdfDialog.*field = on; });
    layout.addWidget(check);
  }
}

void VdfDialogView::AddButtons(QVBoxLayout& layout) {
  auto* const row = new QHBoxLayout;
  row->addStretch();
  auto* const ok = new QPushButton(texts::kOkKey);
  ok->setObjectName("ok");
  ok->setDefault(true);
  auto* const cancel = new QPushButton(texts::kCancelKey);
  cancel->setObjectName("cancel");
  row->addWidget(ok);
  row->addWidget(cancel);
  layout.addLayout(row);
  // The dialog itself goes with its record, which stays open while a fit uses what "OK" would change.
  QObject::connect(ok, &QPushButton::clicked, this, [this] {
    Keeper& keeper = keeper_;
    AcceptVdfDialog(keeper.desk());
    keeper.Reconcile();
  });
  QObject::connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

}  // namespace kalvex

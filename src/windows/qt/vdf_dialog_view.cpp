#include "windows/qt/vdf_dialog_view.h"

#include <QGridLayout>
#include <QGroupBox>

#include "windows/qt/keeper.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kNameLetters = 18;

}  // namespace

VdfDialogView::VdfDialogView(Keeper& keeper, QWidget& owner)
    : ModalView(keeper, owner, "initVdf",
                {[&keeper] { AcceptVdfDialog(keeper.desk()); }, [&keeper] { CancelVdfDialog(keeper.desk()); }}),
      record_(keeper.desk().vdfDialog),
      fields_([&keeper] { keeper.Reconcile(); }) {
  setWindowTitle(texts::kVdfDialogTitle);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(Sources());
  layout->addWidget(fields_.Tick("initKK", texts::kVdfDialogChecks[0], record_.kk));
  layout->addWidget(fields_.Tick("initOn", texts::kVdfDialogChecks[1], record_.on));
  layout->addWidget(fields_.Tick("initFitActive", texts::kVdfDialogChecks[2], record_.active));
  layout->addStretch();
  layout->addLayout(ButtonRow(texts::kOkKey, texts::kCancelKey));
}

QWidget* VdfDialogView::Sources() {
  auto* const group = new QGroupBox(texts::kVdfDialogGroup);
  auto* const grid = new QGridLayout(group);
  grid->setColumnStretch(0, 1);
  for (std::size_t k = 0; k < sources_.size(); ++k) {
    const auto row = static_cast<int>(k);
    grid->addWidget(sources_[k] = NewChoice(k), row, 0);
    grid->addWidget(fields_.Tick(QString("every2nd%1").arg(row + 1), texts::kEvery2nd, record_.every2nd[k]), row, 1);
  }
  return group;
}

QComboBox* VdfDialogView::NewChoice(std::size_t source) {
  auto* const box = new QComboBox;
  box->setObjectName(QString("source%1").arg(source + 1));
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(kNameLetters);
  QObject::connect(box, &QComboBox::activated, this,
                   [this, source](int entry) { record_.choice[source] = static_cast<std::size_t>(entry); });
  return box;
}

// The choices are the datasets that exist when the dialog opens.
void VdfDialogView::FillChoices() {
  QStringList names;
  for (const std::string& entry : record_.entries) names << QtText(entry);
  for (QComboBox* const box : sources_) {
    box->clear();
    box->addItems(names);
  }
}

void VdfDialogView::Refresh(bool open) {
  if (open) {
    if (isHidden()) FillChoices();
    for (std::size_t k = 0; k < sources_.size(); ++k) sources_[k]->setCurrentIndex(static_cast<int>(record_.choice[k]));
    fields_.Refresh();
  }
  ShowOpen(open);
}

}  // namespace kalvex

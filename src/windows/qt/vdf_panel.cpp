#include "windows/qt/vdf_panel.h"

#include <QHBoxLayout>

#include "windows/qt/fields.h"
#include "windows/window_texts.h"

namespace kalvex {

VdfPanel::VdfPanel(ShownModel shown) : QGroupBox(texts::kVdfGroupAtStart), shown_(shown) {
  setObjectName("vdf");
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(2);
  buttons->addWidget(AddButton(texts::kVdfInit, "vdfInit", ModelButton::kVdfInit), 1);
  save_ = AddButton(texts::kSave, "vdfSave", ModelButton::kVdfSave);
  buttons->addWidget(save_, 1);
  buttons->addWidget(AddButton(texts::kLoad, "vdfLoad", ModelButton::kVdfLoad), 1);
  buttons->addSpacing(4);

  auto* const checks = new QHBoxLayout;
  constexpr std::array kButtons = {ModelButton::kVdfKK, ModelButton::kVdfOn, ModelButton::kVdfFit};
  for (std::size_t k = 0; k < checks_.size(); ++k) {
    checks_[k] = new QCheckBox(texts::kVdfChecks[k]);
    checks_[k]->setObjectName(QString("vdf") + texts::kVdfChecks[k]);
    checks_[k]->setFocusPolicy(Qt::NoFocus);
    QObject::connect(checks_[k], &QCheckBox::clicked, this, [shown, button = kButtons[k]] { shown.Press(button); });
    checks->addWidget(checks_[k]);
  }
  buttons->addLayout(checks, 1);

  range_ = new QLabel(texts::kVdfRangeAtStart);
  range_->setObjectName("vdfRange");
  range_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  range_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);

  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(4, 2, 4, 4);
  layout->setSpacing(3);
  layout->addLayout(buttons);
  layout->addWidget(range_);
}

QPushButton* VdfPanel::AddButton(const char* text, const char* objectName, ModelButton button) {
  QPushButton* const made = SmallButton(text, objectName);
  QObject::connect(made, &QPushButton::clicked, this, [shown = shown_, button] { shown.Press(button); });
  return made;
}

void VdfPanel::Refresh(const ModelControls& controls) {
  setTitle(QString::fromStdString(controls.vdfGroup));
  range_->setText(QString::fromStdString(controls.vdfRange));
  save_->setEnabled(controls.vdf);
  const std::array states = {controls.kk, controls.on, controls.fitActive};
  for (std::size_t k = 0; k < checks_.size(); ++k) {
    checks_[k]->setChecked(states[k]);
    checks_[k]->setEnabled(controls.vdf);
  }
}

}  // namespace kalvex

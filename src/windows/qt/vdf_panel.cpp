#include "windows/qt/vdf_panel.h"

#include <QHBoxLayout>

#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {

VdfPanel::VdfPanel(ShownModel shown) : QGroupBox(texts::kVdfGroupAtStart) {
  setObjectName("vdf");
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(2);
  buttons->addWidget(shown.NewButton(texts::kVdfInit, "vdfInit", ModelButton::kVdfInit), 1);
  buttons->addWidget(save_ = shown.NewButton(texts::kSave, "vdfSave", ModelButton::kVdfSave), 1);
  buttons->addWidget(shown.NewButton(texts::kLoad, "vdfLoad", ModelButton::kVdfLoad), 1);
  buttons->addSpacing(4);

  auto* const checks = new QHBoxLayout;
  checks->setSpacing(3);
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

void VdfPanel::Refresh(const ModelControls& controls) {
  ShowText(*this, controls.vdfGroup);
  ShowText(*range_, controls.vdfRange);
  save_->setEnabled(controls.vdf);
  const std::array states = {controls.kk, controls.on, controls.fitActive};
  for (std::size_t k = 0; k < checks_.size(); ++k) {
    ShowTick(*checks_[k], states[k]);
    checks_[k]->setEnabled(controls.vdf);
  }
}

}  // namespace kalvex

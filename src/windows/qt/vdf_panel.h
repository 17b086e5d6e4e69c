// The panel of the variational dielectric function in a model's window.
#pragma once

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <array>

#include "windows/qt/shown_model.h"

namespace kalvex {

class VdfPanel : public QGroupBox {
 public:
  explicit VdfPanel(ShownModel shown);
  void Refresh(const ModelControls& controls);

 private:
  QPushButton* save_;
  QLabel* range_;
  std::array<QCheckBox*, 3> checks_;  // KK, On, Fit
};

}  // namespace kalvex

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
  QPushButton* AddButton(const char* text, const char* objectName, ModelButton button);

  ShownModel shown_;
  QPushButton* save_ = nullptr;
  QLabel* range_;
  std::array<QCheckBox*, 3> checks_;  // KK, On, Fit
};

}  // namespace kalvex

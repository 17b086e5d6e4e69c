// The dialog that adds terms to the fit.
#pragma once

#include <QComboBox>
#include <QTreeWidget>

#include "windows/qt/single_view.h"

namespace kalvex {

class AddTermsView : public ModalView {
 public:
  AddTermsView(Keeper& keeper, QWidget& owner);
  void Refresh();

 private:
  QComboBox* NewChoice(const char* name);
  void Select();

  QComboBox* models_;
  QComboBox* datasets_;
  QTreeWidget* lines_;
};

}  // namespace kalvex

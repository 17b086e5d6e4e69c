// The dialog that makes a mesh, over the window of its model.
#pragma once

#include <QComboBox>
#include <array>

#include "windows/qt/form_fields.h"
#include "windows/qt/single_view.h"
#include "windows/vdf_dialog.h"

namespace kalvex {

class VdfDialogView : public ModalView {
 public:
  VdfDialogView(Keeper& keeper, QWidget& owner);
  // open: whether the dialog is open for the model of its owner.
  void Refresh(bool open);

 private:
  QWidget* Sources();
  QComboBox* NewChoice(std::size_t source);
  void FillChoices();

  VdfDialog& record_;
  FormFields fields_;
  std::array<QComboBox*, 3> sources_;
};

}  // namespace kalvex

// The dialog that loads a dataset.
#pragma once

#include "windows/load_dialog.h"
#include "windows/qt/form_fields.h"
#include "windows/qt/single_view.h"

namespace kalvex {

class LoadDialogView : public ModalView {
 public:
  LoadDialogView(Keeper& keeper, QWidget& owner);
  void Refresh();

 private:
  QWidget* MasterGroup();
  QWidget* XGroup();
  QWidget* GridFields();
  QWidget* MatchGroup();
  QWidget* YGroup();
  QWidget* YErrGroup();
  // A path with its button; both are enabled together.
  QWidget* FileRow(const char* name, std::string& path, LoadFile which);

  LoadDialog& record_;
  FormFields fields_;
  QWidget* xFile_;
  QWidget* grid_;
  QWidget* match_;
  QWidget* yVal_;
  QWidget* yErrFile_;
  QWidget* yErrVal_;
};

}  // namespace kalvex

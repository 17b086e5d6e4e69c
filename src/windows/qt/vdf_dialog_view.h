// The dialog that makes a mesh, over the window of its model.
#pragma once

#include <QDialog>
#include <QVBoxLayout>
#include <array>

namespace kalvex {

class Keeper;

class VdfDialogView : public QDialog {
 public:
  VdfDialogView(Keeper& keeper, QWidget* over);

 private:
  QWidget* MakeSources();
  void AddChecks(QVBoxLayout& layout);
  void AddButtons(QVBoxLayout& layout);

  Keeper& keeper_;
};

}  // namespace kalvex

// The dataset manager: a row of controls for each of the first ten datasets.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "windows/dataset_manager.h"
#include "windows/qt/single_view.h"

class QGridLayout;

namespace kalvex {

class LoadDialogView;

class ManagerView : public SingleView {
 public:
  explicit ManagerView(Keeper& keeper);
  void Refresh();

 private:
  struct RowControls {
    QPushButton* button;
    QLineEdit* name;
    QComboBox* quantity;
    QLineEdit* cutMin;
    QLineEdit* cutMax;
    QLineEdit* points;
  };
  RowControls NewRow(int slot);
  void ShowRow(const RowControls& controls, const ManagerRow& row, bool answers);

  std::array<RowControls, kManagerRows> rows_;
  QPushButton* unloadAll_;
  LoadDialogView* load_ = nullptr;
};

}  // namespace kalvex

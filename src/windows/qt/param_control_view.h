// The window of the parameter control: a slider with its labels, and the fields of the selected parameter.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>

#include "windows/param_control.h"
#include "windows/qt/single_view.h"

namespace kalvex {

class ParamControlView : public SingleView {
 public:
  explicit ParamControlView(Keeper& keeper);
  ~ParamControlView() override;

  // Shows the present state of the selected parameter.
  void Refresh();

 private:
  QWidget* MakeSlider();
  QWidget* MakeFields();
  QLayout* MakeMarks();
  QLineEdit* MakeField(const char* objectName, ParamField which);
  QCheckBox* MakeCheck(const char* objectName, void (*check)(Desk&, bool));
  void RefreshHeader(const ParamFields& fields);
  void RefreshSlider(const ParamFields& fields);

  QLabel* header_;
  QSlider* slider_ = nullptr;
  QLabel *lowerMark_ = nullptr, *upperMark_ = nullptr;
  QLineEdit *value_ = nullptr, *min_ = nullptr, *max_ = nullptr;
  QCheckBox *useMin_ = nullptr, *useMax_ = nullptr, *adjustable_ = nullptr;
  QComboBox* coupling_ = nullptr;
};

}  // namespace kalvex

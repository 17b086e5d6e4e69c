// The window of the parameter control: a slider with its labels, and the fields of the selected parameter.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QWidget>
#include <string_view>

#include "windows/param_control.h"

namespace kalvex {

class Keeper;

class ParamControlView : public QWidget {
 public:
  explicit ParamControlView(Keeper& keeper);
  ~ParamControlView() override;

  // Shows the selected parameter as it is now. What a person is typing stays.
  void Refresh();

 protected:
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void closeEvent(QCloseEvent*) override;

 private:
  QWidget* MakeSlider();
  QWidget* MakeFields();
  QLineEdit* MakeField(const char* objectName, void (*commit)(const WindowDesk&, std::string_view));
  QCheckBox* MakeCheck(const char* objectName, void (*check)(const WindowDesk&, bool));
  void RefreshHeader(const ParamFields& fields);
  void RefreshSlider(bool enabled);

  Keeper& keeper_;
  QLabel* header_;
  QSlider* slider_ = nullptr;
  QLabel *lowerMark_ = nullptr, *upperMark_ = nullptr;
  QLineEdit *value_ = nullptr, *min_ = nullptr, *max_ = nullptr;
  QCheckBox *useMin_ = nullptr, *useMax_ = nullptr, *adjustable_ = nullptr;
  QComboBox* coupling_ = nullptr;
};

}  // namespace kalvex

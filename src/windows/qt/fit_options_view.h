// The dialog of the fit's options.
#pragma once

#include "windows/qt/form_fields.h"
#include "windows/qt/single_view.h"

namespace kalvex {

struct FitOptionsForm;

class FitOptionsView : public ModalView {
 public:
  FitOptionsView(Keeper& keeper, QWidget& owner);
  void Refresh();

 private:
  QWidget* StopRules(FitOptionsForm& form);
  QWidget* Confidence(FitOptionsForm& form);
  QLayout* Others(FitOptionsForm& form);
  QLineEdit* Number(const char* name, std::string& text);

  FormFields fields_;
  QCheckBox* outOfRange_;
  QLineEdit* maxIterations_;
  QLineEdit* maxSeconds_;
  QLineEdit* reductionIterations_;
  QLineEdit* reductionAmount_;
  QLineEdit* maxLambda_;
  QLineEdit* deltaChiSq_;
};

}  // namespace kalvex

#include "windows/qt/fit_options_view.h"

#include <QGridLayout>
#include <QGroupBox>

#include "windows/qt/keeper.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kNumberWidth = 70;

QLayout* Row(std::initializer_list<QWidget*> widgets) {
  auto* const row = new QHBoxLayout;
  for (QWidget* const widget : widgets) row->addWidget(widget);
  row->addStretch();
  return row;
}

}  // namespace

FitOptionsView::FitOptionsView(Keeper& keeper, QWidget& owner)
    : ModalView(keeper, owner, "fitOptions",
                {[&keeper] { AcceptFitOptions(keeper.desk()); }, [&keeper] { CancelFitOptions(keeper.desk()); }}),
      fields_([&keeper] { keeper.Reconcile(); }) {
  setWindowTitle(texts::kFitOptionsTitle);
  FitOptionsForm& form = keeper_.desk().fitWindow.options;
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(StopRules(form));
  layout->addWidget(Confidence(form));
  layout->addLayout(Others(form));
  layout->addLayout(ButtonRow(texts::kOk, texts::kCancel));
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

QLineEdit* FitOptionsView::Number(const char* name, std::string& text) {
  QLineEdit* const field = fields_.Text(name, text);
  field->setFixedWidth(kNumberWidth);
  return field;
}

QWidget* FitOptionsView::StopRules(FitOptionsForm& form) {
  auto* const group = new QGroupBox(texts::kStopGroup);
  auto* const rules = new QVBoxLayout(group);
  rules->addLayout(Row({fields_.Tick("stopOnIterations", texts::kStopIterations, form.stopOnIterations),
                        maxIterations_ = Number("maxIterations", form.maxIterations)}));
  rules->addLayout(Row({fields_.Tick("stopOnTime", texts::kStopTime, form.stopOnTime),
                        maxSeconds_ = Number("maxSeconds", form.maxSeconds), new QLabel(texts::kStopTimeUnit)}));
  rules->addLayout(
      Row({fields_.Tick("stopOnReduction", texts::kStopReduction, form.stopOnReduction),
           reductionIterations_ = Number("reductionIterations", form.reductionIterations),
           new QLabel(texts::kStopReductionUnit), reductionAmount_ = Number("reductionAmount", form.reductionAmount)}));
  rules->addWidget(outOfRange_ = fields_.Tick("stopOnOutOfRange", texts::kStopOutOfRange, form.stopOnOutOfRange));
  rules->addLayout(Row({fields_.Tick("stopOnLambda", texts::kStopLambda, form.stopOnLambda),
                        maxLambda_ = Number("maxLambda", form.maxLambda)}));
  return group;
}

QWidget* FitOptionsView::Confidence(FitOptionsForm& form) {
  auto* const group = new QGroupBox(texts::kConfidenceGroup);
  auto* const layout = new QVBoxLayout(group);
  layout->addLayout(Row({fields_.Tick("calcConfidence", texts::kConfidence, form.calcConfidence),
                         new QLabel(texts::kDeltaChiSq), deltaChiSq_ = Number("deltaChiSq", form.deltaChiSq)}));
  return group;
}

QLayout* FitOptionsView::Others(FitOptionsForm& form) {
  auto* const grid = new QGridLayout;
  grid->addWidget(fields_.Tick("logFit", texts::kLogFit, form.logFit), 0, 0, 1, 3);
  grid->addWidget(new QLabel(texts::kSingularDet), 1, 0);
  grid->addWidget(Number("singularDet", form.singularDet), 1, 1);
  grid->addWidget(new QLabel(texts::kScreenUpdate), 2, 0);
  grid->addWidget(Number("screenUpdateEvery", form.screenUpdateEvery), 2, 1);
  grid->addWidget(new QLabel(texts::kScreenUpdateUnit), 2, 2);
  grid->addWidget(new QLabel(texts::kInitialLambda), 3, 0);
  grid->addWidget(Number("initialLambda", form.initialLambda), 3, 1);
  grid->setColumnStretch(3, 1);
  return grid;
}

void FitOptionsView::Refresh() {
  const FitWindow& window = keeper_.desk().fitWindow;
  if (window.optionsOpen) {
    fields_.Refresh();
    const FitOptionsEnabled enabled = EnabledFieldsOf(window.options);
    maxIterations_->setEnabled(enabled.maxIterations);
    maxSeconds_->setEnabled(enabled.maxSeconds);
    reductionIterations_->setEnabled(enabled.reductionIterations);
    reductionAmount_->setEnabled(enabled.reductionAmount);
    maxLambda_->setEnabled(enabled.maxLambda);
    deltaChiSq_->setEnabled(enabled.deltaChiSq);
    outOfRange_->setEnabled(enabled.stopOnOutOfRange);
  }
  ShowOpen(window.optionsOpen);
}

}  // namespace kalvex

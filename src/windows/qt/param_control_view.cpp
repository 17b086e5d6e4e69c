#include "windows/qt/param_control_view.h"

#include <QGridLayout>

#include "windows/qt/fields.h"
#include "windows/qt/keeper.h"
#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

WindowPlace PlaceOf(ParamControl& window) {
  return {window.open, window.x, window.y, window.wantsFront, &window.width, &window.height};
}

QLabel* MarkLabel(const char* text, const char* objectName) {
  auto* const label = new QLabel(text);
  label->setObjectName(objectName);
  QSizePolicy policy = label->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  label->setSizePolicy(policy);
  return label;
}

}  // namespace

ParamControlView::ParamControlView(Keeper& keeper)
    : SingleView(keeper, "paramControl", PlaceOf(keeper.desk().paramControl),
                 [&keeper] { CloseParamControl(keeper.desk()); }),
      header_(new QLabel) {
  setWindowTitle(texts::kParamControlTitle);
  setFont(SmallFont());
  header_->setObjectName("header");
  header_->setAutoFillBackground(true);
  header_->setAlignment(Qt::AlignCenter);
  header_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  header_->setMargin(3);

  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(4, 4, 4, 4);
  layout->setHorizontalSpacing(6);
  layout->setVerticalSpacing(4);
  layout->addWidget(header_, 0, 0, 1, 2);
  layout->addWidget(MakeSlider(), 1, 0);
  layout->addWidget(MakeFields(), 1, 1);
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(1, 1);
  setMinimumSize(layout->totalMinimumSize());
}

ParamControlView::~ParamControlView() {
  // A field that loses the focus while it is being deleted must not commit its text.
  for (QLineEdit* const field : {value_, min_, max_}) field->disconnect();
}

QWidget* ParamControlView::MakeSlider() {
  slider_ = new QSlider(Qt::Vertical);
  slider_->setObjectName("slider");
  slider_->setRange(slider::kTop, slider::kBottom);
  slider_->setInvertedAppearance(true);
  slider_->setPageStep(slider::kPage);
  slider_->setTickInterval(slider::kTicks[0]);
  slider_->setTickPosition(QSlider::TicksRight);
  QObject::connect(slider_, &QSlider::sliderMoved, this, [this](int position) {
    DragSlider(keeper_.desk(), position);
    keeper_.Reconcile();
  });
  const auto settle = [this] {
    SettleSlider(keeper_.desk());
    slider_->setSliderPosition(keeper_.desk().paramControl.position);
    keeper_.Reconcile();
  };
  QObject::connect(slider_, &QSlider::sliderReleased, this, settle);
  // Keys, the wheel and clicks beside the thumb only centre the slider.
  QObject::connect(slider_, &QSlider::actionTriggered, this, [this, settle] {
    if (!slider_->isSliderDown()) settle();
  });

  auto* const both = new QWidget;
  auto* const layout = new QHBoxLayout(both);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(slider_);
  layout->addLayout(MakeMarks());
  return both;
}

// The labels have equal distances, like the ticks.
QLayout* ParamControlView::MakeMarks() {
  auto* const labels = new QVBoxLayout;
  upperMark_ = MarkLabel(texts::kUpperMark, "upperMark");
  lowerMark_ = MarkLabel(texts::kLowerMark, "lowerMark");
  labels->addWidget(MarkLabel(texts::kSliderTop, "topLabel"));
  labels->addStretch();
  labels->addWidget(upperMark_);
  labels->addStretch();
  labels->addWidget(new QLabel);
  labels->addStretch();
  labels->addWidget(lowerMark_);
  labels->addStretch();
  labels->addWidget(MarkLabel(texts::kSliderBottom, "bottomLabel"));
  return labels;
}

QLineEdit* ParamControlView::MakeField(const char* objectName, ParamField which) {
  auto* const field = new QLineEdit;
  field->setObjectName(objectName);
  field->setMinimumWidth(fontMetrics().horizontalAdvance("-1.2345e+05") + 8);
  QObject::connect(field, &QLineEdit::textEdited, this, [this, which](const QString& text) {
    TypeIntoParamField(keeper_.desk(), which, text.toStdString());
    keeper_.Reconcile();
  });
  QObject::connect(field, &QLineEdit::returnPressed, field, &QWidget::clearFocus);
  QObject::connect(field, &QLineEdit::editingFinished, this, [this, field] {
    if (field->hasFocus()) return;  // Enter calls this first and removes the focus afterwards
    LeaveParamField(keeper_.desk());
    keeper_.Reconcile();
  });
  return field;
}

QCheckBox* ParamControlView::MakeCheck(const char* objectName, void (*check)(Desk&, bool)) {
  auto* const box = new QCheckBox;
  box->setObjectName(objectName);
  QObject::connect(box, &QCheckBox::clicked, this, [this, check](bool on) {
    check(keeper_.desk(), on);
    keeper_.Reconcile();
  });
  return box;
}

QWidget* ParamControlView::MakeFields() {
  value_ = MakeField("value", ParamField::kValue);
  min_ = MakeField("min", ParamField::kMin);
  max_ = MakeField("max", ParamField::kMax);
  useMin_ = MakeCheck("useMin", CheckUseMin);
  useMax_ = MakeCheck("useMax", CheckUseMax);
  adjustable_ = MakeCheck("adjustable", CheckAdjustable);
  coupling_ = new QComboBox;
  coupling_->setObjectName("coupling");
  for (const std::string& choice : CouplingChoices()) coupling_->addItem(QtText(choice));
  QObject::connect(coupling_, &QComboBox::activated, this, [this](int entry) {
    ChooseCoupling(keeper_.desk(), entry);
    keeper_.Reconcile();
  });

  auto* const fields = new QWidget;
  auto* const grid = new QGridLayout(fields);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(4);
  grid->setVerticalSpacing(3);
  for (std::size_t row = 0; row < texts::kParamLabels.size(); ++row) {
    grid->addWidget(new QLabel(texts::kParamLabels[row]), static_cast<int>(row), 0);
  }
  grid->addWidget(value_, 0, 1);
  grid->addWidget(min_, 1, 1);
  grid->addWidget(useMin_, 1, 2);
  grid->addWidget(max_, 2, 1);
  grid->addWidget(useMax_, 2, 2);
  grid->addWidget(adjustable_, 3, 1);
  grid->addWidget(coupling_, 4, 1);
  grid->setColumnStretch(1, 1);
  return fields;
}

void ParamControlView::RefreshHeader(const ParamFields& fields) {
  ShowText(*header_, fields.header);
  QPalette palette = header_->palette();
  palette.setColor(QPalette::Window, ScreenColour(kMarked));
  palette.setColor(QPalette::WindowText, ScreenColour(fields.headerColour));
  if (header_->palette() != palette) header_->setPalette(palette);
}

void ParamControlView::RefreshSlider(const ParamFields& fields) {
  slider_->setEnabled(fields.enabled);
  if (slider_->sliderPosition() != fields.position) slider_->setSliderPosition(fields.position);
  upperMark_->setVisible(fields.marksShown);
  lowerMark_->setVisible(fields.marksShown);
}

void ParamControlView::Refresh() {
  if (!ShowPlace()) return;
  const ParamFields fields = ParamFieldsOf(keeper_.desk());
  RefreshHeader(fields);
  ShowText(*value_, fields.value);
  ShowText(*min_, fields.min);
  ShowText(*max_, fields.max);
  ShowTick(*useMin_, fields.useMin);
  ShowTick(*useMax_, fields.useMax);
  ShowTick(*adjustable_, fields.adjustable);
  coupling_->setCurrentIndex(fields.coupling);
  for (QWidget* const control :
       std::initializer_list<QWidget*>{value_, min_, max_, useMin_, useMax_, adjustable_, coupling_})
    control->setEnabled(fields.enabled);
  RefreshSlider(fields);
}

}  // namespace kalvex

#include "windows/qt/fit_view.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include "windows/qt/add_terms_view.h"
#include "windows/qt/fit_options_view.h"
#include "windows/qt/keeper.h"
#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kWidth = 520, kMargin = 8, kGap = 5;
constexpr int kValueColumn = 95;

WindowPlace PlaceOf(FitWindow& window) { return {window.open, window.x, window.y, window.wantsFront}; }

}  // namespace

FitView::FitView(Keeper& keeper)
    : SingleView(keeper, "fit", PlaceOf(keeper.desk().fitWindow), [&keeper] { CloseFitWindow(keeper.desk()); }) {
  setWindowTitle(texts::kFitTitle);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kGap);
  layout->addLayout(ControlPanel());
  layout->addWidget(details_ = Details(), 1);
  layout->addStretch();
  resize(kWidth, keeper.desk().fitWindow.height);
}

QPushButton* FitView::NewButton(const char* name, const char* text, void (*press)(Desk&)) {
  auto* const button = new QPushButton(text);
  button->setObjectName(name);
  QObject::connect(button, &QPushButton::clicked, this, [this, press] {
    press(keeper_.desk());
    keeper_.Reconcile();
  });
  return button;
}

QLayout* FitView::Values() {
  constexpr std::array<const char*, 6> kNames = {"fitPoints", "fitParams",    "fitChiSq",
                                                 "fitChange", "fitIteration", "fitSeconds"};
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(2 * kMargin);
  grid->setVerticalSpacing(kGap);
  for (int k = 0; k < 6; ++k) {
    const auto entry = static_cast<std::size_t>(k);
    auto* const value = values_[entry] = new QLabel;
    value->setObjectName(kNames[entry]);
    value->setTextFormat(Qt::PlainText);
    value->setMinimumWidth(kValueColumn);
    grid->addWidget(new QLabel(texts::kFitLabels[entry]), k % 3, 2 * (k / 3));
    grid->addWidget(value, k % 3, 2 * (k / 3) + 1);
  }
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(3, 1);
  return grid;
}

QLayout* FitView::ControlPanel() {
  auto* const grid = new QGridLayout;
  grid->setSpacing(kGap);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 1);
  grid->addLayout(Values(), 0, 0, 3, 2);
  start_ = NewButton("fitStart", texts::kFitStart, PressFitStart);
  undo_ = NewButton("fitUndo", texts::kFitUndo, PressFitUndo);
  options_ = NewButton("fitOptionsButton", texts::kFitOptionsButton, OpenFitOptions);
  fold_ = NewButton("fitFold", texts::kFoldAtStart, [](Desk& desk) { ToggleFold(desk.fitWindow); });
  QFont strong = start_->font();
  strong.setBold(true);
  start_->setFont(strong);
  grid->addWidget(start_, 0, 2);
  grid->addWidget(undo_, 1, 2);
  grid->addWidget(options_, 2, 2);
  grid->addWidget(fold_, 3, 0);
  return grid;
}

QWidget* FitView::Details() {
  auto* const details = new QWidget;
  auto* const grid = new QGridLayout(details);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(kGap);
  terms_ = NewList("fitTerms", {texts::kTermHeads[0], texts::kTermHeads[1], texts::kTermHeads[2]});
  terms_->setColumnWidth(1, kValueColumn);
  terms_->setColumnWidth(2, kValueColumn);
  terms_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  QObject::connect(terms_, &QTreeWidget::itemSelectionChanged, this, [this] { SelectTerms(); });
  QObject::connect(terms_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int line) {
    if (!keeper_.IsReconciling()) ScrollTermLines(keeper_.desk().fitWindow, line);
  });
  weight_ = new QLineEdit;
  weight_->setObjectName("fitWeight");
  QObject::connect(weight_, &QLineEdit::textEdited, this, [this](const QString& text) {
    WeightEdited(keeper_.desk(), text.toStdString());
    keeper_.Reconcile();
  });
  add_ = NewButton("fitAdd", texts::kAddTerm, OpenAddTerms);
  remove_ = NewButton("fitRemove", texts::kRemoveTerm, RemoveSelectedTerms);
  grid->addWidget(terms_, 0, 0, 5, 1);
  grid->addWidget(new QLabel(texts::kTermHeads[3]), 0, 1);
  grid->addWidget(weight_, 1, 1);
  grid->addWidget(add_, 2, 1);
  grid->addWidget(remove_, 3, 1);
  grid->setColumnStretch(0, 1);
  grid->setRowStretch(4, 1);
  for (QWidget* const narrow :
       {static_cast<QWidget*>(weight_), static_cast<QWidget*>(add_), static_cast<QWidget*>(remove_)}) {
    narrow->setMaximumWidth(start_->sizeHint().width());
  }
  return details;
}

void FitView::SelectTerms() {
  Desk& desk = keeper_.desk();
  for (std::size_t line = 0; line < desk.fitWindow.lines.size(); ++line) {
    SelectTermLine(desk, line, IsRowSelected(*terms_, line));
  }
  keeper_.Reconcile();
}

void FitView::resizeEvent(QResizeEvent*) {
  if (keeper_.IsReconciling()) return;
  keeper_.desk().fitWindow.height = height();
  keeper_.Reconcile();
}

void FitView::ShowValuesOfRun() {
  const FitLabels labels = FitLabelsOf(keeper_.session().Fit());
  const std::array<const std::string*, 6> shown = {&labels.points, &labels.params,    &labels.chiSq,
                                                   &labels.change, &labels.iteration, &labels.seconds};
  for (std::size_t k = 0; k < shown.size(); ++k) ShowText(*values_[k], *shown[k]);
}

void FitView::ShowControls() {
  const FitControls controls = FitControlsOf(keeper_.session().Fit());
  ShowText(*start_, controls.startButton);
  undo_->setEnabled(controls.undo);
  options_->setEnabled(controls.options);
  add_->setEnabled(controls.add);
  remove_->setEnabled(controls.remove);
  weight_->setEnabled(controls.weight);
  ShowText(*weight_, keeper_.desk().fitWindow.weightText);
  if (controls.busyCursor == testAttribute(Qt::WA_SetCursor)) return;
  controls.busyCursor ? setCursor(Qt::WaitCursor) : unsetCursor();
}

void FitView::ShowFold() {
  const FitWindow& window = keeper_.desk().fitWindow;
  ShowText(*fold_, window.foldButton);
  if (details_->isHidden() != IsFolded(window)) {
    details_->setVisible(!IsFolded(window));
    layout()->activate();  // otherwise the window keeps its previous minimum height
  }
  if (height() != window.height) resize(width(), window.height);
}

void FitView::ShowTerms() {
  const FitWindow& window = keeper_.desk().fitWindow;
  const auto& terms = keeper_.session().Fit().list.terms;
  std::vector<ShownRow> rows;
  for (const std::string& line : window.lines) {
    rows.push_back({line, rows.size() < terms.size() && window.selected.contains(terms[rows.size()].id)});
  }
  ShowRows(*terms_, rows);
  terms_->verticalScrollBar()->setValue(window.topLine);
}

void FitView::ShowDialogs() {
  const FitWindow& window = keeper_.desk().fitWindow;
  if (window.addTerms.open && !addTerms_) addTerms_ = new AddTermsView(keeper_, *this);
  if (addTerms_) addTerms_->Refresh();
  if (window.optionsOpen && !fitOptions_) fitOptions_ = new FitOptionsView(keeper_, *this);
  if (fitOptions_) fitOptions_->Refresh();
}

void FitView::Refresh() {
  ShowDialogs();
  if (!keeper_.desk().fitWindow.open) {
    ShowPlace();
    return;
  }
  ShowValuesOfRun();
  ShowControls();
  ShowFold();
  ShowPlace();
  ShowTerms();
}

}  // namespace kalvex

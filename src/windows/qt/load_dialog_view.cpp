#include "windows/qt/load_dialog_view.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>

#include "windows/qt/keeper.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kPathWidth = 300, kNumberWidth = 90;

}  // namespace

LoadDialogView::LoadDialogView(Keeper& keeper, QWidget& owner)
    : ModalView(keeper, owner, "loadDialog",
                {[&keeper] { AcceptLoadDialog(keeper.desk()); }, [&keeper] { CancelLoadDialog(keeper.desk()); }}),
      record_(keeper.desk().loadDialog),
      fields_([&keeper] { keeper.Reconcile(); }) {
  auto* const layout = new QVBoxLayout(this);
  for (QWidget* const group : {MasterGroup(), XGroup(), MatchGroup(), YGroup(), YErrGroup()}) layout->addWidget(group);
  layout->addStretch();
  layout->addLayout(ButtonRow(texts::kOkKey, texts::kCancelKey));
}

QWidget* LoadDialogView::FileRow(const char* name, std::string& path, LoadFile which) {
  auto* const row = new QWidget;
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  QLineEdit* const field = fields_.Text(name, path);
  field->setMinimumWidth(kPathWidth);
  auto* const browse = new QPushButton(texts::kBrowse);
  browse->setObjectName(QString(name) + "Browse");
  browse->setAutoDefault(false);
  QObject::connect(browse, &QPushButton::clicked, this, [this, which] {
    BrowseForFile(keeper_.desk(), which);
    keeper_.Reconcile();
  });
  layout->addWidget(field, 1);
  layout->addWidget(browse);
  return row;
}

QWidget* LoadDialogView::MasterGroup() {
  auto* const group = new QGroupBox(texts::kMasterGroup);
  auto* const layout = new QVBoxLayout(group);
  layout->addWidget(FileRow("loadMaster", record_.masterFile, LoadFile::kMaster));
  return group;
}

QWidget* LoadDialogView::GridFields() {
  auto* const fields = new QWidget;
  auto* const grid = new QGridLayout(fields);
  grid->setContentsMargins(0, 0, 0, 0);
  const std::array<QLineEdit*, 3> numbers = {fields_.Text("loadXMin", record_.xMin),
                                             fields_.Text("loadXMax", record_.xMax),
                                             fields_.Text("loadXPts", record_.xPts)};
  int column = 0;
  for (QLineEdit* const number : numbers) {
    number->setMaximumWidth(kNumberWidth);
    grid->addWidget(new QLabel(texts::kGridFields[static_cast<std::size_t>(column / 2)]), 0, column);
    grid->addWidget(number, 0, column + 1);
    column += 2;
  }
  grid->addWidget(new QLabel(texts::kGridLabel), 1, 0);
  grid->addWidget(fields_.Radio("loadLinear", texts::kGridChoices[0], record_.grid, Grid::kLinear), 1, 1);
  grid->addWidget(fields_.Radio("loadLogarithmic", texts::kGridChoices[1], record_.grid, Grid::kLogarithmic), 1, 3);
  grid->setColumnStretch(column, 1);
  return fields;
}

QWidget* LoadDialogView::XGroup() {
  auto* const group = new QGroupBox(texts::kXGroup);
  auto* const grid = new QGridLayout(group);
  grid->addWidget(fields_.Radio("loadXMaster", texts::kXChoices[0], record_.xMethod, XSource::kMaster), 0, 0, 1, 2);
  grid->addWidget(fields_.Radio("loadXFromFile", texts::kXChoices[1], record_.xMethod, XSource::kFile), 1, 0);
  grid->addWidget(xFile_ = FileRow("loadXFile", record_.xFile, LoadFile::kX), 1, 1);
  grid->addWidget(fields_.Radio("loadXGenerated", texts::kXChoices[2], record_.xMethod, XSource::kGenerated), 2, 0,
                  Qt::AlignTop);
  grid->addWidget(grid_ = GridFields(), 2, 1);
  return group;
}

QWidget* LoadDialogView::MatchGroup() {
  auto* const group = new QGroupBox(texts::kMatchGroup);
  auto* const row = new QHBoxLayout(group);
  row->addWidget(fields_.Radio("loadInterpolation", texts::kMatchChoices[0], record_.match, Matching::kInterpolation));
  row->addWidget(fields_.Radio("loadAveraging", texts::kMatchChoices[1], record_.match, Matching::kAveraging));
  row->addStretch();
  return match_ = group;
}

QWidget* LoadDialogView::YGroup() {
  auto* const group = new QGroupBox(texts::kYGroup);
  auto* const row = new QHBoxLayout(group);
  QLineEdit* const value = fields_.Text("loadYVal", record_.yVal);
  value->setMaximumWidth(kNumberWidth);
  row->addWidget(fields_.Radio("loadYMaster", texts::kYChoices[0], record_.yMethod, YSource::kMaster));
  row->addWidget(fields_.Radio("loadYFixed", texts::kYChoices[1], record_.yMethod, YSource::kFixed));
  row->addWidget(yVal_ = value);
  row->addStretch();
  return group;
}

QWidget* LoadDialogView::YErrGroup() {
  auto* const group = new QGroupBox(texts::kYErrGroup);
  auto* const grid = new QGridLayout(group);
  QLineEdit* const value = fields_.Text("loadYErrVal", record_.yErrVal);
  value->setMaximumWidth(kNumberWidth);
  grid->addWidget(fields_.Radio("loadYErrMaster", texts::kYErrChoices[0], record_.yErrMethod, ErrorSource::kMaster), 0,
                  0, 1, 2);
  grid->addWidget(fields_.Radio("loadYErrFromFile", texts::kYErrChoices[1], record_.yErrMethod, ErrorSource::kFile), 1,
                  0);
  grid->addWidget(yErrFile_ = FileRow("loadYErrFile", record_.yErrFile, LoadFile::kYErr), 1, 1);
  grid->addWidget(fields_.Radio("loadYErrFixed", texts::kYErrChoices[2], record_.yErrMethod, ErrorSource::kFixed), 2,
                  0);
  grid->addWidget(yErrVal_ = value, 2, 1);
  return group;
}

void LoadDialogView::Refresh() {
  if (record_.open) {
    setWindowTitle(QtText(record_.title));
    fields_.Refresh();
    const LoadDialogEnabled enabled = EnabledControlsOf(record_);
    xFile_->setEnabled(enabled.xFile);
    grid_->setEnabled(enabled.grid);
    match_->setEnabled(enabled.match);
    yVal_->setEnabled(enabled.yVal);
    yErrFile_->setEnabled(enabled.yErrFile);
    yErrVal_->setEnabled(enabled.yErrVal);
  }
  ShowOpen(record_.open);
}

}  // namespace kalvex

#include "windows/qt/rows_table.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>

#include "records/model_rows.h"
#include "windows/qt/fields.h"
#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kColumnCount = static_cast<int>(texts::kModelColumns.size());

std::vector<ParamCell> ShownCells(const Model& model, const ModelWindow& window) {
  std::vector<ParamCell> cells;
  // One line more than visibleRows, because the last line may be partly visible.
  for (int line = 0; line <= window.visibleRows; ++line) {
    for (int column = 0; column < kColumnCount; ++column) cells.push_back(CellOfLine(model, window, line, column));
  }
  return cells;
}

}  // namespace

RowsModel::RowsModel(ShownModel shown, QObject* parent) : QAbstractTableModel(parent), shown_(shown) {}

int RowsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }
int RowsModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumnCount; }

void RowsModel::SetRowCount(int rows) {
  if (rows > rows_) {
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
  } else if (rows < rows_) {
    beginRemoveRows({}, rows, rows_ - 1);
    rows_ = rows;
    endRemoveRows();
  }
}

void RowsModel::Refresh(const Model& model) {
  SetRowCount(RowCount(model));
  std::vector<ParamCell> before = ShownCells(model, shown_.Window());
  before.swap(cells_);
  const bool scrolled = std::exchange(top_, shown_.Window().topRow) != top_;
  const int lines = static_cast<int>(cells_.size()) / kColumnCount;
  for (int line = 0; line < lines && top_ + line < rows_; ++line) {
    const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(line) * kColumnCount;
    const auto first = cells_.begin() + offset;
    const bool same =
        !scrolled && cells_.size() == before.size() && std::equal(first, first + kColumnCount, before.begin() + offset);
    if (!same) Q_EMIT dataChanged(index(top_ + line, 0), index(top_ + line, kColumnCount - 1));
  }
}

ParamCell RowsModel::CellAt(const QModelIndex& index) const {
  const int line = index.row() - top_, lines = static_cast<int>(cells_.size()) / kColumnCount;
  if (line >= 0 && line < lines) {
    return cells_[static_cast<std::size_t>(line) * kColumnCount + static_cast<std::size_t>(index.column())];
  }
  // The cell is scrolled into view and painted before the refresh.
  const Model* const model = shown_.Get();
  if (!model) return {};
  return CellOfLine(*model, shown_.Window(), index.row() - shown_.Window().topRow, index.column());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return QtText(CellAt(index).text);
    case Qt::ForegroundRole:
      return ScreenColour(CellAt(index).colour);
    case Qt::BackgroundRole:
      return ScreenColour(CellAt(index).marked ? kMarked : kWhite);
    case Qt::FontRole:
      return FontOf(CellAt(index));
    case Qt::TextAlignmentRole:
      return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return texts::kModelColumns[static_cast<std::size_t>(section)];
}

RowsTable::RowsTable(ShownModel shown) : shown_(shown), rows_(new RowsModel(shown, this)) {
  setObjectName("rows");
  setModel(rows_);
  setFont(SmallFont());
  setFocusPolicy(Qt::NoFocus);
  setSelectionMode(QAbstractItemView::NoSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setWordWrap(false);
  setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setMinimumHeight(1);
  QPalette own = palette();
  own.setColor(QPalette::Base, ScreenColour(kWhite));
  own.setColor(QPalette::Text, ScreenColour(kBlack));
  setPalette(own);
  SetUpHeaders();
  QObject::connect(verticalScrollBar(), &QAbstractSlider::actionTriggered, this,
                   [this](int action) { Scroll(action); });
}

void RowsTable::SetUpHeaders() {
  const int textHeight = QFontMetrics(SmallFont()).height();
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(textHeight + 3);
  QHeaderView* const heads = horizontalHeader();
  heads->setFont(SmallFont());
  heads->setMinimumSectionSize(8);
  heads->setFixedHeight(textHeight + 7);
  heads->setHighlightSections(false);
  heads->setSectionsClickable(true);
  heads->setFocusPolicy(Qt::NoFocus);
  // Replaces the table's own reaction to a double click, which measures differently.
  QObject::disconnect(heads, &QHeaderView::sectionHandleDoubleClicked, this, nullptr);
  QObject::connect(heads, &QHeaderView::sectionClicked, this, [shown = shown_](int column) {
    shown.Do([column](Desk& desk, const Model& model) { PressModelHeader(desk, model, column); });
  });
  QObject::connect(heads, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
    if (shown_.Get()) SetColumnWidth(shown_.Window(), column, width);
  });
  QObject::connect(heads, &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) {
    shown_.Do([&](Desk& desk, const Model& model) {
      FitColumnWidth(model, WindowOf(desk, model), column, [this](const ParamCell& cell) { return TextWidth(cell); });
    });
  });
}

int RowsTable::TextWidth(const ParamCell& cell) const {
  // A cell has a margin on both sides, and the grid takes one pixel.
  const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
  return QFontMetrics(FontOf(cell)).horizontalAdvance(QtText(cell.text)) + 2 * margin + 1;
}

void RowsTable::Refresh(const Model& model) {
  for (int column = 0; column < kColumnCount; ++column) {
    const int width = shown_.Window().columnWidths[static_cast<std::size_t>(column)];
    if (columnWidth(column) != width) setColumnWidth(column, width);
  }
  rows_->Refresh(model);
  const int top = shown_.Window().topRow;
  if (verticalScrollBar()->value() != top) verticalScrollBar()->setValue(top);
}

QRect RowsTable::CellRect(int row, int column) const { return visualRect(rows_->index(row, column)); }

void RowsTable::Scroll(int action) {
  QScrollBar& bar = *verticalScrollBar();
  shown_.Do([&](Desk& desk, const Model& model) {
    switch (action) {
      case QAbstractSlider::SliderSingleStepAdd:
      case QAbstractSlider::SliderSingleStepSub:
        ScrollByLines(desk, model, action == QAbstractSlider::SliderSingleStepAdd ? 1 : -1);
        break;
      case QAbstractSlider::SliderPageStepAdd:
      case QAbstractSlider::SliderPageStepSub:
        ScrollByPages(desk, model, action == QAbstractSlider::SliderPageStepAdd ? 1 : -1);
        break;
      default:
        ScrollToPosition(desk, model, bar.sliderPosition() + 1);
    }
    bar.setSliderPosition(WindowOf(desk, model).topRow);
  });
}

void RowsTable::mousePressEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->position().toPoint());
  const bool right = event->button() == Qt::RightButton;
  if (!cell.isValid() || (!right && event->button() != Qt::LeftButton)) return;
  shown_.Do([&](Desk& desk, const Model& model) {
    const ModelField field = {false, cell.row() - WindowOf(desk, model).topRow, cell.column()};
    right ? RightPressModelField(desk, model, field) : PressModelField(desk, model, field);
  });
}

void RowsTable::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return mousePressEvent(event);
  const QModelIndex cell = indexAt(event->position().toPoint());
  if (!cell.isValid()) return;
  shown_.Do([&](Desk& desk, const Model& model) {
    DoublePressModelField(desk, model, {false, cell.row() - WindowOf(desk, model).topRow, cell.column()});
  });
}

void RowsTable::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  const Model* const model = shown_.Get();
  if (!model) return;
  SetVisibleRows(*model, shown_.Window(), viewport()->height() / verticalHeader()->defaultSectionSize());
  // Refreshes only the table, because this runs before the window's own resize event stores the new size in the record.
  Refresh(*model);
}

}  // namespace kalvex

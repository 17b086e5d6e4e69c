#include "windows/qt/show.h"

#include <QApplication>
#include <QHeaderView>
#include <QPainter>
#include <QSignalBlocker>

namespace kalvex {
namespace {

constexpr int kSpotRole = Qt::UserRole;

void ShowSpot(QTreeWidgetItem& item, std::uint32_t rgb) {
  if (item.data(0, kSpotRole) == rgb) return;
  item.setData(0, kSpotRole, rgb);
  item.setIcon(0, ColorSpot(rgb));
}

void ShowRow(QTreeWidgetItem& item, const ShownRow& row) {
  const QStringList columns = QtText(row.text).split('\t');
  for (int column = 0; column < columns.size(); ++column) {
    if (item.text(column) != columns[column]) item.setText(column, columns[column]);
  }
  if (row.spot) ShowSpot(item, *row.spot);
  if (item.isSelected() != row.selected) item.setSelected(row.selected);
}

}  // namespace

QString QtText(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

void ShowText(QLabel& label, std::string_view text) {
  if (const QString wanted = QtText(text); label.text() != wanted) label.setText(wanted);
}

void ShowText(QLineEdit& field, std::string_view text) {
  if (const QString wanted = QtText(text); field.text() != wanted) field.setText(wanted);
}

void ShowText(QAbstractButton& button, std::string_view text) {
  if (const QString wanted = QtText(text); button.text() != wanted) button.setText(wanted);
}

void ShowText(QGroupBox& group, std::string_view title) {
  if (const QString wanted = QtText(title); group.title() != wanted) group.setTitle(wanted);
}

void ShowTick(QAbstractButton& button, bool ticked) {
  if (button.isChecked() != ticked) button.setChecked(ticked);
}

void ShowRows(QTreeWidget& list, const std::vector<ShownRow>& rows) {
  const QSignalBlocker quiet(&list);
  const int count = static_cast<int>(rows.size());
  while (list.topLevelItemCount() > count) delete list.takeTopLevelItem(list.topLevelItemCount() - 1);
  while (list.topLevelItemCount() < count) {
    auto* const item = new QTreeWidgetItem(&list);  // NOLINT: the list deletes it
    for (int column = 1; column < list.columnCount(); ++column) {
      item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
  }
  for (int row = 0; row < count; ++row) ShowRow(*list.topLevelItem(row), rows[static_cast<std::size_t>(row)]);
}

QTreeWidget* NewList(const char* name, const QStringList& heads) {
  auto* const list = new QTreeWidget;
  list->setObjectName(name);
  list->setRootIsDecorated(false);
  list->setUniformRowHeights(true);
  list->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list->setColumnCount(static_cast<int>(std::max<qsizetype>(heads.size(), 1)));
  list->setHeaderHidden(heads.isEmpty());
  if (!heads.isEmpty()) list->setHeaderLabels(heads);
  list->header()->setStretchLastSection(false);
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  for (int column = 1; column < list->columnCount(); ++column)
    list->headerItem()->setTextAlignment(column, Qt::AlignRight);
  return list;
}

bool IsRowSelected(const QTreeWidget& list, std::size_t row) {
  const QTreeWidgetItem* const item = list.topLevelItem(static_cast<int>(row));
  return item && item->isSelected();
}

QIcon ColorSpot(std::uint32_t rgb) {
  constexpr int kSide = 12;
  const qreal ratio = qApp->devicePixelRatio();
  QPixmap pixmap(QSize(kSide, kSide) * ratio);
  pixmap.setDevicePixelRatio(ratio);
  pixmap.fill(Qt::gray);  // a grey edge keeps white and black visible on any background
  QPainter painter(&pixmap);
  painter.fillRect(1, 1, kSide - 2, kSide - 2, QColor::fromRgb(rgb | 0xFF000000u));
  painter.end();
  QIcon icon(pixmap);
  icon.addPixmap(pixmap, QIcon::Selected);  // keeps the colour in selected rows
  return icon;
}

}  // namespace kalvex

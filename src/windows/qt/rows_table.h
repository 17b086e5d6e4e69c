// The table of a model's window: the rows of the model, scrolled as its record says. It has no cursor and no keys of
// its own; the record has both.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <vector>

#include "windows/qt/shown_model.h"

namespace kalvex {

// What the table shows, as it was when it was last refreshed.
class RowsModel : public QAbstractTableModel {
 public:
  RowsModel(ShownModel shown, QObject* parent);

  // Tells the view what has changed.
  void Refresh(const Model& model);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  ParamCell CellAt(const QModelIndex& index) const;
  void SetRowCount(int rows);

  ShownModel shown_;
  int rows_ = 0;
  int top_ = 0;                   // row of the first line
  std::vector<ParamCell> cells_;  // line by line
};

class RowsTable : public QTableView {
 public:
  explicit RowsTable(ShownModel shown);

  void Refresh(const Model& model);
  // Of a cell in the coordinates of the viewport.
  QRect CellRect(int row, int column) const;

 protected:
  void mousePressEvent(QMouseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override {}
  void mouseReleaseEvent(QMouseEvent*) override {}
  void resizeEvent(QResizeEvent*) override;

 private:
  void SetUpHeaders();
  void Scroll(int action);
  int TextWidth(const ParamCell& cell) const;

  ShownModel shown_;
  RowsModel* rows_;
};

}  // namespace kalvex

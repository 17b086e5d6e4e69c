// The table of a model's window: the rows of the model, scrolled to the position in the record. Cursor and keys are
// handled by the window.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <vector>

#include "windows/qt/shown_model.h"

namespace kalvex {

// A copy of the table's contents at the last refresh.
class RowsModel : public QAbstractTableModel {
 public:
  RowsModel(ShownModel shown, QObject* parent);

  // Notifies the view of what has changed.
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
  // Rectangle of a cell in viewport coordinates.
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

// The window of a graph: its picture, which repaints only changed pixels, and its mouse and keys.
#pragma once

#include <QImage>
#include <QWidget>

#include "graphs/graph.h"

namespace kalvex {

class Keeper;
class ContentsView;
class PropertiesView;

class GraphView : public QWidget {
 public:
  GraphView(Keeper& keeper, std::uint32_t number);

  // Shows the present state of the graph.
  void Refresh();
  const QImage& picture() const { return picture_; }

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void moveEvent(QMoveEvent*) override;
  void closeEvent(QCloseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override;
  void leaveEvent(QEvent*) override;
  void keyPressEvent(QKeyEvent*) override;

 private:
  const Graph* graph() const;
  void MakePicture(const Graph& of);
  void ShowDialogs();

  Keeper& keeper_;
  std::uint32_t number_;
  QImage picture_;
  PropertiesView* properties_ = nullptr;
  ContentsView* contents_ = nullptr;
};

}  // namespace kalvex

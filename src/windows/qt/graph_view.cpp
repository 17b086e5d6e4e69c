#include "windows/qt/graph_view.h"

#include <QCloseEvent>
#include <QPainter>
#include <cmath>

#include "graphs/graph_table.h"
#include "graphs/painting.h"
#include "windows/qt/graph_dialog_views.h"
#include "windows/qt/keeper.h"
#include "windows/qt/qt_canvas.h"

namespace kalvex {
namespace {

// The pixel of the graph under the mouse, which a screen of finer pixels places between them.
QPoint PixelAt(const QMouseEvent& event) {
  return {static_cast<int>(std::floor(event.position().x())), static_cast<int>(std::floor(event.position().y()))};
}

}  // namespace

GraphView::GraphView(Keeper& keeper, std::uint32_t number) : QWidget(nullptr), keeper_(keeper), number_(number) {
  setObjectName(QString("graph%1").arg(number));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  const Graph& of = *graph();
  setGeometry(of.XPos, of.YPos, of.Width, of.Height);
  show();
}

Graph* GraphView::graph() const { return GetGraphByNumber(keeper_.program().graphs, number_); }

void GraphView::MakePicture(const Graph& of) {
  const qreal ratio = devicePixelRatioF();
  const QSize size = QSize(of.Width, of.Height) * ratio;
  if (picture_.size() == size && picture_.devicePixelRatio() == ratio) return;
  picture_ = QImage(size, QImage::Format_RGB32);
  picture_.setDevicePixelRatio(ratio);
}

void GraphView::ShowDialogs() {
  GraphDialogs& dialogs = keeper_.program().graphDialogs;
  if (dialogs.propertiesOf == number_ && !properties_) properties_ = new PropertiesView(keeper_, *this);
  if (properties_) properties_->Refresh(dialogs.propertiesOf == number_);
  if (dialogs.contentsOf == number_ && !contents_) contents_ = new ContentsView(keeper_, *this);
  if (contents_) contents_->Refresh(dialogs.contentsOf == number_);
  if (!dialogs.wantsFront || (dialogs.propertiesOf != number_ && dialogs.contentsOf != number_)) return;
  ModalView& shown = dialogs.propertiesOf == number_ ? static_cast<ModalView&>(*properties_) : *contents_;
  shown.raise();
  shown.activateWindow();
  dialogs.wantsFront = false;
}

void GraphView::Refresh() {
  ShowDialogs();
  Graph* const of = graph();
  if (!of) return hide();
  // A macro has moved the window or changed its size.
  if (of->Width != width() || of->Height != height()) resize(of->Width, of->Height);
  if (pos() != QPoint(of->XPos, of->YPos)) move(of->XPos, of->YPos);
  setWindowTitle(QString::fromStdString(GraphTitle(*of)));
  setCursor(of->readerActive ? Qt::BlankCursor : Qt::ArrowCursor);
  const QImage before = picture_;
  MakePicture(*of);
  if (picture_.cacheKey() != before.cacheKey()) of->repaint = Repaint::kEverything;
  if (of->repaint == Repaint::kNothing) return;
  {
    QtCanvas canvas(picture_);
    RepaintGraph(*of, keeper_.program().eval, canvas.Filled());
  }
  update();
}

void GraphView::paintEvent(QPaintEvent*) {
  // The window has come to a screen of other pixels.
  if (picture_.devicePixelRatio() != devicePixelRatioF()) Refresh();
  QPainter painter(this);
  painter.drawImage(QPoint(0, 0), picture_);
}

void GraphView::resizeEvent(QResizeEvent*) {
  if (Graph* const of = graph(); of && !keeper_.IsReconciling()) {
    ResizeGraph(*of, width(), height());
    keeper_.Reconcile();
  }
}

void GraphView::moveEvent(QMoveEvent*) {
  if (Graph* const of = graph(); of && !keeper_.IsReconciling()) {
    of->XPos = pos().x();
    of->YPos = pos().y();
  }
}

void GraphView::closeEvent(QCloseEvent* event) {
  event->ignore();  // the window goes with its record
  if (Graph* const of = graph()) CloseGraphWindow(keeper_.desk(), *of);
  keeper_.Reconcile();
}

void GraphView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (const Graph* const of = graph()) {
    DoublePressGraph(keeper_.desk(), *of, PixelAt(*event).x(), PixelAt(*event).y());
  }
  keeper_.Reconcile();
}

void GraphView::mouseMoveEvent(QMouseEvent* event) {
  if (Graph* const of = graph()) {
    MoveMouseOverGraph(keeper_.desk(), *of, PixelAt(*event).x(), PixelAt(*event).y());
    Refresh();
  }
}

void GraphView::leaveEvent(QEvent*) {
  if (Graph* const of = graph()) {
    HideReader(*of);
    Refresh();
  }
}

void GraphView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) return QWidget::keyPressEvent(event);
  if (const Graph* const of = graph()) PressGraphSpace(keeper_.desk(), *of);
  keeper_.Reconcile();
}

void GraphView::changeEvent(QEvent* event) {
  if (Graph* const of = graph(); of && event->type() == QEvent::ActivationChange) of->active = isActiveWindow();
  QWidget::changeEvent(event);
}

}  // namespace kalvex

#include "windows/qt/graph_view.h"

#include <QCloseEvent>
#include <QPainter>
#include <cmath>

#include "graphs/painting.h"
#include "windows/qt/graph_dialog_views.h"
#include "windows/qt/keeper.h"
#include "windows/qt/qt_canvas.h"

namespace kalvex {
namespace {

// The pixel of the graph under the mouse. On a screen with a higher resolution the mouse may lie between pixels.
QPoint PixelAt(const QMouseEvent& event) {
  return {static_cast<int>(std::floor(event.position().x())), static_cast<int>(std::floor(event.position().y()))};
}

}  // namespace

GraphView::GraphView(Keeper& keeper, std::uint32_t number) : QWidget(nullptr), keeper_(keeper), number_(number) {
  setObjectName(QString("graph%1").arg(number));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  keeper.TakeStepKeys(*this);
  const GraphWindow& place = keeper.desk().graphs[number];
  setGeometry(place.x, place.y, graph()->Width, graph()->Height);
  show();
}

const Graph* GraphView::graph() const { return keeper_.session().FindGraph(number_); }

void GraphView::MakePicture(const Graph& of) {
  const qreal ratio = devicePixelRatioF();
  const QSize size = QSize(of.Width, of.Height) * ratio;
  if (picture_.size() == size && picture_.devicePixelRatio() == ratio) return;
  picture_ = QImage(size, QImage::Format_RGB32);
  picture_.setDevicePixelRatio(ratio);
}

void GraphView::ShowDialogs() {
  GraphDialogs& dialogs = keeper_.desk().graphDialogs;
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
  const Graph* const of = graph();
  if (!of) return hide();
  // A macro may have moved the window or changed its size.
  if (of->Width != width() || of->Height != height()) resize(of->Width, of->Height);
  const GraphWindow& place = keeper_.desk().graphs[number_];
  if (pos() != QPoint(place.x, place.y)) move(place.x, place.y);
  setWindowTitle(QString::fromStdString(GraphTitle(*of)));
  setCursor(of->readerActive ? Qt::BlankCursor : Qt::ArrowCursor);
  const QImage before = picture_;
  MakePicture(*of);
  if (picture_.cacheKey() != before.cacheKey()) keeper_.session().ForgetPicture(number_);
  if (of->repaint == Repaint::kNothing) return;
  {
    QtCanvas canvas(picture_);
    keeper_.session().RepaintGraph(number_, canvas);
  }
  update();
}

void GraphView::paintEvent(QPaintEvent*) {
  // The window was moved to a screen with another resolution.
  if (picture_.devicePixelRatio() != devicePixelRatioF()) Refresh();
  QPainter painter(this);
  painter.drawImage(QPoint(0, 0), picture_);
}

void GraphView::resizeEvent(QResizeEvent*) {
  if (const Graph* const of = graph(); of && !keeper_.IsReconciling()) {
    ResizeGraphWindow(keeper_.desk(), *of, width(), height());
    keeper_.Reconcile();
  }
}

void GraphView::moveEvent(QMoveEvent*) {
  if (!graph() || keeper_.IsReconciling()) return;
  keeper_.desk().graphs[number_] = {pos().x(), pos().y()};
}

void GraphView::closeEvent(QCloseEvent* event) {
  event->ignore();  // the window is deleted together with its record
  if (const Graph* const of = graph()) CloseGraphWindow(keeper_.desk(), *of);
  keeper_.Reconcile();
}

void GraphView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (const Graph* const of = graph()) {
    DoublePressGraph(keeper_.desk(), *of, PixelAt(*event).x(), PixelAt(*event).y());
  }
  keeper_.Reconcile();
}

void GraphView::mouseMoveEvent(QMouseEvent* event) {
  if (!graph()) return;
  keeper_.session().MoveGraphReader(number_, PixelAt(*event).x(), PixelAt(*event).y());
  Refresh();
}

void GraphView::leaveEvent(QEvent*) {
  if (!graph()) return;
  keeper_.session().HideGraphReader(number_);
  Refresh();
}

void GraphView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space) return QWidget::keyPressEvent(event);
  if (const Graph* const of = graph()) PressGraphSpace(keeper_.desk(), *of);
  keeper_.Reconcile();
}

}  // namespace kalvex

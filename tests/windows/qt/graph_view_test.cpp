#include "windows/qt/graph_view.h"

#include <QMouseEvent>

#include "graphs/graph_table.h"
#include "graphs/painting.h"
#include "windows/qt/on_screen.h"
#include "windows/qt/qt_canvas.h"

namespace kalvex {
namespace {

class GraphOnScreen : public OnScreen {
 protected:
  GraphOnScreen() {
    Run("NewModel();NewGraph(XPos=20,YPos=120,Width=500,Height=400);"
        "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");AddFreqCurve(GraphNo=1,ModelNo=1);");
  }
  GraphView& view() { return *dynamic_cast<GraphView*>(keeper.graphWidget(1)); }
  QImage PaintedWhole() {
    Graph copy = GraphNo(1);
    QImage image(QSize(copy.Width, copy.Height) * view().devicePixelRatioF(), QImage::Format_RGB32);
    image.setDevicePixelRatio(view().devicePixelRatioF());
    QtCanvas canvas(image);
    PaintGraph(copy, eval, canvas);
    return image;
  }
};

TEST_F(GraphOnScreen, IsAWindowOfItsSizeAndName) {
  EXPECT_TRUE(view().isVisible());
  EXPECT_EQ(view().size(), QSize(500, 400));
  EXPECT_EQ(view().windowTitle(), "Graph1");
}

TEST_F(GraphOnScreen, FollowsAParameter) {
  const QImage before = view().picture();
  Run("SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=400);");
  EXPECT_NE(view().picture(), before);
  EXPECT_EQ(view().picture(), PaintedWhole());
}

TEST_F(GraphOnScreen, HasAnotherFrameInAnotherSize) {
  view().resize(700, 300);
  Settle();
  EXPECT_EQ(GraphNo(1).Width, 700);
  EXPECT_EQ(view().picture(), PaintedWhole());
}

TEST_F(GraphOnScreen, HasAllPixelsOfTheScreen) {
  EXPECT_EQ(view().picture().size(), QSize(500, 400) * view().devicePixelRatioF());
  EXPECT_EQ(view().grab().toImage().convertToFormat(QImage::Format_RGB32), view().picture());
}

TEST_F(GraphOnScreen, ThePixelUnderTheMouseIsReadWhereverInItTheMouseIs) {
  session.SetGraphReader(true).Ignore();
  const PlotFrame& frame = GraphNo(1).frame;
  for (const double within : {0.0, 0.25, 0.5, 0.75}) {
    const QPointF at(frame.left + 30 + within, frame.bottom - 20 + within);
    QMouseEvent move(QEvent::MouseMove, at, view().mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(&view(), &move);
    EXPECT_EQ(GraphNo(1).readerColumn, 30) << within;
    EXPECT_EQ(GraphNo(1).readerRow, 20) << within;
  }
}

TEST_F(GraphOnScreen, ShowsTheReaderWhileItIsSwitchedOn) {
  QTest::mouseMove(&view(), QPoint(200, 100));
  EXPECT_EQ(view().windowTitle(), "Graph1");
  session.SetGraphReader(true).Ignore();
  QTest::mouseMove(&view(), QPoint(201, 101));
  QTest::qWait(20);
  EXPECT_EQ(view().windowTitle().toStdString(), GraphTitle(GraphNo(1)));
  EXPECT_TRUE(GraphNo(1).readerActive);
}

TEST_F(GraphOnScreen, ClosedByTheUserIsGone) {
  view().close();
  Settle();
  EXPECT_EQ(GetGraphByNumber(graphs, 1), nullptr);
  EXPECT_EQ(keeper.graphWidget(1), nullptr);
}

}  // namespace
}  // namespace kalvex

// The windows of parameters on the screen: models, the parameter control, the experimental parameters.
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTableView>

#include "models/model_rows.h"
#include "windows/qt/graph_view.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class ModelOnScreen : public OnScreen {
 protected:
  ModelOnScreen() {
    Run("NewModel(XPos=50,YPos=150,Width=330,Height=280);"
        "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=300);");
    keeper.modelWidget(1)->activateWindow();
    Activate(*keeper.modelWidget(1));
  }
  // There is no window manager on the test's screen to make a window the active one.
  void Activate(QWidget& window) {
    QApplication::setActiveWindow(&window);
    window.setFocus();
    Settle();
  }
  QWidget& view() { return *keeper.modelWidget(1); }
  QTableView& rows() { return *view().findChild<QTableView*>("rows"); }
  void Press(Qt::Key key) {
    QWidget* const to = QApplication::focusWidget() ? QApplication::focusWidget() : &view();
    QTest::keyClick(to, key);
    Settle();
  }
  void Click(const char* button) {
    QTest::mouseClick(view().findChild<QPushButton*>(button), Qt::LeftButton);
    Settle();
  }
  std::string Shown(int row, int column) { return rows().model()->index(row, column).data().toString().toStdString(); }
  QPoint Cell(int row, int column) { return rows().visualRect(rows().model()->index(row, column)).center(); }
};

TEST_F(ModelOnScreen, ShowsItsRowsAsTheyAreTold) {
  EXPECT_EQ(view().windowTitle(), "M1");
  EXPECT_EQ(Shown(0, 0), "1 ");
  EXPECT_EQ(Shown(0, 1), "300 ");
  EXPECT_EQ(view().findChild<QGroupBox*>("einfGroup")->title(), "Einf");
  Run("SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=-17,FitActive=0);");
  EXPECT_EQ(view().findChild<QGroupBox*>("einfGroup")->title(), "Code");
}

TEST_F(ModelOnScreen, GoesWhereItsRecordSays) {
  ModelWindow& record = ModelNo(1).window;
  record.x = 90;
  record.y = 170;
  record.width = 400;
  record.height = 310;
  Settle();
  EXPECT_EQ(view().pos(), QPoint(90, 170));
  EXPECT_EQ(view().size(), QSize(400, 310));
  view().move(33, 44);
  Settle();
  EXPECT_EQ(record.x, 33);
}

TEST_F(ModelOnScreen, IsBuiltByKeys) {
  Press(Qt::Key_Insert);
  EXPECT_EQ(RowCount(ModelNo(1)), 2);
  Press(Qt::Key_Down);
  for (const Qt::Key key : {Qt::Key_4, Qt::Key_5, Qt::Key_0, Qt::Key_Return}) Press(key);
  const int row = ModelNo(1).window.curRow;
  EXPECT_EQ(kalvex::Cell(ModelNo(1), row, Wo).value, 450);
  EXPECT_EQ(Shown(row, 1), "450 ");
  Press(Qt::Key_Space);
  EXPECT_EQ(kalvex::Cell(ModelNo(1), row, Wo).adjustable, 0u);
  Press(Qt::Key_9);
  Press(Qt::Key_Escape);
  EXPECT_EQ(kalvex::Cell(ModelNo(1), row, Wo).value, 450);
  Press(Qt::Key_Delete);
  EXPECT_EQ(RowCount(ModelNo(1)), 1);
}

TEST_F(ModelOnScreen, ATextThatIsNoNumberChangesNothing) {
  QTest::mouseDClick(rows().viewport(), Qt::LeftButton, {}, Cell(0, 2));
  Settle();
  QTest::keyClicks(QApplication::focusWidget(), "abc");
  Press(Qt::Key_Return);
  EXPECT_EQ(kalvex::Cell(ModelNo(1), 0, Wp).value, 100);
}

TEST_F(ModelOnScreen, AnswersTheMouse) {
  QTest::mouseClick(rows().viewport(), Qt::LeftButton, {}, Cell(0, 3));
  Settle();
  EXPECT_TRUE(ModelNo(1).window.rowSelected);
  EXPECT_EQ(ModelNo(1).window.curColumn, 3);
  QTest::mouseClick(rows().viewport(), Qt::RightButton, {}, Cell(0, 3));
  Settle();
  EXPECT_EQ(kalvex::Cell(ModelNo(1), 0, G).adjustable, 0u);
  Click("add");
  EXPECT_EQ(RowCount(ModelNo(1)), 2);
  Click("fixAll");
  EXPECT_EQ(ModelNo(1).epsInf.adjustable, 0u);
  Click("vdfButton");
  EXPECT_TRUE(ModelNo(1).window.vdfShown);
}

TEST_F(ModelOnScreen, ClosedByTheUserLeavesGraphsAndProgram) {
  Run("NewGraph();AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  view().close();
  Settle();
  EXPECT_EQ(CountModels(program.params), 0);
  EXPECT_EQ(keeper.modelWidget(1), nullptr);
  EXPECT_TRUE(GraphNo(1).curves.empty());
}

// A slider is moved while a graph follows.
TEST_F(ModelOnScreen, TheSliderSweepsAParameterWhileAGraphFollows) {
  Run("NewGraph();GraphProperties(GraphNo=1,Xmin=100,Xmax=600);AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  OpenParamControl(keeper.desk());
  QTest::mouseClick(rows().viewport(), Qt::LeftButton, {}, Cell(0, 1));
  Settle();
  auto* const control = Find<QWidget>("paramControl");
  ASSERT_NE(control, nullptr);
  auto* const slider = control->findChild<QSlider*>("slider");
  ASSERT_NE(slider, nullptr);
  EXPECT_TRUE(slider->isEnabled());
  const auto& graph = *dynamic_cast<GraphView*>(keeper.graphWidget(1));
  const QImage before = graph.picture();
  const double value = kalvex::Cell(ModelNo(1), 0, Wo).value;
  slider->setSliderDown(true);
  slider->setSliderPosition(slider->sliderPosition() - 15);
  Q_EMIT slider->sliderMoved(slider->sliderPosition());
  Settle();
  EXPECT_NE(kalvex::Cell(ModelNo(1), 0, Wo).value, value);
  EXPECT_NE(graph.picture(), before);
  slider->setSliderDown(false);
  Settle();
  EXPECT_EQ(program.paramControl.baseValue, kalvex::Cell(ModelNo(1), 0, Wo).value);
}

TEST_F(ModelOnScreen, FieldsOfTheControlTakeEffectWhenTheyAreLeft) {
  OpenParamControl(keeper.desk());
  QTest::mouseClick(rows().viewport(), Qt::LeftButton, {}, Cell(0, 1));
  Settle();
  auto* const control = Find<QWidget>("paramControl");
  Activate(*control);
  auto* const field = control->findChild<QLineEdit*>("value");
  field->setFocus();
  field->selectAll();
  QTest::keyClicks(field, "333");
  EXPECT_EQ(kalvex::Cell(ModelNo(1), 0, Wo).value, 300);
  QTest::keyClick(field, Qt::Key_Return);
  Settle();
  EXPECT_EQ(kalvex::Cell(ModelNo(1), 0, Wo).value, 333);
  EXPECT_EQ(Shown(0, 1), "333 ");
  EXPECT_EQ(control->findChild<QComboBox*>("coupling")->count(), 26);
}

TEST_F(ModelOnScreen, ExperimentalParametersAreEditedByKeys) {
  Run("ExpParams(XPos=400,YPos=300);");
  auto* const window = Find<QWidget>("expParams");
  ASSERT_NE(window, nullptr);
  Activate(*window);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  for (const Qt::Key key : {Qt::Key_4, Qt::Key_5, Qt::Key_Return}) Press(key);
  EXPECT_EQ(program.params.ExpParams[kAngleOfIncidence].value, 45);
  window->close();
  Settle();
  EXPECT_FALSE(program.expParamsWindow.open);
}

}  // namespace
}  // namespace kalvex

// The parameter control on the screen.
#include <QSlider>

#include "records/param_value.h"
#include "support/tolerances.h"
#include "windows/qt/graph_view.h"
#include "windows/qt/model_on_screen.h"

namespace kalvex {
namespace {

// The frequency of the model's row is selected.
class ControlOnScreen : public ModelOnScreen {
 protected:
  ControlOnScreen() {
    OpenParamControl(desk);
    ClickCell(0, 1);
  }
  QWidget& control() { return *Find<QWidget>("paramControl"); }
  QSlider& slider() { return *Find<QSlider>("slider"); }
  ModelParam& selected() { return param(0, Wo); }
  void Enter(const char* field, const char* text) {
    Activate(control());
    Find<QLineEdit>(field)->setFocus();
    Type(field, text);
    Press(Qt::Key_Return);
  }
  void DragTo(int position) {
    slider().setSliderDown(true);
    slider().setSliderPosition(position);
    Settle();
  }
  void LetGo() {
    slider().setSliderDown(false);
    Settle();
  }
  void Choose(int group) {
    auto* const box = Find<QComboBox>("coupling");
    for (int k = box->currentIndex(); k < group; ++k) QTest::keyClick(box, Qt::Key_Down);
    for (int k = box->currentIndex(); k > group; --k) QTest::keyClick(box, Qt::Key_Up);
    Settle();
  }
  bool MarksShown() { return Find<QLabel>("upperMark") && Find<QLabel>("lowerMark"); }
};

TEST_F(ControlOnScreen, ShowsTheSelectedParameter) {
  selected().useMax = 1;
  Settle();
  EXPECT_EQ(control().windowTitle(), "Parameter control");
  auto* const header = Find<QLabel>("header");
  EXPECT_EQ(header->text(), "TO frequency");
  EXPECT_EQ(header->palette().color(QPalette::Window), QColor(0xC9, 0xF1, 0xCE));
  EXPECT_EQ(header->palette().color(QPalette::WindowText), QColor(Qt::blue));
  EXPECT_EQ(FieldText("value") + ' ' + FieldText("min") + ' ' + FieldText("max"), "300 0 1e+05");
  EXPECT_FALSE(Find<QCheckBox>("useMin")->isChecked());
  EXPECT_TRUE(Find<QCheckBox>("useMax")->isChecked());
  EXPECT_EQ(slider().maximum() - slider().minimum(), 80);
  EXPECT_EQ(slider().pageStep(), 10);
  EXPECT_EQ(slider().tickInterval(), 20);
  EXPECT_TRUE(MarksShown());
  EXPECT_EQ(Find<QLabel>("upperMark")->text(), "+20%");
  EXPECT_LT(Find<QLabel>("upperMark")->y(), Find<QLabel>("lowerMark")->y());
  Click("adjustable");
  EXPECT_EQ(header->palette().color(QPalette::WindowText), QColor(Qt::red));
  EXPECT_EQ(Look(0, 1, Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
}

TEST_F(ControlOnScreen, WithoutAParameterNothingAnswers) {
  Run("CloseModel(ModelNo=1);");
  EXPECT_EQ(Find<QLabel>("header")->text(), "No parameter selected");
  EXPECT_EQ(Find<QLabel>("header")->palette().color(QPalette::WindowText), QColor(Qt::black));
  EXPECT_EQ(FieldText("value") + FieldText("min") + FieldText("max"), "");
  for (const char* const name : {"value", "min", "max", "useMin", "useMax", "adjustable", "coupling", "slider"}) {
    EXPECT_FALSE(Find<QWidget>(name)->isEnabled()) << name;
  }
}

TEST_F(ControlOnScreen, TheSliderSweepsTheParameterWhileAGraphFollows) {
  Run("NewGraph();GraphProperties(GraphNo=1,Xmin=100,Xmax=600);AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  const auto& graph = *dynamic_cast<GraphView*>(keeper.graphWidget(1));
  const QImage before = graph.picture();
  EXPECT_TRUE(slider().isEnabled());
  EXPECT_EQ(slider().sliderPosition(), 40);
  DragTo(20);
  EXPECT_NEAR(selected().value, 360, kChain);
  EXPECT_EQ(FieldText("value"), "360");
  EXPECT_NE(graph.picture(), before);
  EXPECT_EQ(slider().sliderPosition(), 20);
  LetGo();
  EXPECT_EQ(slider().sliderPosition(), 40);
  EXPECT_EQ(desk.paramControl.baseValue, selected().value);
}

TEST_F(ControlOnScreen, TheSliderStandsAtItsEndWhereTheValueIsAndOtherActionsOnlyCentreIt) {
  DragTo(80);
  EXPECT_EQ(selected().value, 0);
  LetGo();
  EXPECT_EQ(slider().sliderPosition(), 80);
  EXPECT_FALSE(MarksShown());
  Run("SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=100);");
  EXPECT_EQ(slider().sliderPosition(), 40);
  EXPECT_TRUE(MarksShown());
  for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Home}) {
    QTest::keyClick(&slider(), key);
    Settle();
    EXPECT_EQ(slider().sliderPosition(), 40);
    EXPECT_EQ(selected().value, 100);
  }
}

TEST_F(ControlOnScreen, TheSliderMovesTheWholeGroup) {
  kalvex::Cell(SecondModel(), 0, Wo).value = 10;
  QTest::mouseClick(rows(2).viewport(), Qt::LeftButton, {}, Cell(0, 1));
  Settle();
  Choose(3);
  ClickCell(0, 1);
  EXPECT_EQ(Find<QComboBox>("coupling")->currentIndex(), 0);
  Choose(3);
  EXPECT_EQ(selected().value, 10);  // it takes the value of its group
  EXPECT_EQ(Find<QComboBox>("coupling")->currentText(), "A3");
  EXPECT_TRUE(Look(0, 1, Qt::FontRole).value<QFont>().bold());
  DragTo(60);
  LetGo();
  EXPECT_NEAR(selected().value, 8, kChain);
  EXPECT_EQ(kalvex::Cell(ModelNo(2), 0, Wo).value, selected().value);
  EXPECT_EQ(rows(2).model()->index(0, 1).data().toString(), "8 ");
}

TEST_F(ControlOnScreen, TheGroupAfterTheLastIsNone) {
  EXPECT_EQ(Find<QComboBox>("coupling")->count(), 26);
  Choose(24);
  EXPECT_EQ(selected().coupling, 24u);
  Choose(25);
  EXPECT_EQ(selected().coupling, 0u);
  EXPECT_EQ(Find<QComboBox>("coupling")->currentIndex(), 0);
}

TEST_F(ControlOnScreen, FieldsTakeEffectWhenTheyAreLeft) {
  Activate(control());
  auto* const field = Find<QLineEdit>("value");
  field->setFocus();
  Type("value", "333");
  Settle();
  EXPECT_EQ(field->text(), "333");  // the partly typed text stays
  EXPECT_EQ(selected().value, 300);
  Press(Qt::Key_Tab);
  EXPECT_EQ(selected().value, 333);
  EXPECT_EQ(Shown(0, 1), "333 ");
  Enter("value", "words");
  EXPECT_EQ(selected().value, 0);
}

TEST_F(ControlOnScreen, LimitsActWhileTheyAreTicked) {
  Enter("max", "250");
  EXPECT_EQ(selected().value, 300);
  Click("useMax");
  EXPECT_EQ(selected().value, 250);
  EXPECT_EQ(FieldText("value"), "250");
  EXPECT_EQ(slider().sliderPosition(), 0);
  Enter("value", "400");
  EXPECT_EQ(FieldText("value"), "250");
  Enter("min", "999");
  EXPECT_EQ(FieldText("min"), "250");  // not above the upper limit
  Enter("min", "100");
  Click("useMin");
  Enter("value", "-5");
  EXPECT_EQ(selected().value, 100);
  Enter("max", "50");
  EXPECT_EQ(FieldText("max"), "100");
  Click("useMax");
  Click("useMin");
  Enter("value", "-5");
  EXPECT_EQ(selected().value, -5);
}

TEST_F(ControlOnScreen, AClickOnAnotherParameterLeavesTheTypedOneToItsOwner) {
  SecondModel();
  ClickCell(0, 1);
  Activate(control());
  Find<QLineEdit>("value")->setFocus();
  Type("value", "42");
  QTest::mouseClick(rows(2).viewport(), Qt::LeftButton, {}, Cell(0, 3));  // before the event of the focus change
  Settle();
  Activate(view(2));
  EXPECT_EQ(selected().value, 42);
  EXPECT_EQ(kalvex::Cell(ModelNo(2), 0, G).value, 10);
  EXPECT_EQ(FieldText("value"), "10");
}

TEST_F(ControlOnScreen, ClosingTakesWhatIsTypedAndTheMarkAway) {
  Activate(control());
  Find<QLineEdit>("value")->setFocus();
  Type("value", "42");
  EXPECT_EQ(Look(0, 1, Qt::BackgroundRole).value<QColor>(), QColor(0xC9, 0xF1, 0xCE));
  control().close();
  Settle();
  EXPECT_EQ(Find<QWidget>("paramControl"), nullptr);
  EXPECT_EQ(selected().value, 42);
  EXPECT_FALSE(window().paramSelected);
  OpenParamControl(desk);
  Settle();
  EXPECT_EQ(FieldText("value"), "42");
}

TEST_F(ControlOnScreen, TheModelMayGoWhileItsParameterIsTyped) {
  Model& second = SecondModel();
  SetCoupling(params, selected(), 5);
  SetCoupling(params, kalvex::Cell(second, 0, Wo), 5);
  ClickCell(0, 1);
  Activate(control());
  Find<QLineEdit>("value")->setFocus();
  Type("value", "42");
  view().close();
  Settle();
  EXPECT_EQ(kalvex::Cell(second, 0, Wo).value, 42);
  EXPECT_EQ(Find<QLabel>("header")->text(), "No parameter selected");
  EXPECT_EQ(FieldText("value"), "");
}

TEST_F(ControlOnScreen, TheModelMayGoWhileItsSliderIsHeld) {
  DragTo(25);
  Run("CloseModel(ModelNo=1);");
  EXPECT_FALSE(slider().isEnabled());
  LetGo();
  SecondModel();
  Activate(view(2));
  EXPECT_EQ(Find<QLabel>("header")->text(), "No parameter selected");  // a macro selects nothing
}

TEST_F(ControlOnScreen, GoesToItsFirstPlaceWhenItIsOpenedAgain) {
  control().move(33, 44);
  control().resize(300, 260);
  Settle();
  EXPECT_EQ(std::pair(desk.paramControl.x, desk.paramControl.width), std::pair(33, 300));
  control().close();
  Settle();
  OpenParamControl(desk);
  Settle();
  EXPECT_EQ(control().pos(), QPoint(400, 100));
  EXPECT_LT(control().width(), 300);
}

}  // namespace
}  // namespace kalvex

// The window of the experimental parameters on the screen.
#include "records/param_value.h"
#include "windows/qt/model_on_screen.h"

namespace kalvex {
namespace {

class ExpParamsOnScreen : public ModelOnScreen {
 protected:
  ExpParamsOnScreen() {
    Run("ExpParams(XPos=400,YPos=300);");
    Activate(*Find<QWidget>("expParams"));
  }
  ModelParam& exp(int index) { return params.ExpParams[static_cast<std::size_t>(index)]; }
  QLabel& value(int index) { return *Find<QLabel>(QString("value%1").arg(index)); }
  QColor Ground(int index) { return value(index).palette().color(QPalette::Window); }
  int selected() { return desk.expParams.selectedIndex; }
  void ClickValue(int index, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(&value(index), button);
    Settle();
  }
};

TEST_F(ExpParamsOnScreen, ShowsSixFixedParameters) {
  EXPECT_EQ(Find<QWidget>("expParams")->windowTitle(), "Experimental Parameters");
  const QStringList labels = {"Sample thickness", "Thickness spread",    "Angle of incidence",
                              "Angle spread",     "Scaling factor of R", "Scaling factor of T"};
  const QStringList values = {"0.0015 ", "0 ", "80 ", "0 ", "1 ", "1 "};
  for (int index = 0; index < 6; ++index) {
    EXPECT_EQ(Find<QLabel>(QString("label%1").arg(index))->text(), labels[index]);
    EXPECT_EQ(value(index).text(), values[index]);
    EXPECT_EQ(value(index).palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_EQ(Ground(index), index == 0 ? QColor(0xC9, 0xF1, 0xCE) : QColor(Qt::white));
  }
  EXPECT_EQ(Find<QPushButton>("close")->text(), "Close Window");
}

TEST_F(ExpParamsOnScreen, TheMarkGoesAroundByKeys) {
  const auto after = [&](Qt::Key key) {
    Press(key);
    EXPECT_EQ(Ground(selected()), QColor(0xC9, 0xF1, 0xCE));
    return selected();
  };
  EXPECT_EQ(after(Qt::Key_Up), 5);
  EXPECT_EQ(after(Qt::Key_Tab), 0);
  EXPECT_EQ(after(Qt::Key_Down), 1);
  EXPECT_EQ(after(Qt::Key_Left), 0);
  EXPECT_EQ(after(Qt::Key_PageDown), 5);
  EXPECT_EQ(after(Qt::Key_Right), 0);
  EXPECT_EQ(after(Qt::Key_End), 0);
  EXPECT_EQ(after(Qt::Key_Down), 1);
  EXPECT_EQ(after(Qt::Key_PageUp), 0);
}

TEST_F(ExpParamsOnScreen, IsEditedByKeys) {
  Press({Qt::Key_Down, Qt::Key_Down, Qt::Key_4, Qt::Key_5, Qt::Key_Return});
  EXPECT_EQ(exp(kAngleOfIncidence).value, 45);
  EXPECT_EQ(value(2).text(), "45 ");
  Press(Qt::Key_Return);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), "45");
  EXPECT_EQ(Editor()->palette().color(QPalette::Base), QColor(0xC9, 0xF1, 0xCE));
  EXPECT_EQ(Editor()->palette().color(QPalette::Text), QColor(Qt::black));
  EXPECT_EQ(Editor()->y(), value(2).y());
  Press({Qt::Key_Right, Qt::Key_Right});  // the caret goes to the end of the text
  EXPECT_EQ(Editor()->cursorPosition(), 2);
  Press({Qt::Key_6, Qt::Key_Right});
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(exp(kAngleOfIncidence).value, 456);
  EXPECT_EQ(selected(), 3);
  Press({Qt::Key_7, Qt::Key_Escape});
  EXPECT_EQ(exp(3).value, 0);
  Press({Qt::Key_7, Qt::Key_Up});
  EXPECT_EQ(exp(3).value, 7);
  EXPECT_EQ(selected(), 2);
  Press(Qt::Key_Space);
  EXPECT_EQ(exp(2).adjustable, 1u);
  EXPECT_EQ(value(2).palette().color(QPalette::WindowText), QColor(Qt::blue));
  Press({Qt::Key_F5, Qt::Key_Insert, Qt::Key_Delete});
  EXPECT_EQ(Editor(), nullptr);
}

TEST_F(ExpParamsOnScreen, IsEditedByMouse) {
  ClickValue(4);
  EXPECT_EQ(selected(), 4);
  ClickValue(1, Qt::RightButton);
  EXPECT_EQ(exp(1).adjustable, 1u);
  EXPECT_EQ(selected(), 4);
  QTest::mouseDClick(&value(5), Qt::LeftButton);
  Settle();
  ASSERT_NE(Editor(), nullptr);
  Editor()->selectAll();
  QTest::keyClicks(Editor(), "0.25");
  ClickValue(0);
  EXPECT_EQ(exp(5).value, 0.25);
  EXPECT_EQ(value(5).text(), "0.25 ");
  EXPECT_EQ(selected(), 0);
  QTest::mouseClick(Find<QLabel>("label3"), Qt::LeftButton);
  EXPECT_EQ(selected(), 0);
}

TEST_F(ExpParamsOnScreen, ATextThatIsNoNumberIsRejected) {
  Press(Qt::Key_Return);
  Editor()->selectAll();
  QTest::keyClicks(Editor(), "abc");
  Press(Qt::Key_Return);
  EXPECT_EQ(exp(0).value, 0.0015);
  EXPECT_EQ(value(0).text(), "0.0015 ");
}

TEST_F(ExpParamsOnScreen, ItsButtonTakesWhatIsTypedAndOpeningStartsAnew) {
  OpenParamControl(desk);
  Settle();
  Activate(*Find<QWidget>("paramControl"));  // the screen reports it later
  Activate(*Find<QWidget>("expParams"));
  Press({Qt::Key_Down, Qt::Key_3});
  Click("close");
  EXPECT_EQ(exp(1).value, 3);
  EXPECT_EQ(Find<QWidget>("expParams"), nullptr);
  EXPECT_EQ(Find<QLabel>("header")->text(), "No parameter selected");
  OpenExpParams(desk);
  Settle();
  EXPECT_EQ(selected(), 0);
  EXPECT_EQ(Find<QWidget>("expParams")->pos(), QPoint(400, 300));
  EXPECT_EQ(Find<QLabel>("header")->text(), "Sample thickness");
}

TEST_F(ExpParamsOnScreen, FollowsAGroupThatItSharesWithAModel) {
  SetCoupling(params, param(0, G), 2);
  SetCoupling(params, exp(1), 2);
  Settle();
  EXPECT_EQ(Find<QLabel>("label1")->text(), "Linewidth");
  EXPECT_TRUE(value(1).font().bold());
  EXPECT_FALSE(value(2).font().bold());
  Activate(view());
  ClickCell(0, 3);
  Press({Qt::Key_6, Qt::Key_Return});
  EXPECT_EQ(value(1).text(), "6 ");
}

TEST_F(ExpParamsOnScreen, LosesItsMarkToTheModelThatIsSelected) {
  OpenParamControl(desk);
  ClickValue(2);
  Activate(*Find<QWidget>("paramControl"));
  EXPECT_EQ(Ground(2), QColor(0xC9, 0xF1, 0xCE));  // the parameter control shows it
  ClickCell(0, 1);
  EXPECT_EQ(Ground(2), QColor(Qt::white));
  EXPECT_EQ(Find<QLabel>("header")->text(), "TO frequency");
}

}  // namespace
}  // namespace kalvex

// The window of a model on the screen.
#include <QMouseEvent>
#include <QScrollBar>

#include "windows/qt/model_on_screen.h"

namespace kalvex {
namespace {

TEST_F(ModelOnScreen, ShowsItsRowsAsTheyAreTold) {
  EXPECT_EQ(view().windowTitle(), "M1");
  EXPECT_EQ(Shown(0, 0), "1 ");
  EXPECT_EQ(Shown(0, 1), "300 ");
  EXPECT_EQ(view().findChild<QGroupBox*>("einfGroup")->title(), "Einf");
  Run("SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=-17,FitActive=0);");
  EXPECT_EQ(view().findChild<QGroupBox*>("einfGroup")->title(), "Code");
}

TEST_F(ModelOnScreen, GoesWhereItsRecordSays) {
  ModelWindow& record = window();
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
  view().resize(350, 290);  // by the user
  Settle();
  EXPECT_EQ(view().size(), QSize(350, 290));
  EXPECT_EQ(std::pair(record.width, record.height), std::pair(350, 290));
}

TEST_F(ModelOnScreen, IsBuiltByKeys) {
  Press(Qt::Key_Insert);
  EXPECT_EQ(RowCount(ModelNo(1)), 2);
  Press(Qt::Key_Down);
  Press({Qt::Key_4, Qt::Key_5, Qt::Key_0, Qt::Key_Return});
  const int row = window().curRow;
  EXPECT_EQ(param(row, Wo).value, 450);
  EXPECT_EQ(Shown(row, 1), "450 ");
  Press(Qt::Key_Space);
  EXPECT_EQ(param(row, Wo).adjustable, 0u);
  Press(Qt::Key_9);
  Press(Qt::Key_Escape);
  EXPECT_EQ(param(row, Wo).value, 450);
  Press(Qt::Key_Delete);
  EXPECT_EQ(RowCount(ModelNo(1)), 1);
}

TEST_F(ModelOnScreen, ATextThatIsNoNumberChangesNothing) {
  DoubleClickCell(0, 2);
  QTest::keyClicks(QApplication::focusWidget(), "abc");
  Press(Qt::Key_Return);
  EXPECT_EQ(param(0, Wp).value, 100);
}

TEST_F(ModelOnScreen, AnswersTheMouse) {
  ClickCell(0, 3);
  EXPECT_TRUE(window().rowSelected);
  EXPECT_EQ(window().curColumn, 3);
  ClickCell(0, 3, Qt::RightButton);
  EXPECT_EQ(param(0, G).adjustable, 0u);
  Click("add");
  EXPECT_EQ(RowCount(ModelNo(1)), 2);
  Click("fixAll");
  EXPECT_EQ(ModelNo(1).epsInf.adjustable, 0u);
  Click("vdfButton");
  EXPECT_TRUE(window().vdfShown);
}

TEST_F(ModelOnScreen, StepsGoBackAndForwardByKeys) {
  ClickCell(0, 1);
  Press({Qt::Key_4, Qt::Key_2, Qt::Key_Return});
  EXPECT_EQ(Shown(0, 1), "42 ");
  Click("add");
  const auto step = [&](Qt::KeyboardModifiers keys) {
    QTest::keyClick(&view(), Qt::Key_Z, keys);
    Settle();
  };
  step(Qt::ControlModifier);
  EXPECT_EQ(rows().model()->rowCount(), 1);
  EXPECT_EQ(Shown(0, 1), "42 ");
  step(Qt::ControlModifier);
  EXPECT_EQ(Shown(0, 1), "300 ");
  step(Qt::ControlModifier | Qt::ShiftModifier);
  step(Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(rows().model()->rowCount(), 2);
  EXPECT_EQ(Shown(1, 1), "42 ");
}

TEST_F(ModelOnScreen, AFieldThatIsTypedIntoTakesItsOwnStepsBack) {
  ClickCell(0, 1);
  Press({Qt::Key_4, Qt::Key_2});
  QTest::keyClick(Editor(), Qt::Key_Z, Qt::ControlModifier);
  Settle();
  ASSERT_NE(Editor(), nullptr);
  EXPECT_NE(Editor()->text(), "42");
  EXPECT_EQ(param(0, Wo).value, 300);
}

TEST_F(ModelOnScreen, ClosedByTheUserLeavesGraphsAndProgram) {
  Run("NewGraph();AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  view().close();
  Settle();
  EXPECT_EQ(CountModels(params), 0);
  EXPECT_EQ(keeper.modelWidget(1), nullptr);
  EXPECT_TRUE(GraphNo(1).curves.empty());
}

TEST_F(ModelOnScreen, IsNeverSmallerThanItsControlsNeed) {
  window().width = window().height = 10;
  Settle();
  EXPECT_EQ(view().size(), QSize(215, 225));
  EXPECT_GE(window().visibleRows, 1);
}

TEST_F(ModelOnScreen, ColoursTellWhatIsFreeMarkedAndCoupled) {
  ClickCell(0, 2);
  param(0, G).adjustable = 0;
  param(0, G).coupling = 2;
  Settle();
  EXPECT_EQ(Look(0, 1, Qt::ForegroundRole).value<QColor>(), QColor(Qt::blue));
  EXPECT_EQ(Look(0, 3, Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
  EXPECT_EQ(Look(0, 2, Qt::BackgroundRole).value<QColor>(), QColor(0xC9, 0xF1, 0xCE));
  EXPECT_EQ(Look(0, 3, Qt::BackgroundRole).value<QColor>(), QColor(Qt::white));
  EXPECT_NE(Look(0, 3, Qt::FontRole), Look(0, 1, Qt::FontRole));
  auto* const einf = Find<QLabel>("epsInf");
  EXPECT_EQ(einf->palette().color(QPalette::Window), QColor(Qt::white));
  Press(Qt::Key_Tab);
  EXPECT_EQ(einf->palette().color(QPalette::Window), QColor(0xC9, 0xF1, 0xCE));
  EXPECT_EQ(Look(0, 2, Qt::BackgroundRole).value<QColor>(), QColor(Qt::white));
  // The painted cells agree with the roles of the table model.
  const QImage picture = rows().viewport()->grab().toImage();
  EXPECT_EQ(picture.pixelColor(rows().visualRect(rows().model()->index(0, 2)).topLeft() + QPoint(2, 2)),
            QColor(Qt::white));
}

TEST_F(ModelOnScreen, MovesItsMarkByKeys) {
  AddRows(30);
  const auto mark = [&](Qt::Key key) {
    Press(key);
    return window().rowSelected ? std::pair(window().curRow, window().curColumn) : std::pair(-1, 0);
  };
  EXPECT_EQ(mark(Qt::Key_Right), std::pair(0, 1));
  EXPECT_EQ(mark(Qt::Key_Left), std::pair(0, 3));
  EXPECT_EQ(mark(Qt::Key_Down), std::pair(1, 3));
  EXPECT_EQ(mark(Qt::Key_PageDown), std::pair(1 + window().visibleRows, 3));
  EXPECT_GT(window().topRow, 0);
  EXPECT_EQ(rows().verticalScrollBar()->value(), window().topRow);
  EXPECT_EQ(mark(Qt::Key_PageUp), std::pair(1, 3));
  EXPECT_EQ(mark(Qt::Key_PageUp), std::pair(0, 3));
  EXPECT_EQ(mark(Qt::Key_Up), std::pair(-1, 0));
  EXPECT_EQ(mark(Qt::Key_Tab), std::pair(0, 3));
  EXPECT_EQ(mark(Qt::Key_Home), std::pair(0, 3));  // the window does not use this key
  EXPECT_EQ(mark(Qt::Key_End), std::pair(0, 3));
}

TEST_F(ModelOnScreen, TheEditorLiesOverItsCellAndTakesTheKeysOfAText) {
  DoubleClickCell(0, 2);
  QLineEdit* const editor = Editor();
  ASSERT_NE(editor, nullptr);
  EXPECT_TRUE(editor->geometry().contains(rows().viewport()->mapTo(&view(), Cell(0, 2))));
  EXPECT_EQ(editor->text(), "100");
  EXPECT_EQ(editor->cursorPosition(), 0);
  Press({Qt::Key_End, Qt::Key_Backspace, Qt::Key_5, Qt::Key_Home, Qt::Key_Delete});
  EXPECT_EQ(editor->text(), "05");
  Press({Qt::Key_Right, Qt::Key_Right});  // first moves the caret, at the end of the text the cursor
  EXPECT_NE(Editor(), nullptr);
  Press(Qt::Key_Right);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(param(0, Wp).value, 5);
  EXPECT_EQ(window().curColumn, 3);
  EXPECT_EQ(RowCount(ModelNo(1)), 1);  // Delete edited the text
  QTest::mouseDClick(Find<QLabel>("epsInf"), Qt::LeftButton);
  Settle();
  ASSERT_NE(Editor(), nullptr);
  EXPECT_TRUE(Find<QGroupBox>("einfGroup")->geometry().intersects(Editor()->geometry()));
  Press(Qt::Key_Escape);
  EXPECT_EQ(Editor(), nullptr);
  QTest::mouseClick(Find<QLabel>("epsInf"), Qt::RightButton);
  EXPECT_EQ(ModelNo(1).epsInf.adjustable, 0u);
}

TEST_F(ModelOnScreen, AnotherWindowTakesWhatIsTyped) {
  SecondModel();
  Activate(view());
  ClickCell(0, 1);
  Press({Qt::Key_4, Qt::Key_2});
  Activate(view(2));
  EXPECT_EQ(param(0, Wo).value, 42);
  EXPECT_EQ(Editor(), nullptr);
}

// A model with more rows than the window shows.
class LongModelOnScreen : public ModelOnScreen {
 protected:
  LongModelOnScreen() { AddRows(30); }
  QHeaderView& heads() { return *rows().horizontalHeader(); }
  QPoint Head(int column) {
    return {heads().sectionViewportPosition(column) + heads().sectionSize(column) / 2, heads().height() / 2};
  }
  QPoint Divider(int column) {
    return {heads().sectionViewportPosition(column) + heads().sectionSize(column) - 1, heads().height() / 2};
  }
  QScrollBar& bar() { return *rows().verticalScrollBar(); }
  void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button) {
    QWidget* const to = heads().viewport();
    QMouseEvent event(type, at, to->mapToGlobal(at), button, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(to, &event);
  }
};

TEST_F(LongModelOnScreen, AHeadSortsAndASecondClickTurnsTheOrderAround) {
  QStringList texts;
  for (int column = 0; column < 6; ++column) texts << rows().model()->headerData(column, Qt::Horizontal).toString();
  EXPECT_EQ(texts, (QStringList{"#", "Wo", "Wp", "G", "S", "G/Wo"}));
  DoubleClickCell(0, 1);
  Press(Qt::Key_9);  // in front of the 300
  QTest::mouseClick(heads().viewport(), Qt::LeftButton, {}, Head(1));
  Settle();
  EXPECT_EQ(param(30, Wo).value, 9300);  // it was committed before the rows moved
  EXPECT_EQ(Shown(0, 1), "400 ");
  QTest::mouseClick(heads().viewport(), Qt::LeftButton, {}, Head(1));
  Settle();
  EXPECT_EQ(Shown(0, 1), "9300 ");
  QTest::mouseClick(heads().viewport(), Qt::LeftButton, {}, Head(0));
  Settle();
  EXPECT_EQ(Shown(0, 1), "9300 ");
}

TEST_F(LongModelOnScreen, ADividerIsDraggedOrFitsTheWidestTextShown) {
  Mouse(QEvent::MouseButtonPress, Divider(1), Qt::LeftButton);
  Mouse(QEvent::MouseMove, Divider(1) + QPoint(25, 0), Qt::NoButton);
  Mouse(QEvent::MouseButtonRelease, Divider(1), Qt::LeftButton);
  Settle();
  EXPECT_EQ(window().columnWidths[1], 75);
  EXPECT_EQ(rows().columnWidth(1), 75);
  EXPECT_EQ(Shown(0, 1), "300 ");  // nothing was sorted
  const auto fitted = [&] {
    QTest::mouseDClick(heads().viewport(), Qt::LeftButton, {}, Divider(1));
    Settle();
    return rows().columnWidth(1);
  };
  const int narrow = fitted();
  EXPECT_LT(narrow, 50);
  param(30, Wo).value = 1.23456e-9;  // not shown
  EXPECT_EQ(fitted(), narrow);
  param(1, Wo).value = 1.23456e-9;
  const int wide = fitted();
  EXPECT_GT(wide, narrow);
  param(1, Wo).coupling = 1;
  EXPECT_GT(fitted(), wide);
  EXPECT_EQ(window().columnWidths[1], rows().columnWidth(1));
}

TEST_F(LongModelOnScreen, TheScrollBarGoesByLinesByPagesAndToAPlace) {
  Settle();  // scroll bars are updated one turn of the event loop later
  ASSERT_TRUE(bar().isVisible());
  const int shown = window().visibleRows;
  EXPECT_EQ(bar().maximum(), 31 - shown);
  const auto after = [&](QAbstractSlider::SliderAction action) {
    bar().triggerAction(action);
    Settle();
    EXPECT_EQ(bar().value(), window().topRow);
    EXPECT_EQ(Shown(window().topRow, 0), std::to_string(window().topRow + 1) + ' ');
    return window().topRow;
  };
  EXPECT_EQ(after(QAbstractSlider::SliderSingleStepAdd), 1);
  EXPECT_EQ(after(QAbstractSlider::SliderPageStepAdd), shown);
  EXPECT_EQ(after(QAbstractSlider::SliderPageStepSub), 1);
  EXPECT_EQ(after(QAbstractSlider::SliderSingleStepSub), 0);
  EXPECT_EQ(after(QAbstractSlider::SliderToMaximum), 31 - shown);
  bar().setSliderDown(true);
  bar().setSliderPosition(7);
  Settle();
  EXPECT_EQ(window().topRow, 7);
  bar().setSliderDown(false);
  view().resize(330, 700);
  Settle();
  Settle();
  EXPECT_GE(window().visibleRows, 31);
  EXPECT_EQ(window().topRow, 0);
  EXPECT_FALSE(bar().isVisible());
}

TEST_F(LongModelOnScreen, ScrollingTakesWhatIsTyped) {
  DoubleClickCell(0, 1);
  Press(Qt::Key_1);
  bar().triggerAction(QAbstractSlider::SliderPageStepAdd);
  Settle();
  EXPECT_EQ(param(0, Wo).value, 1300);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_GT(window().topRow, 0);
}

TEST_F(LongModelOnScreen, ThePanelTakesItsRoomFromTheRows) {
  const int before = window().visibleRows;
  EXPECT_EQ(Find<QPushButton>("vdfButton")->text(), "VDF>>");
  Click("vdfButton");
  EXPECT_EQ(Find<QPushButton>("vdfButton")->text(), "<<VDF");
  EXPECT_LT(window().visibleRows, before);
  EXPECT_NE(Find<QGroupBox>("vdf"), nullptr);
  Click("vdfButton");
  EXPECT_EQ(Find<QGroupBox>("vdf"), nullptr);
  EXPECT_EQ(window().visibleRows, before);
}

TEST_F(LongModelOnScreen, ButtonsAnswerAsTheMarkAllows) {
  const auto enabled = [&] {
    std::string names;
    for (const char* const name : {"remove", "up", "down"})
      if (Find<QPushButton>(name)->isEnabled()) names += std::string(name) + ' ';
    return names;
  };
  EXPECT_EQ(enabled(), "remove ");
  Press(Qt::Key_Down);
  EXPECT_EQ(enabled(), "remove down ");
  Click("down");
  EXPECT_EQ(param(1, Wo).value, 300);
  EXPECT_EQ(enabled(), "remove up down ");
  Click("up");
  EXPECT_EQ(param(0, Wo).value, 300);
  while (RowCount(ModelNo(1)) > 0) Click("remove");
  EXPECT_EQ(enabled(), "");
  EXPECT_EQ(rows().model()->rowCount(), 0);
}

TEST_F(ModelOnScreen, F2AndF3SaveAndLoad) {
  AnswerFileDialog("x");
  Press(Qt::Key_F2);
  EXPECT_EQ(asked, "Save Model As");
  param(0, Wo).value = 7;
  ActivateAfterDialog();
  AnswerFileDialog("x.kvm");
  Press(Qt::Key_F3);
  EXPECT_EQ(asked, "Load Model");
  EXPECT_EQ(Shown(0, 1), "300 ");
  ActivateAfterDialog();
  Press({Qt::Key_F8, Qt::Key_F10});
  EXPECT_EQ(Shown(0, 1), "300 ");
}

TEST_F(ModelOnScreen, ModelsCloseInAnyOrderWhileOneIsTypedInto) {
  SecondModel();
  for (const std::uint32_t closed : {2u, 1u}) {
    Activate(view());
    ClickCell(0, 1);
    Press(Qt::Key_8);
    ASSERT_NE(Editor(), nullptr);
    Run("CloseModel(ModelNo=" + std::to_string(closed) + ");");
    EXPECT_EQ(keeper.modelWidget(closed), nullptr);
    Press(Qt::Key_5);  // goes to another window or is dropped
  }
  EXPECT_EQ(CountModels(params), 0);
  EXPECT_EQ(Editor(), nullptr);
  Run("NewModel();");
  EXPECT_EQ(view(3).windowTitle(), "M3");
}

TEST_F(ModelOnScreen, TheMainWindowMayGoWhileAParameterIsTyped) {
  Run("ExpParams();");
  Activate(*Find<QWidget>("expParams"));
  Press(Qt::Key_8);
  Activate(view());
  Press(Qt::Key_9);
  Find<QWidget>("expParams")->close();
  Settle();
  keeper.mainWidget()->close();
  Settle();
  EXPECT_TRUE(desk.mainWindow.quit);
  EXPECT_EQ(params.ExpParams[0].value, 8);
}

}  // namespace
}  // namespace kalvex

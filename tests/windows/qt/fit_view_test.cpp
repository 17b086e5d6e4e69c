#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include "core/text.h"
#include "windows/main_window.h"
#include "windows/qt/graph_view.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class FitOnScreen : public OnScreen {
 protected:
  FitOnScreen() {
    std::string rows;
    for (int x = 100; x <= 900; x += 20) rows += std::to_string(x) + " 0.5 0.01\n";
    folder.Write("R_a.dat", rows);
    folder.Write("E1_b.dat", rows);
    Run("LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");LoadDataset(DatasetNo=2,MasterFile=\"E1_b.dat\");"
        "NewModel();NewModel();NewGraph(XPos=620,YPos=120,Width=300,Height=200);"
        "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");WindowFit(XPos=20,YPos=200);");
  }
  FitWindow& window() { return desk.fitWindow; }
  std::vector<ChiSqTerm>& terms() { return fit.list.terms; }
  void TwoTerms() { Run("AddChiSqTerm(DatasetNo=1,ModelNo=1);AddChiSqTerm(DatasetNo=2,ModelNo=1,Weight=2);"); }
  std::string TextOf(const char* label) { return Find<QLabel>(label)->text().toStdString(); }
  QTreeWidget& list() { return *Find<QTreeWidget>("fitTerms"); }
  // Calls act once, while a run processes events.
  void DuringTheRun(std::function<void()> act) {
    QTimer::singleShot(0, [this, act] {
      EXPECT_TRUE(fit.FitRunning);
      act();
    });
  }
  // Makes runs long: only the number of iterations ends them.
  void LetRunsBeLong() {
    fit.options.StopOnReduction = false;
    fit.options.StopOnLambda = true;
  }
};

TEST_F(FitOnScreen, ShowsCountsAndLinesInColumns) {
  TwoTerms();
  EXPECT_EQ(Find<QWidget>("fit")->windowTitle(), "Fit");
  EXPECT_EQ(TextOf("fitPoints"), "82");
  EXPECT_EQ(TextOf("fitParams"), std::to_string(fit.NumFreeParams));
  EXPECT_EQ(TextOf("fitChiSq"), FitLabelsOf(fit).chiSq);
  ASSERT_EQ(list().topLevelItemCount(), 2);
  EXPECT_EQ(list().topLevelItem(1)->text(0), "[E1] \"E1_b.dat\" - \"M1\"");
  EXPECT_EQ(list().topLevelItem(1)->text(1), "2");
  EXPECT_EQ(list().headerItem()->text(2), "Value");
}

TEST_F(FitOnScreen, SelectionsShareAWeightThatTypingChanges) {
  TwoTerms();
  auto* const weight = Find<QLineEdit>("fitWeight");
  Click(list(), 1);
  EXPECT_EQ(weight->text(), "2");
  Click(list(), 0, Qt::ControlModifier);
  EXPECT_EQ(window().selected, (std::set<int>{terms()[0].id, terms()[1].id}));
  EXPECT_EQ(weight->text(), "");
  QTest::keyClicks(weight, "3");
  EXPECT_EQ(terms()[0].weight, 3);
  EXPECT_EQ(terms()[1].weight, 3);
  EXPECT_EQ(list().topLevelItem(0)->text(1), "3");
  // A partly typed number stays as it is, and an empty field stays empty.
  QTest::keyClicks(weight, ".");
  EXPECT_EQ(weight->text(), "3.");
  weight->selectAll();
  QTest::keyClick(weight, Qt::Key_Delete);
  Settle();
  EXPECT_EQ(weight->text(), "");
  EXPECT_EQ(terms()[0].weight, 3);
}

TEST_F(FitOnScreen, RemovesTheSelectedTerms) {
  TwoTerms();
  Click(list(), 0);
  Press("fitRemove");
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(list().topLevelItemCount(), 1);
  EXPECT_EQ(list().topLevelItem(0)->text(1), "2");
  EXPECT_FALSE(list().topLevelItem(0)->isSelected());
}

TEST_F(FitOnScreen, FoldsToItsHeights) {
  auto* const view = Find<QWidget>("fit");
  EXPECT_EQ(view->height(), 282);
  Press("fitFold");
  EXPECT_EQ(view->height(), 139);
  EXPECT_EQ(Find<QTreeWidget>("fitTerms"), nullptr);
  EXPECT_EQ(Find<QPushButton>("fitFold")->text(), "ChiSq details >>");
  Press("fitFold");
  EXPECT_EQ(view->height(), 282);
  EXPECT_NE(Find<QTreeWidget>("fitTerms"), nullptr);
  view->resize(600, 400);
  Settle();
  EXPECT_EQ(view->size(), QSize(600, 400));  // the user's size stays
}

TEST_F(FitOnScreen, AddsTheSelectedOfTheOfferedTerms) {
  Press("fitAdd");
  auto* const lines = Find<QTreeWidget>("addTermsLines");
  ASSERT_NE(lines, nullptr);
  EXPECT_EQ(lines->topLevelItemCount(), 4);
  EXPECT_EQ(lines->topLevelItem(0)->text(0), "[E1] \"E1_b.dat\" - \"M2\"");
  auto* const choice = Find<QComboBox>("addTermsDataset");
  QTest::keyClick(choice, Qt::Key_Down);  // the first dataset
  Settle();
  ASSERT_EQ(lines->topLevelItemCount(), 2);
  Click(*lines, 1);
  Press("addTermsOk");
  EXPECT_EQ(Find<QTreeWidget>("addTermsLines"), nullptr);
  ASSERT_EQ(terms().size(), 1u);
  EXPECT_EQ(list().topLevelItem(0)->text(0), "[R] \"R_a.dat\" - \"M1\"");
  // A double click adds the selected pairs; Esc adds nothing.
  Press("fitAdd");
  Click(*Find<QTreeWidget>("addTermsLines"), 0);
  QTreeWidget& again = *Find<QTreeWidget>("addTermsLines");
  QTest::mouseDClick(again.viewport(), Qt::LeftButton, {}, again.visualItemRect(again.topLevelItem(0)).center());
  Settle();
  EXPECT_EQ(terms().size(), 2u);
  Press("fitAdd");
  QTest::keyClick(Find<QWidget>("addTerms"), Qt::Key_Escape);
  Settle();
  EXPECT_FALSE(window().addTerms.open);
  EXPECT_EQ(Find<QWidget>("addTerms"), nullptr);
  EXPECT_EQ(terms().size(), 2u);
}

TEST_F(FitOnScreen, OptionsAreTakenByOkAndLostByCancel) {
  Press("fitOptionsButton");
  auto* const iterations = Find<QLineEdit>("maxIterations");
  EXPECT_EQ(iterations->text(), "1000");
  EXPECT_FALSE(iterations->isEnabled());
  EXPECT_FALSE(Find<QAbstractButton>("stopOnOutOfRange")->isEnabled());
  Find<QAbstractButton>("stopOnIterations")->click();
  EXPECT_TRUE(iterations->isEnabled());
  iterations->selectAll();
  QTest::keyClicks(iterations, "17");
  QLineEdit* const lambda = Find<QLineEdit>("initialLambda");
  lambda->selectAll();
  QTest::keyClicks(lambda, "1e-5");
  EXPECT_EQ(lambda->text(), "1e-5");
  EXPECT_FALSE(fit.options.StopOnIterations);
  QTest::keyClick(lambda, Qt::Key_Enter);
  Settle();
  EXPECT_EQ(Find<QWidget>("fitOptions"), nullptr);
  EXPECT_TRUE(fit.options.StopOnIterations);
  EXPECT_EQ(fit.options.MaxIterations, 17);
  EXPECT_EQ(fit.options.InitialLambda, 1e-5);
  Press("fitOptionsButton");
  Find<QAbstractButton>("logFit")->click();
  Press("fitOptionsCancel");
  EXPECT_FALSE(fit.options.LogFit);
  Press("fitOptionsButton");
  EXPECT_FALSE(Find<QAbstractButton>("logFit")->isChecked());
}

TEST_F(FitOnScreen, StopEndsARunAfterTheIterationInProgress) {
  TwoTerms();
  LetRunsBeLong();
  int at = -1;
  DuringTheRun([&] {
    auto* const start = Find<QPushButton>("fitStart");
    EXPECT_EQ(start->text(), "STOP");
    EXPECT_EQ(Find<QWidget>("fit")->cursor().shape(), Qt::WaitCursor);
    for (const char* const other : {"fitUndo", "fitOptionsButton", "fitAdd", "fitRemove"}) {
      EXPECT_FALSE(Find<QPushButton>(other)->isEnabled()) << other;
    }
    EXPECT_FALSE(Find<QLineEdit>("fitWeight")->isEnabled());
    at = fit.IterationCount;
    QTest::mouseClick(start, Qt::LeftButton);
  });
  Press("fitStart");
  EXPECT_FALSE(fit.FitRunning);
  EXPECT_LE(fit.IterationCount, at + 1);
  EXPECT_EQ(fit.report.stop, "stopped by the user");
  EXPECT_EQ(Find<QPushButton>("fitStart")->text(), "START");
  EXPECT_TRUE(Find<QPushButton>("fitUndo")->isEnabled());
  EXPECT_NE(Find<QWidget>("fit")->cursor().shape(), Qt::WaitCursor);
  EXPECT_EQ(TextOf("fitIteration"), "");
}

TEST_F(FitOnScreen, UndoBringsBackWhatWasBefore) {
  TwoTerms();
  const std::string before = TextOf("fitChiSq");
  Press("fitStart");
  const std::string after = TextOf("fitChiSq");
  EXPECT_NE(after, before);
  Press("fitUndo");
  EXPECT_EQ(TextOf("fitChiSq"), before);
  Press("fitUndo");
  EXPECT_EQ(TextOf("fitChiSq"), after);
}

TEST_F(FitOnScreen, WindowsClosedDuringARunAreGoneAndTheRunStops) {
  TwoTerms();
  LetRunsBeLong();
  int at = -1;
  DuringTheRun([&] {
    at = fit.IterationCount;
    keeper.graphWidget(1)->close();
    Find<QWidget>("fit")->close();
  });
  Press("fitStart");
  EXPECT_LE(fit.IterationCount, at + 1);
  EXPECT_EQ(fit.report.stop, "stopped by the user");
  EXPECT_EQ(Find<QWidget>("fit"), nullptr);
  EXPECT_EQ(keeper.graphWidget(1), nullptr);
  ChooseCommand(desk, MainCommand::kFitWindow);
  Settle();
  ASSERT_NE(Find<QWidget>("fit"), nullptr);
  EXPECT_EQ(Find<QPushButton>("fitStart")->text(), "START");
}

TEST_F(FitOnScreen, TheMainWindowClosedDuringARunEndsItAndTheProgram) {
  TwoTerms();
  LetRunsBeLong();
  int at = -1;
  QTimer::singleShot(0, [&] {
    DuringTheRun([&] {
      at = fit.IterationCount;
      keeper.mainWidget()->close();
    });
    Press("fitStart");
    EXPECT_FALSE(fit.FitRunning);
  });
  QTimer tooLate;
  tooLate.setSingleShot(true);
  QObject::connect(&tooLate, &QTimer::timeout, [] { QCoreApplication::exit(1); });
  tooLate.start(5000);
  EXPECT_EQ(QCoreApplication::exec(), 0);  // also if other windows are open
  EXPECT_TRUE(desk.mainWindow.quit);
  EXPECT_LE(fit.IterationCount, at + 1);
  EXPECT_EQ(fit.report.stop, "stopped by the user");
}

TEST_F(FitOnScreen, GraphsAndLabelsFollowTheRun) {
  TwoTerms();
  LetRunsBeLong();
  const QImage before = dynamic_cast<GraphView*>(keeper.graphWidget(1))->picture();
  bool looked = false;
  QTimer eachTime;  // fires whenever events are processed
  QObject::connect(&eachTime, &QTimer::timeout, [&] {
    if (!fit.FitRunning || fit.IterationCount < 2 || looked) return;
    looked = true;
    keeper.Reconcile();  // without the pause between two updates
    EXPECT_EQ(TextOf("fitIteration"), std::to_string(fit.IterationCount));
    EXPECT_EQ(TextOf("fitChiSq"), FitLabelsOf(fit).chiSq);
    EXPECT_EQ(list().topLevelItem(0)->text(2).toStdString(), TextG(terms()[0].termChiSq));
    EXPECT_NE(dynamic_cast<GraphView*>(keeper.graphWidget(1))->picture(), before);
    QTest::mouseClick(Find<QPushButton>("fitStart"), Qt::LeftButton);
  });
  eachTime.start(0);
  Press("fitStart");
  EXPECT_TRUE(looked);
}

TEST_F(FitOnScreen, ARunGoesOnBehindTheAboutBox) {
  TwoTerms();
  LetRunsBeLong();
  int opened = -1;
  QTimer eachTime;
  QObject::connect(&eachTime, &QTimer::timeout, [&] {
    if (!fit.FitRunning) return;
    if (opened < 0) {
      opened = fit.IterationCount;
      ChooseCommand(desk, MainCommand::kAbout);
      return Settle();
    }
    if (fit.IterationCount < opened + 2) return;
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    QTest::mouseClick(Find<QPushButton>("fitStart"), Qt::LeftButton);
  });
  eachTime.start(0);
  Press("fitStart");
  EXPECT_EQ(fit.report.stop, "stopped by the user");
  EXPECT_GE(fit.IterationCount, opened + 2);
  QApplication::activeModalWidget()->close();
  EXPECT_FALSE(desk.mainWindow.about);
}

TEST_F(FitOnScreen, ComesBackWhereItWasLeft) {
  auto* const view = Find<QWidget>("fit");
  EXPECT_EQ(view->pos(), QPoint(20, 200));
  view->move(150, 90);
  Settle();
  EXPECT_EQ(window().x, 150);
  view->close();
  EXPECT_FALSE(window().open);
  ChooseCommand(desk, MainCommand::kFitWindow);
  Settle();
  EXPECT_EQ(Find<QWidget>("fit")->pos(), QPoint(150, 90));
}

}  // namespace
}  // namespace kalvex

// Windows closed in unusual orders, and during other actions.
#include <QDialog>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <random>

#include "windows/main_window.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class ClosingOnScreen : public OnScreen {
 protected:
  ClosingOnScreen() {
    std::string rows;
    for (int x = 100; x <= 900; x += 20) rows += std::to_string(x) + " 0.5 0.01\n";
    folder.Write("R_a.dat", rows);
  }
  void OpenAll() {
    Run("LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");NewModel();NewModel();NewGraph();NewGraph();"
        "DatasetManager();ExpParams();WindowFit();");
    ChooseCommand(desk, MainCommand::kParamControl);
    const std::uint32_t model = ListModelNumbers(params).back(), graph = graphs.nextNumber - 1;
    Run("AddChiSqTerm(DatasetNo=1,ModelNo=" + std::to_string(model) +
        ");AddModelCurve(GraphNo=" + std::to_string(graph) + ",ModelNo=" + std::to_string(model) + ",Quantity=\"R\");");
    names = {"fit", "datasetManager", "expParams", "paramControl"};
    for (const std::uint32_t number : {model - 1, model}) names.push_back("model" + QString::number(number));
    for (const std::uint32_t number : {graph - 1, graph}) names.push_back("graph" + QString::number(number));
  }
  // Opens a dialog over each window that has one.
  void OpenDialogs(bool options) {
    Press("managerButton2");
    Press(options ? "fitOptionsButton" : "fitAdd");
    QTest::mouseDClick(keeper.graphWidget(graphs.nextNumber - 1), Qt::LeftButton, {},
                       options ? QPoint(5, 5) : QPoint(200, 100));
    Settle();
  }
  // The dialogs on the screen.
  static int CountDialogs() {
    const auto windows = QApplication::topLevelWidgets();
    return static_cast<int>(std::count_if(windows.begin(), windows.end(), [](const QWidget* window) {
      return window->isVisible() && qobject_cast<const QDialog*>(window);
    }));
  }
  static int CountWindows() {
    const auto windows = QApplication::topLevelWidgets();
    return static_cast<int>(
        std::count_if(windows.begin(), windows.end(), [](const QWidget* window) { return window->isVisible(); }));
  }
  // Runs the toolkit's main loop, as the program does, and calls act in it. True if the program ended by itself.
  static bool EndsBy(std::function<void()> act) {
    QTimer::singleShot(0, qApp, std::move(act));
    QTimer tooLate;
    tooLate.setSingleShot(true);
    QObject::connect(&tooLate, &QTimer::timeout, [] { QCoreApplication::exit(1); });
    tooLate.start(5000);
    return QCoreApplication::exec() == 0;
  }

  std::vector<QString> names;
};

TEST_F(ClosingOnScreen, WindowsGoInAnyOrderWithTheirDialogsAndComeAgain) {
  std::mt19937 random(1);
  for (int turn = 0; turn < 12; ++turn) {
    OpenAll();
    ASSERT_EQ(CountWindows(), 1 + static_cast<int>(names.size()));
    OpenDialogs(turn % 2 == 0);
    ASSERT_EQ(CountDialogs(), 3);
    std::shuffle(names.begin(), names.end(), random);
    for (const QString& name : names) {
      auto* const window = Find<QWidget>(name);
      ASSERT_NE(window, nullptr) << name.toStdString();
      window->close();
      Settle();
      EXPECT_EQ(Find<QWidget>(name), nullptr) << name.toStdString();
    }
    EXPECT_EQ(CountWindows(), 1);
    EXPECT_EQ(CountModels(params), 0);
    EXPECT_FALSE(desk.loadDialog.open || desk.fitWindow.optionsOpen || desk.fitWindow.addTerms.open);
    fit.list.terms.clear();  // no window could react to the closed models
  }
}

TEST_F(ClosingOnScreen, TheMainWindowTakesAllOthersAndTheirDialogsWithIt) {
  OpenAll();
  OpenDialogs(true);
  EXPECT_TRUE(EndsBy([&] { keeper.mainWidget()->close(); }));
  EXPECT_TRUE(desk.mainWindow.quit);
}

TEST_F(ClosingOnScreen, TheMainWindowClosedDuringSuspendEndsTheQuestionAndTheProgram) {
  OpenAll();
  EXPECT_TRUE(EndsBy([&] {
    Meanwhile([&] {
      EXPECT_NE(Find<QDialog>("suspend"), nullptr);
      keeper.mainWidget()->close();
    });
    EXPECT_EQ(Run("Suspend();MainWindow(Title=\"went on\");"), 0);
    EXPECT_EQ(Find<QDialog>("suspend"), nullptr);
  }));
  EXPECT_EQ(desk.mainWindow.title, "Kalvex went on");  // the macro was not stopped
  EXPECT_TRUE(desk.mainWindow.quit);
}

TEST_F(ClosingOnScreen, WindowsMayGoDuringSuspendAndItsCrossMeansContinue) {
  OpenAll();
  Meanwhile([&] {
    for (const QString& name : names) Find<QWidget>(name)->close();
    Find<QDialog>("suspend")->close();
  });
  Run("Suspend();NewModel();");
  EXPECT_EQ(CountModels(params), 1);
  EXPECT_EQ(CountWindows(), 2);
}

TEST_F(ClosingOnScreen, SuspendStandsInTheMiddleOfTheScreenAndThenWhereItWasLeft) {
  QPoint middle, second;
  Meanwhile([&] {
    auto* const dialog = Find<QDialog>("suspend");
    middle = dialog->geometry().center();
    dialog->move(40, 300);
    PressContinue(desk.suspendDialog);
  });
  Run("Suspend();");
  const QPoint away = middle - QGuiApplication::primaryScreen()->availableGeometry().center();
  EXPECT_LE(away.manhattanLength(), 4);
  Meanwhile([&] {
    second = Find<QDialog>("suspend")->pos();
    PressContinue(desk.suspendDialog);
  });
  Run("Suspend();");
  EXPECT_EQ(second, QPoint(40, 300));
}

TEST_F(ClosingOnScreen, DuringARunAModelStaysAndAllElseMayGo) {
  OpenAll();
  fit.options.StopOnReduction = false;
  QTimer::singleShot(0, [&] {
    ASSERT_TRUE(fit.FitRunning);
    for (const QString& name : names) {
      if (name != "fit") Find<QWidget>(name)->close();
    }
    Settle();
    EXPECT_EQ(CountModels(params), 2);
    EXPECT_EQ(Find<QWidget>("datasetManager"), nullptr);
    EXPECT_EQ(CountDialogs(), 0);
    Find<QWidget>("fit")->close();
  });
  Press("fitStart");
  EXPECT_EQ(fit.report.stop, "stopped by the user");
  EXPECT_EQ(Find<QWidget>("fit"), nullptr);
}

}  // namespace
}  // namespace kalvex

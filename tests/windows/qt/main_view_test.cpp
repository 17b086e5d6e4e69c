#include "windows/qt/main_view.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>

#include "windows/main_window.h"
#include "windows/qt/on_screen.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

class MainOnScreen : public OnScreen {
 protected:
  MainView& view() { return *dynamic_cast<MainView*>(keeper.mainWidget()); }
  QAction& Action(MainCommand command) { return *view().actionOf(static_cast<int>(command)); }
  void Choose(MainCommand command) {
    Action(command).trigger();
    Settle();
  }
};

TEST_F(MainOnScreen, HasItsMenuAndToolbarInOrder) {
  EXPECT_EQ(view().windowTitle(), "Kalvex");
  QStringList menus, buttons;
  for (const QAction* const action : view().menuBar()->actions()) menus << action->text();
  EXPECT_EQ(menus, (QStringList{"File", "Window", "Macro", "Test", "&Help"}));
  for (const QAction* const action : view().findChild<QToolBar*>()->actions()) {
    buttons << action->toolTip();
    EXPECT_FALSE(action->icon().isNull()) << action->toolTip().toStdString();
  }
  EXPECT_EQ(buttons, (QStringList{"New model", "New graph", "Dataset manager", "Experimental parameters", "Fit window",
                                  "Parameter control", "Auto Screen Update", "Update Screen Now", "Graph reader"}));
}

TEST_F(MainOnScreen, ItsCommandsReachTheProgram) {
  Choose(MainCommand::kMenuGraph);
  EXPECT_NE(keeper.graphWidget(1), nullptr);
  Choose(MainCommand::kNewModel);
  EXPECT_EQ(CountModels(params), 1);
  EXPECT_TRUE(desk.paramControl.open);
}

TEST_F(MainOnScreen, IsMovedByAMacroAndFollowsTheUser) {
  Run("MainWindow(XPos=70,YPos=40,Width=700,Height=90);");
  EXPECT_EQ(view().pos(), QPoint(70, 40));
  EXPECT_EQ(view().size(), QSize(700, 90));
  view().move(100, 50);
  view().resize(720, 95);
  Settle();
  EXPECT_EQ(desk.mainWindow.x, 100);
  EXPECT_EQ(desk.mainWindow.height, 95);
}

TEST_F(MainOnScreen, UpdateNowAnswersWhileAutomaticUpdatesAreOff) {
  EXPECT_TRUE(Action(MainCommand::kAutoUpdate).isChecked());
  EXPECT_FALSE(Action(MainCommand::kUpdateNow).isEnabled());
  Choose(MainCommand::kAutoUpdate);
  EXPECT_FALSE(session.AutoScreenUpdate());
  EXPECT_FALSE(Action(MainCommand::kAutoUpdate).isChecked());
  EXPECT_TRUE(Action(MainCommand::kUpdateNow).isEnabled());
  EXPECT_FALSE(Action(MainCommand::kFileOpen).isEnabled());
}

TEST_F(MainOnScreen, AMacroIsRunFromItsMenu) {
  folder.Write("a.kvs", "NewModel();MainWindow(Title=\"at work\");Exit(QuitApp=1);NewModel();");
  Meanwhile([&] {
    auto* const dialog = Find<QFileDialog>("file");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowTitle(), "Run Macro");
    auto* const name = dialog->findChild<QLineEdit*>("fileNameEdit");
    name->setText(QDir::current().filePath("a.kvs"));
    QTest::keyClick(name, Qt::Key_Return);
  });
  Choose(MainCommand::kRunMacro);
  EXPECT_EQ(CountModels(params), 1);
  EXPECT_EQ(view().windowTitle(), "Kalvex at work");
  EXPECT_FALSE(desk.mainWindow.quit);
}

TEST_F(MainOnScreen, SuspendWaitsForEitherAnswer) {
  const auto press = [](const char* text, bool never) {
    Meanwhile([=] {
      auto* const dialog = Find<QDialog>("suspend");
      ASSERT_NE(dialog, nullptr);
      EXPECT_EQ(dialog->windowTitle(), "Suspend");
      if (never) dialog->findChild<QCheckBox*>()->setChecked(true);
      for (QPushButton* const button : dialog->findChildren<QPushButton*>()) {
        if (button->text() == text) button->click();
      }
    });
  };
  press(texts::kSuspendExit, true);  // the check box matters for the other button only
  Run("Suspend();NewModel();");
  EXPECT_EQ(CountModels(params), 0);
  press(texts::kSuspendContinue, true);
  Run("Suspend();NewModel();Suspend();NewModel();");
  EXPECT_EQ(CountModels(params), 2);
}

TEST_F(MainOnScreen, MessagesAreBoxes) {
  QString text;
  Meanwhile([&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    text = box->text();
    box->accept();
  });
  Run("LoadDataset(MasterFile=\"nothing.dat\");");
  EXPECT_FALSE(text.isEmpty());
}

TEST_F(MainOnScreen, AboutNamesTheProgramAndItsVersion) {
  QString text;
  Meanwhile([&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    text = box->text();
    box->accept();
  });
  Choose(MainCommand::kAbout);
  QTest::qWait(100);
  EXPECT_TRUE(text.startsWith("Kalvex - software to fit optical spectra"));
  EXPECT_TRUE(text.contains("Version: "));
  EXPECT_FALSE(desk.mainWindow.about);
}

TEST_F(MainOnScreen, TheManualIsOpenedByWhateverTheSystemHasForIt) {
  const QTemporaryDir programs;  // the toolkit finds no program in a folder with a blank in its name
  QFile opener(programs.filePath("xdg-open"));
  ASSERT_TRUE(opener.open(QFile::WriteOnly));
  opener.write("#!/bin/sh\necho \"$1\" >opened\n");
  opener.close();
  opener.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", programs.path().toUtf8() + ':' + path);
  // The platform of the screen, with the program in the current folder.
  class Here : public QtPlatform {
   public:
    using QtPlatform::QtPlatform;
    std::string ProgramFolder() override { return QDir::currentPath().toStdString() + '/'; }
  } here(keeper);
  session.UsePlatform(here);
  Choose(MainCommand::kManual);
  QTest::qWait(50);
  EXPECT_FALSE(folder.Has("opened"));  // there is no manual
  folder.Write("Manual.pdf", "%PDF");
  Choose(MainCommand::kManual);
  EXPECT_TRUE(QTest::qWaitFor([&] { return folder.Has("opened") && folder.Read("opened").ends_with('\n'); }));
  EXPECT_TRUE(folder.Read("opened").ends_with("/Manual.pdf\n")) << folder.Read("opened");
  session.UsePlatform(platform);
  qputenv("PATH", path);
}

TEST_F(MainOnScreen, ClosedItEndsTheProgramAndAskedNothing) {
  view().close();
  EXPECT_TRUE(desk.mainWindow.quit);
}

}  // namespace
}  // namespace kalvex

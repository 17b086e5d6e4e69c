// The file dialogs as a person sees them.
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

#include "windows/main_window.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class FileDialogsOnScreen : public OnScreen {
 protected:
  FileDialogsOnScreen() {
    QDir(".").mkdir("data");
    folder.Write("data/R_a.dat", "100 0.5 0.01\n200 0.4 0.01\n300 0.6 0.01\n");
    folder.Write("data/grid.txt", "150\n250\n");
    ChooseCommand(desk, MainCommand::kDatasetManager);
    Settle();
    Press("managerButton1");
  }
  // Answers the next file dialog: with a name, or with Esc if the name is empty.
  void Answer(const QString& name) {
    Meanwhile([this, name] {
      auto* const dialog = Find<QFileDialog>("file");
      ASSERT_NE(dialog, nullptr);
      title = dialog->windowTitle();
      opensIn = dialog->directory().absolutePath();
      saves = dialog->acceptMode() == QFileDialog::AcceptSave;
      rows.clear();
      auto* const kinds = dialog->findChild<QComboBox*>("fileTypeCombo");
      for (int k = 0; k < kinds->count(); ++k) rows << kinds->itemText(k);
      if (name.isEmpty()) return dialog->reject();
      // A refused name is reported in a message box over the dialog, which would otherwise stay open.
      Meanwhile([] {
        if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) box->reject();
      });
      dialog->findChild<QLineEdit*>("fileNameEdit")->setText(name);
      QTest::keyClick(dialog->findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
      if (dialog->isVisible()) dialog->reject();
    });
  }
  void Browse(const char* button, const QString& name) {
    Answer(name);
    Press(button);
  }
  static QString Here(const QString& name) { return QDir::current().filePath(name); }

  QString title, opensIn;
  QStringList rows;
  bool saves = false;
};

TEST_F(FileDialogsOnScreen, BrowseFillsThePathAndIsKeptByCancel) {
  Browse("loadMasterBrowse", Here("data/R_a.dat"));
  EXPECT_EQ(title, "Browse");
  EXPECT_EQ(rows, (QStringList{"Data files (*.DAT)", "Text files (*.TXT)", "All files (*.*)"}));
  EXPECT_FALSE(saves);
  EXPECT_EQ(FieldText("loadMaster"), Here("data/R_a.dat").toStdString());
  Browse("loadMasterBrowse", "");
  EXPECT_EQ(FieldText("loadMaster"), Here("data/R_a.dat").toStdString());
}

TEST_F(FileDialogsOnScreen, EachBrowseFillsItsOwnPathAndTheDatasetIsLoaded) {
  Browse("loadMasterBrowse", Here("data/R_a.dat"));
  EXPECT_FALSE(Find<QAbstractButton>("loadXFileBrowse")->isEnabled());
  Press("loadXFromFile");
  Browse("loadXFileBrowse", "grid.txt");
  EXPECT_EQ(opensIn, Here("data"));  // the directory of the last dialog
  EXPECT_EQ(FieldText("loadXFile"), Here("data/grid.txt").toStdString());
  EXPECT_FALSE(Find<QAbstractButton>("loadYErrFileBrowse")->isEnabled());
  Press("loadYErrFromFile");
  Browse("loadYErrFileBrowse", "R_a.dat");
  EXPECT_EQ(FieldText("loadYErrFile"), Here("data/R_a.dat").toStdString());
  Press("loadDialogOk");
  const Dataset& dataset = *DatasetInSlot(datasets, 1);
  ASSERT_EQ(dataset.points.size(), 2u);
  EXPECT_DOUBLE_EQ(dataset.points[0].x, 150);
  EXPECT_DOUBLE_EQ(dataset.points[0].y, 0.45);
  EXPECT_DOUBLE_EQ(dataset.points[0].sigma, 0.45);
}

TEST_F(FileDialogsOnScreen, ANameWithoutExtensionGetsTheUsualOneUnlessThereIsSuchAFile) {
  Browse("loadMasterBrowse", Here("data/R_a"));
  EXPECT_EQ(FieldText("loadMaster"), Here("data/R_a.dat").toStdString());
  folder.Write("data/R_a", "1 2\n");
  Browse("loadMasterBrowse", Here("data/R_a"));
  EXPECT_EQ(FieldText("loadMaster"), Here("data/R_a").toStdString());
}

TEST_F(FileDialogsOnScreen, AGraphIsExportedToANewFileAndOverAnOldOneUnasked) {
  Run("NewModel();NewGraph();AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  const auto exportTo = [this](const QString& name) {
    Answer(Here(name));
    QTest::keyClick(keeper.graphWidget(1), Qt::Key_Space);
  };
  exportTo("data/new.dat");
  EXPECT_EQ(title, "Export Graph to ASCII");
  EXPECT_TRUE(saves);
  EXPECT_EQ(folder.Read("data/new.dat").substr(0, 4), "W R\n");
  folder.Write("data/new.dat", "old");
  exportTo("data/new.dat");
  EXPECT_EQ(folder.Read("data/new.dat").substr(0, 4), "W R\n");
  exportTo("data/bare");
  EXPECT_TRUE(folder.Has("data/bare.kvm"));
}

TEST_F(FileDialogsOnScreen, ASecondMacroDoesNotStartWhileOneWaits) {
  folder.Write("second.kvs", "NewModel();");
  Meanwhile([this] {
    Answer(Here("second"));
    ChooseCommand(desk, MainCommand::kRunMacro);
    EXPECT_EQ(title, "Run Macro");
    EXPECT_EQ(rows, (QStringList{"Kalvex macro files (*.KVS)", "All files (*.*)"}));
    PressContinue(desk.suspendDialog);
  });
  Run("Suspend();");
  EXPECT_EQ(CountModels(params), 0);
  Answer(Here("second"));
  ChooseCommand(desk, MainCommand::kRunMacro);
  EXPECT_EQ(CountModels(params), 1);
}

}  // namespace
}  // namespace kalvex

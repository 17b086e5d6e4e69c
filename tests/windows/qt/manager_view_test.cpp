#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "windows/main_window.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class ManagerOnScreen : public OnScreen {
 protected:
  ManagerOnScreen() {
    folder.Write("E1_x.dat", "100 1 0.1\n200 2 0.1\n300 3 0.1\n");
    Run("LoadDataset(DatasetNo=2,MasterFile=\"E1_x.dat\");");
    ChooseCommand(desk, MainCommand::kDatasetManager);
    Settle();
  }
  Dataset& Slot(int slot) { return *DatasetInSlot(datasets, slot); }
};

TEST_F(ManagerOnScreen, ShowsTheFirstTenSlots) {
  EXPECT_EQ(Find<QWidget>("datasetManager")->windowTitle(), "Dataset Manager");
  EXPECT_EQ(Find<QPushButton>("managerButton1")->text(), "Load");
  EXPECT_FALSE(Find<QComboBox>("managerQuantity1")->isEnabled());
  EXPECT_EQ(Find<QComboBox>("managerQuantity1")->currentIndex(), -1);
  EXPECT_EQ(Find<QPushButton>("managerButton2")->text(), "Unload");
  EXPECT_EQ(FieldText("managerName2"), "E1_x.dat");
  EXPECT_EQ(Find<QComboBox>("managerQuantity2")->currentText(), "E1");
  EXPECT_EQ(FieldText("managerCutMin2") + ' ' + FieldText("managerCutMax2") + ' ' + FieldText("managerPoints2"),
            "100 300 3");
  EXPECT_NE(Find<QPushButton>("managerButton10"), nullptr);
}

TEST_F(ManagerOnScreen, ARangeActsWithEachCharacter) {
  auto* const field = Find<QLineEdit>("managerCutMin2");
  field->selectAll();
  QTest::keyClicks(field, "2");
  EXPECT_EQ(FieldText("managerPoints2"), "3");
  QTest::keyClicks(field, "50.");
  EXPECT_EQ(field->text(), "250.");
  EXPECT_EQ(Slot(2).CutMin, 250);
  EXPECT_EQ(FieldText("managerPoints2"), "1");
}

TEST_F(ManagerOnScreen, AQuantityIsChosenByKeys) {
  QTest::keyClick(Find<QComboBox>("managerQuantity2"), Qt::Key_Down);
  EXPECT_EQ(Slot(2).Quantity, kE2);
}

TEST_F(ManagerOnScreen, UnloadsOneAndAll) {
  Press("managerButton2");
  EXPECT_EQ(Slot(2).id, 0u);
  EXPECT_EQ(Find<QPushButton>("managerButton2")->text(), "Load");
  EXPECT_FALSE(Find<QPushButton>("managerUnloadAll")->isEnabled());
  Run("LoadDataset(DatasetNo=2,MasterFile=\"E1_x.dat\");LoadDataset(DatasetNo=11,MasterFile=\"E1_x.dat\");");
  Press("managerUnloadAll");
  EXPECT_TRUE(Slot(2).points.empty() && Slot(11).points.empty());
}

TEST_F(ManagerOnScreen, ClosesByItsButtonAndOpensAgain) {
  Press("managerClose");
  EXPECT_FALSE(desk.datasetManager.open);
  EXPECT_EQ(Find<QWidget>("datasetManager"), nullptr);
  ChooseCommand(desk, MainCommand::kDatasetManager);
  Settle();
  EXPECT_NE(Find<QWidget>("datasetManager"), nullptr);
}

TEST_F(ManagerOnScreen, DuringARunNothingAnswers) {
  fit.FitRunning = true;
  Settle();
  EXPECT_FALSE(Find<QPushButton>("managerButton1")->isEnabled());
  EXPECT_FALSE(Find<QLineEdit>("managerCutMin2")->isEnabled());
  EXPECT_FALSE(Find<QPushButton>("managerUnloadAll")->isEnabled());
  fit.FitRunning = false;
  Settle();
  EXPECT_TRUE(Find<QLineEdit>("managerCutMin2")->isEnabled());
}

TEST_F(ManagerOnScreen, LoadsAGeneratedGridByTheDialog) {
  Press("managerButton3");
  ASSERT_NE(Find<QWidget>("loadDialog"), nullptr);
  EXPECT_EQ(Find<QWidget>("loadDialog")->windowTitle(), "Load Dataset # 3");
  EXPECT_FALSE(Find<QLineEdit>("loadXMin")->isEnabled());
  EXPECT_FALSE(Find<QAbstractButton>("loadAveraging")->isEnabled());
  Press("loadXGenerated");
  EXPECT_TRUE(Find<QLineEdit>("loadXMin")->isEnabled());
  EXPECT_FALSE(Find<QLineEdit>("loadXFile")->isEnabled());
  EXPECT_TRUE(Find<QAbstractButton>("loadAveraging")->isEnabled());
  Press("loadLogarithmic");
  EXPECT_TRUE(Find<QAbstractButton>("loadXGenerated")->isChecked());
  Type("loadMaster", "E1_x.dat");
  Type("loadXMin", "1");
  Type("loadXMax", "100");
  Type("loadXPts", "3");
  Press("loadYFixed");
  Type("loadYVal", "2.5");
  Press("loadDialogOk");
  EXPECT_EQ(Find<QWidget>("loadDialog"), nullptr);
  ASSERT_EQ(Slot(3).points.size(), 3u);
  EXPECT_DOUBLE_EQ(Slot(3).points[1].x, 10);
  EXPECT_EQ(Slot(3).points[1].y, 2.5);
  EXPECT_EQ(FieldText("managerName3"), "E1_x.dat");
}

TEST_F(ManagerOnScreen, AFailureIsToldAndTheEntriesStay) {
  Press("managerButton1");
  Type("loadMaster", "missing.dat");
  QString told;
  QTimer::singleShot(200, [&] {
    auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    told = box->windowTitle() + ": " + box->text();
    box->accept();
  });
  Press("loadDialogOk");
  EXPECT_EQ(told, "Error: Cannot open master file.");
  EXPECT_EQ(FieldText("loadMaster"), "missing.dat");
  QTest::keyClick(Find<QWidget>("loadDialog"), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(Find<QWidget>("loadDialog"), nullptr);
  EXPECT_EQ(Slot(1).MasterFile, "");
}

}  // namespace
}  // namespace kalvex

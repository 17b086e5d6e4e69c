// The panel of the variational dielectric function on the screen, and the dialog that makes its mesh.
#include "windows/qt/model_on_screen.h"

namespace kalvex {
namespace {

class VdfOnScreen : public ModelOnScreen {
 protected:
  VdfOnScreen() {
    folder.Write("a.dat", "100 1 0.1\n200 2 0.1\n300 3 0.1\n400 3 0.1\n500 3 0.1\n");
    folder.Write("b.dat", "150 1 0.1\n200 2 0.1\n900 3 0.1\n");
    Run("LoadDataset(DatasetNo=2,MasterFile=\"a.dat\");LoadDataset(DatasetNo=5,MasterFile=\"b.dat\");");
    Click("vdfButton");
    Activate(view());
  }
  void OpenByKey() {
    ActivateAfterDialog();
    Press(Qt::Key_F6);
    ASSERT_NE(dialog(), nullptr);
  }
  QWidget* dialog() { return Find<QWidget>("initVdf"); }
  QComboBox& source(int k) { return *Find<QComboBox>(QString("source%1").arg(k)); }
  void Choose(int k, int entry) {
    while (source(k).currentIndex() < entry) QTest::keyClick(&source(k), Qt::Key_Down);
    while (source(k).currentIndex() > entry) QTest::keyClick(&source(k), Qt::Key_Up);
  }
  std::vector<double> Mesh() {
    std::vector<double> x;
    for (const VdfMeshPoint& point : ModelNo(1).vdf.mesh) x.push_back(point.x);
    return x;
  }
  std::string Group() { return Find<QGroupBox>("vdf")->title().toStdString(); }
  std::string Range() { return Find<QLabel>("vdfRange")->text().toStdString(); }
  std::string Ticked(std::initializer_list<const char*> names) {
    std::string ticked;
    for (const char* const name : names)
      if (Find<QCheckBox>(name)->isChecked()) ticked += std::string(name) + ' ';
    return ticked;
  }
  std::string Switches() { return Ticked({"vdfKK", "vdfOn", "vdfFit"}); }
};

using Frequencies = std::vector<double>;

TEST_F(VdfOnScreen, WithoutAMeshOnlyInitAndLoadAnswer) {
  EXPECT_EQ(Group(), "Var. Diel. Func. (not defined)");
  EXPECT_EQ(Range(), "");
  for (const char* const name : {"vdfSave", "vdfKK", "vdfOn", "vdfFit"})
    EXPECT_FALSE(Find<QWidget>(name)->isEnabled()) << name;
  for (const char* const name : {"vdfInit", "vdfLoad"}) EXPECT_TRUE(Find<QWidget>(name)->isEnabled()) << name;
  Press({Qt::Key_F4, Qt::Key_F5, Qt::Key_F7, Qt::Key_F9});
  EXPECT_EQ(Switches(), "");
}

TEST_F(VdfOnScreen, TheDialogOffersTheDatasetsAndStartsAlikeEachTime) {
  for (int time = 0; time < 2; ++time) {
    OpenByKey();
    EXPECT_EQ(dialog()->windowTitle(), "Initialize VDF");
    EXPECT_EQ(dialog()->findChild<QGroupBox*>()->title(), "Generate anchor mesh from dataset(s):");
    EXPECT_EQ(source(1).count(), 3);
    EXPECT_EQ(source(1).currentText(), "a.dat");
    EXPECT_EQ(source(2).currentText() + source(3).currentText(), "");
    EXPECT_EQ(Ticked({"every2nd1", "every2nd2", "every2nd3", "initKK", "initOn", "initFitActive"}),
              "initKK initOn initFitActive ");
    EXPECT_EQ(Find<QCheckBox>("every2nd2")->text(), "every 2nd point");
    EXPECT_EQ(Find<QPushButton>("initVdfOk")->text() + Find<QPushButton>("initVdfCancel")->text(), "&OK&Cancel");
    Choose(2, 2);
    for (const char* const name : {"every2nd1", "initKK", "initOn"}) Click(name);
    Click("initVdfCancel");
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(Group(), "Var. Diel. Func. (not defined)");
  }
}

TEST_F(VdfOnScreen, EachSourceGivesItsFrequencies) {
  for (int k = 1; k <= 3; ++k) {
    Click("vdfInit");
    Choose(1, 0);
    Choose(k, 2);
    Click("initVdfOk");
    EXPECT_EQ(Mesh(), (Frequencies{150, 200, 900})) << k;
    Click("vdfInit");
    Choose(1, 0);
    Choose(k, 1);
    Click(QString("every2nd%1").arg(k).toLatin1());
    Click("initVdfOk");
    EXPECT_EQ(Mesh(), (Frequencies{100, 300, 500})) << k;
  }
  Click("vdfInit");
  Choose(2, 2);
  Choose(3, 2);
  Click("every2nd3");
  Click("initVdfOk");
  EXPECT_EQ(Mesh(), (Frequencies{100, 150, 200, 300, 400, 500, 900}));
  EXPECT_EQ(Group(), "Var. Diel. Func. (7 pts)");
  EXPECT_EQ(Range(), "[100 - 900]");
  EXPECT_EQ(Switches(), "vdfKK vdfOn vdfFit ");
}

TEST_F(VdfOnScreen, TheSwitchesOfTheDialogAreThoseOfThePanel) {
  Click("vdfInit");
  Click("initKK");
  Click("initFitActive");
  QTest::keyClick(dialog(), Qt::Key_Return);
  Settle();
  EXPECT_EQ(dialog(), nullptr);
  ActivateAfterDialog();
  EXPECT_EQ(Switches(), "vdfOn ");
  Click("vdfKK");
  EXPECT_EQ(Switches(), "vdfKK vdfOn ");
  Press({Qt::Key_F4, Qt::Key_F5, Qt::Key_F7});
  EXPECT_EQ(Switches(), "vdfFit ");
  for (VdfMeshPoint& point : ModelNo(1).vdf.mesh) point.e2.value = -1e5;
  Press({Qt::Key_F4, Qt::Key_F9});
  for (const VdfMeshPoint& point : ModelNo(1).vdf.mesh) EXPECT_GT(point.e2.value, -1e5);
}

TEST_F(VdfOnScreen, WithoutSourcesOrPointsTheFunctionIsCleared) {
  const auto init = [&](int first) {
    Click("vdfInit");
    Choose(1, first);
    Click("initVdfOk");
  };
  init(1);
  EXPECT_EQ(Mesh().size(), 5u);
  init(0);
  EXPECT_EQ(Group(), "Var. Diel. Func. (not defined)");
  init(1);
  EXPECT_EQ(Mesh().size(), 5u);
  Dataset& dataset = *DatasetInSlot(datasets, 2);
  dataset.CutMin = dataset.CutMax = 1e6;
  ComputeActiveRange(dataset);
  init(1);
  EXPECT_EQ(Group() + Range() + Switches(), "Var. Diel. Func. (not defined)");
  EXPECT_FALSE(Find<QWidget>("vdfSave")->isEnabled());
}

TEST_F(VdfOnScreen, WithoutDatasetsTheDialogHasEmptyLists) {
  Run("UnloadDataset(DatasetNo=2);UnloadDataset(DatasetNo=5);");
  OpenByKey();
  EXPECT_EQ(source(1).count(), 1);
  EXPECT_EQ(source(1).currentIndex(), 0);
  Click("initVdfOk");
  EXPECT_EQ(Mesh(), Frequencies{});
}

TEST_F(VdfOnScreen, ADatasetThatIsUnloadedMeanwhileIsNoSource) {
  OpenByKey();
  Choose(2, 2);
  Run("UnloadDataset(DatasetNo=2);");
  ASSERT_NE(dialog(), nullptr);
  EXPECT_EQ(source(1).currentText(), "a.dat");  // the state when the dialog opened
  Click("initVdfOk");
  EXPECT_EQ(Mesh(), (Frequencies{150, 200, 900}));
  OpenByKey();
  EXPECT_EQ(source(1).currentText(), "b.dat");
}

TEST_F(VdfOnScreen, EscapeAndTheCrossCancel) {
  OpenByKey();
  QTest::keyClick(dialog(), Qt::Key_Escape);
  Settle();
  EXPECT_EQ(dialog(), nullptr);
  OpenByKey();
  dialog()->close();
  Settle();
  EXPECT_EQ(dialog(), nullptr);
  EXPECT_FALSE(desk.vdfDialog.open);
  EXPECT_EQ(Mesh(), Frequencies{});
}

TEST_F(VdfOnScreen, TheModelMayGoUnderItsDialog) {
  OpenByKey();
  Run("CloseModel(ModelNo=1);");
  EXPECT_EQ(dialog(), nullptr);
  EXPECT_FALSE(desk.vdfDialog.open);
  Run("NewModel(VarDielFuncSeen=1);");
  Activate(view(2));
  Click("vdfInit");
  EXPECT_NE(dialog(), nullptr);  // the next dialog can open
}

TEST_F(VdfOnScreen, WhileAFitRunsOkDoesNotAnswer) {
  OpenByKey();
  fit.FitRunning = true;
  Click("initVdfOk");
  EXPECT_NE(dialog(), nullptr);
  EXPECT_EQ(Mesh(), Frequencies{});
  fit.FitRunning = false;
  Click("initVdfOk");
  EXPECT_EQ(Mesh().size(), 5u);
}

TEST_F(VdfOnScreen, IsSavedAndLoadedByItsButtons) {
  Click("vdfInit");
  Click("initVdfOk");
  ModelNo(1).vdf.mesh[2].e2.value = 0.125;
  AnswerFileDialog("mesh");
  Click("vdfSave");
  EXPECT_EQ(asked, "Save VDF As");
  Click("vdfInit");
  Choose(1, 2);
  Click("initVdfOk");
  AnswerFileDialog("mesh.kvv");
  Click("vdfLoad");
  EXPECT_EQ(asked, "Load VDF");
  EXPECT_EQ(Range(), "[100 - 500]");
  EXPECT_EQ(ModelNo(1).vdf.mesh[2].e2.value, 0.125);
}

}  // namespace
}  // namespace kalvex

#include "windows/dataset_manager.h"

#include "support/scratch_folder.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

class DatasetManagers : public OpenWindows {
 protected:
  DatasetManagers() : inside(folder.Name()) {
    Fill(2, "R_film.dat");
    Fill(11, "beyond.dat");
    OpenDatasetManager(desk);
  }
  DatasetManager& manager() { return desk.datasetManager; }
  ManagerRow& Row(int slot) { return manager().rows[static_cast<std::size_t>(slot - 1)]; }
  Dataset& Slot(int slot) { return *DatasetInSlot(datasets, slot); }

  ScratchFolder folder;
  InFolder inside;
};

TEST_F(DatasetManagers, ShowLoadedAndFreeSlots) {
  EXPECT_EQ(Row(2).button, "Unload");
  EXPECT_EQ(Row(2).name, "R_film.dat");
  EXPECT_EQ(Row(2).quantity, kRefl);
  EXPECT_EQ(Row(2).cutMin + ' ' + Row(2).cutMax + ' ' + Row(2).points, "10 100 10");
  EXPECT_TRUE(Row(2).enabled);
  EXPECT_EQ(Row(1).button, "Load");
  EXPECT_EQ(Row(1).name + Row(1).cutMin + Row(1).cutMax + Row(1).points, "");
  EXPECT_EQ(Row(1).quantity, std::nullopt);
  EXPECT_FALSE(Row(1).enabled);
}

TEST_F(DatasetManagers, UnloadingIsHeardByTheFitAndByTheRows) {
  PressDatasetButton(desk, 2);
  EXPECT_EQ(Heard(), (Texts{"terms", "dataset unloaded 1"}));
  EXPECT_EQ(Row(2).button, "Load");
  EXPECT_TRUE(manager().unloadAll);  // one dataset has no row in the window
  PressUnloadAll(desk);
  EXPECT_EQ(Heard(), (Texts{"terms", "dataset unloaded 2"}));
  EXPECT_FALSE(manager().unloadAll);
}

TEST_F(DatasetManagers, ACutIsAppliedWithEveryCharacter) {
  TypeCutMin(desk, 2, "3");
  TypeCutMin(desk, 2, "35");
  EXPECT_EQ(Slot(2).CutMin, 35);
  EXPECT_EQ(Row(2).points, "7");
  TypeCutMin(desk, 2, "35.");
  EXPECT_EQ(Row(2).cutMin, "35.");  // the typed text stays
  TypeCutMax(desk, 2, "ab");
  EXPECT_EQ(Slot(2).CutMax, 0);
  EXPECT_EQ(Row(2).points, "0");
  Texts expected;
  for (int i = 0; i < 4; ++i) expected.insert(expected.end(), {"dataset 1", "fit"});
  EXPECT_EQ(Heard(), expected);
}

TEST_F(DatasetManagers, FillingAFieldIsNoEdit) {
  Slot(2).CutMin = 10.0000001;
  TypeCutMin(desk, 2, Row(2).cutMin);
  EXPECT_EQ(Slot(2).CutMin, 10.0000001);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(DatasetManagers, AChosenQuantityIsHeardByNeitherTheFitNorTheGraphs) {
  GraphsHeard();
  Heard();
  ChooseQuantity(desk, 2, kS1);
  EXPECT_EQ(Slot(2).Quantity, kS1);
  EXPECT_EQ(Row(2).quantity, kS1);
  EXPECT_EQ(Heard(), Texts{"dataset 1"});
  EXPECT_FALSE(GraphsHeard());
  ChooseQuantity(desk, 3, kS1);
  EXPECT_EQ(Slot(2).Quantity, kS1);
  EXPECT_EQ(Slot(3).Quantity, kRefl);
}

TEST_F(DatasetManagers, OnlyTenSlotsHaveARow) {
  PressDatasetButton(desk, 11);
  PressDatasetButton(desk, 0);
  TypeCutMin(desk, 11, "50");
  EXPECT_EQ(Slot(11).id, 2u);
  EXPECT_EQ(Slot(11).CutMin, 10);
  EXPECT_FALSE(desk.loadDialog.open);
}

TEST_F(DatasetManagers, OpeningAgainBringsItToTheFront) {
  manager().wantsFront = false;
  OpenDatasetManager(desk);
  EXPECT_TRUE(manager().wantsFront);
  CloseDatasetManager(desk);
  EXPECT_FALSE(manager().open);
}

TEST_F(DatasetManagers, DuringARunNothingCanBeChanged) {
  fit.FitRunning = true;
  PressDatasetButton(desk, 2);
  PressDatasetButton(desk, 3);
  PressUnloadAll(desk);
  TypeCutMin(desk, 2, "50");
  ChooseQuantity(desk, 2, kE1);
  EXPECT_EQ(Slot(2).id, 1u);
  EXPECT_EQ(Slot(2).CutMin, 10);
  EXPECT_EQ(Slot(2).Quantity, kRefl);
  EXPECT_FALSE(desk.loadDialog.open);
  EXPECT_TRUE(Heard().empty());
}

class LoadDialogs : public DatasetManagers {
 protected:
  LoadDialogs() {
    folder.Write("e1.dat", "head\n1 5 0.1\n2 6 0.1\n3 7 0.1\n");
    PressDatasetButton(desk, 3);
  }
  LoadDialog& dialog() { return desk.loadDialog; }
};

TEST_F(LoadDialogs, TheTitleEndsInTheSlot) { EXPECT_EQ(dialog().title, "Load Dataset # 3"); }

TEST_F(LoadDialogs, StartWithTheDefaults) {
  EXPECT_EQ(dialog().masterFile + dialog().xFile + dialog().yErrFile, "");
  EXPECT_EQ(dialog().xMin + ' ' + dialog().xMax + ' ' + dialog().xPts + ' ' + dialog().yVal + ' ' + dialog().yErrVal,
            "1 1000 1000 0 0.01");
}

TEST_F(LoadDialogs, AControlAnswersOnlyWhileItsChoiceIsMade) {
  const auto enabled = [&] {
    const LoadDialogEnabled e = EnabledControlsOf(dialog());
    std::string text;
    for (const bool flag : {e.xFile, e.grid, e.match, e.yVal, e.yErrFile, e.yErrVal}) text += flag ? '1' : '0';
    return text;
  };
  EXPECT_EQ(enabled(), "000000");
  dialog().xMethod = XSource::kFile;
  EXPECT_EQ(enabled(), "101000");
  dialog().xMethod = XSource::kGenerated;
  EXPECT_EQ(enabled(), "011000");
  dialog().yMethod = YSource::kFixed;
  dialog().yErrMethod = ErrorSource::kFile;
  EXPECT_EQ(enabled(), "011110");
  dialog().yErrMethod = ErrorSource::kFixed;
  EXPECT_EQ(enabled(), "011101");
}

TEST_F(LoadDialogs, BrowsingFillsThePathAndRemembersTheFolder) {
  chosenFile = "deep/down/e1.dat";
  BrowseForFile(desk, LoadFile::kMaster);
  BrowseForFile(desk, LoadFile::kX);  // is not enabled yet
  dialog().xMethod = XSource::kFile;
  dialog().yErrMethod = ErrorSource::kFile;
  BrowseForFile(desk, LoadFile::kX);
  chosenFile.reset();
  BrowseForFile(desk, LoadFile::kYErr);
  EXPECT_EQ(dialog().masterFile, "deep/down/e1.dat");
  EXPECT_EQ(dialog().xFile, "deep/down/e1.dat");
  EXPECT_EQ(dialog().yErrFile, "");
  EXPECT_EQ(asked, (Texts{"Browse in ''", "Browse in 'deep/down/'", "Browse in 'deep/down/'"}));
}

TEST_F(LoadDialogs, OkReadsAllControlsAndLoads) {
  dialog().masterFile = "e1.dat";
  dialog().xMethod = XSource::kGenerated;
  dialog().grid = Grid::kLogarithmic;
  dialog().xMin = "1";
  dialog().xMax = "4";
  dialog().xPts = "3";
  dialog().yMethod = YSource::kFixed;
  dialog().yVal = "2.5";
  dialog().yErrMethod = ErrorSource::kFixed;
  dialog().yErrVal = "0.5";
  AcceptLoadDialog(desk);
  EXPECT_FALSE(dialog().open);
  ASSERT_EQ(Slot(3).points.size(), 3u);
  EXPECT_DOUBLE_EQ(Slot(3).points[1].x, 2);
  EXPECT_EQ(Slot(3).points[1].y, 2.5);
  EXPECT_EQ(Slot(3).points[1].sigma, 0.5);
  EXPECT_EQ(Row(3).button + ' ' + Row(3).name + ' ' + Row(3).points, "Unload e1.dat 3");
  EXPECT_EQ(Row(3).quantity, kE1);
  EXPECT_EQ(Heard(), Texts{"dataset loaded 3"});
}

TEST_F(LoadDialogs, AFailureIsShownAndTheEntriesStay) {
  dialog().masterFile = "missing.dat";
  dialog().yVal = "7";
  AcceptLoadDialog(desk);
  EXPECT_EQ(messages, Texts{"Error: Cannot open master file."});
  EXPECT_TRUE(dialog().open);
  EXPECT_EQ(dialog().masterFile, "missing.dat");
  EXPECT_EQ(dialog().yVal, "7");
  dialog().masterFile = "e1.dat";
  AcceptLoadDialog(desk);
  EXPECT_FALSE(dialog().open);
}

TEST_F(LoadDialogs, GoWithTheManager) {
  dialog().masterFile = "missing.dat";
  AcceptLoadDialog(desk);
  CloseDatasetManager(desk);
  EXPECT_FALSE(dialog().open);
  EXPECT_EQ(Slot(3).MasterFile, "");
}

TEST_F(LoadDialogs, LoadNothingDuringARun) {
  dialog().masterFile = "e1.dat";
  fit.FitRunning = true;
  AcceptLoadDialog(desk);
  EXPECT_TRUE(dialog().open);
  EXPECT_TRUE(Slot(3).points.empty());
}

TEST_F(LoadDialogs, CancelLosesTheEntries) {
  dialog().masterFile = "missing.dat";
  AcceptLoadDialog(desk);
  CancelLoadDialog(desk);
  EXPECT_FALSE(dialog().open);
  PressDatasetButton(desk, 3);
  EXPECT_EQ(dialog().masterFile, "");
}

TEST_F(LoadDialogs, ALoadThatFailsAtItsLastCheckLeavesANamelessDatasetThatCanBeUnloaded) {
  dialog().masterFile = "e1.dat";
  dialog().yErrMethod = ErrorSource::kFixed;
  dialog().yErrVal = "0";
  AcceptLoadDialog(desk);
  EXPECT_EQ(messages, Texts{"Error: YErr should be larger than 0."});
  EXPECT_EQ(Row(3).button, "Unload");
  EXPECT_EQ(Row(3).name, "");
  PressDatasetButton(desk, 3);
  EXPECT_EQ(Row(3).button, "Load");
  EXPECT_TRUE(Slot(3).points.empty());
}

}  // namespace
}  // namespace kalvex

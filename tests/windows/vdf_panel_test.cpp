#include "evaluation/eps_sum.h"
#include "records/vdf_mesh.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"
#include "windows/model_keys.h"
#include "windows/model_window.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

// The panel of the variational dielectric function in the window of the first model, and the dialog that "Init" opens.
class VdfPanels : public OpenWindows {
 protected:
  VdfPanels() : inside(folder.Name()) {
    Fill(2, "a.dat");
    Fill(5, "b.dat", 20);
    ActivateModelWindow(desk, first, true);
  }
  VdfDialog& dialog() { return desk.vdfDialog; }
  ModelControls Controls() { return ModelControlsOf(desk, first); }
  void Press(ModelButton button) { PressModelButton(desk, first, button); }
  void Init() {
    Press(ModelButton::kVdfInit);
    AcceptVdfDialog(desk);
    Heard();
  }
  ScratchFolder folder;
  InFolder inside;
};

TEST_F(VdfPanels, TheButtonOpensAndClosesThePanel) {
  EXPECT_EQ(Controls().vdfButton, "VDF>>");
  Press(ModelButton::kVdfPanel);
  EXPECT_TRUE(desk.models.at(1).vdfShown);
  EXPECT_EQ(Controls().vdfButton, "<<VDF");
  Press(ModelButton::kVdfPanel);
  EXPECT_FALSE(desk.models.at(1).vdfShown);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(VdfPanels, WithoutAMeshItSaysSoAndOnlyInitAndLoadAnswer) {
  EXPECT_EQ(Controls().vdfGroup, "Var. Diel. Func. (not defined)");
  EXPECT_EQ(Controls().vdfRange, "");
  EXPECT_FALSE(Controls().vdf);
  for (const ModelButton button : {ModelButton::kVdfSave, ModelButton::kVdfKK, ModelButton::kVdfOn,
                                   ModelButton::kVdfFit, ModelButton::kVdfPositive}) {
    Press(button);
  }
  EXPECT_TRUE(asked.empty());
  EXPECT_TRUE(Heard().empty());
  Press(ModelButton::kVdfLoad);
  EXPECT_EQ(asked, Texts{"Load VDF in ''"});
}

TEST_F(VdfPanels, AMeshIsTitledByItsPointsAndItsRange) {
  Init();
  EXPECT_EQ(Controls().vdfGroup, "Var. Diel. Func. (10 pts)");
  EXPECT_EQ(Controls().vdfRange, "[10 - 100]");
  first.vdf.mesh.front().x = 1e-7 / 3;
  first.vdf.mesh.back().x = 1e9;
  EXPECT_EQ(Controls().vdfRange, "[3.33333E-08 - 1E+09]");
}

TEST_F(VdfPanels, TheDialogStartsAlikeAtEachOpening) {
  for (int time = 0; time < 2; ++time) {
    Press(ModelButton::kVdfInit);
    EXPECT_TRUE(dialog().open && dialog().kk && dialog().on && dialog().active);
    EXPECT_EQ(dialog().entries, (Texts{"", "a.dat", "b.dat"}));
    EXPECT_EQ(dialog().choice, (std::array<std::size_t, 3>{1, 0, 0}));
    EXPECT_EQ(dialog().every2nd, (std::array<bool, 3>{}));
    dialog().kk = dialog().on = dialog().active = false;
    dialog().choice = {2, 2, 2};
    dialog().every2nd = {true, true, true};
    AcceptVdfDialog(desk);
    EXPECT_FALSE(dialog().open);
  }
}

TEST_F(VdfPanels, OkMakesTheMeshAsChosen) {
  PressModelKey(desk, first, Key::kF6);
  dialog().choice = {0, 2, 0};
  dialog().every2nd[1] = true;
  dialog().active = false;
  AcceptVdfDialog(desk);
  EXPECT_EQ(first.vdf.mesh.size(), 10u);
  EXPECT_EQ(first.vdf.mesh.back().x, 190);
  EXPECT_EQ(first.vdf.source[0].datasetId, -1);
  EXPECT_EQ(first.vdf.source[1].datasetId, 2);
  EXPECT_TRUE(first.vdf.source[1].every2nd);
  EXPECT_TRUE(Controls().kk && Controls().on && !Controls().fitActive);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1"}));
}

TEST_F(VdfPanels, AfterCancelTheFitIsToldTooAndTheMeshIsAsItWas) {
  Init();
  Press(ModelButton::kVdfInit);
  dialog().choice[0] = 2;
  CancelVdfDialog(desk);
  EXPECT_EQ(first.vdf.mesh.size(), 10u);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1"}));
  AcceptVdfDialog(desk);  // the dialog is already closed
  CancelVdfDialog(desk);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(VdfPanels, AnEmptyActiveRangeGivesAClearedFunction) {
  Init();
  Dataset& dataset = datasets.slots[1];
  dataset.CutMin = dataset.CutMax = 1e6;
  ComputeActiveRange(dataset);
  Init();
  EXPECT_EQ(first.vdf.On + first.vdf.KK + first.vdf.FitActive, 0u);
  EXPECT_EQ(Controls().vdfGroup, "Var. Diel. Func. (not defined)");
}

TEST_F(VdfPanels, ClosingTheModelClosesItsDialog) {
  Press(ModelButton::kVdfInit);
  CloseModelWindow(desk, first);
  EXPECT_FALSE(dialog().open);
}

TEST_F(VdfPanels, ADialogThatIsOpenWhenARunStartsLeavesTheMeshToIt) {
  Init();
  Press(ModelButton::kVdfInit);
  dialog().choice[0] = 2;
  const VdfMeshPoint* const mesh = first.vdf.mesh.data();
  fit.FitRunning = true;
  AcceptVdfDialog(desk);
  EXPECT_TRUE(dialog().open);
  EXPECT_EQ(first.vdf.mesh.data(), mesh);
  CancelVdfDialog(desk);
  EXPECT_FALSE(dialog().open);
  EXPECT_EQ(Heard(), Texts{"model 1"});
}

TEST_F(VdfPanels, ASourceThatIsUnloadedMeanwhileIsNone) {
  Press(ModelButton::kVdfInit);
  dialog().choice = {1, 2, 0};
  datasets.slots[1] = Dataset{};
  AcceptVdfDialog(desk);
  EXPECT_EQ(first.vdf.mesh.size(), 20u);
}

TEST_F(VdfPanels, CheckBoxesAndKeysSwitchAlike) {
  Init();
  const auto state = [&] {
    return std::string(Controls().kk ? "KK " : "") + (Controls().on ? "On " : "") + (Controls().fitActive ? "Fit" : "");
  };
  Press(ModelButton::kVdfKK);
  EXPECT_EQ(state(), "On Fit");
  Press(ModelButton::kVdfOn);
  EXPECT_EQ(state(), "Fit");
  Press(ModelButton::kVdfFit);
  EXPECT_EQ(state(), "");
  PressModelKey(desk, first, Key::kF4);
  EXPECT_EQ(state(), "On ");
  PressModelKey(desk, first, Key::kF5);
  EXPECT_EQ(state(), "KK On ");
  PressModelKey(desk, first, Key::kF7);
  EXPECT_EQ(state(), "KK On Fit");
  Texts expected;
  for (int i = 0; i < 6; ++i) expected.insert(expected.end(), {"fit", "model 1"});
  EXPECT_EQ(Heard(), expected);
}

TEST_F(VdfPanels, F9RaisesNegativeImaginaryParts) {
  Init();
  Press(ModelButton::kVdfKK);
  for (VdfMeshPoint& point : first.vdf.mesh) point.e2.value = -50;
  PressModelKey(desk, first, Key::kF9);
  for (const VdfMeshPoint& point : first.vdf.mesh) {
    EXPECT_NEAR(EpsSum(eval, first, point.x, false).im, 1e-7, kFormula) << point.x;
  }
}

TEST_F(VdfPanels, SavedAndLoadedByItsDialogs) {
  Init();
  first.vdf.mesh[3].e2.value = 0.125;
  chosenFile = "mesh";
  Press(ModelButton::kVdfSave);
  Press(ModelButton::kVdfInit);
  dialog().choice[0] = 2;
  AcceptVdfDialog(desk);
  EXPECT_EQ(first.vdf.mesh.size(), 20u);  // loading the file below replaces this mesh
  Heard();
  chosenFile = "mesh.kvv";
  Press(ModelButton::kVdfLoad);
  ASSERT_EQ(first.vdf.mesh.size(), 10u);
  EXPECT_EQ(first.vdf.mesh[3].e2.value, 0.125);
  EXPECT_EQ(asked, (Texts{"Save VDF As in ''", "Load VDF in ''"}));
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1"}));
}

}  // namespace
}  // namespace kalvex

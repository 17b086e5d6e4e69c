#include "windows/desk.h"

#include "graphs/graph_table.h"
#include "records/param_value.h"
#include "support/scratch_folder.h"
#include "windows/main_window.h"
#include "windows/model_keys.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

// The effects of a change, and how the desk follows it.
class Desks : public OpenWindows {
 protected:
  Desks() {
    session.NewGraph().GetStatus().Ignore();
    session.AddCurve(1, ModelCurve(first, kRefl)).Ignore();
    Draw();
    Heard();
  }
  void Draw() {
    graphs.slots[0].repaint = Repaint::kNothing;
    graphs.slots[0].staleKinds = 0;
  }
  // Whether curves of models would be computed again. A call resets this.
  bool ModelCurvesAreStale() {
    const bool stale = (graphs.slots[0].staleKinds & (1u << static_cast<int>(CurveKind::kModel))) != 0;
    Draw();
    return stale;
  }
  ModelWindow& window() { return desk.models.at(1); }
};

// ---- who is notified

TEST_F(Desks, AParameterIsHeardByGraphsAndFit) {
  session.SetParam(ParamRef::EpsInf(2), {.value = 4}).Ignore();
  EXPECT_TRUE(ModelCurvesAreStale());
  EXPECT_EQ(Heard(), (Texts{"fit", "model 2"}));
}

TEST_F(Desks, AQuietRedrawSparesTheFit) {
  session.RedrawModel(1);
  EXPECT_TRUE(ModelCurvesAreStale());
  EXPECT_EQ(Heard(), Texts{"model 1"});
  session.RedrawExpParams();
  EXPECT_TRUE(ModelCurvesAreStale());
  EXPECT_EQ(Heard(), Texts{"experiment"});
}

TEST_F(Desks, OfRowsEverythingIsPaintedAnew) {
  session.InsertRow(1, 1).Ignore();
  EXPECT_EQ(graphs.slots[0].repaint, Repaint::kEverything);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "rows 1"}));
}

TEST_F(Desks, TheExperimentIsHeardByGraphsAndFit) {
  session.SetParam(ParamRef::Exp(kAngleOfIncidence), {.value = 10}).Ignore();
  EXPECT_TRUE(ModelCurvesAreStale());
  EXPECT_EQ(Heard(), (Texts{"fit", "experiment"}));
}

TEST_F(Desks, OnlyWhatCouplingHasReachedIsHeardOfAndTheExperimentLast) {
  SetCoupling(params, Cell(first, 0, G), 1);
  SetCoupling(params, Cell(second, 0, G), 1);
  SetCoupling(params, params.ExpParams[kThicknessSpread], 1);
  first.dirty = second.dirty = params.expParamsDirty = false;
  session.SetParam(ParamRef::Row(1, 1, G), {.value = 33, .told = false}).Ignore();
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "fit", "model 2", "fit", "experiment"}));
  EXPECT_EQ(Cell(second, 0, G).value, 33);
  session.SetParam(ParamRef::Row(1, 1, Wo), {.value = 33, .told = false}).Ignore();
  EXPECT_TRUE(Heard().empty());
}

TEST_F(Desks, AClosedModelIsNotHeardOf) {
  second.dirty = true;
  session.CloseModel(2).Ignore();
  Heard();
  session.RedrawModel(2);
  EXPECT_TRUE(Heard().empty());
}

// ---- how windows follow changes

TEST_F(Desks, AModelComesAndGoesWithItsWindow) {
  const auto third = session.NewModel();
  EXPECT_EQ(desk.models.count(*third), 1u);
  EXPECT_EQ(desk.models.at(*third).x, 50);
  session.CloseModel(*third).Ignore();
  EXPECT_EQ(desk.models.count(*third), 0u);
}

TEST_F(Desks, AModelClosedByAMacroGivesItsSelectionAndItsDialogBack) {
  OpenParamControl(desk);
  PressModelField(desk, first, {false, 0, 3});
  TypeIntoParamField(desk, ParamField::kValue, "33");
  OpenVdfDialog(desk, first);
  session.CloseModel(1).Ignore();
  EXPECT_FALSE(desk.paramControl.selected.has_value());
  EXPECT_FALSE(desk.paramControl.typed.has_value());
  EXPECT_FALSE(desk.vdfDialog.open);
}

TEST_F(Desks, TheCursorIsHeldInsideRowsThatAMacroRemoves) {
  session.InsertRow(1, 1).Ignore();
  PressModelField(desk, first, {false, 1, 2});
  session.RemoveRow(1, 1).Ignore();
  EXPECT_EQ(window().curRow, 0);
  EXPECT_TRUE(window().rowSelected);
  session.RemoveRow(1, 1).Ignore();
  EXPECT_FALSE(window().rowSelected);
}

TEST_F(Desks, ALoadedModelStartsAtItsLeadingParameter) {
  const ScratchFolder folder;
  session.InsertRow(1, 1).Ignore();
  PressModelField(desk, first, {false, 1, 2});
  session.SaveModel(1, folder.Path("x.kvm")).Ignore();
  session.LoadModel(1, folder.Path("x.kvm")).Ignore();
  EXPECT_FALSE(window().rowSelected);
  EXPECT_EQ(window().curRow + window().topRow, 0);
}

TEST_F(Desks, TheRangeThatIsTypedStaysWhileOthersChangeTheDataset) {
  Fill(2, "a.dat");
  OpenDatasetManager(desk);
  TypeCutMin(desk, 2, "35.");
  session.SetDatasetQuantity(2, kE2, kalvex::Heard::kAtOnce).Ignore();
  session.CutDataset(2, 55, {}, kalvex::Heard::kAtOnce).Ignore();
  const ManagerRow& row = desk.datasetManager.rows[1];
  EXPECT_EQ(row.cutMin, "35.");
  EXPECT_EQ(row.points, "5");
  EXPECT_EQ(row.quantity, kE2);
}

// ---- steps of the history

TEST_F(Desks, AStepBackBringsAClosedModelAndItsWindowBack) {
  session.CloseModel(1).Ignore();
  PressStepBack(desk);
  ASSERT_NE(session.FindModel(1), nullptr);
  EXPECT_EQ(desk.models.count(1), 1u);
  PressStepForward(desk);
  EXPECT_EQ(session.FindModel(1), nullptr);
  EXPECT_EQ(desk.models.count(1), 0u);
}

TEST_F(Desks, AStepBackTakesANewGraphWithItsWindowAndItsDialog) {
  const std::uint32_t number = *session.NewGraph();
  DoublePressGraph(desk, *session.FindGraph(number), 1, 1);
  PressStepBack(desk);
  EXPECT_EQ(desk.graphs.count(number), 0u);
  EXPECT_EQ(desk.graphDialogs.propertiesOf, 0u);
  EXPECT_EQ(desk.graphs.count(1), 1u);
}

TEST_F(Desks, ADragOfTheSliderIsOneStep) {
  OpenParamControl(desk);
  PressModelField(desk, first, {false, 0, 3});
  const double before = Cell(first, 0, G).value;
  for (const int position : {39, 35, 20}) DragSlider(desk, position);
  SettleSlider(desk);
  const double swept = Cell(first, 0, G).value;
  for (const int position : {39, 20}) DragSlider(desk, position);
  SettleSlider(desk);
  PressStepBack(desk);
  EXPECT_EQ(Cell(first, 0, G).value, swept);
  PressStepBack(desk);
  EXPECT_EQ(Cell(first, 0, G).value, before);
  EXPECT_EQ(desk.paramControl.baseValue, before);
  EXPECT_EQ(desk.paramControl.position, slider::kCentre);
}

TEST_F(Desks, ALimitTypedDigitByDigitIsOneStepUntilItsFieldIsLeft) {
  Dataset& dataset = Fill(2, "a.dat");
  OpenDatasetManager(desk);
  for (const char* const text : {"3", "35"}) TypeCutMin(desk, 2, text);
  LeaveCutField(desk);
  TypeCutMin(desk, 2, "45");
  PressStepBack(desk);
  EXPECT_EQ(dataset.CutMin, 35);
  PressStepBack(desk);
  EXPECT_EQ(dataset.CutMin, 10);
  EXPECT_EQ(desk.datasetManager.rows[1].cutMin, "10");
}

TEST_F(Desks, AStepKeepsTheCursorInsideAndDropsWhatIsTyped) {
  session.InsertRow(1, 1).Ignore();
  ActivateModelWindow(desk, first, true);
  PressModelField(desk, first, {false, 1, 2});
  PressModelDigit(desk, first, '7');
  PressStepBack(desk);
  EXPECT_EQ(RowCount(first), 1);
  EXPECT_EQ(window().curRow, 0);
  EXPECT_FALSE(window().editor.open);
}

TEST_F(Desks, TheFitWindowIsOpenWhileTheFitFollows) {
  session.CloseFit().Ignore();
  OpenFitWindow(desk);
  PressStepBack(desk);
  EXPECT_FALSE(session.FitFollows() || desk.fitWindow.open);
  PressStepForward(desk);
  EXPECT_TRUE(session.FitFollows() && desk.fitWindow.open);
}

TEST_F(Desks, SelectedTermsThatAreStillThereStaySelectedThroughAStep) {
  Fill(1, "a.dat");
  session.AddTerm(1, 1, 2).Ignore();
  session.AddTerm(1, 2, 3).Ignore();
  SelectTermLine(desk, 0, true);
  WeightEdited(desk, "5");
  EXPECT_EQ(fit.list.terms[0].weight, 5);
  PressStepBack(desk);
  EXPECT_EQ(fit.list.terms[0].weight, 2);
  EXPECT_EQ(desk.fitWindow.weightText, "2");
  PressStepBack(desk);
  EXPECT_EQ(desk.fitWindow.lines.size(), 1u);
  EXPECT_EQ(desk.fitWindow.selected.size(), 1u);
}

TEST_F(Desks, DuringARunThereAreNoSteps) {
  session.SetParam(ParamRef::EpsInf(1), {.value = 4}).Ignore();
  fit.FitRunning = true;
  PressStepBack(desk);
  EXPECT_EQ(first.epsInf.value, 4);
}

TEST_F(Desks, ASecondDeskShowsWhatIsThere) {
  Desk another(session);
  EXPECT_EQ(another.models.size(), 2u);
  EXPECT_EQ(another.graphs.size(), 1u);
  EXPECT_TRUE(another.fitWindow.open);
}

}  // namespace
}  // namespace kalvex

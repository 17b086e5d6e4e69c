#include "windows/model_window.h"

#include "records/param_value.h"
#include "support/scratch_folder.h"
#include "windows/cell_editor.h"
#include "windows/model_keys.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

// The first model has four rows with Wo = 100, 200, 300, 400. Its window is active and shows three rows.
class ModelWindows : public OpenWindows {
 protected:
  ModelWindows() {
    OpenParamControl(desk);
    for (int row = 1; row < 4; ++row) InsertRow(first, row);
    for (int row = 0; row < 4; ++row) Cell(first, row, Wo).value = 100.0 * (row + 1);
    SetVisibleRows(first, window(), 3);
    ActivateModelWindow(desk, first, true);
  }
  ModelWindow& window() { return desk.models.at(1); }
  ModelControls Controls() { return ModelControlsOf(desk, first); }
  bool Press(Key key) { return PressModelKey(desk, first, key); }
  void Press(ModelButton button) { PressModelButton(desk, first, button); }
  void PressCell(int line, int column) { PressModelField(desk, first, {false, line, column}); }
  void Type(const std::string& text) { TypeIntoEditor(window().editor, text, text.size()); }
  std::string Line(int line) {
    std::string text;
    for (int column = 0; column < 6; ++column) text += CellOfLine(first, window(), line, column).text + '|';
    return text;
  }
  // The cursor: "E" for the leading parameter, or row and column from 1.
  std::string Cursor() {
    if (!window().rowSelected) return "E";
    return std::to_string(window().curRow + 1) + ',' + std::to_string(window().curColumn);
  }
  Texts Frequencies() {
    Texts texts;
    for (int row = 0; row < RowCount(first); ++row) {
      texts.push_back(std::to_string(static_cast<int>(Cell(first, row, Wo).value)));
    }
    return texts;
  }
};

TEST_F(ModelWindows, CellsHaveTheirFormats) {
  Cell(first, 0, Wp).value = 1.0 / 3;
  Cell(first, 0, G).value = 123456.789;
  EXPECT_EQ(Line(0), "1 |100 |0.33333 |1.2346e+05 |1.11e-05 |1.23e+03 |");
  EXPECT_EQ(Line(2), "3 |300 |100 |10 |0.111 |0.0333 |");
  first.epsInf.value = 1.23456;
  EXPECT_EQ(EpsInfCell(first, window()).text, "1.23 ");
}

TEST_F(ModelWindows, WithoutAFrequencyTheComputedCellsShowDashes) {
  Cell(first, 0, Wo).value = 0;
  EXPECT_EQ(Line(0), "1 |0 |100 |10 |---   |---   |");
  Cell(first, 0, Wp).value = 7.77777e77;
  EXPECT_EQ(CellOfLine(first, window(), 0, 2).text, "---   ");
}

TEST_F(ModelWindows, LinesBelowTheLastRowAreEmpty) {
  EXPECT_EQ(Line(4), "||||||");
  EXPECT_EQ(Line(-1), "||||||");
  window().topRow = 1;
  EXPECT_EQ(Line(3), "||||||");
  EXPECT_EQ(CellOfLine(first, window(), 0, 0).text, "2 ");
}

TEST_F(ModelWindows, ColoursAndFontTellWhatIsFreeAndWhatIsCoupled) {
  Cell(first, 1, Wp).adjustable = 0;
  Cell(first, 1, G).coupling = 3;
  EXPECT_EQ(CellOfLine(first, window(), 1, 1).colour, (Colour{0, 0, 255}));
  EXPECT_EQ(CellOfLine(first, window(), 1, 2).colour, (Colour{255, 0, 0}));
  EXPECT_TRUE(CellOfLine(first, window(), 1, 3).coupled);
  EXPECT_FALSE(CellOfLine(first, window(), 1, 2).coupled);
  EXPECT_EQ(kMarked, (Colour{0xC9, 0xF1, 0xCE}));
}

TEST_F(ModelWindows, TheMarkShowsWhileTheWindowIsActiveOrItsParameterIsSelected) {
  EXPECT_TRUE(EpsInfCell(first, window()).marked);
  EXPECT_FALSE(CellOfLine(first, window(), 0, 1).marked);
  PressCell(1, 2);
  EXPECT_FALSE(EpsInfCell(first, window()).marked);
  EXPECT_TRUE(CellOfLine(first, window(), 1, 2).marked);
  ActivateModelWindow(desk, first, false);
  EXPECT_TRUE(CellOfLine(first, window(), 1, 2).marked);
  CloseParamControl(desk);
  EXPECT_FALSE(CellOfLine(first, window(), 1, 2).marked);
}

TEST_F(ModelWindows, ASpecialModelHasOtherGroupsAndTheSameTable) {
  EXPECT_EQ(Controls().einfGroup, "Einf");
  EXPECT_EQ(Controls().rowsGroup, "Lorentzians");
  first.epsInf.adjustable = 0;
  first.epsInf.value = -2;
  EXPECT_EQ(Controls().einfGroup, "Code");
  EXPECT_EQ(Controls().rowsGroup, "Special model parameters");
  EXPECT_EQ(Line(0), "1 |100 |100 |10 |1 |0.1 |");
  EXPECT_EQ(EpsInfCell(first, window()).text, "-2 ");
}

TEST_F(ModelWindows, UpAndDownGoThroughTheRowsAndTheLeadingParameter) {
  EXPECT_EQ(Cursor(), "E");
  Press(Key::kUp);
  EXPECT_EQ(Cursor(), "E");
  Press(Key::kDown);
  EXPECT_EQ(Cursor(), "1,1");
  for (int i = 0; i < 5; ++i) Press(Key::kDown);
  EXPECT_EQ(Cursor(), "4,1");
  EXPECT_EQ(window().topRow, 1);  // scrolled just enough
  for (int i = 0; i < 3; ++i) Press(Key::kUp);
  EXPECT_EQ(Cursor(), "1,1");
  EXPECT_EQ(window().topRow, 0);
  Press(Key::kUp);
  EXPECT_EQ(Cursor(), "E");
}

TEST_F(ModelWindows, LeftAndRightWrapAroundTheThreeColumns) {
  Press(Key::kLeft);
  EXPECT_EQ(Cursor(), "E");
  PressCell(2, 3);
  Press(Key::kTab);
  Press(Key::kRight);
  EXPECT_EQ(Cursor(), "1,1");
  Press(Key::kLeft);
  EXPECT_EQ(Cursor(), "1,3");
  Press(Key::kRight);
  EXPECT_EQ(Cursor(), "1,1");
  Press(Key::kRight);
  EXPECT_EQ(Cursor(), "1,2");
  EXPECT_EQ(SelectedParam(desk), &Cell(first, 0, Wp));
}

TEST_F(ModelWindows, PagesAreAsLongAsTheWindow) {
  Press(Key::kDown);
  Press(Key::kPageDown);
  EXPECT_EQ(Cursor(), "4,1");
  Press(Key::kPageUp);
  EXPECT_EQ(Cursor(), "1,1");
  Press(Key::kPageUp);
  EXPECT_EQ(Cursor(), "E");
  Press(Key::kPageUp);
  EXPECT_EQ(Cursor(), "E");
}

TEST_F(ModelWindows, TabSwitchesAndKeepsTheRow) {
  PressCell(2, 2);
  Press(Key::kTab);
  EXPECT_EQ(Cursor(), "E");
  EXPECT_EQ(SelectedParam(desk), &first.epsInf);
  Press(Key::kTab);
  EXPECT_EQ(Cursor(), "3,2");
}

TEST_F(ModelWindows, WithoutRowsTheCursorStaysOnTheLeadingParameter) {
  ClearRows(first);
  for (const Key key : {Key::kDown, Key::kRight, Key::kTab, Key::kPageDown, Key::kDelete, Key::kF9}) {
    Press(key);
    EXPECT_EQ(Cursor(), "E");
  }
  EXPECT_FALSE(Controls().remove || Controls().up || Controls().down);
  Press(Key::kInsert);
  EXPECT_EQ(Cursor(), "1,1");
}

TEST_F(ModelWindows, MovingTheCursorTellsTheGraphsOnly) {
  Press(Key::kDown);
  EXPECT_EQ(Heard(), Texts{"model 1"});
}

TEST_F(ModelWindows, EnterOpensTheEditorWithTenDigitsAndCommits) {
  Cell(first, 1, Wo).value = 200.0 / 3;
  PressCell(1, 1);
  Heard();
  Press(Key::kEnter);
  EXPECT_EQ(window().editor.text, "66.66666667");
  EXPECT_TRUE(Heard().empty());
  Type(" 1.5e2x");
  Press(Key::kEnter);
  EXPECT_FALSE(window().editor.open);
  EXPECT_EQ(Cell(first, 1, Wo).value, 150);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1"}));
}

TEST_F(ModelWindows, ATextThatIsNoNumberLeavesTheValueAsItWas) {
  for (const char* const text : {"words", "", "-7.77777e77", "nan"}) {
    Press(Key::kEnter);
    Type(text);
    Press(Key::kEnter);
    EXPECT_EQ(first.epsInf.value, 3);
    EXPECT_FALSE(window().editor.open);
  }
  for (const std::string& notice : Heard()) EXPECT_EQ(notice, "model 1");
}

TEST_F(ModelWindows, AnEditGoesThroughLimitsAndReachesCoupledModels) {
  SetCoupling(params, Cell(first, 0, G), 1);
  SetCoupling(params, Cell(second, 0, G), 1);
  Cell(first, 0, G).useMax = 1;
  Cell(first, 0, G).max = 20;
  PressCell(0, 3);
  PressModelDigit(desk, first, '9');
  Type("90");
  Heard();
  Press(Key::kTab);
  EXPECT_EQ(Cell(second, 0, G).value, 20);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "fit", "model 2", "fit", "model 1", "model 1"}));
}

TEST_F(ModelWindows, EscapeLeavesTheEditorWithoutCommitting) {
  PressModelDigit(desk, first, '9');
  EXPECT_TRUE(Press(Key::kEscape));
  EXPECT_FALSE(window().editor.open);
  EXPECT_EQ(first.epsInf.value, 3);
}

TEST_F(ModelWindows, DigitsOpenTheEditorAndThenGoThere) {
  EXPECT_TRUE(PressModelDigit(desk, first, '4'));
  EXPECT_EQ(window().editor.text, "4");
  EXPECT_EQ(window().editor.caret, 1u);
  EXPECT_FALSE(PressModelDigit(desk, first, '2'));
  for (const Key key : {Key::kSpace, Key::kInsert, Key::kDelete}) EXPECT_FALSE(Press(key));
  EXPECT_EQ(RowCount(first), 4);
}

TEST_F(ModelWindows, LeftAndRightMoveTheCaretAndLeaveAtTheEndsOfTheText) {
  PressCell(0, 1);
  Press(Key::kEnter);
  EXPECT_EQ(window().editor.caret, 0u);
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(Press(Key::kRight));
  EXPECT_EQ(window().editor.caret, 3u);
  EXPECT_TRUE(window().editor.open);
  Press(Key::kRight);
  EXPECT_FALSE(window().editor.open);
  EXPECT_EQ(Cursor(), "1,2");
  Press(Key::kEnter);
  Press(Key::kLeft);
  EXPECT_EQ(Cursor(), "1,1");
}

TEST_F(ModelWindows, SpaceAndTheRightButtonFlipTheFlagOfTheGroup) {
  SetCoupling(params, Cell(first, 0, G), 1);
  SetCoupling(params, Cell(second, 0, G), 1);
  PressCell(0, 3);
  Press(Key::kSpace);
  EXPECT_EQ(Cell(second, 0, G).adjustable, 0u);
  RightPressModelField(desk, first, {false, 1, 1});
  EXPECT_EQ(Cell(first, 1, Wo).adjustable, 0u);
  EXPECT_EQ(Cursor(), "1,3");
  RightPressModelField(desk, first, {true, 0, 0});
  EXPECT_EQ(first.epsInf.adjustable, 0u);
}

TEST_F(ModelWindows, TheMouseCommitsMovesAndOpensTheEditor) {
  PressModelDigit(desk, first, '5');
  PressCell(1, 2);
  EXPECT_EQ(first.epsInf.value, 5);
  EXPECT_EQ(Cursor(), "2,2");
  DoublePressModelField(desk, first, {true, 0, 0});
  EXPECT_EQ(Cursor(), "E");
  EXPECT_EQ(window().editor.text, "5");
  window().topRow = 1;
  DoublePressModelField(desk, first, {false, 2, 1});
  EXPECT_EQ(Cursor(), "4,1");
  EXPECT_EQ(window().editor.text, "400");
}

TEST_F(ModelWindows, AFieldIsTheOneThatTheUserSeesEvenFarFromTheCursor) {
  SetVisibleRows(first, window(), 1);
  PressCell(0, 1);
  PressModelDigit(desk, first, '5');
  ScrollToPosition(desk, first, 3);
  RightPressModelField(desk, first, {false, 0, 2});
  EXPECT_EQ(Frequencies()[0], "5");
  EXPECT_EQ(Cell(first, 2, Wp).adjustable, 0u);
  EXPECT_EQ(window().topRow, 2);
  EXPECT_EQ(Cursor(), "1,1");
  Press(Key::kEnter);
  EXPECT_EQ(window().topRow, 0);  // scrolled to the row of the editor
  ScrollToPosition(desk, first, 3);
  PressCell(0, 3);
  EXPECT_EQ(Cursor(), "3,3");
}

TEST_F(ModelWindows, CellsThatHoldNoParameterDoNotAnswer) {
  PressCell(0, 2);
  for (const ModelField& field :
       {ModelField{false, 0, 0}, {false, 0, 4}, {false, 0, 5}, {false, 4, 1}, {false, -1, 1}}) {
    PressModelField(desk, first, field);
    DoublePressModelField(desk, first, field);
    RightPressModelField(desk, first, field);
  }
  EXPECT_EQ(Cursor(), "1,2");
  EXPECT_FALSE(window().editor.open);
}

TEST_F(ModelWindows, KeysAreTakenOnlyWhileTheWindowIsActive) {
  PressModelDigit(desk, first, '8');
  ActivateModelWindow(desk, first, false);
  EXPECT_EQ(first.epsInf.value, 8);
  EXPECT_FALSE(Press(Key::kDown));
  EXPECT_FALSE(PressModelDigit(desk, first, '1'));
  ActivateModelWindow(desk, first, true);
  for (const Key key : {Key::kF8, Key::kF10}) EXPECT_TRUE(Press(key));  // used by the window, without effect
  EXPECT_EQ(Cursor(), "E");
}

TEST_F(ModelWindows, AddedRowsStandAtTheCursor) {
  PressCell(1, 2);
  Heard();
  Press(ModelButton::kAdd);
  EXPECT_EQ(Frequencies(), (Texts{"100", "100", "200", "300", "400"}));
  EXPECT_EQ(Cursor(), "2,2");
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "rows 1"}));
}

TEST_F(ModelWindows, TheFirstPressOfRemoveOnTheLeadingParameterOnlyMovesTheCursor) {
  Press(ModelButton::kRemove);
  EXPECT_EQ(RowCount(first), 4);
  EXPECT_EQ(Cursor(), "1,1");
  Press(ModelButton::kRemove);
  EXPECT_EQ(Frequencies(), (Texts{"200", "300", "400"}));
  EXPECT_EQ(Cursor(), "1,1");
}

TEST_F(ModelWindows, ACursorThatFallsOffTheEndMovesUp) {
  PressCell(2, 1);
  Press(Key::kDown);
  Press(Key::kDelete);
  EXPECT_EQ(Frequencies(), (Texts{"100", "200", "300"}));
  EXPECT_EQ(Cursor(), "3,1");
  for (int i = 0; i < 3; ++i) Press(Key::kDelete);
  EXPECT_EQ(RowCount(first), 0);
  EXPECT_EQ(Cursor(), "E");
}

TEST_F(ModelWindows, UpAndDownButtonsTakeTheCursorAlong) {
  EXPECT_FALSE(Controls().up || Controls().down);
  Press(ModelButton::kDown);
  PressCell(0, 1);
  EXPECT_FALSE(Controls().up);
  EXPECT_TRUE(Controls().down);
  Press(ModelButton::kUp);
  EXPECT_EQ(Frequencies(), (Texts{"100", "200", "300", "400"}));
  for (int i = 0; i < 3; ++i) Press(ModelButton::kDown);
  EXPECT_EQ(Frequencies(), (Texts{"200", "300", "400", "100"}));
  EXPECT_EQ(Cursor(), "4,1");
  EXPECT_EQ(window().topRow, 1);
  EXPECT_TRUE(Controls().up);
  EXPECT_FALSE(Controls().down);
  Press(ModelButton::kUp);
  EXPECT_EQ(Frequencies(), (Texts{"200", "300", "100", "400"}));
}

TEST_F(ModelWindows, AHeaderSortsAndASecondClickReverses) {
  PressModelHeader(desk, first, 1);
  EXPECT_EQ(Frequencies(), (Texts{"400", "300", "200", "100"}));
  PressModelHeader(desk, first, 1);
  EXPECT_EQ(Frequencies(), (Texts{"100", "200", "300", "400"}));
  PressModelHeader(desk, first, 0);
  EXPECT_EQ(Frequencies(), (Texts{"100", "200", "300", "400"}));
}

TEST_F(ModelWindows, FixAllGoesByTheLeadingParameter) {
  Cell(first, 1, G).adjustable = 0;
  Press(ModelButton::kFixAll);
  EXPECT_EQ(first.epsInf.adjustable + Cell(first, 0, Wo).adjustable, 0u);
  Press(ModelButton::kFixAll);
  EXPECT_EQ(first.epsInf.adjustable + Cell(first, 1, G).adjustable, 2u);
}

TEST_F(ModelWindows, ColumnsTakeADragOrTheWidestTextShown) {
  EXPECT_EQ(window().columnWidths, (std::array{22, 50, 50, 50, 50, 50}));
  SetColumnWidth(window(), 2, 80);
  EXPECT_EQ(window().columnWidths[2], 80);
  Cell(first, 3, Wo).value = 123456789;  // below the lines shown
  const auto tenPixelsEach = [](const ParamCell& cell) { return (cell.coupled ? 12 : 10) * cell.text.size(); };
  FitColumnWidth(first, window(), 1, tenPixelsEach);
  EXPECT_EQ(window().columnWidths[1], 41);  // "100 "
  window().topRow = 1;
  FitColumnWidth(first, window(), 1, tenPixelsEach);
  EXPECT_EQ(window().columnWidths[1], 111);  // "1.2346e+08 "
  Cell(first, 3, Wo).coupling = 1;
  FitColumnWidth(first, window(), 1, tenPixelsEach);
  EXPECT_EQ(window().columnWidths[1], 133);  // in the font of coupled parameters
}

TEST_F(ModelWindows, TheScrollBarCountsRowsFromOneAndHidesWhenAllFit) {
  const auto position = [&] { return ScrollBarOf(first, window()).position; };
  const ModelScrollBar bar = ScrollBarOf(first, window());
  EXPECT_TRUE(bar.shown);
  EXPECT_EQ((std::array{bar.from, bar.to, bar.page, bar.position}), (std::array{1, 4, 3, 1}));
  SetVisibleRows(first, window(), 2);
  ScrollByLines(desk, first, 1);
  EXPECT_EQ(position(), 2);
  ScrollByPages(desk, first, -1);
  EXPECT_EQ(position(), 1);
  ScrollByPages(desk, first, 5);
  EXPECT_EQ(position(), 3);
  ScrollToPosition(desk, first, 2);
  EXPECT_EQ(window().topRow, 1);
  SetVisibleRows(first, window(), 4);
  EXPECT_EQ(window().topRow, 0);
  EXPECT_FALSE(ScrollBarOf(first, window()).shown);
}

TEST_F(ModelWindows, ScrollingTakesWhatIsTypedSinceItsCellGoesAway) {
  PressCell(0, 1);
  for (int way = 0; way < 3; ++way) {
    PressModelDigit(desk, first, '7');
    way == 0   ? ScrollByLines(desk, first, 1)
    : way == 1 ? ScrollByPages(desk, first, -1)
               : ScrollToPosition(desk, first, 2);
    EXPECT_FALSE(window().editor.open);
    EXPECT_EQ(std::exchange(Cell(first, 0, Wo).value, 0), 7);
  }
  EXPECT_EQ(window().topRow, 1);
}

TEST_F(ModelWindows, ALowerWindowKeepsTheRowInSightThatIsTypedInto) {
  PressCell(2, 1);
  PressModelDigit(desk, first, '7');
  SetVisibleRows(first, window(), 1);
  EXPECT_EQ(window().topRow, 2);
  EXPECT_TRUE(window().editor.open);
}

TEST_F(ModelWindows, ANewModelIsSelectedAndTold) {
  const Model* const model = NewModelWindow(desk);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(SelectedParam(desk), &model->epsInf);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 3", "new model 3"}));
  while (NewModelWindow(desk)) {
  }
  EXPECT_EQ(CountModels(params), kMaxModels);
}

TEST_F(ModelWindows, ClosingAWindowClosesTheModelAndGivesTheSelectionBack) {
  PressCell(0, 1);
  Heard();
  CloseModelWindow(desk, first);
  EXPECT_EQ(Heard(), (Texts{"terms", "model closed 1"}));
  EXPECT_EQ(first.number, 0u);
  EXPECT_FALSE(desk.paramControl.selected.has_value());
}

TEST_F(ModelWindows, DuringARunNothingCanBeChanged) {
  PressModelDigit(desk, first, '9');
  fit.FitRunning = true;
  for (const Key key : {Key::kEnter, Key::kTab, Key::kF4, Key::kF6}) EXPECT_TRUE(Press(key));
  for (int i = 0; i <= static_cast<int>(ModelButton::kVdfPositive); ++i) Press(static_cast<ModelButton>(i));
  PressModelHeader(desk, first, 1);
  RightPressModelField(desk, first, {true, 0, 0});
  CloseModelWindow(desk, first);
  EXPECT_EQ(NewModelWindow(desk), nullptr);
  ActivateModelWindow(desk, first, false);
  EXPECT_EQ(first.number, 1u);
  EXPECT_EQ(first.epsInf.value, 3);
  EXPECT_EQ(first.epsInf.adjustable, 1u);
  EXPECT_EQ(Frequencies(), (Texts{"100", "200", "300", "400"}));
  for (const std::string& notice : Heard()) EXPECT_EQ(notice, "model 1");
}

// The files of a model, in a folder of their own.
class ModelFiles : public ModelWindows {
 protected:
  ModelFiles() : inside(folder.Name()) {}
  ScratchFolder folder;
  InFolder inside;
};

TEST_F(ModelFiles, SaveAndLoadAskForAFileAndCancelDoesNothing) {
  Press(Key::kF2);
  Press(Key::kF3);
  Press(ModelButton::kSave);
  EXPECT_EQ(asked, (Texts{"Save Model As in ''", "Load Model in ''", "Save Model As in ''"}));
  EXPECT_EQ(RowCount(first), 4);
}

TEST_F(ModelFiles, AModelSavedByTheDialogComesBack) {
  chosenFile = "x.kvm";
  PressCell(1, 2);
  Press(Key::kF2);
  Cell(first, 1, Wo).value = 7;
  InsertRow(first, 0);
  Heard();
  Press(Key::kF3);
  EXPECT_EQ(Frequencies(), (Texts{"100", "200", "300", "400"}));
  EXPECT_EQ(Heard(), (Texts{"model loaded 1", "fit", "model 1", "rows 1"}));
  EXPECT_EQ(Cursor(), "E");
}

TEST_F(ModelFiles, WhatIsBeingTypedIsCommittedBeforeItIsSaved) {
  chosenFile = "x.kvm";
  PressModelDigit(desk, first, '6');
  Press(Key::kF2);
  first.epsInf.value = 1;
  Press(Key::kF3);
  EXPECT_EQ(first.epsInf.value, 6);
}

}  // namespace
}  // namespace kalvex

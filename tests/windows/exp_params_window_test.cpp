#include "windows/exp_params_window.h"

#include "records/param_value.h"
#include "windows/cell_editor.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

class ExpParamsWindows : public OpenWindows {
 protected:
  ExpParamsWindows() {
    OpenParamControl(desk);
    OpenExpParams(desk);
    ActivateExpParams(desk, true);
  }
  ExpParamsWindow& window() { return desk.expParams; }
  ModelParam& param(int index) { return params.ExpParams[static_cast<std::size_t>(index)]; }
  bool Press(Key key) { return PressExpParamsKey(desk, key); }
  void Type(const std::string& text) { TypeIntoEditor(window().editor, text, text.size()); }
};

TEST_F(ExpParamsWindows, ShowTheSixDefaultsAfterTheStartAndNoneIsAFitParameter) {
  const Texts labels = {"Sample thickness", "Thickness spread",    "Angle of incidence",
                        "Angle spread",     "Scaling factor of R", "Scaling factor of T"};
  const Texts values = {"0.0015 ", "0 ", "80 ", "0 ", "1 ", "1 "};
  for (int i = 0; i < kExpParamCount; ++i) {
    const ExpParamLine line = ExpParamLineOf(desk, i);
    EXPECT_EQ(line.label, labels[static_cast<std::size_t>(i)]);
    EXPECT_EQ(line.value.text, values[static_cast<std::size_t>(i)]);
    EXPECT_EQ(line.value.colour, (Colour{255, 0, 0}));
    EXPECT_FALSE(line.value.coupled);
    EXPECT_EQ(line.value.marked, i == 0);
  }
  EXPECT_EQ(std::pair(window().x, window().y), std::pair(400, 300));
  EXPECT_EQ(std::pair(window().width, window().height), std::pair(285, 160));
}

TEST_F(ExpParamsWindows, AreSelectedAsSoonAsTheyOpen) { EXPECT_EQ(SelectedParam(desk), &param(0)); }

TEST_F(ExpParamsWindows, ValuesHaveFiveDigits) {
  param(0).value = 0.00123456789;
  EXPECT_EQ(ExpParamLineOf(desk, 0).value.text, "0.0012346 ");
}

TEST_F(ExpParamsWindows, TheCursorWrapsAround) {
  const auto after = [&](Key key) {
    EXPECT_TRUE(Press(key));
    return window().selectedIndex;
  };
  EXPECT_EQ(after(Key::kUp), 5);
  EXPECT_EQ(after(Key::kDown), 0);
  EXPECT_EQ(after(Key::kTab), 1);
  EXPECT_EQ(after(Key::kRight), 2);
  EXPECT_EQ(after(Key::kLeft), 1);
  EXPECT_EQ(after(Key::kPageDown), 5);
  EXPECT_EQ(after(Key::kTab), 0);
  EXPECT_EQ(after(Key::kLeft), 5);
  EXPECT_EQ(after(Key::kPageUp), 0);
  EXPECT_EQ(SelectedParam(desk), &param(0));
}

TEST_F(ExpParamsWindows, MovingTheCursorTellsTheGraphsOnly) {
  Press(Key::kDown);
  EXPECT_EQ(Heard(), Texts{"experiment"});
}

TEST_F(ExpParamsWindows, EnterOpensTheEditorWithTenDigitsAndCommits) {
  param(0).value = 1.0 / 3;
  Press(Key::kEnter);
  EXPECT_TRUE(window().editor.open);
  EXPECT_EQ(window().editor.text, "0.3333333333");
  Type("2.5e-3 cm");
  Press(Key::kEnter);
  EXPECT_FALSE(window().editor.open);
  EXPECT_EQ(param(0).value, 0.0025);
  EXPECT_EQ(Heard(), (Texts{"fit", "experiment"}));
}

TEST_F(ExpParamsWindows, ATextThatIsNoNumberIsRejected) {
  Press(Key::kEnter);
  Type("words");
  Press(Key::kEnter);
  EXPECT_EQ(param(0).value, 0.0015);
  EXPECT_EQ(Heard(), Texts{"experiment"});
}

TEST_F(ExpParamsWindows, EscapeLeavesTheEditorWithoutCommitting) {
  Press(Key::kEnter);
  Type("7");
  Press(Key::kEscape);
  EXPECT_FALSE(window().editor.open);
  EXPECT_EQ(param(0).value, 0.0015);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(ExpParamsWindows, ADigitOpensTheEditorAndMoreOfThemGoThere) {
  EXPECT_TRUE(PressExpParamsDigit(desk, '4'));
  EXPECT_EQ(window().editor.text, "4");
  EXPECT_EQ(window().editor.caret, 1u);
  EXPECT_FALSE(PressExpParamsDigit(desk, '2'));
  EXPECT_FALSE(Press(Key::kSpace));
  Press(Key::kDown);
  EXPECT_EQ(param(0).value, 4);
  EXPECT_EQ(window().selectedIndex, 1);
}

TEST_F(ExpParamsWindows, LeftAndRightMoveTheCaretAndLeaveAtTheEndsOfTheText) {
  PressExpParamsDigit(desk, '4');
  Press(Key::kLeft);
  EXPECT_EQ(window().editor.caret, 0u);
  EXPECT_EQ(window().selectedIndex, 0);
  Press(Key::kRight);
  Press(Key::kRight);
  EXPECT_FALSE(window().editor.open);
  EXPECT_EQ(param(0).value, 4);
  EXPECT_EQ(window().selectedIndex, 1);
}

TEST_F(ExpParamsWindows, SpaceAndTheRightButtonFlipTheFlag) {
  Press(Key::kSpace);
  EXPECT_EQ(param(0).adjustable, 1u);
  EXPECT_EQ(ExpParamLineOf(desk, 0).value.colour, (Colour{0, 0, 255}));
  EXPECT_EQ(Heard(), (Texts{"fit", "experiment"}));
  RightPressExpParam(desk, 3);
  EXPECT_EQ(param(3).adjustable, 1u);
  EXPECT_EQ(window().selectedIndex, 0);
}

TEST_F(ExpParamsWindows, TheMouseCommitsSelectsAndOpensTheEditor) {
  PressExpParamsDigit(desk, '3');
  PressExpParam(desk, 4);
  EXPECT_EQ(param(0).value, 3);
  EXPECT_EQ(SelectedParam(desk), &param(4));
  DoublePressExpParam(desk, 2);
  EXPECT_EQ(window().editor.text, "80");
  EXPECT_EQ(window().editor.caret, 0u);
}

TEST_F(ExpParamsWindows, KeysAreTakenOnlyWhileTheWindowIsActive) {
  PressExpParamsDigit(desk, '3');
  ActivateExpParams(desk, false);
  EXPECT_EQ(param(0).value, 3);
  EXPECT_FALSE(Press(Key::kDown));
  EXPECT_FALSE(PressExpParamsDigit(desk, '1'));
  EXPECT_EQ(window().selectedIndex, 0);
  EXPECT_TRUE(ExpParamLineOf(desk, 0).value.marked);  // the parameter control still shows it
  CloseParamControl(desk);
  EXPECT_FALSE(ExpParamLineOf(desk, 0).value.marked);
}

TEST_F(ExpParamsWindows, FunctionKeysAreNotTaken) {
  for (const Key key : {Key::kF2, Key::kF5, Key::kF10, Key::kInsert, Key::kDelete}) EXPECT_FALSE(Press(key));
}

TEST_F(ExpParamsWindows, AGroupSharedWithAModelOverwritesTheNameToo) {
  SetCoupling(params, Cell(first, 0, G), 2);
  SetCoupling(params, param(1), 2);
  EXPECT_EQ(ExpParamLineOf(desk, 1).label, "Linewidth");
  EXPECT_TRUE(ExpParamLineOf(desk, 1).value.coupled);
  PressExpParam(desk, 1);
  PressExpParamsDigit(desk, '6');
  Heard();
  Press(Key::kEnter);
  EXPECT_EQ(Cell(first, 0, G).value, 6);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "fit", "experiment", "fit", "experiment"}));
}

TEST_F(ExpParamsWindows, ClosingCommitsAndGivesTheSelectionBack) {
  Press(Key::kDown);
  PressExpParamsDigit(desk, '7');
  CloseExpParams(desk);
  EXPECT_FALSE(window().open);
  EXPECT_EQ(param(1).value, 7);
  EXPECT_EQ(SelectedParam(desk), nullptr);
  OpenExpParams(desk);
  EXPECT_EQ(window().selectedIndex, 0);
}

TEST_F(ExpParamsWindows, OpenAtTheirFirstPlaceEachTime) {
  window().x = 7;
  window().width = 500;
  OpenExpParams(desk);
  EXPECT_EQ(window().x, 7);  // it only comes to the front
  CloseExpParams(desk);
  OpenExpParams(desk);
  EXPECT_EQ(std::pair(window().x, window().width), std::pair(400, 285));
  EXPECT_TRUE(window().open && window().wantsFront);
}

TEST_F(ExpParamsWindows, DuringARunNothingCanBeChanged) {
  PressExpParamsDigit(desk, '7');
  fit.FitRunning = true;
  EXPECT_TRUE(Press(Key::kEnter));
  RightPressExpParam(desk, 1);
  PressExpParam(desk, 2);
  ActivateExpParams(desk, false);
  EXPECT_EQ(param(0).value, 0.0015);
  EXPECT_EQ(param(1).adjustable, 0u);
  for (const std::string& heard : Heard()) EXPECT_NE(heard, "fit");
}

TEST_F(ExpParamsWindows, AFreeAngleOfIncidenceIsAnEntryOfTheFitIfTheModelDependsOnIt) {
  Dataset& dataset = Fill(1, "a.dat");
  const auto expEntries = [&] {
    std::vector<int> entries;
    for (const FitParam& entry : fit.params) {
      if (entry.place.Where == ParamKind::kExp && entry.used) entries.push_back(entry.place.nep);
    }
    return entries;
  };
  dataset.Quantity = kRp;
  session.AddTerm(1, first.number, 1.0).Ignore();
  EXPECT_TRUE(expEntries().empty());
  RightPressExpParam(desk, kAngleOfIncidence);
  EXPECT_EQ(expEntries(), std::vector<int>{2});
  session.SetDatasetQuantity(1, kE1, kalvex::Heard::kAtOnce).Ignore();
  EXPECT_TRUE(expEntries().empty());
}

}  // namespace
}  // namespace kalvex

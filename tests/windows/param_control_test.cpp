#include "windows/param_control.h"

#include <cmath>

#include "records/param_value.h"
#include "support/tolerances.h"
#include "windows/exp_params_window.h"
#include "windows/model_window.h"
#include "windows/open_windows.h"

namespace kalvex {
namespace {

// The width of the first model's only row is selected in that model's window.
class ParamControlWindow : public OpenWindows {
 protected:
  ParamControlWindow() : param(Cell(first, 0, G)) {
    OpenParamControl(desk);
    SelectWidth(first);
    param.value = 50;
    param.max = 100;
    SettleSlider(desk);
    Heard();
  }
  void SelectWidth(Model& model) { PressModelField(desk, model, {false, 0, 3}); }
  ParamFields Fields() { return ParamFieldsOf(desk); }
  ParamControl& control() { return desk.paramControl; }

  ModelParam& param;
};

TEST_F(ParamControlWindow, ShowsAllFieldsOfTheSelectedParameter) {
  param.min = 1.0 / 3;
  param.useMax = 1;
  param.coupling = 7;
  const ParamFields fields = Fields();
  EXPECT_EQ(fields.header, "Linewidth");
  EXPECT_EQ(fields.headerColour, (Colour{0, 0, 255}));
  EXPECT_EQ(fields.value, "50");
  EXPECT_EQ(fields.min, "0.33333");
  EXPECT_EQ(fields.max, "100");
  EXPECT_TRUE(!fields.useMin && fields.useMax && fields.adjustable && fields.enabled);
  EXPECT_EQ(fields.coupling, 7);
  param.adjustable = 0;
  EXPECT_EQ(Fields().headerColour, (Colour{255, 0, 0}));
}

TEST_F(ParamControlWindow, WithoutAParameterIsEmptyAndDisabled) {
  DeselectModel(desk, 1);
  const ParamFields fields = Fields();
  EXPECT_EQ(fields.header, "No parameter selected");
  EXPECT_EQ(fields.headerColour, (Colour{0, 0, 0}));
  EXPECT_EQ(fields.value + fields.min + fields.max, "");
  EXPECT_FALSE(fields.enabled || fields.adjustable);
  DragSlider(desk, 20);
  CommitValue(desk, "3");
  CheckAdjustable(desk, false);
  EXPECT_EQ(param.value, 50);
  EXPECT_EQ(param.adjustable, 1u);
}

TEST_F(ParamControlWindow, AParameterOfASpecialModelHasNoNameOfItsOwn) {
  first.epsInf.adjustable = 0;
  first.epsInf.value = -2;
  EXPECT_EQ(Fields().header, "Special model parameter");
}

TEST_F(ParamControlWindow, TheGroupsAreAnEmptyEntryAndTwentyFiveMore) {
  const Texts choices = CouplingChoices();
  ASSERT_EQ(choices.size(), 26u);
  EXPECT_EQ(choices[0], "");
  EXPECT_EQ(choices[1], "A1");
  EXPECT_EQ(choices[25], "A25");
  ChooseCoupling(desk, 24);
  EXPECT_EQ(param.coupling, 24u);
  ChooseCoupling(desk, 25);
  EXPECT_EQ(param.coupling, 0u);
}

TEST_F(ParamControlWindow, TheSliderStandsInItsCentreOrAtTheEndWhereTheValueIs) {
  EXPECT_EQ(control().position, 40);
  EXPECT_TRUE(control().marksShown);
  CommitValue(desk, "0");
  EXPECT_EQ(control().position, 80);
  EXPECT_FALSE(control().marksShown);
  CommitValue(desk, "100");  // not active, but still an end of the slider
  EXPECT_EQ(control().position, 0);
  EXPECT_FALSE(control().marksShown);
  CommitValue(desk, "130");
  EXPECT_EQ(control().position, 40);
}

TEST_F(ParamControlWindow, ADragFollowsTheMapAndIsCentredAtItsEndOnly) {
  DragSlider(desk, 20);
  EXPECT_NEAR(param.value, 60, kChain);
  DragSlider(desk, 60);
  EXPECT_NEAR(param.value, 40, kChain);  // still centred on 50
  EXPECT_EQ(control().position, 60);
  EXPECT_EQ(control().baseValue, 50);
  SettleSlider(desk);
  EXPECT_EQ(control().position, 40);
  EXPECT_EQ(control().baseValue, param.value);
  DragSlider(desk, 20);
  EXPECT_NEAR(param.value, 48, kChain);
}

TEST_F(ParamControlWindow, ADragThatStartsOnALimitSweepsTheRangeAndIsCentredUnlessItEndsOnOne) {
  CommitValue(desk, "0");
  DragSlider(desk, 40);
  EXPECT_NEAR(param.value, 100.0 * 99 / 9999, kChain);
  SettleSlider(desk);
  EXPECT_EQ(control().position, 40);
  DragSlider(desk, 80);
  EXPECT_EQ(param.value, 0);
  SettleSlider(desk);
  EXPECT_EQ(control().position, 80);
}

TEST_F(ParamControlWindow, AValueAboveALimitThatIsOffJumpsAtTheFirstMovement) {
  CommitValue(desk, "130");
  DragSlider(desk, 41);
  EXPECT_LT(param.value, 100);
}

TEST_F(ParamControlWindow, ADragStartsFromTheValueThatAFitHasLeft) {
  param.value = 20;
  DragSlider(desk, 40);
  EXPECT_NEAR(param.value, 20, kChain);
}

TEST_F(ParamControlWindow, EachStepOfADragTellsTheOwnerAndWhatIsCoupled) {
  SetCoupling(params, param, 1);
  SetCoupling(params, Cell(second, 0, G), 1);
  DragSlider(desk, 20);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "fit", "model 2", "fit", "model 1"}));
  EXPECT_NEAR(Cell(second, 0, G).value, 60, kChain);
}

TEST_F(ParamControlWindow, AnEditTakesEffectThroughTheLimits) {
  param.useMax = 1;
  CommitValue(desk, "170");
  EXPECT_EQ(param.value, 100);
  CommitValue(desk, "words");
  EXPECT_EQ(param.value, 0);
  EXPECT_EQ(Heard(), (Texts{"fit", "model 1", "fit", "model 1"}));
}

TEST_F(ParamControlWindow, WordsForNoNumberAndInfinityGiveValuesThatTheSliderCanUse) {
  CommitValue(desk, "nan");
  EXPECT_EQ(param.value, 0);
  CommitMin(desk, "-inf");
  CommitMax(desk, "inf");
  EXPECT_EQ(std::pair(param.min, param.max), std::pair(-1e70, 1e70));
  for (int position = 0; position <= 80; ++position) {
    DragSlider(desk, position);
    EXPECT_LE(std::fabs(param.value), 1e70) << position;
  }
}

TEST_F(ParamControlWindow, WhatIsTypedTakesEffectWhenTheFieldIsLeft) {
  TypeIntoParamField(desk, ParamField::kMax, "80");
  EXPECT_EQ(Fields().max, "80");
  EXPECT_EQ(param.max, 100);
  TypeIntoParamField(desk, ParamField::kMin, "20");  // typing into another field leaves the first one
  EXPECT_EQ(param.max, 80);
  TypeIntoParamField(desk, ParamField::kValue, "33");
  LeaveParamField(desk);
  EXPECT_EQ(std::pair(param.min, param.value), std::pair(20.0, 33.0));
  Heard();
  LeaveParamField(desk);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(ParamControlWindow, WhatIsTypedNeverReachesAnotherParameter) {
  const ModelParam before = Cell(second, 0, G);
  TypeIntoParamField(desk, ParamField::kValue, "33");
  SelectWidth(second);
  LeaveParamField(desk);  // as on a screen, after the other window became active
  EXPECT_EQ(param.value, 33);
  EXPECT_EQ(Cell(second, 0, G).value, before.value);
}

TEST_F(ParamControlWindow, WhatIsTypedGoesWithItsRowWhenRowsMove) {
  InsertRow(first, 1);
  SelectWidth(first);
  TypeIntoParamField(desk, ParamField::kValue, "33");
  PressModelButton(desk, first, ModelButton::kDown);
  LeaveParamField(desk);
  EXPECT_EQ(Cell(first, 0, G).value, 10);
  EXPECT_EQ(Cell(first, 1, G).value, 33);
}

TEST_F(ParamControlWindow, ClosingTakesWhatIsTyped) {
  TypeIntoParamField(desk, ParamField::kValue, "33");
  CloseParamControl(desk);
  EXPECT_EQ(param.value, 33);
}

TEST_F(ParamControlWindow, ClosingTheModelTakesWhatIsTypedForItsGroup) {
  SetCoupling(params, param, 1);
  SetCoupling(params, Cell(second, 0, G), 1);
  TypeIntoParamField(desk, ParamField::kValue, "33");
  CloseModelWindow(desk, first);
  EXPECT_EQ(Cell(second, 0, G).value, 33);
  EXPECT_FALSE(control().typed.has_value());
}

TEST_F(ParamControlWindow, TheSliderFollowsAValueThatOthersHaveChanged) {
  CommitValue(desk, "0");
  EXPECT_EQ(Fields().position, 80);
  param.value = 50;
  EXPECT_EQ(Fields().position, 40);
  EXPECT_TRUE(Fields().marksShown);
  DragSlider(desk, 20);
  param.value = 100;
  EXPECT_EQ(Fields().position, 20);  // the drag continues
}

TEST_F(ParamControlWindow, AFieldLeftAsItWasIsNoEdit) {
  param.value = 1.23456789;
  CommitValue(desk, Fields().value);
  EXPECT_EQ(param.value, 1.23456789);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(ParamControlWindow, ALowerLimitAboveTheUpperOneStopsThere) {
  CommitMin(desk, "200");
  EXPECT_EQ(param.min, 100);
  EXPECT_EQ(param.value, 50);  // the limit is not active
  CommitMin(desk, "10");
  CommitMax(desk, "3");
  EXPECT_EQ(param.max, 10);
}

TEST_F(ParamControlWindow, ALimitInForcePullsTheValueInsideAtOnce) {
  CommitMin(desk, "60");
  EXPECT_EQ(param.value, 50);
  CheckUseMin(desk, true);
  EXPECT_EQ(param.value, 60);
  CommitMin(desk, "70");
  EXPECT_EQ(param.value, 70);
  CheckUseMin(desk, false);
  CommitMin(desk, "0");
  CommitMax(desk, "65");
  EXPECT_EQ(param.value, 70);
  CheckUseMax(desk, true);
  EXPECT_EQ(param.value, 65);
  EXPECT_EQ(control().baseValue, 65);
}

TEST_F(ParamControlWindow, ChangedLimitsAndFlagsReachTheWholeGroup) {
  SetCoupling(params, param, 3);
  SetCoupling(params, Cell(second, 0, Wo), 3);
  CommitMin(desk, "5");
  CheckUseMin(desk, true);
  CheckAdjustable(desk, false);
  const ModelParam& member = Cell(second, 0, Wo);
  EXPECT_EQ(member.min, 5);
  EXPECT_EQ(member.useMin, 1u);
  EXPECT_EQ(member.adjustable, 0u);
  EXPECT_FALSE(second.dirty);
}

TEST_F(ParamControlWindow, SelectingFromASecondModelTakesTheMarkFromTheFirst) {
  EXPECT_TRUE(CellOfLine(first, desk.models.at(1), 0, 3).marked);
  SelectWidth(second);
  EXPECT_FALSE(CellOfLine(first, desk.models.at(1), 0, 3).marked);
  EXPECT_TRUE(CellOfLine(second, desk.models.at(2), 0, 3).marked);
  EXPECT_EQ(Heard(), (Texts{"model 1", "model 2"}));
  CommitValue(desk, "8");
  EXPECT_EQ(Cell(second, 0, G).value, 8);
  EXPECT_EQ(param.value, 50);
}

TEST_F(ParamControlWindow, TheExperimentAndAModelTakeTheSelectionFromEachOther) {
  OpenExpParams(desk);
  PressExpParam(desk, 2);
  EXPECT_FALSE(desk.models.at(1).paramSelected);
  EXPECT_EQ(Fields().header, "Angle of incidence");
  Heard();
  CommitValue(desk, "45");
  EXPECT_EQ(params.ExpParams[2].value, 45);
  EXPECT_EQ(Heard(), (Texts{"fit", "experiment"}));
  SelectWidth(first);
  EXPECT_FALSE(desk.expParams.paramSelected);
}

TEST_F(ParamControlWindow, ClosedItAnswersNoAndRemembersTheSelection) {
  CloseParamControl(desk);
  EXPECT_FALSE(desk.models.at(1).paramSelected);
  EXPECT_EQ(Heard(), Texts{"model 1"});
  SelectWidth(second);
  EXPECT_FALSE(desk.models.at(2).paramSelected);
  OpenParamControl(desk);
  EXPECT_EQ(SelectedParam(desk), &Cell(second, 0, G));
  EXPECT_TRUE(control().wantsFront);
}

TEST_F(ParamControlWindow, OpensOnceAtItsPlace) {
  EXPECT_EQ(std::pair(control().x, control().y), std::pair(400, 100));
  EXPECT_EQ(std::pair(control().width, control().height), std::pair(190, 160));
  DragSlider(desk, 20);
  control().x = 7;
  OpenParamControl(desk);
  EXPECT_EQ(control().position, 20);  // it only comes to the front
  EXPECT_EQ(control().x, 7);
  CloseParamControl(desk);
  OpenParamControl(desk);
  EXPECT_EQ(control().x, 400);
  EXPECT_EQ(SelectedParam(desk), &param);
}

TEST_F(ParamControlWindow, AParameterThatIsGoneIsNoLongerSelected) {
  RemoveRow(first, 0);
  EXPECT_EQ(SelectedParam(desk), nullptr);
  EXPECT_EQ(Fields().header, "No parameter selected");
  SelectWidth(second);
  session.CloseModel(2).Ignore();
  EXPECT_EQ(SelectedParam(desk), nullptr);
  const Model& another = Made(session.NewModel());  // takes the place of the closed one
  EXPECT_EQ(SelectedParam(desk), nullptr);
  EXPECT_EQ(another.number, 3u);
}

TEST_F(ParamControlWindow, DuringARunNothingCanBeChanged) {
  fit.FitRunning = true;
  DragSlider(desk, 20);
  CommitValue(desk, "3");
  CommitMin(desk, "4");
  CommitMax(desk, "5");
  CheckUseMin(desk, true);
  CheckUseMax(desk, true);
  CheckAdjustable(desk, false);
  ChooseCoupling(desk, 2);
  TypeIntoParamField(desk, ParamField::kValue, "3");
  LeaveParamField(desk);
  EXPECT_EQ(param.value, 50);
  EXPECT_EQ(param.max, 100);
  EXPECT_TRUE(Heard().empty());
}

}  // namespace
}  // namespace kalvex

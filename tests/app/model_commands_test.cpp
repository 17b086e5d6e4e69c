// Models made and changed by macros, checked by their files and verbose output.
#include "app/kalvex_run.h"
#include "app/saved_model.h"

namespace kalvex {
namespace {

class ModelCommands : public Kalvex {
 protected:
  // Model n at the end of the macro.
  SavedModel After(const std::string& macro, int number = 1) {
    Run(macro + "SaveModel(ModelNo=" + std::to_string(number) + ",File=\"saved.kvm\");");
    return SavedModelOf(folder.Read("saved.kvm"));
  }
};

TEST_F(ModelCommands, ANewModelHasOneRowWithItsDefaults) {
  const SavedModel model = After("NewModel();");
  ASSERT_EQ(model.elements.size(), 3u);
  EXPECT_EQ(model.epsInf.value, 3);
  EXPECT_EQ(model.epsInf.adjustable, 1u);
  EXPECT_EQ(model.epsInf.name, "Epsilon at infinity");
  const double values[] = {100, 100, 10};
  const char* const names[] = {"TO frequency", "Plasma frequency", "Linewidth"};
  for (int c = 0; c < 3; ++c) {
    EXPECT_EQ(model.At(0, c).value, values[c]);
    EXPECT_EQ(model.At(0, c).name, names[c]);
    EXPECT_EQ(model.At(0, c).adjustable, 1u);
    EXPECT_EQ(model.At(0, c).max, 100000);
  }
}

TEST_F(ModelCommands, ParameterNamesAreMatchedWholeAndIgnoringCase) {
  const SavedModel model = After("NewModel();" + Setting(1, "EINF", 1, "Value=1") + Setting(1, "wo", 1, "Value=2") +
                                 Setting(1, "wP", 1, "Value=3") + Setting(1, "g", 1, "Value=4"));
  EXPECT_EQ(model.epsInf.value, 1);
  for (int c = 0; c < 3; ++c) EXPECT_EQ(model.At(0, c).value, 2 + c);
  for (const char* const name : {"W", "Wo ", "Gamma", "Eps", "", "E"}) {
    EXPECT_EQ(SaidLast("NewModel();" + Setting(1, name, 1, "Value=5")),
              "nothing done: '" + std::string(name) + "' is not one of Einf, Wo, Wp, G");
  }
}

TEST_F(ModelCommands, SettingNeedsModelNameAndAnExistingRow) {
  const struct {
    const char* items;
    const char* said;
  } kCases[] = {
      {"ParamName=\"G\",LorNo=1", "ModelNo is missing"},
      {"ModelNo=7,ParamName=\"G\",LorNo=1", "model 7 does not exist"},
      {"ModelNo=0,ParamName=\"G\",LorNo=1", "model 0 does not exist"},
      {"ModelNo=-1,ParamName=\"G\",LorNo=1", "model -1 does not exist"},
      {"ModelNo=1,LorNo=1", "ParamName is missing"},
      {"ModelNo=1,ParamName=\"G\"", "LorNo is missing"},
      {"ModelNo=1,ParamName=\"G\",LorNo=2", "model 1 has no row 2"},
      {"ModelNo=1,ParamName=\"G\",LorNo=0", "model 1 has no row 0"},
      {"ModelNo=1,ParamName=\"G\",LorNo=-1", "model 1 has no row -1"},
  };
  for (const auto& c : kCases) {
    const SavedModel model = After("NewModel();SetModelParam(" + std::string(c.items) + ",Value=55);");
    EXPECT_EQ(Said("SetModelParam"), "nothing done: " + std::string(c.said));
    EXPECT_EQ(model.epsInf.value, 3);
    EXPECT_EQ(model.At(0, 2).value, 10);
  }
}

TEST_F(ModelCommands, AModelWithoutRowsHasNothingToSet) {
  const SavedModel model = After(
      "NewModel();RemoveModelRow(ModelNo=1,LorNo=1);"
      "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=100);");
  EXPECT_EQ(Said("SetModelParam"), "nothing done: model 1 has no row 1");
  EXPECT_TRUE(model.elements.empty());
}

TEST_F(ModelCommands, WhatIsNotGivenIsNotTouched) {
  const SavedModel model = After("NewModel();" + Setting(1, "G", 1, "FitActive=0") + Setting(1, "Wp", 1, "MinLimit=2") +
                                 "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1);");
  EXPECT_EQ(model.At(0, 2).adjustable, 0u);
  EXPECT_EQ(model.At(0, 2).value, 10);
  EXPECT_EQ(model.At(0, 1).min, 2);
  EXPECT_EQ(model.At(0, 1).useMin, 0u);
  EXPECT_EQ(model.At(0, 1).max, 100000);
  EXPECT_EQ(model.At(0, 1).adjustable, 1u);
  EXPECT_EQ(model.At(0, 0).value, 100);
}

TEST_F(ModelCommands, EveryFieldOfARowsParameterIsSet) {
  const SavedParam p =
      After("NewModel();" +
            Setting(1, "Wo", 1, "Value=7,FitActive=0,MinLimit=2,MaxLimit=9,MinOn=1,MaxOn=1,CoupledTo=24"))
          .At(0, 0);
  EXPECT_EQ(p.value, 7);
  EXPECT_EQ(p.adjustable, 0u);
  EXPECT_EQ(p.min, 2);
  EXPECT_EQ(p.max, 9);
  EXPECT_EQ(p.useMin, 1u);
  EXPECT_EQ(p.useMax, 1u);
  EXPECT_EQ(p.coupling, 24u);
  EXPECT_EQ(Said("SetModelParam"), "model 1 Wo = 7, fixed, not below 2, not above 9, coupled to group 24");
}

TEST_F(ModelCommands, TheValueMeetsTheOldLimitsFirstAndTheNewOnesThen) {
  const std::string limited = "NewModel();" + Setting(1, "Wo", 1, "MaxLimit=300,MaxOn=1");
  EXPECT_EQ(After(limited + Setting(1, "Wo", 1, "Value=500")).At(0, 0).value, 300);
  EXPECT_EQ(After(limited + Setting(1, "Wo", 1, "Value=500,MaxLimit=1000")).At(0, 0).value, 300);
  EXPECT_EQ(After(limited + Setting(1, "Wo", 1, "Value=500,MaxOn=0")).At(0, 0).value, 300);
  EXPECT_EQ(After(limited + Setting(1, "Wo", 1, "Value=250,MaxLimit=200")).At(0, 0).value, 200);
  EXPECT_EQ(After(limited + Setting(1, "Wo", 1, "MinLimit=150,MinOn=1")).At(0, 0).value, 150);
}

TEST_F(ModelCommands, EinfTakesValueFitActiveAndCouplingButNoLimits) {
  const SavedParam p =
      After("NewModel();" +
            Setting(1, "Einf", 1, "Value=50,FitActive=0,MinLimit=1,MaxLimit=3,MinOn=1,MaxOn=1,CoupledTo=2"))
          .epsInf;
  EXPECT_EQ(p.value, 50);
  EXPECT_EQ(p.adjustable, 0u);
  EXPECT_EQ(p.min, 0);
  EXPECT_EQ(p.max, 100);
  EXPECT_EQ(Said("SetModelParam"), "model 1 Einf = 50, fixed, coupled to group 2");
}

TEST_F(ModelCommands, EinfNeedsNoRow) {
  EXPECT_EQ(After("NewModel();SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=5);").epsInf.value, 5);
  EXPECT_EQ(After("NewModel();" + Setting(1, "Einf", 99, "Value=6")).epsInf.value, 6);
}

TEST_F(ModelCommands, JoiningAGroupIsTheLastThing) {
  const std::string pair = "NewModel();NewModel();" +
                           Setting(1, "Wp", 1, "Value=77,FitActive=0,MinLimit=5,MinOn=1,CoupledTo=3") +
                           Setting(2, "G", 1, "Value=5,FitActive=1,CoupledTo=3");
  const SavedParam joined = After(pair, 2).At(0, 2);
  EXPECT_EQ(joined.value, 77);
  EXPECT_EQ(joined.adjustable, 0u);
  EXPECT_EQ(joined.min, 5);
  EXPECT_EQ(joined.useMin, 1u);
  EXPECT_EQ(joined.coupling, 3u);
  EXPECT_EQ(joined.name, "Plasma frequency");
  EXPECT_EQ(After(pair + Setting(1, "Wp", 1, "Value=88"), 2).At(0, 2).value, 88);
  EXPECT_EQ(After(pair + Setting(2, "G", 1, "Value=99")).At(0, 1).value, 99);
}

TEST_F(ModelCommands, LeavingAGroupIsTheLastThingToo) {
  const std::string pair =
      "NewModel();NewModel();" + Setting(1, "Wp", 1, "CoupledTo=3") + Setting(2, "G", 1, "CoupledTo=3");
  const std::string leave = pair + Setting(1, "Wp", 1, "Value=6,CoupledTo=0") + Setting(1, "Wp", 1, "Value=7");
  EXPECT_EQ(After(leave).At(0, 1).value, 7);
  EXPECT_EQ(After(leave).At(0, 1).coupling, 0u);
  EXPECT_EQ(After(leave, 2).At(0, 2).value, 6);
}

TEST_F(ModelCommands, Group25IsNoGroup) {
  EXPECT_EQ(After("NewModel();" + Setting(1, "Wp", 1, "CoupledTo=25")).At(0, 1).coupling, 0u);
  EXPECT_EQ(After("NewModel();" + Setting(1, "Wp", 1, "CoupledTo=-1")).At(0, 1).coupling, 0u);
}

TEST_F(ModelCommands, CopyingTakesTheWholeRecord) {
  const SavedParam p =
      After("NewModel();NewModel();" +
                Setting(1, "Wo", 1, "Value=444,FitActive=0,MinLimit=1,MaxLimit=500,MinOn=1,MaxOn=1,CoupledTo=4") +
                "CopyModelParam(DestModelNo=2,DestParamName=\"g\",DestLorNo=1,SourceModelNo=1,"
                "SourceParamName=\"WO\",SourceLorNo=1);",
            2)
          .At(0, 2);
  EXPECT_EQ(p.value, 444);
  EXPECT_EQ(p.adjustable, 0u);
  EXPECT_EQ(p.min, 1);
  EXPECT_EQ(p.max, 500);
  EXPECT_EQ(p.useMin, 1u);
  EXPECT_EQ(p.useMax, 1u);
  EXPECT_EQ(p.coupling, 4u);
  EXPECT_EQ(p.name, "TO frequency");
}

TEST_F(ModelCommands, EinfIsCopiedWithoutRows) {
  EXPECT_EQ(After("NewModel();" + Setting(1, "Einf", 1, "Value=9") +
                  "CopyModelParam(DestModelNo=1,DestParamName=\"Wp\",DestLorNo=1,SourceModelNo=1,"
                  "SourceParamName=\"Einf\");")
                .At(0, 1)
                .value,
            9);
}

TEST_F(ModelCommands, CopyingNeedsBothEnds) {
  const struct {
    const char* items;
    const char* said;
  } kCases[] = {
      {"DestParamName=\"Einf\",SourceModelNo=1,SourceParamName=\"Einf\"", "DestModelNo is missing"},
      {"DestModelNo=1,SourceModelNo=1,SourceParamName=\"Einf\"", "DestParamName is missing"},
      {"DestModelNo=1,DestParamName=\"Einf\",SourceParamName=\"Einf\"", "SourceModelNo is missing"},
      {"DestModelNo=1,DestParamName=\"Einf\",SourceModelNo=1", "SourceParamName is missing"},
      {"DestModelNo=2,DestParamName=\"Einf\",SourceModelNo=1,SourceParamName=\"Einf\"", "model 2 does not exist"},
      {"DestModelNo=1,DestParamName=\"Einf\",SourceModelNo=3,SourceParamName=\"Einf\"", "model 3 does not exist"},
      {"DestModelNo=1,DestParamName=\"Wo\",SourceModelNo=1,SourceParamName=\"Einf\"", "DestLorNo is missing"},
      {"DestModelNo=1,DestParamName=\"Einf\",SourceModelNo=1,SourceParamName=\"G\"", "SourceLorNo is missing"},
      {"DestModelNo=1,DestParamName=\"Wo\",DestLorNo=2,SourceModelNo=1,SourceParamName=\"Einf\"",
       "model 1 has no row 2"},
      {"DestModelNo=1,DestParamName=\"X\",SourceModelNo=1,SourceParamName=\"Einf\"",
       "'X' is not one of Einf, Wo, Wp, G"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(SaidLast("NewModel();CopyModelParam(" + std::string(c.items) + ");"),
              "nothing done: " + std::string(c.said));
  }
}

TEST_F(ModelCommands, FixingAllClearsEveryFlag) {
  const SavedModel model = After("NewModel();InsertModelRow(ModelNo=1);FixAllModelParams(ModelNo=1);");
  EXPECT_EQ(model.epsInf.adjustable, 0u);
  ASSERT_EQ(model.elements.size(), 6u);
  for (const SavedParam& p : model.elements) EXPECT_EQ(p.adjustable, 0u);
}

TEST_F(ModelCommands, FixingAllGoesByThePlaceInTheTableAndNotByTheNumber) {
  // Model 3 takes the free place of model 1.
  const std::string three = "NewModel();NewModel();CloseModel(ModelNo=1);NewModel();";
  const SavedModel fixed = After(three + "FixAllModelParams(ModelNo=1);", 3);
  EXPECT_EQ(Said("FixAllModelParams"), "all parameters of model 3 fixed");
  EXPECT_EQ(fixed.epsInf.adjustable, 0u);
  EXPECT_EQ(After(three + "FixAllModelParams(ModelNo=3);", 3).epsInf.adjustable, 1u);
  EXPECT_EQ(Said("FixAllModelParams"), "nothing done: place 3 of the model table is empty");
  EXPECT_EQ(SaidLast("FixAllModelParams();"), "nothing done: ModelNo is missing");
  for (const char* const place : {"0", "-1", "101", "100"}) {
    EXPECT_EQ(SaidLast("NewModel();FixAllModelParams(ModelNo=" + std::string(place) + ");"),
              "nothing done: place " + std::string(place) + " of the model table is empty");
  }
}

TEST_F(ModelCommands, TheHundredAndFirstModelIsRefusedAndNumbersAreNeverUsedAgain) {
  std::string macro;
  for (int i = 0; i < 101; ++i) macro += "NewModel();\n";
  Run(macro + "CloseModel(ModelNo=50);NewModel();FixAllModelParams(ModelNo=50);NewModel();");
  const auto said = EverySaid("NewModel");
  ASSERT_EQ(said.size(), 103u);
  EXPECT_EQ(said[99], "model 100 created");
  EXPECT_EQ(said[100], "nothing done: the limit of 100 models is reached");
  EXPECT_EQ(said[101], "model 101 created");
  EXPECT_EQ(Said("FixAllModelParams"), "all parameters of model 101 fixed");  // in the freed place
  EXPECT_EQ(said[102], "nothing done: the limit of 100 models is reached");
}

TEST_F(ModelCommands, ValuesBeyondAllBoundsAreHeldAt1e70) {
  EXPECT_EQ(After("NewModel();" + Setting(1, "Wo", 1, "Value=1e71")).At(0, 0).value, 1e70);
  EXPECT_EQ(After("NewModel();" + Setting(1, "Wo", 1, "Value=-1e99")).At(0, 0).value, -1e70);
}

}  // namespace
}  // namespace kalvex

// The effects of commands on windows and on notifications of the session. No file shows them.
#include <utility>

#include "macro/executing.h"

namespace kalvex {
namespace {

TEST_F(Executing, TheMainWindowMovesIfBothPlacesAreGiven) {
  desk.mainWindow = {1, 2, 300, 200, "Kalvex"};
  Run("MainWindow(XPos=5,Width=7,Height=8);MainWindow(YPos=6,Width=7);MainWindow(Width=7);MainWindow();");
  EXPECT_EQ(desk.mainWindow.x, 1);
  EXPECT_EQ(desk.mainWindow.y, 2);
  EXPECT_EQ(desk.mainWindow.width, 300);
  EXPECT_EQ(desk.mainWindow.height, 200);
  Run("MainWindow(XPos=5,YPos=6);");
  EXPECT_EQ(desk.mainWindow.x, 5);
  EXPECT_EQ(desk.mainWindow.y, 6);
  EXPECT_EQ(desk.mainWindow.width, 300);
  Run("MainWindow(XPos=5,YPos=6,Width=700);");
  EXPECT_EQ(desk.mainWindow.width, 700);
  EXPECT_EQ(desk.mainWindow.height, 200);
  Run("MainWindow(XPos=5,YPos=6,Height=400);");
  EXPECT_EQ(desk.mainWindow.width, 700);
  EXPECT_EQ(desk.mainWindow.height, 400);
}

TEST_F(Executing, TheTitleFollowsTheProgramsName) {
  Run("MainWindow(Title=\"of Anna\");");
  EXPECT_EQ(desk.mainWindow.title, "Kalvex of Anna");
  Run("MainWindow(XPos=1,YPos=1);");
  EXPECT_EQ(desk.mainWindow.title, "Kalvex of Anna");
  Run("MainWindow(Title=\" \");");
  EXPECT_EQ(desk.mainWindow.title, "Kalvex  ");
  Run("MainWindow(Title=\"\");");
  EXPECT_EQ(desk.mainWindow.title, "Kalvex");
}

TEST_F(Executing, NewModelPlacesItsWindowIfBothPlacesAreGiven) {
  Run("NewModel();NewModel(XPos=5,Width=7);NewModel(XPos=5,YPos=6);NewModel(XPos=5,YPos=6,Width=7,Height=8);");
  const ModelWindow& untouched = desk.models.at(1);
  EXPECT_EQ(untouched.x, 50);
  EXPECT_EQ(untouched.y, 100);
  EXPECT_EQ(untouched.width, 293);
  EXPECT_EQ(untouched.height, 250);
  EXPECT_EQ(desk.models.at(2).x, 50);
  EXPECT_EQ(desk.models.at(2).width, 293);
  EXPECT_EQ(desk.models.at(3).x, 5);
  EXPECT_EQ(desk.models.at(3).y, 6);
  EXPECT_EQ(desk.models.at(3).height, 250);
  EXPECT_EQ(desk.models.at(4).width, 7);
  EXPECT_EQ(desk.models.at(4).height, 8);
}

TEST_F(Executing, TheVariationalPanelIsShownForExactlyOne) {
  Run("NewModel();NewModel(VarDielFuncSeen=1);NewModel(VarDielFuncSeen=0);NewModel(VarDielFuncSeen=2);");
  EXPECT_FALSE(desk.models.at(1).vdfShown);
  EXPECT_TRUE(desk.models.at(2).vdfShown);
  EXPECT_FALSE(desk.models.at(3).vdfShown);
  EXPECT_FALSE(desk.models.at(4).vdfShown);
}

TEST_F(Executing, TheOtherWindowsOpenAndMoveIfBothPlacesAreGiven) {
  EXPECT_FALSE(desk.datasetManager.open || desk.expParams.open || desk.fitWindow.open);
  Run("DatasetManager(XPos=3);ExpParams(YPos=4);WindowFit(XPos=5);");
  EXPECT_TRUE(desk.datasetManager.open && desk.expParams.open && desk.fitWindow.open);
  EXPECT_EQ(desk.datasetManager.x, DatasetManager{}.x);
  EXPECT_EQ(desk.expParams.x, 400);
  EXPECT_EQ(desk.expParams.y, 300);
  EXPECT_EQ(desk.fitWindow.x, FitWindow{}.x);
  Run("DatasetManager(XPos=3,YPos=4);ExpParams(XPos=5,YPos=6);WindowFit(XPos=7,YPos=8);");
  EXPECT_EQ(std::pair(desk.datasetManager.x, desk.datasetManager.y), std::pair(3, 4));
  EXPECT_EQ(std::pair(desk.expParams.x, desk.expParams.y), std::pair(5, 6));
  EXPECT_EQ(std::pair(desk.fitWindow.x, desk.fitWindow.y), std::pair(7, 8));
}

// Records the notifications of the session.
class Notified : public Executing, protected SessionListener {
 protected:
  Notified() {
    Run("NewModel();NewModel();");
    session.Listen(*this);
  }
  ~Notified() override { session.StopListening(*this); }
  void Changed(const Change& change) override { told.push_back(change); }
  std::vector<std::uint32_t> IdsOf(ChangeKind kind) const {
    std::vector<std::uint32_t> ids;
    for (const Change& change : told) {
      if (change.kind == kind) ids.push_back(change.id);
    }
    return ids;
  }
  std::vector<std::uint32_t> ModelsChanged() const { return IdsOf(ChangeKind::kModelChanged); }
  std::vector<Change> told;
};
using Ids = std::vector<std::uint32_t>;

TEST_F(Notified, SettingAParameterTellsItsModelUnlessUpdateIsZero) {
  Run("SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=5);");
  EXPECT_EQ(ModelsChanged(), Ids{1});
  told.clear();
  Run("SetModelParam(ModelNo=2,ParamName=\"Einf\",Value=5,Update=1);");
  EXPECT_EQ(ModelsChanged(), Ids{2});
  told.clear();
  Run("SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=6,Update=0);");
  EXPECT_EQ(ModelsChanged(), Ids{});
  EXPECT_EQ(Cell(ModelNo(1), 0, Wp).value, 6);
}

TEST_F(Notified, WhatCouplingChangedIsToldThoughUpdateIsZeroAndTheGroupIsLeft) {
  Run("SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,CoupledTo=3);"
      "SetModelParam(ModelNo=2,ParamName=\"G\",LorNo=1,CoupledTo=3);");
  told.clear();
  Run("SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=5,CoupledTo=0,Update=0);");
  EXPECT_EQ(ModelsChanged(), (Ids{1, 2}));
  EXPECT_EQ(Cell(ModelNo(1), 0, Wp).coupling, 0u);
  EXPECT_EQ(Cell(ModelNo(2), 0, G).value, 5);
}

TEST_F(Notified, SettingAnExperimentalParameterIsToldAfterJoiningTheGroup) {
  Run("SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=44,CoupledTo=3);");
  told.clear();
  Run("SetExpParam(ParamName=\"Angle of\",Value=20,CoupledTo=3);");
  ASSERT_EQ(told.size(), 1u);
  EXPECT_EQ(told[0].kind, ChangeKind::kExpParams);
  EXPECT_EQ(params.ExpParams[kAngleOfIncidence].value, 44);
}

TEST_F(Notified, FixingAndCopyingTellTheModelThatChanged) {
  Run("FixAllModelParams(ModelNo=2);");
  EXPECT_EQ(ModelsChanged(), Ids{2});
  told.clear();
  Run("CopyModelParam(DestModelNo=2,DestParamName=\"Einf\",SourceModelNo=1,SourceParamName=\"Einf\");");
  EXPECT_EQ(ModelsChanged(), Ids{2});
}

TEST_F(Notified, LoadingAModelTellsItsRows) {
  Run("SaveModel(ModelNo=1,File=\"m.kvm\");LoadModel(ModelNo=2,File=\"m.kvm\");");
  EXPECT_EQ(IdsOf(ChangeKind::kModelLoaded), Ids{2});
  EXPECT_EQ(IdsOf(ChangeKind::kModelRows), Ids{2});
}

TEST_F(Notified, WhatDoesNothingTellsNothing) {
  Run("SetModelParam(ModelNo=7,ParamName=\"Wp\",LorNo=1,Value=5);SetModelParam(ModelNo=1,ParamName=\"Wx\",Value=5);"
      "SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=2,Value=5);"
      "CopyModelParam(DestModelNo=1);FixAllModelParams(ModelNo=9);LoadModel(ModelNo=1,File=\"none\");"
      "SetExpParam(ParamName=\"x\",Value=5);CloseModel(ModelNo=9);RemoveModelRow(ModelNo=1,LorNo=2);");
  EXPECT_TRUE(told.empty());
}

TEST_F(Executing, EachFitOptionThatIsGivenIsSetAndNoOther) {
  const FitOptions defaults;
  const auto differences = [&] {
    const FitOptions& o = fit.options;
    std::string names;
    const auto note = [&](bool differs, const char* name) { names += differs ? name : ""; };
    note(o.StopOnIterations != defaults.StopOnIterations, "StopOnIterations");
    note(o.MaxIterations != defaults.MaxIterations, "MaxIterations");
    note(o.StopOnTime != defaults.StopOnTime, "StopOnTime");
    note(o.MaxSeconds != defaults.MaxSeconds, "MaxSeconds");
    note(o.StopOnReduction != defaults.StopOnReduction, "StopOnReduction");
    note(o.ReductionIterations != defaults.ReductionIterations, "ReductionIterations");
    note(o.ReductionAmount != defaults.ReductionAmount, "ReductionAmount");
    note(o.StopOnLambda != defaults.StopOnLambda, "StopOnLambda");
    note(o.MaxLambda != defaults.MaxLambda, "MaxLambda");
    note(o.InitialLambda != defaults.InitialLambda, "InitialLambda");
    note(o.CalcConfidence != defaults.CalcConfidence, "CalcConfidence");
    note(o.DeltaChiSq != defaults.DeltaChiSq, "DeltaChiSq");
    note(o.LogFit != defaults.LogFit, "LogFit");
    return names;
  };
  for (const auto& [name, value] : {std::pair{"StopOnIterations", "2"},
                                    {"MaxIterations", "7"},
                                    {"StopOnTime", "1"},
                                    {"MaxSeconds", "8"},
                                    {"StopOnReduction", "0"},
                                    {"ReductionIterations", "9"},
                                    {"ReductionAmount", "0.5"},
                                    {"StopOnLambda", "0"},
                                    {"MaxLambda", "1e9"},
                                    {"InitialLambda", "0.25"},
                                    {"CalcConfidence", "1"},
                                    {"DeltaChiSq", "1.5"},
                                    {"LogFit", "-1"}}) {
    fit.options = defaults;
    Run("FitOptions(" + std::string(name) + '=' + value + ");");
    EXPECT_EQ(differences(), name);
  }
  fit.options = defaults;
  Run("FitOptions();");
  EXPECT_EQ(differences(), "");
  Run("FitOptions(MaxIterations=7,MaxSeconds=8,ReductionIterations=9,ReductionAmount=0.5,MaxLambda=1e9,"
      "InitialLambda=0.25,DeltaChiSq=1.5);");
  const FitOptions& o = fit.options;
  EXPECT_EQ(o.MaxIterations, 7);
  EXPECT_EQ(o.MaxSeconds, 8);
  EXPECT_EQ(o.ReductionIterations, 9);
  EXPECT_EQ(o.ReductionAmount, 0.5);
  EXPECT_EQ(o.MaxLambda, 1e9);
  EXPECT_EQ(o.InitialLambda, 0.25);
  EXPECT_EQ(o.DeltaChiSq, 1.5);
}

}  // namespace
}  // namespace kalvex

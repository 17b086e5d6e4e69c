// StepBack and StepForward: each statement is one step of the history.
#include "macro/executing.h"

namespace kalvex {
namespace {

class Steps : public Executing {
 protected:
  double Wp() { return Cell(ModelNo(1), 0, kalvex::Wp).value; }
};

TEST_F(Steps, EachStatementIsTakenBackByItself) {
  const std::string set = "SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=";
  Run("NewModel();" + set + "5);" + set + "6);" + set + "7);");
  EXPECT_EQ(Wp(), 7);
  Run("StepBack();");
  EXPECT_EQ(Wp(), 6);
  Run("StepBack();StepBack();StepForward();");
  EXPECT_EQ(Wp(), 5);
  Run("StepForward();StepForward();StepForward();");
  EXPECT_EQ(Wp(), 7);
  Run("StepBack();StepBack();StepBack();StepBack();StepBack();");
  EXPECT_EQ(Models(), 0);
}

TEST_F(Steps, AStatementThatDoesNothingIsNoStep) {
  Run("NewModel();SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=9,Value=5);CloseModel(ModelNo=2);StepBack();");
  EXPECT_EQ(Models(), 0);
}

TEST_F(Steps, AStepForwardIsLostOnceSomethingElseIsDone) {
  Run("NewModel();NewModel();StepBack();NewGraph();StepForward();");
  EXPECT_EQ(Models(), 1);
}

TEST_F(Steps, AFitIsTakenBackWithItsValues) {
  folder.Write("R.dat", "100 0.3\n200 0.4\n300 0.2\n400 0.1\n500 0.15\n");
  Run("LoadDataset(MasterFile=\"R.dat\");NewModel();WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);");
  const double before = Wp(), chiSq = fit.TotalChiSq;
  Run("Fit();");
  ASSERT_NE(Wp(), before);
  const double after = Wp();
  Run("StepBack();");
  EXPECT_EQ(Wp(), before);
  EXPECT_EQ(fit.TotalChiSq, chiSq);
  Run("StepForward();");
  EXPECT_EQ(Wp(), after);
}

TEST_F(Steps, AMacroThatEndsTheProgramKeepsStepsOnlyIfItStepsBack) {
  desk.macro.endsProgram = true;
  Run("NewModel();NewModel();StepBac();StepForward();StepBack();");
  EXPECT_EQ(Models(), 1);
  Run("NewModel();");
  EXPECT_EQ(Models(), 2);
  EXPECT_EQ(session.GetHistory().Bytes(), 0u);
  EXPECT_TRUE(session.GetHistory().LabelsBack().empty());
}

TEST_F(Steps, VerboseSaysWhichStep) {
  desk.macro.verbose = true;
  testing::internal::CaptureStderr();
  Run("NewModel();\nStepBack();\nStepBack();\nStepForward();\nStepForward();\n");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "m.kvs:1: NewModel: model 1 created\n"
            "m.kvs:2: StepBack: undone: new model\n"
            "m.kvs:3: StepBack: nothing done: there is no step to undo\n"
            "m.kvs:4: StepForward: redone: new model\n"
            "m.kvs:5: StepForward: nothing done: there is no step to redo\n");
}

TEST_F(Steps, AMacroBeginsAtItsLevelAndTheLevelBeforeReturns) {
  ASSERT_TRUE(session.SetDefaults(Defaults::kPresent).Ok());
  int methodInside = 0;
  onPump = [&] { methodInside = fit.options.Method; };
  Run("FitOptions(MaxIterations=7);Wait();");
  EXPECT_EQ(methodInside, 1);
  EXPECT_EQ(fit.options, [] {
    FitOptions options = WithDefaults({}, Defaults::kPresent);
    options.MaxIterations = 7;
    return options;
  }());
  Run("Defaults(Level=2);Wait();");
  EXPECT_EQ(methodInside, 2);
  ASSERT_TRUE(session.SetDefaults(Defaults::kFormer).Ok());
  desk.macro.defaults = Defaults::kPresent;
  Run("Wait();");
  EXPECT_EQ(methodInside, 2);
  EXPECT_EQ(fit.options.Method, 1);
}

TEST(NewSessions, BeginWithTheDefaultsOfToday) {
  TestPlatform platform;
  const Session session(platform);
  EXPECT_EQ(session.Fit().options, WithDefaults({}, Defaults::kPresent));
  EXPECT_EQ(session.Fit().options.Method, 2);
}

}  // namespace
}  // namespace kalvex

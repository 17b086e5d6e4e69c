// The two levels of defaults, through the real program. Reference values of fits come from independent programs.
#include <cmath>
#include <string>
#include <vector>

#include "app/fit_data.h"
#include "app/saved_model.h"
#include "core/files.h"

namespace kalvex {
namespace {

// The digits with which the references are given.
constexpr double kOfReferences = 1e-5;

std::string Example(const std::string& file) { return ProjectFile("examples/" + file); }
std::string Load(int slot, const std::string& file, const std::string& more = "") {
  return "LoadDataset(DatasetNo=" + std::to_string(slot) + ",MasterFile=\"" + file + '"' + more + ");\n";
}

class Levels : public Kalvex {
 protected:
  ProgramRun AtLevel(int level, const std::string& macro, bool verbose = false) {
    folder.Write("m.kvs", macro);
    std::vector<std::string> arguments = {"--headless", "--defaults", std::to_string(level), "m.kvs"};
    if (verbose) arguments.insert(arguments.begin(), "--verbose");
    return RunProgram(folder, arguments);
  }
  double ChiSqAt(int level, const std::string& macro) {
    const ProgramRun ran = AtLevel(level, macro + "SaveModel(ModelNo=1,File=\"end.kvm\");");
    EXPECT_EQ(ran.status, 0) << ran.err;
    return ChiSqIn("end.asc");
  }

  // One oscillator for GaAs, whose frequency has a limit above the true one.
  const std::string atALimit = Load(1, Example("gaas/R_gaas.dat")) + "NewModel();\n" +
                               Setting(1, "Einf", 1, "Value=9") + Setting(1, "Wp", 1, "Value=350") +
                               Setting(1, "G", 1, "Value=5,MinLimit=0,MinOn=1");
  static std::string StartAt(double wo) {
    return Setting(1, "Wo", 1, "Value=" + std::to_string(wo) + ",MinLimit=272,MinOn=1");
  }
  const std::string fit = "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit();\n";
};

TEST_F(Levels, AtTheSecondAFitReachesTheMinimumOnALimitFromInsideFromItAndFromOutside) {
  for (const double start : {280.0, 272.0, 250.0}) {
    EXPECT_NEAR(ChiSqAt(2, atALimit + StartAt(start) + fit), 12498.57, 1) << start;
    const SavedModel model = SavedModelOf(folder.Read("end.kvm"));
    EXPECT_EQ(model.At(0, 0).value, 272);
    EXPECT_NE(folder.Read("end.asc").find("not determined"), std::string::npos);
  }
  EXPECT_NE(AtLevel(2, atALimit + StartAt(250) + fit).err.find("250 was outside of the limits and became 272"),
            std::string::npos);
  EXPECT_NE(
      AtLevel(2, atALimit + StartAt(280) + fit).err.find("on a limit, beyond which ChiSq would fall: model 1 row 1 Wo"),
      std::string::npos);
}

TEST_F(Levels, AtTheFirstAFitThatEndsAwayFromAMinimumSaysSo) {
  const ProgramRun ran = AtLevel(1, atALimit + StartAt(280) + fit);
  EXPECT_EQ(ran.status, 0);
  EXPECT_NE(ran.err.find("the fit ended away from a minimum, ChiSq no longer falls"), std::string::npos) << ran.err;
}

TEST_F(Levels, AFitThatMeetsSumsThatAreNotFiniteStepsBackAndFindsTheMinimum) {
  const auto row = [](int number, const char* wo, const char* wp, const char* g) {
    return std::string(number > 1 ? "InsertModelRow(ModelNo=1);" : "") + Setting(1, "Wo", number, wo) +
           Setting(1, "Wp", number, wp) + Setting(1, "G", number, g);
  };
  const std::string macro = Load(1, Example("silica/R_sio2.dat"), ",YErrMethod=3,YErrVal=0.01") + "NewModel();" +
                            row(1, "Value=1065", "Value=800", "Value=50") +
                            row(2, "Value=-200,FitActive=0", "Value=50", "Value=50") +
                            row(3, "Value=-201,FitActive=0", "Value=10", "Value=1") + fit;
  EXPECT_NEAR(ChiSqAt(2, macro), 828.87, 0.1);
  const ProgramRun former = AtLevel(1, macro);
  EXPECT_NE(former.err.find("ChiSq is not finite"), std::string::npos) << former.err;
}

TEST_F(Levels, AtTheSecondInvalidPointsAreLeftOutAndCounted) {
  std::string data;
  for (int x = 40; x <= 300; x += 2) {
    const bool isBad = x == 100 || x == 200 || x == 300;
    data +=
        std::to_string(x) + ' ' + std::to_string(ReflectivityOf(EpsOf(kTrueMode, x))) + (isBad ? " 0\n" : " 0.001\n");
  }
  folder.Write("R.dat", data);
  const std::string macro = Load(1, "R.dat") + OscillatorModel({3, 115, 230, 10}) + fit;
  const ProgramRun ran = AtLevel(2, macro + "SaveModel(ModelNo=1,File=\"end.kvm\");");
  EXPECT_EQ(ran.status, 0);
  EXPECT_NE(ran.err.find("3 points are left out"), std::string::npos) << ran.err;
  EXPECT_CLOSE(SavedModelOf(folder.Read("end.kvm")).At(0, 0).value, kTrueMode.wo, kOfReferences);
}

// Psi and Delta of a film of 1.2 um on silicon at three angles. Delta crosses 360 degrees.
TEST_F(Levels, AtTheSecondAnglesAreComparedModuloTheirPeriod) {
  for (const char* const name : {"Psi55", "Psi65", "Psi75", "Del55", "Del65", "Del75"}) {
    std::string data;
    const std::string file = std::string(name) + ".dat";
    ASSERT_TRUE(ReadWholeFile(ProjectFile("tests/data/three_angles/" + file), data));
    folder.Write(file, data);
  }
  std::string macro;
  ASSERT_TRUE(ReadWholeFile(ProjectFile("tests/data/three_angles/fit.kvs"), macro));
  ASSERT_EQ(AtLevel(2, macro).status, 0);
  EXPECT_NEAR(ChiSqIn("st.asc"), 1767.6, 1);
  EXPECT_CLOSE(SavedModelOf(folder.Read("st.kvm")).At(1, 1).value, 1.19996e-4, kOfReferences);
  ASSERT_EQ(AtLevel(1, macro).status, 0);
  EXPECT_GT(ChiSqIn("st.asc"), 1e6);
}

TEST_F(Levels, TwoEqualRowsAreNamedAsNotDeterminedAndTheRestHasItsErrors) {
  const std::string macro = Load(1, Example("gaas/R_gaas.dat")) + "NewModel();InsertModelRow(ModelNo=1);\n" +
                            Setting(1, "Wo", 1, "Value=268.095,FitActive=0") +
                            Setting(1, "G", 1, "Value=2.28,FitActive=0") + Setting(1, "Wp", 1, "Value=240") +
                            Setting(1, "Wo", 2, "Value=268.095,FitActive=0") +
                            Setting(1, "G", 2, "Value=2.28,FitActive=0") + Setting(1, "Wp", 2, "Value=260") + fit;
  const ProgramRun ran = AtLevel(2, macro + "SaveModel(ModelNo=1,File=\"end.kvm\");");
  EXPECT_NE(ran.err.find("not determined by these data: model 1 row 1 Wp up and model 1 row 2 Wp down together"),
            std::string::npos)
      << ran.err;
  const double errorOfTwo = SavedModelOf(folder.Read("end.kvm")).epsInf.error;
  // The same with one row, of which everything is determined.
  ASSERT_EQ(
      AtLevel(2, Load(1, Example("gaas/R_gaas.dat")) + "NewModel();\n" +
                     Setting(1, "Wo", 1, "Value=268.095,FitActive=0") + Setting(1, "G", 1, "Value=2.28,FitActive=0") +
                     Setting(1, "Wp", 1, "Value=360") + fit + "SaveModel(ModelNo=1,File=\"end.kvm\");")
          .status,
      0);
  EXPECT_CLOSE(errorOfTwo, SavedModelOf(folder.Read("end.kvm")).epsInf.error, 1e-6);
}

TEST_F(Levels, AtTheSecondAFitNeedsNoWindowAndZeroIterationsMakeNoStep) {
  folder.Write("R.dat", "100 0.3 0.01\n200 0.4 0.01\n300 0.2 0.01\n400 0.1 0.01\n500 0.15 0.01\n");
  const std::string macro = Load(1, "R.dat") + "NewModel();AddChiSqTerm(DatasetNo=1,ModelNo=1);";
  const ProgramRun ran = AtLevel(2, macro + "Fit(NumIters=0);", true);
  EXPECT_EQ(ran.status, 0);
  EXPECT_NE(ran.err.find("Fit: 0 iterations"), std::string::npos) << ran.err;
  EXPECT_NE(AtLevel(1, macro + "Fit();", true).err.find("the fit window is not open"), std::string::npos);
  const ProgramRun nothing = AtLevel(2, "NewModel();Fit();");
  EXPECT_EQ(nothing.status, 1);
  EXPECT_NE(nothing.err.find("no parameter to fit"), std::string::npos) << nothing.err;
}

TEST_F(Levels, AtTheSecondAnErrorEndsTheMacroWithItsPlace) {
  const std::string macro = "NewModel();\nLoadModel(ModelNo=1,File=\"missing.kvm\");\nEcho(Text=\"after\");\n";
  const ProgramRun ran = AtLevel(2, macro);
  EXPECT_EQ(ran.status, 1);
  EXPECT_EQ(ran.out, "");
  EXPECT_EQ(ran.err, "m.kvs:2: LoadModel: nothing done: 'missing.kvm' cannot be opened\n");
  const ProgramRun former = AtLevel(1, macro);
  EXPECT_EQ(former.status, 0);
  EXPECT_EQ(former.out, "after\n");
  EXPECT_EQ(former.err, "1 of 3 statements did nothing: --verbose tells which\n");
  EXPECT_EQ(AtLevel(1, "Defaults(Level=2);" + macro).status, 1);
  EXPECT_EQ(AtLevel(2, "Defaults(OnError=\"go on\");" + macro).status, 0);
}

TEST_F(Levels, OnErrorNextGoesOnWithTheNextPassAndCounts) {
  folder.Write("loop.txt", "one\ntwo\nthree\n");
  folder.Write("two.kvm", "");
  for (const char* const name : {"one", "three"}) {
    ASSERT_EQ(AtLevel(2, std::string("NewModel();SaveModel(ModelNo=1,File=\"") + name + ".kvm\");").status, 0);
  }
  const ProgramRun ran =
      AtLevel(2,
              "Defaults(Level=2,OnError=\"next\");NewModel();\nBeginLoop(LoopFile=\"loop.txt\");\n"
              "SaveModel(ModelNo=9,File=\"no/x\");\nEcho(Text=\"%1\");EndLoop();Echo(Text=\"end\");");
  EXPECT_EQ(ran.status, 3);
  EXPECT_EQ(ran.out, "end\n");
  EXPECT_NE(ran.err.find("3 of 3 passes of the loop failed"), std::string::npos) << ran.err;
  const ProgramRun outside = AtLevel(2, "Defaults(OnError=\"next\");CloseModel(ModelNo=3);Echo(Text=\"x\");");
  EXPECT_EQ(outside.status, 1);
}

// A thousand fits of many points take minutes.
TEST_F(Levels, AnInterruptEndsALoopOfFitsAndTheMacroSavesItsResults) {
  std::string passes;
  for (int i = 0; i < 1000; ++i) passes += "x\n";
  folder.Write("loop.txt", passes);
  folder.Write("m.kvs",
               Load(1, Example("gaas/R_gaas.dat"),
                    ",Quantity=\"R\",XMethod=3,XMin=100,XMax=500,XPts=200000,YErrMethod=3,YErrVal=0.01") +
                   "NewModel();WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);BeginLoop(LoopFile=\"loop.txt\");\n" +
                   Setting(1, "Wo", 1, "Value=268") + Setting(1, "Wp", 1, "Value=300") + "Fit();" +
                   "Echo(Text=\"pass\");EndLoop();SaveModel(ModelNo=1,File=\"end.kvm\");Echo(Text=\"saved\");");
  for (const char* const signal : {"INT", "TERM"}) {
    const ProgramRun ran =
        RunCopy("timeout", folder, {"--preserve-status", "-s", signal, "2", KALVEX_PROGRAM, "m.kvs"});
    EXPECT_EQ(ran.status, 1) << ran.err;
    EXPECT_LT(ran.out.size(), 900 * std::string("pass\n").size());
    EXPECT_TRUE(ran.out.ends_with("pass\nsaved\n")) << ran.out;
    EXPECT_LT(ChiSqIn("end.asc"), 1e30);
  }
}

TEST_F(Levels, ManyStartsFindTheBestMinimumAndCountTheOthers) {
  const std::string wide =
      Load(1, Example("gaas/R_gaas.dat")) + "NewModel();\n" + Setting(1, "Einf", 1, "Value=9") +
      Setting(1, "Wo", 1, "Value=440,MinLimit=150,MaxLimit=450,MinOn=1,MaxOn=1") + Setting(1, "Wp", 1, "Value=350") +
      Setting(1, "G", 1, "Value=50,MinLimit=0,MaxLimit=100,MinOn=1,MaxOn=1") + "AddChiSqTerm(DatasetNo=1,ModelNo=1);";
  const ProgramRun ran = AtLevel(2, wide + "Fit(Starts=50,Seed=3);SaveModel(ModelNo=1,File=\"end.kvm\");", true);
  EXPECT_EQ(ran.status, 0) << ran.err;
  EXPECT_NEAR(ChiSqIn("end.asc"), 30.12, 0.01);
  EXPECT_NE(ran.err.find("Fit: 50 starts: ChiSq 30.11"), std::string::npos) << ran.err;
  EXPECT_NE(AtLevel(1, wide + "WindowFit();Fit(Starts=2);", true).err.find("many starts need the bounded fit"),
            std::string::npos);
  EXPECT_EQ(AtLevel(2, wide + "Fit(Starts=0);").status, 1);
  EXPECT_EQ(AtLevel(2, wide + "Fit(Starts=1000001);").status, 1);
}

TEST_F(Levels, ResidualsAddUpToChiSqAndHoldTheDataAndTheModel) {
  folder.Write("R.dat", "100 0.3 0.01\n200 0.4 0.02\n300 0.2 0.01\n400 0.1 0.01\n");
  const std::string macro =
      Load(1, "R.dat") + OscillatorModel({3, 115, 230, 10}) + "AddChiSqTerm(DatasetNo=1,ModelNo=1);";
  const ProgramRun ran = AtLevel(2, macro +
                                        "ExportResiduals(File=\"r es.dat\",DatasetNo=1,ModelNo=1);"
                                        "SaveModel(ModelNo=1,File=\"end.kvm\");");
  ASSERT_EQ(ran.status, 0) << ran.err;
  const std::string text = folder.Read("r es.dat");
  const std::size_t head = text.find('\n');
  EXPECT_EQ(text.substr(0, head), "x y sigma model residual/sigma");
  const Table rows = NumbersOf(text.substr(head));
  ASSERT_EQ(rows.size(), 4u);
  double sum = 0;
  for (const auto& row : rows) {
    EXPECT_CLOSE(row[3], ReflectivityOf(EpsOf({3, 115, 230, 10}, row[0])), kOfReferences);
    EXPECT_CLOSE(row[4], (row[3] - row[1]) / row[2], 1e-12);
    sum += row[4] * row[4];
  }
  EXPECT_EQ(rows[1][2], 0.02);
  EXPECT_CLOSE(sum, ChiSqIn("end.asc"), 1e-4);  // the summary has five digits
  EXPECT_EQ(AtLevel(2, macro + "ExportResiduals(File=\"x\",DatasetNo=2,ModelNo=1);").status, 1);
  EXPECT_EQ(AtLevel(2, macro + "ExportResiduals(File=\"no/x\",DatasetNo=1,ModelNo=1);").status, 1);
  EXPECT_EQ(AtLevel(2, macro + "ExportResiduals(DatasetNo=1,ModelNo=1);").status, 1);
}

TEST_F(Levels, AtTheSecondUndoBringsTheErrorsBackToo) {
  const std::string macro = atALimit + StartAt(280) + fit;
  ASSERT_EQ(AtLevel(2, macro + "UndoFit();SaveModel(ModelNo=1,File=\"end.kvm\");").status, 0);
  const SavedModel undone = SavedModelOf(folder.Read("end.kvm"));
  EXPECT_EQ(undone.epsInf.value, 9);
  EXPECT_EQ(undone.epsInf.error, 0);
  ASSERT_EQ(AtLevel(2, macro + "UndoFit();UndoFit();SaveModel(ModelNo=1,File=\"end.kvm\");").status, 0);
  EXPECT_GT(SavedModelOf(folder.Read("end.kvm")).epsInf.error, 0);
}

TEST_F(Levels, WrongLevelsAreRefused) {
  EXPECT_NE(AtLevel(1, "Defaults(Level=3);", true).err.find("Level should be 1 or 2"), std::string::npos);
  EXPECT_NE(AtLevel(1, "Defaults();", true).err.find("Level is missing"), std::string::npos);
  EXPECT_NE(AtLevel(1, "Defaults(OnError=\"never\");", true).err.find("OnError should be"), std::string::npos);
  EXPECT_NE(AtLevel(1, "FitOptions(Method=3);", true).err.find("Method should be 1"), std::string::npos);
  folder.Write("m.kvs", "");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"--defaults", "3", "m.kvs"}, {"--defaults"}}) {
    EXPECT_EQ(RunProgram(folder, arguments).status, 2);
  }
}

}  // namespace
}  // namespace kalvex

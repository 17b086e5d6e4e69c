// The real program on real macro files: the command line, what macros write, and what is said of each statement.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdlib>

#include "support/run_program.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using Table = std::vector<std::vector<double>>;

double Reflectivity(double w, double epsInf, double wo, double wp, double g) {
  const std::complex<double> eps = epsInf + wp * wp / std::complex<double>(wo * wo - w * w, -w * g);
  return std::norm((1.0 - std::sqrt(eps)) / (1.0 + std::sqrt(eps)));
}

class Kalvex : public testing::Test {
 protected:
  ProgramRun Run(const std::string& macro) {
    run = RunMacroText(folder, macro);
    return run;
  }
  // What verbose output says of the statement of that name.
  std::string Said(const std::string& command) const {
    const std::size_t at = run.err.rfind(": " + command + ": ");
    if (at == std::string::npos) return "";
    const std::size_t start = at + command.size() + 4;
    return run.err.substr(start, run.err.find('\n', start) - start);
  }
  Table Written(const std::string& name) const { return NumbersOf(folder.Read(name)); }

  ScratchFolder folder;
  ProgramRun run;
};

TEST_F(Kalvex, OptionsAndExitStatuses) {
  folder.Write("good one.kvs", "NewModel();\n");
  folder.Write("bad.kvs", "ExportModelCurve(File=\"x\");\n  NewModel(Foo=1);\n");
  EXPECT_EQ(RunProgram(folder, {"good one.kvs"}).status, 0);
  EXPECT_EQ(RunProgram(folder, {"--headless", "--threads", "2", "--progress", "good one.kvs"}).status, 0);
  EXPECT_EQ(RunProgram(folder, {"--check", "good one.kvs"}).status, 0);
  EXPECT_EQ(RunProgram(folder, {"\"good one.kvs\""}).status, 0);
  EXPECT_EQ(RunProgram(folder, {}).status, 0);
  const ProgramRun bad = RunProgram(folder, {"bad.kvs"});
  EXPECT_EQ(bad.status, 1);
  EXPECT_EQ(bad.out, "");
  EXPECT_EQ(bad.err,
            "bad.kvs:2:12: unknown parameter 'Foo' of NewModel, one of XPos, YPos, Width, Height, VarDielFuncSeen was "
            "expected\n");
  EXPECT_EQ(RunProgram(folder, {"--check", "bad.kvs"}).status, 1);
  EXPECT_EQ(RunProgram(folder, {"none.kvs"}).status, 1);
  EXPECT_EQ(RunProgram(folder, {folder.Name()}).status, 1);
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--frobnicate"},
                                                {"--threads"},
                                                {"--threads", "0"},
                                                {"--threads", "x"},
                                                {"a.kvs", "b.kvs"},
                                                {"--check"}}) {
    const ProgramRun refused = RunProgram(folder, wrong);
    EXPECT_EQ(refused.status, 2) << wrong[0];
    EXPECT_NE(refused.err.find("usage:"), std::string::npos);
  }
  EXPECT_NE(RunProgram(folder, {"--help"}).out.find("--verbose"), std::string::npos);
  EXPECT_EQ(RunProgram(folder, {"--version"}).out.substr(0, 7), "Kalvex ");
}

TEST_F(Kalvex, QuittingIsStatusZeroToo) { EXPECT_EQ(Run("Exit(QuitApp=1);Foo").status, 0); }

TEST_F(Kalvex, CheckingRunsNothing) {
  folder.Write("m.kvs", "Echo(Text=\"hello\");");
  EXPECT_EQ(RunProgram(folder, {"--check", "m.kvs"}).out, "");
  EXPECT_EQ(RunProgram(folder, {"m.kvs"}).out, "hello\n");
}

TEST_F(Kalvex, AComputedCurveIsTheFormula) {
  Run("NewModel();SetModelParam(ModelNo=1,ParamName=\"einf\",Value=4);SetModelParam(ModelNo=1,ParamName=\"wo\",LorNo=1,"
      "Value=120);"
      "SetModelParam(ModelNo=1,ParamName=\"wp\",LorNo=1,Value=250);SetModelParam(ModelNo=1,ParamName=\"g\",LorNo=1,"
      "Value=8);"
      "ExportModelCurve(File=\"lin.dat\",ModelNo=1,Quantity=\"r\",XMin=50,XMax=250,XPts=5);"
      "ExportModelCurve(File=\"log.dat\",ModelNo=1,Quantity=\"R\",XMin=10,XMax=1000,XPts=3,XGrid=2);"
      "ExportModelCurve(File=\"one.dat\",ModelNo=1,Quantity=\"R\",XMin=50,XMax=250,XPts=1);"
      "ExportModelCurve(File=\"slope.dat\",ModelNo=1,Quantity=\"E2\",XMin=10,XMax=1000,XPts=3,XGrid=2,Deriv=1);");
  const Table linear = Written("lin.dat");
  ASSERT_EQ(linear.size(), 5u);
  for (std::size_t i = 0; i < linear.size(); ++i) {
    EXPECT_EQ(linear[i][0], 50 + 50.0 * static_cast<double>(i));
    EXPECT_NEAR(linear[i][1], Reflectivity(linear[i][0], 4, 120, 250, 8), 1e-6);  // six digits are written
  }
  const Table logarithmic = Written("log.dat");
  ASSERT_EQ(logarithmic.size(), 3u);
  EXPECT_NEAR(logarithmic[1][0], 100, 1e-3);
  EXPECT_NEAR(logarithmic[1][1], Reflectivity(100, 4, 120, 250, 8), 1e-6);
  EXPECT_EQ(Written("one.dat").size(), 1u);
  EXPECT_EQ(Written("slope.dat")[1].size(), 4u);
  EXPECT_EQ(Written("slope.dat")[1][2], 0);
  EXPECT_EQ(Written("slope.dat")[1][3], 1);
}

TEST_F(Kalvex, ExportsWithWrongLimitsWriteNoFileAndThoseWithoutASubjectAnEmptyOne) {
  Run("NewModel();ExportModelCurve(File=\"a\",ModelNo=1,Quantity=\"R\",XMin=5,XMax=5,XPts=3);");
  EXPECT_FALSE(folder.Has("a"));
  EXPECT_EQ(Said("ExportModelCurve"), "nothing done: XMin should be below XMax");
  for (const char* const wrong :
       {"XMin=1,XMax=5,XPts=0", "XMin=0,XMax=5,XPts=3,XGrid=2", "XMin=1,XMax=5", "XMax=5,XPts=3"}) {
    Run(std::string("NewModel();ExportModelCurve(File=\"a\",ModelNo=1,Quantity=\"R\",") + wrong + ");");
    EXPECT_FALSE(folder.Has("a")) << wrong;
    EXPECT_EQ(Said("ExportModelCurve").substr(0, 13), "nothing done:");
  }
  Run("ExportModelCurve(File=\"b\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3);");
  EXPECT_EQ(folder.Read("b"), "");
  Run("NewModel();ExportModelCurve(File=\"c\",ModelNo=1,Quantity=\"Refl\",XMin=1,XMax=5,XPts=3);");
  EXPECT_EQ(folder.Read("c"), "");
  Run("NewModel();ExportModelCurve(File=\"d\",ModelNo=1,Quantity=\"R\",XMethod=2,XMin=1,XMax=5,XPts=3);");
  EXPECT_EQ(folder.Read("d"), "");
}

TEST_F(Kalvex, SettingAParameterNeedsModelNameAndRow) {
  const struct {
    const char* macro;
    const char* said;
  } kCases[] = {
      {"SetModelParam(ParamName=\"G\",LorNo=1,Value=1);", "nothing done: ModelNo is missing"},
      {"SetModelParam(ModelNo=7,ParamName=\"G\",LorNo=1,Value=1);", "nothing done: model 7 does not exist"},
      {"SetModelParam(ModelNo=1,LorNo=1,Value=1);", "nothing done: ParamName is missing"},
      {"SetModelParam(ModelNo=1,ParamName=\"Gamma\",LorNo=1,Value=1);",
       "nothing done: 'Gamma' is none of Einf, Wo, Wp, G"},
      {"SetModelParam(ModelNo=1,ParamName=\"G\",Value=1);", "nothing done: LorNo is missing"},
      {"SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=2,Value=1);", "nothing done: model 1 has no row 2"},
      {"SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=0,Value=1);", "nothing done: model 1 has no row 0"},
      {"RemoveModelRow(ModelNo=1,LorNo=1);SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=100);",
       "nothing done: model 1 has no row 1"},
  };
  for (const auto& c : kCases) {
    Run(std::string("NewModel();") + c.macro);
    EXPECT_EQ(Said("SetModelParam"), c.said);
  }
}

TEST_F(Kalvex, LimitsTakeEffectAtOnceAndThoseOfEinfAreNotSet) {
  Run("NewModel();SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=500,MaxLimit=300,MaxOn=1);"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,MinLimit=20,MinOn=1,FitActive=0);"
      "SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=50,MaxLimit=3,MaxOn=1);SaveModel(File=\"m.kvm\");");
  EXPECT_NE(run.err.find("Wo = 300, free, not above 300"), std::string::npos);
  EXPECT_NE(run.err.find("G = 20, fixed, not below 20"), std::string::npos);
  EXPECT_NE(run.err.find("Einf = 50, free\n"), std::string::npos);
}

TEST_F(Kalvex, JoiningAGroupIsTheLastThing) {
  Run("NewModel();NewModel();SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=77,CoupledTo=3);"
      "SetModelParam(ModelNo=2,ParamName=\"G\",LorNo=1,Value=5,CoupledTo=3);"
      "SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=88);SaveModel(ModelNo=2,File=\"m.kvm\");");
  EXPECT_NE(run.err.find("model 2 G = 77, free, coupled to group 3"), std::string::npos);
  EXPECT_NE(folder.Read("m.asc").find("G [0] = 88.000000"), std::string::npos);
}

TEST_F(Kalvex, CopyingAndFixing) {
  Run("NewModel();NewModel();SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=444,FitActive=0);"
      "CopyModelParam(DestModelNo=2,DestParamName=\"einf\",SourceModelNo=1,SourceParamName=\"wo\",SourceLorNo=1);");
  EXPECT_EQ(Said("CopyModelParam"), "model 2 einf = 444, fixed");
  Run("NewModel();CopyModelParam(DestModelNo=1,DestParamName=\"Wo\",SourceModelNo=1,SourceParamName=\"Einf\");");
  EXPECT_EQ(Said("CopyModelParam"), "nothing done: DestLorNo is missing");
  // After a close, the place in the table and the number differ: model 3 stands at place 1.
  Run("NewModel();NewModel();CloseModel(ModelNo=1);NewModel();FixAllModelParams(ModelNo=1);");
  EXPECT_EQ(Said("FixAllModelParams"), "all parameters of model 3 fixed");
  Run("NewModel();FixAllModelParams(ModelNo=2);");
  EXPECT_EQ(Said("FixAllModelParams"), "nothing done: place 2 holds no model");
}

TEST_F(Kalvex, RowsAreInsertedRemovedMovedAndSorted) {
  Run("NewModel();InsertModelRow(ModelNo=1);InsertModelRow(ModelNo=1,LorNo=1);"
      "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=30);SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=2,"
      "Value=10);"
      "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=3,Value=20);SaveModel(File=\"a.kvm\");"
      "MoveModelRow(ModelNo=1,LorNo=3,Up=1);SaveModel(File=\"b.kvm\");MoveModelRow(ModelNo=1,LorNo=1);SaveModel(File="
      "\"c.kvm\");"
      "SortModelRows(ModelNo=1,Key=1);SaveModel(File=\"d.kvm\");RemoveModelRow(ModelNo=1,LorNo=2);SaveModel(File=\"e."
      "kvm\");");
  const auto frequencies = [&](const char* name) {
    std::vector<double> found;
    const std::string text = folder.Read(name);
    for (std::size_t at = 0; (at = text.find("Wo[", at)) != std::string::npos; ++at)
      found.push_back(std::stod(text.substr(at + 8)));
    return found;
  };
  EXPECT_EQ(frequencies("a.asc"), (std::vector<double>{30, 10, 20}));
  EXPECT_EQ(frequencies("b.asc"), (std::vector<double>{30, 20, 10}));
  EXPECT_EQ(frequencies("c.asc"), (std::vector<double>{20, 30, 10}));
  EXPECT_EQ(frequencies("d.asc"), (std::vector<double>{10, 20, 30}));
  EXPECT_EQ(frequencies("e.asc"), (std::vector<double>{10, 30}));
  Run("NewModel();SortModelRows(ModelNo=1,Key=6);");
  EXPECT_EQ(Said("SortModelRows").substr(0, 13), "nothing done:");
  Run("NewModel();RemoveModelRow(ModelNo=1,LorNo=5);");
  EXPECT_EQ(Said("RemoveModelRow"), "nothing done: model 1 has no row 5");
}

TEST_F(Kalvex, TheHundredAndFirstModelIsRefused) {
  std::string macro;
  for (int i = 0; i < 101; ++i) macro += "NewModel();";
  Run(macro + "CloseModel(ModelNo=50);NewModel();");
  EXPECT_NE(run.err.find("NewModel: nothing done: there are 100 models already"), std::string::npos);
  EXPECT_EQ(Said("NewModel"), "model 101 created");
}

TEST_F(Kalvex, ModelsSaveAndLoad) {
  Run("NewModel();SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,Value=321);SaveModel(File=\"a.kvm\");NewModel();"
      "LoadModel(ModelNo=2,File=\"a.kvm\");SaveModel(ModelNo=2,File=\"b.kvm\");LoadModel(ModelNo=2,File=\"none\");"
      "SaveModel(ModelNo=9);");
  EXPECT_EQ(folder.Read("a.kvm"), folder.Read("b.kvm"));
  EXPECT_NE(run.err.find("LoadModel: nothing done: 'none' cannot be opened or is no model file"), std::string::npos);
  EXPECT_EQ(Said("SaveModel"), "nothing done: model 9 does not exist");
}

TEST_F(Kalvex, DatasetsLoadChangeAndExport) {
  folder.Write("R_a.dat", "head\n100 1\n200 2\n300 3\n");
  Run("LoadDataset(MasterFile=\"R_a.dat\");TransformDataset(Scale=2,Shift=1);CutDataset(XMin=150,XMax=300);"
      "ExportDataset(DatasetNo=1,File=\"all.dat\");ExportDataset(DatasetNo=1,File=\"cut.dat\",ExportFitted=1,"
      "ExportErrorBars=1);"
      "SetDatasetQuantity(DatasetNo=1,Quantity=\"E1\");AddNoise(Sigma=0);ExportDataset(DatasetNo=1,File=\"noise.dat\","
      "ExportErrorBars=1);"
      "UnloadDataset();ExportDataset(DatasetNo=1,File=\"none.dat\");");
  EXPECT_EQ(folder.Read("all.dat"), "100 3\n200 5\n300 7\n");
  EXPECT_EQ(folder.Read("cut.dat"), "200 5 0.02\n300 7 0.02\n");
  EXPECT_EQ(folder.Read("noise.dat"), "100 3 0\n200 5 0\n300 7 0\n");
  EXPECT_EQ(folder.Read("none.dat"), "");
  EXPECT_EQ(Said("SetDatasetQuantity"), "dataset 1 is now E1");
  EXPECT_EQ(Said("ExportDataset"), "nothing done: dataset 1 is not loaded");
}

TEST_F(Kalvex, AFailedLoadIsShownAndTheMacroGoesOn) {
  Run("LoadDataset(MasterFile=\"none.dat\");NewModel();");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err.substr(0, run.err.find('\n')), "Error: Cannot open master file.");
  EXPECT_EQ(Said("NewModel"), "model 1 created");
  Run("LoadDataset(XMethod=3,YMethod=2);");
  EXPECT_NE(run.err.find("Error: Cannot open master file."), std::string::npos);
}

TEST_F(Kalvex, ADatasetNeedsWhatItNeeds) {
  Run("AddNoise();");
  EXPECT_EQ(Said("AddNoise"), "nothing done: Sigma is missing");
  Run("ExportDataset(File=\"x\");");
  EXPECT_EQ(Said("ExportDataset"), "nothing done: DatasetNo is missing");
  EXPECT_FALSE(folder.Has("x"));
  Run("CutDataset(DatasetNo=500,XMin=1);");
  EXPECT_EQ(Said("CutDataset"), "nothing done: dataset 500 is not loaded");
}

const char* const kFitStart =
    "LoadDataset(MasterFile=\"R.dat\",YErrMethod=3,YErrVal=0.001);NewModel();"
    "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=115);SetModelParam(ModelNo=1,ParamName=\"Wp\",LorNo=1,"
    "Value=230);";

class Fitting : public Kalvex {
 protected:
  Fitting() {
    std::string data;
    for (int x = 40; x <= 300; x += 2) {
      data += std::to_string(x) + ' ' + std::to_string(Reflectivity(x, 4, 120, 250, 8)) + '\n';
    }
    folder.Write("R.dat", data);
  }
  std::string Parameters() { return folder.Read("m.asc").substr(folder.Read("m.asc").find("Einf")); }
};

TEST_F(Fitting, TheParametersOfTheSpectrumComeBack) {
  Run(std::string(kFitStart) +
      "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit(NumIters=50);SaveModel(File=\"m.kvm\");");
  const std::string text = Parameters();
  const auto after = [&](const char* name) { return std::stod(text.substr(text.find(name) + 8)); };
  EXPECT_NEAR(std::stod(text.substr(7)), 4, 1e-3);
  EXPECT_NEAR(after("Wo[0] ="), 120, 1e-2);
  EXPECT_NEAR(after("Wp[0] ="), 250, 1e-1);
  EXPECT_NEAR(after("G [0] ="), 8, 1e-2);
  EXPECT_NE(Said("Fit").find("iterations, ChiSq"), std::string::npos);
  EXPECT_NE(Said("Fit").find("stopped:"), std::string::npos);
}

TEST_F(Fitting, WithoutItsWindowNothingHappens) {
  Run(std::string(kFitStart) +
      "AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit(NumIters=5);WindowFit();SaveModel(File=\"m.kvm\");");
  EXPECT_EQ(Said("Fit"), "nothing done: the fit window is not open, WindowFit() opens it");
  EXPECT_NE(Parameters().find("Wo[0] = 115.000000"), std::string::npos);
}

TEST_F(Fitting, NumItersHoldsForItsRunOnly) {
  Run(std::string(kFitStart) + "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit(NumIters=1);Fit();");
  EXPECT_NE(run.err.find("Fit: 1 iterations"), std::string::npos);
  EXPECT_EQ(Said("Fit").find("number of iterations"), std::string::npos);
}

TEST_F(Fitting, UndoPutsTheValuesBackAndForth) {
  const std::string fit = std::string(kFitStart) + "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit();";
  Run(fit + "UndoFit();SaveModel(File=\"m.kvm\");");
  EXPECT_NE(Parameters().find("Wo[0] = 115.000000"), std::string::npos);
  Run(fit + "UndoFit();UndoFit();SaveModel(File=\"m.kvm\");");
  EXPECT_NE(Parameters().find("Wo[0] = 120.000"), std::string::npos);
  Run(fit + "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=9);UndoFit();");
  EXPECT_EQ(Said("UndoFit"), "nothing done: there is no run to undo");
}

TEST_F(Fitting, OptionsAreTaken) {
  Run(std::string(kFitStart) +
      "FitOptions(StopOnIterations=1,MaxIterations=2,StopOnReduction=0,CalcConfidence=1,DeltaChiSq=2,LogFit=1,"
      "InitialLambda=0.01);"
      "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit();");
  EXPECT_NE(Said("Fit").find("2 iterations"), std::string::npos);
  EXPECT_TRUE(folder.Has("Params.dat"));
  EXPECT_TRUE(folder.Has("ParCorrs.dat"));
  const std::string log = folder.Read("Fitlog.dat");
  EXPECT_EQ(log.substr(0, log.find('\n')), "IterNo Time Lambda ChiSq ChiSq1 P1 Perr1 P2 Perr2 P3 Perr3 P4 Perr4 ");
  EXPECT_EQ(Written("Fitlog.dat").size(), 3u);
  EXPECT_EQ(Written("Fitlog.dat")[0][2], 0.01);
}

TEST_F(Fitting, AParameterWithoutInfluenceIsNamed) {
  Run(std::string(kFitStart) +
      "SetModelParam(ModelNo=1,ParamName=\"Wo\",LorNo=1,Value=0);WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit()"
      ";");
  EXPECT_NE(Said("Fit").find("0 iterations"), std::string::npos);
  EXPECT_NE(Said("Fit").find("without influence at their present values: model 1 row 1 Wo"), std::string::npos);
}

TEST_F(Fitting, TermsAreAddedTwiceAndDeletedByPlace) {
  Run(std::string(kFitStart) +
      "AddChiSqTerm(DatasetNo=1,ModelNo=1);AddChiSqTerm(DatasetNo=1,ModelNo=1,Weight=2);AddChiSqTerm(DatasetNo=1,"
      "ModelNo=5);"
      "AddChiSqTerm(DatasetNo=1);DeleteChiSqTerm(DatasetNo=1,ModelNo=1);DeleteChiSqTerm(DatasetNo=1,ModelNo=3);");
  EXPECT_NE(run.err.find("AddChiSqTerm: dataset 1 against model 1: 262 points"), std::string::npos);
  EXPECT_NE(run.err.find("AddChiSqTerm: nothing done: model 5 does not exist"), std::string::npos);
  EXPECT_NE(run.err.find("AddChiSqTerm: nothing done: ModelNo is missing"), std::string::npos);
  EXPECT_NE(run.err.find("DeleteChiSqTerm: removed, 1 left"), std::string::npos);
  EXPECT_EQ(Said("DeleteChiSqTerm"), "nothing done: no such term");
}

TEST_F(Fitting, ProgressIsToldWhenAskedFor) {
  folder.Write("m.kvs", std::string(kFitStart) + "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit(NumIters=2);");
  EXPECT_EQ(RunProgram(folder, {"m.kvs"}).err, "");
  const std::string told = RunProgram(folder, {"--progress", "m.kvs"}).err;
  EXPECT_NE(told.find("iteration 1: ChiSq "), std::string::npos);
  EXPECT_NE(told.find("fit: 2 iterations"), std::string::npos);
}

TEST_F(Kalvex, ExperimentalParametersGoByTheBeginningOfTheirName) {
  Run("SetExpParam(ParamName=\"angle OF\",Value=100,MaxLimit=70,MaxOn=1);");
  EXPECT_EQ(Said("SetExpParam"), "Angle of incidence = 70, fixed, not above 70");
  Run("SetExpParam(ParamName=\"Scaling factor of T\",Value=2,FitActive=1);");
  EXPECT_EQ(Said("SetExpParam"), "Scaling factor of T = 2, free");
  Run("SetExpParam(ParamName=\"Temperature\",Value=2);");
  EXPECT_EQ(Said("SetExpParam"), "nothing done: 'Temperature' begins the name of no experimental parameter");
  Run("SetExpParam(Value=2);ExpParams(XPos=1,YPos=2);DatasetManager(XPos=3,YPos=4);");
  EXPECT_EQ(Said("SetExpParam"), "nothing done: ParamName is missing");
  Run("SetExpParam(ParamName=\"Sample "
      "th\",Value=0.01);NewModel();ExportModelCurve(File=\"T\",ModelNo=1,Quantity=\"T\",XMin=1,XMax=2,XPts=2);");
  EXPECT_EQ(Written("T").size(), 2u);
}

TEST_F(Kalvex, GraphCommandsAreAcceptedAndSaySo) {
  Run("NewGraph();GraphProperties(GraphNo=1,Xmin=1,XTitle=\"x\");AddDataCurve(GraphNo=1,DatasetNo=1);AddModelCurve("
      "GraphNo=1,ModelNo=1,"
      "Quantity=\"R\");DeleteDataCurve(GraphNo=1,DatasetNo=1);DeleteModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  EXPECT_EQ(run.status, 0);
  for (const char* const name :
       {"NewGraph", "GraphProperties", "AddDataCurve", "AddModelCurve", "DeleteDataCurve", "DeleteModelCurve"}) {
    EXPECT_EQ(Said(name), "nothing done: this version does not have it yet") << name;
  }
}

TEST_F(Kalvex, TheVariationalFunctionIsMadeSwitchedSavedAndLoaded) {
  folder.Write("R.dat", "100 .5\n200 .5\n300 .5\n400 .5\n");
  const std::string make = "NewModel();LoadDataset(MasterFile=\"R.dat\");VarDielFunc(ModelNo=1,Source1DatasetNo=1);";
  Run(make);
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has a mesh of 4 points from 100 to 400, on, constrained, fitted");
  Run(make + "VarDielFunc(ModelNo=1,KK=0,On=1);");
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has a mesh of 4 points from 100 to 400, on, free, fitted");
  Run(make + "FreeShape(ModelNo=1,Key=\"f5\");FreeShape(ModelNo=1,Key=\"F4\");FreeShape(ModelNo=1,Key=\"f7\");");
  EXPECT_EQ(Said("FreeShape"), "model 1 has a mesh of 4 points from 100 to 400, off, free, not fitted");
  Run("NewModel();LoadDataset(DatasetNo=3,MasterFile=\"R.dat\");FreeShape(ModelNo=1,Key=\"F6\");FreeShape(ModelNo=1,"
      "Key=\"F8\");");
  EXPECT_NE(run.err.find("FreeShape: model 1 has a mesh of 4 points"), std::string::npos);
  EXPECT_EQ(Said("FreeShape"), "nothing done: 'F8' is none of F4, F5, F6, F7");
  Run(make +
      "SaveVarDielFunc(File=\"a.kvv\");NewModel();LoadVarDielFunc(ModelNo=2,File=\"a.kvv\");SaveVarDielFunc(ModelNo=2,"
      "File=\"b.kvv\");"
      "MakeVarDielFuncPositive(ModelNo=2);LoadVarDielFunc(ModelNo=2,File=\"none\");");
  EXPECT_EQ(folder.Read("a.kvv"), folder.Read("b.kvv"));
  EXPECT_EQ(Said("LoadVarDielFunc"), "nothing done: 'none' cannot be opened or is no such file");
  Run("NewModel();VarDielFunc(ModelNo=1,Source2DatasetNo=5,Source2Every2nd=1);");
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has no mesh");
  Run(make + "VarDielFunc(ModelNo=1,Source1DatasetNo=1,Source1Every2nd=1,KK=0,On=0,FitActive=0);");
  EXPECT_EQ(Said("VarDielFunc"), "model 1 has a mesh of 2 points from 100 to 300, off, free, not fitted");
}

TEST_F(Kalvex, ToolsWriteTheirFiles) {
  folder.Write("R.dat", "100 .5\n200 .5\n300 .5\n");
  folder.Write("ParsSpecial.cfg", "1\nout.txt width 1 1 3\n");
  Run("NewModel();LoadDataset(MasterFile=\"R.dat\");WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);SaveParams(File="
      "\"a.kvp\");"
      "SetModelParam(ModelNo=1,ParamName=\"G\",LorNo=1,Value=99);LoadParams(File=\"a.kvp\");SaveParamsSpecial();"
      "TestDerivatives();"
      "TestQuantityDerivatives();DumpDerivatives();DumpSensitivity();QuantityErrorBars();");
  EXPECT_EQ(folder.Read("out.txt"), "width 10 0\n");
  EXPECT_TRUE(folder.Has("TestDeriv1.txt"));
  EXPECT_TRUE(folder.Has("TestDeriv.txt"));
  for (const char* const name : {"DumpDerivatives", "DumpSensitivity", "QuantityErrorBars"}) {
    EXPECT_EQ(Said(name).substr(0, 16), "nothing done: it") << name;
  }
}

TEST_F(Kalvex, ADecimalCommaChangesNothing) {
  if (!std::getenv("LOCPATH")) GTEST_SKIP() << "scripts/test makes the locale for this test";
  folder.Write("R.dat", "100.5 0.25\n200.5 0.5\n");
  folder.Write("m.kvs",
               "LoadDataset(MasterFile=\"R.dat\");NewModel();SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=2.5);"
               "ExportDataset(DatasetNo=1,File=\"d\");SaveModel(File=\"m.kvm\");");
  ASSERT_EQ(RunProgram(folder, {"m.kvs"}, {"LC_ALL=de_DE.UTF-8"}).status, 0);
  EXPECT_EQ(folder.Read("d"), "100.5 0.25\n200.5 0.5\n");
  EXPECT_NE(folder.Read("m.asc").find("Einf = 2.500000"), std::string::npos);
}

}  // namespace
}  // namespace kalvex

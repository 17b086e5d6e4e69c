// ChiSq terms and fits from macros.
#include <cmath>

#include "app/fit_data.h"
#include "app/saved_model.h"

namespace kalvex {
namespace {

// Relative: the distance of a parameter from its true value after a run without noise.
constexpr double kConverged = 1e-6;
// A run stops when ChiSq falls by less than 0.001.
constexpr double kStopRule = 1e-4;

TEST_F(Fitting, TheParametersOfTheSpectrumComeBack) {
  Run(start + term + "Fit(NumIters=50);SaveModel(File=\"m.kvm\");");
  const SavedModel model = SavedModelOf(folder.Read("m.kvm"));
  EXPECT_CLOSE(model.epsInf.value, kTrueMode.epsInf, kConverged);
  EXPECT_CLOSE(model.At(0, 0).value, kTrueMode.wo, kConverged);
  EXPECT_CLOSE(model.At(0, 1).value, kTrueMode.wp, kConverged);
  EXPECT_CLOSE(model.At(0, 2).value, kTrueMode.g, kConverged);
}

TEST_F(Fitting, BeforeItsWindowAFitDoesNothingAndTheMacroGoesOn) {
  Run(start + "AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit(NumIters=5);WindowFit();SaveModel(File=\"m.kvm\");");
  EXPECT_EQ(Said("Fit"), "nothing done: the fit window is not open; WindowFit() opens it");
  EXPECT_EQ(SavedModelOf(folder.Read("m.kvm")).At(0, 0).value, 115);
}

TEST_F(Fitting, WithoutAFreeParameterThereIsNothingToFit) {
  Run(start + "FixAllModelParams(ModelNo=1);" + term + "Fit();");
  EXPECT_EQ(IterationsOf(Said("Fit")), 0);
  EXPECT_NE(Said("Fit").find("no parameter to fit"), std::string::npos);
  Run("WindowFit();Fit();");
  EXPECT_NE(Said("Fit").find("no parameter to fit"), std::string::npos);
}

TEST_F(Fitting, NumItersHoldsForItsRunOnly) {
  Run(start + "FitOptions(StopOnIterations=1,MaxIterations=3,StopOnReduction=0);" + term +
      "Fit(NumIters=1);Fit();Fit(NumIters=2);Fit(N=1);");
  const auto said = EverySaid("Fit");
  ASSERT_EQ(said.size(), 4u);
  EXPECT_EQ(IterationsOf(said[0]), 1);
  EXPECT_EQ(IterationsOf(said[1]), 3);
  for (int i = 0; i < 2; ++i) {
    EXPECT_NE(said[static_cast<std::size_t>(i)].find("stopped: number of iterations"), std::string::npos);
  }
  Run(start + term + "Fit(NumIters=1);Fit();");
  EXPECT_GT(IterationsOf(Said("Fit")), 1);
  EXPECT_EQ(Said("Fit").find("stopped: number of iterations"), std::string::npos);
}

TEST_F(Fitting, TheSummaryTellsIterationsChiSqStopRuleAndSeconds) {
  Run(start + term + "SaveModel(File=\"before.kvm\");Fit(NumIters=2);SaveModel(File=\"after.kvm\");");
  const std::string said = Said("Fit");
  EXPECT_EQ(said.substr(0, 20), "2 iterations, ChiSq ");
  const double before = std::stod(said.substr(said.find("ChiSq ") + 6)),
               after = std::stod(said.substr(said.find("-> ") + 3));
  EXPECT_CLOSE(before, ChiSqIn("before.asc"), 2 * kFiveDigits);
  EXPECT_CLOSE(after, ChiSqIn("after.asc"), 2 * kFiveDigits);
  EXPECT_LT(after, before);
  EXPECT_NE(said.find(", stopped: number of iterations, "), std::string::npos);
  EXPECT_EQ(said.substr(said.size() - 2), " s");
}

TEST_F(Fitting, ProgressIsToldWhenAskedForAndTheSummaryOnce) {
  folder.Write("m.kvs", start + term + "Fit(NumIters=2);");
  EXPECT_EQ(RunProgram(folder, {"m.kvs"}).err, "");
  const std::string told = RunProgram(folder, {"--progress", "m.kvs"}).err;
  EXPECT_EQ(told.find("iteration 1: ChiSq "), 0u);
  EXPECT_NE(told.find("\niteration 2: ChiSq "), std::string::npos);
  EXPECT_NE(told.find("\nfit: 2 iterations, ChiSq "), std::string::npos);
  const std::string both = RunProgram(folder, {"--progress", "--verbose", "m.kvs"}).err;
  EXPECT_NE(both.find("iteration 2: ChiSq "), std::string::npos);
  EXPECT_NE(both.find(": Fit: 2 iterations, ChiSq "), std::string::npos);
  EXPECT_EQ(both.find("2 iterations"), both.rfind("2 iterations"));
}

TEST_F(Fitting, AParameterAtAFrequencyOfZeroIsNamedAsWithoutInfluence) {
  Run(start + Setting(1, "Wo", 1, "Value=0") + term + "Fit();");
  EXPECT_EQ(IterationsOf(Said("Fit")), 0);
  EXPECT_NE(Said("Fit").find("parameters without influence on ChiSq at their present values: model 1 row 1 Wo"),
            std::string::npos);
}

TEST_F(Fitting, ParametersOnTheirLimitsAreNamedByModelRowAndColumn) {
  Run(start + "NewModel();CloseModel(ModelNo=2);" + Setting(1, "G", 1, "Value=5,MinLimit=5,MinOn=1") +
      Setting(1, "Wp", 1, "MaxLimit=230,MaxOn=1") +
      "SetExpParam(ParamName=\"Scaling factor of R\",FitActive=1,MinLimit=1,MinOn=1);" + term + "Fit();");
  const std::string said = Said("Fit");
  const std::string head = "parameters without influence on ChiSq at their present values: ";
  const std::size_t at = said.find(head);
  ASSERT_NE(at, std::string::npos) << said;
  EXPECT_EQ(said.substr(at + head.size()), "model 1 row 1 Wp, model 1 row 1 G, Scaling factor of R");
}

// A model with the same reflectivity at all frequencies, so that ChiSq can be computed by hand.
class ChiSqTerms : public Kalvex {
 protected:
  ChiSqTerms() {
    folder.Write("R.dat", "100 0.5 0.1\n200 0.4 0.2\n300 0.25 0.1\n");
    folder.Write("Rb.dat", "150 0.25 0.05\n");
  }
  // ChiSq of R.dat and a model of constant reflectivity.
  static double Expected(double r) {
    return std::pow((0.5 - r) / 0.1, 2) + std::pow((0.4 - r) / 0.2, 2) + std::pow((0.25 - r) / 0.1, 2);
  }
  static double ExpectedB(double r) { return std::pow((0.25 - r) / 0.05, 2); }
  double ChiSqAfter(const std::string& macro) {
    Run(loads + macro + "SaveModel(File=\"chi.kvm\");");
    return ChiSqIn("chi.asc");
  }
  static constexpr double kR4 = 1.0 / 9, kR9 = 0.25;  // of the dielectric constants 4 and 9
  const std::string loads = "LoadDataset(MasterFile=\"R.dat\");LoadDataset(DatasetNo=2,MasterFile=\"Rb.dat\");" +
                            FlatModel(1, 4) + FlatModel(2, 9);
  const std::string add = "AddChiSqTerm(DatasetNo=1,ModelNo=1);";
};

TEST_F(ChiSqTerms, AreSummedWithTheirWeights) {
  EXPECT_CLOSE(ChiSqAfter(add), Expected(kR4), kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter("AddChiSqTerm(DatasetNo=1,ModelNo=2,Weight=2.5);"), 2.5 * Expected(kR9), kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter(add + "AddChiSqTerm(DatasetNo=2,ModelNo=1,Weight=-0.5);"),
               Expected(kR4) - 0.5 * ExpectedB(kR4), kFiveDigits);
}

TEST_F(ChiSqTerms, OfWeightZeroAddNothing) {
  Run(loads + "AddChiSqTerm(DatasetNo=1,ModelNo=1,Weight=0);");
  EXPECT_EQ(Said("AddChiSqTerm"), "dataset 1 against model 1: 0 points, 0 free parameters, ChiSq 0");
}

TEST_F(ChiSqTerms, OfOnePairMayBeAddedTwiceAndCountTwice) {
  EXPECT_CLOSE(ChiSqAfter(add + add), 2 * Expected(kR4), kFiveDigits);
  EXPECT_EQ(Said("AddChiSqTerm").substr(0, 36), "dataset 1 against model 1: 6 points,");
}

TEST_F(ChiSqTerms, NeedBothNumbersAndAModel) {
  EXPECT_EQ(SaidLast(loads + "AddChiSqTerm(ModelNo=1);"), "nothing done: DatasetNo is missing");
  EXPECT_EQ(SaidLast(loads + "AddChiSqTerm(DatasetNo=1);"), "nothing done: ModelNo is missing");
  EXPECT_EQ(SaidLast(loads + "AddChiSqTerm(DatasetNo=1,ModelNo=5);"), "nothing done: model 5 does not exist");
  EXPECT_EQ(SaidLast(loads + "AddChiSqTerm(DatasetNo=0,ModelNo=1);"), "nothing done: DatasetNo should be 1 to 100");
  EXPECT_EQ(SaidLast(loads + "DeleteChiSqTerm(ModelNo=1);"), "nothing done: DatasetNo is missing");
  EXPECT_EQ(SaidLast(loads + "DeleteChiSqTerm(DatasetNo=1);"), "nothing done: ModelNo is missing");
}

TEST_F(ChiSqTerms, AreDeletedOneAtATime) {
  EXPECT_CLOSE(ChiSqAfter(add + add + "DeleteChiSqTerm(DatasetNo=1,ModelNo=1);"), Expected(kR4), kFiveDigits);
  EXPECT_EQ(Said("DeleteChiSqTerm"), "removed, 1 left");
  EXPECT_CLOSE(ChiSqAfter(add + "DeleteChiSqTerm(DatasetNo=2,ModelNo=1);"), Expected(kR4), kFiveDigits);
  EXPECT_EQ(Said("DeleteChiSqTerm"), "nothing done: there is no such ChiSq term");
}

TEST_F(ChiSqTerms, AreAddedByTheModelsNumberButDeletedByItsPlaceInTheTable) {
  // Model 3 takes the free place of model 1.
  const std::string third = "CloseModel(ModelNo=1);" + FlatModel(3, 4) + "AddChiSqTerm(DatasetNo=1,ModelNo=3);";
  EXPECT_EQ(SaidLast(loads + third + "DeleteChiSqTerm(DatasetNo=1,ModelNo=3);"),
            "nothing done: there is no such ChiSq term");
  EXPECT_EQ(SaidLast(loads + third + "DeleteChiSqTerm(DatasetNo=1,ModelNo=1);"), "removed, 0 left");
  EXPECT_EQ(SaidLast(loads + "CloseModel(ModelNo=1);AddChiSqTerm(DatasetNo=1,ModelNo=1);"),
            "nothing done: model 1 does not exist");
}

TEST_F(ChiSqTerms, OfASlotLoadedAnewAreDead) {
  Run(loads + "WindowFit();" + add + "LoadDataset(MasterFile=\"R.dat\");DeleteChiSqTerm(DatasetNo=1,ModelNo=1);" + add);
  EXPECT_EQ(Said("DeleteChiSqTerm"), "nothing done: there is no such ChiSq term");
  EXPECT_EQ(Said("AddChiSqTerm").substr(0, 36), "dataset 1 against model 1: 3 points,");
}

TEST_F(ChiSqTerms, GoWithTheirDatasetAndModelWhileTheWindowIsOpen) {
  const std::string two = "WindowFit();" + add + "AddChiSqTerm(DatasetNo=2,ModelNo=2);";
  EXPECT_CLOSE(ChiSqAfter(two), Expected(kR4) + ExpectedB(kR9), kFiveDigits);
  EXPECT_EQ(ChiSqAfter(two + "UnloadDataset(DatasetNo=1);"), 0);  // 0.25 is the reflectivity of 9
  EXPECT_CLOSE(ChiSqAfter(two + "CloseModel(ModelNo=2);"), Expected(kR4), kFiveDigits);
  EXPECT_EQ(SaidLast(loads + two + "AddNoise(DatasetNo=1,Sigma=0.1);WindowFit();"), "open, 1 ChiSq terms");
}

TEST_F(ChiSqTerms, OfAClosedModelOrUnloadedDatasetDoNoHarm) {
  Run(loads + add +
      "CloseModel(ModelNo=1);WindowFit();Fit();UnloadDataset(DatasetNo=1);Fit();"
      "AddChiSqTerm(DatasetNo=9,ModelNo=2);Fit();");
  EXPECT_EQ(Said("AddChiSqTerm").substr(0, 46), "dataset 9, which is not loaded, against model ");
  EXPECT_EQ(EverySaid("Fit").size(), 3u);
}

TEST_F(ChiSqTerms, FollowATransformedDatasetAtOnceAndACutOneWithTheNextRebuilding) {
  const std::string open = "WindowFit();" + add;
  EXPECT_CLOSE(ChiSqAfter(open + "TransformDataset(Scale=2);"),
               std::pow((1 - kR4) / 0.2, 2) + std::pow((0.8 - kR4) / 0.4, 2) + std::pow((0.5 - kR4) / 0.2, 2),
               kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter(open + "CutDataset(XMin=250);"), Expected(kR4), kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter(open + "CutDataset(XMin=250);AddChiSqTerm(DatasetNo=2,ModelNo=1,Weight=0);"),
               std::pow((0.25 - kR4) / 0.1, 2), kFiveDigits);
}

TEST_F(ChiSqTerms, FollowAParameterUnlessUpdateIsZero) {
  const std::string open = "WindowFit();" + add;
  EXPECT_CLOSE(ChiSqAfter(open + Setting(1, "Einf", 1, "Value=9")), Expected(kR9), kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter(open + Setting(1, "Einf", 1, "Value=9,Update=1")), Expected(kR9), kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter(open + Setting(1, "Einf", 1, "Value=9,Update=0")), Expected(kR4), kFiveDigits);
  EXPECT_CLOSE(ChiSqAfter(open + Setting(1, "Einf", 1, "Value=9,Update=0") + Setting(2, "Einf", 1, "Value=9")),
               Expected(kR9), kFiveDigits);
}

TEST_F(ChiSqTerms, AFitOfOneConstantMeetsTheWeightedMean) {
  // With everything else fixed, the best reflectivity is the mean of the values with weights 1/sigma^2.
  const double w1 = 100, w2 = 25, w3 = 100, best = (0.5 * w1 + 0.4 * w2 + 0.25 * w3) / (w1 + w2 + w3);
  EXPECT_CLOSE(ChiSqAfter("WindowFit();" + add + "Fit();"), Expected(best), kFiveDigits);
  Run(loads + "WindowFit();" + add +
      "Fit();ExportModelCurve(File=\"c\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=2,XPts=2);");
  EXPECT_CLOSE(Written("c")[0][1], best, kStopRule);
}

// The fit's lists are not updated while its window is closed. A row that is added or removed then must not corrupt
// them.
class ListsOfAClosedWindow : public Fitting {
 protected:
  ListsOfAClosedWindow() { folder.Write("few.dat", "100 0.6\n150 0.5\n200 0.4\n"); }
  static constexpr const char* kFiles[] = {"TestDeriv1.txt", "TestDeriv.txt", "QntyErrorBars.dat"};

  // The files of the operations with lists from before the change.
  std::vector<std::string> FilesAfter(const std::string& window, const std::string& change) {
    Run("LoadDataset(MasterFile=\"R.dat\",YErrMethod=3,YErrVal=0.001);"
        "LoadDataset(DatasetNo=2,MasterFile=\"R.dat\",YErrMethod=3,YErrVal=0.002);"
        "LoadDataset(DatasetNo=3,MasterFile=\"few.dat\",YErrMethod=3,YErrVal=0.001);" +
        OscillatorModel({3, 115, 230, 10}) + "InsertModelRow(ModelNo=1,LorNo=2);" + Setting(1, "Wo", 2, "Value=400") +
        window +
        "AddChiSqTerm(DatasetNo=1,ModelNo=1);AddChiSqTerm(DatasetNo=2,ModelNo=1);AddChiSqTerm(DatasetNo=3,ModelNo=1);" +
        change + "TestDerivatives();TestQuantityDerivatives();QuantityErrorBars();");
    EXPECT_EQ(Said("TestDerivatives"), "written to 'TestDeriv1.txt'");
    EXPECT_EQ(Said("TestQuantityDerivatives"), "written to 'TestDeriv.txt'");
    EXPECT_EQ(Said("QuantityErrorBars"), "written to 'QntyErrorBars.dat'");
    std::vector<std::string> files;
    for (const char* const file : kFiles) files.push_back(folder.Read(file));
    return files;
  }
};

TEST_F(ListsOfAClosedWindow, AreMadeAnewWithoutARemovedRow) {
  for (const char* const row : {"1", "2"}) {
    const std::string change = std::string("RemoveModelRow(ModelNo=1,LorNo=") + row + ");";
    const auto closed = FilesAfter("", change), open = FilesAfter("WindowFit();", change);
    for (std::size_t f = 0; f < closed.size(); ++f) EXPECT_EQ(closed[f], open[f]) << kFiles[f] << ", row " << row;
    EXPECT_EQ(closed[0].substr(0, closed[0].find('\n')), "NumParams = 4");
    EXPECT_EQ(closed[0].find("(!!!)"), std::string::npos);
    EXPECT_EQ(NumbersOf(closed[2]).size(), 3u);
  }
}

TEST_F(ListsOfAClosedWindow, KeepTheirParametersBesideANewRow) {
  const auto files = FilesAfter("", "InsertModelRow(ModelNo=1,LorNo=3);" + Setting(1, "Wo", 3, "Value=600"));
  EXPECT_EQ(files[0].substr(0, files[0].find('\n')), "NumParams = 7");
  EXPECT_EQ(files[0].find("(!!!)"), std::string::npos);
  EXPECT_EQ(files[0].find("nl = 2"), std::string::npos);
  const Table bars = NumbersOf(files[2]);
  ASSERT_EQ(bars.size(), 3u);
  for (const auto& line : bars) EXPECT_EQ(line.size(), 13u);
}

}  // namespace
}  // namespace kalvex

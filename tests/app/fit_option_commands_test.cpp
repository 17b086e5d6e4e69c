// The effect of each option of the fit on a run, and undoing a run.
#include <cmath>

#include "app/fit_data.h"
#include "app/saved_model.h"

namespace kalvex {
namespace {

TEST_F(Fitting, IterationsAreCountedToTheirLimit) {
  Run(start + "FitOptions(StopOnIterations=1,MaxIterations=2);" + term + "Fit();");
  EXPECT_EQ(IterationsOf(Said("Fit")), 2);
  Run(start + "FitOptions(MaxIterations=2);" + term + "Fit();");
  EXPECT_GT(IterationsOf(Said("Fit")), 2);
}

TEST_F(Fitting, TimeEndsARun) {
  Run(start + "FitOptions(StopOnTime=1,MaxSeconds=0);" + term + "Fit();");
  EXPECT_EQ(IterationsOf(Said("Fit")), 1);
  EXPECT_NE(Said("Fit").find("stopped: time,"), std::string::npos);
  Run(start + "FitOptions(MaxSeconds=0);" + term + "Fit();");
  EXPECT_GT(IterationsOf(Said("Fit")), 1);
}

TEST_F(Fitting, AReductionBelowItsAmountEndsARun) {
  Run(start + "FitOptions(ReductionIterations=2,ReductionAmount=1e9);" + term + "Fit();");
  EXPECT_EQ(IterationsOf(Said("Fit")), 2);
  EXPECT_NE(Said("Fit").find("stopped: ChiSq no longer falls,"), std::string::npos);
  Run(start + "FitOptions(StopOnReduction=0,ReductionIterations=2,ReductionAmount=1e9);" + term + "Fit(NumIters=4);");
  EXPECT_EQ(IterationsOf(Said("Fit")), 4);
}

TEST_F(Fitting, LambdaBeyondItsLimitEndsARun) {
  const std::string stuck = start + Setting(1, "Wo", 1, "Value=0");  // no step exists
  Run(stuck + "FitOptions(InitialLambda=1,MaxLambda=100,LogFit=1);" + term + "Fit();");
  EXPECT_EQ(IterationsOf(Said("Fit")), 0);
  EXPECT_NE(Said("Fit").find("stopped: Lambda above its limit"), std::string::npos);
  const Table log = Written("Fitlog.dat");
  ASSERT_EQ(log.size(), 1u);
  EXPECT_EQ(log[0][2], 1);
  Run(stuck + "FitOptions(StopOnLambda=0);" + term + "Fit();");  // the run ends in any case
  EXPECT_EQ(IterationsOf(Said("Fit")), 0);
}

TEST_F(Fitting, TheLogHasAHeadARowOfTheStartAndOneOfEachIteration) {
  Run(start + "FitOptions(LogFit=1,InitialLambda=0.01);" + term + "Fit(NumIters=2);");
  const std::string log = folder.Read("Fitlog.dat");
  EXPECT_EQ(log.substr(0, log.find('\n')), "IterNo Time Lambda ChiSq ChiSq1 P1 Perr1 P2 Perr2 P3 Perr3 P4 Perr4 ");
  const Table rows = Written("Fitlog.dat");
  ASSERT_EQ(rows.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(rows[i].size(), 13u);
    EXPECT_EQ(rows[i][0], static_cast<double>(i));
  }
  EXPECT_EQ(rows[0][2], 0.01);
  EXPECT_EQ(rows[0][5], 3);  // Einf, Wo, Wp, G
  EXPECT_EQ(rows[0][7], 115);
  EXPECT_EQ(rows[0][9], 230);
  EXPECT_EQ(rows[0][11], 10);
  Run(start + term + "Fit(NumIters=1);");
  EXPECT_EQ(folder.Read("Fitlog.dat"), log);
}

TEST_F(Fitting, ErrorBarsGrowWithTheRootOfDeltaChiSq) {
  const auto errors = [&](const std::string& options) {
    Run(start + "FitOptions(" + options + ");" + term + "Fit(NumIters=6);SaveModel(File=\"m.kvm\");");
    return SavedModelOf(folder.Read("m.kvm")).At(0, 0).error;
  };
  EXPECT_EQ(errors("MaxLambda=1e20"), 0);
  EXPECT_FALSE(folder.Has("Params.dat"));
  const double by100 = errors("CalcConfidence=1");
  EXPECT_TRUE(folder.Has("Params.dat") && folder.Has("ParCorrs.dat"));
  EXPECT_GT(by100, 0);
  EXPECT_CLOSE(errors("CalcConfidence=1,DeltaChiSq=4"), by100 / 5, kChain);
}

TEST_F(Fitting, OptionsStayForLaterRuns) {
  Run(start + "FitOptions(StopOnIterations=1,MaxIterations=1);FitOptions(StopOnReduction=0);" + term + "Fit();Fit();");
  for (const std::string& said : EverySaid("Fit")) EXPECT_EQ(IterationsOf(said), 1);
}

TEST_F(Fitting, UndoPutsTheValuesBackAndAgainForward) {
  const std::string fit = start + term + "Fit();";
  Run(fit +
      "SaveModel(File=\"fitted.kvm\");UndoFit();SaveModel(File=\"back.kvm\");UndoFit();"
      "SaveModel(File=\"forward.kvm\");");
  const SavedModel back = SavedModelOf(folder.Read("back.kvm"));
  EXPECT_EQ(back.epsInf.value, 3);
  EXPECT_EQ(back.At(0, 0).value, 115);
  EXPECT_EQ(back.At(0, 1).value, 230);
  EXPECT_EQ(back.At(0, 2).value, 10);
  const SavedModel fitted = SavedModelOf(folder.Read("fitted.kvm")), forward = SavedModelOf(folder.Read("forward.kvm"));
  for (int c = 0; c < 3; ++c) EXPECT_EQ(forward.At(0, c).value, fitted.At(0, c).value);
  EXPECT_EQ(ChiSqIn("fitted.asc"), ChiSqIn("forward.asc"));
  EXPECT_GT(ChiSqIn("back.asc"), ChiSqIn("fitted.asc"));
}

TEST_F(Fitting, UndoNeedsARunThatNothingHasTouchedSince) {
  const std::string nothing = "nothing done: there is no fit run to undo";
  EXPECT_EQ(SaidLast("UndoFit();"), nothing);
  EXPECT_EQ(SaidLast(start + term + "UndoFit();"), nothing);
  EXPECT_EQ(SaidLast(start + term + "Fit();" + Setting(1, "G", 1, "Value=9") + "UndoFit();"), nothing);
  EXPECT_EQ(SaidLast(start + term + "Fit();AddChiSqTerm(DatasetNo=1,ModelNo=1);UndoFit();"), nothing);
}

}  // namespace
}  // namespace kalvex

// The experimental parameters from macros, and their effect on curves.
#include <cmath>
#include <numbers>

#include "app/kalvex_run.h"

namespace kalvex {
namespace {

class ExpParamCommands : public Kalvex {
 protected:
  // A Quantity of a sample with this dielectric constant after the statements.
  double Computed(const std::string& quantity, double eps, const std::string& macro) {
    Run(FlatModel(1, eps) + macro + "ExportModelCurve(File=\"c\",ModelNo=1,Quantity=\"" + quantity +
        "\",XMin=100,XMax=200,XPts=2);");
    return Written("c").at(0).at(1);
  }
  static std::string Set(const std::string& name, const std::string& items) {
    return "SetExpParam(ParamName=\"" + name + "\"," + items + ");\n";
  }
};

// Averages over angles and thicknesses have ten nodes. The weights of the format have this sum.
constexpr double kWeights = 1.000074097;

// Fresnel, s-polarised, from vacuum.
double SReflectivity(double eps, double degrees) {
  const double cosine = std::cos(degrees * std::numbers::pi / 180), sine2 = 1 - cosine * cosine;
  return kWeights * std::pow((cosine - std::sqrt(eps - sine2)) / (cosine + std::sqrt(eps - sine2)), 2);
}

TEST_F(ExpParamCommands, DefaultsAreAnAngleOf80DegreesAndFactorsOfOne) {
  EXPECT_CLOSE(Computed("Rs", 4, ""), SReflectivity(4, 80), kSixDigits);
  EXPECT_CLOSE(Computed("R", 4, ""), 1.0 / 9, kSixDigits);
  EXPECT_CLOSE(Computed("T", 1, ""), kWeights, kSixDigits);
}

TEST_F(ExpParamCommands, ABeginningOfTheNameIsEnoughAndTheFirstMatchWins) {
  EXPECT_CLOSE(Computed("Rs", 4, Set("Angle of", "Value=60")), SReflectivity(4, 60), kSixDigits);
  EXPECT_CLOSE(Computed("Rs", 4, Set("ANGLE", "Value=45")), SReflectivity(4, 45), kSixDigits);
  EXPECT_CLOSE(Computed("R", 4, Set("scaling", "Value=0.5")), 0.5 / 9, kSixDigits);
  EXPECT_CLOSE(Computed("T", 1, Set("Scaling factor of T", "Value=0.25")), 0.25 * kWeights, kSixDigits);
  const struct {
    const char* text;
    const char* name;
  } kMeanings[] = {{"", "Sample thickness"},    {"s", "Sample thickness"},    {"Sample thickness", "Sample thickness"},
                   {"T", "Thickness spread"},   {"th", "Thickness spread"},   {"A", "Angle of incidence"},
                   {"Angle s", "Angle spread"}, {"Sc", "Scaling factor of R"}};
  for (const auto& c : kMeanings) {
    const std::string said = SaidLast(Set(c.text, "Value=0.5"));
    EXPECT_EQ(said.substr(0, said.find(" = ")), c.name) << c.text;
  }
}

TEST_F(ExpParamCommands, ANameThatBeginsNoneDoesNothing) {
  for (const std::string name : {"Temperature", "Angle of incidence!", "ngle", " Angle"}) {
    EXPECT_EQ(SaidLast(Set(name, "Value=2")),
              "nothing done: no experimental parameter has a name that begins with '" + name + "'");
  }
  EXPECT_EQ(SaidLast("SetExpParam(Value=2);"), "nothing done: ParamName is missing");
}

TEST_F(ExpParamCommands, EveryFieldIsSet) {
  EXPECT_EQ(SaidLast(Set("Sample", "Value=0.5,FitActive=1,MinLimit=0.25,MaxLimit=2,MinOn=1,MaxOn=1,CoupledTo=24")),
            "Sample thickness = 0.5, free, not below 0.25, not above 2, coupled to group 24");
  EXPECT_EQ(SaidLast(Set("Sample", "FitActive=1") + Set("Sample", "Value=0.5")), "Sample thickness = 0.5, free");
  EXPECT_EQ(SaidLast("SetExpParam(ParamName=\"Angle\");"), "Angle of incidence = 80, fixed");
}

TEST_F(ExpParamCommands, TheValueMeetsTheOldLimitsFirstAndTheNewOnesThen) {
  const std::string limited = Set("Angle", "MaxLimit=85,MaxOn=1");
  EXPECT_EQ(
      SaidLast(limited + Set("Angle", "Value=89,MaxLimit=90")),
      "Angle of incidence = 85, fixed, not above 90; Angle of incidence: 89 was outside of the limits and became 85");
  EXPECT_EQ(
      SaidLast(Set("Angle", "Value=89,MaxLimit=70,MaxOn=1")),
      "Angle of incidence = 70, fixed, not above 70; Angle of incidence: 89 was outside of the limits and became 70");
  EXPECT_EQ(SaidLast(Set("Angle", "MinLimit=82,MinOn=1")), "Angle of incidence = 82, fixed, not below 82");
}

TEST_F(ExpParamCommands, JoiningAGroupTakesItsWholeRecordNameIncluded) {
  const std::string joined =
      "NewModel();" + Setting(1, "Wo", 1, "Value=60,CoupledTo=5") + Set("Angle of", "Value=30,CoupledTo=5");
  EXPECT_EQ(SaidLast(joined), "TO frequency = 60, free, coupled to group 5");
  EXPECT_EQ(SaidLast(joined + Set("Angle of", "Value=1")),
            "nothing done: no experimental parameter has a name that begins with 'Angle of'");
  // A change of another member of the group changes the angle.
  Run(joined + Setting(1, "Wo", 1, "Value=45") + FlatModel(2, 4) +
      "ExportModelCurve(File=\"c\",ModelNo=2,Quantity=\"Rs\",XMin=100,XMax=200,XPts=2);");
  EXPECT_CLOSE(Written("c")[0][1], SReflectivity(4, 45), kSixDigits);
}

TEST_F(ExpParamCommands, AFreeOneIsFitted) {
  folder.Write("R.dat", "100 0.05 0.001\n200 0.05 0.001\n");
  Run("LoadDataset(MasterFile=\"R.dat\");" + FlatModel(1, 4) + "FixAllModelParams(ModelNo=1);" +
      Set("Scaling factor of R", "FitActive=1") +
      "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);Fit();SetExpParam(ParamName=\"Scaling\");");
  EXPECT_EQ(Said("AddChiSqTerm").substr(0, 55), "dataset 1 against model 1: 2 points, 1 free parameters,");
  EXPECT_EQ(Said("SetExpParam"), "Scaling factor of R = 0.45, free");  // 0.05 is 0.45 of 1/9
}

TEST_F(ExpParamCommands, AnOpenFitFollowsThem) {
  folder.Write("R.dat", "100 0.5 0.1\n");
  Run("LoadDataset(MasterFile=\"R.dat\");" + FlatModel(1, 4) + "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);" +
      Set("Scaling", "Value=2") + "SaveModel(File=\"m.kvm\");");
  EXPECT_CLOSE(ChiSqIn("m.asc"), std::pow((0.5 - 2.0 / 9) / 0.1, 2), kFiveDigits);
}

}  // namespace
}  // namespace kalvex

// Exported curves of a model, compared with the formulas.
#include <cmath>

#include "app/kalvex_run.h"
#include "datasets/quantity.h"
#include "support/difference_quotient.h"

namespace kalvex {
namespace {

constexpr Oscillator kMode = {4, 120, 250, 8};

class CurveExports : public Kalvex {
 protected:
  // Exports with these additional parameters after File and ModelNo.
  Table Curve(const std::string& items, const std::string& model = OscillatorModel(kMode)) {
    Run(model + Export("c", items));
    return Written("c");
  }
  static std::string Export(const std::string& file, const std::string& items) {
    return "ExportModelCurve(File=\"" + file + "\",ModelNo=1," + items + ");\n";
  }
};

TEST_F(CurveExports, ALinearGridGoesFromXMinToXMaxInEqualSteps) {
  const Table curve = Curve("Quantity=\"R\",XMin=50,XMax=250,XPts=5");
  ASSERT_EQ(curve.size(), 5u);
  for (std::size_t i = 0; i < curve.size(); ++i) {
    ASSERT_EQ(curve[i].size(), 2u);
    EXPECT_EQ(curve[i][0], 50 + 50.0 * static_cast<double>(i));
    EXPECT_CLOSE(curve[i][1], ReflectivityOf(EpsOf(kMode, curve[i][0])), kSixDigits);
  }
  EXPECT_EQ(Curve("Quantity=\"R\",XMin=50,XMax=250,XPts=5,XGrid=1,XMethod=1"), curve);
}

TEST_F(CurveExports, ALogarithmicGridHasEqualRatios) {
  const Table curve = Curve("Quantity=\"R\",XMin=10,XMax=1000,XPts=5,XGrid=2");
  ASSERT_EQ(curve.size(), 5u);
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const double x = std::pow(10, 1 + 0.5 * static_cast<double>(i));
    EXPECT_CLOSE(curve[i][0], x, kSixDigits);
    EXPECT_CLOSE(curve[i][1], ReflectivityOf(EpsOf(kMode, x)), kSixDigits);
  }
}

TEST_F(CurveExports, NumbersHaveSixDigitsAndLinesTwoNumbers) {
  Run(FlatModel(1, 4) + Export("c", "Quantity=\"R\",XMin=100000.5,XMax=2000000,XPts=2"));
  EXPECT_EQ(folder.Read("c"), "100000 0.111111\n2e+06 0.111111\n");
}

TEST_F(CurveExports, EachResponseIsItsFormula) {
  const struct {
    const char* key;
    double (*of)(std::complex<double> eps, double w);
  } kFormulas[] = {
      {"R", [](std::complex<double> e, double) { return ReflectivityOf(e); }},
      {"E1", [](std::complex<double> e, double) { return e.real(); }},
      {"E2", [](std::complex<double> e, double) { return e.imag(); }},
      // sigma = -i w (eps - 1)/60
      {"S1", [](std::complex<double> e, double w) { return w * e.imag() / 60; }},
      {"S2", [](std::complex<double> e, double w) { return -w * (e.real() - 1) / 60; }},
      {"N1", [](std::complex<double> e, double) { return std::sqrt(e).real(); }},
      {"N2", [](std::complex<double> e, double) { return std::sqrt(e).imag(); }},
      {"LF", [](std::complex<double> e, double) { return (-1.0 / e).imag(); }},
  };
  std::string macro = OscillatorModel(kMode);
  for (const auto& f : kFormulas) {
    macro += Export(f.key, "Quantity=\"" + std::string(f.key) + "\",XMin=90,XMax=150,XPts=4");
  }
  Run(macro);
  for (const auto& f : kFormulas) {
    const Table curve = Written(f.key);
    ASSERT_EQ(curve.size(), 4u) << f.key;
    for (const auto& line : curve) {
      EXPECT_CLOSE(line[1], f.of(EpsOf(kMode, line[0]), line[0]), kSixDigits) << f.key;
    }
  }
}

TEST_F(CurveExports, EveryKeyIsMatchedWholeAndIgnoringCase) {
  std::string macro = FlatModel(1, 4);
  for (const Quantity quantity : kEveryQuantity) {
    std::string lower = NamesOf(quantity).shortName;
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    macro += Export("whole_" + lower, "Quantity=\"" + lower + "\",XMin=1,XMax=2,XPts=2");
    macro += Export("long_" + lower, "Quantity=\"" + lower + "x\",XMin=1,XMax=2,XPts=2");
  }
  macro +=
      Export("short", "Quantity=\"A\",XMin=1,XMax=2,XPts=2") + Export("none", "Quantity=\"\",XMin=1,XMax=2,XPts=2");
  Run(macro);
  for (const Quantity quantity : kEveryQuantity) {
    std::string lower = NamesOf(quantity).shortName;
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    EXPECT_EQ(Written("whole_" + lower).size(), 2u) << lower;
    EXPECT_EQ(folder.Read("long_" + lower), "") << lower;
  }
  EXPECT_EQ(folder.Read("short"), "");
  EXPECT_EQ(folder.Read("none"), "");
}

TEST_F(CurveExports, DerivativesFollowTheValueOnALogarithmicGrid) {
  const Table curve = Curve("Quantity=\"R\",XMin=50,XMax=500,XPts=3,XGrid=2,Deriv=1");
  ASSERT_EQ(curve.size(), 3u);
  for (const auto& line : curve) ASSERT_EQ(line.size(), 4u);
  const double x = std::sqrt(50 * 500.0);
  const std::complex<double> eps = EpsOf(kMode, x);
  const auto byRe = RiddersSlope([&](double re) { return ReflectivityOf({re, eps.imag()}); }, eps.real(), 0.5);
  const auto byIm = RiddersSlope([&](double im) { return ReflectivityOf({eps.real(), im}); }, eps.imag(), 0.05);
  EXPECT_CLOSE(curve[1][0], x, kSixDigits);
  EXPECT_CLOSE(curve[1][1], ReflectivityOf(eps), kSixDigits);
  EXPECT_CLOSE(curve[1][2], byRe.value, kSixDigits);
  EXPECT_CLOSE(curve[1][3], byIm.value, kSixDigits);
}

TEST_F(CurveExports, DerivativesOfTheDielectricFunctionAreZeroAndOne) {
  for (const auto& line : Curve("Quantity=\"E1\",XMin=10,XMax=1000,XPts=3,XGrid=2,Deriv=2")) {
    EXPECT_EQ(line[2], 1);
    EXPECT_EQ(line[3], 0);
  }
  for (const auto& line : Curve("Quantity=\"E2\",XMin=10,XMax=1000,XPts=3,XGrid=2,Deriv=-1")) {
    EXPECT_EQ(line[2], 0);
    EXPECT_EQ(line[3], 1);
  }
}

TEST_F(CurveExports, DerivHasNoEffectOnALinearGrid) {
  const std::string items = "Quantity=\"R\",XMin=50,XMax=250,XPts=5";
  const Table without = Curve(items);
  EXPECT_EQ(Curve(items + ",Deriv=1"), without);
  EXPECT_EQ(Curve(items + ",XGrid=2,Deriv=0")[0].size(), 2u);
}

TEST_F(CurveExports, OnePointIsWrittenAtXMin) {
  for (const char* const grid : {"1", "2"}) {
    const Table curve = Curve("Quantity=\"R\",XMin=50,XMax=250,XPts=1,XGrid=" + std::string(grid));
    ASSERT_EQ(curve.size(), 1u);
    EXPECT_CLOSE(curve[0][0], 50.0, kSixDigits);
  }
}

TEST_F(CurveExports, StepsAccumulateSoThatTheLastPointDependsOnRounding) {
  std::size_t expected = 0;
  for (double x = 1, step = (2.0 - 1.0) / 9; x <= 2; x += step) ++expected;
  EXPECT_EQ(Curve("Quantity=\"R\",XMin=1,XMax=2,XPts=10").size(), expected);
  expected = 0;
  for (double x = 0.1, step = (0.7 - 0.1) / 6; x <= 0.7; x += step) ++expected;
  EXPECT_EQ(Curve("Quantity=\"R\",XMin=0.1,XMax=0.7,XPts=7").size(), expected);
}

TEST_F(CurveExports, LogarithmsEndAtMinus300) {
  const Table curve = Curve("Quantity=\"R\",XMin=1e-305,XMax=1e-298,XPts=2,XGrid=2", FlatModel(1, 4));
  ASSERT_EQ(curve.size(), 2u);
  EXPECT_CLOSE(curve[0][0], 1e-300, kSixDigits);
  EXPECT_CLOSE(curve[1][0], 1e-298, kSixDigits);
}

TEST_F(CurveExports, LimitsBelowZeroAreFineOnALinearGrid) {
  EXPECT_EQ(Curve("Quantity=\"R\",XMin=-100,XMax=100,XPts=3").size(), 3u);
}

TEST_F(CurveExports, ThePointsOfTheMeshTakeTheGridsPlace) {
  folder.Write("R.dat", "100 .5\n200 .6\n300 .7\n400 .5\n");
  const std::string mesh = OscillatorModel(kMode) + "LoadDataset(MasterFile=\"R.dat\");";
  Run(mesh + "VarDielFunc(ModelNo=1,Source1DatasetNo=1);" +
      Export("mesh", "Quantity=\"R\",XMethod=2,XMin=1,XMax=2,XPts=1,XGrid=2") +
      Export("grid", "Quantity=\"R\",XMin=100,XMax=400,XPts=4"));
  EXPECT_EQ(folder.Read("mesh"), folder.Read("grid"));
  ASSERT_EQ(Written("mesh").size(), 4u);
  EXPECT_EQ(Written("mesh")[2][0], 300);
}

TEST_F(CurveExports, AMeshThatIsOffOrMissingGivesAnEmptyFile) {
  folder.Write("R.dat", "100 .5\n200 .6\n");
  const std::string items = "Quantity=\"R\",XMethod=2,XMin=1,XMax=2,XPts=3";
  EXPECT_TRUE(Curve(items).empty());
  Run("NewModel();LoadDataset(MasterFile=\"R.dat\");VarDielFunc(ModelNo=1,Source1DatasetNo=1,On=0);" +
      Export("off", items));
  EXPECT_EQ(folder.Read("off"), "");
}

TEST_F(CurveExports, EachNeedIsNamedAndLeavesNoFile) {
  const struct {
    const char* items;
    const char* said;
  } kCases[] = {
      {"ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3", "File is missing"},
      {"File=\"c\",Quantity=\"R\",XMin=1,XMax=5,XPts=3", "ModelNo is missing"},
      {"File=\"c\",ModelNo=1,XMin=1,XMax=5,XPts=3", "Quantity is missing"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMax=5,XPts=3", "XMin is missing"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=1,XPts=3", "XMax is missing"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5", "XPts is missing"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=0", "XPts should be at least 1"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=-3", "XPts should be at least 1"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=5,XMax=5,XPts=3", "XMin should be below XMax"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=6,XMax=5,XPts=3", "XMin should be below XMax"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=0,XMax=5,XPts=3,XGrid=2", "a logarithmic grid needs XMin above 0"},
      {"File=\"c\",ModelNo=1,Quantity=\"R\",XMin=-1,XMax=5,XPts=3,XGrid=2", "a logarithmic grid needs XMin above 0"},
      {"File=\"no/c\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3", "'no/c' cannot be written"},
      {"File=\"\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3", "'' cannot be written"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(SaidLast("NewModel();ExportModelCurve(" + std::string(c.items) + ");"),
              "nothing done: " + std::string(c.said));
    EXPECT_FALSE(folder.Has("c")) << c.items;
  }
}

TEST_F(CurveExports, AFailedConditionLeavesAnOldFileAlone) {
  folder.Write("c", "old");
  Run("NewModel();" + Export("c", "Quantity=\"R\",XMin=5,XMax=5,XPts=3"));
  EXPECT_EQ(folder.Read("c"), "old");
}

TEST_F(CurveExports, AMissingModelOrQuantityLeavesAnEmptyFile) {
  folder.Write("a", "old");
  EXPECT_EQ(SaidLast("ExportModelCurve(File=\"a\",ModelNo=1,Quantity=\"R\",XMin=1,XMax=5,XPts=3);"),
            "model 1 does not exist, so 'a' is empty");
  EXPECT_EQ(folder.Read("a"), "");
  EXPECT_EQ(SaidLast("NewModel();ExportModelCurve(File=\"b\",ModelNo=1,Quantity=\"Refl\",XMin=1,XMax=5,XPts=3);"),
            "'Refl' is not a Quantity, so 'b' is empty");
  EXPECT_EQ(folder.Read("b"), "");
}

}  // namespace
}  // namespace kalvex

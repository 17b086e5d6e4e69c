#include "files/curve_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <limits>

#include "datasets/quantity.h"
#include "files/model_files.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

TEST_F(ModelFiles, CurvesWalkTheirGridByARunningSum) {
  ClearRows(model);
  CurveExport what;
  what.quantity = kE1;
  what.xMin = 0;
  what.xMax = 1;
  what.points = 11;
  ASSERT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("a")).Ok());
  std::size_t expected = 0;
  for (double x = 0; x <= 1; x += 1.0 / 10) ++expected;  // ten steps of 0.1 miss 1 by rounding
  EXPECT_EQ(NumbersOf(folder.Read("a")).size(), expected);
  EXPECT_EQ(folder.Read("a").substr(0, 10), "0 3\n0.1 3\n");
  what.points = 1;
  ASSERT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("a")).Ok());
  EXPECT_EQ(folder.Read("a"), "0 3\n");
  what.points = 5;
  what.grid = 3;
  ASSERT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("a")).Ok());
  EXPECT_EQ(folder.Read("a"), "");
}

TEST_F(ModelFiles, AStepTooSmallToMoveEndsToo) {
  CurveExport what;
  what.quantity = kE1;
  what.xMin = 1;
  what.xMax = 1 + 2.3e-16;
  what.points = 1000;
  ASSERT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("a")).Ok());
  EXPECT_LE(NumbersOf(folder.Read("a")).size(), 1001u);
}

TEST_F(ModelFiles, CurvesOnTheMeshTakeItsPoints) {
  ClearRows(model);
  model.vdf.mesh.resize(3);
  for (std::size_t i = 0; i < 3; ++i) {
    model.vdf.mesh[i].x = 10.0 * static_cast<double>(i + 1);
    model.vdf.mesh[i].e1.value = static_cast<double>(i);
  }
  CurveExport what;
  what.quantity = kE1;
  what.onMesh = true;
  ASSERT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("a")).Ok());
  EXPECT_EQ(folder.Read("a"), "");  // the variational function is off
  model.vdf.On = 1;
  ASSERT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("a")).Ok());
  EXPECT_EQ(folder.Read("a"), "10 3\n20 4\n30 5\n");
}

class Curves : public ModelFiles {
 protected:
  Curves() {
    what.quantity = kE1;
    what.xMin = 10;
    what.xMax = 50;
    what.points = 5;
  }
  std::string Export() {
    EXPECT_TRUE(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("curve")).Ok());
    return folder.Read("curve");
  }
  // eps1 of the default row: 3 + 100^2 (100^2 - x^2)/((100^2 - x^2)^2 + (10 x)^2)
  static double E1At(double x) {
    const double d = 1e4 - x * x;
    return 3 + 1e4 * d / (d * d + 100 * x * x);
  }
  static std::string Line(double x, double y) {
    char text[80];
    std::snprintf(text, sizeof(text), "%.6g %.6g\n", x, y);
    return text;
  }
  CurveExport what;
};

TEST_F(Curves, OnALinearGridAreXAndValueWithSixDigits) {
  std::string expected;
  for (const double x : {10.0, 20.0, 30.0, 40.0, 50.0}) expected += Line(x, E1At(x));
  EXPECT_EQ(Export(), expected);
}

TEST_F(Curves, OnALogarithmicGridTheExponentIsSummed) {
  what.grid = 2;
  what.xMin = 3;
  what.xMax = 700;
  what.points = 12;
  const double lo = std::log10(3.0), hi = std::log10(700.0), step = (hi - lo) / 11;
  std::string expected;
  for (double at = lo; at <= hi; at += step) expected += Line(std::pow(10.0, at), E1At(std::pow(10.0, at)));
  EXPECT_EQ(Export(), expected);
}

TEST_F(Curves, TheSumOfStepsDecidesHowManyPointsThereAre) {
  bool more = false, fewer = false;
  for (int points = 2; points < 200; ++points) {
    what.xMin = 0.1;
    what.xMax = 0.7;
    what.points = points;
    std::size_t expected = 0;
    for (double x = 0.1; x <= 0.7; x += (0.7 - 0.1) / (points - 1)) ++expected;
    EXPECT_EQ(NumbersOf(Export()).size(), expected) << points;
    more |= expected == static_cast<std::size_t>(points);
    fewer |= expected < static_cast<std::size_t>(points);
  }
  EXPECT_TRUE(more && fewer);
}

TEST_F(Curves, WhereRoundingShortensTheStepsThereAreMorePoints) {
  // Near 1e16 neighbouring doubles differ by 2, so a step of 2.9 becomes 2.
  what.xMin = 1e16;
  what.xMax = 1e16 + 290;
  what.points = 101;
  EXPECT_EQ(NumbersOf(Export()).size(), 146u);
}

TEST_F(Curves, AStepThatDoesNotMoveXEndsWithItsPoint) {
  what.xMin = 1e16;
  what.xMax = 1e16 + 4;
  what.points = 9;
  EXPECT_EQ(NumbersOf(Export()).size(), 1u);
}

TEST_F(Curves, OnePointStandsAtTheStartOfEitherGrid) {
  what.points = 1;
  EXPECT_EQ(Export(), Line(10, E1At(10)));
  what.grid = 2;
  EXPECT_EQ(Export(), Line(10, E1At(10)));
}

TEST_F(Curves, EndlessLimitsEndToo) {
  what.xMax = std::numeric_limits<double>::infinity();
  EXPECT_LE(NumbersOf(Export()).size(), 2u);
  what.xMin = -what.xMax;
  EXPECT_LE(NumbersOf(Export()).size(), 2u);
}

TEST_F(Curves, DerivativesByThePartsOfEpsFollowOnALogarithmicGridOnly) {
  what.derivatives = true;
  what.quantity = kS1;  // x Im(eps)/60: derivatives 0 and x/60
  EXPECT_EQ(NumbersOf(Export())[0].size(), 2u);
  what.grid = 2;
  const auto lines = NumbersOf(Export());
  ASSERT_EQ(lines.size(), 5u);
  for (const auto& line : lines) {
    ASSERT_EQ(line.size(), 4u);
    const double x = line[0], d = 1e4 - x * x, imaginary = 1e4 * 10 * x / (d * d + 100 * x * x);
    EXPECT_CLOSE(line[1], x * imaginary / 60, 4 * kSixDigits);  // x itself has six digits
    EXPECT_EQ(line[2], 0);
    EXPECT_CLOSE(line[3], x / 60, 4 * kSixDigits);
  }
}

TEST_F(Curves, OnTheMeshLimitsGridAndDerivativesDoNotMatter) {
  ClearRows(model);
  model.vdf.On = 1;
  model.vdf.mesh.resize(2);
  model.vdf.mesh[0].x = 1.5;
  model.vdf.mesh[1].x = 1000;
  model.vdf.mesh[1].e1.value = -4.25;
  what.onMesh = true;
  for (const int grid : {1, 2, 3}) {
    for (const bool derivatives : {false, true}) {
      what.grid = grid;
      what.derivatives = derivatives;
      EXPECT_EQ(Export(), "1.5 3\n1000 -1.25\n");
    }
  }
}

TEST_F(Curves, OnAMeshThatIsOffOrEmptyThereIsNothing) {
  what.onMesh = true;
  model.vdf.On = 1;
  EXPECT_EQ(Export(), "");
  model.vdf.On = 0;
  model.vdf.mesh.resize(2);
  model.vdf.mesh[1].x = 10;
  EXPECT_EQ(Export(), "");
}

TEST_F(Curves, AMissingModelOrQuantityLeavesAnEmptyFile) {
  folder.Write("curve", "old content");
  EXPECT_TRUE(ExportModelCurve(tables.params, tables.eval, nullptr, what, folder.Path("curve")).Ok());
  EXPECT_EQ(folder.Read("curve"), "");
  folder.Write("curve", "old content");
  what.quantity.reset();
  EXPECT_EQ(Export(), "");
}

TEST_F(Curves, AFileThatCannotBeOpenedIsAFailure) {
  EXPECT_EQ(ExportModelCurve(tables.params, tables.eval, &model, what, folder.Path("no folder/curve")).Code(),
            StatusCode::kCannotWrite);
}

TEST_F(Curves, LongerThanOneBlockTheyHaveNoSeam) {
  what.xMin = 0.5;
  what.xMax = 9000.5;
  what.points = 9001;
  const auto lines = NumbersOf(Export());
  ASSERT_EQ(lines.size(), 9001u);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    ASSERT_EQ(lines[i][0], 0.5 + static_cast<double>(i));
    ASSERT_NEAR(lines[i][1], E1At(lines[i][0]), 2 * kSixDigits * std::fabs(E1At(lines[i][0])) + kChain);
  }
}

}  // namespace
}  // namespace kalvex

#include "evaluation/vdf_eval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>
#include <random>

#include "evaluation/eps_sum.h"
#include "evaluation/mesh_samples.h"
#include "records/model_table.h"
#include "support/tables.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

const std::vector<double> kMesh = {20, 35, 60, 61, 100, 170, 400};

VarDielFunc RandomMesh(bool kk) {
  VarDielFunc vdf = MeshAt(kMesh, kk);
  std::mt19937 random(5);
  std::uniform_real_distribution<double> value(-1, 4);
  for (std::size_t i = 0; i < vdf.mesh.size(); ++i) {
    const bool end = i == 0 || i + 1 == vdf.mesh.size();
    vdf.mesh[i].e1.value = value(random);
    vdf.mesh[i].e2.value = kk && end ? 0 : value(random);
  }
  return vdf;
}

double Linear(const VarDielFunc& vdf, double x, ModelParam VdfMeshPoint::*part) {
  for (std::size_t i = 0; i + 1 < vdf.mesh.size(); ++i) {
    const VdfMeshPoint& a = vdf.mesh[i];
    const VdfMeshPoint& b = vdf.mesh[i + 1];
    if (x >= a.x && x <= b.x) return (a.*part).value + ((b.*part).value - (a.*part).value) * (x - a.x) / (b.x - a.x);
  }
  return 0;
}

double Simpson(const std::function<double(double)>& f, double a, double b, int steps) {
  const double h = (b - a) / steps;
  double sum = f(a) + f(b);
  for (int i = 1; i < steps; ++i) sum += (i % 2 ? 4 : 2) * f(a + i * h);
  return sum * h / 3;
}

// (2/pi) P-integral of w e2(w)/(w^2 - X^2), segment by segment. The value at X is subtracted from the integrand and
// added in closed form: P-integral of dw/(w^2 - X^2) = log|(w - X)/(w + X)|/(2X).
double SlowTransform(const VarDielFunc& vdf, double X) {
  const double at = Linear(vdf, X, &VdfMeshPoint::e2);
  const auto integrand = [&](double w) {
    if (std::fabs(w - X) < 1e-9) w = X + 1e-9;
    return (w * Linear(vdf, w, &VdfMeshPoint::e2) - X * at) / (w * w - X * X);
  };
  double sum = 0;
  for (std::size_t i = 0; i + 1 < vdf.mesh.size(); ++i) {
    const double a = vdf.mesh[i].x, b = vdf.mesh[i + 1].x;
    const bool inside = X > a && X < b;
    sum += inside ? Simpson(integrand, a, X, 4000) + Simpson(integrand, X, b, 4000) : Simpson(integrand, a, b, 4000);
  }
  const auto primitive = [&](double w) { return std::log(std::fabs((w - X) / (w + X))) / (2 * X); };
  return 2 / std::numbers::pi * (sum + X * at * (primitive(vdf.mesh.back().x) - primitive(vdf.mesh.front().x)));
}

TEST(VdfFree, BothPartsAreLinearBetweenThePointsAndZeroOutside) {
  VarDielFunc vdf = RandomMesh(false);
  for (const double x : {20.0, 25.0, 60.5, 99.0, 250.0, 400.0}) {
    const Cplx value = EvalVdf(vdf, x);
    EXPECT_NEAR(value.re, Linear(vdf, x, &VdfMeshPoint::e1), kFormula) << x;
    EXPECT_NEAR(value.im, Linear(vdf, x, &VdfMeshPoint::e2), kFormula) << x;
  }
  for (const double x : {19.9, 400.1}) EXPECT_EQ(EvalVdf(vdf, x), (Cplx{0, 0}));
}

TEST(VdfFree, TheLastPointGivesItsOwnValues) {
  VarDielFunc vdf = RandomMesh(false);
  EXPECT_EQ(EvalVdf(vdf, 400), (Cplx{vdf.mesh.back().e1.value, vdf.mesh.back().e2.value}));
}

TEST(VdfConstrained, TheRealPartIsTheTransformOfTheTriangles) {
  constexpr double kCut = 2e-5;  // the reference integrand is cut off at X
  VarDielFunc vdf = RandomMesh(true);
  for (const double x : {5.0, 19.0, 27.0, 60.4, 80.0, 130.0, 300.0, 401.0, 2000.0}) {
    EXPECT_NEAR(EvalVdf(vdf, x).re, SlowTransform(vdf, x), kCut) << x;
  }
}

TEST(VdfConstrained, TheTransformIsContinuousAtACorner) {
  constexpr double kBesideIt = 1e-5;  // the logarithm at a distance of 1e-7
  VarDielFunc vdf = RandomMesh(true);
  for (const double x : {35.0, 61.0, 170.0}) {
    const double here = EvalVdf(vdf, x).re;
    EXPECT_TRUE(std::isfinite(here));
    EXPECT_NEAR(here, EvalVdf(vdf, x + 1e-7).re, kBesideIt);
    EXPECT_NEAR(here, EvalVdf(vdf, x - 1e-7).re, kBesideIt);
  }
}

TEST(VdfConstrained, BelowTheMeshTheTailIsThereAndTheImaginaryPartIsNot) {
  VarDielFunc vdf = RandomMesh(true);
  const Cplx value = EvalVdf(vdf, 10);
  EXPECT_NE(value.re, 0);
  EXPECT_EQ(value.im, 0);
}

TEST(VdfConstrained, TwoPointsHoldNoTriangle) {
  VarDielFunc vdf = MeshAt({100, 200}, true);
  EXPECT_EQ(EvalVdf(vdf, 150), (Cplx{0, 0}));
  EXPECT_EQ(vdf.mesh[0].e2.adjustable + vdf.mesh[1].e2.adjustable, 0u);
}

TEST(Vdf, OnePointIsItsOwnMesh) {
  for (const bool kk : {false, true}) {
    VarDielFunc vdf = MeshAt({100}, kk);
    vdf.mesh[0].e2.value = 3;
    std::vector<MeshSlopes> slopes(1);
    EXPECT_EQ(EvalVdf(vdf, 100, slopes).im, 3);
    EXPECT_EQ(EvalVdf(vdf, 99, slopes), (Cplx{0, 0}));
  }
}

TEST(Vdf, DerivativesAgreeWithDifferenceQuotients) {
  for (const bool kk : {false, true}) {
    const VarDielFunc vdf = RandomMesh(kk);
    std::vector<MeshSlopes> slopes(vdf.mesh.size());
    for (const double x : {15.0, 20.0, 47.0, 61.0, 222.0, 400.0, 500.0}) {
      EvalVdf(vdf, x, slopes);
      for (std::size_t j = 0; j < vdf.mesh.size(); ++j) {
        for (const auto& [part, slope] :
             {std::pair(&VdfMeshPoint::e1, &MeshSlopes::e1), std::pair(&VdfMeshPoint::e2, &MeshSlopes::e2)}) {
          VarDielFunc moved = vdf;
          const ModelParam& param = vdf.mesh[j].*part;
          const auto at = [&, part = part](double value) {
            (moved.mesh[j].*part).value = value;
            return EvalVdf(moved, x);
          };
          // The value is linear in its parameters, so one wide quotient is exact but for rounding.
          const Cplx high = at(param.value + 1), low = at(param.value - 1);
          EXPECT_NEAR((slopes[j].*slope).dEpsRe, (high.re - low.re) / 2, kFormula) << x << ' ' << j;
          EXPECT_NEAR((slopes[j].*slope).dEpsIm, (high.im - low.im) / 2, kRound) << x << ' ' << j;
        }
      }
    }
  }
}

TEST(Vdf, GradientMarksWhatTheSumDependsOn) {
  std::vector<MeshSlopes> constrained(3), free(2);
  VdfGradient(MeshAt({1, 2, 3}, true), constrained);
  EXPECT_EQ(constrained[0].e2.dEpsRe, 0);
  EXPECT_EQ(constrained[1].e2.dEpsRe, 1);
  EXPECT_EQ(constrained[1].e2.dEpsIm, 1);
  VdfGradient(MeshAt({1, 2}, false), free);
  EXPECT_EQ(free[0].e1.dEpsRe, 1);
  EXPECT_EQ(free[0].e1.dEpsIm, 0);
  EXPECT_EQ(free[1].e2.dEpsRe, 0);
  EXPECT_EQ(free[1].e2.dEpsIm, 1);
}

TEST(VdfScalarSum, IsTheIntegralOfWE2) {
  VarDielFunc vdf = RandomMesh(true);
  for (const double limit : {10.0, 20.0, 50.0, 61.0, 399.0, 1000.0}) {
    double integral = 0;
    for (std::size_t i = 0; i + 1 < vdf.mesh.size(); ++i) {
      const double a = vdf.mesh[i].x, b = std::min(vdf.mesh[i + 1].x, limit);
      // Simpson's rule is exact for a polynomial of second degree.
      if (b > a) integral += Simpson([&](double w) { return w * Linear(vdf, w, &VdfMeshPoint::e2); }, a, b, 2);
    }
    const double expected = integral / (4 * std::numbers::pi);
    EXPECT_NEAR(VdfScalarSum(vdf, limit), expected, kFormula * (1 + std::fabs(expected))) << limit;
  }
}

TEST(VdfScalarSum, DerivativesAgreeWithDifferenceQuotients) {
  const VarDielFunc vdf = RandomMesh(false);
  std::vector<MeshSlopes> slopes(vdf.mesh.size());
  VdfScalarSum(vdf, 150, slopes);
  for (std::size_t j = 0; j < vdf.mesh.size(); ++j) {
    VarDielFunc moved = vdf;
    const auto at = [&](double value) {
      moved.mesh[j].e2.value = value;
      return VdfScalarSum(moved, 150);
    };
    const double value = vdf.mesh[j].e2.value;
    EXPECT_NEAR(slopes[j].e2.dScalar, (at(value + 1) - at(value - 1)) / 2, kLongSum) << j;
    EXPECT_EQ(slopes[j].e1.dScalar, 0);
  }
}

TEST(VdfScalarGradient, MarksTheImaginaryParts) {
  std::vector<MeshSlopes> slopes(3);
  VdfScalarGradient(slopes);
  EXPECT_EQ(slopes[1].e1.dScalar, 0);
  EXPECT_EQ(slopes[1].e2.dScalar, 1);
}

class ModelWithMesh : public testing::Test {
 protected:
  ModelWithMesh() : model(*CreateModel(program.params)) {
    model.vdf = RandomMesh(true);
    Cell(model, 0, Wo).value = 120;
  }
  Tables program;
  Model& model;
};

TEST_F(ModelWithMesh, TheSumAddsItAfterTheRowsOnlyWhileOn) {
  const Cplx with = EpsSum(program.eval, model, 90, false);
  const Cplx vdf = EvalVdf(model.vdf, 90);
  model.vdf.On = 0;
  EXPECT_EQ(with, EpsSum(program.eval, model, 90, false) + vdf);
}

TEST_F(ModelWithMesh, TheRealSumAddsItsWeight) {
  const double with = ScalarSum(program.eval, model, 90, false);
  const double vdf = VdfScalarSum(model.vdf, 90);
  model.vdf.On = 0;
  EXPECT_CLOSE(with, ScalarSum(program.eval, model, 90, false) + vdf, kRound);
}

TEST_F(ModelWithMesh, MakingItPositiveLeavesNoNegativeImaginaryPartAtThePoints) {
  for (VdfMeshPoint& point : model.vdf.mesh) point.e2.value = -50;
  MakeVdfPositive(program.eval, model);
  for (const VdfMeshPoint& point : model.vdf.mesh) {
    EXPECT_NEAR(EpsSum(program.eval, model, point.x, false).im, 1e-7, kChain) << point.x;
  }
  Cell(model, 0, Wp).value = 1e4;  // the row alone is sufficient: no correction
  const Cplx before = EpsSum(program.eval, model, 61, false);
  MakeVdfPositive(program.eval, model);
  EXPECT_EQ(EpsSum(program.eval, model, 61, false), before);
}

}  // namespace
}  // namespace kalvex

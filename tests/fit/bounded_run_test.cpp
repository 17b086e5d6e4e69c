// The bounded fit of spectra: limits, groups, stop rules and what the report says of them.
#include "fit/running.h"

namespace kalvex {
namespace {

// Relative: data without noise.
constexpr double kConverged = 1e-6;

class BoundedRun : public Running {
 protected:
  BoundedRun() { options().Method = 2; }
};

TEST_F(BoundedRun, FindsTheTrueValues) {
  Prepare();
  s.Run();
  EXPECT_TRUE(fit().report.converged) << Stop();
  EXPECT_NEAR(Cell(model, 0, Wo).value, 120, 120 * kConverged);
  EXPECT_NEAR(Cell(model, 0, G).value, 8, 8 * kConverged);
}

TEST_F(BoundedRun, AValueOutsideOfItsLimitsIsMovedInsideAndNamed) {
  Prepare();
  ModelParam& g = Cell(model, 0, G);
  g.useMin = 1;
  g.min = 5;
  g.value = 2;  // as a model file can give it
  s.Rebuild();
  s.Run();
  ASSERT_EQ(fit().report.movedInside.size(), 1u);
  EXPECT_EQ(fit().params[static_cast<std::size_t>(fit().report.movedInside[0])].place.nc, G);
  EXPECT_NEAR(g.value, 8, 8 * kConverged);
}

TEST_F(BoundedRun, TheLimitsOfEveryMemberOfAGroupApply) {
  PrepareConstant(9);
  Model& other = s.AddModel(4, 120, 250, 8);
  FixAll(other, true);
  other.epsInf.adjustable = 1;
  model.epsInf.coupling = other.epsInf.coupling = 1;
  other.epsInf.useMax = 1;
  other.epsInf.max = 6;
  s.Measure(2, other, kE1);
  s.Term(2, other.number);
  s.Run();
  EXPECT_LE(other.epsInf.value, 6);
  EXPECT_EQ(model.epsInf.value, other.epsInf.value);
}

TEST_F(BoundedRun, TheTimeEndsManyStarts) {
  Prepare(0.05);
  options().StopOnTime = true;
  options().MaxSeconds = 0;
  FitObserver silent;
  ASSERT_TRUE(RunFit(fit(), s.tables.params, s.tables.eval, s.tables.platform, silent, {1000000, 1}).Ok());
  EXPECT_EQ(Stop(), "time");
}

// The damped loop comes to the limit 0, and never exactly there.
TEST_F(Running, TheDampedLoopNamesAParameterThatItKeepsOnALimitOfZero) {
  PrepareConstant(-20);
  model.epsInf.useMin = 1;
  model.epsInf.min = 0;
  s.Run();
  EXPECT_LT(model.epsInf.value, 1e-5);
  EXPECT_EQ(fit().report.onLimit, std::vector{0});
}

}  // namespace
}  // namespace kalvex

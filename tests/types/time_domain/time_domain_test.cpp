// Compares pulses with direct sums, unit and delay transfer functions, and slabs. Tests that every change updates a
// cached pulse.
#include "datasets/interpolation.h"
#include "evaluation/eval_spectrum.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class Pulses : public TypeFixture {
 protected:
  static constexpr int kPoints = 64;
  Pulses() {
    Load(2, 0, 12, [](double t) { return (1 - 3 * (t - 4) * (t - 4)) * std::exp(-(t - 4) * (t - 4) / 0.4) + 0.02; });
    sample = Medium(2, {{6, 3, 2}});
  }
  Model& MakePulse(int code, double mode, double low, double high, std::array<double, 3> row = {}) {
    return Make(code, {{sample, 2, 0}, {0, 12, kPoints}, row, {mode, low, high}});
  }
  double Reference(double t) { return DatasetValueAt(program.datasets.slots[1], t); }
  static constexpr double kStep = 12.0 / (kPoints - 1);
  static double Frequency(int k) { return k * 5 / kStep / kPoints; }
  // The transform of the reference over N.
  std::vector<C> Spectrum() {
    std::vector<C> S(kPoints / 2 + 1);
    for (int k = 0; k <= kPoints / 2; ++k) {
      for (int j = 0; j < kPoints; ++j) {
        S[static_cast<std::size_t>(k)] +=
            Reference(j * kStep) * std::polar(1.0 / kPoints, -2 * std::numbers::pi * j * k / kPoints);
      }
    }
    return S;
  }
  template <class Transfer>
  double Trace(int j, Transfer transfer) {
    double sum = 0;
    const std::vector<C> S = Spectrum();
    for (int k = 0; k <= kPoints / 2; ++k) {
      const double times = k == 0 || k == kPoints / 2 ? 1 : 2;
      sum += times *
             (S[static_cast<std::size_t>(k)] * transfer(k) * std::polar(1.0, 2 * std::numbers::pi * j * k / kPoints))
                 .real();
    }
    return sum;
  }
  double sample = 0;
};

TEST_F(Pulses, WithAWholeWindowAndNoTransferComeOutAsTheyWentIn) {
  Model& model = MakePulse(20, 2, 0, 1e9);
  for (const double t : {0.0, 3.1, 4.05, 11.9}) {
    EXPECT_NEAR(At(model, kRp, t), At(model, kRefl, t), kRound);
  }
  EXPECT_NEAR(At(model, kRefl, 10 * kStep), Reference(10 * kStep), kRound);
  EXPECT_NEAR(At(model, kRefl, 10.25 * kStep), 0.75 * Reference(10 * kStep) + 0.25 * Reference(11 * kStep), kRound);
  EXPECT_EQ(At(model, kE1, 3), 1);
  EXPECT_EQ(At(model, kE2, 3), 0);
  EXPECT_EQ(At(model, kRefl, -0.1), 0);
  EXPECT_EQ(At(model, kRefl, 12.1), 0);
}

TEST_F(Pulses, AreTheDirectSumsOfTheirHarmonics) {
  Model& model = MakePulse(20, 3, 2, 9);
  const auto H = [&](int k) {
    const double f = Frequency(k);
    return f >= 2 && f <= 9 ? Eps(sample, f) : C(0);
  };
  for (const int j : {0, 17, 40}) EXPECT_NEAR(At(model, kRp, j * kStep), Trace(j, H), kFormula) << j;
  const std::vector<C> S = Spectrum();
  for (const int k : {3, 10, 20}) {
    EXPECT_NEAR(At(model, kTrans, Frequency(k)), std::norm(S[static_cast<std::size_t>(k)]), kRound);
    EXPECT_NEAR(At(model, kRs, Frequency(k)), std::norm(S[static_cast<std::size_t>(k)] * H(k)), kRound);
    EXPECT_LT(std::abs(Pair(model, kE1, Frequency(k)) - H(k)), kLongSum);
  }
  // Between mesh points the power itself is interpolated.
  EXPECT_NEAR(At(model, kTrans, 0.5 * (Frequency(10) + Frequency(11))), 0.5 * (std::norm(S[10]) + std::norm(S[11])),
              kRound);
}

TEST_F(Pulses, TakeTheirTransferByMode) {
  for (const auto& [mode, quantity] : {std::pair(0.0, kS1), std::pair(1.9, kTrans)}) {
    Model& model = MakePulse(20, mode, 1, 9);
    const double f = Frequency(9), value = At(ModelOf(sample), quantity, f);
    EXPECT_NEAR(At(model, kE1, f), quantity == kS1 ? value : std::sqrt(value), kRound);
    EXPECT_EQ(At(model, kE2, f), 0);
  }
  EXPECT_EQ(At(MakePulse(20, 7, 1, 9), kE1, Frequency(9)), 0);
}

TEST_F(Pulses, KeepWhatIsWantedOutside) {
  Model& model = MakePulse(20, 3, 1, 9);
  EXPECT_EQ(Status(model, 4), 0);
  for (const QuantityResult& quantity : program.eval.quantities) EXPECT_EQ(quantity.wanted, 1u);
  EXPECT_EQ(Left(kN1), 0);
}

TEST_F(Pulses, ThroughTwoModelsAreMultipliedAndMayLieHalfAStepLater) {
  const double second = Medium(1.5, {{9, 2, 1}});
  Model& model = MakePulse(22, 3, 1, 9, {second, 0, 0});
  const double f = Frequency(12);
  EXPECT_LT(std::abs(Pair(model, kE1, f) - Eps(sample, f) * Eps(second, f)), kLongSum);
  Model& alone = MakePulse(22, 3, 1, 9);
  EXPECT_LT(std::abs(Pair(alone, kE1, f) - Eps(sample, f)), kLongSum);
  Model& later = MakePulse(22, 2, 0, 1e9, {0, 1, 0});
  EXPECT_NEAR(At(later, kRefl, 20.5 * kStep), Reference(20.5 * kStep), kRound);
}

TEST_F(Pulses, WithADelayOfWholeStepsShiftCyclically) {
  constexpr double kHighest = 2e-3;  // the highest frequency has no phase
  Model& model = MakePulse(91, 2, 0, 1e9, {3 * kStep, 0, 0});
  for (const int j : {5, 30}) EXPECT_NEAR(At(model, kRp, j * kStep), Reference((j - 3) * kStep), kHighest) << j;
  EXPECT_NEAR(At(model, kRp, 1 * kStep), Reference((1 - 3 + kPoints) * kStep), kHighest);
  EXPECT_NEAR(At(MakePulse(91, 3, 1, 9), kRp, 4), At(MakePulse(20, 3, 1, 9), kRp, 4), kFormula);
}

class Slabs : public Pulses {
 protected:
  Model& MakeSlab(double eps, double mu, double d, double passes) {
    return Make(51, {{eps, 2, 0}, {0, 12, kPoints}, {mu, d, passes}, {0, 0.5, 1e9}});
  }
};

TEST_F(Slabs, OfVacuumDoNothing) {
  const double vacuum = Medium(1);
  Model& model = MakeSlab(vacuum, 0, 0.3, 0);
  for (const double f : {2.0, 7.0}) EXPECT_LT(std::abs(Pair(model, kE1, f) - 1.0), kFormula);
}

TEST_F(Slabs, HaveTheAmplitudeOfAllTheirEchoes) {
  Model& model = MakeSlab(sample, 0, 0.05, 0);
  const double f = Frequency(10);
  const C n = std::sqrt(Eps(sample, f));
  const auto [r, t] = SlowStack({{n, n, 0.05}}, 1, 1, f);
  const C H = t * std::exp(-2 * std::numbers::pi * kI * f * 0.05);
  EXPECT_LT(std::abs(Pair(model, kE1, f) - H), kChain);
  // A single pass: both faces and the path.
  Model& once = MakeSlab(sample, 0, 0.05, 1);
  const C direct = 4.0 * n / ((1.0 + n) * (1.0 + n)) * std::exp(2 * std::numbers::pi * kI * f * (n - 1.0) * 0.05);
  EXPECT_LT(std::abs(Pair(once, kE1, f) - direct), kChain);
  Model& many = MakeSlab(sample, 0, 0.05, 200);
  EXPECT_LT(std::abs(Pair(many, kE1, f) - H), kChain);
}

TEST_F(Slabs, DelayThePulse) {
  constexpr double kBetweenPoints = 0.1, kHeight = 0.03;  // linear interpolation between steps of 0.2
  // Index 2 without loss: the main pulse arrives (n - 1) d later, in steps of mm of a stage that is passed twice.
  const double glass = Medium(4), delay = 0.1;  // cm
  Model& model = MakeSlab(glass, 0, delay, 1);
  Cell(model, 3, Wp).value = 0;
  double latest = 0, best = 0;
  for (double t = 0; t < 12; t += 0.01) {
    if (At(model, kRp, t) > best) best = At(model, kRp, t), latest = t;
  }
  // f in cm-1 = 5 k/(dt N): a path of L cm is L/0.2 units of the axis.
  EXPECT_NEAR(latest - 4, delay / 0.2, kBetweenPoints);
  EXPECT_NEAR(best, 8.0 / 9, kHeight);
}

TEST_F(Slabs, WithEqualPermittivityAndPermeabilityHaveNoEcho) {
  const double matched = Medium(2.5);
  Model& all = MakeSlab(matched, matched, 0.05, 0);
  const double f = Frequency(9);
  EXPECT_LT(std::abs(Pair(all, kE1, f) - std::exp(2 * std::numbers::pi * kI * f * 1.5 * 0.05)), kChain);
}

TEST_F(Pulses, WithoutAReferenceOrAModelFail) {
  Model& model = MakePulse(20, 3, 1, 9);
  Cell(model, 0, Wp).value = 9;
  EXPECT_EQ(Status(model, 4), -1);
  EXPECT_EQ(Left(kRefl), 77);
  Cell(model, 0, Wp).value = 2.9;
  EXPECT_EQ(Status(model, 4), 0);
  Cell(model, 1, G).value = 1e12;
  EXPECT_EQ(Status(model, 4), -1);
  Cell(model, 1, G).value = -5;
  EXPECT_EQ(Status(model, 4), 0);
}

TEST_F(Pulses, AreTheSameInASpectrumAndOneByOneAndNoticeEveryChange) {
  Model& model = MakePulse(20, 3, 1, 9);
  const std::vector<double> x = {11, 2, 4, 4.3, 0.5};
  std::vector<QuantitySet> wanted(x.size(), QuantitySet{kRp});
  const auto spectrum = [&] {
    std::vector<double> values;
    SpectrumRequest request;
    request.x = x;
    request.wanted = wanted;
    EvalSpectrum(program.eval, model, request, [&](const SpectrumBlock& block) {
      for (std::size_t i = 0; i < block.count; ++i) values.push_back(block.Value(kRp, i));
    });
    return values;
  };
  const auto oneByOne = [&] {
    std::vector<double> values;
    for (const double at : x) values.push_back(At(model, kRp, at));
    return values;
  };
  std::vector<double> last;
  const auto check = [&](const char* what) {
    const auto now = spectrum();
    EXPECT_EQ(now, oneByOne()) << what;
    EXPECT_NE(now, last) << what;
    last = now;
  };
  check("as it is");
  ModelOf(sample).epsInf.value += 0.5;
  check("the partner's value");
  program.datasets.slots[1].points[80].y += 0.1;
  check("the reference");
  Cell(model, 3, G).value = 7;
  check("the window");
  Cell(model, 1, Wp).value = 11.5;
  check("the mesh");
  Cell(model, 3, Wo).value = 0;
  check("the mode");
}

}  // namespace
}  // namespace kalvex

#include "evaluation/quantity_formulas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <numbers>
#include <random>

#include "core/files.h"
#include "records/model.h"
#include "support/difference_quotient.h"
#include "support/scratch_folder.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

using Std = std::complex<double>;
using ExpParamBlock = std::array<ModelParam, kExpParamCount>;

constexpr double kWeightSum = 1.000074097;

ExpParamBlock Block(double thickness, double spread, double angle, double angleSpread, double scaleR, double scaleT) {
  ExpParamBlock block = DefaultExpParams();
  const double values[] = {thickness, spread, angle, angleSpread, scaleR, scaleT};
  for (std::size_t k = 0; k < block.size(); ++k) {
    block[k].value = values[k];
    block[k].adjustable = 1;
  }
  return block;
}

QuantityResult OfEps(double w, const ExpParamBlock& exp, Std eps, Quantity quantity) {
  QuantityResult out;
  QuantityOfEps({w, true, false, &exp}, {eps.real(), eps.imag()}, quantity, out);
  return out;
}

QuantityResult OfEpsMu(double w, const ExpParamBlock& exp, Std eps, Std mu, Quantity quantity) {
  QuantityResult out;
  QuantityOfEpsMu({w, true, false, &exp}, {eps.real(), eps.imag()}, {mu.real(), mu.imag()}, quantity, out);
  return out;
}

// The whole table in std::complex, with a permeability if there is one. magnetic selects one of the two forms, which
// differ in the branches of their roots.
double Judge(double w, const ExpParamBlock& exp, Std eps, Std mu, bool magnetic, Quantity quantity) {
  const Std i(0, 1), a = std::sqrt(eps), b = std::sqrt(mu), n = a * b, r = (b - a) / (b + a);
  const auto value = [&](ExpParam k) { return exp[static_cast<std::size_t>(k)].value; };
  const auto average = [&](double mean, double spread, auto amplitude, double scale) {
    double sum = 0;
    for (const AveragingNode& node : kAveragingNodes) {
      sum += std::norm(amplitude(((2 * node.x - 1) * spread + 1) * mean)) * node.g * scale;
    }
    return sum;
  };
  const auto oblique = [&](double degrees) {
    const double c = std::cos(degrees * std::numbers::pi / 180),
                 s2 = std::pow(std::sin(degrees * std::numbers::pi / 180), 2);
    const Std m = std::sqrt(eps - s2), mp = std::sqrt(mu - s2 / eps), ms = std::sqrt(eps - s2 / mu);
    const Std rp = magnetic ? (a * c - mp) / (a * c + mp) : (eps * c - m) / (eps * c + m);
    const Std rs = magnetic ? (b * c - ms) / (b * c + ms) : (c - m) / (c + m);
    return quantity == kRp ? rp : quantity == kRs ? rs : rp / rs;
  };
  const auto plate = [&](double d) {
    const Std E = std::exp(2 * std::numbers::pi * i * n * w * d);
    return quantity == kTrans ? (1.0 - r * r) * E / (1.0 - r * r * E * E) : (1.0 - r * r) * E;
  };
  switch (quantity) {
    case kRefl:
      return std::norm(r) * value(kScalingFactorOfR);
    case kTrans:
    case kDefringed:
      return average(value(kSampleThickness), value(kThicknessSpread), plate, value(kScalingFactorOfT));
    case kRp:
    case kRs:
    case kRps:
      return average(value(kAngleOfIncidence), value(kAngleSpread), oblique, value(kScalingFactorOfR));
    case kE1:
      return eps.real();
    case kE2:
      return eps.imag();
    case kS1:
      return (-i * w * (eps - 1.0) / 60.0).real();
    case kS2:
      return (-i * w * (eps - 1.0) / 60.0).imag();
    case kN1:
      return n.real();
    case kN2:
      return n.imag();
    case kDepth:
      return 1 / (2 * std::numbers::pi * w * n.imag());
    case kLoss:
      return (-1.0 / eps).imag();
    default:
      return 4 * std::numbers::pi * w * n.imag();
  }
}

struct Sample {
  double w;
  ExpParamBlock exp;
  Std eps, mu;
};

Sample RandomSample(unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> unit(0, 1);
  return {20 + 400 * unit(random),
          Block(1e-4 + 3e-3 * unit(random), 0.4 * unit(random), 5 + 75 * unit(random), 0.1 * unit(random),
                0.5 + unit(random), 0.5 + unit(random)),
          {-6 + 16 * unit(random), 0.05 + 4 * unit(random)},
          {0.4 + 2 * unit(random), 0.02 + unit(random)}};
}

bool OfMu(Quantity quantity) {
  return quantity != kE1 && quantity != kE2 && quantity != kS1 && quantity != kS2 && quantity != kLoss;
}

class EveryQuantity : public testing::TestWithParam<Quantity> {};

TEST_P(EveryQuantity, AgreesWithAPlainComplexComputation) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const Sample s = RandomSample(seed);
    EXPECT_CLOSE(OfEps(s.w, s.exp, s.eps, GetParam()).value, Judge(s.w, s.exp, s.eps, 1, false, GetParam()), kChain);
    const double magnetic = OfMu(GetParam()) ? Judge(s.w, s.exp, s.eps, s.mu, true, GetParam()) : 0;
    EXPECT_CLOSE(OfEpsMu(s.w, s.exp, s.eps, s.mu, GetParam()).value, magnetic, kChain);
  }
}

void ExpectSlope(double slope, const std::function<double(double)>& f, double x, double scale, const char* what) {
  const SlopeEstimate judge = RiddersSlope(f, x, scale);
  EXPECT_NEAR(slope, judge.value, kRidders * judge.error + kSlopeOfFormula * std::fabs(judge.value) + kFormula) << what;
}

TEST_P(EveryQuantity, DerivativesByEpsAgreeWithDifferenceQuotients) {
  const Quantity q = GetParam();
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const Sample s = RandomSample(seed);
    const QuantityResult plain = OfEps(s.w, s.exp, s.eps, q);
    const auto at = [&](Std eps) { return OfEps(s.w, s.exp, eps, q).value; };
    ExpectSlope(
        plain.dRe,
        [&](double x) {
          return at({x, s.eps.imag()});
        },
        s.eps.real(), 0.05, "Re eps");
    ExpectSlope(
        plain.dIm,
        [&](double x) {
          return at({s.eps.real(), x});
        },
        s.eps.imag(), 0.03, "Im eps");
  }
}

TEST_P(EveryQuantity, DerivativesByEpsAndMuAgreeWithDifferenceQuotients) {
  const Quantity q = GetParam();
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const Sample s = RandomSample(seed);
    const QuantityResult of = OfEpsMu(s.w, s.exp, s.eps, s.mu, q);
    const auto at = [&](Std eps, Std mu) { return OfEpsMu(s.w, s.exp, eps, mu, q).value; };
    ExpectSlope(
        of.dRe,
        [&](double x) {
          return at({x, s.eps.imag()}, s.mu);
        },
        s.eps.real(), 0.03, "Re eps");
    ExpectSlope(
        of.dIm,
        [&](double x) {
          return at({s.eps.real(), x}, s.mu);
        },
        s.eps.imag(), 0.03, "Im eps");
    ExpectSlope(
        of.dMuRe,
        [&](double x) {
          return at(s.eps, {x, s.mu.imag()});
        },
        s.mu.real(), 0.03, "Re mu");
    ExpectSlope(
        of.dMuIm,
        [&](double x) {
          return at(s.eps, {s.mu.real(), x});
        },
        s.mu.imag(), 0.01, "Im mu");
  }
}

TEST_P(EveryQuantity, DerivativesByExperimentalParametersAgreeWithDifferenceQuotients) {
  const Quantity q = GetParam();
  for (unsigned seed = 1; seed <= 20; ++seed) {
    const Sample s = RandomSample(seed);
    for (const bool magnetic : {false, true}) {
      const auto evaluate = [&](const ExpParamBlock& exp) {
        return magnetic ? OfEpsMu(s.w, exp, s.eps, s.mu, q) : OfEps(s.w, exp, s.eps, q);
      };
      const QuantityResult of = evaluate(s.exp);
      for (std::size_t k = 0; k < s.exp.size(); ++k) {
        ExpParamBlock moved = s.exp;
        const auto at = [&](double x) {
          moved[k].value = x;
          return evaluate(moved).value;
        };
        ExpectSlope(of.dExp[k], at, s.exp[k].value, 0.02 * s.exp[k].value + 1e-6, "experimental parameter");
      }
    }
  }
}

TEST_P(EveryQuantity, HugeAndTinyResponsesGiveTheLimitsAndLeaveTheExperimentalSlopesAlone) {
  constexpr auto kBig = FullTable<Quantity, double>({1, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  constexpr auto kSmall = FullTable<Quantity, double>({1, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  const Sample s = RandomSample(1);
  const Quantity q = GetParam();
  for (const auto& [eps, limit] : {std::pair(Std(1e30, 1e30), kBig[q]), std::pair(Std(1e-31, 0), kSmall[q])}) {
    QuantityResult out;
    out.dRe = out.dIm = 5;
    out.dExp.fill(7);
    QuantityOfEps({100, true, false, &s.exp}, {eps.real(), eps.imag()}, GetParam(), out);
    EXPECT_EQ(out.value, limit);
    EXPECT_EQ(out.dRe, 0);
    EXPECT_EQ(out.dIm, 0);
    for (const double slope : out.dExp) EXPECT_EQ(slope, 7);
    EXPECT_EQ(OfEpsMu(100, s.exp, 2.0, eps, GetParam()).value, limit);
    EXPECT_EQ(OfEpsMu(100, s.exp, eps, 2.0, GetParam()).value, limit);
  }
}

TEST_P(EveryQuantity, DependencyStubsMarkExactlyWhatItDependsOn) {
  const Sample s = RandomSample(3);
  QuantityResult plain, magnetic;
  DependencyStub(GetParam(), plain);
  DependencyStubMu(GetParam(), magnetic);
  const QuantityResult slopes = OfEps(s.w, s.exp, s.eps, GetParam());
  EXPECT_EQ(plain.dRe != 0, slopes.dRe != 0);
  EXPECT_EQ(plain.dIm != 0, slopes.dIm != 0);
  for (std::size_t k = 0; k < slopes.dExp.size(); ++k) EXPECT_EQ(plain.dExp[k] != 0, slopes.dExp[k] != 0) << k;
  if (!OfMu(GetParam())) return;
  const QuantityResult mu = OfEpsMu(s.w, s.exp, s.eps, s.mu, GetParam());
  EXPECT_EQ(magnetic.dMuRe != 0, mu.dMuRe != 0);
  EXPECT_EQ(magnetic.dMuIm != 0, mu.dMuIm != 0);
}

INSTANTIATE_TEST_SUITE_P(All, EveryQuantity, testing::ValuesIn(kEveryQuantity.begin(), kEveryQuantity.end()));

TEST(Quantities, SiliconIsAsPrinted) {
  std::string table;
  ASSERT_TRUE(ReadWholeFile(ProjectFile("tests/data/silicon.txt"), table));
  const ExpParamBlock exp = DefaultExpParams();
  int lines = 0;
  for (const auto& line : NumbersOf(table)) {
    constexpr double kPrinted = 0.0005 + kRound;  // half a unit of the last digit
    const Std eps(line[1], line[2]);
    const double w = line[0] * 8065.544;
    EXPECT_NEAR(OfEps(w, exp, eps, kN1).value, line[3], kPrinted);
    EXPECT_NEAR(OfEps(w, exp, eps, kN2).value, line[4], kPrinted);
    EXPECT_NEAR(OfEps(w, exp, eps, kRefl).value, line[5], kPrinted);
    ++lines;
  }
  EXPECT_EQ(lines, 2);
}

TEST(Quantities, TheWeightsSumToWhatTheySumTo) {
  double sum = 0;
  for (const AveragingNode& node : kAveragingNodes) sum += node.g;
  EXPECT_CLOSE(sum, kWeightSum, kRound);
}

TEST(Quantities, WithoutSpreadTheAverageIsTheValueTimesTheSumOfWeights) {
  const ExpParamBlock exp = Block(1e-3, 0, 55, 0, 1, 1);
  const Std eps(5, 0.3), n = std::sqrt(eps), r = (1.0 - n) / (1.0 + n),
                         E = std::exp(Std(0, 2 * std::numbers::pi * 100 * 1e-3) * n);
  const double T = std::norm((1.0 - r * r) * E / (1.0 - r * r * E * E));
  EXPECT_CLOSE(OfEps(100, exp, eps, kTrans).value, T * kWeightSum, kChain);
}

TEST(Quantities, ALosslessPlateConservesEnergy) {
  for (const double d : {1e-4, 7e-4, 3e-3}) {
    const Std n = 2.3, r = (1.0 - n) / (1.0 + n), E = std::exp(Std(0, 2 * std::numbers::pi * 150 * d) * n);
    const double R = std::norm(r * (1.0 - E * E) / (1.0 - r * r * E * E));
    const double T = OfEps(150, Block(d, 0, 50, 0, 1, 1), 2.3 * 2.3, kTrans).value / kWeightSum;
    EXPECT_CLOSE(R + T, 1, kChain);
  }
}

TEST(Quantities, NormalReflectivityOfARealConstantIgnoresTheFrequency) {
  const ExpParamBlock exp = DefaultExpParams();
  EXPECT_EQ(OfEps(10, exp, 2.25, kRefl).value, OfEps(10000, exp, 2.25, kRefl).value);
  EXPECT_CLOSE(OfEps(10, exp, 2.25, kRefl).value, 0.04, kRound);  // glass in air
}

TEST(Quantities, AtAngleZeroRsIsRTimesTheWeights) {
  const ExpParamBlock exp = Block(1e-3, 0, 0, 0, 0.7, 1);
  const Std eps(7, 2);
  const double R = OfEps(100, exp, eps, kRefl).value;
  EXPECT_CLOSE(OfEps(100, exp, eps, kRs).value, R * kWeightSum, kChain);
  EXPECT_CLOSE(OfEps(100, exp, eps, kRp).value, R * kWeightSum, kChain);
}

TEST(Quantities, AtTheBrewsterAngleNoPLightIsReflected) {
  const double brewster = std::atan(1.5) * 180 / std::numbers::pi;
  EXPECT_NEAR(OfEps(100, Block(1, 0, brewster, 0, 1, 1), 2.25, kRp).value, 0, kRound * kRound);
}

TEST(Quantities, WithMuOneBothFormsAgree) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    const Sample s = RandomSample(seed);
    for (const Quantity q : kEveryQuantity) {
      if (!OfMu(q)) continue;
      EXPECT_CLOSE(OfEpsMu(s.w, s.exp, s.eps, 1.0, q).value, OfEps(s.w, s.exp, s.eps, q).value, kChain);
    }
  }
}

TEST(Quantities, DepthAndAlphaHaveNoValueAtZeroFrequencyOrWithoutAbsorption) {
  const ExpParamBlock exp = DefaultExpParams();
  for (const Quantity q : {kDepth, kAlpha}) {
    EXPECT_EQ(OfEps(0, exp, {2, 1}, q).value, 1e30);
    EXPECT_EQ(OfEps(100, exp, 2.0, q).value, 1e30);
    EXPECT_EQ(OfEps(100, exp, 2.0, q).dIm, 0);
  }
}

TEST(Quantities, ADcPlotShowsTheResistivity) {
  const ExpParamBlock exp = DefaultExpParams();
  QuantityResult out;
  QuantityOfEps({120, true, true, &exp}, {3, 5}, kS1, out);
  EXPECT_CLOSE(out.value, 60 / (120 * 5.0), kRound);
  EXPECT_CLOSE(out.dIm, 2.0, kRound);  // the slope stays that of the conductivity
  QuantityOfEps({120, true, true, &exp}, {3, 0}, kS1, out);
  EXPECT_EQ(out.value, 0);
}

TEST(Quantities, AGrowingWaveIsCutOff) {
  // Im eps < 0: the real part of the exponent is -2 pi Im(n) w d. Above 50 the phase factor is replaced by 1; from 700
  // on the transmission is 0.
  const Std eps(4, -4);
  const Std n = std::sqrt(eps), r = (1.0 - n) / (1.0 + n);
  const auto thicknessFor = [&](double exponent) { return exponent / (-2 * std::numbers::pi * n.imag() * 100); };
  const double single = OfEps(100, Block(thicknessFor(60), 0, 50, 0, 1, 1), eps, kDefringed).value;
  EXPECT_CLOSE(single, std::norm(1.0 - r * r) * kWeightSum, kChain);
  EXPECT_EQ(OfEps(100, Block(thicknessFor(701), 0, 50, 0, 1, 1), eps, kDefringed).value, 0);
  EXPECT_GT(OfEps(100, Block(thicknessFor(49), 0, 50, 0, 1, 1), eps, kDefringed).value, 1e40);
}

TEST(Quantities, NamesAndKeys) {
  EXPECT_EQ(QuantityOfShortName("rps"), kRps);
  EXPECT_EQ(QuantityOfShortName("AC"), kAlpha);
  EXPECT_FALSE(QuantityOfShortName("Refl"));
  EXPECT_FALSE(QuantityOfShortName(""));
  EXPECT_EQ(QuantityOfFileName("Rp_sample.dat"), kRefl);
  EXPECT_EQ(QuantityOfFileName("tt.dat"), kTrans);
  EXPECT_EQ(QuantityOfFileName("s2x"), kS2);
  EXPECT_EQ(QuantityOfFileName("gold.dat"), kRefl);
  EXPECT_STREQ(NamesOf(kDefringed).name, "Defringed transmission");
}

}  // namespace
}  // namespace kalvex

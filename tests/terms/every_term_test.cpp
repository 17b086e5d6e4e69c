// One harness for every composite term: its value against a plain complex computation, its derivatives against
// difference quotients.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <functional>
#include <map>
#include <numbers>
#include <random>
#include <string>

#include "support/called_term.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"
#include "terms/every_record.h"

namespace kalvex {
namespace {

using Std = std::complex<double>;
using Formula = std::function<Std(double w, const Values& in)>;

constexpr double kPi = std::numbers::pi;
const Std I(0, 1);

Std D(double w, double W, double G) { return {W * W - w * w, -w * G}; }

// The test data of a term: for each input a sensible range (lowest, highest), and the value by its definition.
struct Sample {
  std::vector<std::pair<double, double>> ranges;
  Formula value;
};

Std Bands(double w, const Values& in) {
  const std::size_t front = in.size() % 3;
  Std sum;
  for (std::size_t i = front; i < in.size(); i += 3) sum += in[i] / D(w, in[i + 1], in[i + 2]);
  if (front == 1) sum *= in[0];
  if (front == 2) sum += in[0] / D(w, 0, in[1]);
  return sum;
}

Sample BandSample(std::size_t inputs) {
  Sample sample{{}, Bands};
  const std::size_t front = inputs % 3;
  for (std::size_t i = 0; i < front; ++i)
    sample.ranges.emplace_back(i == 0 && front == 2 ? 1e4 : 0.5, i == 0 && front == 2 ? 2e4 : 3);
  for (std::size_t i = front; i < inputs; i += 3) {
    sample.ranges.insert(sample.ranges.end(), {{1e3, 2e4}, {50, 400}, {5, 60}});
  }
  return sample;
}

double Gauss(double x, double s) { return std::exp(-x * x / (2 * s * s)) / (std::sqrt(2 * kPi) * s); }

// The Gaussian mean of A/D over the frequency. G keeps the pole off the axis: a plain sum is accurate enough.
Std SpreadLorentzian(double w, const Values& in) {
  const double A = in[0], G = in[1], W = in[2], S = in[3], h = 0.01;
  const Std b = std::sqrt(Std(W * W - G * G / 4)), z = w + I * G / 2.0;
  // A/D = A/(2b) (1/(b - z) + 1/(b + z)), z = w + i G/2; both poles are spread.
  Std sum;
  for (double x = -9; x <= 9; x += h) {
    sum += h * std::exp(-x * x) / std::sqrt(kPi) *
           (1.0 / (b - z - std::sqrt(2.0) * S * x) + 1.0 / (b + z - std::sqrt(2.0) * S * x));
  }
  return A / (2.0 * b) * sum;
}

// The transform of the absorption above a gap. The substitution is dense at the gap, and the value at w is subtracted.
Std AmorphousGap(double w, const Values& in) {
  const double A = in[0], C = in[1], E0 = in[2], Eg = in[3];
  const auto e2 = [&](double E) {
    return E <= Eg ? 0 : A * E0 * C * std::pow(E - Eg, 2) / (E * (std::pow(E * E - E0 * E0, 2) + C * C * E * E));
  };
  // E = Eg + t/(1 - t); the integrand minus its value at w, whose principal value over (Eg, infinity) is in closed
  // form.
  constexpr int kSteps = 40000;
  double sum = 0;
  for (int k = 0; k < kSteps; ++k) {
    const double t = (k + 0.5) / kSteps, E = Eg + E0 * t / (1 - t), dE = E0 / ((1 - t) * (1 - t)) / kSteps;
    sum += (E * e2(E) - w * e2(w)) / (E * E - w * w) * dE;
  }
  const double closed = -std::log(std::fabs((Eg - w) / (Eg + w))) / (2 * w);
  return {2 / kPi * (sum + w * e2(w) * closed), e2(w)};
}

const std::map<int, Sample>& Samples() {
  static const std::map<int, Sample> samples = [] {
    std::map<int, Sample> s;
    s[1] = {{{200, 900}, {0.05, 0.45}, {10, 80}, {100, 300}}, [](double w, const Values& in) {
              return -in[0] * in[0] / (w * std::pow(w + I * in[2], 2 * in[1]) * std::pow(w + I * in[3], 1 - 2 * in[1]));
            }};
    s[3] = {{{1, 20}, {10, 90}, {50, 300}}, [](double w, const Values& in) {
              const Std z = std::sqrt((in[1] - I * w) / in[2]), q = std::sqrt(1.0 + z * z);
              return 2.0 * I * 60.0 / w * in[0] *
                     ((1.0 + 2.0 * z * z) * (1.0 - 8.0 * std::pow(z, 4) - 8.0 * z * z) +
                      16.0 * (std::pow(z, 3) + std::pow(z, 5)) * q);
            }};
    for (const int code : {5, 11, 13}) {
      s[code] = {{{100, 900}, {10, 90}, {50, 300}}, [](double w, const Values& in) {
                   return I * 60.0 / w * in[0] * in[1] / (std::sqrt(in[1] - I * w) * std::sqrt(in[1] + in[2] - I * w));
                 }};
    }
    s[9] = {{{1e4, 1e5}, {10, 90}}, [](double w, const Values& in) { return in[0] / Std(-w * w, -w * in[1]); }};
    s[10] = {{{-3, 9}, {0, 5}}, [](double, const Values& in) { return Std(in[0], in[1]); }};
    s[15] = {{{10, 90}, {10, 90}}, [](double w, const Values& in) { return Std(60 * in[1] / w, -60 * in[0] / w); }};
    for (const int code : {25, 29, 35, 37, 39}) {
      s[code] = {{{1e4, 1e5}, {5, 60}, {80, 300}},
                 [](double w, const Values& in) { return in[0] / D(w, in[2], in[1]); }};
    }
    s[27] = {{{80, 150}, {200, 300}, {1e4, 1e5}, {5, 60}},
             [](double w, const Values& in) { return in[2] / D(w, in[0], in[3]) - in[2] / D(w, in[1], in[3]); }};
    for (const int code : {31, 65, 67, 69, 71}) {
      s[code] = {{{200, 900}, {10, 90}, {100, 300}, {10, 60}}, [](double w, const Values& in) {
                   return in[0] * in[0] / (w * w) *
                          (in[1] * in[1] / (in[2] * in[2]) -
                           std::pow(w + I * in[1], 2) / (w * w - in[2] * in[2] + I * w * in[3]));
                 }};
    }
    s[33] = {{{200, 900}, {-0.9, 0.9}, {10, 90}, {50, 300}}, [](double w, const Values& in) {
               return 60.0 * I / w * (in[0] * in[0] / 60 / (in[2] - I * w) * (1.0 + in[1] * in[3] / (in[3] - I * w)));
             }};
    for (const int code : {47, 49}) s[code] = {{{1e4, 1e5}, {5, 60}, {80, 300}, {4, 20}}, SpreadLorentzian};
    s[51] = {{{80, 150}, {200, 500}, {5, 30}, {200, 300}, {200, 500}, {5, 30}, {20, 60}, {1, 9}},
             [](double w, const Values& in) {
               const Std D1 = D(w, in[0], in[2]), D2 = D(w, in[3], in[5]), C(in[6] * in[6], -w * in[7]);
               return (in[1] * in[1] * D2 - 2 * in[1] * in[4] * C + in[4] * in[4] * D1) / (D1 * D2 - C * C);
             }};
    for (const int code : {55, 57, 59}) {
      s[code] = {{{200, 500}, {5, 60}, {80, 300}, {-40, 40}}, [](double w, const Values& in) {
                   return in[0] * in[0] / D(w, in[2], in[1]) * std::pow(1.0 + I * in[3] / w, 2) +
                          std::pow(in[0] * in[3] / (w * in[2]), 2);
                 }};
    }
    s[61] = {{{1e6, 1e7}, {-2, 2}, {80, 300}, {5, 60}}, [](double w, const Values& in) {
               return -(in[0] * std::exp(I * in[1]) / (w * w)) / (w - in[2] + I * in[3]);
             }};
    s[63] = {{{100, 900}, {0.5, 3}, {80, 300}, {5, 60}}, [](double w, const Values& in) {
               const double u = 2 * (w - in[2]) / in[3];
               return I * 60.0 / w *
                      (2 * in[0] / (kPi * in[3]) * std::pow(1.0 + I * in[1], 2) / ((I * u - 1.0) * in[1] * in[1]));
             }};
    s[80] = {{{80, 150}, {200, 300}, {100, 300}, {100, 300}, {5, 30}, {5, 30}, {20, 60}, {20, 60}, {-2, 2}, {0.2, 1}},
             [](double w, const Values& in) {
               const Std D1 = D(w, in[0], in[4]), D2 = D(w, in[1], in[5]);
               return (D2 * in[2] * in[2] + D1 * in[3] * in[3] + in[8] * in[7] * in[7] * in[6] * in[6]) /
                      (D1 * D2 - in[9] * std::pow(in[6], 4));
             }};
    s[90] = {{{80, 300}, {5, 60}, {-1, 1}, {50, 300}}, [](double w, const Values& in) {
               return in[3] * (std::exp(I * in[2]) / (in[0] - w - I * in[1] / 2.0) +
                               std::exp(-I * in[2]) / (in[0] + w + I * in[1] / 2.0));
             }};
    for (int code = 100; code <= 138; code += 2) {
      s[code] = {{{1e4, 1e5}, {-7, 7}, {80, 300}, {0, 1}},
                 [](double w, const Values& in) { return in[0] / D(w, in[2], in[1] * in[1]); }};
    }
    s[140] = {{{200, 900}, {10, 60}, {10, 60}, {50, 200}, {1, 30}}, [](double w, const Values& in) {
                const Std a = in[1] - I * w, b = in[2] - I * w;
                return I / w * (4 * kPi * in[4] + in[0] * in[0] * a / (a * b + in[3] * in[3]));
              }};
    for (int code = 200; code <= 210; code += 2)
      s[code] = {{{1e2, 1e3}, {40, 150}, {100, 250}, {20, 90}}, AmorphousGap};
    s[220] = {{{10, 40}}, [](double w, const Values& in) {
                const double g = in[0], r = std::sqrt(w * (w - 2 * g));
                double at = 0, gap = 0;
                for (std::size_t k = 1; k < in.size(); k += 3) {
                  at += in[k] * Gauss(w - in[k + 1], in[k + 2]);
                  gap += in[k] * Gauss(g - in[k + 1], in[k + 2]);
                }
                const double edge = (g * g * std::log((w - g + r) / g) + (w + g) * r) / (std::sqrt(w * w - g * g) * w);
                return Std(at, w > 2 * g ? 60 / w * edge * gap : 0);
              }};
    for (int k = 0; k < 5; ++k) s[220].ranges.insert(s[220].ranges.end(), {{100, 900}, {20, 200}, {20, 80}});
    const std::pair<int, std::size_t> bands[] = {{240, 18}, {260, 7},  {270, 14}, {287, 31},
                                                 {400, 34}, {500, 26}, {600, 82}};
    for (const auto& [code, inputs] : bands) s[code] = BandSample(inputs);
    s[60] = {{{5, 40}, {20, 150}, {20, 200}, {2, 5}}, [](double w, const Values& in) {
               constexpr double h = 1.4383137011779292;
               const double step =
                   std::tanh(h * (w / 2 - in[1]) / (2 * in[2])) - std::tanh(h * (-w / 2 - in[1]) / (2 * in[2]));
               return Std(0, 60 / w * 1816.5 * (3.35 / in[3]) * 0.5 * step * w * w / (w * w + 4 * in[0] * in[0]));
             }};
    return s;
  }();
  return samples;
}

// First codes of the terms with a separate test file: superconductors, electrons coupled to bosons, and the factorised
// dielectric function.
constexpr int kOwnTests[] = {7, 20, 23, 41, 44, 1000};

Values Drawn(const Sample& sample, unsigned seed) {
  std::mt19937 random(seed);
  Values values;
  for (const auto& [low, high] : sample.ranges)
    values.push_back(std::uniform_real_distribution<double>(low, high)(random));
  return values;
}

// The indices of the inputs that the fit can vary. The counts of factor rows are not among them.
std::vector<std::size_t> FittedInputs(const TermRecord& record) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < record.inputs.size(); ++i) {
    if (record.inputs[i].use == TermUse::kNumber) places.push_back(i);
  }
  const std::size_t first = record.inputs.size() + record.factors.size();
  for (std::size_t i = 0; i < 2 * record.factors.size(); ++i) places.push_back(first + i);
  return places;
}

void ExpectDerivatives(const TermRecord& record, Called& called, const std::string& which) {
  for (const double w : {47.0, 260.0}) {
    called.Value(record.firstId, w);
    const std::vector<Cplx> slopes = called.slopes;
    for (const std::size_t i : FittedInputs(record)) {
      const double x = called.values[i];
      const auto part = [&](bool imaginary) {
        return [&, imaginary](double at) {
          called.values[i] = at;
          const Cplx z = called.Value(record.firstId, w, false);
          called.values[i] = x;
          return imaginary ? z.im : z.re;
        };
      };
      const double scale = 0.02 * std::fabs(x) + 1e-3;
      const SlopeEstimate re = RiddersSlope(part(false), x, scale), im = RiddersSlope(part(true), x, scale);
      const double size = std::fabs(re.value) + std::fabs(im.value);
      EXPECT_NEAR(slopes[i].re, re.value, kRidders * re.error + kSlopeOfSum * size)
          << which << ", input " << i << ", w " << w;
      EXPECT_NEAR(slopes[i].im, im.value, kRidders * im.error + kSlopeOfSum * size)
          << which << ", input " << i << ", w " << w;
    }
  }
}

// ---- Terms whose value is computed here a second time

class EveryTerm : public testing::TestWithParam<const TermRecord*> {
 protected:
  const TermRecord& record() const { return *GetParam(); }
  const Sample& sample() const { return Samples().at(record().firstId); }
};

std::vector<const TermRecord*> SampledTerms() {
  std::vector<const TermRecord*> records;
  for (const TermRecord* const record : TermTable) {
    const bool own = std::find(std::begin(kOwnTests), std::end(kOwnTests), record->firstId) != std::end(kOwnTests);
    if (!own) records.push_back(record);
  }
  return records;
}

INSTANTIATE_TEST_SUITE_P(Table, EveryTerm, testing::ValuesIn(SampledTerms()), NameOfCase);

TEST_P(EveryTerm, HasASampleWithAllItsInputs) {
  ASSERT_TRUE(Samples().contains(record().firstId));
  EXPECT_EQ(sample().ranges.size(), record().inputs.size());
}

TEST_P(EveryTerm, HasTheValueOfItsDefinition) {
  // The reference for the amorphous gap is a quadrature of limited accuracy.
  const bool byQuadrature = record().firstId >= 200 && record().firstId <= 210;
  for (unsigned seed = 1; seed <= 8; ++seed) {
    const Values in = Drawn(sample(), seed);
    for (const double w : {33.0, 130.0, 410.0}) {
      const Std expected = sample().value(w, in);
      const Cplx value = Called(in).Value(record().firstId, w);
      const double allowed = (byQuadrature ? 2e-4 : 1e-9) * std::abs(expected) + 1e-14;
      EXPECT_NEAR(value.re, expected.real(), allowed) << w << ' ' << seed;
      EXPECT_NEAR(value.im, expected.imag(), allowed) << w << ' ' << seed;
    }
  }
}

TEST_P(EveryTerm, HasTheDerivativesOfItsValue) {
  for (unsigned seed = 1; seed <= 4; ++seed) {
    Called called(Drawn(sample(), seed));
    ExpectDerivatives(record(), called, "seed " + std::to_string(seed));
  }
}

// ---- All terms at their typical values

INSTANTIATE_TEST_SUITE_P(Table, EveryRecord, testing::ValuesIn(TermTable), NameOfCase);

TEST_P(EveryRecord, HasTheDerivativesOfItsValueAtItsTypicalValues) {
  TypicalTerm typical(record());
  ExpectDerivatives(record(), typical, "typical values");
}

TEST_P(EveryRecord, GivesNumbersOverItsTypicalRange) {
  const TermPage& page = record().page;
  TypicalTerm typical(record());
  for (int k = 0; k <= 50; ++k) {
    const double w = page.from + (page.to - page.from) * k / 50;
    const Cplx value = typical.Value(record().firstId, w);
    EXPECT_TRUE(std::isfinite(value.re) && std::isfinite(value.im)) << w;
    EXPECT_LT(std::hypot(value.re, value.im), 1e29) << w;  // the marker
  }
}

// The value depends on every number, and on no idle input.
TEST_P(EveryRecord, DependsOnItsNumbersAndNotOnItsIdleInputs) {
  for (std::size_t i = 0; i < record().inputs.size(); ++i) {
    const TermCell& cell = record().inputs[i];
    bool changes = false;
    for (const double w : {60.0, 130.0, 230.0, 310.0, 420.0}) {
      TypicalTerm typical(record());
      const Cplx before = typical.Value(record().firstId, w);
      typical.values[i] = 1.1 * cell.typical + 0.01;
      changes = changes || typical.Value(record().firstId, w) != before;
    }
    EXPECT_TRUE(changes || cell.use != TermUse::kNumber) << MeaningOf(cell);
    EXPECT_FALSE(changes && cell.use == TermUse::kIdle) << MeaningOf(cell);
  }
}

class EveryScalarTerm : public testing::TestWithParam<int> {};

TEST_P(EveryScalarTerm, IsTheWeightedIntegralOfTheImaginaryPart) {
  // C times the integral of G x^2/|D|^2 is 1/(4 pi) times that of x Im(1/D).
  Called called(Drawn(Samples().at(GetParam()), 2));
  const double w = 210, h = 0.01;
  double sum = 0;
  for (double x = h / 2; x < w; x += h) sum += x * called.Value(GetParam(), x).im * h;
  const double expected = sum / (4 * kPi);
  // The mean over a Gaussian is cut at three of its widths, and the shifted pole changes the value slightly.
  const double allowed = GetParam() == 47 || GetParam() == 49 ? 0.02 : 1e-4;
  EXPECT_NEAR(called.Scalar(GetParam(), w), expected, allowed * std::fabs(expected));
}

TEST_P(EveryScalarTerm, HasTheDerivativesOfItsValue) {
  Called called(Drawn(Samples().at(GetParam()), 4));
  called.Scalar(GetParam(), 190);
  const std::vector<double> slopes = called.scalars;
  for (std::size_t i = 0; i < slopes.size(); ++i) {
    if (TermOfCode(GetParam())->inputs[i].use == TermUse::kIdle) continue;
    const double x = called.values[i];
    const SlopeEstimate judge = RiddersSlope(
        [&](double at) {
          called.values[i] = at;
          const double value = called.Scalar(GetParam(), 190);
          called.values[i] = x;
          return value;
        },
        x, 0.02 * std::fabs(x) + 1e-3);
    EXPECT_NEAR(slopes[i], judge.value, kRidders * judge.error + kSlopeOfSum * std::fabs(judge.value)) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Records, EveryScalarTerm, testing::Values(9, 25, 27, 29, 35, 37, 39, 47, 49, 100, 122, 138));

TEST(Terms, SingleFifteenWritesNoDerivativesAndIsZeroAtZero) {
  Called called({5, 6});
  EXPECT_EQ(called.Value(15, 0), (Cplx{0, 0}));
  called.Value(15, 10);
  EXPECT_EQ(called.slopes[0], (Cplx{-7, -7}));
}

TEST(Terms, TheExponentOfThePowerLawIsHeldAndItsEndsAreDrude) {
  const double w = 70, Wp = 500, G1 = 20, G2 = 90;
  const auto drude = [&](double G) { return -Wp * Wp / (w * (w + I * G)); };
  for (const auto& [a, G] : {std::pair(0.5, G1), std::pair(0.9, G1), std::pair(0.0, G2), std::pair(-1.0, G2)}) {
    const Cplx value = Called({Wp, a, G1, G2}).Value(1, w);
    EXPECT_CLOSE(value.re, drude(G).real(), kChain);
    EXPECT_CLOSE(value.im, drude(G).imag(), kChain);
  }
  Called held({Wp, 0.9, G1, G2});
  const Cplx value = held.Value(1, w);
  const Std expected = -2.0 * Std(value.re, value.im) * std::log((w + I * G1) / (w + I * G2));
  EXPECT_CLOSE(held.slopes[1].re, expected.real(), kChain);
}

TEST(Terms, GuardsGiveTheirMarkersAndNoSlopes) {
  const struct {
    int code;
    Values in;
    double w;
    Cplx marker;
  } kCases[] = {
      {1, {500, 0.3, 20, 90}, 0, {1e30, 1e30}}, {3, {5, 20, 90}, 0, {0, 1e30}},
      {3, {5, 0, 90}, 50, {0, 1e30}},           {3, {5, 20, 0}, 50, {0, 1e30}},
      {5, {5, 20, 90}, 0, {1e30, 0}},           {5, {5, 0, 90}, 50, {1e30, 0}},
      {5, {5, 20, 0}, 50, {1e30, 0}},           {9, {5, 20}, 0, {1e30, 1e30}},
      {25, {5, 0, 50}, 50, {1e30, 1e30}},       {27, {50, 90, 5, 0}, 90, {1e30, 1e30}},
      {31, {5, 20, 0, 9}, 50, {1e30, 1e30}},    {31, {5, 20, 90, 9}, 0, {1e30, 1e30}},
      {61, {5, 1, 0, 9}, 50, {1e30, 1e30}},     {61, {5, 1, 50, 0}, 50, {1e30, 1e30}},
      {63, {5, 0, 90, 9}, 50, {1e30, 1e30}},    {63, {5, 1, 90, 0}, 50, {1e30, 1e30}},
      {63, {5, 1, 0, 9}, 50, {1e30, 1e30}},     {140, {5, 1, 2, 3, 4}, 0, {1e30, 1e30}},
      {47, {5, 0, 50, 0}, 50, {1e30, 1e30}},    {100, {5, 0, 50, 0}, 50, {1e30, 1e30}},
  };
  for (const auto& c : kCases) {
    Called called(c.in);
    EXPECT_EQ(called.Value(c.code, c.w), c.marker) << c.code << ' ' << c.w;
    for (std::size_t i = 0; i < c.in.size(); ++i) EXPECT_EQ(called.slopes[i], (Cplx{0, 0})) << c.code << ' ' << i;
  }
}

TEST(Terms, ANegativeRootOfAWidthCountsAsThePositiveOne) {
  EXPECT_EQ(Called({500, -3, 90, 0}).Value(100, 80), Called({500, 3, 90, 0}).Value(100, 80));
}

TEST(Terms, WithoutSpreadTheSpreadLorentzianIsALorentzian) {
  constexpr double kSpread = 1e-6;  // of 1e-3, squared
  EXPECT_EQ(Called({500, 3, 90, 0}).Value(47, 80), Called({500, 3, 90}).Value(25, 80));
  const Cplx narrow = Called({500, 9, 90, 1e-3}).Value(47, 80), none = Called({500, 9, 90}).Value(25, 80);
  EXPECT_NEAR(narrow.re, none.re, kSpread);
  EXPECT_NEAR(narrow.im, none.im, kSpread);
}

TEST(Terms, TheSpreadLorentzianIsSmoothWhereItsRootsMeet) {
  constexpr double kBesideIt = 1e-6, kNearZero = 1e-7;  // a distance of 1e-7 times the slope
  const auto at = [](double W) { return Called({5e4, 100, W, 20}).Value(47, 80); };
  const Cplx meeting = at(50), beside = at(50 + 1e-7);
  EXPECT_NEAR(meeting.re, beside.re, kBesideIt * std::fabs(meeting.re) + kNearZero);
  EXPECT_NEAR(meeting.im, beside.im, kBesideIt * std::fabs(meeting.im) + kNearZero);
  Called called({5e4, 100, 50, 20});
  called.Value(47, 80);
  const SlopeEstimate byW = RiddersSlope([&](double W) { return at(W).im; }, 50, 4);
  EXPECT_NEAR(called.slopes[2].im, byW.value, kRidders * byW.error + kSlopeOfBranches * std::fabs(byW.value));
}

TEST(Terms, LimitsOfTheCoupledOnes) {
  constexpr double kStatic = 1e-4, kFarAway = 1e-3;  // distance from the limits
  const double w = 123;
  // No coupling: two Lorentzians. A strong mode alone, too.
  const Cplx two = Called({100, 200, 9, 250, 300, 20, 0, 0}).Value(51, w);
  const Std expected = 200 * 200.0 / D(w, 100, 9) + 300 * 300.0 / D(w, 250, 20);
  EXPECT_CLOSE(two.re, expected.real(), kChain);
  EXPECT_CLOSE(two.im, expected.imag(), kChain);
  // A Fano mode with Q = 0, and a back-scattering of 0.
  const Std line = 200 * 200.0 / D(w, 100, 9), drude = 60.0 * I / w * (200 * 200.0 / 60 / (9.0 - I * w));
  EXPECT_CLOSE(Called({200, 9, 100, 0}).Value(55, w).im, line.imag(), kChain);
  EXPECT_CLOSE(Called({200, 0, 9, 50}).Value(33, w).im, drude.imag(), kChain);
  // Back-scattering of -1 with one rate leaves no static conductivity.
  EXPECT_NEAR(Called({200, -1, 9, 9}).Value(33, 1e-6).im * 1e-6 / 60, 0, kStatic);
  // A resonance far away leaves only the Drude term of the same plasma frequency.
  EXPECT_NEAR(Called({200, 9, 1e9, 5}).Value(31, w).re / (-200 * 200.0 / (w * w)), 0, kFarAway);
}

TEST(Terms, TheResonanceWithAnImpurityIsTheFanoMode) {
  for (const double w : {40.0, 123.0, 260.0}) {
    const Cplx impurity = Called({300, 40, 200, 20}).Value(31, w), fano = Called({300, 20, 200, 40}).Value(55, w);
    EXPECT_NEAR(impurity.re, fano.re, kChain * std::hypot(fano.re, fano.im));
    EXPECT_NEAR(impurity.im, fano.im, kChain * std::hypot(fano.re, fano.im));
  }
}

// The mean over x = cos t of Drude terms whose rates lie between G and G + H; weight(t) dt integrates to 1.
template <class Weight>
Std MeanOfDrudeTerms(double w, double G, double H, Weight weight) {
  constexpr int kSteps = 2000;  // the integrand is periodic in t: the sum converges beyond rounding
  Std sum;
  for (int k = 0; k < kSteps; ++k) {
    const double t = kPi * (k + 0.5) / kSteps, half = std::sin(t / 2);
    sum += weight(t) * (kPi / kSteps) / (G + H * half * half - I * w);
  }
  return sum;
}

TEST(Terms, SpreadRatesAreMeansOfDrudeTerms) {
  const double G = 30, H = 300;
  for (const double w : {5.0, 70.0, 400.0}) {
    const Std around = I * 60.0 / w * 2000.0 * G * MeanOfDrudeTerms(w, G, H, [](double) { return 1 / kPi; });
    const Cplx rate = Called({2000, G, H}).Value(5, w);
    EXPECT_NEAR(rate.re, around.real(), kChain * std::abs(around));
    EXPECT_NEAR(rate.im, around.imag(), kChain * std::abs(around));
    // Far above the rates this one is 3 S H/(4 (G + H/2 - i w)): sin^4 has the mean 3/8.
    const Std few = I * 60.0 / w * 50.0 * 0.75 * H *
                    MeanOfDrudeTerms(w, G, H, [](double t) { return 8 * std::pow(std::sin(t), 4) / (3 * kPi); });
    const Cplx spread = Called({50, G, H}).Value(3, w);
    EXPECT_NEAR(spread.re, few.real(), kChain * std::abs(few));
    EXPECT_NEAR(spread.im, few.imag(), kChain * std::abs(few));
  }
}

TEST(Terms, TheAmorphousGapHoldsForAnyBroadening) {
  constexpr double kQuadrature = 1e-3, kFarAbove = 1e-4;       // of the reference integral
  for (const double C : {20.0, 199.0, 200.0, 201.0, 600.0}) {  // from a line to far more than critical
    const Values in = {500, C, 100, 40};
    for (const double w : {10.0, 40.0, 90.0, 300.0}) {
      const Std expected = AmorphousGap(w + (w == 40 ? 1e-6 : 0), in);
      const Cplx value = Called(in).Value(200, w);
      EXPECT_NEAR(value.re, expected.real(), kQuadrature * std::abs(expected)) << C << ' ' << w;
      EXPECT_NEAR(value.im, expected.imag(), kQuadrature * std::abs(expected)) << C << ' ' << w;
    }
    EXPECT_EQ(Called(in).Value(200, 30).im == 0 || std::fabs(Called(in).Value(200, 30).im) < 1e-12, true);
    EXPECT_NEAR(Called(in).Value(200, 1e7).re, 0, kFarAbove);
  }
}

TEST(Terms, OneLineOfABandIsTheLorentzian) {
  for (const auto& [code, inputs, first] : {std::tuple(240, 18, 3), std::tuple(287, 31, 4), std::tuple(500, 26, 5)}) {
    Values in(static_cast<std::size_t>(inputs), 0.0);
    for (std::size_t i = static_cast<std::size_t>(inputs) % 3; i < in.size(); i += 3) in[i + 1] = in[i + 2] = 50;
    if (inputs % 3 == 1) in[0] = 1;
    const auto at = static_cast<std::size_t>(first);
    in[at] = 5e4;
    in[at + 1] = 130;
    in[at + 2] = 12;
    EXPECT_EQ(Called(in).Value(code, 111), Called({5e4, 12, 130}).Value(25, 111)) << code;
  }
}

TEST(Terms, TheStepOfALayerHasItsLimits) {
  constexpr double kBelow = 1e-9;  // the tail of a step at 1 K
  // Far above twice the chemical potential and cold: e^2/(4 hbar) over the spacing of 3.35.
  constexpr double kUniversal = 1.602176634e-19 * 1.602176634e-19 / (4 * 1.054571817e-34) / 3.35e-8;
  EXPECT_CLOSE(Called({0, 50, 1, 3.35}).Value(60, 1000).im * 1000 / 60, kUniversal, kFiveDigits);
  EXPECT_NEAR(Called({0, 500, 1, 3.35}).Value(60, 400).im, 0, kBelow);
  EXPECT_TRUE(std::isfinite(Called({0, 50, 0, 3.35}).Value(60, 0).im));
  EXPECT_LT(Called({0, 0, 1e6, 3.35}).Value(60, 100).im * 100 / 60, 1);  // at high temperature it vanishes
}

}  // namespace
}  // namespace kalvex

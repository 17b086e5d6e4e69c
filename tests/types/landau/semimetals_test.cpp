// Compares Weyl bands, bismuth, graphene devices and patterns with closed limits.
#include <filesystem>
#include <sstream>

#include "core/files.h"
#include "support/scratch_folder.h"
#include "types/landau/dirac_levels.h"
#include "types/magneto/circular.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

constexpr double kUniversal = 1816.5;
double Wavenumbers(double eV) { return eV / 0.00012399256044637322; }

class Weyl : public TypeFixture {
 protected:
  Weyl() : before(std::filesystem::current_path()) { std::filesystem::current_path(folder.Name()); }
  ~Weyl() override { std::filesystem::current_path(before); }
  Model& Bands(double B, double mu = 0, double g = 0.002, double levels = 60, double count = 120) {
    return Make(93, {{4, B, g}, {5e5, mu, 2}, {0, 0, 0}, {levels, 0, 0}, {-0.6, 0.6, count}, {0, 0, 0}});
  }
  ScratchFolder folder;
  std::filesystem::path before;
};

TEST_F(Weyl, WithoutFieldAbsorbInProportionToTheFrequency) {
  constexpr double kMesh = 0.06;  // discrete levels and momenta
  // nodes e^2 w/(24 pi hbar v), here in Ohm^-1 cm^-1 with e^2/hbar = 2.43413e-4 S.
  Model& model = Bands(0, 0, 0.002);
  for (const double E : {0.06, 0.12}) {
    const double w = E / 6.58211899e-16;
    const double expected = 2 * 2.43413e-4 * w / (24 * std::numbers::pi * 5e5) * 0.01;
    EXPECT_NEAR(At(model, kS1, Wavenumbers(E)), expected, kMesh * expected) << E;
  }
}

TEST_F(Weyl, InAWeakFieldTendToThatAndReverseTheirHallPart) {
  constexpr double kWeakField = 0.05;  // spacing of the levels relative to their broadening
  Model &weak = Bands(0.4, 0.04, 0.01, 400), &none = Bands(0, 0.04, 0.01);
  EXPECT_NEAR(At(weak, kS1, Wavenumbers(0.12)), At(none, kS1, Wavenumbers(0.12)),
              kWeakField * At(none, kS1, Wavenumbers(0.12)));
  Model &up = Bands(5, 0.05), &down = Bands(-5, 0.05);
  EXPECT_EQ(At(up, kS1, 700), At(down, kS1, 700));
  EXPECT_EQ(At(up, kDepth, 700), -At(down, kDepth, 700));
  EXPECT_GT(std::fabs(At(up, kDepth, 700)), 1);
  EXPECT_EQ(At(none, kDepth, 700), 0);
}

TEST_F(Weyl, HoldTheChargeOfTheirFermiSphere) {
  constexpr double kMesh = 0.02;  // discrete levels and momenta
  // Two nodes with k_F = mu/(hbar v): n = 2 k_F^3/(6 pi^2).
  Model& model = Bands(0.2, 0.1, 0.002, 600, 400);
  const double k = 0.1 / (6.58211899e-16 * 5e5) * 0.01;  // 1/cm
  const double expected = 2 * k * k * k / (6 * std::numbers::pi * std::numbers::pi);
  EXPECT_NEAR(At(model, kRps, 100), expected, kMesh * expected);
}

TEST_F(Weyl, WithoutFieldWriteTheirMiddleLevels) {
  constexpr double kWritten = 1e-5;  // the last decimal place in the file
  Model& model = Bands(0, 0, 0.002, 3, 4);
  At(model, kS1, 100);
  std::string text;
  ASSERT_TRUE(ReadWholeFile(folder.Path("EV0.dat"), text));
  // Seven levels: -m three times or four times; the middle one is -|m| or |m| by the sign of k.
  const double m = 6.58211899e-16 * 5e5 * 1e9;
  std::istringstream in(text);
  for (int i = 0; i < 4; ++i) {
    int number = -1;
    double level = 0;
    ASSERT_TRUE(in >> number >> level);
    EXPECT_EQ(number, i);
    const double k = -0.45 + 0.3 * i;
    EXPECT_NEAR(level, -m * k, kWritten);
  }
  EXPECT_EQ(text.substr(0, 2), "0 ");
  EXPECT_EQ(text[text.find('\n') - 1], ' ');
  for (const char* const name : {"EV1.dat", "EV2.dat"}) EXPECT_TRUE(std::filesystem::exists(folder.Path(name))) << name;
  std::filesystem::remove(folder.Path("EV0.dat"));
  At(Bands(2), kS1, 100);
  EXPECT_FALSE(std::filesystem::exists(folder.Path("EV0.dat")));
}

TEST_F(Weyl, ShowALevelAlongTheField) {
  const double bands = Bands(5, 0, 0.01, 10).number;
  const double m = 6.58211899e-16 * 5e5 * 1e9 * 0.3, eps2 = 2 * 5e5 * 5e5 * 6.58211899e-16 * 5;
  EXPECT_NEAR(At(Make(94, {{bands, 10, 0}}), kRefl, 0.3), -m, kRound);  // the chiral level, in the middle of the gap
  EXPECT_NEAR(At(Make(94, {{bands, 12, 0}}), kRefl, 0.3), std::sqrt(m * m + 2 * eps2), kRound);
  EXPECT_EQ(At(Make(94, {{bands, 99, 0}}), kRefl, 0.3), 0);
}

class BismuthTypes : public TypeFixture {
 protected:
  Model& Sample(double B, double mu, double top, double count = 200) {
    return Make(74, {{1, B, 0.001},
                     {0.0153, mu, 0.006},
                     {0.25, 1, 60},
                     {top, 0.064, 0.7},
                     {0, 0.8, count},
                     {0, 0, 0},
                     {80, 0, 0},
                     {0, 0, 0},
                     {0, 0, 0},
                     {0, 0, 0}});
  }
};

TEST_F(BismuthTypes, HaveTheLevelsOfBothBands) {
  const double sample = Sample(4, 0.03, 0.046).number;
  Model& levels = Make(75, {{sample, 0, 0}});
  const double electron = 2 * 5.7879892e-05 * 4 / 0.006, hole = 2 * 5.7879892e-05 * 4 / 0.064;
  EXPECT_NEAR(At(levels, kRefl, 0), 0.0153 / 2, kStep);
  EXPECT_NEAR(At(levels, kRefl, 2), std::sqrt(0.25 * 0.0153 * 0.0153 + 0.0153 * 2 * electron), kRound);
  EXPECT_NEAR(At(levels, kTrans, 1), 0.046 - 1.5 * hole, kRound);
  EXPECT_EQ(At(levels, kTrans, 1), At(levels, kRp, 1));  // without a g factor
}

TEST_F(BismuthTypes, HolesAloneTurnAtTheirCyclotronEnergyWithTheirDrudeWeight) {
  constexpr double kParabola = 0.15;  // the band is not exactly parabolic and has neighbours
  // The chemical potential is in the middle of the gap, 46 meV below the top of the hole band: there are no electrons.
  Model& model = Sample(1, 0, 0.046);
  const double hole = 2 * 5.7879892e-05 / 0.064;
  // sigma_- of a positive charge: a pole at hbar w_h with the maximum n e^2/(m g), in one circular polarisation.
  const double at = Wavenumbers(hole);
  const auto sense = [&](double sign, double x) { return At(model, kS1, x) - sign * At(model, kLoss, x); };
  const double strong = std::fmax(sense(1, at), sense(-1, at)), weak = std::fmin(sense(1, at), sense(-1, at));
  EXPECT_GT(strong, 5 * std::fabs(weak));
  // Density of a parabolic band of both spins, masses 0.064, 0.064, 0.7, E = 46 meV: n = (2 m E)^(3/2)/(3 pi^2 hbar^3).
  const double k3 = std::pow(0.046 / 0.0380998, 1.5) * 0.064 * std::sqrt(0.7) * 1e21;  // 1/cm^3
  const double density = k3 / (3 * std::numbers::pi * std::numbers::pi);
  // sigma at resonance: n e^2/(m g), e^2/m in units of hbar: n (e^2/hbar) hbar^2/(m) / g.
  const double sigma = density * 2.43413e-4 * 2 * 0.0380998e-14 / 0.064 / 0.001;
  EXPECT_NEAR(strong, sigma, kParabola * sigma);
}

TEST_F(BismuthTypes, ReverseTheirHallPartWithTheField) {
  Model &up = Sample(4, 0.03, 0.046, 20), &down = Sample(-4, 0.03, 0.046, 20);
  EXPECT_DOUBLE_EQ(At(up, kS1, 300), At(down, kS1, 300));
  EXPECT_DOUBLE_EQ(At(up, kDepth, 300), -At(down, kDepth, 300));
}

class Devices : public TypeFixture {
 protected:
  Model& Sheet(double B, double mu = 0.1, double spread = 0, double nodes = 0) {
    return Make(97, {{4, B, mu}, {1e6, spread, 0.004}, {0, 40, nodes}, {1, 0, 0}});
  }
};

TEST_F(Devices, SheetsHaveTheFillingOfTheirLevels) {
  constexpr double kWarmth = 1e-6, kOfQuantum = 0.02;  // 4 K; the sum over levels is truncated
  // mu between the levels n and n + 1: filling 2n + 1 in units of 4.839e10 |B|, the density to match.
  const double eps = std::sqrt(1.3154e-15 * 1e12 * 10);
  for (const int n : {0, 1, 2}) {
    Model& model = Sheet(10, 0.5 * eps * (std::sqrt(n) + std::sqrt(n + 1)));
    EXPECT_NEAR(At(model, kRps, 500), 2 * n + 1, kWarmth);
    EXPECT_NEAR(At(model, kRp, 500), 4.839e11 * (2 * n + 1), 1e6);
    EXPECT_NEAR(At(model, kRefl, 500), 4.839e11 / (2 * (2 * n + 1)), 1e6);
    EXPECT_NEAR(At(model, kDepth, 1e-2), -4 * (n + 0.5) * kUniversal * 2 / std::numbers::pi,
                kOfQuantum * (n + 0.5) * 4 * kUniversal);
  }
}

TEST_F(Devices, SheetsWithoutSpreadAreTheCommonSumAndWithItItsMean) {
  Model& model = Sheet(7);
  LadderTable<double> table;
  const double eps2 = 1.3154e-15 * 7 * 1e12;
  AddDiracTransitions(table, eps2, eps2, 0.0, 0.1, 8.617346718945237e-05 * 4, 40);
  const auto tensor = LadderTensor(table, Cplx{0.00012399256044637322 * 800, 0.004}, false);
  EXPECT_NEAR(At(model, kS1, 800), tensor.xx.re, kRound * kUniversal);
  EXPECT_NEAR(At(model, kLoss, 800), tensor.xy.im, kRound * kUniversal);
  double sum = 0, weights = 0;
  for (int i = 0; i <= 4; ++i) {
    const double u = i / 4.0 - 0.5, weight = std::exp(-25 * u * u);
    sum += weight * At(Sheet(7, 0.1 + 3 * 0.02 * u), kS1, 800);
    weights += weight;
  }
  EXPECT_NEAR(At(Sheet(7, 0.1, 0.02, 4), kS1, 800), sum / weights, kFormula * kUniversal);
}

TEST_F(Devices, WithoutSheetAreTheSlabItself) {
  const double sheet = Sheet(7).number, silicon = Medium(11.7);
  const auto device = [&](double coherence) -> Model& {
    return Make(98, {{sheet, silicon, 0}, {0.01, 0, coherence}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  };
  const auto [r, t] = SlowStack({{std::sqrt(11.7), std::sqrt(11.7), 0.01}}, 1, 1, 333);
  EXPECT_NEAR(At(device(1), kRefl, 333), std::norm(r), kRound);
  EXPECT_NEAR(At(device(1), kTrans, 333), std::norm(t), kRound);
  EXPECT_LT(std::abs(Pair(device(1), kN1, 333) - t), kChain);
  const double R1 = std::pow((std::sqrt(11.7) - 1) / (std::sqrt(11.7) + 1), 2);
  EXPECT_NEAR(At(device(0), kRefl, 333), 2 * R1 / (1 + R1), kRound);
  EXPECT_NEAR(At(device(0), kTrans, 333), (1 - R1) / (1 + R1), kRound);
  EXPECT_EQ(At(device(1), kE1, 333), 0);
}

TEST_F(Devices, AreReadByPolarimetersAsTheyTurnTheLight) {
  constexpr double kFirstOrder = 0.05;  // terms beyond the first order of the angle
  const double sheet = Sheet(7).number;
  const double device =
      Make(98, {{sheet, 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}).number;
  Model& model = Make(100, {{device, 0, 0}, {0, 0, 0}, {-45, 0, 0}, {0, 0, 0}, {45, 0, 0}});
  const C plus = Pair(ModelOf(device), kN1, 900), minus = Pair(ModelOf(device), kDepth, 900);
  EXPECT_NEAR(At(model, kRp, 900), 0.5 * std::log(minus / plus).imag(), kRound);
  EXPECT_EQ(At(model, kRp, 900), At(ModelOf(device), kE1, 900));
  const double a = std::numbers::pi / 4;
  const double e1 = 0.25 * std::norm(plus * std::polar(1.0, -a) + minus * std::polar(1.0, a));
  const double e2 = 0.25 * std::norm(plus * std::polar(1.0, a) + minus * std::polar(1.0, -a));
  EXPECT_NEAR(At(model, kE1, 900), e1, kRound);
  EXPECT_NEAR(At(model, kE2, 900), e2, kRound);
  EXPECT_NEAR(At(model, kRs, 900), (e2 + e1) / (e2 - e1), kChain);
  // The light stays nearly linear: the reading is the rotation.
  EXPECT_NEAR(At(model, kRefl, 900), At(model, kRp, 900), kFirstOrder * std::fabs(At(model, kRp, 900)));
  EXPECT_EQ(At(model, kN1, 900), plus.real());
  EXPECT_EQ(
      Status(Make(98, {{Medium(2), 0, 0}, {0, 0, 0}, {1, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}}), 900), -1);
}

TEST_F(Devices, RatiosTakeThePathOfTheFirst) {
  const double sheet = Sheet(7).number, silicon = Medium(11.7);
  const auto device = [&](double layers) {
    return Make(98, {{sheet, silicon, 0}, {0.0003, 0, 1}, {layers, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}})
        .number;
  };
  const double a = device(1), b = device(3), x = 900;
  Model& model = Make(99, {{a, b, 77}, {1, 1e-3, 1e-6}, {0.1, 1e-4, 1e-7}});
  const double path = std::exp(-4 * std::numbers::pi * x * 0.0003), factor = 1 + 0.9 + 0.81;
  EXPECT_NEAR(At(model, kTrans, x), At(ModelOf(a), kTrans, x) / At(ModelOf(b), kTrans, x) * factor * path, kRound);
  for (const Quantity q : {kRefl, kE2}) {
    EXPECT_NEAR(At(model, q, x), At(ModelOf(a), q, x) / At(ModelOf(b), q, x) * factor * path, kRound) << q;
  }
  for (const Quantity q : {kRp, kRs, kE1}) {
    EXPECT_NEAR(At(model, q, x), At(ModelOf(a), q, x) - At(ModelOf(b), q, x) + 0.1 + 0.09 + 0.081, kRound) << q;
  }
  // The decimals of the leading value are ignored.
  ModelOf(a).epsInf.value = -98.4;
  EXPECT_NEAR(At(model, kTrans, x), At(ModelOf(a), kTrans, x) / At(ModelOf(b), kTrans, x) * factor * path, kRound);
}

TEST_F(Devices, MagnetoplasmonsAreTheZerosOfTheirScreening) {
  const double sheet = Sheet(0, 0.2).number, glass = Medium(4);
  Model& still = Make(104, {{sheet, glass, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  EXPECT_EQ(Pair(still, kE1, 300), C(1, 0));
  EXPECT_EQ(At(still, kS1, 300), At(ModelOf(sheet), kS1, 300));
  Model& moving = Make(104, {{sheet, glass, 0}, {5000, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  const C sigma = Pair(ModelOf(sheet), kS1, 300), d = 1.0 + kI * 1.262e-05 * sigma * 5000.0 / (300.0 * 2.0 * 2.5);
  EXPECT_LT(std::abs(Pair(moving, kE1, 300) - d), kLongSum);
}

class Patterns : public TypeFixture {};

TEST_F(Patterns, MixturesArePureAtTheirEndsAndTheGeometricMeanBetween) {
  constexpr double kAtRoot = 1e-6;  // root of the rounding of 1e-12: two roots meet there
  const auto mixture = [&](double f, double rest) -> Model& {
    return Make(84, {{f, rest, 0}, {4, 7, 0.01}, {30, 1e6, 0.12}, {0, 0, 0}});
  };
  Model& sheet = Make(52, {{0, 1, 0}, {4, 7, 0.01}, {30, 1e6, 0.12}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  for (const Quantity q : {kS1, kS2, kN1, kN2, kDepth})
    EXPECT_NEAR(At(mixture(1, 500), q, 900), At(sheet, q, 900), kLongSum) << q;
  EXPECT_NEAR(At(mixture(0, 500), kS1, 900), 500, kLongSum);
  const C half = Pair(mixture(0.5, 500), kS1, 900), pure = Pair(sheet, kS1, 900);
  EXPECT_LT(std::min(std::abs(half * half - 500.0 * pure), 1e9), kAtRoot * std::abs(half * half));
  // With insulating holes the mixture conducts only above one half.
  EXPECT_NEAR(std::abs(Pair(mixture(0.4, 0), kS1, 900)), 0, kAtRoot);
  EXPECT_NEAR(At(mixture(0.75, 0), kS1, 900), 0.5 * At(sheet, kS1, 900), kLongSum);
}

class Ribbons : public Patterns {
 protected:
  // A Drude sheet with the response s = i a/(k0 + ig), by modes or by the circuit.
  Model& Grating(double width, double period, double modes, double angle = 90) {
    return Make(76, {{0, 20000, 3}, {width, period, angle}, {0, 0, 0}, {0, 0, 0}, {modes, 0, 0}});
  }
  double Peak(Model& model, double from, double to) {
    double best = 0, at = 0;
    for (double x = from; x < to; x += 0.25) {
      if (At(model, kS1, x) > best) best = At(model, kS1, x), at = x;
    }
    return at;
  }
};

TEST_F(Ribbons, AlongAreTheirShareAndWithoutGapsAPlainSheet) {
  Model& half = Grating(1e-4, 2e-4, 6, 0);
  const double plain = (20000.0 * 20000 / 60 / C(3, -150)).real();
  EXPECT_NEAR(At(half, kE1, 150), 0.5 * plain, kRound * plain);
  EXPECT_EQ(At(half, kTrans, 150), At(half, kRp, 150));
  Model& closed = Grating(2e-4, 2e-4, 0);
  EXPECT_NEAR(At(closed, kS1, 150), plain, kRound * plain);
}

TEST_F(Ribbons, OfTheCircuitResonateWithTheShareOfTheWeight) {
  constexpr double kStepOfSearch = 0.5, kQuadrature = 0.01;  // the tail beyond 4000 cm-1 is missing
  const double w = 1e-4, L = 2e-4, a = 20000.0 * 20000 / 60 * 1.2619984361819279e-05 * 2 * std::numbers::pi;
  const double capacity = 2 * L / std::numbers::pi * std::log(1 / std::sin(std::numbers::pi / 4));
  const double k0 = std::sqrt(w * a / (L * capacity));
  Model& model = Grating(w, L, 0);
  EXPECT_NEAR(Peak(model, 20, 800), k0 / (2 * std::numbers::pi), kStepOfSearch);
  double sum = 0;
  for (double x = 0.05; x < 4000; x += 0.1) sum += 0.1 * At(model, kS1, x);
  EXPECT_NEAR(sum, 0.5 * std::numbers::pi * 20000 * 20000 / 120, kQuadrature * sum);
}

TEST_F(Ribbons, OfModesResonateNearTheCircuitAndOfASingleStripWhereItIsKnown) {
  // The published phase shift of the standing wave has two digits. The circuit contains only one mode.
  constexpr double kStandingWave = 0.06, kOneMode = 0.12;
  // Ribbons far apart: k0^2 = c a/w with c = 2.3 to 2.4 (E. Nikitin et al., Phys. Rev. B 85, 081405(R), 2012,
  // phase-shifted standing wave: q w = 3 pi/4, k0^2 = a q/2 in vacuum).
  const double a = 20000.0 * 20000 / 60 * 1.2619984361819279e-05 * 2 * std::numbers::pi, w = 1e-4;
  Model& single = Make(76, {{0, 20000, 3}, {w, 2e-3, 90}, {0, 0, 0}, {6000, 0, 0}, {12, 0, 0}});
  const double expected = std::sqrt(0.5 * a * 0.75 * std::numbers::pi / w) / (2 * std::numbers::pi);
  EXPECT_NEAR(Peak(single, 100, 900), expected, kStandingWave * expected);
  Model &modes = Grating(w, 2e-4, 8), &circuit = Grating(w, 2e-4, 0);
  EXPECT_NEAR(Peak(modes, 20, 900), Peak(circuit, 20, 900), kOneMode * Peak(circuit, 20, 900));
}

}  // namespace
}  // namespace kalvex

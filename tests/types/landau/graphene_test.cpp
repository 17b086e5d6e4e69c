// Compares graphene in a magnetic field with direct sums, the conductivity at zero field, and quantised values.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "evaluation/eval_model.h"
#include "records/model_rows.h"
#include "support/tolerances.h"
#include "types/landau/dirac_levels.h"
#include "types/type_sample.h"
#include "types/types.h"

namespace kalvex {
namespace {

using C = std::complex<double>;
constexpr C kI{0, 1};
constexpr double kUniversal = 1816.5;  // e^2/(4 hbar) over 3.35 A, Ohm^-1 cm^-1
constexpr double kPerWavenumber = 0.00012399256044637322;

// Rows of type 41 for one kind of electrons.
struct Electrons {
  double T = 4, B = 7, window = 40, cutoff = 1.5, gap = 0, mu = 0.1, g = 0.002, v = 1e6;
};

class Graphene : public testing::Test {
 protected:
  Graphene() : sample(kGrapheneMagnetooptics, 1) {
    while (RowCount(sample.model()) > 4) RemoveRow(sample.model(), 4);
  }
  C Tensor(const Electrons& e, double x, Quantity quantity) {
    Model& model = sample.model();
    const double rows[4][3] = {{e.T, e.B, e.window}, {e.cutoff, 0, 0}, {e.gap, e.mu, e.g}, {e.v, 1, 0}};
    for (int r = 0; r < 4; ++r) {
      for (int c = 0; c < kColumns; ++c) Cell(model, r, c).value = rows[r][c];
    }
    return {sample.Value(quantity, x), sample.Value(NextAfter(quantity), x)};
  }
  C Diagonal(const Electrons& e, double x) { return Tensor(e, x, kS1); }
  C Hall(const Electrons& e, double x) { return Tensor(e, x, kN1); }
  TypeSample sample;
};

double Occupied(double energy, const Electrons& e) {
  return 1 / (std::exp((energy - e.mu) / (8.617346718945237e-05 * e.T)) + 1);
}

// The formula of the type's page, with Fermi's function for all levels.
std::pair<C, C> DirectSum(const Electrons& e, double x) {
  const C W(kPerWavenumber * x, 2 * e.g);
  const int n3 =
      static_cast<int>((e.cutoff * e.cutoff / 4 - e.gap * e.gap) / (2 * e.v * e.v * std::fabs(e.B) * 6.582e-16));
  const auto level = [&](int n) { return std::sqrt(e.gap * e.gap + 2 * e.v * e.v * 6.577e-16 * std::fabs(e.B) * n); };
  C diagonal, hall;
  for (int n = 0; n <= n3; ++n) {
    const double E1 = level(n), E2 = level(n + 1), S = E1 + E2, D = E2 - E1;
    const double ratio = e.gap == 0 ? 0 : e.gap * e.gap / (E1 * E2);
    const double first = Occupied(-E1, e) - Occupied(E2, e), second = Occupied(-E2, e) - Occupied(E1, e);
    const C a = 1.0 / (S * S - W * W), b = 1.0 / (D * D - W * W);
    diagonal += (first + second) * ((1 + ratio) * a / S + (1 - ratio) * b / D);
    hall += (first - second) * ((1 + ratio) * a + (1 - ratio) * b);
  }
  const double scale = 7266 * e.v * e.v * 6.577e-16;
  return {std::fabs(e.B) * scale * W / (kI * std::numbers::pi) * diagonal, -scale * e.B / std::numbers::pi * hall};
}

TEST_F(Graphene, IsTheSumOverLevelsAsItIsTold) {
  for (const Electrons& e : {Electrons{}, Electrons{.T = 300, .B = -3, .gap = 0.05, .mu = -0.07, .g = 0.01},
                             Electrons{.T = 77, .B = 12, .gap = -0.02, .mu = 0.02, .v = 0.9e6}}) {
    for (const double x : {50.0, 400.0, 1500.0, 4000.0}) {
      const auto [diagonal, hall] = DirectSum(e, x);
      EXPECT_LT(std::abs(Diagonal(e, x) - diagonal), kLongSum * std::abs(diagonal));
      EXPECT_LT(std::abs(Hall(e, x) - hall), kLongSum * (std::abs(hall) + std::abs(diagonal)));
    }
  }
}

TEST_F(Graphene, InAReversedFieldChangesTheSignOfItsHallPartOnly) {
  const Electrons e, reversed{.B = -7};
  for (const double x : {100.0, 900.0, 2500.0}) {
    EXPECT_EQ(Diagonal(e, x), Diagonal(reversed, x));
    EXPECT_EQ(Hall(e, x), -Hall(reversed, x));
    EXPECT_GT(std::abs(Hall(e, x)), 1);
  }
}

TEST_F(Graphene, WithoutAFieldIsUniversalAboveTwiceTheChemicalPotential) {
  constexpr double kLastLevel = 0.01;  // transitions above it are missing
  const Electrons e{.B = 0, .cutoff = 20, .g = 0.001};
  EXPECT_NEAR(Diagonal(e, 0.5 / kPerWavenumber).real(), kUniversal, kLastLevel * kUniversal);
  EXPECT_NEAR(Diagonal(e, 1.0 / kPerWavenumber).real(), kUniversal, kLastLevel * kUniversal);
  EXPECT_LT(Diagonal(e, 0.15 / kPerWavenumber).real(), 0.05 * kUniversal);
  EXPECT_EQ(Hall(e, 1000), C(0, 0));
}

TEST_F(Graphene, WithoutAFieldHasTheDrudeWeightOfItsCharge) {
  const Electrons e{.B = 0, .cutoff = 20, .g = 0.001};
  // sigma = i (u 4/pi) mu/(E + 2ig) far below 2 mu; the rest comes from transitions between the bands.
  const double x = 30;
  const C drude = kI * (4 * kUniversal / std::numbers::pi) * e.mu / C(kPerWavenumber * x, 2 * e.g);
  EXPECT_LT(std::abs(Diagonal(e, x) - drude), 0.03 * std::abs(drude));
}

TEST_F(Graphene, OutsideTheThermalWindowCountsAsFullOrEmpty) {
  constexpr double kBeyondWindow = 1e-9;  // levels outside are full or empty to exp(-40)
  // With a window of 0 only the level at the chemical potential has the value of the Fermi function.
  const Electrons wide{.T = 200}, none{.T = 200, .window = 0}, cold{.T = 0.01};
  EXPECT_GT(std::abs(Diagonal(wide, 300) - Diagonal(none, 300)), 1);
  EXPECT_LT(std::abs(Diagonal(cold, 300) - Diagonal({.T = 0.01, .window = 1e6}, 300)), kBeyondWindow);
}

TEST_F(Graphene, KindsOfCarriersAddWithTheirWeights) {
  const Electrons e;
  const C one = Diagonal(e, 500);
  Model& model = sample.model();
  InsertRow(model, 4);
  InsertRow(model, 5);
  for (int c = 0; c < kColumns; ++c) {
    Cell(model, 4, c).value = Cell(model, 2, c).value;
    Cell(model, 5, c).value = Cell(model, 3, c).value;
  }
  Cell(model, 5, Wp).value = 2.5;
  Cell(model, 1, Wp).value = 11;
  EXPECT_NEAR(sample.Value(kS1, 500), 3.5 * one.real() + 11, kRound * std::abs(one));
  EXPECT_NEAR(sample.Value(kS2, 500), 3.5 * one.imag(), kFormula * std::abs(one));
  InsertRow(model, 6);  // half a pair adds nothing
  EXPECT_NEAR(sample.Value(kS2, 500), 3.5 * one.imag(), kFormula * std::abs(one));
}

// The ladder sum that other types use.
class DiracLevels : public testing::Test {
 protected:
  static SheetTensor<double> Of(double B, double gap, double mu, double kT, const Cplx& z, int highest) {
    const double eps2 = kLadderScale * 1e12 * B;
    LadderTable<double> table;
    AddDiracTransitions(table, eps2, eps2, gap, mu, kT, highest);
    return LadderTensor(table, z, false);
  }
};

TEST_F(DiracLevels, LeaveOutWhatIsFullOrEmptyOnBothSides) {
  const auto count = [](double from, double to, double kT) {
    LadderTable<double> table;
    AddTransition(table, 1.0, from, to, kT);
    return table.square.size();
  };
  EXPECT_EQ(count(-0.41, -0.5, 0.01), 0u);
  EXPECT_EQ(count(0.41, 0.5, 0.01), 0u);
  EXPECT_EQ(count(-0.39, -0.5, 0.01), 1u);
  EXPECT_EQ(count(-0.5, 0.5, 0.01), 1u);
  EXPECT_EQ(count(-0.1, -0.2, 0), 0u);
  EXPECT_EQ(count(0, 0.2, 0), 1u);
  // The omitted terms are 0: compares with the sum over all levels.
  const double gap = 0.02, mu = 0.15, kT = 0.001, eps2 = kLadderScale * 1e12 * 7;
  const C z{0.11, 0.01};
  const auto f = [&](double E) { return 1 / (std::exp((E - mu) / kT) + 1); };
  C sum;
  for (int n = 0; n < 30; ++n) {
    for (const int from : {1, -1}) {
      for (const int to : {1, -1}) {
        const double E1 = from * std::sqrt(gap * gap + n * eps2), E2 = to * std::sqrt(gap * gap + (n + 1) * eps2);
        const double strength = 0.25 * (1 - gap * gap / (E1 * E2)), D = E2 - E1;
        sum += eps2 * strength * (f(E1) - f(E2)) / D / (D * D - z * z);
      }
    }
  }
  const C expected = C{0, -1} * z * sum * kLadderConductivity / std::numbers::pi;
  const Complex<double> xx = Of(7, gap, mu, kT, {z.real(), z.imag()}, 30).xx;
  EXPECT_LT(std::abs(C{xx.re, xx.im} - expected), kChain * std::abs(expected));
}

TEST_F(DiracLevels, GiveTheUniversalConductanceWhereTheyAreDense) {
  constexpr double kLastLevel = 0.01;  // transitions above it are missing
  for (const double E : {0.3, 0.5}) {
    EXPECT_NEAR(Of(0.05, 0, 0, 0.001, {E, 0.01}, 100000).xx.re, kUniversal, kLastLevel * kUniversal) << E;
  }
}

TEST_F(DiracLevels, TendToTheConductivityWithoutField) {
  for (const double mu : {0.0, 0.15}) {
    for (const double gap : {0.0, 0.06}) {
      for (const double E : {0.05, 0.2, 0.45}) {
        const Cplx z{E, 0.02};
        // Levels above the last one would contribute to the imaginary part.
        constexpr int kLevels = 400000;
        const double last = 2 * std::sqrt(kLadderScale * 1e12 * 0.02 * kLevels);
        const Cplx beyond = TimesI(z * (-2 / std::numbers::pi * kUniversal / last));
        const Cplx levels = Of(0.02, gap, mu, 1e-4, z, kLevels).xx + beyond, band = ChiralBand(z, gap, mu, 1).xx * 4.0;
        EXPECT_LT(Abs(levels - band), 0.01 * Abs(band)) << mu << ' ' << gap << ' ' << E;
      }
    }
  }
}

TEST_F(DiracLevels, HaveAHallConductivityOfWholeQuanta) {
  constexpr double kOfQuantum = 0.005;  // the sum over levels is truncated
  // -4 e^2/h (n + 1/2) for electrons between the levels n and n + 1; e^2/h is 2/pi times e^2/(4 hbar).
  const double eps = std::sqrt(kLadderScale * 1e12 * 10);
  for (const int n : {0, 1, 3}) {
    const double mu = 0.5 * eps * (std::sqrt(n) + std::sqrt(n + 1));
    const Cplx hall = Of(10, 0, mu, 1e-5, {0, 1e-6}, 200000).xy;
    EXPECT_NEAR(hall.re, -4 * (n + 0.5) * kUniversal * 2 / std::numbers::pi, kOfQuantum * kUniversal) << n;
  }
}

TEST_F(DiracLevels, RotateAtTheCyclotronEnergyOfTheirCharge) {
  constexpr double kOtherTransitions = 0.03;  // tails of other transitions under the line
  // Many full levels: only one circular polarisation absorbs at eps^2/(2 mu).
  const double B = 1, eps2 = kLadderScale * 1e12 * B, mu = 0.3, wc = eps2 / (2 * mu), g = 0.1 * wc;
  const SheetTensor<double> at = Of(B, 0, mu, 1e-4, {wc, g}, 4000);
  const double plus = (at.xx + TimesI(at.xy)).re, minus = (at.xx - TimesI(at.xy)).re;
  const double peak = 4 * kUniversal / std::numbers::pi * mu / g;
  EXPECT_NEAR(plus, peak, kOtherTransitions * peak);
  EXPECT_LT(minus, 0.02 * peak);
}

TEST(ChiralBands, AboveTheirGapTendToAWindingTimesTheUniversalValue) {
  // Of the gap beside the energy, squared; of the broadening; of the energy beside the gap.
  constexpr double kGap = 0.001, kAbsorption = 1e-4, kStatic = 1e-3;
  for (const double J : {1.0, 2.0}) {
    EXPECT_NEAR(4 * ChiralBand(Cplx{2.0, 1e-6}, 0.01, 0.0, J).xx.re, J * kUniversal, kGap * kUniversal);
    EXPECT_NEAR(ChiralBand(Cplx{0.01, 1e-9}, 0.1, 0.0, J).xx.re, 0, kAbsorption);
    EXPECT_NEAR(ChiralBand(Cplx{1e-5, 0.0}, 0.1, 0.0, J).xy.re, J * kUniversal / std::numbers::pi, kStatic);
    EXPECT_DOUBLE_EQ(4 * ChiralBand(Cplx{0.3, 0.01}, 0.0, 0.0, J).xx.re, J * 0.5 * kLadderConductivity / 4);
  }
}

TEST(ChiralBands, ObeyKramersAndKronig) {
  constexpr double kQuadrature = 1e-3;  // steps of E, and an end at 400 eV
  // Re sigma(iE) is the integral of Re sigma over the axis.
  for (const double mu : {0.0, 0.25}) {
    const double gap = 0.1, at = 0.2, g = 0.02, step = 2e-4;
    double sum = 0;
    for (double E = step / 2; E < 400; E += E < 20 ? step : 0.02) {
      sum += (E < 20 ? step : 0.02) * ChiralBand(Cplx{E, g}, gap, mu, 1).xx.re * at / (E * E + at * at);
    }
    const double above = ChiralBand(Cplx{0, g + at}, gap, mu, 1).xx.re;
    EXPECT_NEAR(2 / std::numbers::pi * sum, above, kQuadrature * above) << mu;
  }
}

class GrapheneOnSubstrate : public testing::Test {
 protected:
  GrapheneOnSubstrate() : sample(kGrapheneCircular, 4) {}
  ModelParam& At(int row, int column) { return Cell(sample.model(), row, column); }
  TypeSample sample;
};

TEST_F(GrapheneOnSubstrate, WithoutASubstrateAbsorbsAFixedShareOfTheLight) {
  constexpr double kConductance = 1e-5, kItsSquare = 1e-7;  // 1816.5 has five digits
  At(0, Wo).value = 0;
  At(0, Wp).value = 1;
  At(0, G).value = 0;
  At(1, Wp).value = 0;
  At(2, G).value = 0;
  At(3, Wo).value = At(3, Wp).value = 0;
  const double s = std::numbers::pi / 137.036;
  EXPECT_NEAR(sample.Value(kTrans, 2000), 4 / ((2 + s) * (2 + s)), kConductance);
  EXPECT_NEAR(sample.Value(kRefl, 2000), s * s / ((2 + s) * (2 + s)), kItsSquare);
  EXPECT_EQ(sample.Value(kE1, 2000), 1);
  EXPECT_EQ(sample.Value(kE2, 2000), 1);
  EXPECT_EQ(sample.Value(kDepth, 2000), 0);
  EXPECT_EQ(sample.Value(kLoss, 2000), 0);
}

TEST_F(GrapheneOnSubstrate, InAReversedFieldExchangesTheCircularSenses) {
  At(3, Wp).value = 0;
  At(0, Wo).value = 0;
  const auto values = [&] {
    std::vector<double> all;
    for (const Quantity q : {kE1, kE2, kS1, kN1, kS2, kN2, kDepth, kLoss, kTrans, kRefl})
      all.push_back(sample.Value(q, 700));
    return all;
  };
  const auto up = values();
  At(1, Wp).value *= -1;
  const auto down = values();
  for (const std::size_t pair : {0U, 2U, 4U}) {
    EXPECT_DOUBLE_EQ(up[pair], down[pair + 1]);
    EXPECT_DOUBLE_EQ(up[pair + 1], down[pair]);
    EXPECT_GT(std::fabs(up[pair] - up[pair + 1]), 1e-4);
  }
  EXPECT_NEAR(up[6], -down[6], kStep);
  EXPECT_NEAR(up[7], -down[7], kStep);
  EXPECT_DOUBLE_EQ(up[8], down[8]);
  EXPECT_DOUBLE_EQ(up[9], down[9]);
}

TEST_F(GrapheneOnSubstrate, WithoutAnEmptyLevelHasItsBackgroundAlone) {
  At(2, Wo).value = 3;
  At(2, G).value = 4;  // far above the three levels
  EXPECT_EQ(sample.Value(kS1, 700), At(3, Wo).value);
  EXPECT_EQ(sample.Value(kN1, 700), At(3, Wo).value);
  EXPECT_NE(sample.Value(kE1, 700), 1);  // at zero field all energies contribute
}

TEST_F(GrapheneOnSubstrate, AThinFilmRotatesByHalfTheImaginaryPartOfItsHallSheet) {
  constexpr double kNextOrder = 1e-4;  // of the film
  At(0, Wo).value = 0;
  At(0, Wp).value = 1e-4;
  const C plus{sample.Value(kS1, 700), sample.Value(kS2, 700)}, minus{sample.Value(kN1, 700), sample.Value(kN2, 700)};
  const double expected = 0.5 * (1.2619984361819279e-05 * 1e-4 / 2 * (plus - minus)).imag();
  EXPECT_NEAR(sample.Value(kDepth, 700), expected, kNextOrder * std::fabs(expected));
}

}  // namespace
}  // namespace kalvex

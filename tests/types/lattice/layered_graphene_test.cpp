// Compares layers of graphene with a Kubo sum by another solver, with the closed limits of a single sheet, the steps of
// a bilayer, and each other.
#include <algorithm>

#include "support/difference_quotient.h"
#include "support/jacobi.h"
#include "support/tolerances.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

constexpr double kEvPerWavenumber = 0.00012399256044637322, kEvPerKelvin = 8.617346718945237e-05;
constexpr double kLayerValue = 1816.5;  // e^2/(4 hbar) over 3.35 A

// The numbers in the rows 1 to 6 of all these types.
struct Layers {
  double g0 = 3.1, g1 = 0, g3 = 0, g4 = 0, siteA = 0, U = 0, mu = 0, site = 0, T = 300;
  double cells = 100, broadening = 0.02, epsInf = 1, interband = 1, intraband = 1, thickness = 6.7;
  double radius = 0.15, directions = 12;
};

class LayeredGraphene : public TypeFixture {
 protected:
  // A model with nine rows: the common ones, the hoppings in row 7, the option in row 9.
  Model& MakeLayers(int code, const Layers& l, double g2 = 0, double g5 = 0, double option = 0) {
    return Make(code, {{l.g0, l.g1, l.g3},
                       {l.g4, l.siteA, l.U},
                       {l.mu, l.site, l.T},
                       {l.cells, l.broadening, l.epsInf},
                       {l.interband, l.intraband, l.thickness},
                       {l.radius, l.directions, 0},
                       {g2, g5, 0},
                       {0, 0, 0},
                       {option, 0, 0}});
  }
  double SigmaAt(Model& model, double eV) { return At(model, kS1, eV / kEvPerWavenumber); }
};

// ---- the sum by another solver

double Occupation(double e, double kT) { return 1 / (std::exp(e / kT) + 1); }

// H and dH/dk_x of a bilayer at k in coordinates of the reciprocal lattice, from the three neighbours in the plane.
struct SlowBilayer {
  ComplexMatrix h{4, std::vector<C>(4)}, slope{4, std::vector<C>(4)};

  SlowBilayer(const Layers& l, double u, double v) {
    const double length = 2.4595, p = 2 * std::numbers::pi * u, q = 2 * std::numbers::pi * v;
    // From an A to its neighbours in the plane: a third of a1 + a2, the same less a1, and less a2.
    const double third = (p + q) / 3;
    const C waves[] = {std::polar(1.0, third), std::polar(1.0, third - p), std::polar(1.0, third - q)};
    const double steps[] = {length / 2, -length / 2, 0};
    C f = 0, df = 0;
    for (int s = 0; s < 3; ++s) {
      f += waves[s];
      df += kI * steps[s] * waves[s];
    }
    // Order A1 B1 A2 B2. Hops along f: from A1 and A2 to B1, from B2 to A1 and A2, from B1 to B2.
    const auto put = [&](int i, int j, double size, C wave, C slopeOfWave) {
      const auto a = static_cast<std::size_t>(i), b = static_cast<std::size_t>(j);
      h[a][b] += size * wave;
      h[b][a] += std::conj(size * wave);
      slope[a][b] += size * slopeOfWave;
      slope[b][a] += std::conj(size * slopeOfWave);
    };
    put(0, 1, l.g0, f, df);
    put(3, 2, l.g0, f, df);
    put(0, 2, l.g1, 1, 0);
    put(1, 3, l.g3, f, df);
    put(3, 0, l.g4, f, df);
    put(2, 1, l.g4, f, df);
    const double sites[] = {l.site + l.U / 2 + l.siteA, l.site + l.U / 2, l.site - l.U / 2 + l.siteA, l.site - l.U / 2};
    for (std::size_t i = 0; i < 4; ++i) h[i][i] += sites[i];
  }
};

// The sum over all ordered pairs and the whole zone, without use of symmetry.
C SlowSigma(const Layers& l, double eV, int cells, bool inter, bool intra) {
  const double length = 2.4595, area = length * length * std::sqrt(0.75), kT = kEvPerKelvin * l.T;
  C sum = 0;
  for (int i = 0; i < cells; ++i) {
    for (int j = 0; j < cells; ++j) {
      const SlowBilayer at(l, (i + 0.5) / cells, (j + 0.5) / cells);
      const JacobiStates solved = SolveByJacobi(at.h);
      for (std::size_t a = 0; a < 4; ++a) {
        for (std::size_t b = 0; b < 4; ++b) {
          C element = 0;
          for (std::size_t r = 0; r < 4; ++r) {
            for (std::size_t c = 0; c < 4; ++c) {
              element += std::conj(solved.state[a][r]) * at.slope[r][c] * solved.state[b][c];
            }
          }
          const double from = solved.level[a] - l.mu, to = solved.level[b] - l.mu, D = to - from;
          const double f = Occupation(from, kT);
          const double quotient = a == b ? f * (1 - f) / kT : (f - Occupation(to, kT)) / D;
          if (a == b ? intra : inter) sum += std::norm(element) * quotient / (eV - D + kI * l.broadening);
        }
      }
    }
  }
  return kI * 2.43413e-4 * 2.0 / (area * cells * cells) * sum / (l.thickness * 1e-8);
}

constexpr Layers kFull{.g0 = 3.1,
                       .g1 = 0.38,
                       .g3 = 0.29,
                       .g4 = 0.14,
                       .siteA = 0.05,
                       .U = 0.2,
                       .mu = 0.3,
                       .site = 0.02,
                       .T = 1500,
                       .cells = 6,
                       .broadening = 0.1,
                       .radius = 0};

TEST_F(LayeredGraphene, HasTheSumThatIsWrittenOut) {
  Model& model = MakeLayers(34, kFull);
  for (const double eV : {0.2, 0.7, 2.5, 9.0}) {
    const C expected = SlowSigma(kFull, eV, 6, true, true);
    const C sigma = Pair(model, kS1, eV / kEvPerWavenumber);
    EXPECT_NEAR(sigma.real(), expected.real(), kLongSum * std::abs(expected)) << eV;
    EXPECT_NEAR(sigma.imag(), expected.imag(), kLongSum * std::abs(expected)) << eV;
  }
}

TEST_F(LayeredGraphene, TakesAnOddMeshAsTheNextEvenOne) {
  Layers odd = kFull;
  odd.cells = 5;
  EXPECT_EQ(SigmaAt(MakeLayers(34, odd), 1), SigmaAt(MakeLayers(34, kFull), 1));
}

TEST_F(LayeredGraphene, WeighsItsPartsAndLeavesOneOut) {
  Layers weighted = kFull;
  weighted.interband = 0.7;
  weighted.intraband = 1.9;
  weighted.thickness = 5;
  const C inter = SlowSigma(weighted, 0.9, 6, true, false), intra = SlowSigma(weighted, 0.9, 6, false, true);
  const double x = 0.9 / kEvPerWavenumber;
  const auto expectSigma = [&](Model& model, C expected) {
    const C sigma = Pair(model, kS1, x);
    EXPECT_NEAR(std::abs(sigma - expected), 0, kLongSum * std::abs(expected));
  };
  expectSigma(MakeLayers(34, weighted), 0.7 * inter + 1.9 * intra);
  expectSigma(MakeLayers(34, weighted, 0, 0, 1), 0.7 * inter + 1.9 * intra);  // type 34 has no options
  expectSigma(MakeLayers(36, weighted), 0.7 * inter + 1.9 * intra);
  expectSigma(MakeLayers(36, weighted, 0, 0, 1), 0.7 * inter);
  expectSigma(MakeLayers(38, weighted, 0, 0, 1), 0.7 * inter);
  weighted.interband = weighted.intraband = weighted.thickness = 0;
  Layers usual = kFull;
  expectSigma(MakeLayers(34, weighted), SlowSigma(usual, 0.9, 6, true, true));
}

TEST_F(LayeredGraphene, ItsDielectricFunctionIsThatOfItsConductivity) {
  Layers layers = kFull;
  layers.epsInf = 2.5;
  Model& model = MakeLayers(34, layers);
  const double x = 3000;
  const C expected = 2.5 + 60.0 * kI / x * SlowSigma(layers, x * kEvPerWavenumber, 6, true, true);
  const C eps = Pair(model, kE1, x), sigma = Pair(model, kS1, x);
  EXPECT_NEAR(std::abs(eps - expected), 0, kLongSum * std::abs(expected));
  EXPECT_NEAR(std::abs(sigma - (-kI * x / 60.0 * (eps - 1.0))), 0, kRound * std::abs(sigma));
}

// ---- limits of a sheet

TEST_F(LayeredGraphene, WithoutCouplingAbsorbsTheUniversalShare) {
  constexpr double kMesh = 0.02;  // of 300 cells, at a broadening of the same size
  Model& model = MakeLayers(34, {.cells = 300});
  for (const double eV : {0.3, 0.5, 0.8}) EXPECT_NEAR(SigmaAt(model, eV), kLayerValue, kMesh * kLayerValue) << eV;
}

TEST_F(LayeredGraphene, WithoutCouplingStartsToAbsorbAtTwiceTheChemicalPotential) {
  constexpr double kStep = 0.1, kAbove = 0.05;  // a mesh at a step, and above it
  const Layers doped{.mu = 0.4, .T = 30, .cells = 800, .broadening = 0.005, .radius = 0.1};
  Model& model = MakeLayers(36, doped, 0, 0, 1);
  EXPECT_LT(SigmaAt(model, 0.6), 0.03 * kLayerValue);
  EXPECT_NEAR(SigmaAt(model, 0.8), 0.5 * kLayerValue, kStep * kLayerValue);
  EXPECT_NEAR(SigmaAt(model, 1.0), kLayerValue, kAbove * kLayerValue);
}

TEST_F(LayeredGraphene, WithoutCouplingItsFreeCarriersHaveTheirClosedWeight) {
  constexpr double kMesh = 0.01;  // steps of the mesh, and bands that are not cones
  // sigma = e^2/(4 hbar) (4 mu/pi) i/(E + ig) a layer
  const Layers doped{.mu = 0.3, .T = 200, .cells = 400, .broadening = 0.05, .radius = 0.1};
  const C with = Pair(MakeLayers(36, doped), kS1, 400), without = Pair(MakeLayers(36, doped, 0, 0, 1), kS1, 400);
  const C expected = kLayerValue * 4 * 0.3 / std::numbers::pi * kI / (400 * kEvPerWavenumber + 0.05 * kI);
  EXPECT_NEAR(std::abs(with - without - expected), 0, kMesh * std::abs(expected));
}

TEST_F(LayeredGraphene, CountsTheElectronsOfItsCones) {
  constexpr double kMesh = 0.01;  // steps of the mesh, and bands that are not cones
  const double mu = 0.3, kT = kEvPerKelvin * 300, velocity = std::sqrt(0.75) * 2.4595 * 3.1;
  const double area = 2.4595 * 2.4595 * std::sqrt(0.75);
  // Two layers, four cones each with spin: area (mu^2 + (pi kT)^2/3)/(pi v^2)
  const double expected =
      2 * area * (mu * mu + std::pow(std::numbers::pi * kT, 2) / 3) / (std::numbers::pi * velocity * velocity);
  EXPECT_NEAR(At(MakeLayers(34, {.mu = mu, .cells = 400}), kN1, 1000), expected, kMesh * expected);
  EXPECT_NEAR(At(MakeLayers(34, {.mu = -mu, .cells = 400}), kN1, 1000), -expected, kMesh * expected);
  EXPECT_NEAR(At(MakeLayers(34, {}), kN1, 1000), 0, kRound);
}

TEST_F(LayeredGraphene, IsTheSameFromTheZoneAndFromTheDisc) {
  constexpr double kMesh = 0.03;  // steps of two meshes; states outside the disc are missing
  Layers layers{.g1 = 0.4, .mu = 0.1, .cells = 200, .broadening = 0.1, .radius = 0.2, .directions = 24};
  Model& disc = MakeLayers(34, layers);
  layers.radius = 0;
  layers.cells = 300;
  Model& zone = MakeLayers(34, layers);
  for (const double eV : {0.2, 0.4, 0.7, 1.0}) {
    EXPECT_NEAR(SigmaAt(disc, eV), SigmaAt(zone, eV), kMesh * SigmaAt(zone, eV)) << eV;
  }
}

TEST_F(LayeredGraphene, WithTwiceTheMeshChangesLittleAboveItsSteps) {
  constexpr double kMesh = 0.01;
  Layers layers{.g1 = 0.4, .mu = 0.1, .cells = 80, .broadening = 0.1};
  Model& coarse = MakeLayers(34, layers);
  layers.cells = 160;
  layers.directions = 24;
  Model& fine = MakeLayers(34, layers);
  for (const double eV : {0.2, 0.4, 0.7}) {
    EXPECT_NEAR(SigmaAt(coarse, eV), SigmaAt(fine, eV), kMesh * SigmaAt(fine, eV)) << eV;
  }
}

// ---- a bilayer

TEST_F(LayeredGraphene, OfTwoCoupledLayersHasAPeakAtTheirCoupling) {
  constexpr double kStepOfSearch = 0.006, kCoupling = 0.1;  // eV; and g1 beside 1.3 eV
  // Electrons up to 0.25 eV: from the low to the split band, a constant distance of g1 apart.
  Model& model =
      MakeLayers(36, {.g1 = 0.4, .mu = 0.25, .T = 30, .cells = 500, .broadening = 0.005, .radius = 0.1}, 0, 0, 1);
  double peak = 0, at = 0;
  for (double eV = 0.3; eV < 0.5; eV += 0.005) {
    if (SigmaAt(model, eV) <= peak) continue;
    peak = SigmaAt(model, eV);
    at = eV;
  }
  EXPECT_NEAR(at, 0.4, kStepOfSearch);
  EXPECT_GT(peak, 5 * kLayerValue);
  EXPECT_LT(SigmaAt(model, 0.25), 0.2 * kLayerValue);
  // Above 2 mu and g1 it tends to the value of two layers.
  EXPECT_NEAR(SigmaAt(model, 1.3), kLayerValue, kCoupling * kLayerValue);
}

TEST_F(LayeredGraphene, UndopedStartsItsSecondStepAtTheCoupling) {
  constexpr double kMesh = 0.05;  // of 800 cells
  Model& model = MakeLayers(36, {.g1 = 0.4, .T = 30, .cells = 800, .broadening = 0.003, .radius = 0.1}, 0, 0, 1);
  // Below g1 only transitions between the low bands, in the unit of two layers (E + 2 g1)/(2 (E + g1)):
  // E. J. Nicol, J. P. Carbotte, Phys. Rev. B 77, 155409 (2008)
  for (const double eV : {0.15, 0.25}) {
    const double expected = kLayerValue * (eV + 0.8) / (2 * (eV + 0.4));
    EXPECT_NEAR(SigmaAt(model, eV), expected, kMesh * expected) << eV;
  }
  EXPECT_GT(SigmaAt(model, 0.43), 1.4 * SigmaAt(model, 0.37));
}

TEST_F(LayeredGraphene, ItsConductivityObeysKramersAndKronig) {
  constexpr double kQuadrature = 2e-3;  // steps of 5 meV, and an end at 60 eV
  Model& model = MakeLayers(34, kFull);
  const double E = 0.8;
  // Im sigma(E) = -(2E/pi) integral of (Re sigma(e) - Re sigma(E))/(e^2 - E^2); from 300 eV on a tail like e^-2.
  const double at = SigmaAt(model, E), step = 0.005;
  double sum = 0;
  for (double e = step / 2; e < 60; e += step) sum += step * (SigmaAt(model, e) - at) / (e * e - E * E);
  sum -= at / (2 * E) * std::log((60 + E) / (60 - E));  // the constant beyond
  EXPECT_NEAR(-2 * E / std::numbers::pi * sum, At(model, kS2, E / kEvPerWavenumber), kQuadrature * at);
}

// ---- three layers

TEST_F(LayeredGraphene, OfThreeLayersIsOneLayerAndABilayer) {
  Layers layers{.g1 = 0.4, .mu = 0.2, .cells = 20, .broadening = 0.05, .thickness = 10};
  Model& triple = MakeLayers(66, layers);
  layers.g1 = 0.4 * std::sqrt(2.0);
  Model& twice = MakeLayers(34, layers);
  layers.g1 = 0;
  Model& apart = MakeLayers(34, layers);
  for (const double x : {500.0, 2000.0, 5000.0, 9000.0}) {
    const C expected = Pair(twice, kS1, x) + 0.5 * Pair(apart, kS1, x);
    EXPECT_NEAR(std::abs(Pair(triple, kS1, x) - expected), 0, kFormula * std::abs(expected)) << x;
  }
  EXPECT_NEAR(At(triple, kN1, 500), At(twice, kN1, 500) + 0.5 * At(apart, kN1, 500), kRound);
}

TEST_F(LayeredGraphene, OfThreeLayersTellsItsPartsAndItsLoss) {
  Layers layers = kFull;
  layers.epsInf = 3;
  Model& model = MakeLayers(66, layers, -0.02, 0.04);
  const double x = 4000;
  const C sigma = Pair(model, kRefl, x) + Pair(model, kRp, x), eps = Pair(model, kE1, x);
  EXPECT_NEAR(std::abs(eps - (3.0 + 60.0 * kI * sigma / x)), 0, kRound * std::abs(eps));
  EXPECT_NEAR(At(model, kLoss, x), std::imag(-1.0 / eps), kRound);
  // Intraband part: i times a weight over E + ig.
  const C ratio = Pair(model, kRp, x) / Pair(model, kRp, 2 * x);
  const C expected = (2 * x * kEvPerWavenumber + 0.1 * kI) / (x * kEvPerWavenumber + 0.1 * kI);
  EXPECT_NEAR(std::abs(ratio - expected), 0, kRound * std::abs(expected));
}

TEST_F(LayeredGraphene, OfThreeLayersMovesWithTheHoppingsBetweenTheOuterOnes) {
  // At K only g1, g2 and g5 act: g5 (g2) splits the A (B) sites of the outer layers. With g1 = 0 the levels are +-g2/2,
  // +-g5/2, 0, 0. The number of electrons in a small cold disc counts the levels.
  Layers layers{.T = 1, .cells = 4, .radius = 1e-6};
  const auto electronsBelow = [&](double mu) {
    layers.mu = mu;
    Model& model = MakeLayers(66, layers, 0.2, 0.6);
    const double share = 2 * std::numbers::pi * 1e-12 * std::sqrt(4.0 / 3);
    return At(model, kN1, 100) / share / 2;  // without spin
  };
  constexpr double kSmallDisc = 1e-3;  // levels vary a little over the disc
  EXPECT_NEAR(electronsBelow(-0.35), -3, kSmallDisc);
  EXPECT_NEAR(electronsBelow(-0.2), -2, kSmallDisc);
  EXPECT_NEAR(electronsBelow(-0.05), -1, kSmallDisc);
  EXPECT_NEAR(electronsBelow(0.05), 1, kSmallDisc);
  EXPECT_NEAR(electronsBelow(0.2), 2, kSmallDisc);
  EXPECT_NEAR(electronsBelow(0.35), 3, kSmallDisc);
}

TEST_F(LayeredGraphene, OfThreeLayersWithoutRowsIsNothingButItsConstant) {
  Model& model = Make(66, {});
  EXPECT_EQ(Status(model, 1000), 0);
  EXPECT_EQ(Left(kE1), 0);
  EXPECT_EQ(Left(kS1), 0);
}

// ---- degenerate levels

// Two uncoupled layers: every level is twofold degenerate, with any mixture of states. Coupling and splitting act only
// to second order.
TEST_F(LayeredGraphene, ItsSlopesDoNotMindLevelsThatMeet) {
  Layers layers{.siteA = 0.3, .mu = 0.4, .T = 1500, .cells = 6, .broadening = 0.2, .radius = 0};
  Model& model = MakeLayers(34, layers);
  for (ModelParam& param : model.rows) param.adjustable = 1;
  for (const Quantity q : {kS1, kS2, kN1}) {
    const double value = QuantityAt(program, model, q, 6000, true);
    const auto slope = [&](int row, int column) { return Cell(model, row, column).savedSlopes.dQuantity[q]; };
    for (const auto& [row, column] : {std::pair(0, 1), {0, 2}, {1, 0}, {1, 2}}) {
      EXPECT_NEAR(slope(row, column), 0, kRound * std::fabs(value)) << row << ' ' << column << " of " << q;
    }
    for (const auto& [row, column] : {std::pair(0, 0), {1, 1}, {2, 0}, {2, 1}, {2, 2}}) {
      const double expected = slope(row, column);
      ModelParam& param = Cell(model, row, column);
      const double start = param.value;
      const SlopeEstimate estimate = RiddersSlope(
          [&](double v) {
            param.value = v;
            return At(model, q, 6000);
          },
          start, 0.1 * std::fmax(std::fabs(start), 0.1));
      param.value = start;
      EXPECT_NEAR(expected, estimate.value, kRidders * estimate.error + kSlopeOfSum * std::fabs(expected))
          << row << ' ' << column;
    }
  }
}

// Nearly degenerate: levels 1e-5 and 1e-9 eV apart, on both sides of the threshold.
TEST_F(LayeredGraphene, ItsSlopesGoOnSmoothlyWhereLevelsComeClose) {
  constexpr double kMeeting = 1e-7;  // levels that nearly meet: half of the digits are lost
  const auto slopes = [&](double coupling) {
    Layers layers{.g1 = coupling, .siteA = 0.3, .mu = 0.4, .T = 1500, .cells = 6, .broadening = 0.2, .radius = 0};
    Model& model = MakeLayers(34, layers);
    for (ModelParam& param : model.rows) param.adjustable = 1;
    QuantityAt(program, model, kS1, 6000, true);
    std::vector<double> all;
    for (const auto& [row, column] : {std::pair(0, 0), {1, 1}, {2, 0}, {2, 1}, {2, 2}}) {
      all.push_back(Cell(model, row, column).savedSlopes.dQuantity[kS1]);
    }
    return all;
  };
  const auto exact = slopes(0);
  for (const double coupling : {1e-12, 1e-9, 1e-8, 3e-8, 1e-7, 3e-7, 1e-6, 1e-5}) {
    const auto near = slopes(coupling);
    for (std::size_t i = 0; i < exact.size(); ++i) {
      EXPECT_NEAR(near[i], exact[i], kMeeting * std::fabs(exact[i])) << coupling << ' ' << i;
    }
  }
}

// ---- phonons

TEST_F(LayeredGraphene, WithPhononsAddsThemAsWritten) {
  const auto row = [](const Layers& l) {
    return std::array<std::array<double, 3>, 9>{{{l.g0, l.g1, l.g3},
                                                 {l.g4, l.siteA, l.U},
                                                 {l.mu, l.site, l.T},
                                                 {l.cells, l.broadening, l.epsInf},
                                                 {l.interband, l.intraband, l.thickness},
                                                 {l.radius, l.directions, 0},
                                                 {0, 0, 0},
                                                 {0, 0, 0},
                                                 {0, 0, 0}}};
  };
  const auto r = row(kFull);
  Model& plain = MakeLayers(36, kFull);
  Model& lone = Make(38, {r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7], r[8], {1590, 250, 15}});
  Model& pairs =
      Make(38, {r[0], r[1], r[2], r[3], r[4], r[5], r[6], r[7], r[8], {1590, 250, 15}, {2500, 0.3, 400}, {880, 90, 8}});
  for (const double x : {700.0, 1585.0, 2400.0}) {
    const C rest = Pair(plain, kE1, x);
    const auto line = [&](double W, double S, double g) { return S * S / (W * W - x * x - kI * g * x); };
    const C phonon = line(1590, 250, 15), electronic = line(2500, 2500, 400);
    EXPECT_NEAR(std::abs(Pair(lone, kE1, x) - rest - phonon), 0, kRound * std::abs(rest)) << x;
    const C both = phonon / (1.0 - phonon * 0.3 * electronic) + line(880, 90, 8);
    EXPECT_NEAR(std::abs(Pair(pairs, kE1, x) - rest - both), 0, kRound * std::abs(rest)) << x;
  }
}

// ---- differences

TEST_F(LayeredGraphene, TheirDifferenceIsSeenThroughMeasuredWeights) {
  Layers other = kFull;
  other.mu = 0.1;
  Load(5, 500, 5000, [](double x) { return 1e-4 * x; });
  Load(6, 500, 5000, [](double x) { return 2 - 1e-4 * x; });
  for (const auto& [code, of] : {std::pair(35, 34), {37, 36}}) {
    Model &a = MakeLayers(of, kFull), &b = MakeLayers(of, other);
    const double first = a.number, second = b.number;
    Model& difference = Make(code, {{first, second, 0}, {5, 6, 0}, {3, 0.25, 0}});
    const double x = 2000;
    const C d = Pair(a, kE1, x) - Pair(b, kE1, x);
    EXPECT_CLOSE(At(difference, kE1, x), d.real(), kChain);
    EXPECT_CLOSE(At(difference, kE2, x), d.imag(), kChain);
    EXPECT_CLOSE(At(difference, kRefl, x), 3 * (0.2 * d.real() + 1.8 * d.imag()) + 0.25, kRound);
    Model& same = Make(code, {{first, first, 0}, {5, 6, 0}, {3, 0.25, 0}});
    EXPECT_EQ(At(same, kRefl, x), 0.25);
    EXPECT_EQ(Status(Make(code, {{first, second, 0}, {5, 6, 0}}), x), -1);
    Model& withoutData = Make(code, {{first, second, 0}, {0, 7, 0}, {3, 0.25, 0}});
    EXPECT_EQ(At(withoutData, kRefl, x), 0.25);
  }
}

// Two types share each name.
TEST_F(LayeredGraphene, CodesOfOneNameAreTwoTypes) {
  Model& material = MakeLayers(34, kFull);
  EXPECT_STREQ(TypeNameOf(program.eval, material), "DF bilayer");
  const double first = material.number;
  Model& difference = Make(35, {{first, first, 0}, {0, 0, 0}, {1, 0.5, 0}});
  EXPECT_STREQ(TypeNameOf(program.eval, difference), "DF bilayer");
  EXPECT_EQ(At(difference, kRefl, 1000), 0.5);
  EXPECT_EQ(At(material, kRefl, 1000), 0);
}

}  // namespace
}  // namespace kalvex

// Compares levels of bilayer graphene and graphite with closed formulas and an independent diagonalisation, and
// conductivities with their limits.
#include "types/landau/bilayer_levels.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

constexpr double kUniversal = 1816.5;

TEST(SmallEigenTest, AgreesWithTheCharacteristicPolynomialAndIsOrthonormal) {
  SmallMatrix<double, 4> m{};
  const double entries[10] = {1, 0.3, -0.2, 0.1, -0.5, 0.7, 0.25, 2, -0.4, 0.6};
  int k = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = i; j < 4; ++j) m[i][j] = entries[k++];
  }
  const auto eigen = EigenOf(m, 4);
  for (std::size_t e = 0; e < 4; ++e) {
    for (std::size_t i = 0; i < 4; ++i) {
      double product = 0;
      for (std::size_t j = 0; j < 4; ++j) product += m[std::min(i, j)][std::max(i, j)] * eigen.vector[e][j];
      EXPECT_NEAR(product, eigen.value[e] * eigen.vector[e][i], 2 * kRound);
    }
    for (std::size_t f = 0; f < 4; ++f) {
      double product = 0;
      for (std::size_t j = 0; j < 4; ++j) product += eigen.vector[e][j] * eigen.vector[f][j];
      EXPECT_NEAR(product, e == f ? 1 : 0, kRound);
    }
    EXPECT_LE(eigen.value[e == 0 ? 0 : e - 1], eigen.value[e]);
  }
}

TEST(SmallEigenTest, CarriesDerivativesOfValuesAndVectors) {
  constexpr double kQuotient = 1e-8, kQuotientOfVector = 1e-7;  // errors of quotients with this step
  const auto matrix = [](auto t) {
    using T = decltype(t);
    SmallMatrix<T, 4> m{};
    m[0] = {T(1) + t, T(0.3) * t, T(-0.2), T(0.1)};
    m[1] = {T(0), T(-0.5), T(0.7) + t * t, T(0.25)};
    m[2] = {T(0), T(0), T(2), T(-0.4) * t};
    m[3] = {T(0), T(0), T(0), T(0.6)};
    return m;
  };
  const double t = 0.8, h = 1e-5;
  const auto dual = EigenOf(matrix(Dual<2>(t, 1)), 4);
  const auto up = EigenOf(matrix(t + h), 4), down = EigenOf(matrix(t - h), 4);
  for (std::size_t e = 0; e < 4; ++e) {
    EXPECT_NEAR(dual.value[e].v[1], (up.value[e] - down.value[e]) / (2 * h), kQuotient);
    EXPECT_EQ(dual.value[e].v[0], 0);
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_NEAR(dual.vector[e][i].v[1], (up.vector[e][i] - down.vector[e][i]) / (2 * h), kQuotientOfVector);
    }
  }
}

TEST(BilayerLevels, FollowTheClosedFormulaWithoutAsymmetry) {
  constexpr double kNextOrder = 1e-7;  // of eps/g1
  const double g1 = 0.38, eps = 0.1;
  const BilayerBands<double> bands{0, g1, 0, 0, 0};
  for (int n = 2; n < 8; ++n) {
    const auto level = BilayerLevel(bands, eps, n);
    const double middle = g1 * g1 + (2 * n - 1) * eps * eps;
    const double root = std::sqrt(std::pow(g1, 4) + 2 * (2 * n - 1) * eps * eps * g1 * g1 + std::pow(eps, 4));
    const double low = std::sqrt((middle - root) / 2), high = std::sqrt((middle + root) / 2);
    const double expected[] = {-high, -low, low, high};
    for (std::size_t k = 0; k < 4; ++k) EXPECT_NEAR(level.value[k], expected[k], kRound) << n;
  }
  // Small fields: eps^2/g1 sqrt(n(n - 1)).
  const auto low = BilayerLevel(bands, 0.005, 3);
  EXPECT_NEAR(low.value[2], 0.005 * 0.005 / g1 * std::sqrt(6), kNextOrder);
}

TEST(BilayerLevels, OfTheOtherValleyAreMirroredByTheLayers) {
  const BilayerBands<double> bands{0.04, 0.38, 0.12, 0.02, 0.01}, other{0.04, 0.38, -0.12, 0.02, 0.01};
  EXPECT_NEAR(BilayerLevel(bands, 0.1, 0).value[0], 0.07, kStep);
  EXPECT_NEAR(BilayerLevel(other, 0.1, 0).value[0], -0.05, kStep);
}

class BilayerTypes : public TypeFixture {
 protected:
  // T, B, broadening, g0, g1, g4, U, mu of type 111.
  Model& Sheet(double B, double g, double U, double mu, double levels, double g1 = 0.38) {
    return Make(111, {{4, B, g}, {3.1, g1, 0}, {U, 0, mu}, {levels, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  }
  static double Wavenumbers(double eV) { return eV / 0.00012399256044637322; }
};

TEST_F(BilayerTypes, FarAboveTheirHoppingAreTwoLayers) {
  // The hopping between the layers is not small compared with 0.9 eV. Without hopping the broadening limits.
  constexpr double kHopping = 0.1, kBroadening = 0.01;
  // The conductivity of a layer of 6.7 A equals that of one layer of 3.35 A.
  EXPECT_NEAR(At(Sheet(0, 0.01, 0, 0, 10), kS1, Wavenumbers(0.9)), kUniversal, kHopping * kUniversal);
  EXPECT_NEAR(At(Sheet(0.5, 0.02, 0, 0, 3000), kS1, Wavenumbers(0.9)), kUniversal, kHopping * kUniversal);
  // Without hopping between the layers each one is graphene.
  EXPECT_NEAR(At(Sheet(0, 0.01, 0, 0, 10, 0), kS1, Wavenumbers(0.5)), kUniversal, kBroadening * kUniversal);
}

TEST_F(BilayerTypes, WithoutAHoppingInThePlaneHaveNoHallPartButTheBackground) {
  Model& model = Make(111, {{4, 8, 0.05}, {0, 0.38, 0.14}, {0.1, 0, 0.05}, {10, 30, 20}, {}, {}, {}});
  const double x = Wavenumbers(0.2), without = At(model, kE1, x);
  EXPECT_NEAR(At(model, kDepth, x), 20 / 2.0, kChain);
  EXPECT_NEAR(At(model, kLoss, x), 0, kRound);
  Cell(model, 1, G).value = 0.2;  // g4 acts through g4/g0
  EXPECT_EQ(At(model, kE1, x), without);
}

TEST_F(BilayerTypes, BelowTheHoppingHaveHalfTheWindingOfTheirChiralBand) {
  constexpr double kNextOrder = 0.06;  // in E/g1 = 0.05
  // A bilayer far below g1 is a chiral band of winding 2: twice 1816.5 for the pair.
  const double E = 0.02;
  EXPECT_NEAR(At(Sheet(0, 0.002, 0, 0, 10), kS1, Wavenumbers(E)), kUniversal, kNextOrder * kUniversal);
}

TEST_F(BilayerTypes, TendToTheirConductivityWithoutFieldAndReverseTheirHallPart) {
  constexpr double kWeakField = 0.03;  // spacing of the levels relative to their broadening
  Model &weak = Sheet(0.05, 0.02, 0.05, 0.1, 4000), &none = Sheet(0, 0.02, 0.05, 0.1, 10);
  for (const double E : {0.1, 0.3}) {
    EXPECT_NEAR(At(weak, kS1, Wavenumbers(E)), At(none, kS1, Wavenumbers(E)), kWeakField * kUniversal) << E;
  }
  Model &up = Sheet(8, 0.01, 0.05, 0.1, 60), &down = Sheet(-8, 0.01, 0.05, 0.1, 60);
  EXPECT_DOUBLE_EQ(At(up, kS1, 900), At(down, kS1, 900));
  EXPECT_DOUBLE_EQ(At(up, kDepth, 900), -At(down, kDepth, 900));
  EXPECT_GT(std::fabs(At(up, kDepth, 900)), 10);
}

TEST_F(BilayerTypes, HaveAHallConductivityOfWholeQuanta) {
  constexpr double kOfQuantum = 0.02;  // the sum over levels is truncated
  // The level at zero energy is eightfold. Between it and the next level, n = 2, sigma_xy is -4 e^2/h for electrons.
  const double eps = std::sqrt(2 * 6.577e-16 * std::pow(326000 * 3.1, 2) * 10);
  const BilayerBands<double> bands{0, 0.38, 0, 0, 0};
  const double mu = 0.5 * BilayerLevel(bands, eps, 2).value[2];
  Model& model =
      Make(111, {{0.1, 10, 1e-6}, {3.1, 0.38, 0}, {0, 0, mu}, {4000, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  // -4 e^2/h for electrons; e^2/h is 2/pi of e^2/(4 hbar); half of it for the layer of 6.7 A.
  EXPECT_NEAR(At(model, kDepth, 1e-3), -4 * kUniversal * 2 / std::numbers::pi / 2, kOfQuantum * kUniversal);
}

TEST_F(BilayerTypes, ListTheirLevels) {
  const double bilayer = Make(62, {{4, 8, 0.01},
                                   {3.1, 0.38, 0.1},
                                   {0.1, 0.02, 0},
                                   {10, 0, 0},
                                   {0, 1, 0},
                                   {0, 0, 0},
                                   {0, 0, 0},
                                   {0, 0, 0},
                                   {0, 0, 0}})
                             .number;
  Model& levels = Make(63, {{bilayer, 0, 0}});
  double last = -10;
  for (int k = 0; k < 40; ++k) {
    EXPECT_GE(At(levels, kRefl, k), last);
    last = At(levels, kRefl, k);
    EXPECT_EQ(At(levels, kRefl, -k - 0.5), last);
  }
  EXPECT_EQ(At(levels, kRefl, 1000), 0);
  EXPECT_EQ(Status(Make(63, {{Medium(3), 0, 0}}), 1), -1);
}

TEST_F(BilayerTypes, OfGraphiteAreGrapheneAtHAndABilayerOfTwiceTheHoppingAtK) {
  const double graphite = Make(55, {{4, 9, 0.02},
                                    {3.1, 0.38, 0},
                                    {0, 0, 0},
                                    {0, 0, 0},
                                    {-0.5, 0.5, 8},
                                    {10, 0, 0},
                                    {0, 0, 0},
                                    {0, 0, 0},
                                    {0, 0, 0}})
                              .number;
  const double eps = std::sqrt(2 * 6.577e-16 * std::pow(326000 * 3.1, 2) * 9);
  const auto level = [&](double index, double kz) { return At(Make(56, {{graphite, index, 0}}), kRefl, kz); };
  // H: two single layers without coupling, levels +-eps sqrt(n) of both.
  const BilayerBands<double> single{0, 0, 0, 0, 0}, doubled{0, 0.76, 0, 0, 0};
  const auto atH = BilayerEnergies(single, eps, 10), atK = BilayerEnergies(doubled, eps, 10);
  for (const int k : {0, 12, 20, 30}) {
    EXPECT_NEAR(level(k, 0.5), atH[static_cast<std::size_t>(k)], kRound);
    EXPECT_NEAR(level(k, 0), atK[static_cast<std::size_t>(k)], kRound);
  }
  EXPECT_NEAR(std::fabs(atH.back()), eps * std::sqrt(10), kRound);
  Model& byField = Make(56, {{graphite, 12, 1}});
  EXPECT_NEAR(At(byField, kRefl, 9), level(12, 0), kRound);
  const double other =
      Make(60, {{4, 9, 0.02}, {3.1, 0.38, 0}, {0, 0, 0}, {0, 0, 0}, {-0.5, 0.5, 8}, {10, 0, 0}}).number;
  EXPECT_NEAR(At(Make(61, {{other, 12, 0}}), kRefl, 0.3), level(12, 0.3), kRound);
  EXPECT_EQ(At(ModelOf(other), kS1, 700), At(ModelOf(graphite), kS1, 700));
}

TEST_F(BilayerTypes, OfGraphiteMeanOverKzTendsToTheUniversalValue) {
  constexpr double kHopping = 0.25;  // 2 g1 is not small compared with 1 eV
  Model& model = Make(60, {{4, 0, 0.02}, {3.1, 0.38, 0}, {0, 0, 0}, {0, 0, 0}, {-0.5, 0.5, 12}});
  EXPECT_NEAR(At(model, kS1, Wavenumbers(1.0)), kUniversal, kHopping * kUniversal);
}

TEST_F(BilayerTypes, ReservedCodeDoesNothing) {
  Model& model = Make(112, {{1, 2, 3}});
  EXPECT_EQ(Status(model, 100), 0);
  for (const Quantity q : kEveryQuantity) EXPECT_EQ(Left(q), 77);
  EXPECT_EQ(EvalModelAfter(program.eval, model), 0);
}

}  // namespace
}  // namespace kalvex

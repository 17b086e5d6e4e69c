// Compares crystals at oblique incidence with Fresnel formulas, rotated tensors with matrix products, and an
// ellipsometer with products of Jones matrices.
#include "records/model_rows.h"
#include "types/crystals/ellipsometric_reading.h"
#include "types/crystals/normal_modes.h"
#include "types/frame.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

constexpr double kDegrees = 180 / std::numbers::pi;
using Matrix = std::array<std::array<C, 3>, 3>;

class Crystals : public TypeFixture {
 protected:
  Crystals() : a(Medium(3, {{200, 300, 12}})), b(Medium(5, {{150, 250, 20}})), c(Medium(4, {{260, 350, 15}})) {}
  double a, b, c;
};

TEST_F(Crystals, OfThreeEqualAxesAreAnIsotropicSampleAndShowItsDielectricFunction) {
  Model& model = Make(3, {{a, 62, 40}, {a, 0, 0}, {a, 0, 0}});
  for (const double x : {120.0, 205.0, 330.0}) {
    const C e = Eps(a, x), co = std::cos(62 / kDegrees), s2 = std::pow(std::sin(62 / kDegrees), 2),
            m = std::sqrt(e - s2);
    EXPECT_NEAR(At(model, kRp, x), std::norm((m - e * co) / (m + e * co)), kFormula);
    EXPECT_NEAR(At(model, kRs, x), std::norm((co - m) / (co + m)), kFormula);
    EXPECT_LT(std::abs(Pair(model, kN1, x) - e), kLongSum * std::abs(e));
  }
}

TEST_F(Crystals, AreReadAsAnEllipsometerReadsThem) {
  Model& model = Make(3, {{a, 62, 40}, {b, 0, 0}, {c, 0, 0}});
  const double x = 220, co = std::cos(62 / kDegrees), s2 = std::pow(std::sin(62 / kDegrees), 2),
               tan = std::tan(40 / kDegrees);
  const C zc = std::sqrt(1.0 - s2 / Eps(c, x)), na = Index(a, x), kb = std::sqrt(Eps(b, x) - s2);
  const C rho = (zc - na * co) / (zc + na * co) / ((co - kb) / (co + kb));
  EXPECT_NEAR(At(model, kE1, x), std::atan(std::abs(rho)) * kDegrees, kChain);
  EXPECT_NEAR(At(model, kE2, x), std::arg(rho) * kDegrees, kChain);
  EXPECT_NEAR(At(model, kS1, x), (std::norm(rho) - tan * tan) / (std::norm(rho) + tan * tan), kRound);
  EXPECT_NEAR(At(model, kS2, x), 2 * rho.real() * tan / (std::norm(rho) + tan * tan), kRound);
  const C w = (1.0 + rho) / (1.0 - rho), pseudo = s2 * (1.0 + s2 / (co * co) * w * w);
  EXPECT_LT(std::abs(Pair(model, kN1, x) - pseudo), kChain * std::abs(pseudo));
}

TEST_F(Crystals, ChangeToFirstOrder) {
  constexpr double kQuotient = 1e-6, kOfDegrees = 1e-7;  // errors of a central quotient, and its rounding near 0
  const double none = Medium(0), x = 220, h = 1e-5;
  Model& model = Make(4, {{a, none, 62}, {b, none, 40}, {c, none, 0}});
  for (const Quantity q : kEveryQuantity) EXPECT_EQ(At(model, q, x), 0) << q;
  const double da = Medium(0.3, {{100, 50, 30}}), db = Medium(-0.2), dc = Medium(0.1, {{300, 80, 30}});
  Model& changed = Make(4, {{a, da, 62}, {b, db, 40}, {c, dc, 0}});
  // The same samples with a small fraction of the change, of either sign.
  const auto with = [&](double part, Quantity q) {
    const auto mixed = [&](double reference, double change) {
      const C e = Eps(reference, x) + part * Eps(change, x);
      return Medium(e.real(), {{0, std::sqrt(e.imag() * x * 1e9), 1e9}});  // Im e alone at this frequency
    };
    Model& sample = Make(3, {{mixed(a, da), 62, 40}, {mixed(b, db), 0, 0}, {mixed(c, dc), 0, 0}});
    return At(sample, q, x);
  };
  for (const Quantity q : {kRp, kRs, kE1, kE2, kS1, kS2, kN1, kN2}) {
    const double slope = (with(h, q) - with(-h, q)) / (2 * h);
    EXPECT_NEAR(At(changed, q, x), slope, kQuotient * std::fabs(slope) + kOfDegrees) << q;
  }
}

TEST_F(Crystals, AsFilmsOnThemselvesAreThatCrystalAndWithoutThicknessTheSubstrate) {
  Model& self = Make(5, {{a, 62, 40}, {b, 0.0005, 0}, {c, 0, 0}, {a, 0, 0}, {b, 0, 0}, {c, 0, 0}});
  Model& thin = Make(5, {{c, 62, 40}, {a, 0, 0}, {b, 0, 0}, {a, 0, 0}, {b, 0, 0}, {c, 0, 0}});
  Model& bulk = Make(3, {{a, 62, 40}, {b, 0, 0}, {c, 0, 0}});
  for (Model* const film : {&self, &thin}) {
    for (const Quantity q : {kRp, kRs, kE1, kS1, kN1, kN2})
      EXPECT_NEAR(At(*film, q, 190), At(bulk, q, 190), kLongSum) << q;
    // rho has the opposite sign in this type, and Delta is its magnitude.
    EXPECT_NEAR(At(*film, kE2, 190), 180 - std::fabs(At(bulk, kE2, 190)), kLongSum);
    EXPECT_NEAR(At(*film, kS2, 190), -At(bulk, kS2, 190), kRound);
  }
}

TEST_F(Crystals, AsIsotropicFilmsAgreeWithCharacteristicMatrices) {
  const double x = 230, d = 0.0006, co = std::cos(62 / kDegrees), s2 = 1 - co * co;
  Model& model = Make(5, {{a, 62, 40}, {a, d, 0}, {a, 0, 0}, {b, 0, 0}, {b, 0, 0}, {b, 0, 0}});
  const C m1 = std::sqrt(Eps(a, x) - s2), m2 = std::sqrt(Eps(b, x) - s2);
  const auto [rp, tp] = SlowStack({{Eps(a, x) / m1, m1, d}}, 1 / co, Eps(b, x) / m2, x);
  const auto [rs, ts] = SlowStack({{m1, m1, d}}, co, m2, x);
  EXPECT_NEAR(At(model, kRp, x), std::norm(rp), kFormula);
  EXPECT_NEAR(At(model, kRs, x), std::norm(rs), kFormula);
  EXPECT_NEAR(At(model, kE2, x), std::fabs(std::arg(-rp / rs)) * kDegrees, kChain);
  Model& signedDelta = Make(14, {{a, 62, 40}, {a, d, 0}, {a, 0, 0}, {b, 0, 0}, {b, 0, 0}, {b, 0, 0}});
  EXPECT_NEAR(At(signedDelta, kE1, x), std::atan(std::abs(rp / rs)) * kDegrees, kChain);
  EXPECT_NEAR(At(signedDelta, kE2, x), std::arg(rp / rs) * kDegrees, kChain);
  EXPECT_EQ(At(signedDelta, kRp, x), 0);
  const C rho = rp / rs, w = (1.0 - rho) / (1.0 + rho), pseudo = s2 * (1.0 + s2 / (co * co) * w * w);
  EXPECT_LT(std::abs(Pair(signedDelta, kN1, x) - pseudo), kLongSum * std::abs(pseudo));
}

TEST_F(Crystals, WhereAFilmWouldAmplifyItsPhaseIsExactly1) {
  const double gain = Medium(4, {{200, 300, -10}}), x = 199, co = std::cos(62 / kDegrees), s2 = 1 - co * co;
  Model& model = Make(5, {{gain, 62, 40}, {gain, 0.0006, 0}, {gain, 0, 0}, {b, 0, 0}, {b, 0, 0}, {b, 0, 0}});
  const C k1 = std::sqrt(Eps(gain, x) - s2), k2 = std::sqrt(Eps(b, x) - s2);
  ASSERT_LT(k1.imag(), 0);
  const C r01 = (co - k1) / (co + k1), r12 = (k1 - k2) / (k1 + k2);
  EXPECT_NEAR(At(model, kRs, x), std::norm((r01 + r12) / (1.0 + r01 * r12)), kFormula);
  // The same film with the guard at 20 amplifies.
  Model& wide = Make(14, {{gain, 62, 40}, {gain, 0.0006, 0}, {gain, 0, 0}, {b, 0, 0}, {b, 0, 0}, {b, 0, 0}});
  EXPECT_GT(std::fabs(At(wide, kE1, x) - At(model, kE1, x)), 1e-3);
}

TEST(IncidenceTest, AtExactlyGrazingIncidenceHasNoTangent) {
  EXPECT_EQ(Incidence<double>(90.0).tangent2, 0);
  EXPECT_NEAR(Incidence<double>(60.0).tangent2, 3, 2 * kRound);
  EXPECT_NEAR(Incidence<double>(60.0).sine2, 0.75, kStep);
}

TEST_F(Crystals, AtGrazingIncidenceReflectEverything) {
  constexpr double kInDegrees = 1e-6;  // quotient of two results that vanish at 90 degrees
  for (const int code : {5, 14}) {
    Model& model = Make(code, {{a, 90, 40}, {b, 0.0005, 0}, {c, 0, 0}, {a, 0, 0}, {b, 0, 0}, {c, 0, 0}});
    EXPECT_NEAR(At(model, kE1, 190), 45, kInDegrees) << code;
    EXPECT_NEAR(At(model, kRs, 190), code == 5 ? 1 : 0, kFormula) << code;
    EXPECT_EQ(Pair(model, kN1, 190), C(1, 0)) << code;
  }
}

class Turned : public Crystals {
 protected:
  static Matrix Product(const Matrix& x, const Matrix& y) {
    Matrix z{};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        for (std::size_t k = 0; k < 3; ++k) z[i][j] += x[i][k] * y[k][j];
      }
    }
    return z;
  }
  // Rotation from axis u to axis v.
  static Matrix Rotation(std::size_t u, std::size_t v, double degrees) {
    Matrix r{};
    for (std::size_t i = 0; i < 3; ++i) r[i][i] = 1;
    r[u][u] = r[v][v] = std::cos(degrees / kDegrees);
    r[u][v] = -std::sin(degrees / kDegrees);
    r[v][u] = std::sin(degrees / kDegrees);
    return r;
  }
  static Matrix Conjugated(const Matrix& r, const Matrix& e) {
    Matrix transposed{};
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) transposed[i][j] = r[j][i];
    }
    return Product(Product(r, e), transposed);
  }
};

TEST_F(Turned, WithoutTurnsGivesTheAxesBack) {
  Model& model = Make(16, {{a, 0, 55}, {b, 0, 0}, {c, 0, 0}});
  EXPECT_EQ(Pair(model, kE1, 180), Eps(a, 180));
  EXPECT_EQ(Pair(model, kS1, 180), Eps(b, 180));
  EXPECT_EQ(Pair(model, kN1, 180), Eps(c, 180));
  EXPECT_EQ(At(model, kRefl, 180), 0);
}

TEST_F(Turned, IsTheTensorTurnedAboutXThenYThenZ) {
  Model& model = Make(16, {{a, 25, 55}, {b, 35, 0}, {c, 50, 0}});
  const double x = 180;
  Matrix e{};
  e[0][0] = Eps(a, x);
  e[1][1] = Eps(b, x);
  e[2][2] = Eps(c, x);
  e = Conjugated(Rotation(1, 2, 25), e);
  e = Conjugated(Rotation(0, 2, 35), e);
  e = Conjugated(Rotation(0, 1, 50), e);
  EXPECT_LT(std::abs(Pair(model, kE1, x) - e[0][0]), kChain);
  EXPECT_LT(std::abs(Pair(model, kS1, x) - e[1][1]), kChain);
  EXPECT_LT(std::abs(Pair(model, kN1, x) - e[2][2]), kChain);
}

TEST_F(Turned, KeepsTheWavesOfItsTensor) {
  // Isotropic: q^2 = e - s^2 twice in either direction.
  Model& isotropic = Make(16, {{a, 25, 55}, {a, 35, 0}, {a, 50, 0}});
  ASSERT_EQ(Status(isotropic, 180), 0);
  const auto& modes = CacheOf<NormalModes>(program.eval, isotropic);
  ASSERT_EQ(modes.q.degree, 4);
  const C q = std::sqrt(Eps(a, 180) - std::pow(std::sin(55 / kDegrees), 2));
  for (const Cplx& root : modes.q.root) {
    constexpr double kDoubleRoot = 1e-6;  // a double root of a quartic keeps half of its digits
    EXPECT_LT(std::min(std::abs(C(root.re, root.im) - q), std::abs(C(root.re, root.im) + q)), kDoubleRoot);
  }
  // Any tensor: each root has a field, hence det(k k - k^2 + eps) = 0.
  Model& biaxial = Make(16, {{a, 25, 55}, {b, 35, 0}, {c, 50, 0}});
  ASSERT_EQ(Status(biaxial, 180), 0);
  Matrix e{};
  e[0][0] = Eps(a, 180);
  e[1][1] = Eps(b, 180);
  e[2][2] = Eps(c, 180);
  e = Conjugated(Rotation(1, 2, 25), e);
  e = Conjugated(Rotation(0, 2, 35), e);
  e = Conjugated(Rotation(0, 1, 50), e);
  ASSERT_EQ(Status(biaxial, 180), 0);
  for (const Cplx& root : CacheOf<NormalModes>(program.eval, biaxial).q.root) {
    const C k[3] = {std::sin(55 / kDegrees), 0, C(root.re, root.im)};
    const C k2 = k[0] * k[0] + k[2] * k[2];
    Matrix m = e;
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) m[i][j] += k[i] * k[j] - (i == j ? k2 : 0);
    }
    const C determinant = m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
                          m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
                          m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    constexpr double kRoot = 1e-7;  // near a double root
    EXPECT_LT(std::abs(determinant), kRoot * std::pow(std::abs(k2) + 5, 3));
  }
}

TEST_F(Turned, CutsBetweenAxesTendToTheAxes) {
  constexpr double kCutOfAxes = 1e-9;  // the formula evaluates slightly beside the axis
  const double x = 240;
  const auto cut = [&](double degrees) -> Model& { return Make(19, {{a, degrees, 0}, {b, 0, 0}}); };
  // The transverse response of a tilted uniaxial medium.
  const C e0 = Eps(a, x), e1 = Eps(b, x);
  for (const double degrees : {0.0, 30.0, 90.0}) {
    const double c2 = std::pow(std::cos(degrees / kDegrees), 2);
    const C e = e0 * e1 / (e0 * c2 + e1 * (1 - c2));
    EXPECT_LT(std::abs(Pair(cut(degrees), kE1, x) - e), 10 * kCutOfAxes * std::abs(e)) << degrees;
    EXPECT_NEAR(At(cut(degrees), kRefl, x), std::norm((1.0 - std::sqrt(e)) / (1.0 + std::sqrt(e))), kCutOfAxes);
    Model& tilted = Make(108, {{a, b, degrees}});
    const C tiltedEps = e0 * e1 / (e0 * (1 - c2) + e1 * c2);
    EXPECT_NEAR(At(tilted, kRefl, x), std::norm((1.0 - std::sqrt(tiltedEps)) / (1.0 + std::sqrt(tiltedEps))), kRound);
  }
}

TEST_F(Turned, KeepsTheTraceOfAPlaneTensor) {
  const double x = 130;
  Model& model = Make(109, {{a, b, 33}, {c, 0, 0}});
  EXPECT_NEAR(At(model, kE1, x) + At(model, kS1, x), (Eps(a, x) + Eps(b, x)).real(), kChain);
  EXPECT_NEAR(At(model, kN1, x), Eps(c, x).real(), kFormula);
  EXPECT_NEAR(At(model, kE1, x) * At(model, kS1, x) - std::pow(At(model, kDepth, x), 2),
              Eps(a, x).real() * Eps(b, x).real(), kLongSum);
  Model& straight = Make(109, {{a, b, 0}, {c, 0, 0}});
  EXPECT_NEAR(At(straight, kE1, x), Eps(a, x).real(), kFormula);
  EXPECT_EQ(At(straight, kDepth, x), 0);
  Model& tooFew = Make(109, {{a, b, 0}});
  EXPECT_EQ(Status(tooFew, x), -1);
}

class Bench : public TypeFixture {};

TEST_F(Bench, OfTwoPolarisersFollowsTheSquareOfTheCosine) {
  Model& model =
      Make(23, {{2, 2, 3}, {1, 0, 20}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, {1, 0, 77}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  const double through = 9 * std::pow(std::cos(20 / kDegrees), 2);
  for (const double x : {20.0, 50.0, 110.0, 200.0}) {
    EXPECT_NEAR(At(model, kRefl, x), through * std::pow(std::cos((x - 20) / kDegrees), 2), kFormula) << x;
  }
  Cell(model, 1, G).value = 0;
  EXPECT_NEAR(At(model, kRefl, 90), 0, kRound * kEps);
  for (const Quantity q : kEveryQuantity - QuantitySet{kRefl}) EXPECT_EQ(At(model, q, 30), 0);
}

TEST_F(Bench, OfUnitMatricesLeavesTheBeamForEveryAngle) {
  Model& model = Make(23, {{1, 1, 2}, {1, 0, 0}, {0, 0, 0}, {0, 0, 0}, {1, 0, 0}});
  for (const double x : {0.0, 33.0, 250.0}) EXPECT_NEAR(At(model, kRefl, x), 4, 2 * kRound);
}

TEST_F(Bench, WithAQuarterWavePlateMakesTheIntensityIndependentOfTheAnalyser) {
  const double root = std::sqrt(0.5);
  Model& model = Make(23, {{2, 2, 1},
                           {root, root, 45},  // exp(+i pi/4) along, exp(-i pi/4) across: a quarter wave at 45 degrees
                           {0, 0, 0},
                           {0, 0, 0},
                           {root, -root, 0},
                           {1, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0}});
  for (const double x : {0.0, 30.0, 75.0}) EXPECT_NEAR(At(model, kRefl, x), 0.5, kRound);
}

TEST_F(Bench, RefusesCountsThatDoNotFit) {
  const auto status = [&](double n, double turned) {
    return Status(Make(23, {{n, turned, 1}, {1, 0, 0}, {0, 0, 0}, {0, 0, 0}, {1, 0, 0}}), 10);
  };
  EXPECT_EQ(status(1, 1), 0);
  EXPECT_EQ(status(1.9, 1.9), 0);
  EXPECT_EQ(status(2, 1), -1);
  EXPECT_EQ(status(0, 1), -1);
  EXPECT_EQ(status(1, 0), -1);
  EXPECT_EQ(status(1, 2), -1);
  EXPECT_EQ(Status(Make(23, {{1, 1, 1}, {1, 0, 0}, {0, 0, 0}, {0, 0, 0}}), 10), -1);
}

}  // namespace
}  // namespace kalvex

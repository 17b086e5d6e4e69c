// Compares near-field types with Fresnel limits, closed formulas of the harmonics, and published resonances.
#include "records/model_rows.h"
#include "types/near_field/tip_kernels.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class NearField : public TypeFixture {
 protected:
  NearField() : silicon(Medium(11.7)), polar(Medium(6.6, {{797, 0, 0}})) {
    // SiC: eps = 6.6 (1 + (LO^2 - TO^2)/(TO^2 - w^2 - iGw)), TO 797, LO 969, G 6.
    Model& sic = ModelOf(polar);
    Cell(sic, 0, Wp).value = std::sqrt(6.6 * (969.0 * 969 - 797.0 * 797));
    Cell(sic, 0, G).value = 6;
  }
  Model& Surface(double substrate, double q, double qIm = 0) { return Make(73, {{substrate, 0, 0}, {q, qIm, 0}}); }
  // Sample, reference, harmonic, z0, A.
  Model& TipOver(double sample, double reference, double n, double z0, double A, int code = 80) {
    Model& model =
        Make(code, {{sample, reference, n}, {0, 0, 0}, {3e-6, z0, A}, {0, 16, 400}, {0, 60, 64}, {400, 2000, 1601}});
    if (code == 80) RemoveRow(model, 5);
    return model;
  }
  double silicon, polar;
};

TEST_F(NearField, WithoutMomentumIsNormalIncidenceAndWithThatOfLightAtAnAngleThePReflectivity) {
  const C e = Eps(polar, 900), n = std::sqrt(e);
  EXPECT_LT(std::abs(Pair(Surface(polar, 0), kE1, 900) - (n - 1.0) / (n + 1.0)), kChain);
  const double angle = 50 / (180 / std::numbers::pi), s = std::sin(angle), c = std::cos(angle);
  const C m = std::sqrt(e - s * s);
  EXPECT_LT(std::abs(Pair(Surface(polar, 900 * s), kE1, 900) - (e * c - m) / (e * c + m)), kChain);
}

TEST_F(NearField, AtLargeMomentaIsTheImageOfACharge) {
  constexpr double kRetardation = 1e-4;  // (k/q)^2, and a small first-order term
  const C e = Eps(polar, 900);
  EXPECT_LT(std::abs(Pair(Surface(polar, 1e6), kE1, 900) - (e - 1.0) / (e + 1.0)), kRetardation);
  Model& uniaxial = Make(77, {{silicon, polar, 0}, {0, 0, 0}, {1e6, 0, 0}});
  // sqrt(e_a e_c) replaces e.
  const C mean = std::sqrt(e * 11.7), root = mean.imag() >= 0 ? mean : -mean;
  EXPECT_LT(std::abs(Pair(uniaxial, kE1, 900) - (root - 1.0) / (root + 1.0)), kRetardation);
  Model& isotropic = Make(77, {{polar, polar, 0}, {0, 0, 0}, {2500, 10, 0}});
  EXPECT_LT(std::abs(Pair(isotropic, kE1, 900) - Pair(Surface(polar, 2500, 10), kE1, 900)), kChain);
}

TEST_F(NearField, ASheetActsByItsBoundaryCondition) {
  constexpr double kConductance = 3e-6;  // 1816.5 has five digits, and the sheet contributes 2 %
  Load(1, 100, 2000, [](double) { return 1816.5; });
  Load(2, 100, 2000, [](double) { return 300.0; });
  Model& model = Make(73, {{silicon, 1, 2}, {4000, 0, 0}});
  const double k = 2 * std::numbers::pi * 900, Q = 2 * std::numbers::pi * 4000;
  const C kz1 = kI * std::sqrt(Q * Q - k * k), kz2 = kI * std::sqrt(Q * Q - 11.7 * k * k);
  const C S = 0.02292420159324472 * 0.0005505092210294523 * C(1816.5, 300) * kz1 * kz2 / k;
  EXPECT_LT(std::abs(Pair(model, kE1, 900) - (11.7 * kz1 - kz2 + S) / (11.7 * kz1 + kz2 + S)), kLongSum);
  // The same sheet on a slab at normal incidence: pi alpha of graphene.
  Model& slab = Make(78, {{Medium(1), 1, 9}, {0.01, 0, 0}});
  const double s = std::numbers::pi / 137.036;
  EXPECT_NEAR(At(slab, kRs, 900), 4 / ((2 + s) * (2 + s)), kConductance);
  EXPECT_NEAR(At(slab, kTrans, 900), 1, kRound);
}

TEST_F(NearField, ASlabWithoutSheetKeepsItsLight) {
  Model& model = Make(78, {{silicon, 0, 0}, {0.01, 0, 0}});
  EXPECT_NEAR(At(model, kRefl, 900) + At(model, kTrans, 900), 1, kRound);
  EXPECT_EQ(At(model, kE1, 900), 1);
  EXPECT_EQ(At(model, kE2, 900), 0);
  EXPECT_EQ(At(model, kS1, 900), 1);
  const double R1 = std::pow((std::sqrt(11.7) - 1) / (std::sqrt(11.7) + 1), 2);
  EXPECT_NEAR(At(model, kRefl, 900), 2 * R1 / (1 + R1), kRound);
}

class Tips : public NearField {};

TEST_F(Tips, OverTheReferenceItselfShowNoContrast) {
  for (const int code : {80, 105}) {
    Model& model = TipOver(polar, polar, 2, 1.3, 1, code);
    EXPECT_NEAR(At(model, kRefl, 850), 1, kRound);
    EXPECT_NEAR(At(model, kRp, 850), 0, kRound);
    EXPECT_NEAR(At(model, kE1, 850), 1, kRound);
    EXPECT_NEAR(At(model, kS2, 850), 0, kRound);
  }
}

TEST_F(Tips, AreTheFourierComponentsOfTheirMotion) {
  constexpr double kMomenta = 2e-3;  // a mesh that ends at 12/h
  Model& model = TipOver(polar, silicon, 3, 1.4, 0.8);
  const double x = 860, z0 = 1.4, A = 0.8;
  const auto signal = [&](C beta) {
    // The integral over a cycle with 2000 points.
    C sum;
    for (int i = 0; i < 2000; ++i) {
      const double phi = 2 * std::numbers::pi * i / 2000, h = 1 + A * (1 - std::cos(phi));
      sum += std::polar(1.0, 3 * phi) / (1.0 - 0.25 * beta / std::pow(z0 * h, 3));
    }
    return sum;
  };
  const auto far = [&](C e) {
    const double c = 0.5, s2 = 0.75;  // 60 degrees
    const C root = std::sqrt(e - s2), r = (root - e * c) / (root + e * c);
    return (1.0 - r) * (1.0 - r);
  };
  const auto beta = [](C e) { return (e - 1.0) / (e + 1.0); };
  Cell(model, 4, Wp).value = 60;
  const C e = Eps(polar, x), s = far(e) * signal(beta(e)) / (far(11.7) * signal(beta(11.7)));
  EXPECT_NEAR(At(model, kRefl, x), std::abs(s), kChain * std::abs(s));
  EXPECT_NEAR(At(model, kRp, x), std::arg(s), kChain);
  // Without dispersion the sum over momenta is the point dipole.
  EXPECT_NEAR(At(model, kE1, x), std::abs(s), kMomenta * std::abs(s));
  const C bare = signal(beta(e)) / signal(beta(11.7));
  EXPECT_NEAR(At(model, kS1, x), std::abs(bare), kMomenta * std::abs(bare));
}

TEST_F(Tips, WithFewPointsOfTheirCycleAreTheSumOverThese) {
  constexpr double kMomenta = 2e-3;  // a mesh that ends at 12/h
  const C beta = (Eps(polar, 860) - 1.0) / (Eps(polar, 860) + 1.0);
  for (const int points : {1, 4, 5}) {
    Model& model = TipOver(polar, silicon, 2, 1.3, 0.6);
    Cell(model, 4, G).value = points;
    const auto signal = [&](C image) {
      C sum;
      for (int i = 0; i < points; ++i) {
        const double phi = 2 * std::numbers::pi * i / points, h = 1.3 * (1 + 0.6 * (1 - std::cos(phi)));
        sum += std::polar(1.0, 2 * phi) / (1.0 - 0.25 * image / (h * h * h));
      }
      return sum;
    };
    const C bare = signal(beta) / signal(10.7 / 12.7);
    EXPECT_NEAR(At(model, kS1, 860), std::abs(bare), kMomenta * std::abs(bare)) << points;
    EXPECT_NEAR(At(model, kS2, 860), std::arg(bare), kMomenta) << points;
  }
}

TEST_F(Tips, HighAboveTheSurfaceShowTheRatioOfTheImages) {
  constexpr double kNextOrder = 3e-3;  // of (a/h)^3, and the mesh of momenta
  Model& model = TipOver(polar, silicon, 2, 60, 1);
  const C e = Eps(polar, 700), ratio = (e - 1.0) / (e + 1.0) / (10.7 / 12.7);
  EXPECT_NEAR(At(model, kS1, 700), std::abs(ratio), kNextOrder * std::abs(ratio));
}

TEST_F(Tips, SeeSiliconCarbideInItsKnownResonance) {
  constexpr double kAsPublished = 25;  // cm-1: other tips, other crystals
  // R. Hillenbrand, T. Taubner, F. Keilmann, Nature 418, 159 (2002): a maximum near 930 cm-1, far above silicon; gold
  // is less than three times silicon.
  Model& model = TipOver(polar, silicon, 2, 1.1, 1);
  double best = 0, at = 0;
  for (double x = 860; x < 970; x += 1) {
    if (At(model, kRefl, x) > best) best = At(model, kRefl, x), at = x;
  }
  EXPECT_NEAR(at, 930, kAsPublished);
  EXPECT_GT(best, 4);
  const double gold = Medium(-5000, {{0, 30000, 500}});
  const double contrast = At(TipOver(gold, silicon, 2, 1.1, 1), kS1, 900);
  EXPECT_GT(contrast, 1.1);
  EXPECT_LT(contrast, 3);
}

TEST_F(Tips, AskASurfaceAtEveryMomentumAndLeaveItAsItWas) {
  constexpr double kRetardation = 1e-3;  // (k/q)^2 and less
  const double surface = Surface(silicon, 1234, 5).number;
  Model& model = TipOver(surface, silicon, 2, 1.2, 1);
  // Momenta of 1e5 to 1e6 per cm: hardly any retardation at 900 cm-1.
  EXPECT_NEAR(At(model, kS1, 900), 1, kRetardation);
  EXPECT_EQ(Cell(ModelOf(surface), 1, Wo).value, 1234);
  EXPECT_EQ(Cell(ModelOf(surface), 1, Wp).value, 5);
}

TEST_F(Tips, ReadTheirModelsBetweenNodes) {
  constexpr double kNodes = 2e-4, kMomenta = 2e-3;  // two nodes of frequency, and a mesh that ends at 12/h
  Model& coarse =
      Make(83, {{polar, silicon, 2}, {0, 0, 0}, {3e-6, 1.2, 1}, {0, 12, 50}, {0, 60, 32}, {0, 0, 0}, {800, 900, 2}});
  const C middle = 0.5 * (Eps(polar, 800) + Eps(polar, 900));
  const double at850 = Medium(middle.real(), {{0, std::sqrt(middle.imag() * 850 * 1e9), 1e9}});
  Model& direct =
      Make(83, {{at850, silicon, 2}, {0, 0, 0}, {3e-6, 1.2, 1}, {0, 12, 50}, {0, 60, 32}, {0, 0, 0}, {0, 0, 0}});
  for (const Quantity q : {kRefl, kRp, kTrans, kRs, kN1, kN2})
    EXPECT_NEAR(At(coarse, q, 850), At(direct, q, 850), kNodes) << q;
  // The image field at the lowest height: beta/(4 z0^3).
  const C beta = (middle - 1.0) / (middle + 1.0);
  EXPECT_NEAR(At(coarse, kN1, 850), (0.25 * beta / std::pow(1.2, 3)).real(), kMomenta);
}

TEST_F(Tips, OnAGivenReflectionAreItsDipole) {
  constexpr double kRetardation = 1e-5, kOneMomentum = 0.05;  // of 1e7 cm-1, and of 0.1/a
  const double surface = Surface(silicon, 1e7).number;
  Model& model = Make(107, {{surface, silicon, 2}, {0, 0, 0}, {3e-6, 1.2, 1}, {0, 0, 0}, {0, 60, 48}});
  EXPECT_NEAR(At(model, kRefl, 900), 1, kRetardation);
  EXPECT_NEAR(At(model, kTrans, 900), 0, kRetardation);
  Model& atRadius =
      Make(110, {{Surface(silicon, 0).number * 1.0, silicon, 2}, {0, 0, 0}, {3e-6, 1.2, 1}, {0, 0, 0}, {0, 60, 48}});
  const C there = Pair(Surface(silicon, 0.1 / 3e-6 / (2 * std::numbers::pi)), kE1, 900);
  EXPECT_LT(std::abs(Pair(atRadius, kS1, 900) - there), kFormula);
  EXPECT_NEAR(At(atRadius, kRefl, 900), 1, kOneMomentum);
  EXPECT_EQ(Status(Make(107, {{surface, 99, 2}, {0, 0, 0}, {3e-6, 1.2, 1}, {0, 0, 0}, {0, 60, 48}}), 900), -1);
}

TEST(TipKernels, SumsOverMomentaHaveTheSameBitsOnEveryWidthOfTheVectorUnits) {
  std::vector<double> places, weights;
  for (int j = 0; j < 64; ++j) {
    places.push_back(0.05 + 0.11 * j);
    weights.push_back(1 / (1 + places.back()));
  }
  const auto widths = KernelsOfThisMachine<TipKernels>();
  // With the second bottom the denominator vanishes at one place.
  for (const Cplx& bottom : {Cplx{-3, 0.7}, Cplx{-0.27, 0}}) {
    const auto sumWith = [&](const TipKernels& kernels) {
      return kernels.sumOverMesh(places, weights.data(), {-5, 0.7}, bottom, {1, 0});
    };
    const Cplx narrowest = sumWith(*widths.back());
    EXPECT_TRUE(std::isfinite(narrowest.re));
    for (const TipKernels* const kernels : widths) EXPECT_EQ(sumWith(*kernels), narrowest);
  }
}

}  // namespace
}  // namespace kalvex

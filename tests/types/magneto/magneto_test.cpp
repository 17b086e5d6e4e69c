// Compares magnetised oscillators, and types that use them, with sums in std::complex, with Fresnel and Airy formulas
// written here, and with the limits at zero field.
#include "records/model_rows.h"
#include "support/difference_quotient.h"
#include "types/type_fixture.h"

namespace kalvex {
namespace {

class Magneto : public TypeFixture {
 protected:
  // A model of type 49 with two oscillators, one of them a Drude term; factor multiplies the shifts.
  Model& Magnetised(double factor = 1) {
    return Make(49, {{4, 0, 0}, {150, 300, 20}, {12 * factor, 0, 0}, {0, 500, 15}, {25 * factor, 0, 0}});
  }
};

C EpsOf(double x, double side, double factor = 1) {
  const auto one = [&](double W, double S, double G, double B) {
    return S * S / (W * W - x * x - kI * G * x + side * x * B * factor);
  };
  return 4.0 + one(150, 300, 20, 12) + one(0, 500, 15, 25);
}

TEST_F(Magneto, CircularResponsesAreSumsOfShiftedOscillators) {
  Model& model = Magnetised();
  for (const double x : {20.0, 140.0, 300.0}) {
    const C plus = EpsOf(x, -1), minus = EpsOf(x, 1), xx = 0.5 * (plus + minus), xy = 0.5 * kI * (minus - plus);
    EXPECT_LT(std::abs(Pair(model, kE1, x) - xx), kChain * std::abs(xx));
    EXPECT_LT(std::abs(Pair(model, kN1, x) - xy), kChain * std::abs(xx));
    EXPECT_LT(std::abs(Pair(model, kS1, x) - -kI * (xx - 1.0) * x / 60.0), kChain * std::abs(xx) * x);
    EXPECT_LT(std::abs(Pair(model, kDepth, x) - -kI * xy * x / 60.0), kChain * std::abs(xx) * x);
    const C rPlus = (1.0 - std::sqrt(plus)) / (1.0 + std::sqrt(plus)),
            rMinus = (1.0 - std::sqrt(minus)) / (1.0 + std::sqrt(minus));
    EXPECT_NEAR(At(model, kRefl, x), 0.5 * (std::norm(rPlus) + std::norm(rMinus)), kRound);
    EXPECT_NEAR(At(model, kRps, x), std::norm(rPlus), kRound);
    EXPECT_NEAR(At(model, kDefringed, x), std::norm(rMinus), kRound);
    const C L = std::log(rMinus / rPlus);
    EXPECT_NEAR(At(model, kRp, x), 0.5 * L.imag(), kRound);
    EXPECT_NEAR(At(model, kRs, x), -std::tanh(0.5 * L.real()), kRound);
    EXPECT_EQ(At(model, kTrans, x), At(model, kRefl, x));
  }
}

TEST_F(Magneto, WithoutFieldIsAPlainModel) {
  Model& model = Magnetised(0);
  Model& plain = NewModel(program, {{150, 300, 20}, {0, 500, 15}}, 4);
  for (const double x : {20.0, 140.0, 300.0}) {
    for (const Quantity q : {kRp, kRs, kN1, kN2, kDepth, kLoss}) EXPECT_EQ(At(model, q, x), 0) << q;
    for (const Quantity q : {kRefl, kE1, kE2, kS1, kS2}) {
      EXPECT_NEAR(At(model, q, x), At(plain, q, x), kChain * std::fabs(At(plain, q, x))) << q;
    }
  }
}

TEST_F(Magneto, AReversedFieldExchangesTheSenses) {
  Model &model = Magnetised(), &reversed = Magnetised(-1);
  const double x = 130;
  EXPECT_DOUBLE_EQ(At(model, kRps, x), At(reversed, kDefringed, x));
  for (const Quantity q : {kRp, kRs, kN1, kN2, kDepth, kLoss}) {
    EXPECT_NEAR(At(model, q, x), -At(reversed, q, x), kFormula);
    EXPECT_GT(std::fabs(At(model, q, x)), 1e-4) << q;
  }
}

TEST_F(Magneto, FreeCarriersResonateAtTheirCyclotronFrequencyInOneSenseWithTheirWholeWeight) {
  constexpr double kQuadrature = 2e-3;  // the tail beyond 60000 cm-1 is missing
  Model& model = Make(49, {{1, 0, 0}, {0, 500, 15}, {60, 0, 0}});
  const auto minus = [&](double x) { return Pair(model, kS1, x) - kI * Pair(model, kDepth, x); };
  // A Drude oscillator with shift B has its pole at x = B in eps-: sigma = i(Wp^2/60)/(x - B + iG).
  const C expected = kI * (500.0 * 500 / 60) / (70.0 - 60.0 + kI * 15.0);
  EXPECT_LT(std::abs(minus(70) - expected), kLongSum * std::abs(expected));
  // Both polarisations together have the weight pi Wp^2/60 at positive frequencies.
  double weight = 0;
  const double step = 0.05;
  for (double x = step / 2; x < 60000; x += step) weight += step * 2 * At(model, kS1, x);
  EXPECT_NEAR(weight, std::numbers::pi * 500 * 500 / 60, kQuadrature * weight);
}

TEST_F(Magneto, ADatasetNormalisesTheReflectivity) {
  Model& model = Magnetised();
  Dataset& dataset = program.datasets.slots[4];
  dataset.id = 5;
  dataset.points = {{10, 0.5, 0}, {500, 0.5, 0}};
  Cell(model, 0, Wp).value = 5.9;
  EXPECT_DOUBLE_EQ(At(model, kTrans, 100), At(model, kRefl, 100) / 0.5);
  dataset.points = {{10, 1e-101, 0}, {500, 1e-101, 0}};
  EXPECT_EQ(At(model, kTrans, 100), At(model, kRefl, 100));
  Cell(model, 0, Wp).value = 6;
  EXPECT_EQ(At(model, kTrans, 100), At(model, kRefl, 100));
}

TEST_F(Magneto, NoRowsAndHalfPairsAreNoFailure) {
  Model& none = Make(49, {});
  EXPECT_EQ(At(none, kRefl, 100), 0);
  Model& half = Make(49, {{4, 0, 0}, {150, 300, 20}});
  EXPECT_EQ(At(half, kE1, 100), 4);
}

TEST_F(Magneto, TheModelsOwnMeshAddsToBothSensesWithItsDerivatives) {
  Model& model = Magnetised();
  model.vdf.On = true;
  for (const double x : {50.0, 100.0, 180.0, 260.0}) model.vdf.mesh.push_back({x, {}, {}});
  model.vdf.mesh[1].e2.value = 3;
  model.vdf.mesh[2].e2.value = 5;
  model.vdf.mesh[1].e1.value = 2;
  for (VdfMeshPoint& point : model.vdf.mesh) point.e1.adjustable = point.e2.adjustable = 1;
  const C without = Pair(model, kE1, 140), hall = Pair(model, kN1, 140);
  Cell(model, 0, G).value = 1;
  const C with = Pair(model, kE1, 140);
  EXPECT_NEAR((with - without).imag(), 4, kFormula);
  EXPECT_NEAR((with - without).real(), 1, kRound);
  EXPECT_EQ(Pair(model, kN1, 140), hall);
  WantOnly(program.eval.quantities, QuantitySet{kRp});
  ASSERT_EQ(FindDependencies(program, model), 0);
  EXPECT_NE(model.vdf.mesh[1].e2.savedSlopes.dQuantity[kRp], 0);
  ASSERT_EQ(EvalWithSlopes(program, model, 140), 0);
  for (ModelParam* const param : {&model.vdf.mesh[1].e2, &model.vdf.mesh[2].e1, &Cell(model, 1, Wp)}) {
    const double slope = param->savedSlopes.dQuantity[kRp], start = param->value;
    const SlopeEstimate estimate = RiddersSlope(
        [&](double v) {
          param->value = v;
          const double at = QuantityAt(program, model, kRp, 140);
          param->value = start;
          return at;
        },
        start, 0.1);
    EXPECT_NE(slope, 0);
    EXPECT_NEAR(slope, estimate.value, kRidders * estimate.error + kSlopeOfFormula * std::fabs(slope));
    ASSERT_EQ(EvalWithSlopes(program, model, 140), 0);
  }
}

TEST_F(Magneto, APartnerOfAnotherKindIsRefused) {
  const double substrate = Medium(2), wrong = Medium(3);
  for (const auto& [code, rows] :
       {std::pair(50, 3), std::pair(53, 1), std::pair(96, 2), std::pair(89, 2), std::pair(58, 2)}) {
    Model& model = Make(code, {});
    for (int r = 0; r < rows; ++r) InsertRow(model, r);
    Cell(model, 0, Wo).value = wrong;
    Cell(model, 0, Wp).value = Cell(model, 0, G).value = substrate;
    EXPECT_EQ(Status(model, 100), -1) << code;
    EXPECT_EQ(Left(kRefl), 77);
    ModelOf(wrong).epsInf.value = -49;
    while (RowCount(ModelOf(wrong)) < 3) InsertRow(ModelOf(wrong), 0);
    EXPECT_EQ(Status(model, 100), 0) << code;
    ModelOf(wrong).epsInf.value = 3;
  }
}

class LayersOnMagnetised : public Magneto {
 protected:
  Model& Stack(double thickness, double film, double slab, double factor = 1) {
    const double sample = Magnetised(factor).number, filmModel = Medium(2.1);
    Model& substrate = NewModel(program, {{400, 300, 50}}, 5);
    substrateNumber = substrate.number;
    return Make(50, {{sample, filmModel, static_cast<double>(substrate.number)}, {thickness, film, 0}, {slab, 0, 0}});
  }
  C SubstrateIndex(double x) { return Index(substrateNumber, x); }
  std::pair<C, C> Slow(double x, double side) {
    const C n = std::sqrt(EpsOf(x, side)), film = std::sqrt(2.1);
    return SlowStack({{n, n, 0.0007}, {film, film, 0.0011}}, 1, SubstrateIndex(x), x);
  }
  std::uint32_t substrateNumber = 0;
};

TEST_F(LayersOnMagnetised, AgreeWithCharacteristicMatrices) {
  Model& model = Stack(0.0007, 0.0011, 0);
  for (const double x : {60.0, 145.0, 320.0}) {
    const C ns = SubstrateIndex(x);
    const auto [rPlus, tPlus] = Slow(x, -1);
    const auto [rMinus, tMinus] = Slow(x, 1);
    EXPECT_NEAR(At(model, kRefl, x), 0.5 * (std::norm(rPlus) + std::norm(rMinus)), kRound);
    EXPECT_NEAR(At(model, kTrans, x), 0.5 * (std::norm(tPlus) + std::norm(tMinus)) * ns.real(), kRound);
    EXPECT_NEAR(At(model, kRp, x), 0.5 * std::log(rMinus / rPlus).imag(), kRound);
    EXPECT_NEAR(At(model, kE1, x), 0.5 * std::log(tMinus / tPlus).imag(), kRound);
    EXPECT_NEAR(At(model, kE2, x), -std::tanh(0.5 * std::log(tMinus / tPlus).real()), kFormula);
    EXPECT_NEAR(At(model, kS1, x), At(model, kE1, x) * 180 / std::numbers::pi, kFormula);
    EXPECT_NEAR(At(model, kS2, x), 1 - At(model, kRefl, x) - At(model, kTrans, x), kRound);
  }
}

TEST_F(LayersOnMagnetised, WithoutFieldTurnNothingAndWithoutThicknessLeaveTheSubstrate) {
  Model& still = Stack(0.0007, 0.0011, 0, 0);
  for (const Quantity q : {kRp, kRs, kE1, kE2, kS1}) EXPECT_NEAR(At(still, q, 200), 0, kStep) << q;
  Model& bare = Stack(0, 0, 0);
  const C n = SubstrateIndex(200), r = (1.0 - n) / (1.0 + n);
  EXPECT_NEAR(At(bare, kRefl, 200), std::norm(r), kRound);
  Model& thick = Stack(1, 0.001, 0);
  Model& sample = Magnetised();
  for (const Quantity q : {kRefl, kRp, kRs}) EXPECT_NEAR(At(thick, q, 200), At(sample, q, 200), kRound) << q;
}

TEST_F(LayersOnMagnetised, ASlabSendsItsLightThroughItsOtherFaceOnce) {
  Model &half = Stack(0.0007, 0.0011, 0), &slab = Stack(0.0007, 0.0011, 0.004);
  const double x = 150;
  const C n = SubstrateIndex(x), once = std::exp(2 * std::numbers::pi * kI * x * n * 0.004) * 2.0 * n / (n + 1.0);
  EXPECT_NEAR(At(slab, kTrans, x), At(half, kTrans, x) / n.real() * std::norm(once), kRound);
  EXPECT_EQ(At(slab, kRefl, x), At(half, kRefl, x));
}

TEST_F(Magneto, VoigtGeometryMixesBothSenses) {
  const double sample = Magnetised().number;
  Model& model = Make(53, {{sample, 0, 0}});
  const C plus = EpsOf(120, -1), minus = EpsOf(120, 1), v = 2.0 * plus * minus / (plus + minus);
  EXPECT_LT(std::abs(Pair(model, kE1, 120) - v), kLongSum * std::abs(v));
  EXPECT_NEAR(At(model, kRefl, 120), std::norm((1.0 - std::sqrt(v)) / (1.0 + std::sqrt(v))), kRound);
  EXPECT_LT(std::abs(Pair(model, kS1, 120) - kI * (1.0 - v) * 2.0), kLongSum * std::abs(v));
  const double still = Magnetised(0).number;
  Model& plain = Make(53, {{still, 0, 0}});
  EXPECT_NEAR(At(plain, kE1, 120), EpsOf(120, 0, 0).real(), kFormula);
}

TEST_F(Magneto, ResistivitiesInvertTheConductivity) {
  const double sample = Make(49, {{1, 0, 0}, {0, 500, 15}, {60, 0, 0}}).number;
  Model& model = Make(96, {{sample, 0, 2}, {4, 3, 5}});
  // Free carriers: rho_xx = G/(Wp^2/60) without any field, rho_xy = B/(Wp^2/60), both over the factor 2.
  const double perPlasma = 60 / (500.0 * 500);
  EXPECT_NEAR(At(model, kRefl, 1e-3), 15 * perPlasma / 2 * 3 / 4, kRound);
  EXPECT_NEAR(std::fabs(At(model, kTrans, 1e-3)), 60 * perPlasma / 2 * 5 / 4, kRound);
}

TEST_F(Magneto, ExtendedDrudeOfFreeCarriersHasTheirRateAndTheirShiftedFrequency) {
  Model& model = Make(101, {{4, 500, 0}, {0, 500, 15}, {25, 0, 0}});
  for (const double x : {10.0, 80.0}) {
    EXPECT_NEAR(At(model, kN1, x) * x, x + 25, kChain);
    EXPECT_NEAR(At(model, kN2, x), 15, kFormula);
    EXPECT_NEAR(At(model, kDepth, x) * x, x - 25, kChain);
    EXPECT_NEAR(At(model, kLoss, x), 15, kFormula);
  }
}

TEST_F(Magneto, IntrinsicKerrIsTheFirstOrderOfTheWholeAngle) {
  constexpr double kNextOrder = 2e-3;  // of a shift of 1e-3 cm-1
  const double sample = Magnetised(1e-3).number;
  Model& whole = ModelOf(sample);
  Model& model = Make(58, {{sample, 1e-7, 0}, {0, 0, 0}});
  for (const double x : {40.0, 250.0}) {
    EXPECT_NEAR(At(model, kE1, x), At(whole, kRp, x), kNextOrder * std::fabs(At(whole, kRp, x)));
    EXPECT_NEAR(At(model, kE2, x), At(whole, kRs, x), kNextOrder * std::fabs(At(whole, kRs, x)));
  }
}

TEST_F(Magneto, DichroismVanishesWithoutFieldAndKeepsTheLightWithAnAnalyserAveraged) {
  const double glass = Medium(4);
  Model& still = Make(89, {{static_cast<double>(Magnetised(0).number), glass, 0}, {50, 0.001, 20}});
  EXPECT_EQ(At(still, kTrans, 100), 0);
  Model& model = Make(89, {{static_cast<double>(Magnetised().number), glass, 0}, {50, 0.001, 20}});
  EXPECT_GT(std::fabs(At(model, kTrans, 100)), 1e-4);
  const double one = At(model, kRp, 100);
  Cell(model, 1, G).value += 90;
  EXPECT_NEAR(one + At(model, kRp, 100), At(model, kRefl, 100), kRound);
}

class FaradaySlab : public Magneto {
 protected:
  Model& Slab(double B) { return Make(29, {{3, 0.002, 0}, {150, 300, 20}, {B, 0, 0}}); }
};

TEST_F(FaradaySlab, WithoutFieldTurnsByTheQuarterThatItAdds) {
  Model& model = Slab(0);
  for (const double x : {60.0, 140.0, 400.0}) {
    EXPECT_EQ(At(model, kDepth, x), 0);
    EXPECT_DOUBLE_EQ(At(model, kLoss, x), 90);
    EXPECT_DOUBLE_EQ(At(model, kDefringed, x), 1);
  }
}

TEST_F(FaradaySlab, IsTheAmplitudeOfTwoFacesInEachSense) {
  Model& model = Slab(15);
  const double x = 130;
  const auto eps = [&](double side) {
    return 3.0 + 300.0 * 300 / (150.0 * 150 - x * x - kI * 20.0 * x + side * x * 15.0);
  };
  const auto amplitude = [&](C e) {
    const C n = std::sqrt(e), r = (1.0 - n) / (1.0 + n);
    return (1.0 - r * r) * std::exp(2 * std::numbers::pi * kI * x * n * 0.002);
  };
  const C a = amplitude(eps(-1)), b = amplitude(eps(1)), a0 = amplitude(eps(0));
  EXPECT_NEAR(At(model, kTrans, x), 0.5 * (std::norm(a) + std::norm(b)), kRound);
  EXPECT_NEAR(At(model, kDepth, x), std::pow(std::abs(a) - std::abs(b), 2) / (4 * std::norm(a0)), kRound);
  EXPECT_NEAR(At(model, kLoss, x), (std::arg(b) + std::numbers::pi / 2 - std::arg(a)) * 180 / std::numbers::pi, kChain);
  EXPECT_NEAR(At(model, kDefringed, x), At(model, kTrans, x) / std::norm(a0), kFormula);
  EXPECT_LT(std::abs(Pair(model, kE1, x) - eps(-1)), kChain);
  EXPECT_LT(std::abs(Pair(model, kS1, x) - eps(1)), kChain);
  const C s = kI * x * (1.0 - eps(0)) / (4 * std::numbers::pi);
  EXPECT_LT(std::abs(Pair(model, kN1, x) - s), kChain * std::abs(s));
}

TEST_F(Magneto, AMagneticSlabIsASlabWithAllEchoes) {
  Model& model = Make(44, {{3, 1.5, 0.003}, {150, 300, 20}, {15, 0, 0}, {90, 20, 10}, {5, 0, 0}});
  const double x = 120;
  for (const int sense : {0, 1}) {
    const double side = sense == 0 ? -1 : 1;
    const C eps = 3.0 + 300.0 * 300 / (150.0 * 150 - x * x - kI * 20.0 * x + side * x * 15.0);
    const C mu = 1.5 + 20.0 * 20 / (90.0 * 90 - x * x - kI * 10.0 * x + side * x * 5.0);
    const C Y = std::sqrt(eps / mu), p = 2 * std::numbers::pi * x * std::sqrt(eps * mu) * 0.003;
    const C t = 2.0 / (2.0 * std::cos(p) - kI * std::sin(p) * (Y + 1.0 / Y));
    EXPECT_LT(std::abs(Pair(model, sense == 0 ? kE1 : kS1, x) - t), kChain);
  }
  Model& empty = Make(44, {{1, 1, 0.003}});
  EXPECT_NEAR(std::abs(Pair(empty, kE1, x)), 1, kRound);
}

TEST_F(Magneto, AGeneralTensorTurnsItsHallPart) {
  Model& model = Make(48, {{0, 0, 0}, {30, 20, 10}, {0.4, 0, 0}, {0.8, 0, 0}, {150, 300, 20}});
  const double x = 120;
  const C f = 300.0 * 300 / 60 / (150.0 * 150 - std::pow(C(x, 20), 2));
  EXPECT_LT(std::abs(Pair(model, kS1, x) - (30.0 + f * C(20, -x))), kLongSum);
  EXPECT_LT(std::abs(Pair(model, kN1, x) - (10.0 + f * 150.0 * 0.8)), kLongSum);
  EXPECT_LT(std::abs(Pair(model, kDepth, x) - (20.0 + f * 150.0 * 0.8 * std::exp(kI * 0.4))), kLongSum);
  EXPECT_EQ(At(model, kRp, x), 1);
  EXPECT_EQ(At(model, kRs, x), 0);
  for (int slot : {1, 2}) {
    program.datasets.slots[static_cast<std::size_t>(slot)].id = static_cast<std::uint32_t>(slot);
    program.datasets.slots[static_cast<std::size_t>(slot)].points = {{1, 0.3 * slot, 0}, {500, 0.3 * slot, 0}};
  }
  Cell(model, 0, Wo).value = 2;
  Cell(model, 0, Wp).value = 3;
  EXPECT_NEAR(At(model, kRp, x), (1 - 2 * 0.3 * At(model, kS1, x)) / (1 - 2 * 0.3 * 0.6), kChain);
  EXPECT_NEAR(At(model, kRs, x), 0.6 * At(model, kDepth, x), kChain);
}

class Gas2D : public Magneto {
 protected:
  Model& Make2D(double field) { return Make(47, {{0.067, 0.067, 3e11}, {field, 5, 0}, {1e-8, 0, 0}}); }
};

TEST_F(Gas2D, AtAFrequencyOfZeroFillsNothing) {
  Model& model = Make2D(5);
  EXPECT_EQ(Status(model, 0), 0);
  for (const Quantity q : kEveryQuantity) EXPECT_EQ(Left(q), 77);
  RemoveRow(model, 2);
  EXPECT_EQ(Status(model, 0), -1);
}

TEST_F(Gas2D, ResonatesAtTheCyclotronEnergyOfItsMass) {
  constexpr double kShiftByWidth = 0.3, kNextOrder = 1e-6;  // cm-1; and of the sheet
  Model& model = Make2D(5);
  const double wc = 0.933729 * 5 / 0.067;  // cm-1
  double best = 0, at = 0;
  for (double x = 30; x < 120; x += 0.05) {
    if (At(model, kS1, x) > best) best = At(model, kS1, x), at = x;
  }
  EXPECT_NEAR(at, wc, kShiftByWidth);
  // Without field the dc sheet conductivity is n e^2 tau/m.
  Model& still = Make2D(0);
  const double sheet = 3e15 * 1.60217646e-19 * 1.60217646e-19 / (0.067 * 9.10938215e-31 * 5 * 188365156730.8853);
  EXPECT_NEAR(At(still, kTrans, 1e-4), 1 - 376.73031 * sheet, kNextOrder * sheet * 376);
  EXPECT_EQ(At(still, kRefl, 50), 0);
  EXPECT_EQ(At(still, kDefringed, 50), 0);
  EXPECT_DOUBLE_EQ(At(model, kE1, 40), At(model, kS1, 40) - At(model, kN2, 40));
}

TEST_F(Magneto, UncoupledModesOfStripesAreOscillators) {
  Model& model = Make(70, {{150, 300, 20}, {220, 0, 0}});
  const double x = 130;
  const auto sigma = [&](double W) { return -kI * x / 60.0 * 300.0 * 300.0 / (W * W - x * x - kI * 20.0 * x); };
  EXPECT_LT(std::abs(Pair(model, kS1, x) - sigma(150)), kLongSum * std::abs(sigma(150)));
  EXPECT_LT(std::abs(Pair(model, kE1, x) - sigma(220)), kLongSum * std::abs(sigma(150)));
  EXPECT_EQ(Pair(model, kN1, x), C(0, 0));
  EXPECT_NEAR(At(model, kRefl, x), 0.5 * (sigma(150) + sigma(220)).real(), kFormula);
  // In a field the velocity of one mode is a force on the other: D1 a - i c b = F1, D2 b + i c a = F2.
  Model& coupled = Make(70, {{150, 300, 20}, {220, 40, 0}});
  const C D1 = 150.0 * 150 - x * x - kI * 20.0 * x, D2 = 220.0 * 220 - x * x - kI * 20.0 * x, c = x * 40.0;
  const C determinant = D1 * D2 - c * c, perAnswer = -kI * x / 60.0 * 300.0 * 300.0;
  const auto near = [](const C& a, const C& b) { return std::abs(a - b) < 1e-11 * std::abs(b); };
  EXPECT_TRUE(near(Pair(coupled, kS1, x), perAnswer * D2 / determinant));
  EXPECT_TRUE(near(Pair(coupled, kE1, x), perAnswer * D1 / determinant));
  EXPECT_TRUE(near(Pair(coupled, kN1, x), perAnswer * kI * c / determinant));
  // Degenerate modes in a field: the circular combinations resonate at +-C/2 apart.
  Model& split = Make(70, {{150, 300, 5}, {150, 40, 0}});
  const double upper = std::sqrt(150.0 * 150 + 400) + 20;
  EXPECT_GT(At(split, kRefl, upper), 20 * At(split, kRefl, 150));
}

}  // namespace
}  // namespace kalvex

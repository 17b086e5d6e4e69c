// The sums over rows, the chains, plain evaluation, the dependency pass and the differential model.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "evaluation/chains.h"
#include "evaluation/eps_sum.h"
#include "evaluation/eval_spectrum.h"
#include "evaluation/quantity_formulas.h"
#include "evaluation/sample_models.h"
#include "support/difference_quotient.h"
#include "support/tolerances.h"
#include "terms/lorentz.h"

namespace kalvex {
namespace {

using Std = std::complex<double>;

// The slopes by the parameters of a model at the start of an evaluation.
ModelSlopes& SlopesFromSaved(Tables& program, const Model& model) {
  StartFromSaved(program.eval.slopes, program.params);
  return SlopesOf(program.eval, model);
}

Std Oscillator(double w, double wo, double wp, double g) { return wp * wp / Std(wo * wo - w * w, -w * g); }

TEST(EpsSum, AddsTheRowsToEpsInf) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {0, 500, 30}}, 4);
  const Std expected = 4.0 + Oscillator(120, 100, 200, 10) + Oscillator(120, 0, 500, 30);
  const Cplx sum = EpsSum(program.eval, model, 120, false);
  EXPECT_CLOSE(sum.re, expected.real(), kChain);
  EXPECT_CLOSE(sum.im, expected.imag(), kChain);
}

TEST(EpsSum, WithoutRowsItIsEpsInfEverywhere) {
  Tables program;
  Model& model = NewModel(program, {}, 7);
  for (const double w : {0.0, 1.0, 1e6}) EXPECT_EQ(EpsSum(program.eval, model, w, false), (Cplx{7, 0}));
}

TEST(EpsSum, TheFactorisedRowsMakeTheProduct) {
  Tables program;
  Model& model = NewModel(program, {{-1002, 400, 8}, {-1000, 5, 99}, {-1001, 300, 4}, {150, 60, 5}}, 0);
  const Std product = 5.0 * Std(400 * 400 - 320 * 320, -320 * 8) / Std(300 * 300 - 320 * 320, -320 * 4);
  const Std expected = product + Oscillator(320, 150, 60, 5);
  const Cplx sum = EpsSum(program.eval, model, 320, false);
  EXPECT_CLOSE(sum.re, expected.real(), kChain);
  EXPECT_CLOSE(sum.im, expected.imag(), kChain);
}

TEST(EpsSum, UnequalCountsAddThePreviousContributionOnceMore) {
  Tables program;
  Model& model = NewModel(program, {{-1000, 5, 0}, {-1002, 400, 8}, {-1001, 300, 4}, {-1001, 310, 4}, {150, 60, 5}}, 2);
  const Std expected = 2.0 + 2.0 * Oscillator(320, 150, 60, 5);
  EXPECT_CLOSE(EpsSum(program.eval, model, 320, false).re, expected.real(), kChain);
}

TEST(EpsSum, OfTwoBaseRowsTheLaterCountsAndTheOtherHasSlopeZero) {
  Tables program;
  Model& model = NewModel(program, {{-1000, 5, 0}, {-1000, 6, 0}}, 0);
  Cell(model, 0, Wp).savedSlopes.dEpsRe = 9;
  ModelSlopes& slopes = SlopesFromSaved(program, model);
  EXPECT_EQ(EpsSum(program.eval, model, 320, true), (Cplx{6, 0}));
  EXPECT_EQ(Cell(slopes, 0, Wp).dEpsRe, 0);
  EXPECT_EQ(Cell(slopes, 1, Wp).dEpsRe, 1);
  EXPECT_EQ(Cell(slopes, 1, G).dEpsRe, 0);
}

TEST(EpsSum, FactorsWithoutABaseAddNothingAndKeepTheirSlopes) {
  Tables program;
  Model& model = NewModel(program, {{-1002, 400, 8}, {-1001, 300, 4}}, 2);
  Cell(model, 0, Wp).savedSlopes.dEpsRe = 9;
  Cell(model, 1, G).savedSlopes.dEpsIm = 8;
  program.eval.notesFormer = true;
  ModelSlopes& slopes = SlopesFromSaved(program, model);
  EXPECT_EQ(EpsSum(program.eval, model, 320, true), (Cplx{2, 0}));
  EXPECT_EQ(Cell(slopes, 0, Wp).dEpsRe, 9);
  EXPECT_EQ(Cell(slopes, 1, G).dEpsIm, 8);
  EXPECT_TRUE(Cell(slopes, 0, Wp).formerEps && Cell(slopes, 1, G).formerEps);
}

TEST(EpsSum, ACodeWithoutMeaningAddsNothingAndHasNoSlopes) {
  Tables program;
  Model& model = NewModel(program, {{-999, 400, 8}, {-1, 50, 5}}, 2);
  Cell(model, 0, Wp).savedSlopes.dEpsRe = 9;
  ModelSlopes& slopes = SlopesFromSaved(program, model);
  EXPECT_EQ(EpsSum(program.eval, model, 320, true), (Cplx{2, 0}));
  EXPECT_EQ(Cell(slopes, 0, Wp).dEpsRe, 0);
  EXPECT_EQ(Cell(slopes, 1, Wp).dEpsRe, 0);
}

TEST(EpsSum, TheOverrideTakesTheFrequencyFromTheScalingFactorOfT) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}});
  program.params.ExpParams[kScalingFactorOfT].value = 60;
  const Cplx at60 = EpsSum(program.eval, model, 60, false);
  program.eval.FrequencyOverrideFlag = true;
  EXPECT_EQ(EpsSum(program.eval, model, 500, false), at60);
}

TEST(DependencySeed, MarksPlainRowsAndCompleteTermsOnly) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {-1000, 5, 0}, {-1002, 400, 8}, {-1001, 300, 4}, {-999, 1, 1}});
  ModelSlopes& slopes = SlopesFromSaved(program, model);
  SeedDependencies(program.eval, model);
  EXPECT_EQ(slopes.epsInf.dEpsRe, 1);
  EXPECT_EQ(slopes.epsInf.dEpsIm, 0);
  const double expected[5][3] = {{1, 1, 1}, {0, 1, 0}, {0, 1, 1}, {0, 1, 1}, {0, 0, 0}};
  for (int r = 0; r < 5; ++r) {
    for (int c = 0; c < 3; ++c) {
      if (!Cell(model, r, c).adjustable) continue;
      EXPECT_EQ(Cell(slopes, r, c).dEpsRe, expected[r][c]) << r << c;
      EXPECT_EQ(Cell(slopes, r, c).dEpsIm, expected[r][c]) << r << c;
    }
  }
}

TEST(ScalarSum, AddsTheWeightsOfTheRowsAndLeavesEpsInfOut) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {300, 50, 20}});
  const double expected =
      (200.0 * 200 * PartialWeightOf(250, 100, 10).F + 50.0 * 50 * PartialWeightOf(250, 300, 20).F) /
      (4 * std::numbers::pi);
  EXPECT_CLOSE(ScalarSum(program.eval, model, 250, false), expected, kChain);
}

TEST(ScalarSum, ACompleteTermWithoutAWeightMakesItZero) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {-1000, 5, 0}});
  ModelSlopes& slopes = SlopesFromSaved(program, model);
  EXPECT_EQ(ScalarSum(program.eval, model, 250, true), 0);
  EXPECT_EQ(Cell(slopes, 1, Wp).dScalar, 0);
}

TEST(ScalarSum, ItsSeedMarksPlainRowsAndTermsWithoutRegardToFactors) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {-1000, 5, 7}, {-1001, 3, 4}});
  ModelSlopes& slopes = SlopesFromSaved(program, model);
  SeedScalarDependencies(program.eval, model);
  EXPECT_EQ(Cell(slopes, 0, G).dScalar, 1);
  EXPECT_EQ(Cell(slopes, 1, Wp).dScalar, 1);
  EXPECT_EQ(Cell(slopes, 1, G).dScalar, 0);
  EXPECT_EQ(Cell(slopes, 2, Wp).dScalar, 0);
}

class Chains : public testing::Test {
 protected:
  Chains() : model(NewModel(program, {{100, 200, 10}})) {
    model.vdf.On = 1;
    model.vdf.mesh.resize(2);
    for (VdfMeshPoint& point : model.vdf.mesh) point.e1.adjustable = point.e2.adjustable = 1;
    program.params.ExpParams[4].adjustable = 1;
    MakeRoom(program.eval.slopes, program.params);
    double number = 1;
    ForEachParam(model, SlopesOf(program.eval, model), [&](const ModelParam&, ParamSlopes& slopes) {
      slopes.dEpsRe = number++;
      slopes.dEpsIm = 10 * number;
      slopes.dScalar = 100 * number;
      slopes.dQuantity.fill(0.5);
    });
    program.eval.slopes.ExpParams[4].dQuantity.fill(0.5);
    Cell(model, 0, Wp).adjustable = 0;
    QuantityResult& of = program.eval.quantities[kRefl];
    of.dRe = 2;
    of.dIm = 3;
    of.dScalar = 5;
    of.dMuRe = 7;
    of.dMuIm = 11;
    of.dExp[4] = 13;
  }

  template <class Expected>
  void ExpectColumn(Expected expected, double expParam) {
    ForEachParam(model, SlopesOf(program.eval, model), [&](const ModelParam& param, const ParamSlopes& p) {
      EXPECT_EQ(p.dQuantity[kRefl], param.adjustable ? expected(p) : 0.5);
      EXPECT_EQ(p.dQuantity[kTrans], 0.5);
    });
    EXPECT_EQ(program.eval.slopes.ExpParams[4].dQuantity[kRefl], expParam);
    EXPECT_EQ(program.eval.slopes.ExpParams[5].dQuantity[kRefl], 0);
  }

  Tables program;
  Model& model;
};

TEST_F(Chains, ClearZeroesTheColumnOfAllThatIsFree) {
  ClearDerivativeColumn(program.eval, model, kRefl);
  ExpectColumn([](const ParamSlopes&) { return 0.0; }, 0);
}

TEST_F(Chains, SetReplacesAndAddAdds) {
  SetChain(program.eval, model, kRefl);
  ExpectColumn([](const ParamSlopes& p) { return 2 * p.dEpsRe + 3 * p.dEpsIm; }, 13);
  AddChain(program.eval, model, kRefl);
  ExpectColumn([](const ParamSlopes& p) { return 2 * (2 * p.dEpsRe + 3 * p.dEpsIm); }, 26);
}

TEST_F(Chains, MuAndScalarLeaveTheExperimentalParametersAlone) {
  SetChainForMu(program.eval, model, kRefl);
  ExpectColumn([](const ParamSlopes& p) { return 7 * p.dEpsRe + 11 * p.dEpsIm; }, 0.5);
  SetChainForScalar(program.eval, model, kRefl);
  ExpectColumn([](const ParamSlopes& p) { return 5 * p.dScalar; }, 0.5);
}

TEST(EvalModel, DerivativesByEveryParameterAgreeWithDifferenceQuotients) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {-1000, 5, 0}, {-1002, 400, 8}, {-1001, 300, 4}});
  for (ModelParam& param : program.params.ExpParams) param.adjustable = 1;
  for (const Quantity q : kEveryQuantity) {
    QuantityAt(program, model, q, 140, true);
    std::vector<ModelParam*> params;
    ForEachParam(model, [&](ModelParam& param) { params.push_back(&param); });
    for (ModelParam& param : program.params.ExpParams) params.push_back(&param);
    for (ModelParam* const param : params) {
      if (!param->adjustable) continue;
      const double slope = param->savedSlopes.dQuantity[q], value = param->value;
      const SlopeEstimate judge = RiddersSlope(
          [&](double x) {
            param->value = x;
            return QuantityAt(program, model, q, 140);
          },
          value, 0.01 * std::fabs(value) + 1e-4);
      param->value = value;
      EXPECT_NEAR(slope, judge.value, kRidders * judge.error + kSlopeOfChain * std::fabs(judge.value) + kRound) << q;
    }
  }
}

TEST(EvalModel, TheDependencyPassMarksExactlyTheParametersThatMatter) {
  Tables program;
  Model& model = NewModel(program, {{100, 200, 10}, {-999, 3, 4}, {-1000, 5, 0}});
  for (ModelParam& param : program.params.ExpParams) param.adjustable = 1;
  for (const Quantity q : kEveryQuantity) {
    // An experimental slope of an earlier Quantity must not enter this one.
    program.eval.quantities = {};
    WantOnly(program.eval.quantities, QuantitySet{q});
    FindDependencies(program, model);
    std::vector<bool> marked;
    ForEachParam(model, [&](const ModelParam& param) { marked.push_back(param.savedSlopes.dQuantity[q] != 0); });
    for (const ModelParam& param : program.params.ExpParams) marked.push_back(param.savedSlopes.dQuantity[q] != 0);
    QuantityAt(program, model, q, 140, true);
    std::size_t i = 0;
    const auto compare = [&](const ModelParam& param) {
      // The imaginary part does not depend on a constant. The pass may mark too many parameters, never too few.
      EXPECT_TRUE(!param.adjustable || param.savedSlopes.dQuantity[q] == 0 || marked[i]) << q << ' ' << i;
      ++i;
    };
    ForEachParam(model, compare);
    for (const ModelParam& param : program.params.ExpParams) compare(param);
    EXPECT_FALSE(marked[5]) << "a parameter of a row without meaning";
  }
}

TEST(EvalModel, ADcPlotTakesTheSumAtItsFrequencyAndTheQuantityAtZero) {
  Tables program;
  Model& model = NewModel(program, {{0, 500, 30}}, 1);
  const Cplx eps = EpsSum(program.eval, model, 100, false);
  program.eval.DcFlag = true;
  EXPECT_CLOSE(QuantityAt(program, model, kS1, 100), 60 / (1e-10 * eps.im), kRound);
}

TEST(EvalModel, TheZeroFrequencyWeightOfADrudeRowIsItsSquaredPlasmaFrequency) {
  Tables program;
  Model& model = NewModel(program, {{0, 500, 0}, {300, 100, 10}}, 2);
  EXPECT_CLOSE(ZeroFrequencyWeight(program.eval, model), 250000, kFormula);
  EXPECT_EQ(program.eval.quantities[kE1].wanted, 1u);
}

class Differential : public testing::Test {
 protected:
  Differential()
      : reference(NewModel(program, {{100, 200, 10}})),
        change(NewModel(program, {{150, 20, 5}}, 0.1)),
        model(NewModel(program, {{1, 0, 0}, {2, 0, 0}}, -1)) {
    model.epsInf.adjustable = 0;
  }
  Tables program;
  Model& reference;
  Model& change;
  Model& model;
};

TEST_F(Differential, IsTheLinearChangeOfEachQuantity) {
  for (const Quantity q : kEveryQuantity) {
    const Cplx a = EpsSum(program.eval, reference, 130, false), b = EpsSum(program.eval, change, 130, false);
    const auto along = [&](double t) {
      QuantityResult out;
      QuantityOfEps({130, false, false, &program.params.ExpParams}, a + t * b, q, out);
      return out.value;
    };
    const SlopeEstimate judge = RiddersSlope(along, 0, 0.1);
    EXPECT_NEAR(QuantityAt(program, model, q, 130), judge.value,
                kRidders * judge.error + kSlopeOfFormula * std::fabs(judge.value))
        << q;
  }
}

TEST_F(Differential, OnlyTheChangeHasDerivatives) {
  reference.epsInf.savedSlopes.dQuantity.fill(0.5);
  Cell(model, 0, Wp).savedSlopes.dQuantity.fill(0.5);
  QuantityAt(program, model, kRefl, 130, true);
  EXPECT_EQ(reference.epsInf.savedSlopes.dQuantity[kRefl], 0.5);
  EXPECT_EQ(Cell(model, 0, Wp).savedSlopes.dQuantity[kRefl], 0.5);
  for (ModelParam* const param : {&change.epsInf, &Cell(change, 0, Wo), &Cell(change, 0, Wp), &Cell(change, 0, G)}) {
    const double slope = param->savedSlopes.dQuantity[kRefl], value = param->value;
    const SlopeEstimate judge = RiddersSlope(
        [&](double x) {
          param->value = x;
          return QuantityAt(program, model, kRefl, 130);
        },
        value, 0.02 * value);
    param->value = value;
    EXPECT_NEAR(slope, judge.value, kRidders * judge.error + kSlopeOfFormula * std::fabs(judge.value));
  }
}

TEST_F(Differential, OneRowChangesNothingAndAMissingModelFails) {
  program.eval.quantities[kRefl].value = 42;
  WantOnly(program.eval.quantities, QuantitySet{kRefl});
  Cell(model, 1, Wo).value = 9;
  EXPECT_EQ(EvalModel(program.eval, model, 130, true), -1);
  EXPECT_EQ(EvalModelAfter(program.eval, model), -1);
  Cell(model, 1, Wo).value = 2.5;
  EXPECT_EQ(EvalModel(program.eval, model, 130, true), -1);
  RemoveRow(model, 1);
  EXPECT_EQ(EvalModel(program.eval, model, 130, true), 0);
  EXPECT_EQ(EvalModelAfter(program.eval, model), 0);
  EXPECT_EQ(program.eval.quantities[kRefl].value, 42);
}

TEST_F(Differential, TheDependencyPassMarksTheChangeAlone) {
  WantOnly(program.eval.quantities, QuantitySet{kRefl});
  EXPECT_EQ(FindDependencies(program, model), 0);
  EXPECT_EQ(reference.epsInf.savedSlopes.dQuantity[kRefl], 0);
  EXPECT_NE(change.epsInf.savedSlopes.dQuantity[kRefl], 0);
}

TEST_F(Differential, ASpectrumEqualsTheSingleFrequencies) {
  std::vector<double> x;
  std::vector<QuantitySet> wanted;
  for (int i = 0; i < 150; ++i) {
    x.push_back(20 + 2 * i);
    wanted.push_back(static_cast<QuantitySet>(i % 2 ? QuantitySet{kRefl} : QuantitySet{kRefl} | QuantitySet{kE2}));
  }
  const std::vector<ParamPlace> places = {{ParamKind::kRow, 1, 0, Wp, 0, 0, 0}, {ParamKind::kEpsInf, 1, 0, 0, 0, 0, 0}};
  for (Model* const any : {&model, &reference}) {
    std::size_t seen = 0;
    EvalSpectrum(program.eval, *any, {x, wanted, true, places}, [&](const SpectrumBlock& block) {
      for (std::size_t i = 0; i < block.count; ++i, ++seen) {
        EXPECT_EQ(block.first + i, seen);
        EXPECT_NEAR(block.Value(kRefl, i), QuantityAt(program, *any, kRefl, x[seen], true), 4.5 * kEps);
        EXPECT_TRUE(any != &model || block.Slope(0, kRefl, i) == Cell(change, 0, Wp).savedSlopes.dQuantity[kRefl]);
      }
    });
    EXPECT_EQ(seen, x.size());
  }
}

}  // namespace
}  // namespace kalvex

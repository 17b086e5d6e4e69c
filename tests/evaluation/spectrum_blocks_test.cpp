// Blocks that are filled at once against EvalModel, for plain models and stacks; and every width of the vector units
// against the narrowest one.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "evaluation/eval_spectrum.h"
#include "evaluation/sample_models.h"
#include "evaluation/spectrum_kernels.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

constexpr std::size_t kPoints = 150;  // more than two blocks

std::vector<ParamPlace> FreePlaces(const Tables& program) {
  std::vector<ParamPlace> places = AllFreePlaces(program);
  for (int k = 0; k < kExpParamCount; ++k) {
    if (!program.params.ExpParams[static_cast<std::size_t>(k)].adjustable) continue;
    places.push_back({ParamKind::kExp, 0, 0, 0, k, 0, 0});
  }
  return places;
}

// Builds the same tables twice. One evaluates a spectrum, the other its frequencies one by one. Their final states must
// also agree.
template <class Build>
void ExpectSpectrumOfSingleFrequencies(QuantitySet quantities, double from, double step, double tolerance,
                                       Build build) {
  Tables together, single;
  Model &fast = build(together), &slow = build(single);
  const std::vector<ParamPlace> places = FreePlaces(together);
  ASSERT_GE(places.size(), 3u);
  std::vector<double> x;
  for (std::size_t i = 0; i < kPoints; ++i) x.push_back(from + step * static_cast<double>(i));
  const std::vector<QuantitySet> all(kPoints, quantities);
  std::size_t seen = 0;
  const int status = EvalSpectrum(together.eval, fast, {x, all, true, places}, [&](const SpectrumBlock& block) {
    for (std::size_t i = 0; i < block.count; ++i, ++seen) {
      WantOnly(single.eval.quantities, quantities);
      EvalWithSlopes(single, slow, x[block.first + i]);
      for (const Quantity q : quantities) {
        const double value = single.eval.quantities[q].value;
        // A small reflectivity is the difference of amplitudes of order 1.
        const double most = tolerance * std::fabs(value) + 1e-15;
        EXPECT_NEAR(block.Value(q, i), value, most) << q << " at " << x[block.first + i];
        double largest = 0;
        for (const ParamPlace& place : places) {
          const ModelParam& param = ParamAt(single.params, place);
          largest = std::max(largest, std::fabs(param.value * param.savedSlopes.dQuantity[q]));
        }
        for (std::size_t k = 0; k < places.size(); ++k) {
          const ModelParam& param = ParamAt(single.params, places[k]);
          const double slope = param.savedSlopes.dQuantity[q];
          const double room = tolerance * (std::fabs(slope) + largest / std::max(std::fabs(param.value), 1e-3));
          EXPECT_NEAR(block.Slope(k, q, i), slope, room) << q << ' ' << k << " at " << x[block.first + i];
        }
      }
    }
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(seen, kPoints);
  TakeOverSlopes(together.params, together.eval.slopes);
  for (const Quantity q : quantities) {
    EXPECT_EQ(together.eval.quantities[q].value, single.eval.quantities[q].value);
    for (const ParamPlace& place : places) {
      EXPECT_EQ(ParamAt(together.params, place).savedSlopes.dQuantity[q],
                ParamAt(single.params, place).savedSlopes.dQuantity[q]);
    }
  }
}

Model& Oscillators(Tables& program) {
  for (ModelParam& param : program.params.ExpParams) param.adjustable = 1;
  program.params.ExpParams[kSampleThickness].value = 0.003;
  program.params.ExpParams[kThicknessSpread].value = 0.1;
  program.params.ExpParams[kAngleOfIncidence].value = 40;
  program.params.ExpParams[kAngleSpread].value = 0.05;
  return NewModel(program, {{100, 200, 20}, {250, 90, 0.5}, {0, 500, 60}, {900, 0, 30}});
}

class EveryQuantityOfABlock : public testing::TestWithParam<Quantity> {};

TEST_P(EveryQuantityOfABlock, IsThatOfSingleFrequencies) {
  ExpectSpectrumOfSingleFrequencies({GetParam()}, 11, 4, kChain, Oscillators);
}
INSTANTIATE_TEST_SUITE_P(All, EveryQuantityOfABlock, testing::ValuesIn(kEveryQuantity.begin(), kEveryQuantity.end()));

// Values do not depend on whether derivatives are requested. They agree with those of single frequencies: the sum of
// the rows to a few units in the last place of its largest term, and the results computed from it to the same accuracy.
TEST(SpectrumBlocks, ClosedFormulasKeepToThoseOfSingleFrequencies) {
  constexpr double kOfLargest = 1e-15;  // relative to the largest term of a cancelling sum
  Tables program;
  Model& model = Oscillators(program);
  std::vector<double> x;
  for (std::size_t i = 0; i < kPoints; ++i) x.push_back(5 + 3.3 * static_cast<double>(i));
  for (const Quantity q : {kRefl, kRp, kRs, kRps, kE1, kE2, kS1, kS2, kN1, kN2, kDepth, kLoss, kAlpha}) {
    const std::vector<QuantitySet> wanted(kPoints, QuantitySet{q});
    std::vector<double> values[2];
    for (const bool derivatives : {false, true}) {
      EvalSpectrum(program.eval, model, {x, wanted, derivatives, {}}, [&](const SpectrumBlock& block) {
        for (std::size_t i = 0; i < block.count; ++i) values[derivatives].push_back(block.Value(q, i));
      });
    }
    EXPECT_EQ(values[0], values[1]) << q;
    ASSERT_EQ(values[0].size(), kPoints);
    double largest = 0;
    for (const double value : values[0]) largest = std::max(largest, std::fabs(value));
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double single = QuantityAt(program, model, q, x[i]);
      EXPECT_NEAR(values[0][i], single, 8 * kRound * std::fabs(single) + kOfLargest * largest) << q << " at " << x[i];
    }
  }
}

// Rows share quotients in groups of four, two and one. The reference sum uses a longer number type.
TEST(SpectrumBlocks, RowsThatShareQuotientsAreExactWithinAFewUnits) {
  BlockNumbers w;
  for (std::size_t i = 0; i < w.size(); ++i) w[i] = 0.5 * std::pow(1.2, static_cast<double>(i));
  std::vector<PlainRow> rows;
  for (const double far : {1.0, 1e4, 1e20}) {  // with the last one the product of norms would overflow
    for (std::size_t count = 1; count <= 9; ++count) {
      rows.push_back({far * 37 * static_cast<double>(count), 100.0 + 3 * static_cast<double>(count), 2.0});
      BlockNumbers re{}, im{};
      AddOscillators(rows, BoundsOf(rows), w.data(), re.data(), im.data());
      for (std::size_t i = 0; i < w.size(); ++i) {
        long double sumRe = 0, sumIm = 0, parts = 0;
        for (const PlainRow& row : rows) {
          const long double at = w[i], d = static_cast<long double>(row.Wo) * row.Wo - at * at, damping = at * row.G;
          const long double share = static_cast<long double>(row.Wp) * row.Wp / (d * d + damping * damping);
          sumRe += d * share;
          sumIm += damping * share;
          parts += (std::fabs(d) + damping) * share;
        }
        const double most = 8 * std::numeric_limits<double>::epsilon() * static_cast<double>(parts);
        EXPECT_NEAR(re[i], static_cast<double>(sumRe), most);
        EXPECT_NEAR(im[i], static_cast<double>(sumIm), most);
      }
    }
  }
}

// A resonance of zero width that is hit exactly, an unphysical gain, and thicknesses with zero transmission.
TEST(SpectrumBlocks, LanesThatNeedBranchesOfTheirOwn) {
  for (const auto& rows : {std::array<double, 3>{100, 200, 0}, {100, 200, -900}, {100, 3000, 4000}}) {
    const auto build = [&](Tables& program) -> Model& {
      program.params.ExpParams[kSampleThickness].value = 0.02;
      return NewModel(program, {rows, {40, 20, 3}});
    };
    ExpectSpectrumOfSingleFrequencies({kRefl, kTrans, kDefringed, kDepth, kAlpha, kE1}, 0, 2, kChain, build);
  }
}

// At a frequency without a slope by an adjustable experimental parameter, the slope of the previous frequency stays.
TEST(SpectrumBlocks, ASlopeThatStaysFromTheFrequencyBefore) {
  const auto build = [](Tables& program) -> Model& {
    program.params.ExpParams[kScalingFactorOfR].adjustable = 1;
    return NewModel(program, {{100, 200, 0}, {40, 20, 3}});
  };
  ExpectSpectrumOfSingleFrequencies({kRefl}, 0, 2, kChain, build);
}

// ---- stacks

Model& Stack(Tables& program, int code, std::initializer_list<std::array<double, 3>> head,
             std::initializer_list<std::array<double, 3>> layers) {
  NewModel(program, {{100, 200, 20}, {700, 300, 40}});
  NewModel(program, {{0, 900, 40}}, 2);
  Model& stack = NewModel(program, head, -code);
  stack.epsInf.adjustable = 0;
  for (const auto& layer : layers) {
    const int row = RowCount(stack);
    InsertRow(stack, row);
    for (int c = 0; c < kColumns; ++c) Cell(stack, row, c).value = layer[static_cast<std::size_t>(c)];
    Cell(stack, row, Wo).adjustable = 0;
  }
  return stack;
}

TEST(SpectrumBlocks, LayersWithAndWithoutSpread) {
  ExpectSpectrumOfSingleFrequencies({kRefl, kTrans}, 15, 6, kChain, [](Tables& program) -> Model& {
    return Stack(program, 2, {}, {{1, 0.001, 0.2}, {2, 0.0001, 0}, {1, 0.0005, 0.1}});
  });
}

TEST(SpectrumBlocks, AmplitudesOfAStack) {
  ExpectSpectrumOfSingleFrequencies({kRefl, kTrans, kE1, kE2, kS1, kS2}, 15, 6, kChain, [](Tables& program) -> Model& {
    return Stack(program, 2, {}, {{2, 0.00005, 0}, {1, 0.002, 0.3}});
  });
}

TEST(SpectrumBlocks, NodesOfEqualWeight) {
  ExpectSpectrumOfSingleFrequencies({kTrans}, 15, 6, kChain, [](Tables& program) -> Model& {
    Model& stack = Stack(program, 32, {{0, 5, 0}}, {{1, 0.001, 0.2}, {2, 0.0001, 0}});
    for (int c = 0; c < kColumns; ++c) Cell(stack, 0, c).adjustable = 0;
    return stack;
  });
}

TEST(SpectrumBlocks, ObliqueAndEvanescentWaves) {
  for (const double polarisation : {0.0, 1.0}) {
    ExpectSpectrumOfSingleFrequencies({kRefl, kE2}, 15, 6, kChain, [&](Tables& program) -> Model& {
      return Stack(program, 92, {{0, 50, polarisation}}, {{1, 0.001, 0}, {2, 0.0001, 0}});
    });
  }
  ExpectSpectrumOfSingleFrequencies({kRefl, kS1}, 15, 6, kChain, [](Tables& program) -> Model& {
    return Stack(program, 106, {{1.1, 0.01, 0}}, {{1, 0.001, 0}, {2, 0.0001, 0}});
  });
}

// ---- widths

TEST(SpectrumBlocks, EveryWidthOfTheVectorUnitsGivesTheSameBits) {
  const auto kernels = KernelsOfThisMachine<SpectrumKernels>();
  ASSERT_FALSE(kernels.empty());
  const std::vector<PlainRow> sharp = {{100, 200, 20}, {250, 90, 0.5}, {0, 500, 60}, {300, 40, 0}};
  const std::vector<PlainRow> broad = {{100, 200, 20}, {250, 90, 0.5}, {0, 500, 60}, {300, 40, 3}, {400, 2, 1}};
  BlockNumbers w;
  for (std::size_t i = 0; i < w.size(); ++i) w[i] = 20 + 5.0 * static_cast<double>(i);
  std::array<ModelParam, kExpParamCount> exp = DefaultExpParams();
  for (ModelParam& param : exp) param.adjustable = 1;
  const QuantityInput in{0, true, false, &exp};
  const auto allOf = [&](const SpectrumKernels& with, const std::vector<PlainRow>& rows) {
    EpsBlock eps{w, {}, {}};
    std::vector<double> inverses(2 * kSpectrumBlock * rows.size());
    with.addOscillatorsForSlopes(rows, BoundsOf(rows), w.data(), eps.re.data(), eps.im.data(), inverses.data());
    std::vector<double> numbers = inverses;
    numbers.insert(numbers.end(), eps.re.begin(), eps.re.end());
    numbers.insert(numbers.end(), eps.im.begin(), eps.im.end());
    for (const Quantity q : kEveryQuantity) {
      QuantityBlock out{};
      with.quantityValuesAndSlopes(in, eps, q, out);
      for (const BlockNumbers& part : {out.value, out.dRe, out.dIm, out.dExp[0], out.dExp[2]}) {
        numbers.insert(numbers.end(), part.begin(), part.end());
      }
    }
    for (const std::size_t count : {1u, 13u, 64u}) {
      numbers.push_back(with.sumOfSquares(eps.re.data(), eps.im.data(), w.data(), count));
    }
    return numbers;
  };
  for (const auto& rows : {sharp, broad}) {
    const std::vector<double> narrowest = allOf(*kernels.back(), rows);
    for (const SpectrumKernels* const with : kernels) {
      const std::vector<double> numbers = allOf(*with, rows);
      EXPECT_EQ(std::memcmp(numbers.data(), narrowest.data(), numbers.size() * sizeof(double)), 0);
    }
  }
}

}  // namespace
}  // namespace kalvex

// Spectra that several threads share: the results and the final state equal those of one thread bit for bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>

#include "evaluation/eval_spectrum.h"
#include "evaluation/sample_models.h"
#include "support/program_state.h"
#include "types/types.h"

namespace kalvex {
namespace {

constexpr std::size_t kPoints = 3003;
constexpr int kThreadCounts[] = {1, 2, 7};

struct Spectrum {
  std::vector<double> x;
  std::vector<QuantitySet> wanted;
  std::vector<ParamPlace> places;
  bool derivatives = true;
};

struct Outcome {
  std::vector<double> numbers;  // results in the order of delivery, then the final state of the tables
  int status = 0;
  bool shared = false;
};

Spectrum EvenSpectrum(QuantitySet wanted) {
  Spectrum spectrum;
  for (std::size_t i = 0; i < kPoints; ++i) spectrum.x.push_back(10 + 0.7 * static_cast<double>(i));
  spectrum.wanted.assign(kPoints, wanted);
  return spectrum;
}

// Builds the tables with the given number of threads, and evaluates the last of their models.
Outcome Evaluate(int threads, const Spectrum& spectrum, const std::function<Model&(Tables&)>& build) {
  Tables program(threads);
  program.pool.SetLeastShare(0);
  Model& model = build(program);
  const std::vector<ParamPlace> places = AllFreePlaces(program);
  Outcome outcome;
  SpectrumRequest request{spectrum.x, spectrum.wanted, spectrum.derivatives, {}};
  if (spectrum.derivatives) request.slopesOf = places;
  std::size_t next = 0;
  outcome.status = EvalSpectrum(program.eval, model, request, [&](const SpectrumBlock& block) {
    EXPECT_EQ(block.first, next);
    next += block.count;
    for (std::size_t i = 0; i < block.count; ++i) {
      for (const Quantity q : kEveryQuantity) {
        if (!spectrum.wanted[block.first + i].Contains(q)) continue;
        outcome.numbers.push_back(block.Value(q, i));
        for (std::size_t k = 0; k < request.slopesOf.size(); ++k) outcome.numbers.push_back(block.Slope(k, q, i));
      }
    }
  });
  EXPECT_EQ(next, spectrum.x.size());
  if (spectrum.derivatives) TakeOverSlopes(program.params, program.eval.slopes);
  const std::vector<double> left = NumbersLeftIn(program);
  outcome.numbers.insert(outcome.numbers.end(), left.begin(), left.end());
  outcome.shared = program.eval.team != nullptr;
  return outcome;
}

// Returns the outcome with one thread.
Outcome ExpectTheSameForAllThreads(const Spectrum& spectrum, const std::function<Model&(Tables&)>& build) {
  const Outcome alone = Evaluate(1, spectrum, build);
  EXPECT_FALSE(alone.shared);
  for (const int threads : kThreadCounts) {
    const Outcome outcome = Evaluate(threads, spectrum, build);
    EXPECT_EQ(outcome.status, alone.status) << threads;
    EXPECT_TRUE(SameBits(outcome.numbers, alone.numbers)) << threads;
    EXPECT_EQ(outcome.shared, threads > 1);
  }
  return alone;
}

constexpr QuantitySet kReflAndTrans = QuantitySet{kRefl, kTrans};

Model& PlainModel(Tables& program) {
  program.params.ExpParams[kSampleThickness].adjustable = 1;
  return NewModel(program, {{100, 200, 20}, {700, 300, 40}, {1500, 900, 100}, {0, 500, 60}});
}

TEST(SharedSpectra, APlainModelWithAndWithoutDerivatives) {
  Spectrum spectrum = EvenSpectrum(kReflAndTrans);
  ExpectTheSameForAllThreads(spectrum, PlainModel);
  spectrum.derivatives = false;
  ExpectTheSameForAllThreads(spectrum, [](Tables& program) -> Model& {
    Model& model = PlainModel(program);
    for (int row = 4; row < 12; ++row) InsertRow(model, row);
    return model;
  });
}

// A Quantity whose last frequency is in the middle keeps the result from there.
TEST(SharedSpectra, QuantitiesThatAreWantedHereAndThere) {
  Spectrum spectrum = EvenSpectrum(QuantitySet{kRefl});
  for (std::size_t i = 500; i < 800; ++i) spectrum.wanted[i] = kReflAndTrans;
  for (std::size_t i = 1000; i < 1003; ++i) spectrum.wanted[i] = QuantitySet{kS1};
  for (std::size_t i = 2000; i < 2500; i += 7) spectrum.wanted[i] = {};
  ExpectTheSameForAllThreads(spectrum, PlainModel);
}

// Partners with terms that build tables on first use: the gap of a superconductor, and a coupling spectrum of 3 points.
TEST(SharedSpectra, ASpecialModelOfPartnersWithCompositeTerms) {
  ExpectTheSameForAllThreads(EvenSpectrum(QuantitySet{kRefl}), [](Tables& program) -> Model& {
    Dataset& coupling = program.datasets.slots[0];
    coupling.id = program.datasets.nextId++;
    coupling.points = {{100, 0.2, 0.01}, {200, 0.5, 0.01}, {300, 0.1, 0.01}};
    NewModel(program, {{100, 200, 20}, {-41, 3000, 50}, {-42, 100, 1}, {-43, 0, 0}}, 2);
    NewModel(program, {{700, 300, 40}, {-20, 5000, 80}, {-21, 40, 10}, {-22, 4, 0.3}}, 4);
    Model& sample = NewModel(program, {{1, 2, 1}}, -17);
    sample.epsInf.adjustable = 0;
    return sample;
  });
}

TEST(SharedSpectra, AnotherSpectrumSeesWhatHasChanged) {
  const Spectrum spectrum = EvenSpectrum(kReflAndTrans);
  const auto sumOf = [&](Tables& program, Model& model) {
    const std::vector<ParamPlace> places = AllFreePlaces(program);
    double sum = 0;
    EvalSpectrum(program.eval, model, {spectrum.x, spectrum.wanted, true, places},
                 [&](const SpectrumBlock& block) { sum += block.Value(kRefl, 0) + block.Slope(1, kTrans, 0); });
    return sum;
  };
  Tables alone;
  Model& changed = PlainModel(alone);
  Cell(changed, 0, Wp).value += 1;
  const double expected = sumOf(alone, changed);
  for (const int threads : kThreadCounts) {
    Tables program(threads);
    program.pool.SetLeastShare(0);
    Model& model = PlainModel(program);
    EXPECT_NE(sumOf(program, model), expected);
    Cell(model, 0, Wp).value += 1;
    EXPECT_EQ(sumOf(program, model), expected) << threads;
  }
}

// ---- a type that fails

// Returns the number in its row times x. In one range of frequencies it fails with a status. In another it computes
// nothing and returns 0: the result of the previous frequency then stays.
int EvaluateFrail(EvalContext& ctx, const Model& model, double x, bool derivatives) {
  if (x > Cell(model, 0, Wp).value && x < Cell(model, 0, G).value) return -3;
  if (x > Cell(model, 1, Wp).value && x < Cell(model, 1, G).value) return 0;
  for (const Quantity q : kEveryQuantity) {
    QuantityResult& quantity = ctx.quantities[q];
    if (!quantity.wanted) continue;
    quantity.Put(Cell(model, 0, Wo).value * std::sin(x));
    if (derivatives) Cell(SlopesOf(ctx, model), 0, Wo).Put(q, std::sin(x));
  }
  return 0;
}

const ModelType kFrail{.code = 17, .name = "frail", .evaluate = EvaluateFrail, .after = nullptr};
const ModelType* const kFrailTable[] = {&kFrail};

std::function<Model&(Tables&)> Frail(double failsFrom, double failsTo, double idleFrom, double idleTo) {
  return [=](Tables& program) -> Model& {
    program.eval.types = kFrailTable;
    Model& model = NewModel(program, {{3, failsFrom, failsTo}, {1, idleFrom, idleTo}}, -17);
    FixAll(model, true);
    Cell(model, 0, Wo).adjustable = 1;
    for (QuantityResult& quantity : program.eval.quantities) quantity.value = 77;
    Cell(model, 0, Wo).savedSlopes.dQuantity.fill(99);
    return model;
  };
}

TEST(SharedSpectra, AFailingTypeLeavesTheValuesOfTheFrequencyBefore) {
  const Spectrum spectrum = EvenSpectrum(kReflAndTrans);
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(0, 0, 0, 0)).status, 0);
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(0, 1e9, 0, 0)).numbers[0], 77);    // always
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(0, 50, 0, 0)).status, -3);         // at first
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(1200, 1300, 0, 0)).status, -3);    // in the middle
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(2100, 1e9, 0, 0)).status, -3);     // at the end
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(1201, 1201.5, 0, 0)).status, -3);  // perhaps one point
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(0, 0, 0, 1e9)).numbers[0], 77);    // without a status
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(0, 0, 700, 1900)).status, 0);
  EXPECT_EQ(ExpectTheSameForAllThreads(spectrum, Frail(300, 301, 1000, 1400)).status, -3);
}

// A failing range shorter than a block: only the first frequencies of a block are affected.
TEST(SharedSpectra, AGiveUpAcrossTheBorderOfTwoBlocks) {
  const Spectrum spectrum = EvenSpectrum(QuantitySet{kRefl});
  for (const std::size_t from : {62u, 63u, 64u, 1023u, 2047u}) {
    ExpectTheSameForAllThreads(spectrum, Frail(0, 0, spectrum.x[from] - 0.1, spectrum.x[from + 2] - 0.1));
  }
}

TEST(SharedSpectra, AMissingPartnerFailsAsEver) {
  const Spectrum spectrum = EvenSpectrum(QuantitySet{kRefl});
  const Outcome alone = ExpectTheSameForAllThreads(spectrum, [](Tables& program) -> Model& {
    NewModel(program, {{100, 200, 20}}, 2);
    Model& sample = NewModel(program, {{1, 5, 1}}, -17);
    sample.epsInf.adjustable = 0;
    for (QuantityResult& quantity : program.eval.quantities) quantity.value = 77;
    return sample;
  });
  EXPECT_EQ(alone.status, -1);
  EXPECT_EQ(alone.numbers[0], 77);
}

// ---- what is not shared

bool IsShared(std::size_t points, bool derivatives, std::optional<double> leastShare = {}) {
  Tables program(2);
  if (leastShare) program.pool.SetLeastShare(*leastShare);
  Model& model = PlainModel(program);
  const std::vector<double> x(points, 50.0);
  const std::vector<QuantitySet> wanted(points, QuantitySet{kRefl});
  EvalSpectrum(program.eval, model, {x, wanted, derivatives, {}}, [](const SpectrumBlock&) {});
  return program.eval.team != nullptr;
}

TEST(SharedSpectra, AShortSpectrumIsNotShared) {
  EXPECT_FALSE(IsShared(3000, true));
  EXPECT_TRUE(IsShared(100000, true));
  EXPECT_FALSE(IsShared(50000, false));  // without slopes a frequency takes a third of the time
  EXPECT_TRUE(IsShared(500000, false));
  EXPECT_TRUE(IsShared(300, false, 0));
  EXPECT_FALSE(IsShared(100, true, 0));  // fewer than four blocks
}

// A pulse is computed for all times and frequencies at once.
TEST(SharedSpectra, NoSpecialModelIsSharedWhileThereIsOneThatIsComputedAsAWhole) {
  const Spectrum spectrum = EvenSpectrum(kReflAndTrans);
  const auto build = [](Tables& program, bool reflection) -> Model& {
    Dataset& reference = program.datasets.slots[0];
    reference.id = program.datasets.nextId++;
    for (int i = 0; i < 50; ++i) reference.points.push_back({14.0 * i, std::sin(i * 0.7), 0});
    Model& sample = PlainModel(program);
    Model& pulse = NewModel(program, {{1, 1, 0}, {20, 700, 64}, {0, 0, 0}, {3, 0, 1}}, -20);
    pulse.epsInf.adjustable = 0;
    if (!reflection) return pulse;
    Model& special = NewModel(program, {{static_cast<double>(sample.number), 1, 1}}, -17);
    special.epsInf.adjustable = 0;
    return special;
  };
  for (const bool reflection : {false, true}) {
    const auto make = [&](Tables& program) -> Model& { return build(program, reflection); };
    const Outcome alone = Evaluate(1, spectrum, make), several = Evaluate(4, spectrum, make);
    EXPECT_TRUE(SameBits(alone.numbers, several.numbers));
    EXPECT_FALSE(several.shared);
  }
}

// A type that caches levels between frequencies, and layers with a spread.
TEST(SharedSpectra, TypesThatKeepTables) {
  ExpectTheSameForAllThreads(EvenSpectrum(kReflAndTrans), [](Tables& program) -> Model& {
    Model& levels = NewModel(program, {{50, 7, 40}, {1, 0, 0}, {0.01, 0.1, 0.01}, {1e6, 1, 0}}, -41);
    levels.epsInf.adjustable = 0;
    return levels;
  });
  ExpectTheSameForAllThreads(EvenSpectrum(kReflAndTrans), [](Tables& program) -> Model& {
    const double a = NewModel(program, {{100, 200, 10}}).number, b = NewModel(program, {{0, 900, 40}}, 2).number;
    Model& stack = NewModel(program, {{a, 0.001, 0.2}, {b, 0.0001, 0}, {a, 0.0005, 0}}, -2);
    stack.epsInf.adjustable = 0;
    return stack;
  });
}

}  // namespace
}  // namespace kalvex

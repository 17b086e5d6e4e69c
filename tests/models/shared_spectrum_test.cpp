// A spectrum that threads share: values, slopes, order, what is left behind, and the failures of special models.
#include <gtest/gtest.h>

#include <cmath>

#include "models/eval_spectrum.h"
#include "models/sample_models.h"
#include "models/types/types.h"

namespace kalvex {
namespace {

struct Results {
  std::vector<double> numbers;
  std::vector<std::size_t> firsts;
  int status = 0;
  std::vector<double> left;  // values and columns that the evaluation leaves
  friend bool operator==(const Results&, const Results&) = default;
};

class SharedSpectrum : public testing::Test {
 protected:
  static Model& Special(Program& program, int code, std::initializer_list<std::array<double, 3>> rows) {
    Model& model = NewModel(program, rows, -code);
    model.epsInf.adjustable = 0;
    return model;
  }
  // Builds the models by `make`, whose result is the one that is evaluated.
  template <class Make>
  Results Evaluate(int threads, Make make, bool derivatives = true) {
    Program program;
    UseThreads(program, threads);
    Model& model = make(program);
    std::vector<double> x;
    for (int i = 0; i < 1000; ++i) x.push_back(20 + 0.7 * i);
    const std::vector<QuantitySet> wanted(x.size(),
                                          static_cast<QuantitySet>(SetOf(kRefl) | SetOf(kTrans) | SetOf(kE2)));
    std::vector<ParamPlace> places;
    for (int nm = 0; nm < 4; ++nm) {
      for (int nl = 0; nl < RowCount(program.params.models[static_cast<std::size_t>(nm)]); ++nl) {
        for (int nc = 0; nc < kColumns; ++nc) places.push_back({ParamKind::kRow, nm, nl, nc, 0, 0, 0});
      }
    }
    SpectrumRequest request{x, wanted, derivatives, places};
    Results results;
    results.status = EvalSpectrum(program.eval, model, request, [&](const SpectrumBlock& block) {
      results.firsts.push_back(block.first);
      for (std::size_t i = 0; i < block.count; ++i) {
        for (const int q : {kRefl, kTrans, kE2}) {
          results.numbers.push_back(block.Value(q, i));
          for (std::size_t k = 0; derivatives && k < places.size(); ++k)
            results.numbers.push_back(block.Slope(k, q, i));
        }
      }
    });
    for (const Quantity& quantity : program.eval.quantities) results.left.push_back(quantity.value);
    for (const ParamPlace& place : places) {
      const ModelParam& param = ParamAt(program.params, place);
      results.left.insert(results.left.end(),
                          {param.dEpsRe, param.dEpsIm, param.dQuantity[kRefl], param.dQuantity[kE2]});
    }
    return results;
  }
  template <class Make>
  void ExpectTheSame(Make make, bool derivatives = true) {
    const Results one = Evaluate(1, make, derivatives);
    EXPECT_EQ(one.firsts.size(), 16u);
    for (const int threads : {2, 7}) EXPECT_TRUE(Evaluate(threads, make, derivatives) == one) << threads;
  }
};

TEST_F(SharedSpectrum, OfAPlainModelIsTheSame) {
  const auto make = [](Program& program) -> Model& {
    return NewModel(program, {{100, 200, 10}, {-50, 0, 0}, {300, 150, 20}, {0, 300, 50}});
  };
  ExpectTheSame(make);
  ExpectTheSame(make, false);
}

TEST_F(SharedSpectrum, OfAStackIsTheSame) {
  ExpectTheSame([](Program& program) -> Model& {
    const double a = NewModel(program, {{100, 200, 10}}).number, b = NewModel(program, {{0, 900, 40}}, 2).number;
    return Special(program, 2, {{a, 0.001, 0.2}, {b, 0.0001, 0}, {a, 0.0005, 0}});
  });
}

TEST_F(SharedSpectrum, OfLandauLevelsWithTheirKeptTableIsTheSame) {
  ExpectTheSame([](Program& program) -> Model& {
    return Special(program, 41, {{50, 7, 40}, {1, 0, 0}, {0.01, 0.1, 0.01}, {1e6, 1, 0}});
  });
}

TEST_F(SharedSpectrum, OfAPulseIsTheSame) {
  ExpectTheSame([](Program& program) -> Model& {
    Dataset& reference = program.datasets.slots[0];
    reference.id = 5;
    for (int i = 0; i < 50; ++i) reference.points.push_back({14.0 * i, std::sin(i * 0.7), 0});
    const double sample = NewModel(program, {{100, 200, 10}}).number;
    return Special(program, 20, {{sample, 1, 0}, {20, 700, 64}, {0, 0, 0}, {3, 0, 1}});
  });
}

TEST_F(SharedSpectrum, OfAModelThatFailsLeavesTheOldResultsAsWithOneThread) {
  // A missing partner fails at every frequency; what stood in the Quantities before stays.
  const auto make = [](Program& program) -> Model& {
    for (Quantity& quantity : program.eval.quantities) quantity.value = 77;
    return Special(program, 88, {{99, 2, 0.001}, {1, 1, 0}});
  };
  const Results one = Evaluate(1, make);
  EXPECT_NE(one.status, 0);
  EXPECT_EQ(one.numbers[0], 77);
  for (const int threads : {2, 7}) EXPECT_TRUE(Evaluate(threads, make) == one) << threads;
}

}  // namespace
}  // namespace kalvex

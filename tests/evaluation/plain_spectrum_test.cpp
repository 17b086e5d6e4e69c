// The block evaluation of a model with a mesh against the evaluation at single frequencies.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "evaluation/eval_model.h"
#include "evaluation/eval_spectrum.h"
#include "fit/fit_lists.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "records/vdf_mesh.h"
#include "support/tables.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

constexpr int kFrequencies = 150;  // more than two blocks

struct Problem {
  Tables program;
  Model* model = nullptr;
  std::vector<double> x;
  std::vector<QuantitySet> wanted;
  std::vector<ParamPlace> places;

  explicit Problem(bool kk) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> value(0, 3);
    Dataset& dataset = program.datasets.slots[0];
    dataset.id = program.datasets.nextId++;
    for (int i = 0; i < 40; ++i) dataset.points.push_back({30.0 + 7 * i + value(random), 0.5, 0.01});
    dataset.firstActive = 0;
    dataset.lastActive = 39;
    model = CreateModel(program.params);
    InsertRow(*model, 1);
    Cell(*model, 1, Wo).value = 210;
    VarDielFunc& vdf = model->vdf;
    vdf.source[0].datasetId = dataset.id;
    vdf.initOn = vdf.initFitActive = 1;
    vdf.initKK = kk ? 1 : 0;
    EXPECT_TRUE(InitVdfMesh(vdf, program.datasets).Ok());
    for (VdfMeshPoint& point : vdf.mesh) {
      point.e1.value = value(random);
      if (point.e2.adjustable) point.e2.value = value(random);
    }
    program.params.ExpParams[kScalingFactorOfR].adjustable = 1;
    program.params.ExpParams[kSampleThickness].adjustable = 1;
    for (int i = 0; i < kFrequencies; ++i) {
      x.push_back(10 + 2.5 * i);
      wanted.push_back(i % 3 ? QuantitySet{kRefl} : QuantitySet{kTrans, kS1});
    }
    ChiSqTerm& term = InsertChiSqTerm(program.fit, program.fit.list, 0);
    term.datasetId = dataset.id;
    term.modelId = model->number;
    RebuildFitLists(program.fit, program.params, program.eval);
    for (const FitParam& param : program.fit.params) places.push_back(param.place);
    places.push_back({ParamKind::kExp, 0, 0, 0, kSampleThickness, 0, 0});
  }

  double Reference(std::size_t at, Quantity quantity) {
    WantOnly(program.eval.quantities, wanted[at]);
    EvalModel(program.eval, *model, x[at], true);
    return program.eval.quantities[quantity].value;
  }
};

class SpectrumOfAMesh : public testing::TestWithParam<bool> {};

TEST_P(SpectrumOfAMesh, EqualsTheSingleFrequencyForm) {
  Problem fast(GetParam()), slow(GetParam());
  ASSERT_GT(fast.places.size(), 40u);
  std::size_t seen = 0;
  const auto compare = [&](const SpectrumBlock& block) {
    for (std::size_t i = 0; i < block.count; ++i, ++seen) {
      for (const Quantity q : kEveryQuantity) {
        if (!slow.wanted[block.first + i].Contains(q)) continue;
        EXPECT_CLOSE(block.Value(q, i), slow.Reference(block.first + i, q), kChain);
        for (std::size_t k = 0; k < slow.places.size(); ++k) {
          const double slope = SlopesAt(slow.program.eval.slopes, slow.places[k]).dQuantity[q];
          EXPECT_NEAR(block.Slope(k, q, i), slope, kFormula * (1 + std::fabs(slope))) << q << ' ' << k;
        }
      }
    }
  };
  const SpectrumRequest request{fast.x, fast.wanted, true, fast.places};
  EXPECT_EQ(EvalSpectrum(fast.program.eval, *fast.model, request, compare), 0);
  EXPECT_EQ(seen, fast.x.size());
}

TEST_P(SpectrumOfAMesh, AChangeOfValuesMeshOrFrequenciesIsSeen) {
  Problem problem(GetParam());
  const auto tenth = [&] {
    double value = 0;
    const SpectrumRequest request{problem.x, problem.wanted, false, {}};
    EvalSpectrum(problem.program.eval, *problem.model, request, [&](const SpectrumBlock& block) {
      if (block.first == 0) value = block.Value(kRefl, 10);
    });
    EXPECT_CLOSE(value, problem.Reference(10, kRefl), kChain);
    return value;
  };
  const double before = tenth();
  problem.model->vdf.mesh[1].e2.value += 2;
  const double changed = tenth();
  EXPECT_NE(before, changed);
  problem.model->vdf.mesh.erase(problem.model->vdf.mesh.begin() + 5);
  tenth();
  for (double& x : problem.x) x += 1;
  tenth();
}

TEST_P(SpectrumOfAMesh, BeyondItsMemoryTheKernelsAreMadeAnew) {
  Problem kept(GetParam()), anew(GetParam());
  anew.program.eval.vdfKernels.mostBytes = 0;
  ComputeChiSq(kept.program.fit, kept.program.eval);
  anew.model->vdf.mesh[2].x += 0.5;
  ComputeChiSq(anew.program.fit, anew.program.eval);
  anew.model->vdf.mesh[2].x -= 0.5;
  ComputeChiSq(anew.program.fit, anew.program.eval);
  EXPECT_CLOSE(kept.program.fit.TotalChiSq, anew.program.fit.TotalChiSq, kChain);
}

INSTANTIATE_TEST_SUITE_P(FreeAndConstrained, SpectrumOfAMesh, testing::Bool());

}  // namespace
}  // namespace kalvex

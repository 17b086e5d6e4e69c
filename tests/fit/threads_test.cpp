// Fits on several threads: values, error bars, iterations and the final state equal those of one thread bit for bit.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "fit/running.h"
#include "records/vdf_mesh.h"
#include "support/program_state.h"

namespace kalvex {
namespace {

constexpr int kPoints = 1500;

struct Outcome {
  std::vector<double> numbers;
  std::string files;
  bool shared = false;
};

class FitsOnThreads : public testing::Test {
 protected:
  FitsOnThreads() : inside(folder.Name()) {}

  Outcome Run(int threads, const std::function<void(SampleFit&)>& prepare) {
    SampleFit s(threads);
    s.tables.pool.SetLeastShare(0);
    prepare(s);
    FitOptions& options = s.fit().options;
    options.StopOnIterations = true;
    options.MaxIterations = 4;
    options.StopOnReduction = false;
    options.CalcConfidence = true;
    options.LogFit = true;
    s.Run();
    EXPECT_GT(s.fit().IterationCount, 0) << s.fit().report.stop;
    Outcome outcome{NumbersLeftIn(s.tables),
                    folder.Read("Params.dat") + folder.Read("ParCorrs.dat") + folder.Read("Fitlog.dat"),
                    s.tables.eval.team != nullptr};
    ComputeChiSq(s.fit(), s.tables.eval);
    const std::vector<double> left = NumbersLeftIn(s.tables);
    outcome.numbers.insert(outcome.numbers.end(), left.begin(), left.end());
    InFolder here(folder.Name());
    std::remove("Fitlog.dat");
    return outcome;
  }

  void ExpectTheSame(const std::function<void(SampleFit&)>& prepare) {
    const Outcome alone = Run(1, prepare);
    EXPECT_FALSE(alone.shared);
    for (const int threads : {2, 7}) {
      const Outcome outcome = Run(threads, prepare);
      EXPECT_TRUE(SameBits(outcome.numbers, alone.numbers)) << threads;
      EXPECT_EQ(outcome.files, alone.files) << threads;
      EXPECT_TRUE(outcome.shared);
    }
  }

  ScratchFolder folder;
  InFolder inside;
};

void AddRows(Model& model, int rows) {
  for (int row = 1; row < rows; ++row) {
    InsertRow(model, row);
    Cell(model, row, Wo).value = 100 + 700.0 * row;
    Cell(model, row, Wp).value = 150 + 100.0 * row;
    Cell(model, row, G).value = 10.0 * row;
  }
}

TEST_F(FitsOnThreads, APlainModelWithLimitsAndCoupling) {
  ExpectTheSame([](SampleFit& s) {
    Model& model = s.AddModel(4, 120, 250, 8);
    AddRows(model, 8);
    s.Measure(1, model, kRefl, 0.01, 0.002, kPoints);
    s.Measure(2, model, kE2, 0.5, 0.1, kPoints / 2);
    SampleFit::Set(model, 3.5, 116, 230, 11);
    Cell(model, 2, G).useMin = 1;
    Cell(model, 3, G).coupling = Cell(model, 4, G).coupling = 2;
    Cell(model, 4, G).value = Cell(model, 3, G).value;
    s.Term(1, 1);
    s.Term(2, 1, 0.5);
  });
}

// The points of the smaller model depend on few of the parameters. They are added one by one, after the others.
TEST_F(FitsOnThreads, TwoModelsOfUnequalSize) {
  ExpectTheSame([](SampleFit& s) {
    Model& large = s.AddModel(4, 120, 250, 8);
    AddRows(large, 10);
    Model& small = s.AddModel(2, 900, 400, 60);
    AddRows(small, 2);
    s.Measure(1, large, kRefl, 0.01, 0.002, kPoints);
    s.Measure(2, small, kRefl, 0.01, 0.001, 2 * kPoints);
    SampleFit::Set(large, 3.5, 116, 230, 11);
    SampleFit::Set(small, 2.1, 905, 390, 50);
    s.Term(1, 1);
    s.Term(2, 2);
  });
}

void MeshFit(SampleFit& s, bool kk) {
  Model& model = s.AddModel(4, 120, 250, 8);
  AddRows(model, 4);
  s.Measure(1, model, kRefl, 0.01, 0.001, kPoints);
  s.Measure(2, model, kE2, 0.5, 0.01, kPoints);
  s.Measure(3, model, kRefl, 0.01, 0, 60);
  FixAll(model, true);
  Cell(model, 1, Wp).value *= 0.9;
  Cell(model, 1, Wp).adjustable = 1;
  VarDielFunc& vdf = model.vdf;
  vdf.source[0].datasetId = s.tables.datasets.slots[2].id;
  vdf.initOn = vdf.initFitActive = 1;
  vdf.initKK = kk ? 1 : 0;
  ASSERT_TRUE(InitVdfMesh(vdf, s.tables.datasets).Ok());
  s.Term(1, 1);
  s.Term(2, 1);
}

TEST_F(FitsOnThreads, AConstrainedMesh) {
  ExpectTheSame([](SampleFit& s) { MeshFit(s, true); });
}

TEST_F(FitsOnThreads, AConstrainedMeshWhoseKernelsAreNotKept) {
  ExpectTheSame([](SampleFit& s) {
    s.tables.eval.vdfKernels.mostBytes = 0;
    MeshFit(s, true);
  });
}

TEST_F(FitsOnThreads, AFreeMesh) {
  ExpectTheSame([](SampleFit& s) { MeshFit(s, false); });
}

TEST_F(FitsOnThreads, ASpecialModelWithItsPartners) {
  ExpectTheSame([](SampleFit& s) {
    Model& medium = s.AddModel(2.2, 900, 100, 60);
    Model& sample = s.AddModel(4, 120, 250, 8);
    AddRows(sample, 3);
    Model& reflection = s.AddModel(-17, medium.number, sample.number, 1);
    FixAll(reflection, true);
    Cell(reflection, 0, G).adjustable = 1;
    s.Measure(1, reflection, kRefl, 0.01, 0.001, kPoints);
    SampleFit::Set(sample, 3.8, 118, 240, 9);
    s.Term(1, reflection.number);
  });
}

// A second term, whose special model lacks its partner, keeps the values of earlier evaluations.
TEST_F(FitsOnThreads, ASpecialModelThatFailsBesideOneThatDoesNot) {
  ExpectTheSame([](SampleFit& s) {
    Model& sample = s.AddModel(4, 120, 250, 8);
    AddRows(sample, 8);
    Model& failing = s.AddModel(-17, 55, sample.number, 1);
    FixAll(failing, true);
    s.Measure(1, sample, kRefl, 0.01, 0.001, kPoints);
    s.Measure(2, sample, kRefl, 0.01, 0.001, kPoints);
    SampleFit::Set(sample, 3.8, 118, 240, 9);
    s.Term(1, sample.number);
    s.Term(2, failing.number);
  });
}

}  // namespace
}  // namespace kalvex

#include "fit/fit_dumps.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "fit/running.h"
#include "support/tolerances.h"

namespace kalvex {
namespace {

// The last of the digits that the files hold, for numbers below 1, near 1 and near 2; what the end of a run leaves.
constexpr double kWrittenSlope = 1e-6, kWritten = 1e-5, kWrittenSum = 1e-4, kEndOfRun = 2e-4;

TEST_F(Running, QuantityErrorBarsScanEveryPointAndPutEverythingBack) {
  Prepare(0.005);
  FixAll(model, true);
  Cell(model, 0, Wp).adjustable = 1;
  s.Measure(2, model, kE1, 0.5, 0, 8);
  s.Measure(3, model, kE2, 0.5, 0, 3);
  s.Term(2, 1);
  EXPECT_EQ(s.ErrorBars().Code(), StatusCode::kNotThere);
  s.Term(3, 1);
  Dataset& anchor = s.tables.datasets.slots[2];
  anchor.CutMin = 0;
  anchor.CutMax = 35;
  ComputeActiveRange(anchor);
  const auto points = anchor.points;
  ASSERT_TRUE(s.ErrorBars().Ok());
  const auto lines = NumbersOf(folder.Read("QntyErrorBars.dat"));
  ASSERT_EQ(lines.size(), 3u);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    ASSERT_EQ(lines[i].size(), 13u);
    EXPECT_EQ(lines[i][0], points[i].x);
    EXPECT_EQ(anchor.points[i].y, points[i].y);
    // The other terms agree with the middle of the scan: ChiSq is lowest there.
    EXPECT_LE(lines[i][7], lines[i][2] * 1.0001);
    EXPECT_LE(lines[i][7], lines[i][12] * 1.0001);
  }
  EXPECT_EQ(anchor.CutMax, 35);
  EXPECT_EQ(anchor.nActive, 2);
  EXPECT_EQ(fit().list.terms.back().weight, 1);
  EXPECT_EQ(options().MaxIterations, 1000);
}

TEST_F(Running, TheMeshDumpsHoldTheDerivativesOfTheConductivity) {
  EXPECT_EQ(WriteDerivativeDump(s.tables.params, s.tables.eval).Code(), StatusCode::kNotThere);
  EXPECT_EQ(WriteSensitivityDump(s.tables.params, s.tables.eval).Code(), StatusCode::kNotThere);
  Model& second = s.AddModel(2, 100, 10, 5);
  s.AddModel(-1, 1, 0, 0);  // the measured models 3 and 4: linear changes about model 1 by model 1, and by model 2
  s.AddModel(-1, 1, 0, 0);
  for (const std::uint32_t number : {3u, 4u}) {
    Model& measured = s.model(number);
    InsertRow(measured, 1);
    measured.epsInf.adjustable = 0;
    Cell(measured, 0, Wo).value = 1;
    Cell(measured, 1, Wo).value = number - 2;
  }
  EXPECT_EQ(WriteDerivativeDump(s.tables.params, s.tables.eval).Code(), StatusCode::kNotThere);  // no dataset yet
  for (Model* const owner : {&model, &second}) {
    owner->vdf.On = 1;
    owner->vdf.mesh.resize(3);
    for (std::size_t i = 0; i < 3; ++i) {
      owner->vdf.mesh[i].x = 30 + 4.0 * static_cast<double>(i);
      owner->vdf.mesh[i].e1.adjustable = owner->vdf.mesh[i].e2.adjustable = 1;
    }
  }
  s.Measure(1, model, kS1, 1, 0, 5);  // at 30, 34, 38, and two points outside the mesh
  ASSERT_TRUE(WriteDerivativeDump(s.tables.params, s.tables.eval).Ok());
  const auto lines = NumbersOf(folder.Read("Jakob.dat"));
  ASSERT_EQ(lines.size(), 3u);
  for (const auto& line : lines) {
    ASSERT_EQ(line.size(), 17u);
    const double slope = line[0] / 60;
    EXPECT_EQ(line[1], 0);                   // dS1/de1 of model 1
    EXPECT_NEAR(line[2], slope, kWritten);   // dS1/de2
    EXPECT_NEAR(line[5], -slope, kWritten);  // dS2/de1
    EXPECT_NEAR(line[12], slope, kWritten);  // model 4 by model 2
  }
  ASSERT_TRUE(WriteSensitivityDump(s.tables.params, s.tables.eval).Ok());
  const auto sums = NumbersOf(folder.Read("Jakob2.dat"));
  ASSERT_EQ(sums.size(), 3u);
  for (const auto& line : sums) {
    EXPECT_NEAR(line[1], 60 / line[0], kWrittenSum);
    EXPECT_NEAR(line[2], 60 / line[0], kWrittenSum);
  }
}

// Three measurements of one constant: 4.2 and 3.8 with an error bar of 0.1, and the anchor. The best constant has a
// closed form.
TEST_F(Running, QuantityErrorBarsOfOneConstantFollowFromItsWeightedMean) {
  SampleFit::Set(model, 4, 5000, 0, 10);
  FixAll(model, true);
  model.epsInf.adjustable = 1;
  s.Measure(1, model, kE1, 0.1, 0, 5);
  s.Measure(2, model, kE1, 0.1, 0, 3);
  s.Measure(3, model, kE1, 5e-5, 0, 2);
  auto& slots = s.tables.datasets.slots;
  for (DataRow& row : slots[0].points) row.y = 4.2;
  for (DataRow& row : slots[1].points) row.y = 3.8;
  for (int slot = 1; slot <= 3; ++slot) s.Term(slot, 1, slot == 2 ? 2 : 1);
  options().StopOnIterations = true;
  int told = 0;
  ASSERT_TRUE(s.ErrorBars([&] { ++told; }).Ok());
  const double others = (5 + 2 * 3) / 0.01, mean = (5 * 4.2 + 2 * 3 * 3.8) / 11;
  const auto lines = LinesOf(folder.Read("QntyErrorBars.dat"));
  ASSERT_EQ(lines.size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    const std::vector<double> line = NumbersOf(lines[i])[0];
    ASSERT_EQ(line.size(), 13u);
    EXPECT_EQ(lines[i].back(), ' ');
    EXPECT_EQ(line[0], 30 + 4.0 * static_cast<double>(i));
    EXPECT_NEAR(line[1], mean, kWritten);
    for (std::size_t k = i == 0 ? 1 : 0; k < 11; ++k) {
      const double asked = mean * (0.9 + 0.02 * static_cast<double>(k)), anchor = 1e-6 / (5e-5 * 5e-5);
      const double c = (others * mean + anchor * asked) / (others + anchor);
      const double sum = (5 * std::pow(4.2 - c, 2) + 2 * 3 * std::pow(3.8 - c, 2)) / 0.01;
      EXPECT_NEAR(line[k + 2], sum, kEndOfRun) << i << ' ' << k;
    }
  }
  EXPECT_EQ(slots[2].points[0].y, 4);
  EXPECT_EQ(told, 2 * (1 + 11) + 1);  // a range and eleven values for each of the two points, and the end
  EXPECT_TRUE(options().StopOnIterations);
}

class MeshDumps : public Running {
 protected:
  // Models 1 and 2 with free meshes; 3 and 4, which are linear in the response of 1 and 2.
  void MakeModels(int count) {
    for (int number = 2; number <= count; ++number) s.AddModel(2, 100, 10, 5);
    for (std::uint32_t number = 1; number <= 4 && number <= static_cast<std::uint32_t>(count); ++number) {
      Model& made = s.model(number);
      FixAll(made, true);
      if (number < 3) {
        made.vdf.On = 1;
        made.vdf.mesh.resize(3);
        for (std::size_t i = 0; i < 3; ++i) {
          made.vdf.mesh[i].x = 30 + 4.0 * static_cast<double>(i);
          made.vdf.mesh[i].e1.adjustable = made.vdf.mesh[i].e2.adjustable = 1;
        }
      } else {
        InsertRow(made, 1);
        FixAll(made, true);
        made.epsInf.value = -1;
        Cell(made, 0, Wo).value = 1;
        Cell(made, 1, Wo).value = number - 2;
      }
    }
  }
  Status Jakob() { return WriteDerivativeDump(s.tables.params, s.tables.eval); }
  Status Jakob2() { return WriteSensitivityDump(s.tables.params, s.tables.eval); }
};

TEST_F(MeshDumps, NeedTheirModelsAndTheFirstDataset) {
  s.Measure(1, model, kS1, 1, 0, 3);
  MakeModels(2);
  EXPECT_EQ(Jakob2().Code(), StatusCode::kNotThere);
  s.AddModel(2, 100, 10, 5);
  EXPECT_TRUE(Jakob2().Ok());
  EXPECT_EQ(Jakob().Code(), StatusCode::kNotThere);
  s.AddModel(2, 100, 10, 5);
  EXPECT_TRUE(Jakob().Ok());
  UnloadDataset(s.tables.datasets.slots[0]);
  s.Measure(2, model, kS1, 1, 0, 3);
  EXPECT_EQ(Jakob().Code(), StatusCode::kNotThere);
  EXPECT_EQ(Jakob2().Code(), StatusCode::kNotThere);
}

TEST_F(MeshDumps, NothingIsWrittenWithoutWhatTheyNeed) {
  EXPECT_EQ(Jakob().Code(), StatusCode::kNotThere);
  EXPECT_EQ(Jakob2().Code(), StatusCode::kNotThere);
  EXPECT_FALSE(folder.Has("Jakob.dat"));
  EXPECT_FALSE(folder.Has("Jakob2.dat"));
}

TEST_F(MeshDumps, TheDerivativesStandInTheirOrder) {
  MakeModels(4);
  s.Measure(1, model, kS1, 1, 0, 3);  // on the three mesh points
  ASSERT_TRUE(Jakob().Ok());
  const auto lines = NumbersOf(folder.Read("Jakob.dat"));
  ASSERT_EQ(lines.size(), 3u);
  for (const std::vector<double>& line : lines) {
    ASSERT_EQ(line.size(), 17u);
    // S1 = x Im(eps)/60 and S2 = -x (Re(eps) - 1)/60. Model 3 depends on the mesh of model 1, and model 4 on that of
    // model 2. The columns of the other mesh contain the result of an earlier evaluation.
    const double slope = line[0] / 60;
    for (const std::size_t first : {1u, 11u}) {
      EXPECT_EQ(line[first], 0);                            // dS1/de1
      EXPECT_NEAR(line[first + 1], slope, kWrittenSlope);   // dS1/de2
      EXPECT_NEAR(line[first + 4], -slope, kWrittenSlope);  // dS2/de1
      EXPECT_EQ(line[first + 5], 0);                        // dS2/de2
    }
  }
  const std::string text = folder.Read("Jakob.dat");
  EXPECT_EQ(text.substr(0, text.find(' ', 15)), "30 0 0.5 0 0 -0.5");
}

TEST_F(MeshDumps, OnlyActiveRowsHaveALine) {
  MakeModels(4);
  s.Measure(1, model, kS1, 1, 0, 3);
  s.tables.datasets.slots[0].firstActive = 1;
  s.tables.datasets.slots[0].lastActive = 1;
  ASSERT_TRUE(Jakob().Ok());
  ASSERT_TRUE(Jakob2().Ok());
  for (const char* const name : {"Jakob.dat", "Jakob2.dat"}) {
    const auto lines = NumbersOf(folder.Read(name));
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0][0], 34);
  }
}

TEST_F(MeshDumps, AMeshPointWithoutASayHasASensitivityOutOfReach) {
  MakeModels(3);
  s.Measure(1, model, kS1, 1, 0, 1);
  model.vdf.mesh[0].e1.adjustable = 0;  // its derivatives stay 0, and so does the determinant
  ASSERT_TRUE(Jakob2().Ok());
  EXPECT_EQ(folder.Read("Jakob2.dat"), "30 2E+30 2E+30\n");
}

}  // namespace
}  // namespace kalvex

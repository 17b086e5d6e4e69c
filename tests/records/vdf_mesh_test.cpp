#include "records/vdf_mesh.h"

#include <gtest/gtest.h>

#include "evaluation/mesh_samples.h"

namespace kalvex {
namespace {

using Frequencies = std::vector<double>;

TEST(VdfMesh, EqualFrequenciesOfTwoDatasetsAppearOnceAndNearOnesTwice) {
  DatasetTable table;
  VarDielFunc vdf;
  vdf.source[0].datasetId = PutDataset(table, 1, {100, 200, 300});
  vdf.source[1].datasetId = PutDataset(table, 2, {150, 200, 300 + 1e-9});
  EXPECT_TRUE(InitVdfMesh(vdf, table).Ok());
  EXPECT_EQ(FrequenciesOf(vdf), (Frequencies{100, 150, 200, 300, 300 + 1e-9}));
}

TEST(VdfMesh, EverySecondRowOfFiveGivesThreePoints) {
  DatasetTable table;
  VarDielFunc vdf;
  vdf.source[0] = {PutDataset(table, 1, {1, 2, 3, 4, 5}), true};
  ASSERT_TRUE(InitVdfMesh(vdf, table).Ok());
  EXPECT_EQ(FrequenciesOf(vdf), (Frequencies{1, 3, 5}));
}

TEST(VdfMesh, OnlyActiveRowsAreTaken) {
  DatasetTable table;
  VarDielFunc vdf;
  vdf.source[2].datasetId = PutDataset(table, 1, {1, 2, 3, 4, 5});
  table.slots[0].firstActive = 1;
  table.slots[0].lastActive = 3;
  ASSERT_TRUE(InitVdfMesh(vdf, table).Ok());
  EXPECT_EQ(FrequenciesOf(vdf), (Frequencies{2, 3, 4}));
}

TEST(VdfMesh, WithoutARowItIsCleared) {
  DatasetTable table;
  VarDielFunc vdf = MeshAt({1, 2, 3}, true);
  vdf.source = {};
  vdf.source[0].datasetId = PutDataset(table, 1, {1, 2});
  table.slots[0].lastActive = -1;
  EXPECT_TRUE(InitVdfMesh(vdf, table).Ok());
  EXPECT_TRUE(vdf.mesh.empty());
  EXPECT_EQ(vdf.On + vdf.KK + vdf.FitActive + vdf.initOn + vdf.initKK + vdf.initFitActive, 0u);
}

TEST(VdfMesh, FreshPointsHaveTheirStoredBoundsAndFlags) {
  for (const bool kk : {false, true}) {
    const VarDielFunc vdf = MeshAt({1, 2, 3, 4}, kk);
    for (std::size_t i = 0; i < vdf.mesh.size(); ++i) {
      const bool end = i == 0 || i == 3;
      const VdfMeshPoint& point = vdf.mesh[i];
      EXPECT_EQ(point.e1.adjustable, kk ? 0u : 1u);
      EXPECT_EQ(point.e2.adjustable, kk && end ? 0u : 1u);
      EXPECT_EQ(point.e1.min, -1e10);
      EXPECT_EQ(point.e1.max, 1e10);
      EXPECT_EQ(point.e2.min, -1e6);
      EXPECT_EQ(point.e2.max, 1e6);
      EXPECT_EQ(point.e1.value, 0);
      EXPECT_EQ(point.e2.value, 0);
      EXPECT_EQ(point.e1.useMin + point.e1.useMax + point.e2.useMin + point.e2.useMax, 0u);
      EXPECT_EQ(point.e1.coupling + point.e2.coupling, 0u);
    }
  }
}

TEST(VdfMesh, NothingIsAdjustableUnlessActiveInTheFit) {
  for (const VdfMeshPoint& point : MeshAt({1, 2, 3}, false, false).mesh) {
    EXPECT_EQ(point.e1.adjustable + point.e2.adjustable, 0u);
  }
}

TEST(VdfToggles, DoNothingWithoutAMesh) {
  VarDielFunc vdf;
  ToggleVdfOn(vdf);
  ToggleVdfKK(vdf);
  ToggleVdfFitActive(vdf);
  EXPECT_EQ(vdf.On + vdf.KK + vdf.FitActive, 0u);
}

TEST(VdfToggles, TheConstraintZeroesAndFixesTheEndsAndFreesTheRestWhateverFitActiveSays) {
  VarDielFunc vdf = MeshAt({1, 2, 3}, false, false);
  for (VdfMeshPoint& point : vdf.mesh) point.e2.value = 7;
  ToggleVdfKK(vdf);
  EXPECT_EQ(vdf.KK, 1u);
  EXPECT_EQ(vdf.mesh[0].e2.value, 0);
  EXPECT_EQ(vdf.mesh[1].e2.value, 7);
  EXPECT_EQ(vdf.mesh[2].e2.value, 0);
  EXPECT_EQ(vdf.mesh[0].e2.adjustable, 0u);
  EXPECT_EQ(vdf.mesh[1].e2.adjustable, 1u);
  EXPECT_EQ(vdf.mesh[1].e1.adjustable, 0u);
  ToggleVdfKK(vdf);
  EXPECT_EQ(vdf.mesh[0].e2.adjustable, 1u);
  EXPECT_EQ(vdf.mesh[0].e1.adjustable, 1u);
}

TEST(VdfToggles, FitActiveAfterTheConstraintKeepsTheInteriorFree) {
  VarDielFunc vdf = MeshAt({1, 2, 3}, false, false);
  ToggleVdfKK(vdf);
  ToggleVdfFitActive(vdf);
  EXPECT_EQ(vdf.FitActive, 1u);
  EXPECT_EQ(vdf.mesh[0].e2.adjustable, 0u);
  EXPECT_EQ(vdf.mesh[1].e2.adjustable, 1u);
  ToggleVdfFitActive(vdf);
  EXPECT_EQ(vdf.mesh[1].e2.adjustable, 0u);
}

TEST(VdfToggles, OnFlips) {
  VarDielFunc vdf = MeshAt({1, 2}, true);
  ToggleVdfOn(vdf);
  EXPECT_EQ(vdf.On, 0u);
  ToggleVdfOn(vdf);
  EXPECT_EQ(vdf.On, 1u);
}

}  // namespace
}  // namespace kalvex

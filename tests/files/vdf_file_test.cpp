#include "files/vdf_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "evaluation/mesh_samples.h"
#include "files/bytes_of.h"
#include "support/scratch_folder.h"

namespace kalvex {
namespace {

VarDielFunc SampleMesh(bool kk) {
  VarDielFunc vdf = MeshAt({100, 200, 350}, kk);
  vdf.mesh[1].e1.value = 1.5;
  vdf.mesh[1].e2.value = -2.25;
  return vdf;
}

TEST(VdfFile, BytesAreAsLaidOut) {
  const ScratchFolder folder;
  ASSERT_TRUE(SaveVdf(SampleMesh(true), folder.Path("a.kvv")).Ok());
  EXPECT_EQ(folder.Read("a.kvv"), Bytes(1) + Bytes(1) + Bytes(1) + Bytes(3) + Bytes(100.0) + Bytes(0.0) + Bytes(0.0) +
                                      Bytes(200.0) + Bytes(1.5) + Bytes(-2.25) + Bytes(350.0) + Bytes(0.0) +
                                      Bytes(0.0));
}

TEST(VdfFile, LoadTakesValuesAndSwitchesButLeavesTheImaginaryPartUnfitted) {
  const ScratchFolder folder;
  for (const bool kk : {false, true}) {
    const VarDielFunc saved = SampleMesh(kk);
    ASSERT_TRUE(SaveVdf(saved, folder.Path("a.kvv")).Ok());
    VarDielFunc loaded = MeshAt({1, 2, 3, 4, 5}, false);
    ASSERT_TRUE(LoadVdf(loaded, folder.Path("a.kvv")).Ok());
    EXPECT_EQ(FrequenciesOf(loaded), FrequenciesOf(saved));
    EXPECT_EQ(loaded.On, 1u);
    EXPECT_EQ(loaded.KK, kk ? 1u : 0u);
    EXPECT_EQ(loaded.FitActive, 1u);
    EXPECT_EQ(loaded.mesh[1].e1.value, 1.5);
    EXPECT_EQ(loaded.mesh[1].e2.value, -2.25);
    for (const VdfMeshPoint& point : loaded.mesh) {
      EXPECT_EQ(point.e1.adjustable, kk ? 0u : 1u);
      EXPECT_EQ(point.e2.adjustable, 0u);
      EXPECT_EQ(point.e1.min, -1e10);
      EXPECT_EQ(point.e1.max, 1e10);
      EXPECT_EQ(point.e2.min, 0);
      EXPECT_EQ(point.e2.max, 0);
    }
    ToggleVdfFitActive(loaded);
    ToggleVdfFitActive(loaded);
    EXPECT_EQ(loaded.mesh[1].e2.adjustable, 1u);
  }
}

TEST(VdfFile, AMeshIsNotSortedOrChecked) {
  const ScratchFolder folder;
  folder.Write("a.kvv", Bytes(1) + Bytes(0) + Bytes(0) + Bytes(2) + Bytes(5.0) + Bytes(1.0) + Bytes(2.0) + Bytes(3.0) +
                            Bytes(4.0) + Bytes(6.0));
  VarDielFunc vdf;
  ASSERT_TRUE(LoadVdf(vdf, folder.Path("a.kvv")).Ok());
  EXPECT_EQ(FrequenciesOf(vdf), (std::vector<double>{5, 3}));
}

TEST(VdfFile, MissingAndHeadlessFilesChangeNothing) {
  const ScratchFolder folder;
  folder.Write("short.kvv", "123456789012345");
  VarDielFunc vdf = SampleMesh(true);
  EXPECT_EQ(LoadVdf(vdf, folder.Path("none.kvv")).Code(), StatusCode::kCannotRead);
  EXPECT_EQ(LoadVdf(vdf, folder.Path("short.kvv")).Code(), StatusCode::kBadFormat);
  EXPECT_EQ(LoadVdf(vdf, folder.Name()).Code(), StatusCode::kCannotRead);
  EXPECT_EQ(vdf.mesh.size(), 3u);
  EXPECT_EQ(SaveVdf(vdf, folder.Path("no folder/a.kvv")).Code(), StatusCode::kCannotWrite);
}

TEST(VdfFile, WrongCountsMakeOnlyThePointsThatAreThere) {
  const ScratchFolder folder;
  for (const std::int32_t count : {-1, -2147483647, 0, 1, 2, 3, 1000, 2147483647}) {
    folder.Write("a.kvv",
                 Bytes(1) + Bytes(1) + Bytes(1) + Bytes(count) + Bytes(1.0) + Bytes(2.0) + Bytes(3.0) + Bytes(4.0));
    VarDielFunc vdf;
    ASSERT_TRUE(LoadVdf(vdf, folder.Path("a.kvv")).Ok());
    EXPECT_EQ(vdf.mesh.size(), static_cast<std::size_t>(std::clamp(count, 0, 2))) << count;
    if (count < 2) continue;
    EXPECT_EQ(vdf.mesh[1].x, 4.0);
    EXPECT_EQ(vdf.mesh[1].e2.value, 0);
  }
}

TEST(VdfFile, CutAnywhereItLoadsOrIsRefused) {
  const ScratchFolder folder;
  ASSERT_TRUE(SaveVdf(SampleMesh(true), folder.Path("a.kvv")).Ok());
  const std::string whole = folder.Read("a.kvv");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    folder.Write("cut.kvv", whole.substr(0, size));
    VarDielFunc vdf;
    EXPECT_EQ(LoadVdf(vdf, folder.Path("cut.kvv")).Code(), size < 16 ? StatusCode::kBadFormat : StatusCode::kOk);
    EXPECT_LE(vdf.mesh.size(), 3u);
  }
}

}  // namespace
}  // namespace kalvex

// Meshes and datasets for the tests of the variational dielectric function.
#pragma once

#include <vector>

#include "datasets/dataset.h"
#include "records/vdf_mesh.h"

namespace kalvex {

// Puts rows at these frequencies into a slot of the table, all active. Returns the dataset's id.
inline std::uint32_t PutDataset(DatasetTable& table, int slot, const std::vector<double>& x) {
  Dataset& dataset = *DatasetInSlot(table, slot);
  dataset.id = table.nextId++;
  dataset.points.clear();
  for (const double frequency : x) dataset.points.push_back({frequency, 0.5, 0.01});
  dataset.firstActive = 0;
  dataset.lastActive = static_cast<int>(x.size()) - 1;
  dataset.nActive = static_cast<int>(x.size());
  return dataset.id;
}

// A mesh at these frequencies that is on, with the given switches.
inline VarDielFunc MeshAt(const std::vector<double>& x, bool kk, bool fitActive = true) {
  DatasetTable table;
  VarDielFunc vdf;
  vdf.source[0].datasetId = PutDataset(table, 1, x);
  vdf.initOn = 1;
  vdf.initKK = kk ? 1 : 0;
  vdf.initFitActive = fitActive ? 1 : 0;
  EXPECT_TRUE(InitVdfMesh(vdf, table).Ok());
  return vdf;
}

inline std::vector<double> FrequenciesOf(const VarDielFunc& vdf) {
  std::vector<double> x;
  for (const VdfMeshPoint& point : vdf.mesh) x.push_back(point.x);
  return x;
}

}  // namespace kalvex

// A master file of three rows and the slot it is loaded into.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "datasets/load_dataset.h"
#include "support/scratch_folder.h"

namespace kalvex {

using Rows = std::vector<std::array<double, 3>>;

inline Rows Plain(const std::vector<DataRow>& rows) {
  Rows plain;
  for (const DataRow& row : rows) plain.push_back({row.x, row.y, row.sigma});
  return plain;
}

class Loading : public testing::Test {
 protected:
  Loading() { source.MasterFile = folder.Write("T_sample.dat", "10 1 0.1\n20 2 0.2\n40 4 0.4\n"); }

  // The message to the user; empty after a success.
  std::string Load() { return LoadDataset(Slot(), source, table.nextId).Text(); }
  Dataset& Slot() { return *DatasetInSlot(table, slot); }
  Rows Points() { return Plain(Slot().points); }

  ScratchFolder folder;
  DatasetTable table;
  DatasetSource source;
  int slot = 1;
};

}  // namespace kalvex

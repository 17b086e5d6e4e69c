// src/datasets (floor 2, together with src/records) holds the measured spectra.
//
//   quantity.h             the Quantities: numbers, short names, full names
//   dataset.h              Dataset, DatasetTable: the record of a spectrum, and lookups
//   read_dataset.h         reading a text file of up to three columns
//   interpolation.h        values and means between the rows of a table
//   load_dataset.h         LoadDataset: files become a dataset on a chosen grid
//   dataset_operations.h   scaling, cutting, noise, export
//
// Read quantity.h and this header first. Frequencies are in cm-1.
//
// Dataset: one measured spectrum. The slot in the table is the number that the user gives to a dataset. The id is a
// serial number of the load: it never identifies a spectrum that is loaded later into the same slot.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/limits.h"
#include "datasets/quantity.h"

namespace kalvex {

struct DataRow {
  double x = 0;  // cm-1
  double y = 0;
  double sigma = 0;

  bool operator==(const DataRow&) const = default;
};

enum class XSource : int { kMaster = 0, kFile = 1, kGenerated = 2 };
enum class YSource : int { kMaster = 0, kFixed = 1 };
enum class ErrorSource : int { kMaster = 0, kFile = 1, kFixed = 2 };
enum class Grid : int { kLinear = 0, kLogarithmic = 1 };
enum class Matching : int { kInterpolation = 0, kAveraging = 1 };

inline constexpr std::size_t kDatasetNameSize = 50;

struct Dataset {
  std::uint32_t id = 0;  // 0 marks a free slot
  std::string name;
  std::string MasterFile;
  std::string XFile;
  std::string YErrFile;
  XSource XMethod = XSource::kMaster;
  YSource YMethod = YSource::kMaster;
  ErrorSource YErrMethod = ErrorSource::kMaster;
  double YVal = 0.0;
  double YErrVal = 0.01;
  Grid XGrid = Grid::kLinear;
  Matching Match = Matching::kInterpolation;
  kalvex::Quantity Quantity = kRefl;
  double XMin = 1.0;  // limits and size of a generated grid; after a load the limits of the points
  double XMax = 1000.0;
  int XPts = 1000;
  double CutMin = 0.0;  // cutting range
  double CutMax = 0.0;
  int nActive = 0;  // rows within the range, and the first and last of them
  int firstActive = 0;
  int lastActive = -1;
  // Ascending in x. They are last, so that a comparison finds another difference before it reads them.
  std::vector<DataRow> points;

  bool operator==(const Dataset&) const = default;
};

struct DatasetTable {
  std::array<Dataset, kMaxDatasets> slots;
  std::uint32_t nextId = 1;
};

// The rows of the active range: from the first up to, but not including, the second index.
struct ActiveRows {
  int from = 0;
  int to = 0;
};
ActiveRows ActiveRowsOf(const Dataset& dataset);

// The dataset in a slot, counted from 1; null outside the table.
Dataset* DatasetInSlot(DatasetTable& table, int slot);
const Dataset* DatasetInSlot(const DatasetTable& table, int slot);
// The id 0 returns the first free slot.
const Dataset* GetDatasetById(const DatasetTable& table, std::uint32_t id);
Dataset* GetDatasetById(DatasetTable& table, std::uint32_t id);
// Its slot, counted from 1; 0 if there is none.
int SlotOfDataset(const DatasetTable& table, std::uint32_t id);
int CountDatasets(const DatasetTable& table);
std::vector<std::uint32_t> ListDatasetIds(const DatasetTable& table);  // in slot order
std::uint32_t FirstDatasetId(const DatasetTable& table);               // of slot 1, 0 if it is free

void ClearDataset(Dataset& dataset);
// Empties the slot. A free slot stays as it is.
void UnloadDataset(Dataset& dataset);

// Recomputes the active range from CutMin and CutMax. A row at CutMin is in the range. A row at CutMax is in it only if
// it is the first or the last row. A dataset without rows stays as it is.
void ComputeActiveRange(Dataset& dataset);

}  // namespace kalvex

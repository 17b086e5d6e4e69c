// What can be done to a loaded dataset. Graphs and the fit hear of a change through the notices. Slots count from 1; a
// slot outside the table is left alone, and the result is then false.
#pragma once

#include <optional>
#include <string>

#include "core/noise.h"
#include "core/notices.h"
#include "datasets/dataset.h"

namespace kalvex {

bool UnloadDatasetNo(DatasetTable& table, const Notices& notices, int slot);
// y <- scale y + shift, sigma <- scale sigma. A negative scale makes sigma negative.
bool TransformDatasetNo(DatasetTable& table, const Notices& notices, int slot, double scale, double shift);
// Changes the cutting range; a limit that is not given stays. No listener is told: the next rebuilding of the fit's
// lists takes the new range.
bool CutDatasetNo(DatasetTable& table, int slot, std::optional<double> xMin, std::optional<double> xMax);
// y <- y + sigma g with a normal deviate g for each row; the rows' sigma becomes sigma. The dataset's terms leave the
// fit.
bool AddNoiseToDataset(DatasetTable& table, const Notices& notices, NoiseGenerator& noise, int slot, double sigma);

// Writes "x y" or "x y sigma" lines of six digits. onlyFitted leaves out the rows outside [CutMin, CutMax]. A free slot
// gives an empty file. False if the file cannot be written.
bool ExportDatasetNo(const DatasetTable& table, int slot, const std::string& path, bool onlyFitted, bool errorBars);

}  // namespace kalvex

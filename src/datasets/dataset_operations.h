// What can be done to the rows of a dataset.
#pragma once

#include <optional>
#include <string>

#include "core/noise.h"
#include "core/status.h"
#include "datasets/dataset.h"

namespace kalvex {

// y <- scale y + shift, sigma <- scale sigma. A negative scale makes sigma negative.
void TransformDataset(Dataset& dataset, double scale, double shift);
// Changes the cutting range; a limit that is not given stays.
void CutDataset(Dataset& dataset, std::optional<double> xMin, std::optional<double> xMax);
// y <- y + sigma g with a normal deviate g for each row; the rows' sigma becomes sigma.
void AddNoise(Dataset& dataset, NoiseGenerator& noise, double sigma);

// Writes "x y" or "x y sigma" lines of six digits. onlyFitted leaves out the rows outside [CutMin, CutMax]. A free slot
// gives an empty file.
Status ExportDataset(const Dataset& dataset, const std::string& path, bool onlyFitted, bool errorBars);

}  // namespace kalvex

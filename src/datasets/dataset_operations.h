// Operations on the rows of a dataset.
#pragma once

#include <optional>
#include <string>

#include "core/noise.h"
#include "core/status.h"
#include "datasets/dataset.h"

namespace kalvex {

// y <- scale y + shift, sigma <- scale sigma. A negative scale makes sigma negative, unless it is kept positive.
void TransformDataset(Dataset& dataset, double scale, double shift, bool keepsSigmaPositive = false);
// Sets the cutting range. A limit without a value stays as it is.
void CutDataset(Dataset& dataset, std::optional<double> xMin, std::optional<double> xMax);
// y <- y + sigma g with a normal deviate g for each row. The sigma of the rows becomes sigma.
void AddNoise(Dataset& dataset, NoiseGenerator& noise, double sigma);

// Writes lines "x y" or "x y sigma" with six digits. onlyFitted omits the rows outside [CutMin, CutMax]. A free slot
// gives an empty file. Fails if the file cannot be written.
Status ExportDataset(const Dataset& dataset, const std::string& path, bool onlyFitted, bool errorBars);

}  // namespace kalvex

#include "datasets/dataset_operations.h"

#include <cmath>

#include "core/files.h"
#include "core/text.h"

namespace kalvex {

void TransformDataset(Dataset& dataset, double scale, double shift, bool keepsSigmaPositive) {
  for (DataRow& row : dataset.points) {
    row.y = scale * row.y + shift;
    row.sigma *= keepsSigmaPositive ? std::fabs(scale) : scale;
  }
  ComputeActiveRange(dataset);
}

void CutDataset(Dataset& dataset, std::optional<double> xMin, std::optional<double> xMax) {
  dataset.CutMin = xMin.value_or(dataset.CutMin);
  dataset.CutMax = xMax.value_or(dataset.CutMax);
  ComputeActiveRange(dataset);
}

void AddNoise(Dataset& dataset, NoiseGenerator& noise, double sigma) {
  for (DataRow& row : dataset.points) {
    row.y += sigma * NextNormal(noise);
    row.sigma = sigma;
  }
}

Status ExportDataset(const Dataset& dataset, const std::string& path, bool onlyFitted, bool errorBars) {
  std::string text;
  if (dataset.id != 0) {
    for (const DataRow& row : dataset.points) {
      if (onlyFitted && (row.x > dataset.CutMax || row.x < dataset.CutMin)) continue;
      AppendG(text, row.x);
      text += ' ';
      AppendG(text, row.y);
      if (errorBars) {
        text += ' ';
        AppendG(text, row.sigma);
      }
      text += '\n';
    }
  }
  return WriteWholeFile(path, text);
}

}  // namespace kalvex

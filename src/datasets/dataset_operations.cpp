#include "datasets/dataset_operations.h"

#include "core/files.h"
#include "core/text.h"

namespace kalvex {

bool UnloadDatasetNo(DatasetTable& table, const Notices& notices, int slot) {
  Dataset* const dataset = DatasetInSlot(table, slot);
  if (!dataset) return false;
  const std::uint32_t id = dataset->id;
  NotifyGraphs(notices, GraphEvent::kDatasetUnloaded, id);
  NotifyFit(notices, FitNotice::kDatasetGone, id);
  UnloadDataset(*dataset);
  return true;
}

bool TransformDatasetNo(DatasetTable& table, const Notices& notices, int slot, double scale, double shift) {
  Dataset* const dataset = DatasetInSlot(table, slot);
  if (!dataset) return false;
  for (DataRow& row : dataset->points) {
    row.y = scale * row.y + shift;
    row.sigma *= scale;
  }
  ComputeActiveRange(*dataset);
  NotifyGraphs(notices, GraphEvent::kDatasetChanged, dataset->id);
  NotifyFit(notices, FitNotice::kDatasetChanged, dataset->id);
  return true;
}

bool CutDatasetNo(DatasetTable& table, int slot, std::optional<double> xMin, std::optional<double> xMax) {
  Dataset* const dataset = DatasetInSlot(table, slot);
  if (!dataset) return false;
  dataset->CutMin = xMin.value_or(dataset->CutMin);
  dataset->CutMax = xMax.value_or(dataset->CutMax);
  ComputeActiveRange(*dataset);
  return true;
}

bool AddNoiseToDataset(DatasetTable& table, const Notices& notices, NoiseGenerator& noise, int slot, double sigma) {
  Dataset* const dataset = DatasetInSlot(table, slot);
  if (!dataset) return false;
  for (DataRow& row : dataset->points) {
    row.y += sigma * NextNormal(noise);
    row.sigma = sigma;
  }
  NotifyGraphs(notices, GraphEvent::kForcedUpdate, dataset->id);
  NotifyFit(notices, FitNotice::kDatasetGone, dataset->id);
  return true;
}

bool ExportDatasetNo(const DatasetTable& table, int slot, const std::string& path, bool onlyFitted, bool errorBars) {
  const Dataset* const dataset = DatasetInSlot(table, slot);
  if (!dataset) return false;
  std::string text;
  if (dataset->id != 0) {
    for (const DataRow& row : dataset->points) {
      if (onlyFitted && (row.x > dataset->CutMax || row.x < dataset->CutMin)) continue;
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

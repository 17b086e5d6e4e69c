#include "records/vdf_mesh.h"

#include <algorithm>
#include <new>

namespace kalvex {
namespace {

std::vector<double> FrequenciesOf(const VarDielFunc& vdf, const DatasetTable& datasets) {
  std::vector<double> x;
  for (const VdfSource& source : vdf.source) {
    if (source.datasetId < 0) continue;
    const Dataset* const dataset = GetDatasetById(datasets, static_cast<std::uint32_t>(source.datasetId));
    if (!dataset) continue;
    const ActiveRows active = ActiveRowsOf(*dataset);
    for (int i = active.from; i < active.to; i += source.every2nd ? 2 : 1) {
      x.push_back(dataset->points[static_cast<std::size_t>(i)].x);
    }
  }
  std::sort(x.begin(), x.end());
  x.erase(std::unique(x.begin(), x.end()), x.end());
  return x;
}

void SetAdjustable(VarDielFunc& vdf, bool e1, bool e2) {
  for (VdfMeshPoint& point : vdf.mesh) {
    point.e1.adjustable = e1 ? 1 : 0;
    point.e2.adjustable = e2 ? 1 : 0;
  }
}

VdfMeshPoint FreshPoint(double x) {
  VdfMeshPoint point;
  point.x = x;
  point.e1.min = -kVdfE1Bound;
  point.e1.max = kVdfE1Bound;
  point.e2.min = -kVdfE2Bound;
  point.e2.max = kVdfE2Bound;
  return point;
}

}  // namespace

void ClearVdf(VarDielFunc& vdf) {
  vdf.mesh.clear();
  vdf.On = vdf.KK = vdf.FitActive = 0;
  vdf.initOn = vdf.initKK = vdf.initFitActive = 0;
}

Status InitVdfMesh(VarDielFunc& vdf, const DatasetTable& datasets) {
  try {
    const std::vector<double> x = FrequenciesOf(vdf, datasets);
    if (x.empty()) {
      ClearVdf(vdf);
      return {};
    }
    std::vector<VdfMeshPoint> mesh;
    mesh.reserve(x.size());
    for (const double frequency : x) mesh.push_back(FreshPoint(frequency));
    vdf.mesh.swap(mesh);
  } catch (const std::bad_alloc&) {
    return {StatusCode::kOutOfMemory, "not enough memory for the mesh"};
  }
  vdf.KK = vdf.initKK;
  vdf.On = vdf.initOn;
  vdf.FitActive = vdf.initFitActive;
  SetAdjustable(vdf, vdf.FitActive && !vdf.KK, vdf.FitActive);
  if (vdf.KK) FixVdfEnds(vdf);
  return {};
}

void ToggleVdfOn(VarDielFunc& vdf) {
  if (!vdf.mesh.empty()) vdf.On = !vdf.On;
}

void ToggleVdfKK(VarDielFunc& vdf) {
  if (vdf.mesh.empty()) return;
  vdf.KK = !vdf.KK;
  SetAdjustable(vdf, !vdf.KK, true);
  if (!vdf.KK) return;
  for (VdfMeshPoint* const end : {&vdf.mesh.front(), &vdf.mesh.back()}) {
    end->e2.adjustable = 0;
    end->e2.value = 0;
  }
}

void ToggleVdfFitActive(VarDielFunc& vdf) {
  if (vdf.mesh.empty()) return;
  vdf.FitActive = !vdf.FitActive;
  SetAdjustable(vdf, vdf.FitActive && !vdf.KK, vdf.FitActive);
  if (vdf.KK) FixVdfEnds(vdf);
}

void FixVdfEnds(VarDielFunc& vdf) {
  if (vdf.mesh.empty()) return;
  for (VdfMeshPoint* const end : {&vdf.mesh.front(), &vdf.mesh.back()}) end->e1.adjustable = end->e2.adjustable = 0;
}

}  // namespace kalvex

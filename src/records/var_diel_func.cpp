#include "records/var_diel_func.h"

#include <algorithm>

namespace kalvex {

int FindVdfInterval(double x, const VarDielFunc& vdf) {
  const auto& mesh = vdf.mesh;
  if (mesh.empty() || !(x >= mesh.front().x && x <= mesh.back().x)) return -1;
  const auto above = std::upper_bound(mesh.begin(), mesh.end(), x,
                                      [](double value, const VdfMeshPoint& point) { return value < point.x; });
  return static_cast<int>(above - mesh.begin()) - 1;
}

}  // namespace kalvex

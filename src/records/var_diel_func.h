// A variational dielectric function: values on a mesh of frequencies, two parameters per mesh point.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "records/model_param.h"

namespace kalvex {

struct VdfMeshPoint {
  double x = 0;   // cm-1
  ModelParam e1;  // real part; the sum does not read it while KK is set
  ModelParam e2;  // imaginary part

  bool operator==(const VdfMeshPoint&) const = default;
};

// A dataset whose frequencies form the mesh. A datasetId below 0 means no dataset.
struct VdfSource {
  std::int64_t datasetId = -1;
  bool every2nd = false;  // only the first, third, fifth ... row of the active range

  bool operator==(const VdfSource&) const = default;
};

struct VarDielFunc {
  std::uint32_t On = 0;            // it contributes to the sum and to the list of fit parameters
  std::uint32_t KK = 0;            // Kramers-Kronig constrained
  std::uint32_t FitActive = 0;     // the fit varies the mesh values
  std::vector<VdfMeshPoint> mesh;  // strictly ascending in x
  // The settings of the last initialisation.
  std::uint32_t initOn = 0;
  std::uint32_t initKK = 0;
  std::uint32_t initFitActive = 0;
  std::array<VdfSource, 3> source;

  bool operator==(const VarDielFunc&) const = default;
};

// Index i with mesh[i].x <= x < mesh[i+1].x. The last index if x is at the last point; -1 outside the mesh or without a
// mesh.
int FindVdfInterval(double x, const VarDielFunc& vdf);

}  // namespace kalvex

// The record of a variational dielectric function: values on a mesh of frequencies, two parameters a point.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "records/model_param.h"

namespace kalvex {

struct VdfMeshPoint {
  double x = 0;   // cm-1
  ModelParam e1;  // real part; not read by the sum while KK is set
  ModelParam e2;  // imaginary part
};

// A dataset from which a mesh is drawn; a datasetId below 0 is no source.
struct VdfSource {
  std::int64_t datasetId = -1;
  bool every2nd = false;  // only the first, third, fifth ... row of the active range
};

struct VarDielFunc {
  std::uint32_t On = 0;            // it takes part in the sum and in the list of fit parameters
  std::uint32_t KK = 0;            // Kramers-Kronig constrained
  std::uint32_t FitActive = 0;     // the mesh values are to be fitted
  std::vector<VdfMeshPoint> mesh;  // strictly ascending in x
  // The choices of the last initialisation.
  std::uint32_t initOn = 0;
  std::uint32_t initKK = 0;
  std::uint32_t initFitActive = 0;
  std::array<VdfSource, 3> source;
};

// The mesh interval that holds x: i with mesh[i].x <= x < mesh[i+1].x, the last index for x on the last point, and -1
// outside the mesh or without one.
int FindVdfInterval(double x, const VarDielFunc& vdf);

}  // namespace kalvex

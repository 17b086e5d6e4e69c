// Conduction electrons that scatter from bosons whose coupling spectrum a2F is a loaded dataset.
#pragma once

#include <cstdint>
#include <vector>

#include "datasets/dataset.h"
#include "numeric/complex.h"

namespace kalvex {

// A frequency of the coupling spectrum with the weight of its interval.
struct CouplingNode {
  double W = 0;
  double weight = 0;  // a2F(W) dW
};

// The nodes of one dataset. Valid while the dataset and the mesh count stay the same.
struct CouplingNodes {
  std::uint32_t datasetId = 0;
  double meshCount = 0;
  std::vector<CouplingNode> nodes;
};

// A mesh count below 1 takes the dataset's own points, each with half the distance to either neighbour. Otherwise it is
// the number of equal intervals between the second point and the last but one, each with the value at its middle.
// Frequencies at or below 0 are left out.
std::vector<CouplingNode> MakeCouplingNodes(const Dataset& dataset, double meshCount);

inline constexpr double kMostCouplingNodes = 100000;

// The kernel K(x, y) of the memory function, and its derivative when both arguments are scaled:
//
//     x = w/(2 pi T), y = W/(2 pi T) > 0, x > 0;   slope = x dK/dx + y dK/dy = -T dK/dT
struct BosonKernel {
  Cplx value;
  Cplx slope;
};
BosonKernel BosonKernelAt(double x, double y);

}  // namespace kalvex

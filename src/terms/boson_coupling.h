// Conduction electrons that scatter from bosons whose coupling spectrum a2F is a loaded dataset.
#pragma once

#include <cstdint>
#include <vector>

#include "datasets/dataset.h"
#include "numeric/complex.h"
#include "terms/term_table.h"

namespace kalvex {

// One frequency of the coupling spectrum with the part of the spectrum that it stands for, both in cm-1.
struct CouplingNode {
  double W = 0;
  double weight = 0;  // a2F(W) dW
};

// The nodes of one dataset, to be used as long as the dataset and the mesh count are the same.
struct CouplingNodes {
  std::uint32_t datasetId = 0;
  double meshCount = 0;
  std::vector<CouplingNode> nodes;
};

// A mesh count below 1 takes the dataset's own points, each with half the distance to either neighbour. Otherwise that
// many equal intervals between the second point and the last but one, each with the value at its middle. Frequencies at
// or below 0 are left out.
std::vector<CouplingNode> MakeCouplingNodes(const Dataset& dataset, double meshCount);

inline constexpr double kMostCouplingNodes = 100000;

// The kernel K(x, y) of the memory function, and how it changes when both arguments are scaled:
//     x = w/(2 pi T), y = W/(2 pi T) > 0, x > 0;   slope = x dK/dx + y dK/dy = -T dK/dT
struct BosonKernel {
  Cplx value;
  Cplx slope;
};
BosonKernel BosonKernelAt(double x, double y);

// eps = -Wp^2/(w (w + i (G + (1 - c) M))),  M = sum of -2 i a2F(W) dW K(w/(2 pi T), W/(2 pi T)) over the spectrum.
// With P(u) = psi(1 + i u), psi the digamma function, the kernel is
//     K(x, y) = ((y - x)/x) P(y - x) - (2 y/x) P(y) + ((y + x)/x) P(y + x)
//               - i pi ((y + x)/x) (coth(pi (x + y)) - coth(pi y))
// (P. B. Allen, Phys. Rev. B 3, 305 (1971); S. V. Shulga, O. V. Dolgov and E. G. Maksimov, Physica C 178, 266 (1991)).
// The three terms with P alone are exact only for T -> 0; the last one makes it exact at every temperature: without it
// thermal bosons would not scatter at w = 0.
//   inputs   Wp, G (cm-1), T (K), number of the dataset (a2F over cm-1), mesh count, mixing c
//   guards   T (as cm-1) and w are at least 1e-10; w is 1e-10 where Quantities at zero frequency are wanted; a dataset
//            that is not loaded couples nothing. The marker where a denominator fails. Dataset number and mesh count
//            have the derivative 0
int CalcBosonCoupling(const TermCall& call, Cplx& result);

}  // namespace kalvex

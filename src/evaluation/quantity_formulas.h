// From the complex dielectric function eps of a bulk sample, with or without a permeability mu, to the Quantities
// and their derivatives. Units: frequency cm-1, thickness cm, angles degrees, conductivity ohm-1 cm-1.
#pragma once

#include <array>

#include "evaluation/quantity_table.h"
#include "numeric/complex.h"
#include "records/model_param.h"

namespace kalvex {

// The input of a Quantity besides eps. T is double, or a pack of frequencies.
template <class T>
struct QuantityInputOf {
  T w{};  // frequency, cm-1
  bool derivatives = false;
  bool dcFlag = false;  // S1 is returned as its reciprocal, the resistivity
  const std::array<ModelParam, kExpParamCount>* exp = nullptr;
};
using QuantityInput = QuantityInputOf<double>;

// Fills value, dRe, dIm, and dExp of the adjustable experimental parameters. If |eps| is above 1e30 or below 1e-30, the
// value is the Quantity's limit with dRe = dIm = 0, and dExp stays unchanged.
void QuantityOfEps(const QuantityInput& in, const Cplx& eps, Quantity quantity, QuantityResult& out);
// The same with a permeability; also fills dMuRe and dMuIm. E1, E2, S1, S2 and LF are not defined for such a sample and
// give 0.
void QuantityOfEpsMu(const QuantityInput& in, const Cplx& eps, const Cplx& mu, Quantity quantity, QuantityResult& out);

// For the dependency pass: each derivative becomes 1 if the Quantity depends on that input, else 0.
void DependencyStub(Quantity quantity, QuantityResult& out);
void DependencyStubMu(Quantity quantity, QuantityResult& out);

inline constexpr double kRadiansPerDegree = 0.017453292519943295;

// The ten nodes and weights of the averages over thickness and over angle. Sample k is at (2 x - 1)*spread + 1 times
// the mean. The weights sum to 1.000074097. Published fits rely on this sum: the weights must not be corrected.
struct AveragingNode {
  double x;
  double g;
};
inline constexpr std::array<AveragingNode, 10> kAveragingNodes = {{{0.013046736, 0.009628313},
                                                                   {0.067468317, 0.047708233},
                                                                   {0.160295216, 0.102294125},
                                                                   {0.283302303, 0.15441429},
                                                                   {0.425562831, 0.185955039},
                                                                   {0.574437169, 0.185955039},
                                                                   {0.716697697, 0.15441429},
                                                                   {0.839704784, 0.102294125},
                                                                   {0.932531683, 0.04778233},
                                                                   {0.986953264, 0.009628313}}};

}  // namespace kalvex

// A stack of layers between two half-spaces: reflected and transmitted amplitude, averaged over distributions of the
// layers' thicknesses, with derivatives.
//
// A layer is known by its admittance y and its wave vector k along the normal (per cm): the interface between a and b
// reflects rho = (y_b - y_a)/(y_b + y_a) and lets 1 + rho through, a passage gives exp(ikd), 1 where it would grow.
// With y and k of the dielectric function this serves normal and oblique incidence and evanescent waves alike.
//
// The average is over all combinations of the layers' nodes. What combinations have in common is computed once: the
// nodes of the last layer that differ are the branches of a tree, those of the layer before it their branches, and so
// on to the first layer. On the way down each branch carries the field that reaches it from behind, on the way up the
// derivatives of the result by that field, summed over all branches above it.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "numeric/complex.h"

namespace kalvex {

// One thickness of a layer, its weight, and its derivatives by the mean thickness and by the spread.
struct ThicknessNode {
  double thickness = 0;  // cm, not negative
  double weight = 1;
  double byThickness = 1;
  double bySpread = 0;
};

// One of the media. The first and the last of a stack are the half-spaces, whose wave vector and nodes do not count.
struct StackMedium {
  Cplx y;
  Cplx k;
  std::vector<ThicknessNode> nodes;
};

// The averaged results, in the order of the arrays of slopes.
enum StackResult : int { kStackR, kStackT, kStackReR, kStackImR, kStackReT, kStackImT, kStackResults };

using StackSlopes = std::array<double, kStackResults>;

// Derivatives by one complex quantity z: of the amplitudes dr/dz and dt/dz, and sums of conj(a) da/dz, from which those
// of the intensities follow.
struct StackGradient {
  Cplx r, t, R, T;

  // The derivatives of the six results when z changes by dz.
  StackSlopes Along(const Cplx& dz) const {
    const Cplx dr = r * dz, dt = t * dz;
    return {2 * (R * dz).re, 2 * (T * dz).re, dr.re, dr.im, dt.re, dt.im};
  }
  StackGradient& operator+=(const StackGradient& g) {
    r += g.r;
    t += g.t;
    R += g.R;
    T += g.T;
    return *this;
  }
};

// Media, results and scratch of one stack, kept from frequency to frequency.
struct Stack {
  std::vector<StackMedium> media;  // layers + 2
  double emptyPath = 0;            // wave vector in vacuum: t is relative to exp(i emptyPath D), D the whole thickness

  StackSlopes value{};
  // With derivatives, for each medium: by y, by k, by the mean thickness, by the spread; and by emptyPath.
  std::vector<StackGradient> byY, byK;
  std::vector<StackSlopes> byThickness, bySpread;
  StackGradient byEmptyPath;

  // Scratch: amplitudes of the interface before each medium, and of the nodes.
  struct Passage {
    Cplx round;  // exp(2ikd)
    Cplx once;   // exp(ikd) relative to the empty path
    Cplx rate;   // d(kd) counts with this: 1, or 0 where the guard holds
  };
  std::vector<Cplx> rho;
  std::vector<std::vector<Passage>> passages;
  std::vector<StackGradient> byRho;
  Cplx through;  // product of all 1 + rho
};

// The single node of a layer without spread, and the ten of the averages over thickness.
void SetSingleNode(std::vector<ThicknessNode>& nodes, double thickness);
void SetAveragingNodes(std::vector<ThicknessNode>& nodes, double thickness, double spread);

// Fills the results of the stack.
void AverageStack(Stack& stack, bool derivatives);

}  // namespace kalvex

// A stack of layers between two half-spaces: reflected and transmitted amplitude, averaged over the distributions of
// the layers' thicknesses, with derivatives.
//
// A layer is described by its admittance y and its wave vector k along the normal (per cm). The interface between a and
// b reflects rho = (y_b - y_a)/(y_b + y_a) and transmits 1 + rho. A passage gives exp(ikd), or 1 if that would grow. y
// and k follow from the dielectric function: normal and oblique incidence and evanescent waves use the same formulas.
//
// The average runs over all combinations of the layers' thickness nodes. Common parts are computed once. The nodes of
// the last layer are the first branches of a tree, the nodes of the layer in front of it the next ones, down to the
// first layer. On the way down a branch carries the field that comes from the back. On the way up it carries the
// derivatives of the result by that field, summed over all branches above.
//
// Num is double, or Pack for many frequencies at a time.
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

// The averaged results; also the order of the arrays of slopes.
enum StackResult : int { kStackR, kStackT, kStackReR, kStackImR, kStackReT, kStackImT, kStackResults };

template <class Num>
using StackSlopes = std::array<Num, kStackResults>;

// Derivatives by a complex quantity z: dr/dz and dt/dz of the amplitudes, and sums of conj(a) da/dz, which give the
// derivatives of the intensities.
template <class Num>
struct StackGradient {
  Complex<Num> r, t, R, T;

  // The derivatives of the six results along a change dz of z.
  StackSlopes<Num> Along(const Complex<Num>& dz) const {
    const Complex<Num> dr = r * dz, dt = t * dz;
    return {Num(2) * (R * dz).re, Num(2) * (T * dz).re, dr.re, dr.im, dt.re, dt.im};
  }
  StackGradient& operator+=(const StackGradient& g) {
    r += g.r;
    t += g.t;
    R += g.R;
    T += g.T;
    return *this;
  }
};

// Media, results and work space of a stack, kept between frequencies. The first and the last medium are the
// half-spaces; their wave vectors and nodes are not used.
template <class Num>
struct StackOf {
  std::vector<Complex<Num>> y, k;
  std::vector<std::vector<ThicknessNode>> nodes;
  Num emptyPath{};  // wave vector in vacuum: t is relative to exp(i emptyPath D), D the total thickness

  StackSlopes<Num> value{};
  // Derivatives for each medium, by y, by k, by the mean thickness and by the spread, and by emptyPath.
  std::vector<StackGradient<Num>> byY, byK;
  std::vector<StackSlopes<Num>> byThickness, bySpread;
  StackGradient<Num> byEmptyPath;

  // Work space: amplitudes of the interface in front of each medium, and of the nodes.
  struct Passage {
    Complex<Num> round;  // exp(2ikd)
    Complex<Num> once;   // exp(ikd) relative to the empty path
    Num rate;            // factor of d(kd): 1, or 0 where the passage is held at 1
    // Sums over all branches through this node: derivatives by the phase kd of the backward wave, t, and |t|^2.
    StackGradient<Num> byPhase;
    Complex<Num> sumT;
    Num sumTT;
  };
  std::vector<Complex<Num>> rho;
  std::vector<std::vector<Passage>> passages;
  std::vector<StackGradient<Num>> byRho;
  Complex<Num> through;  // product of all 1 + rho
};
using Stack = StackOf<double>;

// Allocates the media, without nodes; and, once the nodes are set, their passages.
template <class Num>
void MakeRoomForMedia(StackOf<Num>& stack, std::size_t media) {
  for (auto* const numbers : {&stack.y, &stack.k, &stack.rho}) numbers->assign(media, {});
  for (auto* const gradients : {&stack.byY, &stack.byK, &stack.byRho}) gradients->assign(media, {});
  for (auto* const slopes : {&stack.byThickness, &stack.bySpread}) slopes->assign(media, {});
  stack.nodes.resize(media);
  stack.passages.resize(media);
}
template <class Num>
void MakeRoomForPassages(StackOf<Num>& stack) {
  for (std::size_t j = 0; j < stack.nodes.size(); ++j) stack.passages[j].resize(stack.nodes[j].size());
}

// The single node of a layer without spread, and the ten nodes of an average over thickness.
void SetSingleNode(std::vector<ThicknessNode>& nodes, double thickness);
void SetAveragingNodes(std::vector<ThicknessNode>& nodes, double thickness, double spread);

// Fills the results of the stack, whose memory must be allocated.
void AverageStack(Stack& stack, bool derivatives);

// ---- media

// The geometry of the waves: with the dielectric function it determines the media's admittances and wave vectors.
enum class StackGeometry { kNormal, kOblique, kFinite };
struct StackHead {
  StackGeometry geometry = StackGeometry::kNormal;
  // oblique
  double sine = 0;    // of the angle of incidence,
  double bySine = 0;  // and its derivative by the angle in degrees
  bool sPolarised = false;
  // a given wavelength along the layers
  double scale = 1;
  double wavelength = 0;  // cm
};

// Wave vector of the empty path at frequency x (cm-1), and its derivative by the scale of the frequency.
template <class Num>
struct EmptyPath {
  Num k{};
  Num byScale{};
};
template <class Num>
EmptyPath<Num> EmptyPathOf(const StackHead& head, const Num& x);

// One medium, with its derivatives by the dielectric function and by the numbers of the head that can be fitted: the
// angle, or the scale and the wavelength along the layers.
template <class Num>
struct StackMedium {
  Complex<Num> y, k;
  Complex<Num> yByEps, kByEps;
  Complex<Num> yByHead[2], kByHead[2];
  Num byIm = 1;  // 0 where the imaginary part of the dielectric function is ignored
};
template <class Num>
StackMedium<Num> StackMediumOf(const StackHead& head, const Num& x, const Complex<Num>& eps);

}  // namespace kalvex

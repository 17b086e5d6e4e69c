#include "numeric/polynomial_roots.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace kalvex {
namespace {

using Coefficients = std::array<Cplx, kMostRoots + 1>;

std::pair<Cplx, Cplx> QuadraticRoots(const Cplx& a, const Cplx& b, const Cplx& c) {
  // The root of larger magnitude comes first: its formula has no cancellation.
  const Cplx root = Sqrt(b * b - 4.0 * a * c);
  const Cplx sum = Norm(b + root) > Norm(b - root) ? b + root : b - root;
  if (Norm(sum) == 0) return {{}, {}};
  return {-sum / (2.0 * a), c * -2.0 / sum};
}

Cplx CubeRoot(const Cplx& z) {
  if (Norm(z) == 0) return {};
  return Exp(Log(z) / 3.0);
}

// y^3 + p y + q = 0 by the formula of Cardano.
std::array<Cplx, 3> DepressedCubicRoots(const Cplx& p, const Cplx& q) {
  const Cplx root = Sqrt(q * q / 4.0 + p * p * p / 27.0);
  const Cplx upper = -q / 2.0 + root, lower = -q / 2.0 - root;
  Cplx u = CubeRoot(Norm(upper) > Norm(lower) ? upper : lower);
  const Cplx turn{-0.5, std::numbers::sqrt3 / 2};
  std::array<Cplx, 3> y{};
  for (Cplx& each : y) {
    each = Norm(u) == 0 ? Cplx{} : u - p / (3.0 * u);
    u *= turn;
  }
  return y;
}

std::array<Cplx, 3> CubicRoots(const Cplx& a3, const Cplx& a2, const Cplx& a1, const Cplx& a0) {
  const Cplx shift = -a2 / (3.0 * a3), b = a2 / a3, c = a1 / a3, d = a0 / a3;
  auto roots = DepressedCubicRoots(c - b * b / 3.0, 2.0 * b * b * b / 27.0 - b * c / 3.0 + d);
  for (Cplx& root : roots) root += shift;
  return roots;
}

// y^4 + p y^2 + q y + r = (y^2 + m y + s)(y^2 - m y + t) with m^2 a root of the resolvent cubic.
std::array<Cplx, 4> DepressedQuarticRoots(const Cplx& p, const Cplx& q, const Cplx& r) {
  Cplx m2;
  for (const Cplx& z : CubicRoots({1, 0}, 2.0 * p, p * p - 4.0 * r, -(q * q))) {
    if (Norm(z) > Norm(m2)) m2 = z;
  }
  if (Norm(m2) == 0) {
    // Only y^4 + r is left. With r = 0 the root 0 is fourfold.
    const Cplx square = Sqrt(-r), first = Sqrt(square), second = Sqrt(-square);
    return {first, -first, second, -second};
  }
  const Cplx m = Sqrt(m2), half = (p + m2) / 2.0, split = q / (2.0 * m);
  const auto [y0, y1] = QuadraticRoots({1, 0}, m, half - split);
  const auto [y2, y3] = QuadraticRoots({1, 0}, -m, half + split);
  return {y0, y1, y2, y3};
}

std::array<Cplx, 4> QuarticRoots(const Coefficients& a) {
  const Cplx shift = -a[3] / (4.0 * a[4]), b = a[3] / a[4], c = a[2] / a[4], d = a[1] / a[4], e = a[0] / a[4];
  const Cplx b2 = b * b;
  auto roots = DepressedQuarticRoots(c - 3.0 * b2 / 8.0, d - b * c / 2.0 + b2 * b / 8.0,
                                     e - b * d / 4.0 + b2 * c / 16.0 - 3.0 * b2 * b2 / 256.0);
  for (Cplx& root : roots) root += shift;
  return roots;
}

int DegreeOf(const Coefficients& a) {
  constexpr double kLeast = 1e-20;
  int degree = kMostRoots;
  while (degree > 0 && Norm(a[static_cast<std::size_t>(degree)]) < kLeast) --degree;
  return degree;
}

}  // namespace

PolynomialRoots RootsOf(const Coefficients& a) {
  PolynomialRoots roots{DegreeOf(a), {}};
  switch (roots.degree) {
    case 4:
      roots.root = QuarticRoots(a);
      break;
    case 3: {
      const auto cubic = CubicRoots(a[3], a[2], a[1], a[0]);
      roots.root = {cubic[0], cubic[1], cubic[2], {}};
      break;
    }
    case 2: {
      const auto [first, second] = QuadraticRoots(a[2], a[1], a[0]);
      roots.root = {first, second, {}, {}};
      break;
    }
    case 1:
      roots.root[0] = -a[0] / a[1];
      break;
    default:
      break;
  }
  return roots;
}

}  // namespace kalvex

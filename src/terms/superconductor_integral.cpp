#include "terms/superconductor_integral.h"

#include <algorithm>
#include <cmath>

#include "numeric/quadrature.h"

namespace kalvex {
namespace {

// The integrands I1, I2, I3 of the paper contain sums of
//
//     (1 -+ a)/(P2 +- P + i Y),   a = (1/4 + E E')/(P P2),
//     E' = E +- X,   P2 = sqrt(E^2 - 1/4),   P = sqrt(E'^2 - 1/4).
//
// Here real and imaginary parts are separate, and small differences have closed forms:
//
//     P - P2 = (E'^2 - E^2)/(P + P2),      1 - a^2 = -((E + E')/(2 P P2))^2.
//
// An absorption that falls like exp(-2 Delta/kT) then keeps its relative accuracy and is exactly 0 at T = 0.

// Occupation of quasi-particles: tanh(E/2t), and its difference between E + X and E.
template <class T>
struct Occupation {
  T t, X, absorbed{};
  bool cold;

  Occupation(const T& temperature, const T& frequency)
      : t(temperature), X(frequency), cold(ValueOf(temperature) <= kColdest) {
    if (!cold) absorbed = -Expm1(-X / t);
  }
  T Tanh(const T& E) const { return cold ? T(1) : kalvex::Tanh(E / (2.0 * t)); }
  // tanh((E + X)/2t) - tanh(E/2t)
  T Step(const T& E) const {
    if (cold) return T(0);
    const T q = Exp(-E / t);
    return 2.0 * q * absorbed / ((1.0 + q) * (1.0 + q * (1.0 - absorbed)));
  }
};

// An excited quasi-particle absorbs a photon: I2, E = 1/2 + s, s from 0 to infinity.
template <class T>
Complex<T> ExcitedPart(const T& X, const T& Y, const Occupation<T>& occupation) {
  Complex<T> sum;
  const double x = ValueOf(X), y = ValueOf(Y), t = occupation.cold ? 1 : ValueOf(occupation.t);
  OnHalfLine(std::min({1.0, x, t}), std::max({1.0, x, y, t}), [&](double s, double ds) {
    const double E = 0.5 + s, P2 = std::sqrt(s * (s + 1));
    const T P1 = Sqrt((X + s) * (X + (s + 1)));
    const T product = P1 * P2, total = P1 + P2, twice = X + 2 * E;
    const T difference = X * twice / total;
    const T onePlusA = 1.0 + (0.25 + E * (X + E)) / product;
    const T ratio = twice / (2.0 * product);
    const T oneMinusA = -(ratio * ratio) / onePlusA;
    const T down = onePlusA / (difference * difference + Y * Y);
    const T up = oneMinusA / (total * total + Y * Y);
    const T step = occupation.Step(T(E)), both = 2.0 * occupation.Tanh(T(E)) + step;
    sum.re += ds * (step * down * difference + both * up * total);
    sum.im -= ds * (step * Y * (down - up));
  });
  return sum;
}

// One of the two quasi-particles is virtual, inside the gap: I1, E - X from -1/2 (or 1/2 - X, if that is larger) to
// 1/2. It is real.
template <class T>
T VirtualPart(const T& X, const T& Y, const Occupation<T>& occupation) {
  const double x = ValueOf(X), t = occupation.cold ? 1 : ValueOf(occupation.t);
  const bool belowEdge = x <= 1;
  const T length = belowEdge ? X : T(1);
  T sum = 0;
  const double length0 = ValueOf(length);
  OnUnitInterval(std::min(std::fabs(1 - x), t) / length0, 1, [&](double fromLeft, double fromRight, double weight) {
    const T s = length * fromLeft, r = length * fromRight;
    T E, pp, PP;  // pp = 1/4 - (E - X)^2, PP = E^2 - 1/4
    if (belowEdge) {
      E = 0.5 + s;
      pp = r * ((1.0 - X) + s);
      PP = s * (1.0 + s);
    } else {
      E = X - r + 0.5;
      pp = r * s;
      PP = ((X - 1.0) + s) * (X + s);
    }
    const T p = Sqrt(pp), P2 = Sqrt(PP), pY = p + Y;
    const T alpha = (0.25 + E * (0.5 - r)) / (p * P2);
    sum += (weight * length) * 2.0 * occupation.Tanh(E) * (P2 + alpha * pY) / (PP + pY * pY);
  });
  return sum;
}

// A pair is broken: I3, E from 1/2 to X - 1/2, folded at the middle: E = X/2 +- e, where P2 and P3 are exchanged. Near
// e = 0 the two are equal, which gives a dip of width Y.
template <class T>
Complex<T> BrokenPairPart(const T& X, const T& Y, const Occupation<T>& occupation) {
  const T half = 0.5 * (X - 1.0);
  const double h = ValueOf(half), t = occupation.cold ? h : ValueOf(occupation.t);
  const double dip = ValueOf(Y) * std::sqrt(h * (h + 1)) / ValueOf(X);
  Complex<T> sum;
  OnUnitInterval(std::min(dip, t) / h, std::min(1.0, t) / h, [&](double fromMiddle, double fromEnd, double weight) {
    const T e = half * fromMiddle, d = half * fromEnd;
    const T below = d * (1.0 + d), above = (half + e) * (half + e + 1.0);
    const T product = Sqrt(below * above);
    const T total = Sqrt(below) + Sqrt(above);
    const T difference = 2.0 * X * e / total;
    const T oneMinusA = 1.0 + (d * (half + e) + half) / product;
    const T ratio = e / product;
    const T onePlusA = -(ratio * ratio) / oneMinusA;
    const T apart = oneMinusA / (total * total + Y * Y);
    const T close = onePlusA / (difference * difference + Y * Y);
    const T lower = occupation.Tanh(0.5 + d), upper = occupation.Tanh(0.5 * X + e);
    const T share = weight * half;
    sum.re += share * ((lower + upper) * apart * total - (lower - upper) * close * difference);
    sum.im -= share * ((lower + upper) * Y * (apart - close));
  });
  return sum;
}

template <class T>
Complex<T> Integral(const T& X, const T& Y, const T& t) {
  const Occupation<T> occupation(t, X);
  Complex<T> J = ExcitedPart(X, Y, occupation);
  J.re += VirtualPart(X, Y, occupation);
  if (ValueOf(X) > 1) J += BrokenPairPart(X, Y, occupation);
  return J;
}

}  // namespace

Cplx PairIntegral(double X, double Y, double t) { return Integral(X, Y, t); }
Complex<Dual<3>> PairIntegral(const Dual<3>& X, const Dual<3>& Y, const Dual<3>& t) { return Integral(X, Y, t); }

}  // namespace kalvex

// Dual numbers: a value together with its derivatives in N directions. A formula written once gives exact derivatives.
//
//     f(a + h) = f(a) + f'(a) h,   h h = 0
#pragma once

#include <array>
#include <cmath>

#include "numeric/complex.h"
#include "numeric/real.h"

namespace kalvex {

template <std::size_t N>
struct Dual {
  double a = 0;                                         // value
  std::array<double, static_cast<std::size_t>(N)> v{};  // derivatives

  Dual() = default;
  Dual(double value) : a(value) {}  // NOLINT(google-explicit-constructor): constants mix with duals in every formula
  Dual(double value, std::size_t direction) : a(value) { v[direction] = 1; }

  Dual& operator+=(const Dual& b) { return *this = *this + b; }
  Dual& operator-=(const Dual& b) { return *this = *this - b; }
  Dual& operator*=(const Dual& b) { return *this = *this * b; }

  // Value f, derivatives slope times those of x.
  static Dual Along(double f, double slope, const Dual& x) {
    Dual out(f);
    for (std::size_t k = 0; k < N; ++k) out.v[k] = slope * x.v[k];
    return out;
  }
  // Value f, derivatives slopeA da + slopeB db.
  static Dual Along(double f, double slopeA, const Dual& x, double slopeB, const Dual& y) {
    Dual out(f);
    for (std::size_t k = 0; k < N; ++k) out.v[k] = slopeA * x.v[k] + slopeB * y.v[k];
    return out;
  }

  friend Dual operator-(const Dual& x) { return Along(-x.a, -1, x); }
  friend Dual operator+(const Dual& x, const Dual& y) { return Along(x.a + y.a, 1, x, 1, y); }
  friend Dual operator-(const Dual& x, const Dual& y) { return Along(x.a - y.a, 1, x, -1, y); }
  friend Dual operator*(const Dual& x, const Dual& y) { return Along(x.a * y.a, y.a, x, x.a, y); }
  friend Dual operator/(const Dual& x, const Dual& y) {
    const double q = x.a / y.a;
    return Along(q, 1 / y.a, x, -q / y.a, y);
  }
  friend bool operator<(const Dual& x, const Dual& y) { return x.a < y.a; }
  friend bool operator>(const Dual& x, const Dual& y) { return x.a > y.a; }
  friend bool operator==(const Dual& x, const Dual& y) { return x.a == y.a; }
};

inline double ValueOf(double x) { return x; }
template <std::size_t N>
double ValueOf(const Dual<N>& x) {
  return x.a;
}
inline Cplx ValueOf(const Cplx& z) { return z; }
template <std::size_t N>
Cplx ValueOf(const Complex<Dual<N>>& z) {
  return {z.re.a, z.im.a};
}

// Real functions, as in real.h for double. The slope of the square root at 0 is infinite. Sqrt returns the slope 0
// there: a direction that does not change the argument keeps the slope 0.
template <std::size_t N>
Dual<N> Sqrt(const Dual<N>& x) {
  const double r = Sqrt(x.a);
  return Dual<N>::Along(r, r == 0 ? 0 : std::copysign(0.5, x.a) / r, x);
}
template <std::size_t N>
Dual<N> Exp(const Dual<N>& x) {
  const double e = std::exp(x.a);
  return Dual<N>::Along(e, e, x);
}
template <std::size_t N>
Dual<N> Expm1(const Dual<N>& x) {
  return Dual<N>::Along(std::expm1(x.a), std::exp(x.a), x);
}
template <std::size_t N>
Dual<N> Log(const Dual<N>& x) {
  return Dual<N>::Along(std::log(x.a), 1 / x.a, x);
}
template <std::size_t N>
Dual<N> Sin(const Dual<N>& x) {
  return Dual<N>::Along(std::sin(x.a), std::cos(x.a), x);
}
template <std::size_t N>
Dual<N> Cos(const Dual<N>& x) {
  return Dual<N>::Along(std::cos(x.a), -std::sin(x.a), x);
}
template <std::size_t N>
Dual<N> Tanh(const Dual<N>& x) {
  const double t = std::tanh(x.a);
  return Dual<N>::Along(t, 1 - t * t, x);
}

template <std::size_t N>
Dual<N> Atan(const Dual<N>& x) {
  return Dual<N>::Along(std::atan(x.a), 1 / (1 + x.a * x.a), x);
}

// A function of one complex variable that is analytic at z, with value f and derivative slope. Its derivatives are
// slope dz.
template <std::size_t N>
Complex<Dual<N>> Analytic(const Complex<Dual<N>>& z, const Cplx& f, const Cplx& slope) {
  return {Dual<N>::Along(f.re, slope.re, z.re, -slope.im, z.im), Dual<N>::Along(f.im, slope.im, z.re, slope.re, z.im)};
}
inline Cplx Analytic(const Cplx&, const Cplx& f, const Cplx&) { return f; }

template <std::size_t N>
Complex<Dual<N>> Sqrt(const Complex<Dual<N>>& z) {
  const Cplx r = Sqrt(ValueOf(z));
  return Analytic(z, r, r.re == 0 && r.im == 0 ? Cplx{} : Cplx{0.5, 0} / r);
}
template <std::size_t N>
Complex<Dual<N>> Exp(const Complex<Dual<N>>& z) {
  const Cplx e = Exp(ValueOf(z));
  return Analytic(z, e, e);
}
template <std::size_t N>
Complex<Dual<N>> Log(const Complex<Dual<N>>& z) {
  return Analytic(z, Log(ValueOf(z)), Cplx{1, 0} / ValueOf(z));
}

}  // namespace kalvex

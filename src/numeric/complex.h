// src/numeric (floor 1, together with src/core) holds the mathematics: number types, special functions, linear algebra
// and the thread pool. Its only physics is the Fermi function.
//
//   real.h, complex.h, dual.h, pack.h   number types. A formula is a template over them; a dual number carries
//                                       derivatives, a pack holds eight doubles
//   digamma.h, faddeeva.h, fermi.h      special functions
//   quadrature.h, fft.h                 integrals and the discrete Fourier transform
//   polynomial_roots.h                  roots
//   small_eigen.h, hermitian_eigen.h    eigenvalues and eigenvectors
//   square_matrix.h, tile.h, rank_update.h, full_factor.h, band_solver.h   outer products and Cholesky factors
//   thread_pool.h                       work shared by several threads
//
// Read real.h, this header and dual.h first.
//
// Complex: complex numbers over any number type with the usual operators. Products and quotients follow the textbook
// formulas.
#pragma once

#include <cmath>

#include "numeric/real.h"

namespace kalvex {

template <class T>
struct Complex {
  T re{};
  T im{};

  Complex& operator+=(const Complex& z) { return *this = *this + z; }
  Complex& operator-=(const Complex& z) { return *this = *this - z; }
  Complex& operator*=(const Complex& z) { return *this = *this * z; }

  friend Complex operator-(const Complex& z) { return {-z.re, -z.im}; }
  friend Complex operator+(const Complex& a, const Complex& b) { return {a.re + b.re, a.im + b.im}; }
  friend Complex operator-(const Complex& a, const Complex& b) { return {a.re - b.re, a.im - b.im}; }
  friend Complex operator*(const Complex& a, const Complex& b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
  }
  // a/b = a conj(b)/|b|^2
  friend Complex operator/(const Complex& a, const Complex& b) {
    const T norm = b.re * b.re + b.im * b.im;
    return {(a.re * b.re + a.im * b.im) / norm, (a.im * b.re - a.re * b.im) / norm};
  }
  friend Complex operator+(const Complex& z, const T& x) { return {z.re + x, z.im}; }
  friend Complex operator+(const T& x, const Complex& z) { return {x + z.re, z.im}; }
  friend Complex operator-(const Complex& z, const T& x) { return {z.re - x, z.im}; }
  friend Complex operator-(const T& x, const Complex& z) { return {x - z.re, -z.im}; }
  friend Complex operator*(const Complex& z, const T& x) { return {z.re * x, z.im * x}; }
  friend Complex operator*(const T& x, const Complex& z) { return {z.re * x, z.im * x}; }
  friend Complex operator/(const Complex& z, const T& x) { return {z.re / x, z.im / x}; }
  friend Complex operator/(const T& x, const Complex& z) { return Complex{x, T(0)} / z; }
  friend bool operator==(const Complex& a, const Complex& b) { return a.re == b.re && a.im == b.im; }
};

using Cplx = Complex<double>;

template <class T>
T Norm(const Complex<T>& z) {
  return z.re * z.re + z.im * z.im;
}

template <class T>
Complex<T> Conj(const Complex<T>& z) {
  return {z.re, -z.im};
}

// i z
template <class T>
Complex<T> TimesI(const Complex<T>& z) {
  return {-z.im, z.re};
}

inline double Abs(const Cplx& z) { return std::hypot(z.re, z.im); }
inline double Arg(const Cplx& z) { return std::atan2(z.im, z.re); }

// |z|, also where |z|^2 is outside the range of a double.
template <class T>
T SafeModulus(const Complex<T>& z) {
  const T norm = Norm(z);
  if (LanesOf((norm > T(1e-290)) & (norm < T(1e290))) == Lanes::kAll) return Sqrt(norm);
  return Hypot(z.re, z.im);
}

// The principal root, with its argument in (-pi/2, pi/2]. A negative real number has the root +i sqrt(|z|), even if its
// imaginary part is a negative zero.
template <class T>
Complex<T> PrincipalRoot(const Complex<T>& z) {
  const T larger = Sqrt(T(0.5) * (SafeModulus(z) + Fabs(z.re)));
  const T smaller = Select(larger == T(0), T(0), T(0.5) * Fabs(z.im) / larger);
  const auto right = z.re >= T(0);
  const T re = Select(right, larger, smaller), im = Select(right, smaller, larger);
  return {re, Select(z.im < T(0), -im, im)};
}
inline Cplx Sqrt(const Cplx& z) { return PrincipalRoot(z); }

inline Cplx Exp(const Cplx& z) {
  const double e = std::exp(z.re);
  return {e * std::cos(z.im), e * std::sin(z.im)};
}

// The principal logarithm.
inline Cplx Log(const Cplx& z) { return {std::log(Abs(z)), Arg(z)}; }

}  // namespace kalvex

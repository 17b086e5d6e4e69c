// Complex numbers with plain products and quotients, over any number type with the usual operators.
#pragma once

#include <cmath>

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

// The principal root, its argument in (-pi/2, pi/2]: a negative real number has the root +i sqrt(|z|), also when its
// imaginary part is a negative zero.
inline Cplx Sqrt(const Cplx& z) {
  if (z.im == 0) return z.re >= 0 ? Cplx{std::sqrt(z.re), 0} : Cplx{0, std::sqrt(-z.re)};
  const double norm = Norm(z);  // far from 1 it leaves the range of a double long before the root does
  const double modulus = norm > 1e-290 && norm < 1e290 ? std::sqrt(norm) : Abs(z);
  if (z.re >= 0) {
    const double re = std::sqrt(0.5 * (modulus + z.re));
    return {re, 0.5 * z.im / re};
  }
  const double im = std::sqrt(0.5 * (modulus - z.re));
  return {0.5 * std::fabs(z.im) / im, std::copysign(im, z.im)};
}

inline Cplx Exp(const Cplx& z) {
  const double e = std::exp(z.re);
  return {e * std::cos(z.im), e * std::sin(z.im)};
}

// The principal logarithm.
inline Cplx Log(const Cplx& z) { return {std::log(Abs(z)), Arg(z)}; }

}  // namespace kalvex

// A stack of layers and conducting sheets at normal incidence, by the matrices M of the tangential fields:
//     (E, H) on the front side = M (E, H) on the back side,
//     layer [[cos p, -i sin p/n], [-i n sin p, cos p]], p = 2 pi x n d;  sheet [[1, 0], [s, 1]].
#pragma once

#include "types/stacks/film_optics.h"

namespace kalvex {

// A product of such matrices. The matrix of each layer is multiplied by exp(ip), which keeps it finite for thick
// absorbing layers.
template <class T>
struct FieldMatrix {
  Complex<T> ee{T(1), T(0)}, eh{}, he{}, hh{T(1), T(0)};
  Complex<T> passed{T(1), T(0)};  // product of the exp(ip)

  void AddLayer(const Complex<T>& n, const T& thickness, double x) {
    const Complex<T> e = PassageFactor(n, thickness, x);
    const Complex<T> cosine = T(0.5) * (e * e + T(1)), sine = T(0.5) * (e * e - T(1));  // times e: cos p, i sin p
    MultiplyBy(cosine, Quotient(-sine, n), -(sine * n), cosine);
    passed *= e;
  }
  void AddSheet(const Complex<T>& s) { MultiplyBy({T(1), T(0)}, {}, s, {T(1), T(0)}); }

 private:
  void MultiplyBy(const Complex<T>& a, const Complex<T>& b, const Complex<T>& c, const Complex<T>& d) {
    const FieldMatrix m = *this;
    ee = m.ee * a + m.eh * c;
    eh = m.ee * b + m.eh * d;
    he = m.he * a + m.hh * c;
    hh = m.he * b + m.hh * d;
  }
};

template <class T>
struct Amplitudes {
  Complex<T> r;
  Complex<T> t;
};

// Amplitudes of a stack between half-spaces of the indices `front` and `back`.
template <class T>
Amplitudes<T> AmplitudesOf(const FieldMatrix<T>& m, const Complex<T>& front, const Complex<T>& back) {
  const Complex<T> e = (m.ee + m.eh * back) * front, h = m.he + m.hh * back;
  return {Quotient(e - h, e + h), Quotient(T(2) * front * m.passed, e + h)};
}

}  // namespace kalvex

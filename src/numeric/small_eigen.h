// Eigenvalues and eigenvectors of small real symmetric matrices. The derivatives follow if the matrix has them.
#pragma once

#include <array>
#include <cmath>

#include "numeric/dual.h"

namespace kalvex {

template <class T, std::size_t N>
struct SmallEigen {
  std::array<T, N> value{};                  // ascending
  std::array<std::array<T, N>, N> vector{};  // vector[k] belongs to value[k]
};

template <class T, std::size_t N>
using SmallMatrix = std::array<std::array<T, N>, N>;

// Jacobi rotations on the first n rows and columns, n at most N. Only the upper triangle is read. Entries beyond n are
// 0.
template <std::size_t N>
SmallEigen<double, N> EigenOf(const SmallMatrix<double, N>& matrix, int n) {
  constexpr int kSweeps = 60;
  SmallMatrix<double, N> a = matrix, v{};
  const auto at = [](int i) { return static_cast<std::size_t>(i); };
  for (int i = 0; i < n; ++i) {
    v[at(i)][at(i)] = 1;
    for (int j = 0; j < i; ++j) a[at(i)][at(j)] = a[at(j)][at(i)];
  }
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    bool rotated = false;
    for (int p = 0; p < n; ++p) {
      for (int q = p + 1; q < n; ++q) {
        const double apq = a[at(p)][at(q)], app = a[at(p)][at(p)], aqq = a[at(q)][at(q)];
        if (std::fabs(apq) <= 1e-18 * (std::fabs(app) + std::fabs(aqq)) || apq == 0) continue;
        rotated = true;
        const double theta = (aqq - app) / (2 * apq);
        const double t = (theta >= 0 ? 1 : -1) / (std::fabs(theta) + std::sqrt(theta * theta + 1));
        const double c = 1 / std::sqrt(t * t + 1), s = t * c;
        for (int k = 0; k < n; ++k) {
          const double akp = a[at(k)][at(p)], akq = a[at(k)][at(q)];
          a[at(k)][at(p)] = c * akp - s * akq;
          a[at(k)][at(q)] = s * akp + c * akq;
        }
        for (int k = 0; k < n; ++k) {
          const double apk = a[at(p)][at(k)], aqk = a[at(q)][at(k)];
          a[at(p)][at(k)] = c * apk - s * aqk;
          a[at(q)][at(k)] = s * apk + c * aqk;
          const double vpk = v[at(p)][at(k)], vqk = v[at(q)][at(k)];
          v[at(p)][at(k)] = c * vpk - s * vqk;
          v[at(q)][at(k)] = s * vpk + c * vqk;
        }
      }
    }
    if (!rotated) break;
  }
  SmallEigen<double, N> eigen;
  std::array<bool, N> taken{};
  for (int k = 0; k < n; ++k) {
    int least = -1;
    for (int i = 0; i < n; ++i) {
      if (!taken[at(i)] && (least < 0 || a[at(i)][at(i)] < a[at(least)][at(least)])) least = i;
    }
    taken[at(least)] = true;
    eigen.value[at(k)] = a[at(least)][at(least)];
    eigen.vector[at(k)] = v[at(least)];
  }
  return eigen;
}

// First-order perturbation: dE_i = <i|dH|i>, d|i> = sum over j of |j> <j|dH|i>/(E_i - E_j). Degenerate levels are not
// mixed.
template <std::size_t N, int Lanes>
SmallEigen<Dual<Lanes>, N> EigenOf(const SmallMatrix<Dual<Lanes>, N>& matrix, int n) {
  SmallMatrix<double, N> plain{};
  const auto at = [](int i) { return static_cast<std::size_t>(i); };
  for (int i = 0; i < n; ++i) {
    for (int j = i; j < n; ++j) plain[at(i)][at(j)] = matrix[at(i)][at(j)].a;
  }
  const SmallEigen<double, N> of = EigenOf(plain, n);
  SmallEigen<Dual<Lanes>, N> eigen;
  for (int i = 0; i < n; ++i) {
    eigen.value[at(i)] = Dual<Lanes>(of.value[at(i)]);
    for (int k = 0; k < n; ++k) eigen.vector[at(i)][at(k)] = Dual<Lanes>(of.vector[at(i)][at(k)]);
  }
  for (std::size_t l = 0; l < Lanes; ++l) {
    for (int i = 0; i < n; ++i) {
      for (int j = 0; j < n; ++j) {
        double element = 0;  // <j|dH|i>
        for (int r = 0; r < n; ++r) {
          for (int c = 0; c < n; ++c) {
            const double slope = matrix[at(std::min(r, c))][at(std::max(r, c))].v[l];
            element += of.vector[at(j)][at(r)] * slope * of.vector[at(i)][at(c)];
          }
        }
        if (i == j) {
          eigen.value[at(i)].v[l] = element;
          continue;
        }
        const double gap = of.value[at(i)] - of.value[at(j)];
        if (std::fabs(gap) < 1e-14) continue;
        for (int k = 0; k < n; ++k) eigen.vector[at(i)][at(k)].v[l] += of.vector[at(j)][at(k)] * element / gap;
      }
    }
  }
  return eigen;
}

}  // namespace kalvex

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
SmallEigen<double, N> EigenOf(const SmallMatrix<double, N>& matrix, std::size_t n) {
  constexpr int kSweeps = 60;
  SmallMatrix<double, N> a = matrix, v{};
  for (std::size_t i = 0; i < n; ++i) {
    v[i][i] = 1;
    for (std::size_t j = 0; j < i; ++j) a[i][j] = a[j][i];
  }
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    bool rotated = false;
    for (std::size_t p = 0; p < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        const double apq = a[p][q], app = a[p][p], aqq = a[q][q];
        if (std::fabs(apq) <= 1e-18 * (std::fabs(app) + std::fabs(aqq)) || apq == 0) continue;
        rotated = true;
        const double theta = (aqq - app) / (2 * apq);
        const double t = (theta >= 0 ? 1 : -1) / (std::fabs(theta) + std::sqrt(theta * theta + 1));
        const double c = 1 / std::sqrt(t * t + 1), s = t * c;
        for (std::size_t k = 0; k < n; ++k) {
          const double akp = a[k][p], akq = a[k][q];
          a[k][p] = c * akp - s * akq;
          a[k][q] = s * akp + c * akq;
        }
        for (std::size_t k = 0; k < n; ++k) {
          const double apk = a[p][k], aqk = a[q][k];
          a[p][k] = c * apk - s * aqk;
          a[q][k] = s * apk + c * aqk;
          const double vpk = v[p][k], vqk = v[q][k];
          v[p][k] = c * vpk - s * vqk;
          v[q][k] = s * vpk + c * vqk;
        }
      }
    }
    if (!rotated) break;
  }
  SmallEigen<double, N> eigen;
  std::array<bool, N> taken{};
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t least = n;
    for (std::size_t i = 0; i < n; ++i) {
      if (!taken[i] && (least == n || a[i][i] < a[least][least])) least = i;
    }
    taken[least] = true;
    eigen.value[k] = a[least][least];
    eigen.vector[k] = v[least];
  }
  return eigen;
}

// First-order perturbation: dE_i = <i|dH|i>, d|i> = sum over j of |j> <j|dH|i>/(E_i - E_j). Degenerate levels are not
// mixed.
template <std::size_t N, std::size_t Lanes>
SmallEigen<Dual<Lanes>, N> EigenOf(const SmallMatrix<Dual<Lanes>, N>& matrix, std::size_t n) {
  SmallMatrix<double, N> plain{};
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i; j < n; ++j) plain[i][j] = matrix[i][j].a;
  }
  const SmallEigen<double, N> of = EigenOf(plain, n);
  SmallEigen<Dual<Lanes>, N> eigen;
  for (std::size_t i = 0; i < n; ++i) {
    eigen.value[i] = Dual<Lanes>(of.value[i]);
    for (std::size_t k = 0; k < n; ++k) eigen.vector[i][k] = Dual<Lanes>(of.vector[i][k]);
  }
  for (std::size_t l = 0; l < Lanes; ++l) {
    for (std::size_t i = 0; i < n; ++i) {
      for (std::size_t j = 0; j < n; ++j) {
        double element = 0;  // <j|dH|i>
        for (std::size_t r = 0; r < n; ++r) {
          for (std::size_t c = 0; c < n; ++c) {
            const double slope = matrix[std::min(r, c)][std::max(r, c)].v[l];
            element += of.vector[j][r] * slope * of.vector[i][c];
          }
        }
        if (i == j) {
          eigen.value[i].v[l] = element;
          continue;
        }
        const double gap = of.value[i] - of.value[j];
        if (std::fabs(gap) < 1e-14) continue;
        for (std::size_t k = 0; k < n; ++k) eigen.vector[i][k].v[l] += of.vector[j][k] * element / gap;
      }
    }
  }
  return eigen;
}

}  // namespace kalvex

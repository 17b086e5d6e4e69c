// Levels and states of a Hermitian matrix by Jacobi rotations, which remove one element after the other: slow, short,
// and independent of the program's solver.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <numeric>
#include <vector>

namespace kalvex {

using ComplexMatrix = std::vector<std::vector<std::complex<double>>>;

struct JacobiStates {
  std::vector<double> level;  // ascending
  ComplexMatrix state;        // state[k] belongs to level[k]
};

inline JacobiStates SolveByJacobi(ComplexMatrix a) {
  using Number = std::complex<double>;
  const std::size_t n = a.size();
  ComplexMatrix v(n, std::vector<Number>(n));
  for (std::size_t k = 0; k < n; ++k) v[k][k] = 1;
  for (int sweep = 0; sweep < 60; ++sweep) {
    for (std::size_t p = 0; p < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        if (std::abs(a[p][q]) == 0) continue;
        const Number phase = a[p][q] / std::abs(a[p][q]);
        const double angle = 0.5 * std::atan2(2 * std::abs(a[p][q]), a[p][p].real() - a[q][q].real());
        const double c = std::cos(angle);
        const Number s = std::sin(angle) * phase;
        for (ComplexMatrix* const m : {&a, &v}) {
          for (auto& row : *m) {
            const Number x = row[p], y = row[q];
            row[p] = c * x + std::conj(s) * y;
            row[q] = -s * x + c * y;
          }
        }
        for (std::size_t k = 0; k < n; ++k) {
          const Number x = a[p][k], y = a[q][k];
          a[p][k] = c * x + s * y;
          a[q][k] = -std::conj(s) * x + c * y;
        }
      }
    }
  }
  std::vector<std::size_t> order(n);
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t i, std::size_t j) { return a[i][i].real() < a[j][j].real(); });
  JacobiStates states;
  for (const std::size_t k : order) {
    states.level.push_back(a[k][k].real());
    states.state.emplace_back();
    for (std::size_t i = 0; i < n; ++i) states.state.back().push_back(v[i][k]);
  }
  return states;
}

}  // namespace kalvex

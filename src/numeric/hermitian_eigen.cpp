#include "numeric/hermitian_eigen.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalvex {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// The state of the diagonalisation. a is n by n. d is the diagonal of the tridiagonal form, and e[k] its element
// between k and k + 1. Row k of z becomes eigenvector k; z is null if no vectors are wanted.
struct Problem {
  std::size_t n;
  double* a;
  double* d;
  double* e;
  double* z;
};

// The vector v with v[0] = 1 for which the reflection 1 - beta v v' maps x[0 .. m-1] to (first, 0, ..., 0).
struct Reflection {
  double beta, first;
};
Reflection ReflectionOf(const double* x, std::size_t m, std::size_t stride, double* v) {
  double rest = 0;
  for (std::size_t i = 1; i < m; ++i) rest += x[i * stride] * x[i * stride];
  v[0] = 1;
  if (rest == 0) return {0, x[0]};
  const double norm = std::sqrt(x[0] * x[0] + rest);
  const double first = x[0] > 0 ? -norm : norm;  // this sign avoids cancellation
  const double pivot = x[0] - first;
  for (std::size_t i = 1; i < m; ++i) v[i] = x[i * stride] / pivot;
  return {-pivot / first, first};
}

// A -> (1 - beta v v') A (1 - beta v v') in the rows and columns from `from` on, lower triangle only.
void ReflectBlock(const Problem& p, std::size_t from, double beta, const double* v, double* w) {
  const std::size_t m = p.n - from;
  const auto at = [&](std::size_t i, std::size_t j) -> double& { return p.a[(from + i) * p.n + from + j]; };
  std::fill(w, w + m, 0.0);
  double along = 0;
  for (std::size_t i = 0; i < m; ++i) {
    double sum = at(i, i) * v[i];
    for (std::size_t j = 0; j < i; ++j) {
      sum += at(i, j) * v[j];
      w[j] += beta * at(i, j) * v[i];
    }
    w[i] += beta * sum;
  }
  for (std::size_t i = 0; i < m; ++i) along += w[i] * v[i];
  for (std::size_t i = 0; i < m; ++i) w[i] -= 0.5 * beta * along * v[i];
  for (std::size_t i = 0; i < m; ++i) {
    for (std::size_t j = 0; j <= i; ++j) at(i, j) -= v[i] * w[j] + w[i] * v[j];
  }
}

// z -> (1 - beta v v') z in the rows from `from` on.
void ReflectRows(const Problem& p, std::size_t from, double beta, const double* v, double* w) {
  std::fill(w, w + p.n, 0.0);
  for (std::size_t i = from; i < p.n; ++i) {
    for (std::size_t k = 0; k < p.n; ++k) w[k] += v[i - from] * p.z[i * p.n + k];
  }
  for (std::size_t i = from; i < p.n; ++i) {
    for (std::size_t k = 0; k < p.n; ++k) p.z[i * p.n + k] -= beta * v[i - from] * w[k];
  }
}

void MakeTridiagonal(const Problem& p, double* v, double* w) {
  for (std::size_t c = 0; c + 1 < p.n; ++c) {
    const Reflection reflection = ReflectionOf(p.a + (c + 1) * p.n + c, p.n - c - 1, p.n, v);
    p.d[c] = p.a[c * p.n + c];
    p.e[c] = reflection.first;
    if (reflection.beta == 0) continue;
    ReflectBlock(p, c + 1, reflection.beta, v, w);
    if (p.z) ReflectRows(p, c + 1, reflection.beta, v, w);
  }
  p.d[p.n - 1] = p.a[p.n * p.n - 1];
  p.e[p.n - 1] = 0;
}

// Rotates rows i and i + 1 of z by the angle with cosine c and sine s.
void Rotate(const Problem& p, std::size_t i, double c, double s) {
  double* const low = p.z + i * p.n;
  double* const high = low + p.n;
  for (std::size_t k = 0; k < p.n; ++k) {
    const double f = high[k];
    high[k] = s * low[k] + c * f;
    low[k] = c * low[k] - s * f;
  }
}

// One QL step with Wilkinson's shift on the rows l to m, between which no e is 0. A rotation with the shift at the
// lower end creates a bulge, which further rotations move to the upper end.
void QlStep(const Problem& p, std::size_t l, std::size_t m) {
  const double ratio = (p.d[l + 1] - p.d[l]) / (2 * p.e[l]);
  const double length = std::hypot(ratio, 1.0);
  double bulge = p.d[m] - p.d[l] + p.e[l] / (ratio + std::copysign(length, ratio));
  double c = 1, s = 1, taken = 0;
  for (std::size_t i = m; i-- > l;) {
    const double f = s * p.e[i], b = c * p.e[i];
    const double r = std::hypot(f, bulge);
    p.e[i + 1] = r;
    if (r == 0) {  // the matrix splits here
      p.d[i + 1] -= taken;
      p.e[m] = 0;
      return;
    }
    s = f / r;
    c = bulge / r;
    const double shifted = p.d[i + 1] - taken;
    const double turned = (p.d[i] - shifted) * s + 2 * c * b;
    taken = s * turned;
    p.d[i + 1] = shifted + taken;
    bulge = c * turned - b;
    if (p.z) Rotate(p, i, c, s);
  }
  p.d[l] -= taken;
  p.e[l] = bulge;
  p.e[m] = 0;
}

// The first row from l on after which e is negligible and the matrix splits. An e that is NaN never splits it.
std::size_t EndOfBlock(const Problem& p, std::size_t l, double least) {
  std::size_t m = l;
  while (m + 1 < p.n && !(std::fabs(p.e[m]) <= kEpsilon * (std::fabs(p.d[m]) + std::fabs(p.d[m + 1])) + least)) ++m;
  return m;
}

bool Diagonalise(const Problem& p) {
  double size = 0;
  for (std::size_t i = 0; i < p.n; ++i) size = std::fmax(size, std::fabs(p.d[i]) + std::fabs(p.e[i]));
  const double least = 0.01 * kEpsilon * size;  // far below the rounding errors of the reflections
  bool found = true;
  for (std::size_t l = 0; l < p.n; ++l) {
    int steps = 0;
    for (std::size_t m; (m = EndOfBlock(p, l, least)) != l; ++steps) {
      if (steps == kMostQlSteps) {
        found = false;
        break;
      }
      QlStep(p, l, m);
    }
  }
  return found;
}

void SortAscending(const Problem& p) {
  for (std::size_t k = 0; k < p.n; ++k) {
    const auto least = static_cast<std::size_t>(std::min_element(p.d + k, p.d + p.n) - p.d);
    if (least == k) continue;
    std::swap(p.d[k], p.d[least]);
    if (p.z) std::swap_ranges(p.z + k * p.n, p.z + (k + 1) * p.n, p.z + least * p.n);
  }
}

void Grow(std::vector<double>& room, std::size_t size) {
  if (room.size() < size) room.resize(size);
}

// Takes the complex vector of row k of the doubled problem and subtracts its components along the states from `first`
// to `found`. Returns the norm of the remainder.
double TakeCandidate(std::size_t n, std::size_t k, std::size_t first, std::size_t found, EigenScratch& scratch) {
  Cplx* const candidate = scratch.candidate.data();
  const double* const row = scratch.vectors.data() + k * 2 * n;
  for (std::size_t i = 0; i < n; ++i) candidate[i] = {row[i], row[n + i]};
  for (std::size_t s = first; s < found; ++s) {
    const Cplx* const state = scratch.states.data() + s * n;
    Cplx along;
    for (std::size_t i = 0; i < n; ++i) along += Conj(state[i]) * candidate[i];
    for (std::size_t i = 0; i < n; ++i) candidate[i] -= along * state[i];
  }
  double norm = 0;
  for (std::size_t i = 0; i < n; ++i) norm += Norm(candidate[i]);
  return norm;
}

// Each state v appears as a pair of real vectors, one for v and one for i v. In a degenerate level the real vectors
// mix. Of them the one with the largest component outside the states already found is taken.
void ReadStates(std::size_t n, EigenScratch& scratch) {
  const double* const values = scratch.values.data();
  const double size = std::fmax(std::fabs(values[0]), std::fabs(values[2 * n - 1]));
  const double same = 1e3 * kEpsilon * static_cast<double>(n) * size;
  std::size_t first = 0;  // the first state of the present level
  for (std::size_t found = 0; found < n; ++found) {
    if (found > 0 && values[2 * found] - values[2 * found - 1] > same) first = found;
    std::size_t end = 2 * found + 2;
    while (end < 2 * n && values[end] - values[end - 1] <= same) ++end;
    std::size_t best = 2 * first;
    double most = -1;
    for (std::size_t k = 2 * first; k < end && most < 0.5; ++k) {
      const double norm = TakeCandidate(n, k, first, found, scratch);
      if (norm <= most) continue;
      most = norm;
      best = k;
    }
    const double norm = TakeCandidate(n, best, first, found, scratch);
    const double scale = 1 / std::sqrt(norm);
    for (std::size_t i = 0; i < n; ++i) scratch.states[found * n + i] = scratch.candidate[i] * scale;
  }
}

}  // namespace

bool SymmetricEigen(std::size_t n, bool wantVectors, EigenScratch& scratch) {
  if (n == 0) return true;
  Grow(scratch.values, n);
  Grow(scratch.beside, n);
  Grow(scratch.reflection, 2 * n);
  if (wantVectors) Grow(scratch.vectors, n * n);
  const Problem p{n, scratch.matrix.data(), scratch.values.data(), scratch.beside.data(),
                  wantVectors ? scratch.vectors.data() : nullptr};
  if (p.z) {
    std::fill(p.z, p.z + n * n, 0.0);
    for (std::size_t i = 0; i < n; ++i) p.z[i * n + i] = 1;
  }
  MakeTridiagonal(p, scratch.reflection.data(), scratch.reflection.data() + n);
  const bool found = Diagonalise(p);
  SortAscending(p);
  return found;
}

bool HermitianEigen(std::span<const Cplx> matrix, std::size_t n, bool wantVectors, EigenScratch& scratch) {
  if (n == 0) return true;
  const std::size_t twice = 2 * n;
  Grow(scratch.matrix, twice * twice);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j < n; ++j) {
      const Cplx h = matrix[i * n + j];
      scratch.matrix[i * twice + j] = scratch.matrix[(n + i) * twice + n + j] = h.re;
      scratch.matrix[(n + i) * twice + j] = h.im;
      scratch.matrix[i * twice + n + j] = -h.im;
    }
  }
  const bool found = SymmetricEigen(twice, wantVectors, scratch);
  Grow(scratch.levels, n);
  for (std::size_t k = 0; k < n; ++k) scratch.levels[k] = scratch.values[2 * k];
  if (!wantVectors) return found;
  if (scratch.states.size() < n * n) scratch.states.resize(n * n);
  if (scratch.candidate.size() < n) scratch.candidate.resize(n);
  ReadStates(n, scratch);
  return found;
}

}  // namespace kalvex

#include "numeric/band_solver.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "core/vector_clones.h"
#include "numeric/full_factor.h"

namespace kalvex {
namespace {

constexpr std::size_t kLanes = 8;
constexpr std::size_t kMostBorder = 256;

KALVEX_VECTOR_CLONES double Dot(const double* a, const double* b, std::size_t count) {
  double sum[kLanes] = {};
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    for (std::size_t k = 0; k < kLanes; ++k) sum[k] += a[i + k] * b[i + k];
  }
  double rest = 0;
  for (; i < count; ++i) rest += a[i] * b[i];
  return ((sum[0] + sum[1]) + (sum[2] + sum[3])) + ((sum[4] + sum[5]) + (sum[6] + sum[7])) + rest;
}

// out -= factor * a
KALVEX_VECTOR_CLONES void Subtract(double factor, const double* a, std::size_t count, double* out) {
  for (std::size_t i = 0; i < count; ++i) out[i] -= factor * a[i];
}

// How the matrix is to be taken apart: the first border rows by themselves, the rest as a band.
struct Shape {
  std::size_t border = 0;
  std::size_t half = 1;
};

KALVEX_VECTOR_CLONES bool AllZero(const double* a, std::size_t count) {
  std::int64_t others = 0;  // as wide as the numbers, so that many are tried at once
  for (std::size_t i = 0; i < count; ++i) others |= a[i] != 0 ? 1 : 0;
  return others == 0;
}

std::size_t LengthOfRow(const SquareMatrix& a, std::size_t i) {
  constexpr std::size_t kAtOnce = 64;
  std::size_t j = a.size - 1;
  while (j >= i + kAtOnce && AllZero(a.Row(i) + j + 1 - kAtOnce, kAtOnce)) j -= kAtOnce;
  while (j > i && a(i, j) == 0) --j;
  return j - i;
}

// The work of factoring n rows with a band of h, in products of the narrow way. Whole tiles of a full matrix go so many
// times as fast.
constexpr double kGainOfTiles = 8;

double WorkOfNarrow(double n, double h) { return n * h * h / 2; }
double WorkOfFull(double n) { return n * n * n / (6 * kGainOfTiles); }

bool CountsAsFull(std::size_t n, std::size_t h) {
  return WorkOfFull(static_cast<double>(n)) < WorkOfNarrow(static_cast<double>(n), static_cast<double>(h));
}

// With a border of d rows before it, each of which takes two substitutions and meets the others.
double WorkOf(std::size_t border, std::size_t rows, std::size_t half) {
  const auto d = static_cast<double>(border), n = static_cast<double>(rows), h = static_cast<double>(half);
  return std::min(WorkOfFull(n), WorkOfNarrow(n, h)) + 2 * d * n * std::min(h, n / 2) + d * d * n / 2;
}

// The border that makes the least work.
Shape ShapeOf(const SquareMatrix& a) {
  std::vector<std::size_t> length(a.size);
  for (std::size_t i = 0; i < a.size; ++i) length[i] = LengthOfRow(a, i);
  for (std::size_t i = a.size; i-- > 1;) length[i - 1] = std::max(length[i - 1], length[i]);
  Shape best;
  double least = HUGE_VAL;
  for (std::size_t d = 0; d < std::min(a.size, kMostBorder); ++d) {
    const std::size_t half = std::max<std::size_t>(1, length[d]);
    const double work = WorkOf(d, a.size - d, half);
    if (!(work < least)) continue;
    least = work;
    best = {d, half};
  }
  return best;
}

// The part of a matrix from row and column `first` on, with its inverse diagonal.
struct Band {
  const SquareMatrix& a;
  std::span<double> inverseDiagonal;
  std::size_t first;
  std::size_t half;

  std::size_t Low(std::size_t i) const { return i > first + half ? i - half : first; }
};

int DecomposeNarrow(const Band& band) {
  const SquareMatrix& a = band.a;
  for (std::size_t i = band.first; i < a.size; ++i) {
    const std::size_t end = std::min(a.size, i + band.half + 1);
    for (std::size_t j = i; j < end; ++j) {
      const std::size_t low = band.Low(j);
      const double sum = a(i, j) - Dot(a.Row(i) + low, a.Row(j) + low, i > low ? i - low : 0);
      if (j > i) {
        a(j, i) = sum * band.inverseDiagonal[i];
      } else {
        if (!(sum > 0)) return -1;
        band.inverseDiagonal[i] = 1 / std::sqrt(sum);
      }
    }
  }
  return 0;
}

int Decompose(const Band& band, ThreadPool* pool) {
  const bool full = CountsAsFull(band.a.size - band.first, band.half);
  return full ? FactorFull(band.a, band.first, band.inverseDiagonal, pool) : DecomposeNarrow(band);
}

// x from first on becomes the solution of L L^T x = x.
void Substitute(const Band& band, double* x) {
  const SquareMatrix& a = band.a;
  for (std::size_t i = band.first; i < a.size; ++i) {
    const std::size_t low = band.Low(i);
    x[i] = (x[i] - Dot(a.Row(i) + low, x + low, i - low)) * band.inverseDiagonal[i];
  }
  for (std::size_t i = a.size; i-- > band.first;) {  // row by row of L, so that memory is read in order
    x[i] *= band.inverseDiagonal[i];
    const std::size_t low = band.Low(i);
    Subtract(x[i], a.Row(i) + low, i - low, x + low);
  }
}

// A border of d rows before a band:  A = [D C; C^T B],  Z = B^-1 C^T,  S = D - C Z.  Z goes below D, and the factor of
// S into the lower triangle of D.
int DecomposeBorder(const Band& band, ThreadPool* pool) {
  const SquareMatrix& a = band.a;
  const std::size_t d = band.first;
  std::vector<double> z(a.size);
  for (std::size_t c = 0; c < d; ++c) {
    std::copy(a.Row(c) + d, a.Row(c) + a.size, z.begin() + static_cast<std::ptrdiff_t>(d));
    Substitute(band, z.data());
    for (std::size_t i = d; i < a.size; ++i) a(i, c) = z[i];
  }
  std::vector<double> schur(d * d);
  for (std::size_t i = d; i < a.size; ++i) {
    for (std::size_t r = 0; r < d; ++r) {
      if (a(r, i) == 0) continue;
      for (std::size_t c = r; c < d; ++c) schur[r * d + c] += a(r, i) * a(i, c);
    }
  }
  for (std::size_t r = 0; r < d; ++r) {
    for (std::size_t c = r; c < d; ++c) schur[r * d + c] = a(r, c) - schur[r * d + c];
  }
  const SquareMatrix s{schur.data(), d};
  if (Decompose({s, band.inverseDiagonal, 0, d}, pool) != 0) return -1;
  for (std::size_t r = 1; r < d; ++r) std::copy(s.Row(r), s.Row(r) + r, a.Row(r));
  return 0;
}

void SubstituteBorder(const Band& band, std::span<const double> b, std::span<double> x) {
  const SquareMatrix& a = band.a;
  const std::size_t d = band.first;
  std::vector<double> factor(d * d), head(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(d));
  const SquareMatrix s{factor.data(), d};
  for (std::size_t r = 1; r < d; ++r) std::copy(a.Row(r), a.Row(r) + r, s.Row(r));
  for (std::size_t i = d; i < a.size; ++i) {
    for (std::size_t c = 0; c < d; ++c) head[c] -= a(i, c) * b[i];
  }
  Substitute({s, band.inverseDiagonal, 0, d}, head.data());
  for (std::size_t i = d; i < a.size; ++i) x[i] -= Dot(a.Row(i), head.data(), d);
  std::copy(head.begin(), head.end(), x.begin());
}

}  // namespace

int SolveBanded(const SquareMatrix& a, std::span<double> inverseDiagonal, std::span<const double> b,
                std::span<double> x, bool decompose, ThreadPool* pool) {
  const Shape shape = ShapeOf(a);
  const bool full = CountsAsFull(a.size - shape.border, shape.half);
  const Band band{a, inverseDiagonal, shape.border, full ? a.size : shape.half};
  if (decompose) {
    if (Decompose(band, pool) != 0) return -1;
    if (shape.border > 0 && DecomposeBorder(band, pool) != 0) return -1;
  }
  std::copy(b.begin(), b.end(), x.begin());
  Substitute(band, x.data());
  if (shape.border > 0) SubstituteBorder(band, b, x);
  return 0;
}

}  // namespace kalvex

#include "numeric/band_solver.h"

#include <algorithm>
#include <cmath>

namespace kalvex {
namespace {

// Dot product in four independent partial sums, so that the additions do not wait for each other.
double Dot(const double* a, const double* b, std::size_t count) {
  double sum[4] = {};
  std::size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    for (std::size_t k = 0; k < 4; ++k) sum[k] += a[i + k] * b[i + k];
  }
  for (; i < count; ++i) sum[0] += a[i] * b[i];
  return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

int Decompose(const SquareMatrix& a, std::span<double> inverseDiagonal, std::size_t half) {
  for (std::size_t i = 0; i < a.size; ++i) {
    const std::size_t end = std::min(a.size, i + half + 1);
    for (std::size_t j = i; j < end; ++j) {
      const std::size_t low = j > half ? j - half : 0;
      const std::size_t count = i > low ? i - low : 0;
      const double sum = a(i, j) - Dot(a.Row(i) + low, a.Row(j) + low, count);
      if (j > i) {
        a(j, i) = sum * inverseDiagonal[i];
      } else {
        if (!(sum > 0)) return -1;
        inverseDiagonal[i] = 1 / std::sqrt(sum);
      }
    }
  }
  return 0;
}

}  // namespace

std::size_t HalfBandwidth(const SquareMatrix& a) {
  std::size_t half = 1;
  for (std::size_t i = 0; i + half < a.size; ++i) {
    for (std::size_t j = a.size - 1; j > i + half; --j) {
      if (a(i, j) != 0) half = j - i;
    }
  }
  return half;
}

int SolveBanded(const SquareMatrix& a, std::span<double> inverseDiagonal, std::span<const double> b,
                std::span<double> x, bool decompose) {
  const std::size_t half = HalfBandwidth(a);
  if (decompose && Decompose(a, inverseDiagonal, half) != 0) return -1;
  for (std::size_t i = 0; i < a.size; ++i) {
    const std::size_t low = i > half ? i - half : 0;
    x[i] = (b[i] - Dot(a.Row(i) + low, x.data() + low, i - low)) * inverseDiagonal[i];
  }
  for (std::size_t i = a.size; i-- > 0;) {  // row by row of L, so that memory is read in order
    x[i] *= inverseDiagonal[i];
    for (std::size_t k = i > half ? i - half : 0; k < i; ++k) x[k] -= a(i, k) * x[i];
  }
  return 0;
}

}  // namespace kalvex

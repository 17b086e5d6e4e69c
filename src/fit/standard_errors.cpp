#include "fit/standard_errors.h"

#include <algorithm>
#include <cmath>

#include "core/limits.h"
#include "numeric/band_solver.h"
#include "numeric/hermitian_eigen.h"

namespace kalvex {
namespace {

// Larger systems take too long to diagonalise: a small constant is added to their diagonal instead.
constexpr std::size_t kMostForEigenvalues = 200;
// Relative to the largest eigenvalue, per parameter: rounding of the sums in the curvature.
constexpr double kRounding = 1e-14;
// The squared part of a parameter in an eigenvector that counts as none.
constexpr double kNoPart = 1e-10;

std::vector<std::size_t> ThatCount(const SquareMatrix& curvature, const std::vector<char>& counts) {
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < curvature.size; ++i) {
    if (counts[i] && curvature(i, i) > 0) indices.push_back(i);
  }
  return indices;
}

double Scaled(const SquareMatrix& curvature, std::size_t i, std::size_t j) {
  return curvature(std::min(i, j), std::max(i, j)) / std::sqrt(curvature(i, i) * curvature(j, j));
}

// ChiSq has the curvature 2/sigma^2 along a parameter of the standard error sigma.
double ErrorOf(double inverse, double diagonal) { return std::sqrt(2 * inverse / diagonal); }

WeakDirection DirectionOf(const double* vector, const std::vector<std::size_t>& indices) {
  WeakDirection direction;
  for (std::size_t k = 0; k < indices.size(); ++k) {
    direction.parts.push_back({static_cast<int>(indices[k]), vector[k]});
  }
  // Parts that differ by rounding only stay in the order of the parameters.
  const auto size = [](const auto& part) { return std::round(1e6 * std::fabs(part.weight)); };
  std::stable_sort(direction.parts.begin(), direction.parts.end(),
                   [&](const auto& a, const auto& b) { return size(a) > size(b); });
  const double least = std::fabs(direction.parts.front().weight) / 10, sign = direction.parts.front().weight;
  std::erase_if(direction.parts, [&](const auto& part) { return std::fabs(part.weight) < least; });
  for (auto& part : direction.parts) part.weight = std::copysign(part.weight, part.weight * sign);
  return direction;
}

Determination ByEigenvalues(const SquareMatrix& curvature, const std::vector<std::size_t>& indices) {
  const std::size_t n = indices.size();
  EigenScratch eigen;
  eigen.matrix.resize(n * n);
  for (std::size_t a = 0; a < n; ++a) {
    for (std::size_t b = 0; b < n; ++b) eigen.matrix[a * n + b] = Scaled(curvature, indices[a], indices[b]);
  }
  Determination found{0, 0, std::vector(curvature.size, kNotDetermined), {}};
  if (!SymmetricEigen(n, true, eigen)) return found;
  const double rounding = kRounding * static_cast<double>(n) * eigen.values[n - 1];
  std::vector<double> inverse(n), hidden(n);
  for (std::size_t k = 0; k < n; ++k) {
    const double value = eigen.values[k];
    const double* const vector = eigen.vectors.data() + k * n;
    const bool isRounding = value <= rounding;
    if (isRounding) found.undetermined.push_back(DirectionOf(vector, indices));
    if (!isRounding && found.rank++ == 0) found.condition = eigen.values[n - 1] / value;
    for (std::size_t a = 0; a < n; ++a) {
      (isRounding ? hidden : inverse)[a] += vector[a] * vector[a] / (isRounding ? 1 : value);
    }
  }
  for (std::size_t a = 0; a < n; ++a) {
    const std::size_t i = indices[a];
    if (hidden[a] <= kNoPart) found.errors[i] = ErrorOf(inverse[a], curvature(i, i));
  }
  return found;
}

// With a constant added to the diagonal, the inverse of a parameter that is not determined is about one over it.
Determination ByDamping(const SquareMatrix& curvature, const std::vector<std::size_t>& indices) {
  const std::size_t n = indices.size();
  const double damping = kRounding * static_cast<double>(n);
  std::vector<double> data(n * n), unit(n), column(n);
  const SquareMatrix scaled{data.data(), n};
  for (std::size_t a = 0; a < n; ++a) {
    for (std::size_t b = a; b < n; ++b)
      scaled(a, b) = Scaled(curvature, indices[a], indices[b]) + (a == b ? damping : 0);
  }
  Determination found{0, 0, std::vector(curvature.size, kNotDetermined), {}};
  BandFactor factor;
  for (std::size_t a = 0; a < n; ++a) {
    unit.assign(n, 0);
    unit[a] = 1;
    if (SolveBanded(scaled, factor, unit, column, a == 0) != 0) return found;
    if (!(column[a] * damping < std::sqrt(kNoPart))) continue;
    found.errors[indices[a]] = ErrorOf(column[a], curvature(indices[a], indices[a]));
    ++found.rank;
  }
  return found;
}

}  // namespace

Determination DetermineErrors(const SquareMatrix& curvature, const std::vector<char>& counts) {
  const std::vector<std::size_t> indices = ThatCount(curvature, counts);
  if (indices.empty()) return {0, 0, std::vector(curvature.size, kNotDetermined), {}};
  return indices.size() <= kMostForEigenvalues ? ByEigenvalues(curvature, indices) : ByDamping(curvature, indices);
}

}  // namespace kalvex

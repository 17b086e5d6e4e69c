#include "numeric/band_solver.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "numeric/full_factor.h"
#include "numeric/matrix_kernels.h"

namespace kalvex {
namespace {

const MatrixKernels& Kernels() { return WidestKernels<MatrixKernels>(); }

// The row of the first nonzero entry of each column, searched from row `first` to the diagonal.
std::vector<std::size_t> TopsOf(const SquareMatrix& a, std::size_t first) {
  constexpr std::size_t kAtOnce = 64;
  std::vector<std::size_t> top(a.size);
  for (std::size_t j = 0; j < a.size; ++j) top[j] = j;
  std::size_t open = first;  // the columns before it are done
  for (std::size_t i = first; i < a.size; ++i) {
    open = std::max(open, i + 1);
    for (std::size_t from = open; from < a.size; from += kAtOnce) {
      const std::size_t end = std::min(a.size, from + kAtOnce);
      if (Kernels().countOthersThanZero(a.Row(i) + from, end - from) == 0) continue;
      for (std::size_t j = from; j < end; ++j) {
        if (top[j] == j && a(i, j) != 0) top[j] = i;
      }
    }
    while (open < a.size && top[open] < open) ++open;
  }
  return top;
}

// The number of leading rows up to the last in which more than a quarter of the entries are nonzero.
std::size_t LeadingFullRows(const SquareMatrix& a) {
  constexpr std::size_t kMostBorder = 256;
  // The rows after three quarters have too few entries.
  for (std::size_t rows = std::min({a.size, kMostBorder, 3 * a.size / 4 + 1}); rows > 0; --rows) {
    const std::size_t i = rows - 1;
    if (4 * Kernels().countOthersThanZero(a.Row(i) + i, a.size - i) > a.size) return rows;
  }
  return 0;
}

// Number of products of a factorisation within a profile. Each row of the border needs two substitutions and its
// products with the other rows.
double WorkOf(const BandFactor& shape) {
  double squares = 0, sum = 0;
  for (std::size_t i = shape.border; i < shape.top.size(); ++i) {
    const auto height = static_cast<double>(i - shape.top[i]);
    squares += height * height;
    sum += height;
  }
  const auto d = static_cast<double>(shape.border), n = static_cast<double>(shape.top.size());
  return squares / 2 + d * (2 * sum + d * n / 2);
}

// The same for a full matrix, whose tiles run kGainOfTiles times as fast as the columns of a profile.
double WorkOfFull(double n) {
  constexpr double kGainOfTiles = 8;
  return n * n * n / (6 * kGainOfTiles);
}

// Selects the factorisation with the fewest products. Returns true if the matrix is to be treated as full.
bool FindShape(const SquareMatrix& a, BandFactor& factor) {
  factor.inverseDiagonal.assign(a.size, 0.0);
  factor.border = 0;
  factor.top = TopsOf(a, 0);
  double least = WorkOf(factor);
  const std::size_t rows = LeadingFullRows(a);
  BandFactor other{{}, rows, {}};
  if (rows > 0 && rows < a.size) other.top = TopsOf(a, rows);
  if (!other.top.empty() && WorkOf(other) < least) {
    least = WorkOf(other);
    factor.border = rows;
    factor.top = std::move(other.top);
  }
  if (least <= WorkOfFull(static_cast<double>(a.size))) return false;
  factor.border = 0;
  std::fill(factor.top.begin(), factor.top.end(), 0);
  return true;
}

// The part of a matrix that begins at row and column `first`.
struct Profile {
  const SquareMatrix& a;
  std::span<double> inverseDiagonal;
  std::size_t first;
  std::span<const std::size_t> top;
};

int FactorProfile(const Profile& of) {
  const SquareMatrix& a = of.a;
  for (std::size_t j = of.first; j < a.size; ++j) {
    const double* const own = a.Row(j);
    for (std::size_t i = of.top[j]; i < j; ++i) {
      const std::size_t low = std::min(i, std::max(of.top[i], of.top[j]));
      a(j, i) = (a(i, j) - Kernels().dot(a.Row(i) + low, own + low, i - low)) * of.inverseDiagonal[i];
    }
    const std::size_t low = of.top[j];
    const double pivot = a(j, j) - Kernels().dot(own + low, own + low, j - low);
    if (!(pivot > 0)) return -1;
    of.inverseDiagonal[j] = 1 / std::sqrt(pivot);
  }
  return 0;
}

// Solves L L^T x = b in place, from entry `first` on.
void Substitute(const Profile& of, double* x) {
  const SquareMatrix& a = of.a;
  for (std::size_t i = of.first; i < a.size; ++i) {
    const std::size_t low = of.top[i];
    x[i] = (x[i] - Kernels().dot(a.Row(i) + low, x + low, i - low)) * of.inverseDiagonal[i];
  }
  for (std::size_t i = a.size; i-- > of.first;) {  // by rows of L: memory is read in order
    x[i] *= of.inverseDiagonal[i];
    const std::size_t low = of.top[i];
    Kernels().subtract(x[i], a.Row(i) + low, i - low, x + low);
  }
}

// A border of d rows in front of a band:  A = [D C; C^T B],  Z = B^-1 C^T,  S = D - C Z. Z is stored below D, and the
// factor of S in the lower triangle of D.
int FactorBorder(const Profile& of) {
  const SquareMatrix& a = of.a;
  const std::size_t d = of.first;
  std::vector<double> z(a.size);
  for (std::size_t c = 0; c < d; ++c) {
    std::copy(a.Row(c) + d, a.Row(c) + a.size, z.begin() + static_cast<std::ptrdiff_t>(d));
    Substitute(of, z.data());
    for (std::size_t i = d; i < a.size; ++i) a(i, c) = z[i];
  }
  std::vector<double> schur(d * d);
  for (std::size_t i = d; i < a.size; ++i) {
    for (std::size_t r = 0; r < d; ++r) {
      if (a(r, i) != 0) Kernels().subtract(a(r, i), a.Row(i) + r, d - r, &schur[r * d + r]);
    }
  }
  for (std::size_t r = 0; r < d; ++r) {
    for (std::size_t c = r; c < d; ++c) schur[r * d + c] += a(r, c);
  }
  const SquareMatrix s{schur.data(), d};
  if (FactorFull(s, of.inverseDiagonal, nullptr) != 0) return -1;
  for (std::size_t r = 1; r < d; ++r) std::copy(s.Row(r), s.Row(r) + r, a.Row(r));
  return 0;
}

void SubstituteBorder(const Profile& of, std::span<const double> b, std::span<double> x) {
  const SquareMatrix& a = of.a;
  const std::size_t d = of.first;
  std::vector<double> factor(d * d), head(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(d));
  const SquareMatrix s{factor.data(), d};
  for (std::size_t r = 1; r < d; ++r) std::copy(a.Row(r), a.Row(r) + r, s.Row(r));
  for (std::size_t i = d; i < a.size; ++i) Kernels().subtract(b[i], a.Row(i), d, head.data());
  const std::vector<std::size_t> full(d);
  Substitute({s, of.inverseDiagonal, 0, full}, head.data());
  for (std::size_t i = d; i < a.size; ++i) x[i] -= Kernels().dot(a.Row(i), head.data(), d);
  std::copy(head.begin(), head.end(), x.begin());
}

int Factor(const SquareMatrix& a, BandFactor& factor, ThreadPool* pool) {
  if (FindShape(a, factor)) return FactorFull(a, factor.inverseDiagonal, pool);
  const Profile profile{a, factor.inverseDiagonal, factor.border, factor.top};
  if (FactorProfile(profile) != 0) return -1;
  return factor.border > 0 ? FactorBorder(profile) : 0;
}

}  // namespace

int SolveBanded(const SquareMatrix& a, BandFactor& factor, std::span<const double> b, std::span<double> x,
                bool decompose, ThreadPool* pool) {
  if (decompose && Factor(a, factor, pool) != 0) return -1;
  const Profile profile{a, factor.inverseDiagonal, factor.border, factor.top};
  std::copy(b.begin(), b.end(), x.begin());
  Substitute(profile, x.data());
  if (factor.border > 0) SubstituteBorder(profile, b, x);
  return 0;
}

}  // namespace kalvex

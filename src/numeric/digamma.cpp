#include "numeric/digamma.h"

#include <algorithm>
#include <array>
#include <numbers>

#include "core/vector_clones.h"

namespace kalvex {
namespace {

constexpr double kPi = std::numbers::pi;

// Bernoulli numbers B_2, B_4, ..., B_20.
constexpr double kBernoulli[] = {1.0 / 6,       -1.0 / 30, 1.0 / 42,      -1.0 / 30,     5.0 / 66,
                                 -691.0 / 2730, 7.0 / 6,   -3617.0 / 510, 43867.0 / 798, -174611.0 / 330};

// B_2k (2k+n-1)!/(2k)! for each n and k = 1, 2, ...
using Series = std::array<double, std::size(kBernoulli)>;
constexpr std::array<Series, kMostPolygammas> kSeries = [] {
  std::array<Series, kMostPolygammas> all{};
  double factorial = 1;  // n!
  for (int n = 0; n < kMostPolygammas; ++n) {
    if (n > 0) factorial *= n;
    double ratio = factorial / 2 * (n + 1);  // (2k+n-1)!/(2k)! for k = 1
    for (std::size_t i = 0; i < std::size(kBernoulli); ++i) {
      const int k = static_cast<int>(i) + 1;
      all[static_cast<std::size_t>(n)][i] = kBernoulli[i] * ratio;
      ratio *= double(2 * k + n) * (2 * k + n + 1) / (double(2 * k + 1) * (2 * k + 2));
    }
  }
  return all;
}();

// From this modulus on the asymptotic series with all ten terms is exact to rounding.
constexpr double kFarNorm = 15 * 15;

Cplx Inverse(const Cplx& z) { return Conj(z) / Norm(z); }

// psi(z) - log z = -1/(2z) - sum B_2k/(2k z^2k), and its n-th derivative
//
//     (-1)^(n+1) [(n-1)!/z^n + n!/(2 z^(n+1)) + sum B_2k (2k+n-1)!/((2k)! z^(2k+n))]
//
// The first term of the derivative comes from the logarithm.            Abramowitz and Stegun, 6.3.18 and 6.4.11
Cplx Asymptotic(int n, const Cplx& z, const Cplx& inverse) {
  Cplx power{1, 0};      // z^-n
  double factorial = 1;  // n!
  for (int k = 1; k <= n; ++k) {
    power *= inverse;
    factorial *= k;
  }
  Cplx sum = n == 0 ? -Log(z) : power * (factorial / n);
  sum += power * inverse * (0.5 * factorial);
  const Cplx square = inverse * inverse;
  for (const double coefficient : kSeries[static_cast<std::size_t>(n)]) {
    power *= square;
    sum += power * coefficient;
  }
  return n % 2 == 0 ? -sum : sum;
}

// pi cot(pi z) without overflow: with q = exp(2 pi i z) for Im z >= 0, cot(pi z) = -i (1 + q)/(1 - q).
Cplx PiCotangent(const Cplx& z) {
  if (z.im < 0) return Conj(PiCotangent(Conj(z)));
  const Cplx q = Exp({-2 * kPi * z.im, 2 * kPi * z.re});
  return -TimesI((1.0 + q) / (1.0 - q)) * kPi;
}

constexpr std::size_t kGroup = 8;
typedef double Pack __attribute__((vector_size(kGroup * sizeof(double))));

// The alignment of the widest clone.
struct alignas(sizeof(Pack)) ComplexPack {
  Pack re, im;
};

// psi' and psi'' in all lanes at once. On return z is the argument at which the series was evaluated.
KALVEX_VECTOR_CLONES void GroupOfTrigammas(ComplexPack& z, ComplexPack& value, ComplexPack& slope) {
  constexpr double kFarEnough = 10 * 10;  // enough for n = 1 and 2 with all ten terms
  Pack valueRe{}, valueIm{}, slopeRe{}, slopeIm{}, re = z.re;
  const Pack im = z.im, one = Pack{} + 1, none{};
  for (;;) {
    const Pack norm = re * re + im * im;
    const auto near = norm < kFarEnough;
    bool any = false;
    for (std::size_t i = 0; i < kGroup; ++i) any = any || near[i];
    if (!any) break;
    const Pack step = near ? one : none, ir = step * re / norm, ii = -(step * im) / norm;
    const Pack r2 = ir * ir - ii * ii, i2 = 2 * ir * ii;
    valueRe += r2;
    valueIm += i2;
    slopeRe -= 2 * (r2 * ir - i2 * ii);
    slopeIm -= 2 * (r2 * ii + i2 * ir);
    re += step;
  }
  const Pack norm = re * re + im * im, ir = re / norm, ii = -im / norm;
  const Pack r2 = ir * ir - ii * ii, i2 = 2 * ir * ii;
  // By Horner's rule in z^-2: psi' = 1/z + 1/(2z^2) + sum/z, psi'' = -1/z^2 - 1/z^3 - sum/z^2.
  Pack aRe{}, aIm{}, bRe{}, bIm{};
  for (std::size_t k = std::size(kBernoulli); k-- > 0;) {
    const Pack ar = aRe + kSeries[1][k], br = bRe + kSeries[2][k];
    aRe = ar * r2 - aIm * i2;
    aIm = ar * i2 + aIm * r2;
    bRe = br * r2 - bIm * i2;
    bIm = br * i2 + bIm * r2;
  }
  aRe += 1 + 0.5 * ir;
  aIm += 0.5 * ii;
  bRe += 1 + ir;
  bIm += ii;
  value = {valueRe + (aRe * ir - aIm * ii), valueIm + (aRe * ii + aIm * ir)};
  slope = {slopeRe - (bRe * r2 - bIm * i2), slopeIm - (bRe * i2 + bIm * r2)};
}

}  // namespace

void Trigammas(std::span<const Cplx> z, std::span<Cplx> values, std::span<Cplx> slopes) {
  for (std::size_t first = 0; first < z.size(); first += kGroup) {
    ComplexPack at, value, slope;
    for (std::size_t i = 0; i < kGroup; ++i) {
      const Cplx& of = z[std::min(first + i, z.size() - 1)];
      at.re[i] = of.re;
      at.im[i] = of.im;
    }
    GroupOfTrigammas(at, value, slope);
    for (std::size_t i = 0; i < kGroup && first + i < z.size(); ++i) {
      values[first + i] = {value.re[i], value.im[i]};
      slopes[first + i] = {slope.re[i], slope.im[i]};
    }
  }
}

// Recurrence psi(z) = psi(z + 1) - 1/z up to the asymptotic series.
void Polygammas(const Cplx& z, std::span<Cplx> out) {
  for (Cplx& value : out) value = {};
  Cplx far = z;
  for (; Norm(far) < kFarNorm; far.re += 1) {
    const Cplx inverse = Inverse(far);
    Cplx power{1, 0};
    for (Cplx& value : out) {
      power *= inverse;
      value += power;
    }
  }
  const Cplx inverse = Inverse(far);
  double signedFactorial = -1;  // (-1)^(n+1) n!
  for (int n = 0; Cplx & value : out) {
    value = Asymptotic(n, far, inverse) + signedFactorial * value;
    ++n;
    signedFactorial *= -n;
  }
}

// Reflection: psi(1 - z) - psi(z) = pi cot(pi z), psi'(1 - z) + psi'(z) = pi^2/sin^2(pi z) = pi^2 + (pi cot(pi z))^2
Cplx Digamma(const Cplx& z) {
  if (z.re < 0.5) return Digamma(1.0 - z) - PiCotangent(z);
  std::array<Cplx, 1> out;
  Polygammas(z, out);
  return out[0];
}

Cplx Trigamma(const Cplx& z) {
  if (z.re < 0.5) {
    const Cplx cotangent = PiCotangent(z);
    return kPi * kPi + cotangent * cotangent - Trigamma(1.0 - z);
  }
  std::array<Cplx, 2> out;
  Polygammas(z, out);
  return out[1];
}

}  // namespace kalvex

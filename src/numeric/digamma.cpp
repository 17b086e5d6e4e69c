#include "numeric/digamma.h"

#include <array>
#include <numbers>

#include "numeric/digamma_kernels.h"

namespace kalvex {
namespace {

constexpr double kPi = std::numbers::pi;

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
  for (const double coefficient : kPolygammaSeries[static_cast<std::size_t>(n)]) {
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

}  // namespace

void Trigammas(std::span<const Cplx> z, std::span<Cplx> values, std::span<Cplx> slopes) {
  WidestKernels<DigammaKernels>().trigammas(z, values, slopes);
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
